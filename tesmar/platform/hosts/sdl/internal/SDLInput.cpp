#include "tesmar/platform/hosts/sdl/internal/SDLInput.h"

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
        moveMouse(mouse(event.motion.x, event.motion.y), time);
        break;
    case SDL_MOUSEBUTTONUP:
        if (event.button.button == SDL_BUTTON_LEFT)
            releaseMouse(mouse(event.button.x, event.button.y), time);
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
        window_.wheel(mouse(event.wheel.mouseX, event.wheel.mouseY), wheelDelta(event.wheel), time);
        break;
    case SDL_KEYDOWN:
        keyDown(event.key, time);
        break;
    default:
        if (controllers_)
            controllers_->handle(event, time);
        break;
    }
}

// --- Touches ------------------------------------------------------------------------------------

void SDLInput::touchDown(TouchName name, CGPoint point, double time) {
    const std::int64_t id = ++lastId_;
    const auto source = name == kMouse ? UITouchSource::mouse : UITouchSource::finger;
    const bool taken = window_.touch(UITouchPhase::began, id, point, time, source);
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
    else if (!touch.moved && !isApart(touch.start, point))
        callCopy(onTap, point);
}

// Handlers of the touch may destroy the host.
void SDLInput::moveMouse(CGPoint point, double time) {
    const auto window = refTo(&window_);
    touchMoved(kMouse, point, time);
    window->hover(point);
}

void SDLInput::releaseMouse(CGPoint point, double time) {
    const auto window = refTo(&window_);
    touchUp(kMouse, point, time);
    window->hover(point);
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

void SDLInput::keyDown(const SDL_KeyboardEvent& key, double time) {
    if (key.keysym.mod & (KMOD_CTRL | KMOD_ALT | KMOD_GUI))
        return;
    pass(keyOf(key.keysym), SDL_GetKeyName(key.keysym.sym),
         key.repeat != 0 ? UIKeyRepeat::repeated : UIKeyRepeat::pressed, time);
}

void SDLInput::pass(std::optional<UIKey> key, const std::string& name, UIKeyRepeat repeat,
                    double time) {
    if (key && window_.key(*key, repeat, time))
        return;
    callCopy(onKey, SDLHost::Key{name, repeat == UIKeyRepeat::repeated});
}

} // namespace tesmar
