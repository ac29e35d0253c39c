// Change over time, in the host's time.
#pragma once

#include "tesmar/platform/foundation/NSRunLoop.h"

#include <functional>

namespace tesmar {

// The one setting that turns motion off for the whole process, as for viewers who cannot bear it:
// whatever would move lands at once.
enum class MotionSetting { full, reduced };
TESMAR_API MotionSetting motionSetting();
TESMAR_API void setMotionSetting(MotionSetting setting);

// A number on its way from one value to another along an ease-out curve. It costs nothing while it
// stands. `onChange` is called after every change, `onArrival` once at the end of a way that was
// not broken off; either may start another way or destroy the transition's owner.
class Transition {
  public:
    Transition(double value, std::function<void()> onChange);
    ~Transition();
    Transition(const Transition&) = delete;
    Transition& operator=(const Transition&) = delete;

    double value() const { return value_; }
    double target() const { return target_; }
    bool isMoving() const { return client_ != nullptr; }

    // Stands at `value` from now on.
    void jumpTo(double value);
    // Sets off from the present value, wherever that is.
    void moveTo(double target, double seconds, std::function<void()> onArrival = {});

  private:
    class Client;

    bool setOff();

    double value_;
    double from_;
    double target_;
    double start_ = 0;
    double seconds_ = 0;
    std::function<void()> onChange_;
    std::function<void()> onArrival_;
    Ref<Client> client_;
};

} // namespace tesmar
