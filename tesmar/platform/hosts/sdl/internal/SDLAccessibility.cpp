#include "tesmar/platform/hosts/sdl/internal/SDLAccessibility.h"

#include <SDL.h>

#include <dlfcn.h>
#include <string>

namespace tesmar {
namespace {

// The function of a module beside this library; null when the module or its function is missing.
// Modules stay loaded only if they ask for it themselves.
class Module {
  public:
    explicit Module(const char* file) : handle_(dlopen(file, RTLD_NOW | RTLD_LOCAL)) {}
    ~Module() {
        if (handle_)
            dlclose(handle_);
    }
    Module(const Module&) = delete;
    Module& operator=(const Module&) = delete;

    template <class Function>
    Function function(const char* name) const {
        return handle_ ? reinterpret_cast<Function>(dlsym(handle_, name)) : nullptr;
    }

  private:
    void* handle_;
};

bool isSet(const char* variable) {
    const char* const value = SDL_getenv(variable);
    return value && std::string_view(value) == "1";
}

// The variables are those that other toolkits heed.
bool desktopAsks() {
    if (isSet("NO_AT_BRIDGE"))
        return false;
    if (isSet("ACCESSIBILITY_ENABLED"))
        return true;
    const char* const bus = SDL_getenv("DBUS_SESSION_BUS_ADDRESS");
    if (!bus || !*bus)
        return false;
    const Module status("tesmar-atspi-status" TESMAR_MODULE_SUFFIX);
    const auto runs = status.function<AssistiveTechnologyRuns>(kAssistiveTechnologyRuns);
    return runs && runs();
}

} // namespace

SDLAccessibility::SDLAccessibility(UIWindow& window, std::function<void()> wakeUp)
    : window_(window), wakeUp_(std::move(wakeUp)) {}

SDLAccessibility::~SDLAccessibility() {
    if (bridge_)
        window_.setAccessibilityObserver(nullptr);
}

void SDLAccessibility::check(SDLHost::ScreenReaders choice, SDL_Window& window) {
    shown_ = &window;
    const bool isNeeded = choice == SDLHost::ScreenReaders::always ||
                          (choice == SDLHost::ScreenReaders::asDesktopAsks && desktopAsks());
    if (isNeeded && !bridge_)
        loadBridge();
    if (bridge_ && isNeeded != window_.hasAccessibilityObserver())
        window_.setAccessibilityObserver(isNeeded ? bridge_.get() : nullptr);
}

void SDLAccessibility::loadBridge() {
    const Module module("tesmar-atspi" TESMAR_MODULE_SUFFIX);
    if (const auto make = module.function<MakeAccessibilityBridge>(kMakeAccessibilityBridge))
        bridge_.reset(make(*this));
    if (bridge_)
        bridge_->setActive(isActive_);
}

void SDLAccessibility::setActive(bool windowHasFocus) {
    isActive_ = windowHasFocus;
    if (bridge_)
        bridge_->setActive(windowHasFocus);
}

void SDLAccessibility::turn(double now) {
    now_ = now;
    if (bridge_)
        bridge_->turn();
}

// --- What the bridge asks -----------------------------------------------------------------------

std::vector<UIAccessibleElement> SDLAccessibility::tree() {
    return accessibleTree(window_);
}

bool SDLAccessibility::perform(std::string_view identifier, UIAccessibleAction action) {
    return performAccessibleAction(window_, identifier, action, now_);
}

bool SDLAccessibility::moveFocus(std::string_view identifier) {
    return window_.moveFocus(identifier);
}

void SDLAccessibility::update() {
    window_.updateAccessibility();
}

std::string SDLAccessibility::title() {
    return SDL_GetWindowTitle(shown_);
}

CGRect SDLAccessibility::screenFrame() {
    int x = 0, y = 0, width = 0, height = 0;
    SDL_GetWindowPosition(shown_, &x, &y);
    SDL_GetWindowSize(shown_, &width, &height);
    return {CGFloat(x), CGFloat(y), CGFloat(width), CGFloat(height)};
}

CGFloat SDLAccessibility::unitsPerPoint() {
    return screenFrame().size.width / std::max(1.0, window_.frame().size.width);
}

} // namespace tesmar
