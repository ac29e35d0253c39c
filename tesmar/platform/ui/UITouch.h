// One finger (or the mouse button) from its landing to its lift. Lives as long as the touch; views
// must not keep it.
#pragma once

#include "tesmar/platform/foundation/export.h"
#include "tesmar/platform/geometry/geometry.h"

#include <algorithm>
#include <cstdint>

namespace tesmar {

class UIView;

enum class UITouchPhase { began, moved, ended, cancelled };
// What touches: a mouse points exactly, a finger does not.
enum class UITouchSource { finger, mouse };

class TESMAR_API UITouch {
  public:
    UITouch(std::int64_t id, CGPoint point, double time,
            UITouchSource source = UITouchSource::finger)
        : id_(id), start_(point), point_(point), time_(time), source_(source) {}

    // The host's identifier of the finger.
    std::int64_t id() const { return id_; }
    // In window coordinates, points.
    CGPoint location() const { return point_; }
    CGPoint startLocation() const { return start_; }
    // In the bounds coordinates of `view`.
    CGPoint locationIn(const UIView& view) const;
    UITouchSource source() const { return source_; }
    // How far outside a control, in points, a touch that is down still counts as on it.
    CGFloat trackingMargin() const { return source_ == UITouchSource::mouse ? 10 : 70; }
    // Time of the last event, in seconds on the host's clock; never goes back.
    double timestamp() const { return time_; }

    void moveTo(CGPoint point, double time) {
        point_ = point;
        time_ = std::max(time_, time);
    }

  private:
    std::int64_t id_;
    CGPoint start_;
    CGPoint point_;
    double time_;
    UITouchSource source_;
};

} // namespace tesmar
