// Touches that no finger makes: of keys and screen readers.
#pragma once

#include "tesmar/platform/foundation/NSRunLoop.h"
#include "tesmar/platform/foundation/internal/FirstException.h"
#include "tesmar/platform/ui/UITouch.h"
#include "tesmar/platform/ui/UIView.h"

#include <limits>

namespace tesmar {

// Touches `view` at a point of its bounds, and lifts unless `lifts`, asked in between, returns
// false: then, and after an exception, the touch is cancelled. The view must live meanwhile. Views
// compare touches by their addresses, so a host's finger of the same number is another one.
template <class Lifts>
void shortTouch(UIView& view, CGPoint point, const Lifts& lifts) {
    UITouch touch(std::numeric_limits<std::int64_t>::min(), view.convertPointTo(point, nullptr),
                  NSRunLoop::mainRunLoop().now());
    FirstException all;
    bool ends = false;
    all.run([&] {
        view.touchBegan(touch);
        ends = lifts();
    });
    all.run([&] { ends ? view.touchEnded(touch) : view.touchCancelled(touch); });
    all.rethrow();
}

} // namespace tesmar
