// The common look of the panel's steppers and labels.
#include "tesmar/model/CCConstants.h"
#include "tesmar/platform/graphics/CGContext.h"
#include "tesmar/platform/graphics/UIGraphics.h"
#include "tesmar/platform/ui/UILabel.h"
#include "tesmar/platform/ui/UIStepper.h"

namespace tesmar {
namespace {

// Ends the image context on destruction.
struct ImageContext {
    explicit ImageContext(CGSize size) { UIGraphicsBeginImageContextWithOptions(size, false, 0); }
    ~ImageContext() { UIGraphicsEndImageContext(); }
    ImageContext(const ImageContext&) = delete;
    ImageContext& operator=(const ImageContext&) = delete;
};

} // namespace

Ref<UIStepper> UIStepper::createStyledStepper() {
    auto stepper = make<UIStepper>();
    stepper->setTintColor(UIColor::blackColor());
    stepper->setAutorepeat(false);
    stepper->setContinuous(false);
    stepper->setIncrementImage(UIImage::imageNamed("stepper-up"), UIControlStateNormal);
    stepper->setDecrementImage(UIImage::imageNamed("stepper-down"), UIControlStateNormal);

    // No visible borders, and the same divider for every combination of the halves' states.
    const UIControlState states[] = {UIControlStateHighlighted, UIControlStateDisabled,
                                     UIControlStateNormal};
    const auto pipe = UIImage::imageNamed("stepper-pipe");
    const auto border = UIImage::emptyImageForBorders();
    for (const auto left : states) {
        stepper->setBackgroundImage(border, left);
        for (const auto right : states)
            stepper->setDividerImage(pipe, left, right);
    }
    return stepper;
}

Ref<UIImage> UIImage::emptyImageForBorders() {
    const ImageContext border({1, 1});
    if (CGContext* const context = UIGraphicsGetCurrentContext()) {
        CGContextSetFillColorWithColor(*context, *UIColor::clearColor());
        CGContextFillRect(*context, {0, 0, 1, 1});
    }
    return UIGraphicsGetImageFromCurrentImageContext();
}

Ref<UILabel> UILabel::createStyledLabel() {
    auto label = make<UILabel>();
    label->setFont(CCConstants::font());
    return label;
}

Ref<UIFont> UILabel::getDefaultFont() {
    return CCConstants::font();
}

} // namespace tesmar
