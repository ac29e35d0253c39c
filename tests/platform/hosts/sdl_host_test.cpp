// The SDL host on a display in memory, fed with SDL events.
#include "tesmar/platform/hosts/sdl/SDLHost.h"

#include "tesmar/platform/foundation/NSRunLoop.h"
#include "tesmar/platform/ui/UIControl.h"

#include <SDL.h>
#include <gtest/gtest.h>

#include <chrono>
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
    explicit Screen(CGFloat scale = 1) : host({.title = "test", .size = kSize, .scale = scale}) {
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
        for (Uint32 id = 1; id < 1000; ++id)
            if (SDL_Window* window = SDL_GetWindowFromID(id))
                return window;
        return nullptr;
    }
    std::uint32_t pixel(int x, int y) {
        const SDL_Rect place{x, y, 1, 1};
        std::uint32_t value = 0;
        SDL_RenderReadPixels(SDL_GetRenderer(window()), &place, SDL_PIXELFORMAT_ARGB8888, &value,
                             4);
        return value;
    }

    SDLHost host;
    Ref<Pad> pad = make<Pad>();
};

SDL_Event button(Uint32 type, CGPoint at, Uint32 which, Uint8 button) {
    SDL_Event event{};
    event.type = type;
    event.button.which = which;
    event.button.button = button;
    event.button.x = static_cast<int>(at.x);
    event.button.y = static_cast<int>(at.y);
    return event;
}
SDL_Event press(CGPoint at, Uint32 which = 0, Uint8 name = SDL_BUTTON_LEFT) {
    return button(SDL_MOUSEBUTTONDOWN, at, which, name);
}
SDL_Event lift(CGPoint at, Uint32 which = 0, Uint8 name = SDL_BUTTON_LEFT) {
    return button(SDL_MOUSEBUTTONUP, at, which, name);
}

SDL_Event hover(CGPoint at) {
    SDL_Event event{};
    event.type = SDL_MOUSEMOTION;
    event.motion.x = static_cast<int>(at.x);
    event.motion.y = static_cast<int>(at.y);
    return event;
}

SDL_Event finger(Uint32 type, SDL_TouchID device = 3) {
    SDL_Event event{};
    event.type = type;
    event.tfinger.touchId = device;
    event.tfinger.x = static_cast<float>(kOnPad.x / kSize.width);
    event.tfinger.y = static_cast<float>(kOnPad.y / kSize.height);
    return event;
}

SDL_Event key(SDL_Keycode code, Uint16 modifiers = 0, Uint8 repeat = 0) {
    SDL_Event event{};
    event.type = SDL_KEYDOWN;
    event.key.keysym.sym = code;
    event.key.keysym.mod = modifiers;
    event.key.repeat = repeat;
    return event;
}

SDL_Event windowEvent(Uint8 what) {
    SDL_Event event{};
    event.type = SDL_WINDOWEVENT;
    event.window.event = what;
    return event;
}

// --- Input --------------------------------------------------------------------------------------

TEST(SDLHost, HandsTouchesToTheWindowAndTapsToTheApplication) {
    constexpr Uint8 kRight = SDL_BUTTON_RIGHT;
    constexpr Uint32 kEcho = SDL_TOUCH_MOUSEID; // a mouse event that SDL makes of a finger's
    const auto down = SDL_FINGERDOWN, up = SDL_FINGERUP;
    const SDL_Event focusLost = windowEvent(SDL_WINDOWEVENT_FOCUS_LOST);
    const struct {
        const char* name;
        std::vector<SDL_Event> events;
        const char* log;
        int taps; // that the application gets
    } cases[] = {
        {"click", {press(kOnPad), lift(kOnPad)}, "down up ", 0},
        {"hover", {hover(kOnPad)}, "", 0},
        {"right button", {press(kOnPad, 0, kRight), lift(kOnPad, 0, kRight)}, "", 0},
        {"finger",
         {finger(down), press(kOnPad, kEcho), finger(up), lift(kOnPad, kEcho)},
         "down up ",
         0},
        {"mouse with echo",
         {press(kOnPad), finger(down, SDL_MOUSE_TOUCHID), lift(kOnPad),
          finger(up, SDL_MOUSE_TOUCHID)},
         "down up ",
         0},
        {"two devices",
         {finger(down, 1), finger(down, 2), finger(up, 1), finger(up, 2)},
         "down down up up ",
         0},
        {"lift only", {finger(up)}, "", 0},
        {"beside", {press(kBesidePad), lift(kBesidePad)}, "", 1},
        {"drag beside", {press(kBesidePad), lift({190, 90})}, "", 0},
        {"drag", {press(kOnPad), hover(kBesidePad), lift(kBesidePad)}, "down move up ", 0},
        {"focus", {press(kOnPad), focusLost, lift(kOnPad)}, "down cancel ", 0},
    };
    for (const auto& c : cases) {
        Screen screen;
        int taps = 0;
        screen.host.onTap([&](CGPoint) { ++taps; });
        screen.send(c.events);
        EXPECT_EQ(screen.pad->log, c.log) << c.name;
        EXPECT_EQ(taps, c.taps) << c.name;
    }
}

TEST(SDLHost, ConvertsPositionsToPoints) {
    Screen screen(2);
    screen.send({press({2 * kOnPad.x, 2 * kOnPad.y})});
    EXPECT_EQ(screen.pad->last, kOnPad);
    EXPECT_EQ(screen.host.window()->frame().size, kSize);
    EXPECT_EQ(screen.host.window()->scale(), 2);
}

TEST(SDLHost, LeavesUnhandledKeysToTheApplication) {
    Screen screen;
    std::string keys;
    screen.host.onKey([&](const SDLHost::Key& k) { keys += k.name + (k.repeated ? "* " : " "); });
    screen.send({key(SDLK_SPACE), key(SDLK_LEFT, 0, 1), key(SDLK_c, KMOD_LCTRL), key(SDLK_ESCAPE)});
    EXPECT_EQ(keys, "Space Left* Escape ");

    const auto sheet = make<UIViewController>();
    screen.host.window()->presentViewController(sheet, false);
    screen.send({key(SDLK_ESCAPE)});
    EXPECT_EQ(keys, "Space Left* Escape ");
    EXPECT_TRUE(!sheet->presentingViewController() || sheet->isBeingDismissed());
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

TEST(SDLHost, FollowsTheSizeOfTheWindow) {
    Screen screen(2);
    CGSize reported;
    screen.host.onResize([&](CGSize size) { reported = size; });
    SDL_SetWindowSize(Screen::window(), 300, 240);
    screen.settle();
    EXPECT_EQ(reported, (CGSize{150, 120}));
    EXPECT_EQ(screen.host.window()->pixelSize(), (CGSize{300, 240}));
    EXPECT_EQ(screen.pixel(90, 110), 0xFFFF0000u);
}

// --- Sleep --------------------------------------------------------------------------------------

TEST(SDLHost, SleepsUntilTheNextDeadline) {
    Screen screen;
    bool fired = false;
    const auto start = Clock::now();
    NSRunLoop::mainRunLoop().schedule(0.08, [&] { fired = true; });
    int turns = 0;
    while (!fired && ++turns < 50)
        screen.host.turn();
    const std::chrono::duration<double> slept = Clock::now() - start;
    EXPECT_TRUE(fired);
    EXPECT_GE(slept.count(), 0.07);
    EXPECT_LE(turns, 3);
}

TEST(SDLHost, WakesForAnotherThread) {
    Screen screen;
    const auto main = std::this_thread::get_id();
    int woken = 0;
    screen.host.onWake([&] {
        EXPECT_EQ(std::this_thread::get_id(), main);
        ++woken;
    });
    std::thread other([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(30));
        for (int i = 0; i < 1000; ++i)
            screen.host.wakeUp();
    });
    screen.host.turn(); // without a deadline: only wakeUp() ends it
    other.join();
    screen.settle();
    EXPECT_GE(woken, 1);
    EXPECT_LT(woken, 1000);
}

TEST(SDLHost, QuitsWhenTheWindowIsClosed) {
    Screen screen;
    SDL_Event quit{};
    quit.type = SDL_QUIT;
    SDL_PushEvent(&quit);
    screen.host.run();
    EXPECT_FALSE(screen.host.turn());
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
