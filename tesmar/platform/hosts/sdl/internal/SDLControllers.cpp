#include "tesmar/platform/hosts/sdl/internal/SDLControllers.h"

#include "tesmar/platform/foundation/NSRunLoop.h"
#include "tesmar/platform/foundation/diagnostics.h"

#include <cmath>
#include <utility>

namespace tesmar {
namespace {

// Seconds between the repetitions that are reported; the window delays the first one.
constexpr double kRepeat = 0.1;
// How far a stick is moved, of 1, to press a direction, and to release it.
constexpr double kStickOn = 0.5;
constexpr double kStickOff = 0.3;

std::optional<UIKey> keyOf(SDL_GameControllerButton button) {
    switch (button) {
    case SDL_CONTROLLER_BUTTON_DPAD_UP:
        return UIKey::up;
    case SDL_CONTROLLER_BUTTON_DPAD_DOWN:
        return UIKey::down;
    case SDL_CONTROLLER_BUTTON_DPAD_LEFT:
        return UIKey::left;
    case SDL_CONTROLLER_BUTTON_DPAD_RIGHT:
        return UIKey::right;
    case SDL_CONTROLLER_BUTTON_A:
        return UIKey::select;
    case SDL_CONTROLLER_BUTTON_B:
        return UIKey::back;
    case SDL_CONTROLLER_BUTTON_LEFTSHOULDER:
        return UIKey::decrement;
    case SDL_CONTROLLER_BUTTON_RIGHTSHOULDER:
        return UIKey::increment;
    default:
        return std::nullopt;
    }
}

bool repeatsWhileHeld(SDL_GameControllerButton button) {
    const auto key = keyOf(button);
    return key && key != UIKey::select && key != UIKey::back;
}

// How far a stick at (x, y) is moved in that direction.
double along(SDL_GameControllerButton direction, double x, double y) {
    switch (direction) {
    case SDL_CONTROLLER_BUTTON_DPAD_UP:
        return -y;
    case SDL_CONTROLLER_BUTTON_DPAD_DOWN:
        return y;
    case SDL_CONTROLLER_BUTTON_DPAD_LEFT:
        return -x;
    default:
        return x;
    }
}

} // namespace

SDLControllers::SDLControllers(Handler handler)
    : handler_(std::move(handler)),
      isInitialised_(SDL_InitSubSystem(SDL_INIT_GAMECONTROLLER) == 0) {
    if (!isInitialised_)
        diagnostic(std::string("game controllers cannot be used: ") + SDL_GetError());
}

SDLControllers::~SDLControllers() {
    release();
    controllers_.clear();
    if (isInitialised_)
        SDL_QuitSubSystem(SDL_INIT_GAMECONTROLLER);
}

void SDLControllers::handle(const SDL_Event& event, double time) {
    switch (event.type) {
    case SDL_CONTROLLERDEVICEADDED:
        if (auto* const device = SDL_GameControllerOpen(event.cdevice.which)) {
            const auto id = SDL_JoystickInstanceID(SDL_GameControllerGetJoystick(device));
            controllers_[id].device.reset(device);
        }
        break;
    case SDL_CONTROLLERDEVICEREMOVED:
        controllers_.erase(event.cdevice.which);
        release();
        break;
    case SDL_CONTROLLERBUTTONDOWN:
        press(static_cast<SDL_GameControllerButton>(event.cbutton.button), time);
        break;
    case SDL_CONTROLLERBUTTONUP:
        releaseButton(static_cast<SDL_GameControllerButton>(event.cbutton.button));
        break;
    case SDL_CONTROLLERAXISMOTION:
        moveStick(controllers_[event.caxis.which], event.caxis, time);
        break;
    default:
        break;
    }
}

void SDLControllers::moveStick(Controller& controller, const SDL_ControllerAxisEvent& event,
                               double time) {
    const double value = event.value / 32767.0;
    if (event.axis == SDL_CONTROLLER_AXIS_LEFTX)
        controller.x = value;
    else if (event.axis == SDL_CONTROLLER_AXIS_LEFTY)
        controller.y = value;
    else
        return;
    const double x = controller.x, y = controller.y;
    auto& direction = controller.direction;
    if (direction && along(*direction, x, y) < kStickOff)
        releaseButton(*std::exchange(direction, std::nullopt));
    if (direction || std::max(std::abs(x), std::abs(y)) < kStickOn)
        return;
    const bool isAcross = std::abs(x) > std::abs(y);
    direction = isAcross
                    ? (x < 0 ? SDL_CONTROLLER_BUTTON_DPAD_LEFT : SDL_CONTROLLER_BUTTON_DPAD_RIGHT)
                    : (y < 0 ? SDL_CONTROLLER_BUTTON_DPAD_UP : SDL_CONTROLLER_BUTTON_DPAD_DOWN);
    press(*direction, time);
}

// --- Buttons ------------------------------------------------------------------------------------

void SDLControllers::press(SDL_GameControllerButton button, double time) {
    release();
    if (repeatsWhileHeld(button)) {
        held_ = button;
        repeatLater();
    }
    if (const char* const name = SDL_GameControllerGetStringForButton(button))
        handler_(keyOf(button), name, UIKeyRepeat::pressed, time);
}

void SDLControllers::releaseButton(SDL_GameControllerButton button) {
    if (held_ == button)
        release();
}

void SDLControllers::release() {
    held_.reset();
    NSRunLoop::mainRunLoop().cancel(std::exchange(repeatTimer_, 0));
}

void SDLControllers::repeatLater() {
    repeatTimer_ = NSRunLoop::mainRunLoop().schedule(kRepeat, [this] {
        const auto button = *held_;
        repeatLater(); // before the handler, which may release it
        handler_(keyOf(button), SDL_GameControllerGetStringForButton(button), UIKeyRepeat::repeated,
                 NSRunLoop::mainRunLoop().now());
    });
}

} // namespace tesmar
