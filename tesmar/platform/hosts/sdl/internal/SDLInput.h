// Passes SDL's mouse, finger, wheel, key and game controller events to a UIWindow.
#pragma once

#include "tesmar/platform/hosts/sdl/SDLHost.h"
#include "tesmar/platform/hosts/sdl/internal/SDLControllers.h"

#include <SDL.h>

#include <functional>
#include <map>
#include <type_traits>
#include <utility>

namespace tesmar {

// Calls `callback`, if it is set, through a copy: the call may replace or remove it.
template <class... Arguments>
void callCopy(std::function<void(Arguments...)> callback,
              const std::type_identity_t<Arguments>&... arguments) {
    if (callback)
        callback(arguments...);
}

class SDLInput {
  public:
    explicit SDLInput(UIWindow& window) : window_(window) {}

    void useControllers();
    // Sets the window's size in the units of mouse positions.
    void setUnits(CGSize units) { units_ = units; }
    // `time` of the event, in seconds on the host's clock. Returns whether the event is the
    // window's, not the application's.
    bool handle(const SDL_Event& event, double time);
    // Cancels the touches of all fingers that are down, and ignores their further events. Ends the
    // repetition of a controller's button that is held.
    void releaseAll(double time);

    std::function<void(const SDLHost::Key&)> onKey;
    std::function<void(CGPoint)> onTap;

  private:
    using TouchName = std::pair<SDL_TouchID, SDL_FingerID>;
    struct Touch {
        std::int64_t id; // for the window
        CGPoint start;
        bool taken; // by the window
        bool moved;
    };

    CGPoint pointOfMouse(CGPoint position) const;
    CGPoint pointOfFinger(const SDL_TouchFingerEvent& finger) const;
    bool echoIsTaken(const SDL_Event& event);
    bool touchDown(TouchName name, CGPoint point, double time);
    bool touchMoved(TouchName name, CGPoint point, double time);
    bool touchUp(TouchName name, CGPoint point, double time);
    bool moveMouse(CGPoint point, double time);
    bool releaseMouse(CGPoint point, double time);
    bool keyDown(const SDL_KeyboardEvent& key, double time);
    bool pass(std::optional<UIKey> key, const std::string& name, UIKeyRepeat repeat, double time);

    UIWindow& window_;
    CGSize units_{1, 1};
    std::map<TouchName, Touch> touches_;
    std::int64_t lastId_ = 0;
    std::unique_ptr<SDLControllers> controllers_; // null while they are ignored
};

} // namespace tesmar
