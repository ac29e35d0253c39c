#include "tesmar/platform/hosts/sdl/SDLHost.h"

#include "tesmar/platform/foundation/NSRunLoop.h"
#include "tesmar/platform/hosts/sdl/internal/SDLAccessibility.h"
#include "tesmar/platform/hosts/sdl/internal/SDLInput.h"
#include "tesmar/platform/hosts/sdl/internal/SDLScreen.h"
#include "tesmar/platform/hosts/sdl/internal/sdl_clock.h"

#include <atomic>
#include <cmath>

namespace tesmar {
namespace {

constexpr int kForever = -1; // milliseconds, to SDL

SDLScreen::Size pixels(CGSize size, CGFloat scale) {
    const auto side = [&](CGFloat points) {
        return static_cast<int>(std::lround(finite(points * scale, 1, 32767, 1)));
    };
    return {side(size.width), side(size.height)};
}

} // namespace

struct SDLHost::State {
    explicit State(const Options& options);

    int waitMilliseconds(std::optional<double> longest) const;
    void handle(const SDL_Event& event);
    void windowEvent(const SDL_WindowEvent& event, double time);
    void fitWindow();
    void showChanges();
    // Ends the host's sleep, unless `flag` says that this is under way. Any thread.
    void wakeUp(std::atomic<bool>& flag);

    ScreenReaders screenReaders;
    std::optional<CGFloat> scale; // chosen by the application
    UIViewing viewing;
    SDLScreen screen;
    Ref<UIWindow> window = UIWindow::windowWithSize({1, 1});
    SDLInput input{*window};
    SDLScreen::Size shownSize;
    CGFloat shownScale = 0;

    std::function<void(const Picture&)> onPicture;
    std::function<void(CGSize)> onResize;
    std::function<void()> onWake;
    bool pictureIsStale = true;
    bool screenIsStale = true; // must be presented again, even if both layers are up to date
    bool quits = false;
    bool isDestroyed = false; // by a call that the running turn made

    Uint32 wakeEvent = 0;
    std::atomic<bool> wakes = false;       // a wake event is in the queue
    std::atomic<bool> readerWakes = false; // the same, for the screen readers' bridge
    SDLAccessibility accessibility{*window, [this] { wakeUp(readerWakes); }};
};

SDLHost::State::State(const Options& options)
    : screenReaders(options.screenReaders),
      scale(options.scale ? std::optional(finite(*options.scale, 0.1, 16, 1)) : std::nullopt),
      viewing(options.viewing), screen(options.title, pixels(options.size, scale.value_or(1))),
      wakeEvent(SDL_RegisterEvents(1)) {
    if (options.controllers == Controllers::used)
        input.useControllers();
    window->setSafeAreaInsets(safeAreaInsets(viewing));
    window->setOutsideTap(OutsideTap::dismisses);
    window->setDragDown(DragDown::dismisses);
    if (scale) // the choice is in pixels, which may not be the window system's units
        screen.setPixelSize(pixels(options.size, *scale));
    fitWindow();
    NSRunLoop::mainRunLoop().noteTime(sdlClock());
    accessibility.check(screenReaders, screen.window());
}

// --- Sleeping -----------------------------------------------------------------------------------

int SDLHost::State::waitMilliseconds(std::optional<double> longest) const {
    if (quits || pictureIsStale || screenIsStale || window->needsRender())
        return 0;
    std::optional<double> seconds = longest;
    if (const auto due = NSRunLoop::mainRunLoop().nextDeadline())
        seconds = std::min(seconds.value_or(*due - sdlClock()), *due - sdlClock());
    return seconds ? sdlMilliseconds(*seconds) : kForever;
}

bool SDLHost::turn(std::optional<double> longest) {
    const auto state = state_; // any call below may destroy the host
    SDL_Event event;
    int wait = state->waitMilliseconds(longest);
    while (!state->isDestroyed && SDL_WaitEventTimeout(&event, wait)) {
        state->handle(event);
        wait = 0;
    }
    if (!state->isDestroyed)
        NSRunLoop::mainRunLoop().advanceTo(sdlClock());
    if (!state->isDestroyed)
        state->accessibility.turn(sdlClock());
    if (!state->isDestroyed)
        state->showChanges();
    return !state->quits && !state->isDestroyed;
}

void SDLHost::run() {
    while (turn()) {
    }
}

void SDLHost::wakeUp() {
    state_->wakeUp(state_->wakes);
}

void SDLHost::State::wakeUp(std::atomic<bool>& flag) {
    if (flag.exchange(true))
        return;
    SDL_Event event{};
    event.type = wakeEvent;
    if (SDL_PushEvent(&event) != 1)
        flag = false;
}

// --- Events -------------------------------------------------------------------------------------

void SDLHost::State::handle(const SDL_Event& event) {
    // Motion that a handler starts begins now, not when the loop last ran.
    NSRunLoop::mainRunLoop().noteTime(sdlTimeOf(event));
    if (event.type == wakeEvent) {
        readerWakes = false;
        if (wakes.exchange(false))
            callCopy(onWake);
        return;
    }
    switch (event.type) {
    case SDL_QUIT:
        quits = true;
        break;
    case SDL_WINDOWEVENT:
        windowEvent(event.window, sdlTimeOf(event));
        break;
    case SDL_RENDER_TARGETS_RESET:
    case SDL_RENDER_DEVICE_RESET:
        shownSize = {}; // the layers' content is lost
        fitWindow();
        break;
    default:
        input.handle(event, sdlTimeOf(event));
        break;
    }
}

void SDLHost::State::windowEvent(const SDL_WindowEvent& event, double time) {
    switch (event.event) {
    case SDL_WINDOWEVENT_SIZE_CHANGED:
    case SDL_WINDOWEVENT_DISPLAY_CHANGED:
        fitWindow();
        break;
    case SDL_WINDOWEVENT_EXPOSED:
        screenIsStale = true;
        break;
    case SDL_WINDOWEVENT_LEAVE:
        window->endHover();
        break;
    case SDL_WINDOWEVENT_FOCUS_GAINED:
        accessibility.setActive(true);
        accessibility.check(screenReaders, screen.window());
        break;
    case SDL_WINDOWEVENT_FOCUS_LOST:
        accessibility.setActive(false);
        input.releaseAll(time);
        window->endHover();
        break;
    default:
        break;
    }
}

void SDLHost::State::fitWindow() {
    const SDLScreen::Size size = screen.pixelSize();
    const SDLScreen::Size units = screen.unitSize();
    const CGSize surface{CGFloat(size.width), CGFloat(size.height)};
    const CGFloat pointScale = scale.value_or(pixelsPerPoint(
        viewing, {surface, CGFloat(size.width) / units.width, screen.dotsPerInch()}));
    input.setUnits({CGFloat(units.width), CGFloat(units.height)});
    if (size == shownSize && pointScale == shownScale && window->pixelSize() == surface)
        return;
    shownSize = size;
    shownScale = pointScale;
    screen.recreateLayers();
    window->setPixelSize(size.width, size.height, pointScale);
    window->invalidate();
    followDisplayRate(screen.window());
    pictureIsStale = true;
    window->layoutIfNeeded();
    callCopy(onResize, window->frame().size);
}

void SDLHost::State::showChanges() {
    fitWindow();
    const bool windowIsStale = window->needsRender();
    if (isDestroyed || (!windowIsStale && !pictureIsStale && !screenIsStale))
        return;
    if (windowIsStale)
        screen.drawWindow(*window);
    if (!isDestroyed && std::exchange(pictureIsStale, false))
        screen.drawPicture(std::function(onPicture)); // a copy: the call may replace it
    screen.present();
    screenIsStale = false;
}

// --- The application's side ---------------------------------------------------------------------

SDLHost::SDLHost(const Options& options) : state_(std::make_shared<State>(options)) {}

SDLHost::~SDLHost() {
    state_->isDestroyed = true;
    state_->onPicture = {};
    state_->onResize = {};
    state_->onWake = {};
    state_->input.onKey = {};
    state_->input.onTap = {};
}

const Ref<UIWindow>& SDLHost::window() const {
    return state_->window;
}

void SDLHost::onPicture(std::function<void(const Picture&)> draw) {
    state_->onPicture = std::move(draw);
    setPictureNeedsDisplay();
}

void SDLHost::setPictureNeedsDisplay() {
    state_->pictureIsStale = true;
}

void SDLHost::onKey(std::function<void(const Key&)> handler) {
    state_->input.onKey = std::move(handler);
}

void SDLHost::onTap(std::function<void(CGPoint)> handler) {
    state_->input.onTap = std::move(handler);
}

void SDLHost::onResize(std::function<void(CGSize)> handler) {
    state_->onResize = std::move(handler);
}

void SDLHost::onWake(std::function<void()> handler) {
    state_->onWake = std::move(handler);
}

void SDLHost::quit() {
    state_->quits = true;
}

void SDLHost::toggleFullScreen() {
    state_->screen.toggleFullScreen();
}

SDLHost::Statistics SDLHost::statistics() const {
    return state_->screen.statistics();
}

} // namespace tesmar
