#include "tesmar/platform/ui/internal/Transition.h"

#include "tesmar/platform/foundation/NSRunLoop.h"
#include "tesmar/platform/geometry/geometry.h"
#include "tesmar/platform/ui/Motion.h"

#include <algorithm>
#include <new>
#include <utility>

namespace tesmar {
namespace {

double easeOut(double progress) {
    const double left = 1 - progress;
    return 1 - left * left * left;
}

} // namespace

Transition::Transition(double value, std::function<void()> onChange, std::function<bool()> isSeen)
    : value_(value), from_(value), target_(value), onChange_(std::move(onChange)),
      isSeen_(std::move(isSeen)) {}

bool Transition::mayMove() const {
    return motionSetting() == MotionSetting::full && (!isSeen_ || isSeen_());
}

void Transition::jumpTo(double value) {
    frames_.stop();
    onArrival_ = {};
    target_ = value;
    if (std::exchange(value_, value) != value)
        onChange_();
}

void Transition::moveTo(double target, double seconds, std::function<void()> onArrival) {
    const bool moves = target != value_ && seconds > 0 && mayMove() && startFrames();
    if (!moves) {
        jumpTo(target);
        if (onArrival)
            onArrival();
        return;
    }
    from_ = value_;
    target_ = target;
    start_ = NSRunLoop::mainRunLoop().now();
    isFirstFrame_ = true;
    seconds_ = seconds;
    onArrival_ = std::move(onArrival);
}

bool Transition::startFrames() {
    try {
        frames_.start([this](double now) { step(now); });
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

void Transition::step(double now) {
    if (std::exchange(isFirstFrame_, false))
        start_ = std::max(start_, now - NSRunLoop::mainRunLoop().frameInterval());
    const double progress = mayMove() ? finite((now - start_) / seconds_, 0, 1, 1) : 1;
    value_ = progress >= 1 ? target_ : from_ + (target_ - from_) * easeOut(progress);
    if (progress < 1) {
        onChange_();
        return;
    }
    // At rest before the callbacks run: they may start another move or destroy this.
    const auto changed = onChange_;
    const auto arrived = std::exchange(onArrival_, {});
    frames_.stop();
    changed();
    if (arrived)
        arrived();
}

} // namespace tesmar
