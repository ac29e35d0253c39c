// Making panels, setting them up, and presenting them.
#include "tesmar/capi/internal/Panel.h"
#include "tesmar/capi/internal/StyleSnapshot.h"
#include "tesmar/capi/internal/boundary.h"

using namespace tesmar;
using namespace tesmar::capi;

int tesmar_panel_create(const tesmar_panel_options* options,
                        const tesmar_panel_callbacks* callbacks, tesmar_panel** panel) {
    return guard(Caller::owner, [&] {
        require(panel, "tesmar_panel_create: there is no place for the panel");
        const auto given = read(options, "tesmar_panel_create: options");
        require((given.flags & ~unsigned{TESMAR_PANEL_EXTENDED}) == 0,
                "tesmar_panel_create: unknown flags");
        const auto calls = callbacks ? read(callbacks, "tesmar_panel_create: callbacks")
                                     : tesmar_panel_callbacks{};
        require(!calls.load_style == !calls.save_style,
                "tesmar_panel_create: load_style and save_style belong together");
        const auto made = std::make_shared<Panel>(given, calls);
        addPanel(made);
        *panel = made->handle();
    });
}

int tesmar_panel_destroy(tesmar_panel* handle) {
    return guard(Caller::owner, [&] {
        if (auto panel = removePanel(handle)) {
            panel->retire();
            releaseLater(std::move(panel));
        }
    });
}

int tesmar_panel_set_size(tesmar_panel* handle, int width, int height, double scale) {
    return withPanel(handle, [&](Panel& p) { p.window().setPixelSize(width, height, scale); });
}

int tesmar_panel_set_safe_area(tesmar_panel* handle, double top, double left, double bottom,
                               double right) {
    return withPanel(handle, [&](Panel& p) {
        p.window().setSafeAreaInsets({top, left, bottom, right});
    });
}

int tesmar_panel_set_caption_area(tesmar_panel* handle, const tesmar_area* area) {
    return withPanel(handle, [&](Panel& p) {
        if (area)
            p.window().setCaptionArea(CGRect(area->x, area->y, area->width, area->height));
        else
            p.window().setCaptionArea(std::nullopt);
    });
}

int tesmar_panel_set_captions_on(tesmar_panel* handle, int on) {
    return withPanel(handle, [&](Panel& p) { p.controller().setCCEnabled(on != 0); });
}

int tesmar_panel_set_auto_hide(tesmar_panel* handle, double seconds) {
    return withPanel(handle, [&](Panel& p) { p.controller().setAutoHideInterval(seconds); });
}

int tesmar_panel_set_remember(tesmar_panel* handle, int remember) {
    return withPanel(handle,
                     [&](Panel& p) { p.controller().setRememberChangedStyle(remember != 0); });
}

int tesmar_panel_set_easy_dismissal(tesmar_panel* handle, int easy) {
    return withPanel(handle, [&](Panel& p) {
        p.window().setOutsideTap(easy ? OutsideTap::dismisses : OutsideTap::ignored);
        p.window().setDragDown(easy ? DragDown::dismisses : DragDown::ignored);
    });
}

int tesmar_panel_set_style(tesmar_panel* handle, const tesmar_style* style) {
    return withPanel(handle, [&](Panel& p) {
        require(style, "tesmar_panel_set_style: the style is null");
        p.controller().setCCStyleAttributes(style->attributes->mutableCopy());
    });
}

tesmar_style* tesmar_panel_get_style(tesmar_panel* handle) {
    return guardPointer(Caller::owner, [&] {
        return snapshotOf(findPanel(handle)->controller().CCStyleAttributes()).release();
    });
}

int tesmar_panel_set_language(tesmar_panel* handle, const char* tag, const char** used) {
    return withPanel(handle, [&](Panel& p) {
        require(tag, "tesmar_panel_set_language: there is no tag");
        const std::string_view language = p.controller().setLanguage(tag);
        if (used)
            *used = language.data(); // a literal
    });
}

int tesmar_panel_set_mirroring(tesmar_panel* handle, int all) {
    return withPanel(handle, [&](Panel& p) {
        p.controller().setMirroring(all ? TESMARMirroring::panel : TESMARMirroring::controls);
    });
}

int tesmar_panel_set_text_scale(tesmar_panel* handle, double scale) {
    return withPanel(handle, [&](Panel& p) { p.controller().setTextScale(scale); });
}

int tesmar_panel_set_high_contrast(tesmar_panel* handle, int high) {
    return withPanel(handle, [&](Panel& p) {
        p.controller().setContrast(high ? TESMARContrast::high : TESMARContrast::normal);
    });
}

int tesmar_panel_set_brightness(tesmar_panel* handle, double brightness) {
    return withPanel(handle, [&](Panel& p) { p.window().setPresentedBrightness(brightness); });
}

int tesmar_panel_present(tesmar_panel* handle, int motion) {
    return withPanel(handle, [&](Panel& p) {
        if (!p.controller().presentingViewController() || p.controller().isBeingDismissed())
            p.window().presentViewController(p.controllerRef(), motion != TESMAR_AT_ONCE);
    });
}

int tesmar_panel_dismiss(tesmar_panel* handle, int motion) {
    return withPanel(handle, [&](Panel& p) {
        p.controller().dismissViewControllerAnimated(motion != TESMAR_AT_ONCE);
    });
}

int tesmar_panel_is_presented(tesmar_panel* handle) {
    return withPanel(handle,
                     [&](Panel& p) { return p.window().presentedViewController() ? 1 : 0; });
}
