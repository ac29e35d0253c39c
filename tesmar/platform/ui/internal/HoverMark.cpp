#include "tesmar/platform/ui/internal/HoverMark.h"

#include "tesmar/platform/graphics/CGContext.h"
#include "tesmar/platform/graphics/UIGraphics.h"
#include "tesmar/platform/ui/UIControl.h"
#include "tesmar/platform/ui/UIWindow.h"

#include <cmath>

namespace tesmar {
namespace {

constexpr double kPlateOpacity = 0.06;
// The rim is seen where the plate is not, on dark controls.
constexpr double kRimWhite = 0.5;
constexpr double kRimOpacity = 0.6;
constexpr CGFloat kRimWidth = 1; // points

// The cell of `control` that a press at `point` (window coordinates) would operate.
std::optional<std::size_t> cellAt(const UIControl& control, CGPoint point) {
    const CGPoint inside = control.convertPointFrom(point, nullptr);
    const auto cells = control.focusCells();
    std::optional<std::size_t> nearest;
    const auto away = [&](std::size_t i) {
        const CGPoint d = cells[i].rect.center() - inside;
        return std::hypot(d.x, d.y);
    };
    for (std::size_t i = 0; i < cells.size(); ++i)
        if (!nearest || away(i) < away(*nearest))
            nearest = i;
    return nearest && cells[*nearest].operates ? nearest : std::nullopt;
}

} // namespace

bool HoverMark::follow() {
    std::optional<ShownCell> cell;
    const auto control = as<UIControl>(refTo(window_.hitTest(point_)));
    if (control && control->isEnabled())
        if (const auto index = cellAt(*control, point_))
            cell = shownCell(window_, *control, *index);
    const bool isSeen =
        cell && !cell->frame.isEmpty() && window_.hitTest(cell->frame.center()) == control.get();
    show(isSeen ? cell : std::nullopt);
    return isSeen;
}

void HoverMark::show(const std::optional<ShownCell>& cell) {
    if (cell == drawn_)
        return;
    for (const auto& changed : {drawn_, cell})
        if (changed)
            window_.damagePixels(window_.surfacePixels(changed->frame));
    drawn_ = cell;
}

void HoverMark::draw() const {
    CGContext* const context = UIGraphicsGetCurrentContext();
    if (!context || !drawn_)
        return;
    const CGRect place = context->snapped(drawn_->frame);
    context->setRGBFillColor(0, 0, 0, kPlateOpacity * drawn_->alpha);
    context->fillRoundedRect(place, drawn_->radius);
    context->setRGBFillColor(kRimWhite, kRimWhite, kRimWhite, kRimOpacity * drawn_->alpha);
    context->fillRoundedFrame(place, drawn_->radius, kRimWidth);
}

} // namespace tesmar
