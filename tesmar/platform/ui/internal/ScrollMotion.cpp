#include "tesmar/platform/ui/internal/ScrollMotion.h"

#include <algorithm>
#include <cmath>

namespace tesmar {
namespace {

constexpr double kRubberStiffness = 0.55;
// Motion ends below this speed and, on a spring, within this distance of its end.
constexpr double kSlowest = 10;   // points per second
constexpr double kNearest = 0.25; // points
// Natural frequencies of the critically damped spring, per second.
constexpr double kCalmSpring = 12;
constexpr double kBriskSpring = 75;
// Faster than any finger. Points per second.
constexpr double kFastest = 20000;

// Change of the logarithm of the speed, per second.
const double kLogRate = std::log(ScrollMotion::kDecelerationRate) * 1000;

} // namespace

double ScrollMotion::rubberBand(double overshoot, double extent) {
    if (!(overshoot > 0) || !(extent > 0))
        return 0;
    return (1 - 1 / (overshoot * kRubberStiffness / extent + 1)) * extent;
}

double ScrollMotion::inverseRubberBand(double stretch) const {
    const double part = std::min(stretch / std::max(extent_, 1.0), 0.999);
    return (1 / (1 - part) - 1) * std::max(extent_, 1.0) / kRubberStiffness;
}

void ScrollMotion::setRange(double lowest, double highest) {
    lowest_ = lowest;
    highest_ = std::max(lowest, highest);
}

double ScrollMotion::nearestRest(double offset) const {
    return std::clamp(offset, lowest_, highest_);
}

void ScrollMotion::jumpTo(double offset) {
    moving_ = false;
    offset_ = offset;
}

void ScrollMotion::beginDrag() {
    moving_ = false;
    const double rest = nearestRest(offset_);
    dragOrigin_ = offset_ < rest   ? rest - inverseRubberBand(rest - offset_)
                  : offset_ > rest ? rest + inverseRubberBand(offset_ - rest)
                                   : offset_;
}

void ScrollMotion::dragBy(double distance) {
    const double wanted = dragOrigin_ + distance;
    const double rest = nearestRest(wanted);
    offset_ = !bounces_       ? rest
              : wanted < rest ? rest - rubberBand(rest - wanted, extent_)
              : wanted > rest ? rest + rubberBand(wanted - rest, extent_)
                              : wanted;
}

double ScrollMotion::usable(double velocity) const {
    return std::isfinite(velocity) ? std::clamp(velocity, -kFastest, kFastest) : 0;
}

void ScrollMotion::endDragAt(double offset, double velocity, double now) {
    const double target = nearestRest(offset);
    if (target == offset_)
        jumpTo(target);
    else
        springFrom(now, usable(velocity), target);
}

void ScrollMotion::endDrag(double velocity, double now) {
    velocity = usable(velocity);
    const double rest = nearestRest(offset_);
    if (offset_ != rest) {
        springFrom(now, velocity, rest);
        return;
    }
    moving_ = std::abs(velocity) >= kSlowest && highest_ > lowest_;
    mode_ = Mode::decelerating;
    startTime_ = now;
    startOffset_ = offset_;
    startVelocity_ = velocity;
}

void ScrollMotion::moveTo(double offset, double now, Pace pace) {
    const bool isUnderWay = moving_ && mode_ == Mode::springing;
    springFrom(now, isUnderWay ? speed_ : 0, nearestRest(offset), pace);
}

void ScrollMotion::springFrom(double now, double velocity, double target, Pace pace) {
    moving_ = true;
    mode_ = Mode::springing;
    startTime_ = now;
    startOffset_ = offset_;
    startVelocity_ = speed_ = velocity;
    target_ = target;
    spring_ = pace == Pace::brisk ? kBriskSpring : kCalmSpring;
}

void ScrollMotion::delayStart(double time) {
    startTime_ = std::max(startTime_, time);
}

bool ScrollMotion::step(double now) {
    if (!moving_)
        return false;
    const double t = std::max(0.0, now - startTime_);
    if (mode_ == Mode::springing) {
        const double away = startOffset_ - target_;
        const double decay = std::exp(-spring_ * t);
        const double slope = startVelocity_ + spring_ * away;
        offset_ = target_ + (away + slope * t) * decay;
        speed_ = (slope - spring_ * (away + slope * t)) * decay;
        if (!bounces_ && nearestRest(startOffset_) == startOffset_)
            offset_ = nearestRest(offset_);
        if (std::abs(offset_ - target_) < kNearest && std::abs(speed_) < kSlowest) {
            offset_ = target_;
            moving_ = false;
        }
        return moving_;
    }
    const double left = std::exp(kLogRate * t);
    offset_ = startOffset_ + startVelocity_ * (left - 1) / kLogRate;
    const double rest = nearestRest(offset_);
    if (offset_ != rest) {
        // It reached an end in between: a spring takes over there, at the speed that it had then.
        const double reached =
            std::log1p((rest - startOffset_) * kLogRate / startVelocity_) / kLogRate;
        offset_ = rest;
        if (!bounces_) {
            moving_ = false;
            return false;
        }
        springFrom(startTime_ + reached, startVelocity_ * std::exp(kLogRate * reached), rest);
        return step(now);
    }
    moving_ = std::abs(startVelocity_) * left >= kSlowest;
    return moving_;
}

} // namespace tesmar
