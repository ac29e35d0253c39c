// A host with a desktop window: shows a UIWindow over a picture of the application's own, feeds it
// mouse, fingers, wheel and keys, and sleeps while there is nothing to do.
//
//     SDLHost host({.title = "Player", .size = {960, 540}});
//     host.onPicture([](const SDLHost::Picture& picture) { ...fill it... });
//     host.window()->presentViewController(panel, true);
//     host.run();
//
// Main thread only, but for wakeUp(). One host at a time: it takes every event of the process, and
// pumps the main run loop with seconds of the system's monotonic clock.
#pragma once

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
    struct Options {
        std::string title;
        CGSize size{960, 540}; // points
        // Pixels per point. Nothing: as the display has it.
        std::optional<CGFloat> scale = std::nullopt;
    };
    // What lies below the window's own pixels: opaque, one native-endian 0x00RRGGBB word a pixel,
    // black at the start and otherwise as it was left. Rows start at multiples of 64 bytes.
    struct Picture {
        std::uint32_t* pixels;
        int width; // pixels
        int height;
        int stride; // bytes from row to row
    };
    struct Key {
        std::string name; // as on the key: "C", "Space", "Left", "Escape"
        bool repeated;    // still held down
    };
    // What has been shown so far, for measuring.
    struct Statistics {
        std::uint64_t frames = 0;
        std::uint64_t uploadedPixels = 0; // of the window; the picture does not count
    };

    // Says why there can be no window.
    class TESMAR_API NoDisplay : public std::runtime_error {
        using std::runtime_error::runtime_error;
    };

    // Opens the window. Throws NoDisplay.
    explicit SDLHost(const Options& options);
    ~SDLHost();
    SDLHost(const SDLHost&) = delete;
    SDLHost& operator=(const SDLHost&) = delete;

    // Its size and scale are the host's business.
    const Ref<UIWindow>& window() const;

    // --- What the application takes part in; each replaces the one before ------------------------

    // Draws the picture: at the first frame, after setPictureNeedsDisplay() and when its size has
    // changed.
    void onPicture(std::function<void(const Picture&)> draw);
    void setPictureNeedsDisplay();
    // A key that the window had no use for. Not called while Control, Alt or a logo key is down.
    void onKey(std::function<void(const Key&)> handler);
    // A finger or the left button that came down and up in one place, in points, where the window
    // had no use for it.
    void onTap(std::function<void(CGPoint)> handler);
    // The window has a new size, in points; its views are laid out already.
    void onResize(std::function<void(CGSize)> handler);
    // Called on the main thread, once or more, after wakeUp().
    void onWake(std::function<void()> handler);
    // Ends the sleep. Any thread, as long as the host lives.
    void wakeUp();

    // --- Running ---------------------------------------------------------------------------------

    // Runs until the viewer closes the window or quit() is called. Throws std::runtime_error when
    // the display fails.
    void run();
    // One turn of run(): sleeps until an event comes, something falls due, or `longest` seconds
    // have passed (nothing: as long as it takes), handles all that has come, and shows what has
    // changed. False once the host is to quit.
    bool turn(std::optional<double> longest = std::nullopt);
    void quit();

    void toggleFullScreen();
    Statistics statistics() const;

  private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace tesmar
