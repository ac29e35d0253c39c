// A grey-scale or RGB colour, which keeps the colour space that it was created in. Immutable; may
// be used by any thread.
#pragma once

#include "tesmar/platform/foundation/NSObject.h"
#include "tesmar/platform/geometry/geometry.h"

#include <array>

namespace tesmar {

class TESMAR_API UIColor : public NSObject {
    TESMAR_CLASS

  public:
    enum class Space { gray, rgb };

    // Components are clamped to 0…1; NaN counts as 0.
    static Ref<UIColor> colorWithWhite(CGFloat white, CGFloat alpha);
    static Ref<UIColor> colorWithRed(CGFloat red, CGFloat green, CGFloat blue, CGFloat alpha);

    // Grey-scale; all but clearColor are opaque.
    static Ref<UIColor> whiteColor();
    static Ref<UIColor> blackColor();
    static Ref<UIColor> grayColor();  // 0.5
    static Ref<UIColor> clearColor(); // black, alpha 0
    // RGB, opaque.
    static Ref<UIColor> redColor();
    static Ref<UIColor> greenColor();
    static Ref<UIColor> blueColor();
    static Ref<UIColor> cyanColor();
    static Ref<UIColor> yellowColor();
    static Ref<UIColor> magentaColor();

    // The same colour in the same space with another alpha.
    Ref<UIColor> colorWithAlphaComponent(CGFloat alpha) const;

    Space space() const { return space_; }
    CGFloat alpha() const { return alpha_; }
    // 0 to 1. For a grey-scale colour, all three are its white level.
    CGFloat red() const { return components_[0]; }
    CGFloat green() const { return components_[1]; }
    CGFloat blue() const { return components_[2]; }
    // The white level of a grey-scale colour, the luminance of an RGB one; 0 to 1.
    CGFloat white() const;

    // False if the record lacks a component or its component count; values are clamped as above.
    bool initWithCoder(NSCoder& coder) override;
    bool encodeWithCoder(NSCoder& coder) const override;
    // True for the same space and exactly equal components, alpha included.
    bool isEqual(const NSObject* other) const override;

  private:
    static Ref<UIColor> create(Space space, std::array<CGFloat, 3> components, CGFloat alpha);

    Space space_ = Space::gray;
    std::array<CGFloat, 3> components_{};
    CGFloat alpha_ = 0;
};

// The colour's opacity, 0 to 1.
inline CGFloat CGColorGetAlpha(const UIColor& color) {
    return color.alpha();
}

} // namespace tesmar
