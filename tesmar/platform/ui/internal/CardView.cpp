#include "tesmar/platform/ui/internal/CardView.h"

#include "tesmar/platform/graphics/CGContext.h"
#include "tesmar/platform/graphics/UIGraphics.h"
#include "tesmar/platform/ui/UIScrollView.h"
#include "tesmar/platform/ui/UIWindow.h"

#include <algorithm>
#include <array>

namespace tesmar {
namespace {

constexpr CGFloat kShadowBlur = 16;
constexpr CGPoint kShadowOffset{0, 4};
// Between the card and the edges of what it may cover, in points.
constexpr CGFloat kMargin = 8;
// A card smaller than this is no use: rather than shrink further it covers the captions.
constexpr CGSize kUsable{300, 180};

UIScrollView* scrollViewIn(UIView& view) {
    for (const auto& child : view.subviews()) {
        if (auto* scroll = dynamic_cast<UIScrollView*>(child.get()))
            return scroll;
        if (auto* scroll = scrollViewIn(*child))
            return scroll;
    }
    return nullptr;
}

// What the content would like: all of its scrolled part visible, and not a point more.
CGSize wishedSize(UIView& content, CGSize room) {
    const CGRect before = content.frame();
    content.setFrame({before.origin, room});
    content.layoutIfNeeded();
    const UIScrollView* const scroll = scrollViewIn(content);
    if (!scroll)
        return room;
    // The layout may have come through here again and given the content its size: what stands
    // around the scrolled part is measured by the size that it has now.
    const CGSize laidOut = content.frame().size;
    const CGSize shown = scroll->frame().size;
    const CGSize inside = scroll->contentSize();
    return {std::min(room.width, laidOut.width - shown.width + inside.width),
            std::min(room.height, laidOut.height - shown.height + inside.height)};
}

// The parts of `room` beside `hole`: above, below, left and right of it.
std::array<CGRect, 4> around(const CGRect& room, const CGRect& hole) {
    const auto between = [](CGFloat x, CGFloat y, CGFloat right, CGFloat bottom) {
        return CGRect{x, y, std::max(0.0, right - x), std::max(0.0, bottom - y)};
    };
    return {between(room.minX(), room.minY(), room.maxX(), std::min(room.maxY(), hole.minY())),
            between(room.minX(), std::max(room.minY(), hole.maxY()), room.maxX(), room.maxY()),
            between(room.minX(), room.minY(), std::min(room.maxX(), hole.minX()), room.maxY()),
            between(std::max(room.minX(), hole.maxX()), room.minY(), room.maxX(), room.maxY())};
}

CGFloat usableArea(const CGRect& part, CGSize wish) {
    return std::min(part.size.width, wish.width) * std::min(part.size.height, wish.height);
}

CGRect centred(const CGRect& part, CGSize wish) {
    const CGSize size{std::min(wish.width, part.size.width),
                      std::min(wish.height, part.size.height)};
    // Whole points: the panel's own edges stay sharp at scale 1.
    return {std::floor(part.midX() - size.width / 2), std::floor(part.midY() - size.height / 2),
            size.width, size.height};
}

// Where the card may stand: all of the room, as long as it covers no caption there.
CGRect bestPart(const CGRect& room, const CGRect& captions, CGSize wish) {
    const CGRect clear = CGRectInset(captions, -kMargin, -kMargin);
    if (CGRectIntersection(clear, centred(room, wish)).isEmpty())
        return room;
    CGRect best;
    for (const CGRect& part : around(room, clear))
        if (usableArea(part, wish) > usableArea(best, wish))
            best = part;
    const bool enough = best.size.width >= std::min(kUsable.width, room.size.width) &&
                        best.size.height >= std::min(kUsable.height, room.size.height);
    return enough ? best : room;
}

} // namespace

CGRect cardFrame(const UIWindow& window, UIView& content, std::optional<CardWish>& known) {
    const CGRect safe = CGRectInset(window.bounds(), window.safeAreaInsets());
    const CGRect surface = safe.isEmpty() ? window.bounds() : safe;
    const CGRect inset = CGRectInset(surface, kMargin, kMargin);
    const CGRect room = inset.isEmpty() ? surface : inset;
    if (!known || known->room != room.size || known->layoutChanges != content.layoutChanges()) {
        const CGSize size = wishedSize(content, room.size);
        known = {room.size, content.layoutChanges(), size};
    }
    const CGSize wish = known->size;

    const auto captions = window.captionArea();
    return centred(captions ? bestPart(room, *captions, wish) : room, wish);
}

void CardView::draw(CGRect) {
    CGContext* const context = UIGraphicsGetCurrentContext();
    if (!context)
        return;
    static const auto paper = UIColor::colorWithWhite(0.97, 0.97);
    static const auto shade = UIColor::colorWithWhite(0, 0.45);
    context->drawShadow(bounds(), kCornerRadius, kShadowBlur, kShadowOffset, *shade);
    context->setFillColor(*paper);
    context->fillRoundedRect(bounds(), kCornerRadius);
}

UIEdgeInsets CardView::drawingOverflow() const {
    const CGFloat reach = kShadowBlur + 1; // and a point for rounding to pixels
    return {reach - kShadowOffset.y, reach, reach + kShadowOffset.y, reach};
}

} // namespace tesmar
