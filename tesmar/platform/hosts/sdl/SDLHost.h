// A host with a desktop window: shows a UIWindow over the application's own picture, feeds it
// mouse, fingers, wheel and keys, and sleeps while there is nothing to do.
//
//     SDLHost host({.title = "Player", .size = {960, 540}});
//     host.onPicture([](const SDLHost::Picture& picture) { ...fill it... });
//     host.window()->presentViewController(panel, true);
//     host.run();
//
// Main thread only, except wakeUp(). One host at a time: it takes all SDL events of the process,
// and pumps the main run loop with seconds of the system's monotonic clock.
//
// The host may be destroyed and its callbacks replaced at any time, also while it runs a turn: in
// one of its callbacks, in anything that the window calls, or in work of the run loop. No callback
// is called afterwards and no further event handled; the turn returns as soon as the call has, and
// only then closes the desktop window and releases the UIWindow.
//
// Toolkit: may change with any version.
#pragma once

#include "tesmar/platform/ui/UIViewing.h"
#include "tesmar/platform/ui/UIWindow.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

namespace tesmar {

class TESMAR_API SDLHost {
  public:
    // Whether the window is connected with the desktop's screen readers (AT-SPI), through a module
    // that is loaded at run time. With asDesktopAsks that is when an assistive technology runs:
    // asked of the session bus when the host is made and whenever the window gets the keyboard's
    // focus. NO_AT_BRIDGE=1 in the environment forbids it, ACCESSIBILITY_ENABLED=1 demands it.
    enum class ScreenReaders { asDesktopAsks, never, always };
    // Game controllers take a millisecond and some memory at the start.
    enum class Controllers { ignored, used };
    struct Options {
        std::string title;
        CGSize size{960, 540}; // points
        // Pixels per point, clamped to 0.1 to 16. std::nullopt: as `viewing` asks, also after a
        // change of size.
        std::optional<CGFloat> scale = std::nullopt;
        // Also sets the window's safe area, once.
        UIViewing viewing = UIViewing::desk;
        ScreenReaders screenReaders = ScreenReaders::asDesktopAsks;
        Controllers controllers = Controllers::ignored;
    };
    // The layer below the window's own pixels: opaque, one native-endian 0x00RRGGBB word a pixel.
    // Black at first and after a change of size; otherwise with the content of the last frame. The
    // pixels and rows are aligned to 64 bytes. Valid only during the onPicture() callback.
    struct Picture {
        std::uint32_t* pixels;
        int width; // pixels
        int height;
        int stride; // bytes from row to row
    };
    struct Key {
        // As SDL names it: "C", "Space", "Left", "Escape", "AC Back". Buttons of game controllers
        // come after "Controller ": "Controller a", "Controller start"; the left stick counts as
        // "Controller dpup", "dpdown", "dpleft" and "dpright".
        std::string name;
        bool repeated; // by holding the key down
    };
    // Totals since the host was made, for measurements.
    struct Statistics {
        std::uint64_t frames = 0;         // presented
        std::uint64_t uploadedPixels = 0; // of the window, not of the picture
    };

    // Its message says why no window can be opened.
    class TESMAR_API NoDisplay : public std::runtime_error {
        using std::runtime_error::runtime_error;
    };

    // Opens the window. Throws NoDisplay.
    explicit SDLHost(const Options& options);
    ~SDLHost();
    SDLHost(const SDLHost&) = delete;
    SDLHost& operator=(const SDLHost&) = delete;

    // The host sets its size and scale, and that a tap outside and a drag down dismiss.
    const Ref<UIWindow>& window() const;

    // --- Callbacks; setting one replaces the one before -----------------------------------------

    // Draws the picture: for the first frame, after setPictureNeedsDisplay(), and after a change of
    // size.
    void onPicture(std::function<void(const Picture&)> draw);
    void setPictureNeedsDisplay();
    // A key or a controller's button that the window did not handle. While the window presents a
    // controller it handles arrows, Tab, Enter, Space, Home, End, plus, minus, Escape and AC Back,
    // and on game controllers the directional pad, the left stick, A, B and the shoulder buttons.
    // Not called while Control, Alt or a logo key is down.
    void onKey(std::function<void(const Key&)> handler);
    // A tap of a finger or the left button that the window did not handle, in points.
    void onTap(std::function<void(CGPoint)> handler);
    // The window has a new size, in points; its views have been laid out.
    void onResize(std::function<void(CGSize)> handler);
    // Called on the main thread, once or more, after wakeUp().
    void onWake(std::function<void()> handler);
    // Ends the host's sleep. Any thread, while the host exists.
    void wakeUp();

    // --- Running ---------------------------------------------------------------------------------

    // Runs turns until the viewer closes the window or quit() is called. Throws std::runtime_error
    // when the display fails.
    void run();
    // One turn: sleeps until there is an event, the run loop has work due, or `longest` seconds
    // have passed (std::nullopt: no limit); handles all events, pumps the run loop, and shows what
    // has changed. Returns false once the host is to quit or is destroyed. Throws as run() does.
    bool turn(std::optional<double> longest = std::nullopt);
    void quit();

    void toggleFullScreen();
    Statistics statistics() const;

  private:
    struct State;
    std::shared_ptr<State> state_; // a turn that is running owns it too
};

} // namespace tesmar
