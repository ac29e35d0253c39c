// The subscription of a function to the events of a control.
//
// Toolkit: may change with any version.
#pragma once

#include "tesmar/platform/foundation/NSObject.h"

#include <functional>

namespace tesmar {

class UIControl;

// Returned by UIControl::addListener(). Destroying it, or assigning another to it, unsubscribes the
// function, which may do so itself; the function is then destroyed, at the latest when it returns.
// It may outlive the control. Main thread only.
class TESMAR_API UIControlListener {
  public:
    // Without a function.
    UIControlListener() = default;
    ~UIControlListener();
    UIControlListener(UIControlListener&&) noexcept = default;
    UIControlListener& operator=(UIControlListener&& other) noexcept;

  private:
    friend class UIControl;
    explicit UIControlListener(std::function<void(UIControl&)> function);

    Ref<NSObject> target_; // an internal target of the control
};

} // namespace tesmar
