// A window of 300 × 400 points at rest, on a host whose time the test moves. Any diagnostic that a
// test does not expect fails it.
#pragma once

#include "tesmar/platform/foundation/NSRunLoop.h"
#include "tesmar/platform/foundation/diagnostics.h"
#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/platform/graphics/CGContext.h"
#include "tesmar/platform/graphics/UIGraphics.h"
#include "tesmar/platform/graphics/UIImage.h"
#include "tesmar/platform/hosts/headless/HeadlessHost.h"
#include "tesmar/platform/ui/Motion.h"

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>

namespace tesmar {

// Logs the messages that it gets.
class Listener : public NSObject {
    TESMAR_CLASS

  public:
    void changed() { log += "changed "; }
    void down() { log += "down "; }
    void up() { log += "up ", afterUp(); }
    void outside() { log += "outside "; }
    void cancelled() { log += "cancelled ", afterCancelled(); }
    std::string take() { return std::exchange(log, {}); }

    std::string log;
    std::function<void()> afterUp = [] {}, afterCancelled = [] {};
};

using Rects = std::vector<PixelRect>;

inline Ref<UIImage> imageOf(CGFloat width, CGFloat height) {
    UIGraphicsBeginImageContextWithOptions({width, height}, true, 1);
    UIGraphicsGetCurrentContext()->setFillColor(*UIColor::cyanColor());
    UIGraphicsGetCurrentContext()->fillRect({0, 0, width, height});
    auto image = UIGraphicsGetImageFromCurrentImageContext();
    UIGraphicsEndImageContext();
    return image;
}

class UITest : public testing::Test {
  protected:
    UITest() {
        setDiagnosticHandler([](std::string_view m) { ADD_FAILURE() << "diagnostic: " << m; });
        setMotionSetting(MotionSetting::full);
    }
    ~UITest() override { setDiagnosticHandler({}); }

    UIView& root() { return *host.window()->rootViewController()->view(); }
    template <class T>
    Ref<T> add(CGRect frame) {
        auto view = makeWith<T>(&T::initWithFrame, frame);
        view->setFrame(frame);
        root().addSubview(view);
        return view;
    }

    std::vector<std::uint32_t> picture() {
        host.render();
        return {host.pixels().begin(), host.pixels().end()};
    }
    // Renders, and returns what was out of date, from left to right.
    Rects damage() {
        const auto rects = host.render();
        Rects sorted(rects.begin(), rects.end());
        std::ranges::sort(sorted, {}, [](const PixelRect& r) { return std::pair(r.x, r.y); });
        return sorted;
    }

    HeadlessHost host{{300, 400}};
    Ref<Listener> listener = make<Listener>();
};

} // namespace tesmar
