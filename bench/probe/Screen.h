// What the probe needs of a host, whichever it is.
#pragma once

#include "tesmar/platform/ui/UIWindow.h"

#include <memory>

class Screen {
  public:
    virtual ~Screen() = default;
    virtual tesmar::Ref<tesmar::UIWindow> window() = 0;
    // Seconds, as events are stamped with.
    virtual double now() = 0;
    // One complete frame, to the pixels; what is not out of date is not painted.
    virtual void show() = 0;
    // To another size in points.
    virtual void resize(tesmar::CGSize size) = 0;
    // Lets time pass until nothing is under way any more.
    virtual void settle() = 0;
    // Spends the seconds as a host does that sleeps until something is due; how often it woke.
    virtual int idle(double seconds) = 0;
};

std::unique_ptr<Screen> makeHeadlessScreen(tesmar::CGSize size);

// In a module of its own, probe_sdl.so beside the program: a host without SDL must not load it.
extern "C" Screen* makeSDLScreen(tesmar::CGSize size);
