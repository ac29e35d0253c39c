#include "tesmar/platform/hosts/sdl/SDLOverlay.h"

#include "tesmar/platform/foundation/NSRunLoop.h"
#include "tesmar/platform/hosts/sdl/internal/SDLInput.h"
#include "tesmar/platform/hosts/sdl/internal/SDLLayer.h"
#include "tesmar/platform/hosts/sdl/internal/sdl_clock.h"

#include <algorithm>

namespace tesmar {

struct SDLOverlay::State {
    State(SDL_Window& shown, SDL_Renderer& drawing, CGFloat wanted)
        : sdlWindow(shown), renderer(drawing), scale(wanted) {}
    void fit();

    SDL_Window& sdlWindow;
    SDL_Renderer& renderer;
    CGFloat scale;
    int width = 0;
    int height = 0;
    Ref<UIWindow> window = UIWindow::windowWithSize({1, 1});
    SDLInput input{*window};
    SDLLayer layer;
};

void SDLOverlay::State::fit() {
    int outputWidth = 0, outputHeight = 0, unitsWide = 0, unitsHigh = 0;
    SDL_GetRendererOutputSize(&renderer, &outputWidth, &outputHeight);
    SDL_GetWindowSize(&sdlWindow, &unitsWide, &unitsHigh);
    outputWidth = std::max(1, outputWidth), outputHeight = std::max(1, outputHeight);
    unitsWide = std::max(1, unitsWide), unitsHigh = std::max(1, unitsHigh);
    input.setUnits({CGFloat(unitsWide), CGFloat(unitsHigh)});
    if (outputWidth == width && outputHeight == height)
        return;
    layer.recreate(renderer, outputWidth, outputHeight);
    width = outputWidth;
    height = outputHeight;
    window->setPixelSize(width, height, scale > 0 ? scale : CGFloat(width) / unitsWide);
    window->invalidate();
    followDisplayRate(sdlWindow);
}

SDLOverlay::SDLOverlay(SDL_Window& window, SDL_Renderer& renderer, CGFloat scale)
    : state_(std::make_unique<State>(window, renderer, scale)) {
    NSRunLoop::mainRunLoop().noteTime(sdlClock());
    state_->fit();
}

SDLOverlay::~SDLOverlay() = default;

const Ref<UIWindow>& SDLOverlay::window() const {
    NSRunLoop::mainRunLoop().noteTime(sdlClock()); // what the host starts begins now
    return state_->window;
}

bool SDLOverlay::handle(const SDL_Event& event) {
    const double time = sdlTimeOf(event);
    NSRunLoop::mainRunLoop().noteTime(time);
    switch (event.type) {
    case SDL_RENDER_TARGETS_RESET:
    case SDL_RENDER_DEVICE_RESET:
        state_->width = 0; // the layer's content is lost
        return false;
    case SDL_WINDOWEVENT:
        if (event.window.event == SDL_WINDOWEVENT_FOCUS_LOST)
            state_->input.releaseAll(time);
        if (event.window.event == SDL_WINDOWEVENT_LEAVE)
            state_->window->endHover();
        return false;
    default:
        return state_->input.handle(event, time);
    }
}

void SDLOverlay::advance() {
    NSRunLoop::mainRunLoop().advanceTo(sdlClock());
}

int SDLOverlay::milliseconds(int longest) {
    if (needsDraw())
        return 0;
    const auto due = NSRunLoop::mainRunLoop().nextDeadline();
    const int wait = due ? sdlMilliseconds(*due - sdlClock()) : -1;
    return wait < 0 ? longest : longest < 0 ? wait : std::min(wait, longest);
}

bool SDLOverlay::needsDraw() {
    state_->fit();
    return state_->window->needsRender();
}

void SDLOverlay::draw() {
    state_->fit();
    state_->layer.update(*state_->window);
    state_->layer.draw(state_->renderer);
}

} // namespace tesmar
