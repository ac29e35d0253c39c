#include "tesmar/platform/hosts/sdl/internal/SDLInput.h"

#include <cmath>

namespace tesmar {
namespace {

constexpr CGFloat kWheelNotch = 40; // points
constexpr CGFloat kTapSlack = 10;   // points that a finger may move in a tap

// The identifier of the mouse in the table of touches.
constexpr std::pair<SDL_TouchID, SDL_FingerID> kMouse{SDL_MOUSE_TOUCHID, 0};

// SDL also sends synthetic mouse events for fingers, and finger events for the mouse.
bool isEcho(const SDL_Event& event) {
    switch (event.type) {
    case SDL_MOUSEBUTTONDOWN:
    case SDL_MOUSEBUTTONUP:
        return event.button.which == SDL_TOUCH_MOUSEID;
    case SDL_MOUSEMOTION:
        return event.motion.which == SDL_TOUCH_MOUSEID;
    case SDL_FINGERDOWN:
    case SDL_FINGERMOTION:
    case SDL_FINGERUP:
        return event.tfinger.touchId == SDL_MOUSE_TOUCHID;
    default:
        return false;
    }
}

// Too far for a tap.
bool isApart(CGPoint a, CGPoint b) {
    return std::hypot(a.x - b.x, a.y - b.y) > kTapSlack;
}

} // namespace

CGPoint SDLInput::pointOfMouse(CGPoint position) const {
    const CGSize size = window_.frame().size;
    return {position.x * size.width / units_.width, position.y * size.height / units_.height};
}

CGPoint SDLInput::pointOfFinger(const SDL_TouchFingerEvent& finger) const {
    const CGSize size = window_.frame().size;
    return {finger.x * size.width, finger.y * size.height};
}

void SDLInput::handle(const SDL_Event& event, double time) {
    if (isEcho(event))
        return;
    const auto mouse = [&](auto x, auto y) { return pointOfMouse({CGFloat(x), CGFloat(y)}); };
    const SDL_TouchFingerEvent& finger = event.tfinger;
    switch (event.type) {
    case SDL_MOUSEBUTTONDOWN:
        if (event.button.button == SDL_BUTTON_LEFT)
            touchDown(kMouse, mouse(event.button.x, event.button.y), time);
        break;
    case SDL_MOUSEMOTION:
        touchMoved(kMouse, mouse(event.motion.x, event.motion.y), time);
        break;
    case SDL_MOUSEBUTTONUP:
        if (event.button.button == SDL_BUTTON_LEFT)
            touchUp(kMouse, mouse(event.button.x, event.button.y), time);
        break;
    case SDL_FINGERDOWN:
        touchDown({finger.touchId, finger.fingerId}, pointOfFinger(finger), time);
        break;
    case SDL_FINGERMOTION:
        touchMoved({finger.touchId, finger.fingerId}, pointOfFinger(finger), time);
        break;
    case SDL_FINGERUP:
        touchUp({finger.touchId, finger.fingerId}, pointOfFinger(finger), time);
        break;
    case SDL_MOUSEWHEEL:
        window_.wheel(mouse(event.wheel.mouseX, event.wheel.mouseY),
                      {-kWheelNotch * CGFloat(event.wheel.preciseX),
                       kWheelNotch * CGFloat(event.wheel.preciseY)},
                      time);
        break;
    case SDL_KEYDOWN:
        keyDown(event.key, time);
        break;
    default:
        break;
    }
}

// --- Touches ------------------------------------------------------------------------------------

void SDLInput::touchDown(TouchName name, CGPoint point, double time) {
    const std::int64_t id = ++lastId_;
    const bool taken = window_.touch(UITouchPhase::began, id, point, time);
    touches_[name] = {id, point, taken, false};
}

void SDLInput::touchMoved(TouchName name, CGPoint point, double time) {
    const auto found = touches_.find(name);
    if (found == touches_.end())
        return;
    Touch& touch = found->second;
    touch.moved = touch.moved || isApart(touch.start, point);
    if (touch.taken)
        window_.touch(UITouchPhase::moved, touch.id, point, time);
}

void SDLInput::touchUp(TouchName name, CGPoint point, double time) {
    const auto found = touches_.find(name);
    if (found == touches_.end())
        return;
    const Touch touch = found->second;
    touches_.erase(found);
    if (touch.taken)
        window_.touch(UITouchPhase::ended, touch.id, point, time);
    else if (!touch.moved && !isApart(touch.start, point) && onTap)
        onTap(point);
}

void SDLInput::forgetTouches(double time) {
    touches_.clear();
    window_.cancelTouches(time);
}

// --- Keys ---------------------------------------------------------------------------------------

void SDLInput::keyDown(const SDL_KeyboardEvent& key, double time) {
    const bool repeated = key.repeat != 0;
    if (key.keysym.sym == SDLK_ESCAPE && !repeated &&
        window_.key(UIKey::back, UIKeyRepeat::pressed, time))
        return;
    if (!onKey || (key.keysym.mod & (KMOD_CTRL | KMOD_ALT | KMOD_GUI)))
        return;
    onKey({SDL_GetKeyName(key.keysym.sym), repeated});
}

} // namespace tesmar
