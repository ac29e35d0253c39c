// Connects the host's window with the desktop's screen readers while one runs.
#pragma once

#include "tesmar/platform/access/internal/AccessibilityBridge.h"
#include "tesmar/platform/hosts/sdl/SDLHost.h"

#include <functional>
#include <memory>

struct SDL_Window;

namespace tesmar {

class SDLAccessibility final : private AccessibilitySource {
  public:
    // `wakeUp` ends the host's sleep; called on any thread.
    SDLAccessibility(UIWindow& window, std::function<void()> wakeUp);
    ~SDLAccessibility() override;

    // Has the bridge observe the window if `choice` and the desktop ask for it; loads it the first
    // time. Called again whenever a screen reader may have been started or ended.
    void check(SDLHost::ScreenReaders choice, SDL_Window& window);
    void setActive(bool windowHasFocus);
    // Handles requests and notifies readers; nothing without a bridge. In every turn of the host.
    void turn(double now);

  private:
    void loadBridge();

    std::vector<UIAccessibleElement> tree() override;
    bool perform(std::string_view identifier, UIAccessibleAction action) override;
    bool moveFocus(std::string_view identifier) override;
    void update() override;
    std::string title() override;
    CGRect screenFrame() override;
    CGFloat unitsPerPoint() override;
    void wakeUp() override { wakeUp_(); }

    UIWindow& window_;
    std::function<void()> wakeUp_;
    SDL_Window* shown_ = nullptr;
    bool isActive_ = false;
    double now_ = 0;
    std::unique_ptr<AccessibilityBridge> bridge_; // null until one is needed
};

} // namespace tesmar
