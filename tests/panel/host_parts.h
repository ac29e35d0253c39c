// The parts that every simulated host uses.
#pragma once

#include "tesmar/tesmar.h"

#include <functional>

namespace tesmar {

// The exception that a simulated host throws in a callback.
struct HostError {};

// Records the calls that a host gets, those of a delegate among them. Performs `action` in the
// first call named `where`, or in every call while `where` is empty.
struct CallLog : TESMARViewControllerDelegate {
    void CCSwitchValueChanged(bool) override { record("switch"); }
    void CCStyleAttributesChanged(const Ref<NSDictionary>&) override { record("style"); }
    void CCViewControllerWillDisappear() override { record("willDisappear"); }
    void record(const std::string& call) {
        if (!calls.ends_with(call + " ")) // scrolling and drawing repeat
            calls += call + " ";
        if (action && where.empty())
            action();
        else if (action && call == where)
            std::exchange(action, {})();
    }
    std::string calls, where;
    std::function<void()> action;
};

// The centre of the view of that name, in the window; a point outside when there is none.
inline CGPoint centerOf(UIWindow& window, const char* identifier) {
    const UIView* const view = window.viewWithIdentifier(identifier);
    return view ? view->convertRectTo(view->bounds(), nullptr).center() : CGPoint{-99, -99};
}

} // namespace tesmar
