#include "tesmar/platform/ui/internal/CardView.h"

#include "tesmar/platform/graphics/CGContext.h"
#include "tesmar/platform/graphics/UIGraphics.h"
#include "tesmar/platform/ui/UIWindow.h"

#include <cmath>

namespace tesmar {
namespace {

// All in points.
constexpr CGFloat kShadowBlur = 16;
constexpr CGPoint kShadowOffset{0, 4};

const Ref<UIColor>& paperColor() {
    static const auto& paper = *new Ref<UIColor>(UIColor::whiteColor());
    return paper;
}

} // namespace

void ContainerView::drawOverlay(CGRect) {
    CGContext* const context = UIGraphicsGetCurrentContext();
    const UIWindow* const window = this->window();
    if (!context || !window || window->presentedBrightness() >= 1)
        return;
    // Brightness is of light; black at an opacity scales what the display's gamma of 2.2 takes.
    const double kept = std::pow(window->presentedBrightness(), 1 / 2.2);
    context->setRGBFillColor(0, 0, 0, 1 - kept);
    context->fillRoundedRect(bounds(), cornerRadius());
}

PaperView::PaperView() {
    setBackgroundColor(paperColor());
}

void CardView::draw(CGRect) {
    CGContext* const context = UIGraphicsGetCurrentContext();
    if (!context)
        return;
    static const auto& shade = *new Ref<UIColor>(UIColor::colorWithWhite(0, 0.45));
    context->drawShadow(bounds(), kCornerRadius, kShadowBlur, kShadowOffset, *shade);
    context->setFillColor(*paperColor());
    context->fillRoundedRect(bounds(), kCornerRadius);
}

UIEdgeInsets CardView::drawingOverflow() const {
    const CGFloat reach = kShadowBlur + 1; // and a point for rounding to pixels
    return {reach - kShadowOffset.y, reach, reach + kShadowOffset.y, reach};
}

} // namespace tesmar
