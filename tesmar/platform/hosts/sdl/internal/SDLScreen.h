// The desktop window and its two layers: the application's picture, and over it the pixels of a
// UIWindow.
#pragma once

#include "tesmar/platform/hosts/sdl/SDLHost.h"
#include "tesmar/platform/hosts/sdl/internal/SDLLayer.h"

#include <SDL.h>

#include <functional>
#include <memory>
#include <vector>

namespace tesmar {

// Initialises SDL's video subsystem for as long as it exists.
class SDLVideo {
  public:
    SDLVideo();
    ~SDLVideo();
    SDLVideo(const SDLVideo&) = delete;
    SDLVideo& operator=(const SDLVideo&) = delete;
};

class SDLScreen {
  public:
    struct Size {
        int width = 0;
        int height = 0;
        bool operator==(const Size&) const = default;
    };

    // `size` in pixels. Throws SDLHost::NoDisplay. Later failures throw std::runtime_error.
    SDLScreen(const std::string& title, Size size);

    SDL_Window& window() const { return *window_; }
    Size pixelSize() const;
    // The window's size in the units of mouse positions, each of which may be several pixels.
    Size unitSize() const;
    // Of the display that the window is on; std::nullopt where it does not tell.
    std::optional<double> dotsPerInch() const;
    // Resizes the window's content to `size` pixels; the window system may refuse.
    void setPixelSize(Size size);
    void toggleFullScreen();

    // Gives both layers the window's present size. Their content is lost.
    void recreateLayers();
    // Has `draw` fill the picture; an empty `draw` removes it.
    void drawPicture(const std::function<void(const SDLHost::Picture&)>& draw);
    // Renders what is out of date in `window`, whose surface must be as large as the layers.
    void drawWindow(UIWindow& window) { layer_.update(window); }
    // Shows both layers on the screen.
    void present();

    SDLHost::Statistics statistics() const { return {frames_, layer_.uploadedPixels()}; }

  private:
    using Pixels = std::unique_ptr<std::uint32_t[], decltype(&std::free)>;

    SDLVideo video_;
    std::unique_ptr<SDL_Window, SDLDeleter> window_;
    std::unique_ptr<SDL_Renderer, SDLDeleter> renderer_;
    Size size_; // of the layers, pixels

    SDLTexture pictureTexture_;
    Pixels picture_{nullptr, &std::free};
    int pictureStride_ = 0; // bytes
    bool hasPicture_ = false;

    SDLLayer layer_;
    std::uint64_t frames_ = 0; // presented
};

} // namespace tesmar
