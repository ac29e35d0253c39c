// Turns the buttons and sticks of game controllers into key presses, which repeat while held.
#pragma once

#include "tesmar/platform/ui/UIKey.h"

#include <SDL.h>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

namespace tesmar {

class SDLControllers {
  public:
    // A press, or a repetition of it. `key` is what the button means to a window, if anything;
    // `name` is the button's as SDL names it; sticks count as the directional pad. `time` in
    // seconds on the host's clock.
    using Handler = std::function<void(std::optional<UIKey> key, const std::string& name,
                                       UIKeyRepeat repeat, double time)>;

    // Initialises SDL's game controllers; without them there is a diagnostic and nothing else.
    explicit SDLControllers(Handler handler);
    ~SDLControllers();
    SDLControllers(const SDLControllers&) = delete;
    SDLControllers& operator=(const SDLControllers&) = delete;

    // Also opens controllers that are plugged in, and closes those that are removed.
    void handle(const SDL_Event& event, double time);
    // Ends the repetition of the button that is held.
    void release();

  private:
    struct Close {
        void operator()(SDL_GameController* device) const { SDL_GameControllerClose(device); }
    };
    struct Controller {
        std::unique_ptr<SDL_GameController, Close> device;
        double x = 0; // of the left stick, -1 to 1
        double y = 0;
        std::optional<SDL_GameControllerButton> direction; // that the stick is held in
    };

    void press(SDL_GameControllerButton button, double time);
    void releaseButton(SDL_GameControllerButton button);
    void moveStick(Controller& controller, const SDL_ControllerAxisEvent& event, double time);
    void repeatLater();

    Handler handler_;
    bool isInitialised_ = false;
    std::map<SDL_JoystickID, Controller> controllers_;
    std::optional<SDL_GameControllerButton> held_;
    std::uint64_t repeatTimer_ = 0;
};

} // namespace tesmar
