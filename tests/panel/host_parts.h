// What every simulated host is made of.
#pragma once

#include "tesmar/tesmar.h"

#include <functional>

namespace tesmar {

// An exception of the host's own, thrown in a callback.
struct HostError {};

// Passes the name of every notification on.
struct HostDelegate : TESMARViewControllerDelegate {
    void CCSwitchValueChanged(bool) override { notify("switch"); }
    void CCStyleAttributesChanged(const Ref<NSDictionary>&) override { notify("style"); }
    void CCViewControllerWillDisappear() override { notify("willDisappear"); }
    std::function<void(const char*)> notify = [](const char*) {};
};

// The centre of the view of that name, in the window; a point outside when there is none.
inline CGPoint centerOf(UIWindow& window, const char* identifier) {
    const UIView* const view = window.viewWithIdentifier(identifier);
    return view ? view->convertRectTo(view->bounds(), nullptr).center() : CGPoint{-99, -99};
}

} // namespace tesmar
