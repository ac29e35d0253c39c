#include "tesmar/platform/ui/internal/CardView.h"

#include "tesmar/platform/graphics/CGContext.h"
#include "tesmar/platform/graphics/UIGraphics.h"
#include "tesmar/platform/ui/UIWindow.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace tesmar {
namespace {

// All in points.
constexpr CGFloat kShadowBlur = 16;
constexpr CGPoint kShadowOffset{0, 4};
constexpr CGFloat kMargin = 8; // around the card
// Rather than become smaller than this, a card covers the captions.
constexpr CGSize kUsable{300, 180};

const Ref<UIColor>& paperColor() {
    static const auto& paper = *new Ref<UIColor>(UIColor::whiteColor());
    return paper;
}

// The part of the window that presented controllers keep to.
CGRect safeArea(const UIWindow& window) {
    const CGRect safe = CGRectInset(window.bounds(), window.safeAreaInsets());
    return safe.isEmpty() ? window.bounds() : safe;
}

// The controller measures its view as it is laid out in all of the room.
CGSize preferredSize(UIViewController& controller, CGSize room) {
    const auto content = controller.view();
    content->setFrame({content->frame().origin, room});
    content->layoutIfNeeded();
    const CGSize size = controller.preferredContentSize().value_or(room);
    return {finite(size.width, 0, room.width, room.width),
            finite(size.height, 0, room.height, room.height)};
}

// The parts of `room` above, below, left and right of `hole`.
std::array<CGRect, 4> around(const CGRect& room, const CGRect& hole) {
    const auto between = [](CGFloat x, CGFloat y, CGFloat right, CGFloat bottom) {
        return CGRect{x, y, std::max(0.0, right - x), std::max(0.0, bottom - y)};
    };
    return {between(room.minX(), room.minY(), room.maxX(), std::min(room.maxY(), hole.minY())),
            between(room.minX(), std::max(room.minY(), hole.maxY()), room.maxX(), room.maxY()),
            between(room.minX(), room.minY(), std::min(room.maxX(), hole.minX()), room.maxY()),
            between(std::max(room.minX(), hole.maxX()), room.minY(), room.maxX(), room.maxY())};
}

CGFloat usableArea(const CGRect& part, CGSize size) {
    return std::min(part.size.width, size.width) * std::min(part.size.height, size.height);
}

CGRect centred(const CGRect& part, CGSize size) {
    const CGFloat width = std::min(size.width, part.size.width);
    const CGFloat height = std::min(size.height, part.size.height);
    // Whole points, so that the content's edges stay sharp at scale 1.
    return {std::floor(part.midX() - width / 2), std::floor(part.midY() - height / 2), width,
            height};
}

// The part of the room to centre the card in: all of it unless the card would cover captions there.
CGRect bestPart(const CGRect& room, const CGRect& captions, CGSize size) {
    const CGRect clear = CGRectInset(captions, -kMargin, -kMargin);
    if (CGRectIntersection(clear, centred(room, size)).isEmpty())
        return room;
    const auto isEnough = [&](const CGRect& part) {
        return part.size.width >= std::min(kUsable.width, size.width) &&
               part.size.height >= std::min(kUsable.height, size.height);
    };
    CGRect best;
    for (const CGRect& part : around(room, clear))
        if (isEnough(part) && usableArea(part, size) > usableArea(best, size))
            best = part;
    return best.isEmpty() ? room : best;
}

} // namespace

CGRect cardFrame(const UIWindow& window, UIViewController& controller,
                 std::optional<MeasuredSize>& measured) {
    const CGRect surface = safeArea(window);
    const CGRect inset = CGRectInset(surface, kMargin, kMargin);
    const CGRect room = inset.isEmpty() ? surface : inset;
    const auto content = controller.view();
    if (!measured || measured->room != room.size ||
        measured->layoutChanges != content->layoutChanges()) {
        const CGSize size = preferredSize(controller, room.size);
        measured = {room.size, content->layoutChanges(), size};
    }
    const CGSize size = measured->size;

    const auto& captions = window.avoidedArea();
    return centred(captions ? bestPart(room, *captions, size) : room, size);
}

CGRect paperFrame(const UIWindow& window) {
    const CGRect all = window.bounds();
    const auto& captions = window.avoidedArea();
    return captions ? bestPart(all, *captions, all.size) : all;
}

CGRect safePartOfPaper(const UIWindow& window, const CGRect& paper) {
    const CGRect safe = CGRectIntersection(safeArea(window), paper);
    return (safe.isEmpty() ? paper : safe).offsetBy(CGPoint() - paper.origin);
}

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
