// Events for panels, and their pixels.
#include "tesmar/capi/internal/Panel.h"
#include "tesmar/capi/internal/boundary.h"
#include "tesmar/platform/ui/UIStepper.h"

#include <algorithm>
#include <span>
#include <vector>

using namespace tesmar;
using namespace tesmar::capi;

namespace {

static_assert(TESMAR_WHEEL_NOTCH == UIWindow::kWheelNotch);
static_assert(TESMAR_CANCELLED == static_cast<int>(UITouchPhase::cancelled));
static_assert(TESMAR_MOUSE == static_cast<int>(UITouchSource::mouse));
static_assert(TESMAR_KEY_LAST == static_cast<int>(UIKey::last));

template <class Enum>
Enum enumerator(int number, Enum last, const char* message) {
    require(number >= 0 && number <= static_cast<int>(last), message);
    return static_cast<Enum>(number);
}

CGRect frameOf(const UIView& view, const CGRect& bounds) {
    return view.convertRectTo(bounds, nullptr);
}

std::optional<CGRect> locate(UIWindow& window, std::string_view identifier) {
    window.layoutIfNeeded();
    if (const UIView* const view = window.viewWithIdentifier(identifier))
        return frameOf(*view, view->bounds());
    const auto [stepper, half] = UIStepper::halfWithIdentifier(window, identifier);
    return stepper ? std::optional(frameOf(*stepper, stepper->halfRect(half))) : std::nullopt;
}

// The rows of the window's surface in the caller's memory.
std::span<std::uint32_t> rows(const UIWindow& window, std::uint32_t* pixels, std::size_t bytes,
                              int stride) {
    const CGSize size = window.pixelSize();
    const auto width = static_cast<long long>(size.width);
    const auto height = static_cast<long long>(size.height);
    require(pixels && stride % 4 == 0 && stride >= 4 * width, "the pixels have no such stride");
    const long long needed = height > 0 ? stride * (height - 1) + 4 * width : 0;
    require(bytes >= static_cast<std::size_t>(needed), "the pixels are shorter than the surface");
    return {pixels, bytes / 4};
}

tesmar_rect fromRect(const PixelRect& rect) {
    return {rect.x, rect.y, rect.width, rect.height};
}

// Without overflow; what lies outside any surface is cut off.
PixelRect toRect(const tesmar_rect& rect) {
    const auto clamped = [](long long v) { return static_cast<int>(std::clamp(v, 0LL, 32767LL)); };
    const int x = clamped(rect.x);
    const int y = clamped(rect.y);
    return {x, y, std::max(0, clamped(0LL + rect.x + rect.width) - x),
            std::max(0, clamped(0LL + rect.y + rect.height) - y)};
}

PixelRect unionOf(const PixelRect& a, const PixelRect& b) {
    const int x = std::min(a.x, b.x), y = std::min(a.y, b.y);
    return {x, y, std::max(a.right(), b.right()) - x, std::max(a.bottom(), b.bottom()) - y};
}

} // namespace

// --- Events ------------------------------------------------------------------------------------

int tesmar_panel_touch(tesmar_panel* handle, int phase, std::int64_t id, double x, double y,
                       double time, int source) {
    return withPanel(handle, [&](Panel& p) {
        const auto which = enumerator(phase, UITouchPhase::cancelled, "this is no phase");
        const auto device = enumerator(source, UITouchSource::mouse, "this is no source");
        return p.window().touch(which, id, {x, y}, time, device) ? 1 : 0;
    });
}

int tesmar_panel_wants_touch(tesmar_panel* handle, double x, double y) {
    return withPanel(handle, [&](Panel& p) { return p.window().wantsTouchAt({x, y}) ? 1 : 0; });
}

int tesmar_panel_wheel(tesmar_panel* handle, double x, double y, double dx, double dy,
                       double time) {
    return withPanel(handle, [&](Panel& p) {
        return p.window().wheel({x, y}, {dx, dy}, time) ? 1 : 0;
    });
}

int tesmar_panel_hover(tesmar_panel* handle, double x, double y) {
    return withPanel(handle, [&](Panel& p) { p.window().hover({x, y}); });
}

int tesmar_panel_end_hover(tesmar_panel* handle) {
    return withPanel(handle, [&](Panel& p) { p.window().endHover(); });
}

int tesmar_panel_key(tesmar_panel* handle, int key, int repeated, double time) {
    return withPanel(handle, [&](Panel& p) {
        const auto which = enumerator(key, UIKey::last, "this is no key");
        const auto repeat = repeated ? UIKeyRepeat::repeated : UIKeyRepeat::pressed;
        return p.window().key(which, repeat, time) ? 1 : 0;
    });
}

int tesmar_panel_cancel_touches(tesmar_panel* handle, double time) {
    return withPanel(handle, [&](Panel& p) { p.window().cancelTouches(time); });
}

int tesmar_panel_locate(tesmar_panel* handle, const char* identifier, tesmar_area* area) {
    return withPanel(handle, [&](Panel& p) {
        require(identifier && area, "tesmar_panel_locate: an argument is null");
        const auto found = *identifier ? locate(p.window(), identifier) : std::nullopt;
        const CGRect place = found.value_or(CGRect());
        *area = {place.minX(), place.minY(), place.size.width, place.size.height};
        return found ? 1 : 0;
    });
}

// --- Pixels ------------------------------------------------------------------------------------

int tesmar_panel_needs_render(tesmar_panel* handle) {
    return withPanel(handle, [&](Panel& p) { return p.window().needsRender() ? 1 : 0; });
}

int tesmar_panel_render(tesmar_panel* handle, std::uint32_t* pixels, std::size_t bytes, int stride,
                        int age, tesmar_rect* rects, int capacity) {
    return withPanel(handle, [&](Panel& p) {
        require(rects && capacity > 0, "tesmar_panel_render: there is no place for rectangles");
        const auto surface = rows(p.window(), pixels, bytes, stride);
        const auto painted = p.window().render(surface, stride, age);
        const auto count = std::min(painted.size(), static_cast<std::size_t>(capacity));
        for (std::size_t i = 0; i < count; ++i)
            rects[i] = fromRect(painted[i]);
        if (count == 0)
            return 0;
        PixelRect last = painted[count - 1];
        for (const PixelRect& rest : painted.subspan(count))
            last = unionOf(last, rest);
        rects[count - 1] = fromRect(last);
        return static_cast<int>(count);
    });
}

int tesmar_panel_repaint(tesmar_panel* handle, std::uint32_t* pixels, std::size_t bytes, int stride,
                         const tesmar_rect* rects, int count) {
    return withPanel(handle, [&](Panel& p) {
        require(count >= 0 && (rects || count == 0), "tesmar_panel_repaint: no rectangles");
        const auto surface = rows(p.window(), pixels, bytes, stride);
        std::vector<PixelRect> places;
        std::transform(rects, rects + count, std::back_inserter(places), toRect);
        p.window().repaint(surface, stride, places);
    });
}

int tesmar_panel_invalidate(tesmar_panel* handle) {
    return withPanel(handle, [&](Panel& p) { p.window().invalidate(); });
}

int tesmar_panel_visible_bounds(tesmar_panel* handle, tesmar_rect* bounds) {
    return withPanel(handle, [&](Panel& p) {
        require(bounds, "tesmar_panel_visible_bounds: there is no place for the rectangle");
        const PixelRect visible = p.window().visibleBounds();
        *bounds = fromRect(visible);
        return visible.isEmpty() ? 0 : 1;
    });
}
