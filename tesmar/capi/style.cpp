// Styles as snapshots, and drawing text in them.
#include "tesmar/capi/internal/StyleSnapshot.h"
#include "tesmar/capi/internal/boundary.h"
#include "tesmar/model/CCConstants.h"
#include "tesmar/model/TESMARConfig.h"
#include "tesmar/platform/foundation/scalars.h"
#include "tesmar/platform/graphics/CGContext.h"
#include "tesmar/platform/graphics/UIColor.h"
#include "tesmar/platform/text/NSAttributedString.h"
#include "tesmar/platform/text/TextEdge.h"
#include "tesmar/platform/text/UIFont.h"
#include "tesmar/sharing/TESMARStyleJSON.h"

using namespace tesmar;
using namespace tesmar::capi;

namespace {

constexpr CGFloat kDefaultSize = 17;  // points, of a style that is made
constexpr CGFloat kFallbackSize = 12; // what text without a font is drawn in

tesmar_color fromColor(const Ref<UIColor>& color, tesmar_color missing) {
    return color ? tesmar_color{color->red(), color->green(), color->blue(), color->alpha()}
                 : missing;
}

// Grey-scale where it can be, as the panel's white and black are, which it must recognise.
Ref<UIColor> toColor(const tesmar_color& color) {
    if (color.red == color.green && color.green == color.blue)
        return UIColor::colorWithWhite(color.red, color.alpha);
    return UIColor::colorWithRed(color.red, color.green, color.blue, color.alpha);
}

bool isZero(const tesmar_color& color) {
    return color.red == 0 && color.green == 0 && color.blue == 0 && color.alpha == 0;
}

Ref<UIFont> toFont(const char* name, CGFloat size) {
    size = size > 0 ? size : kDefaultSize;
    auto font = name ? UIFont::fontWithName(name, size) : nullptr;
    return font ? font : UIFont::systemFontOfSize(size);
}

template <class T>
Ref<T> value(const tesmar_style& style, std::string_view key) {
    return as<T>(style.attributes->objectForKey(key));
}

Ref<UIFont> drawnFont(const tesmar_style& style) {
    const auto font = value<UIFont>(style, NSFontAttributeName);
    return font ? font : UIFont::systemFontOfSize(kFallbackSize);
}

void requireStyle(const tesmar_style* style) {
    require(style, "the style is null");
}

} // namespace

tesmar_style::tesmar_style(const Ref<NSDictionary>& given)
    : attributes(
          NSDictionary::dictionaryWithEntries(given ? given->entries() : NSDictionary::Entries{})) {
    fontName = drawnFont(*this)->fontName();
}

tesmar_style* tesmar_style_retain(tesmar_style* style) {
    if (style)
        style->count.fetch_add(1, std::memory_order_relaxed);
    return style;
}

void tesmar_style_release(tesmar_style* style) {
    if (style && style->count.fetch_sub(1, std::memory_order_acq_rel) == 1)
        delete style;
}

// --- Values ------------------------------------------------------------------------------------

tesmar_style* tesmar_style_create(const tesmar_style_values* given) {
    return guardPointer(Caller::anyThread, [&] {
        const tesmar_style_values values = read(given, "tesmar_style_create");
        NSDictionary::Entries entries;
        const auto add = [&](std::string_view key, const Ref<NSObject>& object) {
            entries.emplace(key, object);
        };
        add(NSForegroundColorAttributeName, toColor(values.text));
        add(NSBackgroundColorAttributeName, toColor(values.background));
        add(NSFontAttributeName, toFont(values.font_name, values.font_size));
        const TextEdge edge = textEdgeNamed(values.edge ? values.edge : "none");
        if (edge != TextEdge::none)
            add(TESMAREdgeAttributeName,
                NSString::stringWithString(std::string(textEdgeName(edge))));
        if (edge != TextEdge::none && !isZero(values.edge_color))
            add(TESMAREdgeColorAttributeName, toColor(values.edge_color));
        if (values.window.alpha > 0)
            add(TESMARWindowColorAttributeName, toColor(values.window));
        return snapshotOf(NSDictionary::dictionaryWithEntries(std::move(entries))).release();
    });
}

int tesmar_style_get(const tesmar_style* style, tesmar_style_values* values) {
    return guard(Caller::anyThread, [&] {
        requireStyle(style);
        const auto named = value<NSString>(*style, TESMAREdgeAttributeName);
        const TextEdge edge = textEdgeNamed(named ? named->text() : "none");
        const auto text = value<UIColor>(*style, NSForegroundColorAttributeName);
        const auto edgeColor = value<UIColor>(*style, TESMAREdgeColorAttributeName);
        tesmar_style_values found{};
        found.text = fromColor(text, {0, 0, 0, 1});
        found.background = fromColor(value<UIColor>(*style, NSBackgroundColorAttributeName), {});
        found.font_name = style->fontName.c_str();
        found.font_size = drawnFont(*style)->pointSize();
        found.edge = textEdgeName(edge).data(); // a literal
        if (edge != TextEdge::none)
            found.edge_color = fromColor(
                edgeColor ? edgeColor : derivedEdgeColor(*toColor(found.text)), {0, 0, 0, 1});
        found.window = fromColor(value<UIColor>(*style, TESMARWindowColorAttributeName), {});
        write(found, values, "tesmar_style_get");
    });
}

int tesmar_style_get_font(const tesmar_style* style, tesmar_font* font) {
    return guard(Caller::anyThread, [&] {
        requireStyle(style);
        auto* const kept = const_cast<tesmar_style*>(style);
        std::call_once(kept->sourceIsKnown, [&] {
            auto source = FontRegistry::sourceOf(kept->fontName);
            if (!source)
                source = FontRegistry::sourceOf(FontRegistry::kSystemFont);
            kept->source = source.value_or(FontRegistry::Source());
        });
        tesmar_font found{};
        found.name = style->source.fontName.c_str();
        found.family = style->source.family.c_str();
        found.file = style->source.file.c_str();
        found.index = style->source.index;
        write(found, font, "tesmar_style_get_font");
    });
}

// --- The stored style --------------------------------------------------------------------------

tesmar_style* tesmar_style_stored() {
    return guardPointer(Caller::anyThread, [] {
        return snapshotOf(TESMARConfig::sessionOrDefaultClosedCaptureStyle()).release();
    });
}

tesmar_style* tesmar_style_default() {
    return guardPointer(Caller::anyThread, [] {
        return snapshotOf(CCConstants::CCDefaultStyleAttributes()).release();
    });
}

int tesmar_style_store(const tesmar_style* style) {
    return guard(Caller::anyThread, [&] {
        TESMARConfig::saveSessionClosedCaptureStyle(style ? style->attributes : nullptr);
        if (const std::string failure = TESMARConfig::saveFailure(); !failure.empty())
            fail(TESMAR_ERROR_GENERIC, failure);
    });
}

const char* tesmar_style_json(const tesmar_style* style) {
    return guardPointer(Caller::anyThread, [&] {
        requireStyle(style);
        auto* const kept = const_cast<tesmar_style*>(style);
        std::call_once(kept->jsonIsKnown, [&] { kept->json = styleToJSON(*kept->attributes); });
        return style->json.c_str();
    });
}

tesmar_style* tesmar_style_from_json(const char* text, std::size_t length) {
    return guardPointer(Caller::anyThread, [&] {
        require(text, "tesmar_style_from_json: there is no text");
        const auto parsed = styleFromJSON({text, length});
        require(parsed.style != nullptr, parsed.problem.c_str());
        return snapshotOf(parsed.style).release();
    });
}

// --- Text --------------------------------------------------------------------------------------

int tesmar_style_draw(const tesmar_style* style, const char* text, const tesmar_surface* given,
                      const tesmar_area* area, int alignment) {
    return guard(Caller::owner, [&] {
        requireStyle(style);
        require(text && area, "tesmar_style_draw: there is no text or no area");
        require(alignment >= TESMAR_LEFT && alignment <= TESMAR_RIGHT,
                "tesmar_style_draw: this is no alignment");
        const tesmar_surface surface = read(given, "tesmar_style_draw");
        constexpr int kMost = 32767;
        require(surface.width >= 1 && surface.width <= kMost && surface.height >= 1 &&
                    surface.height <= kMost && surface.stride >= 4 * surface.width &&
                    surface.stride % 4 == 0 && surface.scale > 0,
                "tesmar_style_draw: the surface has no such size");
        const auto needed = static_cast<std::size_t>(surface.stride) *
                                static_cast<std::size_t>(surface.height - 1) +
                            4 * static_cast<std::size_t>(surface.width);
        require(surface.pixels && surface.bytes >= needed,
                "tesmar_style_draw: the pixels are shorter than the surface");
        CGContext context(surface.pixels, surface.width, surface.height, surface.stride,
                          surface.scale);
        constexpr NSTextAlignment kAlignments[] = {NSTextAlignment::left, NSTextAlignment::center,
                                                   NSTextAlignment::right};
        NSAttributedString::attributedString(text, style->attributes)
            ->drawInRect(context, finiteRect({area->x, area->y, area->width, area->height}),
                         kAlignments[alignment]);
    });
}

int tesmar_style_measure(const tesmar_style* style, const char* text, double maxWidth,
                         double* width, double* height) {
    return guard(Caller::owner, [&] {
        requireStyle(style);
        require(text && width && height, "tesmar_style_measure: an argument is null");
        const auto string = NSAttributedString::attributedString(text, style->attributes);
        const CGSize size = maxWidth > 0 ? string->size(maxWidth) : string->size();
        *width = size.width;
        *height = size.height;
    });
}
