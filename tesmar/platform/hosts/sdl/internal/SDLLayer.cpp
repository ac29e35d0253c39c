#include "tesmar/platform/hosts/sdl/internal/SDLLayer.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>

namespace tesmar {
namespace {

std::uint32_t withoutPremultiplication(std::uint32_t pixel) {
    const std::uint32_t alpha = pixel >> 24;
    if (alpha == 0 || alpha == 255)
        return pixel;
    std::uint32_t straight = alpha << 24;
    for (int shift = 0; shift < 24; shift += 8) {
        const std::uint32_t channel = ((pixel >> shift & 0xFF) * 255 + alpha / 2) / alpha;
        straight |= std::min(channel, 255u) << shift;
    }
    return straight;
}

} // namespace

void failWithSDLError(const std::string& what) {
    throw std::runtime_error(what + ": " + SDL_GetError());
}

SDLTexture makeTexture(SDL_Renderer& renderer, SDL_PixelFormatEnum format, int width, int height) {
    SDLTexture texture(
        SDL_CreateTexture(&renderer, format, SDL_TEXTUREACCESS_STREAMING, width, height));
    if (!texture)
        failWithSDLError("no room to draw a window of " + std::to_string(width) + "x" +
                         std::to_string(height) + " pixels");
    return texture;
}

void SDLLayer::recreate(SDL_Renderer& renderer, int width, int height) {
    width_ = width;
    texture_ = makeTexture(renderer, SDL_PIXELFORMAT_ARGB8888, width, height);
    chooseBlending();
    pixels_.assign(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), 0);
}

// Some renderers, such as the one in software, cannot blend premultiplied pixels; upload() converts
// for them.
void SDLLayer::chooseBlending() {
    const SDL_BlendMode premultiplied = SDL_ComposeCustomBlendMode(
        SDL_BLENDFACTOR_ONE, SDL_BLENDFACTOR_ONE_MINUS_SRC_ALPHA, SDL_BLENDOPERATION_ADD,
        SDL_BLENDFACTOR_ONE, SDL_BLENDFACTOR_ONE_MINUS_SRC_ALPHA, SDL_BLENDOPERATION_ADD);
    takesPremultiplied_ = SDL_SetTextureBlendMode(texture_.get(), premultiplied) == 0;
    if (!takesPremultiplied_)
        SDL_SetTextureBlendMode(texture_.get(), SDL_BLENDMODE_BLEND);
}

void SDLLayer::update(UIWindow& window) {
    for (const PixelRect& rect : window.render(pixels_, width_ * 4))
        upload(rect);
}

void SDLLayer::draw(SDL_Renderer& renderer) const {
    SDL_RenderCopy(&renderer, texture_.get(), nullptr, nullptr);
}

void SDLLayer::upload(const PixelRect& rect) {
    const SDL_Rect place{rect.x, rect.y, rect.width, rect.height};
    const std::uint32_t* first =
        pixels_.data() + static_cast<std::ptrdiff_t>(rect.y) * width_ + rect.x;
    int stride = width_;
    if (!takesPremultiplied_) {
        straight_.clear();
        for (int y = 0; y < rect.height; ++y)
            std::transform(first + static_cast<std::ptrdiff_t>(y) * stride,
                           first + static_cast<std::ptrdiff_t>(y) * stride + rect.width,
                           std::back_inserter(straight_), withoutPremultiplication);
        first = straight_.data();
        stride = rect.width;
    }
    if (SDL_UpdateTexture(texture_.get(), &place, first, stride * 4) != 0)
        failWithSDLError("cannot draw");
    uploadedPixels_ +=
        static_cast<std::uint64_t>(rect.width) * static_cast<std::uint64_t>(rect.height);
}

} // namespace tesmar
