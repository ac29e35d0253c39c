// The interface between a host and the module that connects it with the desktop's screen readers.
// The host loads the module at run time, so neither links the other: all of this is virtual
// functions and plain data.
#pragma once

#include "tesmar/platform/ui/UIAccessibility.h"

#include <vector>

namespace tesmar {

// What the module needs of the host. Main thread only, except wakeUp().
class AccessibilitySource {
  public:
    virtual ~AccessibilitySource() = default;

    virtual std::vector<UIAccessibleElement> tree() = 0;
    virtual bool perform(std::string_view identifier, UIAccessibleAction action) = 0;
    // See UIWindow::moveFocus.
    virtual bool moveFocus(std::string_view identifier) = 0;
    // Notifies the bridge of what has changed (see UIWindow::updateAccessibility).
    virtual void update() = 0;
    // The title and the content of the window on the screen, in the window system's units.
    virtual std::string title() = 0;
    virtual CGRect screenFrame() = 0;
    // Those units for each point.
    virtual CGFloat unitsPerPoint() = 0;
    // Has the host call turn() soon. Any thread.
    virtual void wakeUp() = 0;
};

// Connects on construction, disconnects on destruction.
class AccessibilityBridge : public UIAccessibilityObserver {
  public:
    // Handles the requests of screen readers and notifies them. To be called in every turn of the
    // host's loop; passes on exceptions of the source.
    virtual void turn() = 0;
    virtual void setActive(bool windowHasFocus) = 0;
};

// The function of the module: makes a bridge that the caller owns, or returns null when there is
// nothing to connect with. `source` must outlive the bridge. The number changes with this file.
using MakeAccessibilityBridge = AccessibilityBridge* (*)(AccessibilitySource& source);
inline constexpr const char* kMakeAccessibilityBridge = "tesmar_make_accessibility_bridge_2";

// The function of the other module: whether an assistive technology is running.
using AssistiveTechnologyRuns = bool (*)();
inline constexpr const char* kAssistiveTechnologyRuns = "tesmar_assistive_technology_runs_1";

} // namespace tesmar
