#include "tesmar/platform/ui/internal/CardPlace.h"

#include "tesmar/platform/graphics/CGContext.h"
#include "tesmar/platform/ui/UIViewController.h"
#include "tesmar/platform/ui/UIWindow.h"

#include <utility>

namespace tesmar {
namespace {

constexpr double kMove = 0.20; // seconds

// The controller measures its view as it is laid out in all of the room.
CGSize preferredSize(UIViewController& controller, CGSize room) {
    const auto content = controller.view();
    content->setFrame({content->frame().origin, room});
    content->layoutIfNeeded();
    return preferredSizeIn(room, controller.preferredContentSize().value_or(room));
}

// On whole pixels, so that the content's edges stay sharp.
CGRect between(const CGRect& a, const CGRect& b, double progress, CGFloat scale) {
    const auto mix = [progress](CGFloat x, CGFloat y) { return x + (y - x) * progress; };
    const PixelRect p =
        snappedToPixels({mix(a.minX(), b.minX()), mix(a.minY(), b.minY()),
                         mix(a.size.width, b.size.width), mix(a.size.height, b.size.height)},
                        scale);
    return {p.x / scale, p.y / scale, p.width / scale, p.height / scale};
}

} // namespace

CardPlace::CardPlace(const UIWindow& window, std::function<void()> onMove,
                     std::function<bool()> isSeen)
    : window_(window), progress_(1, std::move(onMove), std::move(isSeen)) {}

CGSize CardPlace::measured(UIViewController& controller, CGSize room) {
    const auto content = controller.view();
    if (!measured_ || measured_->room != room ||
        measured_->layoutChanges != content->layoutChanges()) {
        const CGSize size = preferredSize(controller, room);
        measured_ = {room, content->layoutChanges(), size};
    }
    return measured_->size;
}

void CardPlace::update(UIViewController& controller) {
    const CGRect room = cardRoom(window_);
    const CardSurroundings now{room, measured(controller, room.size), window_.avoidedArea()};
    if (around_ == now)
        return;
    const auto before = std::exchange(around_, now);
    const bool moves =
        wasSeen_ && before && before->room == now.room && before->size.width == now.size.width;
    const auto below = moves ? cardFrameBelow(to_.minY(), now) : std::nullopt;
    const CGRect target = below.value_or(cardFrame(now));
    if (moves && target == to_)
        return;
    wasSeen_ = moves;
    from_ = moves ? frame() : target;
    to_ = target;
    progress_.jumpTo(moves ? 0 : 1);
    progress_.moveTo(1, kMove);
}

CGRect CardPlace::frame() const {
    const double progress = progress_.value();
    return progress >= 1 ? to_ : between(from_, to_, progress, window_.scale());
}

} // namespace tesmar
