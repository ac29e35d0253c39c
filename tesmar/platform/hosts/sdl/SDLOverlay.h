// A UIWindow over what the application draws with an SDL renderer of its own, in a loop of its own:
//
//     SDLOverlay overlay(*window, *renderer);
//     overlay.window()->presentViewController(panel, true);
//     for (;;) {
//         while (SDL_WaitEventTimeout(&event, overlay.milliseconds(1000)))
//             if (!overlay.handle(event)) { ...the application's... }
//         overlay.advance();
//         if (pictureHasChanged || overlay.needsDraw()) {
//             ...draw the picture...
//             overlay.draw();
//             SDL_RenderPresent(renderer);
//         }
//     }
//
// It follows the size of the renderer's output; a point is a pixel of it divided by the scale. Main
// thread only. It pumps the main run loop with seconds of the system's monotonic clock.
//
// Toolkit: may change with any version.
#pragma once

#include "tesmar/platform/ui/UIWindow.h"

#include <memory>

struct SDL_Renderer;
struct SDL_Window;
union SDL_Event;

namespace tesmar {

class TESMAR_API SDLOverlay {
  public:
    // Both must outlive the overlay. `scale` in pixels per point, clamped to 0.1 to 16; 0 or less,
    // as initially, and NaN: as many as the window's units have.
    SDLOverlay(SDL_Window& window, SDL_Renderer& renderer, CGFloat scale = 0);
    ~SDLOverlay();
    SDLOverlay(const SDLOverlay&) = delete;
    SDLOverlay& operator=(const SDLOverlay&) = delete;

    // The overlay sets its size and scale.
    const Ref<UIWindow>& window() const;
    // Passes the event on, and returns whether it belongs to the overlay: touches, clicks and
    // wheels where the panel is, SDL's own doubles of these, and keys while something is presented.
    // Other events are noticed (sizes, lost devices), and belong to the application. Exceptions of
    // the host's callbacks pass.
    bool handle(const SDL_Event& event);
    // Does what is due, to be called in each turn of the loop.
    void advance();
    // How long the application may wait for an event, in milliseconds: at most `longest` (-1: for
    // ever), until advance() has work; 0 if there is something to draw.
    int milliseconds(int longest);
    bool needsDraw();
    // Blends the overlay over what the renderer has drawn. Throws std::runtime_error when the
    // renderer fails.
    void draw();

  private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace tesmar
