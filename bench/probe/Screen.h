// The interface to the host that the probe measures: headless or with a desktop window. Lengths are
// in points, times in seconds.
#pragma once

#include "tesmar/platform/ui/UIWindow.h"

#include <memory>

class Screen {
  public:
    virtual ~Screen() = default;
    virtual tesmar::Ref<tesmar::UIWindow> window() = 0;
    // The clock of the events' timestamps.
    virtual double now() = 0;
    // Renders one frame into pixels, repainting only what has changed.
    virtual void show() = 0;
    virtual void resize(tesmar::CGSize size) = 0;
    // Lets time pass until no timer or animation is pending.
    virtual void settle() = 0;
    // Waits this long as a host does, sleeping until the next deadline; returns the number of
    // wakeups.
    virtual int idle(double seconds) = 0;
};

std::unique_ptr<Screen> makeHeadlessScreen(tesmar::CGSize size);

// In the module probe_sdl.so beside the program: the headless figures must not include SDL. The
// caller owns the result.
extern "C" Screen* makeSDLScreen(tesmar::CGSize size);
