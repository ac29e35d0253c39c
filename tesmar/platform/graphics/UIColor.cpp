#include "tesmar/platform/graphics/UIColor.h"

#include "tesmar/platform/foundation/archive/NSCoder.h"
#include "tesmar/platform/foundation/runtime.h"

namespace tesmar {
namespace {

// The numbers of the colour spaces in archives.
constexpr long long kArchivedRGB = 2;
constexpr long long kArchivedGray = 4;

CGFloat component(CGFloat value) {
    return finite(value, 0, 1, 0);
}

} // namespace

Class& UIColor::classObject() {
    static Class& type = *new Class("UIColor", &NSObject::classObject(), allocator<UIColor>());
    return type;
}

Ref<UIColor> UIColor::create(Space space, std::array<CGFloat, 3> components, CGFloat alpha) {
    auto color = make<UIColor>();
    color->space_ = space;
    for (std::size_t i = 0; i < components.size(); ++i)
        color->components_[i] = component(components[i]);
    color->alpha_ = component(alpha);
    return color;
}

Ref<UIColor> UIColor::colorWithWhite(CGFloat white, CGFloat alpha) {
    return create(Space::gray, {white, white, white}, alpha);
}

Ref<UIColor> UIColor::colorWithRed(CGFloat red, CGFloat green, CGFloat blue, CGFloat alpha) {
    return create(Space::rgb, {red, green, blue}, alpha);
}

// Views ask for these whenever they draw, so each is one shared object, which is never destroyed.
#define SHARED_COLOR(name, color)                                                                  \
    Ref<UIColor> UIColor::name() {                                                                 \
        static const auto& shared = *new Ref<UIColor>(color);                                      \
        return shared;                                                                             \
    }
SHARED_COLOR(whiteColor, colorWithWhite(1, 1))
SHARED_COLOR(blackColor, colorWithWhite(0, 1))
SHARED_COLOR(grayColor, colorWithWhite(0.5, 1))
SHARED_COLOR(clearColor, colorWithWhite(0, 0))
SHARED_COLOR(redColor, colorWithRed(1, 0, 0, 1))
SHARED_COLOR(greenColor, colorWithRed(0, 1, 0, 1))
SHARED_COLOR(blueColor, colorWithRed(0, 0, 1, 1))
SHARED_COLOR(cyanColor, colorWithRed(0, 1, 1, 1))
SHARED_COLOR(yellowColor, colorWithRed(1, 1, 0, 1))
SHARED_COLOR(magentaColor, colorWithRed(1, 0, 1, 1))
#undef SHARED_COLOR

Ref<UIColor> UIColor::colorWithAlphaComponent(CGFloat alpha) const {
    return create(space_, components_, alpha);
}

CGFloat UIColor::white() const {
    return space_ == Space::gray ? red() : 0.2126 * red() + 0.7152 * green() + 0.0722 * blue();
}

bool UIColor::initWithCoder(NSCoder& coder) {
    const auto count = coder.decodeInteger("UIColorComponentCount");
    const auto alpha = coder.decodeDouble("UIAlpha");
    if (!count || !alpha)
        return false;
    if (*count == 2) {
        const auto white = coder.decodeDouble("UIWhite");
        if (!white)
            return false;
        space_ = Space::gray;
        components_.fill(component(*white));
    } else if (*count == 4) {
        const auto red = coder.decodeDouble("UIRed");
        const auto green = coder.decodeDouble("UIGreen");
        const auto blue = coder.decodeDouble("UIBlue");
        if (!red || !green || !blue)
            return false;
        space_ = Space::rgb;
        components_ = {component(*red), component(*green), component(*blue)};
    } else {
        return false;
    }
    alpha_ = component(*alpha);
    return true;
}

bool UIColor::encodeWithCoder(NSCoder& coder) const {
    const bool gray = space_ == Space::gray;
    coder.encodeInteger(gray ? 2 : 4, "UIColorComponentCount");
    if (gray) {
        coder.encodeDouble(red(), "UIWhite");
    } else {
        coder.encodeDouble(red(), "UIRed");
        coder.encodeDouble(green(), "UIGreen");
        coder.encodeDouble(blue(), "UIBlue");
    }
    coder.encodeDouble(alpha_, "UIAlpha");
    coder.encodeInteger(gray ? kArchivedGray : kArchivedRGB, "NSColorSpace");
    return true;
}

bool UIColor::isEqual(const NSObject* other) const {
    const auto* color = dynamic_cast<const UIColor*>(other);
    return color && space_ == color->space_ && components_ == color->components_ &&
           alpha_ == color->alpha_;
}

} // namespace tesmar
