#include "tesmar/platform/hosts/sdl/internal/SDLScreen.h"

#include <algorithm>
#include <cstdlib>
#include <new>
#include <stdexcept>

namespace tesmar {
namespace {

template <class Error = std::runtime_error>
[[noreturn]] void fail(const std::string& what) {
    throw Error(what + ": " + SDL_GetError());
}

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

SDLVideo::SDLVideo() {
    if (SDL_InitSubSystem(SDL_INIT_VIDEO) != 0)
        fail<SDLHost::NoDisplay>("no display");
    // SDL falls back to drivers that show nothing; they count only when asked for by name.
    const std::string driver = SDL_GetCurrentVideoDriver();
    if ((driver == "offscreen" || driver == "dummy") && !SDL_getenv("SDL_VIDEODRIVER")) {
        SDL_QuitSubSystem(SDL_INIT_VIDEO);
        throw SDLHost::NoDisplay("no display: SDL finds no screen to draw on");
    }
}

SDLVideo::~SDLVideo() {
    SDL_QuitSubSystem(SDL_INIT_VIDEO);
}

SDLScreen::SDLScreen(const std::string& title, Size size) {
    // A click into a window without the focus also reaches the views.
    SDL_SetHint(SDL_HINT_MOUSE_FOCUS_CLICKTHROUGH, "1");
    window_.reset(SDL_CreateWindow(title.c_str(), SDL_WINDOWPOS_CENTERED, SDL_WINDOWPOS_CENTERED,
                                   size.width, size.height,
                                   SDL_WINDOW_RESIZABLE | SDL_WINDOW_ALLOW_HIGHDPI));
    if (!window_)
        fail<SDLHost::NoDisplay>("no window");
    renderer_.reset(SDL_CreateRenderer(window_.get(), -1, SDL_RENDERER_PRESENTVSYNC));
    if (!renderer_)
        renderer_.reset(SDL_CreateRenderer(window_.get(), -1, 0));
    if (!renderer_)
        fail<SDLHost::NoDisplay>("no way to draw in the window");
    recreateLayers();
}

SDLScreen::Size SDLScreen::pixelSize() const {
    Size size;
    if (SDL_GetRendererOutputSize(renderer_.get(), &size.width, &size.height) != 0)
        size = unitSize();
    return {std::max(1, size.width), std::max(1, size.height)};
}

SDLScreen::Size SDLScreen::unitSize() const {
    Size size;
    SDL_GetWindowSize(window_.get(), &size.width, &size.height);
    return {std::max(1, size.width), std::max(1, size.height)};
}

std::optional<double> SDLScreen::dotsPerInch() const {
    float dots = 0;
    const int display = SDL_GetWindowDisplayIndex(window_.get());
    if (display < 0 || SDL_GetDisplayDPI(display, &dots, nullptr, nullptr) != 0 || !(dots > 0))
        return std::nullopt;
    return dots;
}

void SDLScreen::setPixelSize(Size size) {
    const Size units = unitSize();
    const Size pixels = pixelSize();
    SDL_SetWindowSize(window_.get(), std::max(1, size.width * units.width / pixels.width),
                      std::max(1, size.height * units.height / pixels.height));
}

void SDLScreen::toggleFullScreen() {
    const Uint32 now = SDL_GetWindowFlags(window_.get()) & SDL_WINDOW_FULLSCREEN_DESKTOP;
    SDL_SetWindowFullscreen(window_.get(), now ? 0 : SDL_WINDOW_FULLSCREEN_DESKTOP);
}

// --- Layers -------------------------------------------------------------------------------------

SDLScreen::Texture SDLScreen::makeTexture(SDL_PixelFormatEnum format) const {
    Texture texture(SDL_CreateTexture(renderer_.get(), format, SDL_TEXTUREACCESS_STREAMING,
                                      size_.width, size_.height));
    if (!texture)
        fail("no room to draw a window of " + std::to_string(size_.width) + "x" +
             std::to_string(size_.height) + " pixels");
    return texture;
}

void SDLScreen::recreateLayers() {
    size_ = pixelSize();
    pictureTexture_ = makeTexture(SDL_PIXELFORMAT_RGB888);
    windowTexture_ = makeTexture(SDL_PIXELFORMAT_ARGB8888);
    chooseBlending();

    constexpr int kAlignment = 64; // bytes; what video decoders write best
    pictureStride_ = (size_.width * 4 + kAlignment - 1) / kAlignment * kAlignment;
    const std::size_t bytes =
        static_cast<std::size_t>(pictureStride_) * static_cast<std::size_t>(size_.height);
    picture_.reset(static_cast<std::uint32_t*>(std::aligned_alloc(kAlignment, bytes)));
    if (!picture_)
        throw std::bad_alloc();
    std::fill_n(picture_.get(), bytes / 4, 0);
    hasPicture_ = false;
    pixels_.assign(static_cast<std::size_t>(size_.width) * static_cast<std::size_t>(size_.height),
                   0);
}

// Some renderers, such as the one in software, cannot blend premultiplied pixels; upload() converts
// for them.
void SDLScreen::chooseBlending() {
    const SDL_BlendMode premultiplied = SDL_ComposeCustomBlendMode(
        SDL_BLENDFACTOR_ONE, SDL_BLENDFACTOR_ONE_MINUS_SRC_ALPHA, SDL_BLENDOPERATION_ADD,
        SDL_BLENDFACTOR_ONE, SDL_BLENDFACTOR_ONE_MINUS_SRC_ALPHA, SDL_BLENDOPERATION_ADD);
    takesPremultiplied_ = SDL_SetTextureBlendMode(windowTexture_.get(), premultiplied) == 0;
    if (!takesPremultiplied_)
        SDL_SetTextureBlendMode(windowTexture_.get(), SDL_BLENDMODE_BLEND);
}

void SDLScreen::drawPicture(const std::function<void(const SDLHost::Picture&)>& draw) {
    hasPicture_ = static_cast<bool>(draw);
    if (!hasPicture_)
        return;
    draw({picture_.get(), size_.width, size_.height, pictureStride_});
    if (SDL_UpdateTexture(pictureTexture_.get(), nullptr, picture_.get(), pictureStride_) != 0)
        fail("cannot draw");
}

void SDLScreen::drawWindow(UIWindow& window) {
    for (const PixelRect& rect : window.render(pixels_, size_.width * 4))
        upload(rect);
}

void SDLScreen::upload(const PixelRect& rect) {
    const SDL_Rect place{rect.x, rect.y, rect.width, rect.height};
    const std::uint32_t* first =
        pixels_.data() + static_cast<std::ptrdiff_t>(rect.y) * size_.width + rect.x;
    int stride = size_.width;
    if (!takesPremultiplied_) {
        straight_.clear();
        for (int y = 0; y < rect.height; ++y)
            std::transform(first + static_cast<std::ptrdiff_t>(y) * stride,
                           first + static_cast<std::ptrdiff_t>(y) * stride + rect.width,
                           std::back_inserter(straight_), withoutPremultiplication);
        first = straight_.data();
        stride = rect.width;
    }
    if (SDL_UpdateTexture(windowTexture_.get(), &place, first, stride * 4) != 0)
        fail("cannot draw");
    statistics_.uploadedPixels +=
        static_cast<std::uint64_t>(rect.width) * static_cast<std::uint64_t>(rect.height);
}

void SDLScreen::present() {
    SDL_SetRenderDrawColor(renderer_.get(), 0, 0, 0, 255);
    SDL_RenderClear(renderer_.get());
    if (hasPicture_)
        SDL_RenderCopy(renderer_.get(), pictureTexture_.get(), nullptr, nullptr);
    SDL_RenderCopy(renderer_.get(), windowTexture_.get(), nullptr, nullptr);
    SDL_RenderPresent(renderer_.get());
    ++statistics_.frames;
}

} // namespace tesmar
