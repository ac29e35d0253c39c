// The pixels of a UIWindow in a texture of SDL's, which holds what changed.
#pragma once

#include "tesmar/platform/ui/UIWindow.h"

#include <SDL.h>

#include <cstdint>
#include <memory>
#include <vector>

namespace tesmar {

struct SDLDeleter {
    void operator()(SDL_Window* window) const { SDL_DestroyWindow(window); }
    void operator()(SDL_Renderer* renderer) const { SDL_DestroyRenderer(renderer); }
    void operator()(SDL_Texture* texture) const { SDL_DestroyTexture(texture); }
};
using SDLTexture = std::unique_ptr<SDL_Texture, SDLDeleter>;

// Throws std::runtime_error with SDL's reason.
[[noreturn]] void failWithSDLError(const std::string& what);
// Throws std::runtime_error when there is no room for it.
SDLTexture makeTexture(SDL_Renderer& renderer, SDL_PixelFormatEnum format, int width, int height);

class SDLLayer {
  public:
    // Gives the layer that size, in pixels. Its content is lost.
    void recreate(SDL_Renderer& renderer, int width, int height);
    // Renders what is out of date in `window`, whose surface must be as large. Throws as above.
    void update(UIWindow& window);
    // Copies the layer over what the renderer has drawn, blended.
    void draw(SDL_Renderer& renderer) const;
    // In all, for measurements.
    std::uint64_t uploadedPixels() const { return uploadedPixels_; }

  private:
    void chooseBlending();
    void upload(const PixelRect& rect);

    int width_ = 0;
    SDLTexture texture_;
    std::vector<std::uint32_t> pixels_; // premultiplied
    bool takesPremultiplied_ = false;
    std::vector<std::uint32_t> straight_; // buffer for renderers without premultiplied blending
    std::uint64_t uploadedPixels_ = 0;
};

} // namespace tesmar
