// A number that moves from one value to another, in the run loop's time.
#pragma once

#include "tesmar/platform/ui/internal/FrameTask.h"

#include <functional>

namespace tesmar {

// Moves along an ease-out curve; costs nothing while at rest. With reduced motion, or while
// `isSeen` returns false, every move ends at once. `onChange` is called after every change of the
// value, `onArrival` once when a move ends that was not replaced by another; either may start
// another move or destroy the transition.
class Transition {
  public:
    Transition(double value, std::function<void()> onChange, std::function<bool()> isSeen = {});
    Transition(const Transition&) = delete;
    Transition& operator=(const Transition&) = delete;

    double value() const { return value_; }
    bool isMoving() const { return frames_.isRunning(); }

    // Sets the value and ends any move, without its onArrival.
    void jumpTo(double value);
    // Starts from the present value. Lands at once when `seconds` is not positive, or when the
    // allocation for the motion fails.
    void moveTo(double target, double seconds, std::function<void()> onArrival = {});

  private:
    bool mayMove() const;
    bool startFrames();
    void step(double now);

    double value_;
    double from_;
    double target_;
    double start_ = 0;
    double seconds_ = 0;
    std::function<void()> onChange_;
    std::function<bool()> isSeen_;
    std::function<void()> onArrival_;
    FrameTask frames_;
};

} // namespace tesmar
