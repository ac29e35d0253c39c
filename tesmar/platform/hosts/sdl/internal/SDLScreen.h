// The desktop window and the two layers that it shows: the application's picture, and over it the
// pixels of a UIWindow. Internal to the SDL host.
#pragma once

#include "tesmar/platform/hosts/sdl/SDLHost.h"

#include <SDL.h>

#include <functional>
#include <memory>
#include <vector>

namespace tesmar {

struct SDLDeleter {
    void operator()(SDL_Window* window) const { SDL_DestroyWindow(window); }
    void operator()(SDL_Renderer* renderer) const { SDL_DestroyRenderer(renderer); }
    void operator()(SDL_Texture* texture) const { SDL_DestroyTexture(texture); }
};

// SDL's video for as long as this lives.
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

    // `size` in pixels. Throws SDLHost::NoDisplay; what fails later throws std::runtime_error.
    SDLScreen(const std::string& title, Size size);

    Size pixelSize() const;
    // The units of mouse positions; on some systems there are several pixels to one.
    Size unitSize() const;
    // Makes the window's content `size` pixels large, where the system lets it.
    void setPixelSize(Size size);
    void toggleFullScreen();

    // Brings both layers to the window's present size. Their content is lost.
    void recreateLayers();
    void drawPicture(const std::function<void(const SDLHost::Picture&)>& draw);
    // Repaints what is out of date in `window`, whose surface must be as large as the layers.
    void drawWindow(UIWindow& window);
    void present();

    const SDLHost::Statistics& statistics() const { return statistics_; }

  private:
    using Texture = std::unique_ptr<SDL_Texture, SDLDeleter>;
    using Pixels = std::unique_ptr<std::uint32_t[], decltype(&std::free)>;

    Texture makeTexture(SDL_PixelFormatEnum format) const;
    void chooseBlending();
    void upload(const PixelRect& rect);

    SDLVideo video_;
    std::unique_ptr<SDL_Window, SDLDeleter> window_;
    std::unique_ptr<SDL_Renderer, SDLDeleter> renderer_;
    Size size_; // of the layers, pixels

    Texture pictureTexture_;
    Pixels picture_{nullptr, &std::free};
    int pictureStride_ = 0; // bytes
    bool hasPicture_ = false;

    Texture windowTexture_;
    std::vector<std::uint32_t> pixels_; // premultiplied
    bool takesPremultiplied_ = false;
    std::vector<std::uint32_t> straight_; // scratch, for a renderer that does not

    SDLHost::Statistics statistics_;
};

} // namespace tesmar
