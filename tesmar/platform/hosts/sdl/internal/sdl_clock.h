// The clock of the hosts for SDL: the system's monotonic one, in seconds.
#pragma once

#include "tesmar/platform/foundation/NSRunLoop.h"

#include <SDL.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <limits>

namespace tesmar {

inline double sdlClock() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

// The event's time on that clock. SDL's own clock counts milliseconds and wraps.
inline double sdlTimeOf(const SDL_Event& event) {
    return sdlClock() - static_cast<double>(SDL_GetTicks() - event.common.timestamp) / 1000;
}

// For SDL to wait; not negative, which means for ever.
inline int sdlMilliseconds(double seconds) {
    const double whole = std::ceil(seconds * 1000);
    return static_cast<int>(std::clamp(whole, 0.0, double(std::numeric_limits<int>::max())));
}

// Motion then has the rate of the window's display, where that is known.
inline void followDisplayRate(SDL_Window& window) {
    SDL_DisplayMode mode{};
    const int display = SDL_GetWindowDisplayIndex(&window);
    if (display >= 0 && SDL_GetCurrentDisplayMode(display, &mode) == 0 && mode.refresh_rate > 0)
        NSRunLoop::mainRunLoop().setFrameInterval(1.0 / mode.refresh_rate);
}

} // namespace tesmar
