#include "tesmar/platform/ui/internal/presented_frames.h"

#include "tesmar/platform/ui/UIWindow.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace tesmar {
namespace {

// Points.
constexpr CGFloat kMargin = 8; // around the card
// Rather than become smaller than this, a card covers the captions.
constexpr CGSize kUsable{300, 180};

CGRect safeArea(const UIWindow& window) {
    const CGRect safe = CGRectInset(window.bounds(), window.safeAreaInsets());
    return safe.isEmpty() ? window.bounds() : safe;
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

bool isEnough(const CGRect& part, CGSize size) {
    return part.size.width >= std::min(kUsable.width, size.width) &&
           part.size.height >= std::min(kUsable.height, size.height);
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

CGRect withMargin(const CGRect& captions) {
    return CGRectInset(captions, -kMargin, -kMargin);
}

// The part of the room to centre the card in: all of it unless the card would cover captions there.
CGRect bestPart(const CardSurroundings& c) {
    if (!c.captions)
        return c.room;
    const CGRect clear = withMargin(*c.captions);
    if (CGRectIntersection(clear, centred(c.room, c.size)).isEmpty())
        return c.room;
    CGRect best;
    for (const CGRect& part : around(c.room, clear))
        if (isEnough(part, c.size) && usableArea(part, c.size) > usableArea(best, c.size))
            best = part;
    return best.isEmpty() ? c.room : best;
}

} // namespace

CGRect cardRoom(const UIWindow& window) {
    const CGRect surface = safeArea(window);
    const CGRect inset = CGRectInset(surface, kMargin, kMargin);
    return inset.isEmpty() ? surface : inset;
}

CGSize preferredSizeIn(CGSize room, CGSize preferred) {
    return {finite(preferred.width, 0, room.width, room.width),
            finite(preferred.height, 0, room.height, room.height)};
}

CGRect cardFrame(const CardSurroundings& around) {
    return centred(bestPart(around), around.size);
}

std::optional<CGRect> cardFrameBelow(CGFloat top, const CardSurroundings& around) {
    CGRect frame = centred(around.room, around.size);
    frame.origin.y = top;
    if (frame.maxY() > around.room.maxY())
        return std::nullopt;
    if (!around.captions)
        return frame;
    const CGRect clear = withMargin(*around.captions);
    if (CGRectIntersection(clear, frame).isEmpty())
        return frame;
    frame.size.height = clear.minY() - top;
    return isEnough(frame, around.size) ? std::optional(frame) : std::nullopt;
}

CGRect paperFrame(const UIWindow& window) {
    const CGRect all = window.bounds();
    return bestPart({all, all.size, window.avoidedArea()});
}

CGRect safePartOfPaper(const UIWindow& window, const CGRect& paper) {
    const CGRect safe = CGRectIntersection(safeArea(window), paper);
    return (safe.isEmpty() ? paper : safe).offsetBy(CGPoint() - paper.origin);
}

} // namespace tesmar
