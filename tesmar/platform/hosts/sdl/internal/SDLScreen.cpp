#include "tesmar/platform/hosts/sdl/internal/SDLScreen.h"

#include <algorithm>
#include <cstdlib>
#include <new>
#include <stdexcept>

namespace tesmar {
namespace {

[[noreturn]] void failToOpen(const std::string& what) {
    throw SDLHost::NoDisplay(what + ": " + SDL_GetError());
}

} // namespace

SDLVideo::SDLVideo() {
    if (SDL_InitSubSystem(SDL_INIT_VIDEO) != 0)
        failToOpen("no display");
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
        failToOpen("no window");
    renderer_.reset(SDL_CreateRenderer(window_.get(), -1, SDL_RENDERER_PRESENTVSYNC));
    if (!renderer_)
        renderer_.reset(SDL_CreateRenderer(window_.get(), -1, 0));
    if (!renderer_)
        failToOpen("no way to draw in the window");
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

void SDLScreen::recreateLayers() {
    size_ = pixelSize();
    pictureTexture_ = makeTexture(*renderer_, SDL_PIXELFORMAT_RGB888, size_.width, size_.height);
    layer_.recreate(*renderer_, size_.width, size_.height);

    constexpr int kAlignment = 64; // bytes; what video decoders write best
    pictureStride_ = (size_.width * 4 + kAlignment - 1) / kAlignment * kAlignment;
    const std::size_t bytes =
        static_cast<std::size_t>(pictureStride_) * static_cast<std::size_t>(size_.height);
    picture_.reset(static_cast<std::uint32_t*>(std::aligned_alloc(kAlignment, bytes)));
    if (!picture_)
        throw std::bad_alloc();
    std::fill_n(picture_.get(), bytes / 4, 0);
    hasPicture_ = false;
}

void SDLScreen::drawPicture(const std::function<void(const SDLHost::Picture&)>& draw) {
    hasPicture_ = static_cast<bool>(draw);
    if (!hasPicture_)
        return;
    draw({picture_.get(), size_.width, size_.height, pictureStride_});
    if (SDL_UpdateTexture(pictureTexture_.get(), nullptr, picture_.get(), pictureStride_) != 0)
        failWithSDLError("cannot draw");
}

void SDLScreen::present() {
    SDL_SetRenderDrawColor(renderer_.get(), 0, 0, 0, 255);
    SDL_RenderClear(renderer_.get());
    if (hasPicture_)
        SDL_RenderCopy(renderer_.get(), pictureTexture_.get(), nullptr, nullptr);
    layer_.draw(*renderer_);
    SDL_RenderPresent(renderer_.get());
    ++frames_;
}

} // namespace tesmar
