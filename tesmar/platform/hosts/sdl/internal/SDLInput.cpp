#include "tesmar/platform/hosts/sdl/internal/SDLInput.h"

#include <algorithm>
#include <cmath>

namespace tesmar {
namespace {

constexpr CGFloat kTapSlack = 10; // points that a finger may move in a tap

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

// What a key of the keypad means without Num Lock, as on many remotes.
SDL_Keycode withoutNumLock(SDL_Keycode key) {
    switch (key) {
    case SDLK_KP_8:
        return SDLK_UP;
    case SDLK_KP_2:
        return SDLK_DOWN;
    case SDLK_KP_4:
        return SDLK_LEFT;
    case SDLK_KP_6:
        return SDLK_RIGHT;
    case SDLK_KP_7:
        return SDLK_HOME;
    case SDLK_KP_1:
        return SDLK_END;
    default:
        return key;
    }
}

std::optional<UIKey> keyOf(const SDL_Keysym& key) {
    switch (key.mod & KMOD_NUM ? key.sym : withoutNumLock(key.sym)) {
    case SDLK_UP:
        return UIKey::up;
    case SDLK_DOWN:
        return UIKey::down;
    case SDLK_LEFT:
        return UIKey::left;
    case SDLK_RIGHT:
        return UIKey::right;
    case SDLK_TAB:
        return key.mod & KMOD_SHIFT ? UIKey::previous : UIKey::next;
    case SDLK_RETURN:
    case SDLK_KP_ENTER:
    case SDLK_SELECT:
    case SDLK_SPACE:
        return UIKey::select;
    case SDLK_ESCAPE:
    case SDLK_AC_BACK:
        return UIKey::back;
    case SDLK_PLUS:
    case SDLK_KP_PLUS:
    case SDLK_EQUALS: // plus with Shift, on many keyboards
        return UIKey::increment;
    case SDLK_MINUS:
    case SDLK_KP_MINUS:
        return UIKey::decrement;
    case SDLK_HOME:
        return UIKey::first;
    case SDLK_END:
        return UIKey::last;
    default:
        return std::nullopt;
    }
}

// In points; with Shift, a wheel that turns up and down scrolls sideways.
CGPoint wheelDelta(const SDL_MouseWheelEvent& wheel) {
    const CGPoint delta{-UIWindow::kWheelNotch * CGFloat(wheel.preciseX),
                        UIWindow::kWheelNotch * CGFloat(wheel.preciseY)};
    const bool isTurned = (SDL_GetModState() & KMOD_SHIFT) && delta.x == 0;
    return isTurned ? CGPoint{delta.y, 0} : delta;
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

// SDL sends the mouse event of a finger before the finger's own.
bool SDLInput::echoIsTaken(const SDL_Event& event) {
    const bool fingerIsTaken =
        std::ranges::any_of(touches_, [](const auto& touch) { return touch.second.taken; });
    if (fingerIsTaken || event.type != SDL_MOUSEBUTTONDOWN)
        return fingerIsTaken;
    return window_.wantsTouchAt(pointOfMouse({CGFloat(event.button.x), CGFloat(event.button.y)}));
}

bool SDLInput::handle(const SDL_Event& event, double time) {
    if (isEcho(event))
        return echoIsTaken(event);
    const auto mouse = [&](auto x, auto y) { return pointOfMouse({CGFloat(x), CGFloat(y)}); };
    const SDL_TouchFingerEvent& finger = event.tfinger;
    switch (event.type) {
    case SDL_MOUSEBUTTONDOWN:
        return event.button.button == SDL_BUTTON_LEFT &&
               touchDown(kMouse, mouse(event.button.x, event.button.y), time);
    case SDL_MOUSEMOTION:
        return moveMouse(mouse(event.motion.x, event.motion.y), time);
    case SDL_MOUSEBUTTONUP:
        return event.button.button == SDL_BUTTON_LEFT &&
               releaseMouse(mouse(event.button.x, event.button.y), time);
    case SDL_FINGERDOWN:
        return touchDown({finger.touchId, finger.fingerId}, pointOfFinger(finger), time);
    case SDL_FINGERMOTION:
        return touchMoved({finger.touchId, finger.fingerId}, pointOfFinger(finger), time);
    case SDL_FINGERUP:
        return touchUp({finger.touchId, finger.fingerId}, pointOfFinger(finger), time);
    case SDL_MOUSEWHEEL:
        return window_.wheel(mouse(event.wheel.mouseX, event.wheel.mouseY), wheelDelta(event.wheel),
                             time);
    case SDL_KEYDOWN:
        return keyDown(event.key, time);
    default:
        if (controllers_)
            controllers_->handle(event, time);
        return false;
    }
}

// --- Touches ------------------------------------------------------------------------------------

bool SDLInput::touchDown(TouchName name, CGPoint point, double time) {
    const std::int64_t id = ++lastId_;
    const auto source = name == kMouse ? UITouchSource::mouse : UITouchSource::finger;
    const bool taken = window_.touch(UITouchPhase::began, id, point, time, source);
    touches_[name] = {id, point, taken, false};
    return taken;
}

bool SDLInput::touchMoved(TouchName name, CGPoint point, double time) {
    const auto found = touches_.find(name);
    if (found == touches_.end())
        return false;
    Touch& touch = found->second;
    touch.moved = touch.moved || isApart(touch.start, point);
    return touch.taken && window_.touch(UITouchPhase::moved, touch.id, point, time);
}

bool SDLInput::touchUp(TouchName name, CGPoint point, double time) {
    const auto found = touches_.find(name);
    if (found == touches_.end())
        return false;
    const Touch touch = found->second;
    touches_.erase(found);
    if (touch.taken)
        window_.touch(UITouchPhase::ended, touch.id, point, time);
    else if (!touch.moved && !isApart(touch.start, point))
        callCopy(onTap, point);
    return touch.taken;
}

// Handlers of the touch may destroy the host.
bool SDLInput::moveMouse(CGPoint point, double time) {
    const auto window = refTo(&window_);
    const bool isTaken = touchMoved(kMouse, point, time);
    window->hover(point);
    return isTaken;
}

bool SDLInput::releaseMouse(CGPoint point, double time) {
    const auto window = refTo(&window_);
    const bool isTaken = touchUp(kMouse, point, time);
    window->hover(point);
    return isTaken;
}

void SDLInput::releaseAll(double time) {
    touches_.clear();
    if (controllers_)
        controllers_->release();
    window_.cancelTouches(time);
}

// --- Keys ---------------------------------------------------------------------------------------

void SDLInput::useControllers() {
    controllers_ = std::make_unique<SDLControllers>(
        [this](std::optional<UIKey> key, const std::string& name, UIKeyRepeat repeat, double time) {
            pass(key, "Controller " + name, repeat, time);
        });
}

bool SDLInput::keyDown(const SDL_KeyboardEvent& key, double time) {
    if (key.keysym.mod & (KMOD_CTRL | KMOD_ALT | KMOD_GUI))
        return false;
    return pass(keyOf(key.keysym), SDL_GetKeyName(key.keysym.sym),
                key.repeat != 0 ? UIKeyRepeat::repeated : UIKeyRepeat::pressed, time);
}

bool SDLInput::pass(std::optional<UIKey> key, const std::string& name, UIKeyRepeat repeat,
                    double time) {
    if (key && window_.key(*key, repeat, time))
        return true;
    callCopy(onKey, SDLHost::Key{name, repeat == UIKeyRepeat::repeated});
    return false;
}

} // namespace tesmar
