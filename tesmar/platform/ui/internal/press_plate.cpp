#include "tesmar/platform/ui/internal/press_plate.h"

#include "tesmar/platform/ui/UIScrollView.h"

#include <algorithm>

namespace tesmar {
namespace {

constexpr double kOpacity = 0.15;
constexpr CGFloat kCornerRadius = 6; // points

} // namespace

void drawPressPlate(CGContext& context, UIView& view, const CGRect& part, const UIColor& tint) {
    CGRect plate = CGRectInset(part, 2, 1);
    if (const auto* const scroll = UIScrollView::enclosing(view.superview())) {
        const CGSize shown = scroll->frame().size;
        const CGSize all = scroll->contentSize();
        const CGRect content = scroll->convertRectTo(
            {{}, {std::max(shown.width, all.width), std::max(shown.height, all.height)}}, &view);
        const CGFloat half = std::min(
            {plate.size.width / 2, plate.midX() - content.minX(), content.maxX() - plate.midX()});
        plate = CGRectInset(plate, plate.size.width / 2 - half, 0);
    }
    if (plate.isEmpty())
        return;
    context.setRGBFillColor(tint.red(), tint.green(), tint.blue(), kOpacity);
    context.fillRoundedRect(plate, kCornerRadius);
}

} // namespace tesmar
