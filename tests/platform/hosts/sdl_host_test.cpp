// The SDL host on a display in memory, fed with SDL events.
#include "tesmar/platform/hosts/sdl/SDLHost.h"
#include "tesmar/platform/hosts/sdl/SDLOverlay.h"

#include "tesmar/platform/foundation/NSRunLoop.h"
#include "tesmar/platform/ui/Motion.h"
#include "tesmar/platform/ui/UIStepper.h"

#include <SDL.h>
#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <thread>

namespace tesmar {
namespace {

using Clock = std::chrono::steady_clock;

constexpr CGSize kSize{200, 100};
constexpr CGRect kPlace{20, 30, 50, 50}; // of the pad
constexpr CGPoint kOnPad{45, 55};
constexpr CGPoint kBesidePad{150, 20};

// A red view that logs its touches.
class Pad : public UIView {
  public:
    void touchBegan(UITouch& touch) override { note("down ", touch); }
    void touchMoved(UITouch& touch) override { note("move ", touch); }
    void touchEnded(UITouch& touch) override { note("up ", touch); }
    void touchCancelled(UITouch& touch) override { note("cancel ", touch); }
    std::string log;
    CGPoint last;

  private:
    void note(const char* what, UITouch& touch) {
        log += what;
        last = touch.location();
    }
};

struct Screen {
    explicit Screen(CGFloat scale = 1)
        : host({.title = "test",
                .size = kSize,
                .scale = scale,
                .controllers = SDLHost::Controllers::used}) {
        host.onKey([this](const SDLHost::Key& k) { keys += k.name + (k.repeated ? "* " : " "); });
        pad->setBackgroundColor(UIColor::redColor());
        pad->setFrame(kPlace);
        host.window()->rootViewController()->view()->addSubview(pad);
        settle(); // after the window system's first events
    }
    void settle() {
        for (int i = 0; i < 3; ++i)
            host.turn(0);
    }
    void send(std::vector<SDL_Event> events) {
        for (SDL_Event& event : events)
            EXPECT_EQ(SDL_PushEvent(&event), 1);
        settle();
    }
    static SDL_Window* window() {
        Uint32 id = 1;
        while (id < 1000 && !SDL_GetWindowFromID(id))
            ++id;
        return SDL_GetWindowFromID(id);
    }
    std::uint32_t pixel(int x, int y) {
        const SDL_Rect place{x, y, 1, 1};
        SDL_Renderer* const renderer = SDL_GetRenderer(window());
        std::uint32_t value = 0;
        SDL_RenderReadPixels(renderer, &place, SDL_PIXELFORMAT_ARGB8888, &value, 4);
        return value;
    }

    SDLHost host;
    Ref<Pad> pad = make<Pad>();
    std::string keys; // that the application gets
};

// An event of that type with the members that `fill` sets.
SDL_Event event(Uint32 type, const std::function<void(SDL_Event&)>& fill = {}) {
    SDL_Event made{};
    made.type = type;
    if (fill)
        fill(made);
    return made;
}

SDL_Event mouse(Uint32 type, CGPoint at, Uint32 which = 0, Uint8 button = SDL_BUTTON_LEFT) {
    return event(type, [&](SDL_Event& e) {
        const int x = static_cast<int>(at.x), y = static_cast<int>(at.y);
        if (type == SDL_MOUSEMOTION)
            e.motion.x = x, e.motion.y = y;
        else
            e.button.x = x, e.button.y = y, e.button.which = which, e.button.button = button;
    });
}

// Of a finger on the pad.
SDL_Event touch(Uint32 type, SDL_TouchID device = 3) {
    return event(type, [&](SDL_Event& e) {
        e.tfinger.touchId = device;
        e.tfinger.x = static_cast<float>(kOnPad.x / kSize.width);
        e.tfinger.y = static_cast<float>(kOnPad.y / kSize.height);
    });
}

SDL_Event key(SDL_Keycode code, Uint16 modifiers = 0, Uint8 repeat = 0) {
    return event(SDL_KEYDOWN, [&](SDL_Event& e) {
        e.key.keysym.sym = code, e.key.keysym.mod = modifiers, e.key.repeat = repeat;
    });
}

// --- Input --------------------------------------------------------------------------------------

TEST(SDLHost, HandsTouchesToTheWindowAndTapsToTheApplication) {
    constexpr auto down = SDL_MOUSEBUTTONDOWN, up = SDL_MOUSEBUTTONUP, motion = SDL_MOUSEMOTION;
    constexpr auto land = SDL_FINGERDOWN, lift = SDL_FINGERUP;
    constexpr auto echo = SDL_TOUCH_MOUSEID; // SDL's own mouse events for fingers
    constexpr auto back = SDL_MOUSE_TOUCHID; // and its finger events for the mouse
    constexpr Uint8 right = SDL_BUTTON_RIGHT;
    constexpr CGPoint on = kOnPad, beside = kBesidePad;
    SDL_Event focusLost = event(SDL_WINDOWEVENT);
    focusLost.window.event = SDL_WINDOWEVENT_FOCUS_LOST;
    const struct {
        const char* log;
        int taps; // that the application gets
        std::vector<SDL_Event> events;
    } cases[] = {
        {"down up ", 0, {mouse(down, on), mouse(up, on)}},
        {"", 0, {mouse(motion, on)}}, // a hover
        {"", 0, {mouse(down, on, 0, right), mouse(up, on, 0, right)}},
        // A finger, and the mouse, with the events that SDL adds.
        {"down up ", 0, {touch(land), mouse(down, on, echo), touch(lift), mouse(up, on, echo)}},
        {"down up ", 0, {mouse(down, on), touch(land, back), mouse(up, on), touch(lift, back)}},
        {"down down up up ", 0, {touch(land, 1), touch(land, 2), touch(lift, 1), touch(lift, 2)}},
        {"", 0, {touch(lift)}}, // never landed
        {"", 1, {mouse(down, beside), mouse(up, beside)}},
        {"", 0, {mouse(down, beside), mouse(up, {190, 90})}}, // a drag
        {"down move up ", 0, {mouse(down, on), mouse(motion, beside), mouse(up, beside)}},
        {"down cancel ", 0, {mouse(down, on), focusLost, mouse(up, on)}},
        {"", 0, {mouse(down, beside), focusLost, mouse(up, beside)}},
    };
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        Screen screen;
        int taps = 0;
        screen.host.onTap([&](CGPoint) { ++taps; });
        screen.send(cases[i].events);
        EXPECT_EQ(screen.pad->log, cases[i].log) << "case " << i;
        EXPECT_EQ(taps, cases[i].taps) << "case " << i;
    }
}

TEST(SDLHost, MarksTheControlUnderTheMouse) {
    constexpr auto down = SDL_MOUSEBUTTONDOWN, up = SDL_MOUSEBUTTONUP, motion = SDL_MOUSEMOTION;
    Screen screen;
    const auto stepper = make<UIStepper>();
    stepper->setFrame({100, 10, 94, 29});
    screen.pad->superview()->addSubview(stepper);
    constexpr CGPoint plus{170, 25}, minus{110, 25};
    SDL_Event leave = event(SDL_WINDOWEVENT), echo = mouse(motion, plus);
    leave.window.event = SDL_WINDOWEVENT_LEAVE;
    echo.motion.which = SDL_TOUCH_MOUSEID;
    const std::pair<std::vector<SDL_Event>, bool> steps[] = {
        {{}, false},
        {{echo}, false},
        {{mouse(motion, plus)}, true},
        {{mouse(motion, minus)}, false},   // disabled
        {{mouse(motion, {170, 5})}, true}, // where a click still reaches it
        {{leave}, false},
        {{mouse(motion, plus)}, true},
        {{touch(SDL_FINGERDOWN)}, false},
        {{mouse(motion, plus)}, false},
        {{touch(SDL_FINGERUP), mouse(motion, plus)}, true},
        {{mouse(down, plus)}, false},
        {{mouse(up, plus)}, true},
        {{mouse(motion, kBesidePad + CGPoint{0, 60})}, false}};
    std::uint32_t plain = 0;
    for (const auto& [events, isMarked] : steps) {
        screen.send(events);
        const auto shown = screen.pixel(148, 24); // on the left edge of the half
        plain = plain ? plain : shown;
        EXPECT_EQ(shown != plain, isMarked) << &events - &steps[0].first;
    }
}

TEST(SDLHost, LeavesUnhandledKeysToTheApplication) {
    Screen screen;
    screen.send({key(SDLK_SPACE), key(SDLK_LEFT, 0, 1), key(SDLK_c, KMOD_LCTRL), key(SDLK_ESCAPE)});
    EXPECT_EQ(screen.keys, "Space Left* Escape ");

    const auto sheet = make<UIViewController>();
    screen.host.window()->presentViewController(sheet, false);
    screen.send({key(SDLK_ESCAPE)});
    EXPECT_EQ(screen.keys, "Space Left* Escape ");
    EXPECT_TRUE(!sheet->presentingViewController() || sheet->isBeingDismissed());
}

SDL_Event stick(Uint8 axis, double value) {
    return event(SDL_CONTROLLERAXISMOTION, [&](SDL_Event& e) {
        e.caxis.axis = axis, e.caxis.value = static_cast<Sint16>(value * 32767);
    });
}

SDL_Event button(Uint32 type, SDL_GameControllerButton which) {
    return event(type, [&](SDL_Event& e) { e.cbutton.button = static_cast<Uint8>(which); });
}

TEST(SDLHost, MapsKeysAndControllersToTheFocus) {
    constexpr auto x = SDL_CONTROLLER_AXIS_LEFTX, y = SDL_CONTROLLER_AXIS_LEFTY;
    constexpr auto down = SDL_CONTROLLERBUTTONDOWN, up = SDL_CONTROLLERBUTTONUP;
    constexpr auto dpRight = SDL_CONTROLLER_BUTTON_DPAD_RIGHT;
    setMotionSetting(MotionSetting::reduced);
    Screen screen;
    const auto sheet = make<UIViewController>();
    sheet->setModalPresentationStyle(UIModalPresentationStyle::fullScreen);
    for (int i = 0; i < 9; ++i) { // three rows of three
        const auto control = make<UIControl>();
        const int column = i % 3, row = i / 3;
        control->setFrame({column * 60.0, row * 30.0, 50, 25});
        control->setAccessibilityIdentifier(std::to_string(i));
        sheet->view()->addSubview(control);
    }
    screen.host.window()->presentViewController(sheet, false);
    const std::pair<std::vector<SDL_Event>, const char*> steps[] = {
        {{key(SDLK_DOWN)}, "0"}, // only shows it
        {{key(SDLK_DOWN), key(SDLK_END)}, "5"},
        {{key(SDLK_HOME), key(SDLK_UP), key(SDLK_KP_6, KMOD_NUM)}, "0"},
        {{key(SDLK_KP_6)}, "1"},
        {{key(SDLK_KP_7), key(SDLK_TAB), key(SDLK_TAB), key(SDLK_TAB, KMOD_LSHIFT)}, "1"},
        {{key(SDLK_RIGHT, KMOD_LCTRL)}, "1"},
        {{key(SDLK_RIGHT, 0, 1)}, "1"}, // too early to repeat
        {{button(down, dpRight), button(up, dpRight)}, "2"},
        {{stick(x, -0.4), stick(x, -0.6), stick(x, -0.9)}, "1"}, // once
        {{stick(x, -0.4), stick(x, -0.6)}, "1"},                 // not released in between
        {{stick(x, -0.2), stick(x, -0.6)}, "0"},
        {{stick(y, 0.9), stick(x, 0)}, "3"}, // round a corner
        {{stick(y, 0)}, "3"},
        {{button(down, SDL_CONTROLLER_BUTTON_Y), key(SDLK_c)}, "3"},
    };
    for (std::size_t i = 0; i < std::size(steps); ++i) {
        screen.send(steps[i].first);
        const auto focus = screen.host.window()->focus();
        EXPECT_EQ(focus ? focus->identifier : "none", steps[i].second) << "step " << i;
    }
    EXPECT_EQ(screen.keys, "Keypad 6 Controller y C ");

    // Held, it repeats by the host's clock until the host loses the keyboard.
    screen.send({button(down, dpRight)});
    const auto end = Clock::now() + std::chrono::milliseconds(650);
    while (Clock::now() < end)
        screen.host.turn(0.05);
    EXPECT_EQ(screen.host.window()->focus()->identifier, "5");
    SDL_Event focusLost = event(SDL_WINDOWEVENT);
    focusLost.window.event = SDL_WINDOWEVENT_FOCUS_LOST;
    screen.send({focusLost});
    EXPECT_FALSE(NSRunLoop::mainRunLoop().nextDeadline());
    screen.send({button(down, SDL_CONTROLLER_BUTTON_RIGHTSHOULDER)});
    EXPECT_TRUE(NSRunLoop::mainRunLoop().nextDeadline()); // steps repeat too

    screen.send({button(down, SDL_CONTROLLER_BUTTON_B)});
    EXPECT_TRUE(!sheet->presentingViewController() || sheet->isBeingDismissed());
}

TEST(SDLHost, OpensControllersThatArePluggedIn) {
    SDL_SetHint(SDL_HINT_JOYSTICK_ALLOW_BACKGROUND_EVENTS, "1");
    Screen screen;
    const int device = SDL_JoystickAttachVirtual(
        SDL_JOYSTICK_TYPE_GAMECONTROLLER, SDL_CONTROLLER_AXIS_MAX, SDL_CONTROLLER_BUTTON_MAX, 0);
    ASSERT_GE(device, 0) << SDL_GetError();
    screen.settle();
    SDL_Joystick* const stick = SDL_JoystickFromInstanceID(SDL_JoystickGetDeviceInstanceID(device));
    ASSERT_TRUE(stick); // the host has opened it
    SDL_JoystickSetVirtualButton(stick, SDL_CONTROLLER_BUTTON_START, 1);
    screen.settle();
    EXPECT_EQ(screen.keys, "Controller start ");
    SDL_JoystickDetachVirtual(device);
    screen.settle();
    EXPECT_EQ(SDL_NumJoysticks(), 0);
}

// --- Pixels -------------------------------------------------------------------------------------

TEST(SDLHost, ShowsTheWindowOverThePicture) {
    Screen screen;
    screen.pad->setBackgroundColor(UIColor::colorWithRed(1, 0, 0, 0.5));
    screen.host.onPicture([](const SDLHost::Picture& picture) {
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(picture.pixels) % 64, 0u);
        EXPECT_EQ(picture.stride % 64, 0);
        for (int y = 0; y < picture.height; ++y)
            std::fill_n(picture.pixels + picture.stride / 4 * y, picture.width, 0x0000FFu);
    });
    screen.settle();
    EXPECT_EQ(screen.pixel(150, 20) & 0xFFFFFF, 0x0000FFu);
    const std::uint32_t mixed = screen.pixel(45, 55);
    EXPECT_NEAR(mixed >> 16 & 0xFF, 128, 2);
    EXPECT_NEAR(mixed & 0xFF, 128, 2);
}

// In a window, a renderer and a loop of the application's.
TEST(SDLOverlay, IsBlendedAndTakesItsEvents) {
    ASSERT_EQ(SDL_InitSubSystem(SDL_INIT_VIDEO), 0);
    SDL_Window* const shown = SDL_CreateWindow("test", 0, 0, 200, 100, 0);
    SDL_Renderer* const renderer = SDL_CreateRenderer(shown, -1, SDL_RENDERER_SOFTWARE);
    {
        SDLOverlay overlay(*shown, *renderer);
        const auto pad = make<Pad>();
        pad->setBackgroundColor(UIColor::colorWithRed(1, 0, 0, 0.5));
        pad->setFrame(kPlace);
        overlay.window()->rootViewController()->view()->addSubview(pad);
        const auto pixel = [&](int x, int y) {
            const SDL_Rect place{x, y, 1, 1};
            std::uint32_t value = 0;
            SDL_RenderReadPixels(renderer, &place, SDL_PIXELFORMAT_ARGB8888, &value, 4);
            return value & 0xFFFFFF;
        };
        for (const std::uint8_t blue : {255, 100}) { // two pictures, the second without a change
            SDL_SetRenderDrawColor(renderer, 0, 0, blue, 255);
            SDL_RenderClear(renderer);
            EXPECT_EQ(overlay.needsDraw(), blue == 255);
            overlay.draw();
            EXPECT_EQ(pixel(150, 20), blue);
            EXPECT_NEAR(pixel(45, 55) & 0xFF, blue / 2.0, 2);
            EXPECT_NEAR(pixel(45, 55) >> 16, 128, 2);
        }
        EXPECT_EQ(overlay.milliseconds(250), 250);
        constexpr auto down = SDL_MOUSEBUTTONDOWN, up = SDL_MOUSEBUTTONUP;
        const std::pair<SDL_Event, bool> events[] = {
            {mouse(down, kBesidePad), false}, {mouse(up, kBesidePad), false},
            {mouse(down, kOnPad), true},      {mouse(SDL_MOUSEMOTION, kBesidePad), true},
            {mouse(up, kBesidePad), true},    {mouse(down, kOnPad, SDL_TOUCH_MOUSEID), true},
            {touch(SDL_FINGERDOWN), true},    {mouse(up, kOnPad, SDL_TOUCH_MOUSEID), true},
            {touch(SDL_FINGERUP), true},      {mouse(up, kOnPad, SDL_TOUCH_MOUSEID), false},
            {key(SDLK_ESCAPE), false},        {event(SDL_QUIT), false}};
        for (const auto& [each, isTaken] : events)
            EXPECT_EQ(overlay.handle(each), isTaken) << &each - &events[0].first;
        EXPECT_EQ(pad->log, "down move up down up ");
        SDL_SetWindowSize(shown, 120, 80);
        EXPECT_TRUE(overlay.needsDraw());
        EXPECT_EQ(overlay.window()->pixelSize(), (CGSize{120, 80}));
    }
    SDL_DestroyRenderer(renderer);
    SDL_DestroyWindow(shown);
    SDL_QuitSubSystem(SDL_INIT_VIDEO);
}

TEST(SDLHost, UploadsOnlyWhatChanged) {
    Screen screen;
    const auto before = screen.host.statistics();
    screen.settle();
    EXPECT_EQ(screen.host.statistics().frames, before.frames);

    screen.pad->setNeedsDisplayInRect({0, 0, 10, 5});
    screen.settle();
    const auto after = screen.host.statistics();
    EXPECT_EQ(after.frames, before.frames + 1);
    EXPECT_EQ(after.uploadedPixels, before.uploadedPixels + 50);

    screen.host.setPictureNeedsDisplay();
    screen.settle();
    EXPECT_EQ(screen.host.statistics().frames, after.frames + 1);
    EXPECT_EQ(screen.host.statistics().uploadedPixels, after.uploadedPixels);
}

TEST(SDLHost, ConvertsPositionsAndSizesToPoints) {
    Screen screen(2);
    screen.send({mouse(SDL_MOUSEBUTTONDOWN, {2 * kOnPad.x, 2 * kOnPad.y})});
    EXPECT_EQ(screen.pad->last, kOnPad);
    CGSize reported;
    screen.host.onResize([&](CGSize size) { reported = size; });
    SDL_SetWindowSize(Screen::window(), 300, 240);
    screen.settle();
    EXPECT_EQ(reported, (CGSize{150, 120}));
    EXPECT_EQ(screen.host.window()->pixelSize(), (CGSize{300, 240}));
    EXPECT_EQ(screen.pixel(90, 110), 0xFFFF0000u);
}

TEST(SDLHost, ScalesForATelevision) {
    SDLHost host({.title = "test", .size = {384, 216}, .viewing = UIViewing::television});
    for (const int height : {216, 540, 1080}) {
        SDL_SetWindowSize(Screen::window(), height * 16 / 9, height);
        for (int i = 0; i < 3; ++i)
            host.turn(0);
        EXPECT_EQ(host.window()->frame().size, (CGSize{960, 540})) << height;
        EXPECT_EQ(host.window()->safeAreaInsets().left, 48);
    }
}

// --- Sleep --------------------------------------------------------------------------------------

TEST(SDLHost, SleepsUntilTheNextDeadline) {
    Screen screen;
    bool fired = false;
    const auto start = Clock::now();
    NSRunLoop::mainRunLoop().schedule(0.08, [&] { fired = true; });
    for (int turns = 0; !fired && turns < 3; ++turns)
        screen.host.turn();
    EXPECT_TRUE(fired);
    EXPECT_GE(Clock::now() - start, std::chrono::milliseconds(70));
}

TEST(SDLHost, WakesForAnotherThread) {
    Screen screen;
    int woken = 0;
    screen.host.onWake(
        [&, main = std::this_thread::get_id()] { woken += std::this_thread::get_id() == main; });
    std::thread other([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(30));
        for (int i = 0; i < 1000; ++i)
            screen.host.wakeUp();
    });
    screen.host.turn(); // without a deadline: only wakeUp() ends it
    other.join();
    screen.settle();
    EXPECT_TRUE(woken >= 1 && woken < 1000) << woken;
}

TEST(SDLHost, QuitsWhenTheWindowIsClosed) {
    Screen screen;
    SDL_Event quit = event(SDL_QUIT);
    SDL_PushEvent(&quit);
    screen.host.run();
    EXPECT_FALSE(screen.host.turn());
}

// Destroys the host in each call that it makes, with a captured object that must survive the call.
TEST(SDLHost, MayBeDestroyedByAnyCallOfATurn) {
    struct View : UIView {
        void touchBegan(UITouch&) override { act("touch"); }
        void layoutSubviews() override { act("layout"); }
        void draw(CGRect) override { act("draw"); }
        std::function<void(std::string)> act = [](auto) {};
    };
    for (const std::string where :
         {"touch", "tap", "key", "wake", "work", "resize", "layout", "draw", "picture"}) {
        auto host = std::make_unique<SDLHost>(SDLHost::Options{.title = "test", .size = kSize});
        const auto view = make<View>();
        view->setFrame(kPlace);
        host->window()->rootViewController()->view()->addSubview(view);
        for (int i = 0; i < 3; ++i)
            host->turn(0);
        std::string calls;
        const auto owned = std::make_shared<std::string>("released");
        const auto act = [&host, &calls, where, owned](const std::string& call) {
            calls += host ? "" : call + " after the end";
            if (call != where)
                return;
            host.reset();
            calls += *owned;
        };
        view->act = act;
        host->onTap([act](CGPoint) { act("tap"); });
        host->onKey([act](const SDLHost::Key&) { act("key"); });
        host->onWake([act] { act("wake"); });
        host->onResize([act](CGSize) { act("resize"); });
        host->onPicture([act](const SDLHost::Picture&) { act("picture"); });
        const auto work = NSRunLoop::mainRunLoop().schedule(0, [act] { act("work"); });
        const WeakRef<UIWindow> window = host->window();
        SDL_SetWindowSize(Screen::window(), 300, 240);
        view->setNeedsLayout();
        view->setNeedsDisplay();
        host->wakeUp();
        for (SDL_Event sent :
             {mouse(SDL_MOUSEBUTTONDOWN, kOnPad), mouse(SDL_MOUSEBUTTONUP, kOnPad),
              mouse(SDL_MOUSEBUTTONDOWN, kBesidePad), mouse(SDL_MOUSEBUTTONUP, kBesidePad),
              key(SDLK_SPACE), event(SDL_QUIT)})
            SDL_PushEvent(&sent);
        host->run();
        NSRunLoop::mainRunLoop().cancel(work);
        EXPECT_EQ(calls, "released") << where;
        EXPECT_TRUE(!host && window.expired() && owned.use_count() == 3) << where;
        view->act = nullptr;
        SDL_FlushEvents(SDL_FIRSTEVENT, SDL_LASTEVENT);
    }
}

TEST(SDLHost, ReportsAMissingDisplay) {
    SDL_setenv("SDL_VIDEODRIVER", "nonsense", 1);
    try {
        SDLHost host({.title = "test"});
        ADD_FAILURE() << "a window on no display";
    } catch (const SDLHost::NoDisplay& error) {
        EXPECT_NE(std::string(error.what()).find("nonsense"), std::string::npos) << error.what();
    }
    SDL_setenv("SDL_VIDEODRIVER", "dummy", 1);
}

} // namespace
} // namespace tesmar

int main(int argc, char** argv) {
    SDL_setenv("SDL_VIDEODRIVER", "dummy", 1);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
