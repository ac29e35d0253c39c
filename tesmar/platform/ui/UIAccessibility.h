// What a screen reader or another assistive technology is told of a window: a tree of elements as
// plain data, read from the views whenever it is asked for, and the actions that it may perform.
//
// A host whose toolkit has a bridge of its own to the desktop's screen readers fills it from here:
//
//     struct Bridge : UIAccessibilityObserver {
//         void treeChanged(const Elements& tree) override { ...rebuild your nodes... }
//         void elementChanged(const UIAccessibleElement& before,
//                             const UIAccessibleElement& after) override { ...notify... }
//         void announced(std::string_view text) override { ...speak... }
//     } bridge;
//     window->setAccessibilityObserver(&bridge);
//     for (;;) {                             // the host's loop
//         ...feed events, advance the time...
//         window->updateAccessibility();     // calls the bridge for what has changed
//     }
//     // when the reader presses a button:
//     performAccessibleAction(*window, "resetButton", UIAccessibleAction::press, now);
//
// Without an observer nothing is built, kept or sent. Main thread only. All texts are UTF-8.
//
// Toolkit: may change with any version.
#pragma once

#include "tesmar/platform/foundation/export.h"
#include "tesmar/platform/geometry/geometry.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tesmar {

class UIWindow;

enum class UIAccessibleRole {
    none, // not an element: decoration, or a view that only contains others
    group,
    dialog, // a presented controller
    heading,
    text,
    button,
    onOffSwitch,
    option,     // one of several in a group, of which at most one is selected
    adjustable, // a value that is increased and decreased in steps
};

enum class UIAccessibleAction { press, decrease, increase, dismiss };

// Bits.
enum UIAccessibleState : unsigned {
    UIAccessibleStateDisabled = 1,
    UIAccessibleStateSelected = 2,
    UIAccessibleStateOn = 4,
    UIAccessibleStateFocused = 8,
    UIAccessibleStateOffscreen = 16, // clipped, for example scrolled out of view
};

// The number behind the value of an adjustable element.
struct UIAccessibleRange {
    double value = 0;
    double minimum = 0;
    double maximum = 0;
    double step = 1;
    bool operator==(const UIAccessibleRange&) const = default;
};

struct UIAccessibleElement {
    UIAccessibleRole role = UIAccessibleRole::none;
    // Unique in its window, and the same as long as the element exists: the view's
    // accessibilityIdentifier, or one made from its place in the tree.
    std::string identifier;
    std::string name;    // "Text opacity"; may be empty for a group
    std::string value{}; // "90 percent"; empty for none
    unsigned states = 0; // bits of UIAccessibleState
    std::vector<UIAccessibleAction> actions{};
    CGRect frame{}; // in the window, in points; not clipped
    // Of an option, its place in the group from 1 and the number of options; otherwise 0.
    int position = 0;
    int count = 0;
    std::optional<UIAccessibleRange> range{}; // of an adjustable element
    // In reading order: row by row from the top, each from its leading end.
    std::vector<UIAccessibleElement> children{};

    bool has(UIAccessibleState state) const { return (states & state) != 0; }
    bool offers(UIAccessibleAction action) const {
        for (const UIAccessibleAction each : actions)
            if (each == action)
                return true;
        return false;
    }
    bool operator==(const UIAccessibleElement&) const = default;
};

// The elements of the window, front controller first. Left out are hidden and transparent views,
// and what a full-screen controller covers. Lays out first; changes nothing else.
TESMAR_API std::vector<UIAccessibleElement> accessibleTree(UIWindow& window);

// Does what a tap on the control would do, with the same events and the same pressed look, whether
// or not the control can be seen. `time` in seconds on the host's clock. Returns false, and does
// nothing, when there is no such element, when it does not offer the action or is disabled, and
// while a finger is down on it.
TESMAR_API bool performAccessibleAction(UIWindow& window, std::string_view identifier,
                                        UIAccessibleAction action, double time);

// Is notified of changes by UIWindow::updateAccessibility(). A callback may perform actions, but
// must not remove the observer.
class UIAccessibilityObserver {
  public:
    using Elements = std::vector<UIAccessibleElement>;

    virtual ~UIAccessibilityObserver() = default;

    // Elements were added or removed, or are in another order. Comes first, and once at the first
    // update. `tree` is valid during the call.
    virtual void treeChanged(const Elements& tree) = 0;
    // Name, value, states, position or range of one element; changes of frames are not reported.
    // Once for each element, in reading order.
    virtual void elementChanged(const UIAccessibleElement& before,
                                const UIAccessibleElement& after) = 0;
    // A text to be spoken, in the order of UIWindow::announce().
    virtual void announced(std::string_view text) = 0;
};

} // namespace tesmar
