// The SDL host on a display that exists in memory only, fed with SDL's own events.
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

// Red, counts what it hears, takes every touch.
class Pad : public UIView {
  public:
    void touchBegan(UITouch& touch) override { note("down", touch); }
    void touchMoved(UITouch& touch) override { note("move", touch); }
    void touchEnded(UITouch& touch) override { note("up", touch); }
    void touchCancelled(UITouch& touch) override { note("cancel", touch); }
    std::string story;
    CGPoint last;

  private:
    void note(const char* what, UITouch& touch) {
        story += std::string(story.empty() ? "" : " ") + what;
        last = touch.location();
    }
};

struct Screen {
    explicit Screen(CGFloat scale = 1) : host({.title = "test", .size = kSize, .scale = scale}) {
        pad->setBackgroundColor(UIColor::redColor());
        pad->setFrame(kPlace);
        host.window()->rootViewController()->view()->addSubview(pad);
        for (int i = 0; i < 3; ++i) // the window system's own greetings
            host.turn(0);
    }
    void settle() {
        for (int i = 0; i < 3; ++i)
            host.turn(0);
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

SDL_Event mouse(Uint32 type, CGPoint at, Uint32 which = 0, Uint8 button = SDL_BUTTON_LEFT) {
    SDL_Event event{};
    event.type = type;
    if (type == SDL_MOUSEMOTION) {
        event.motion.which = which;
        event.motion.x = static_cast<int>(at.x);
        event.motion.y = static_cast<int>(at.y);
    } else {
        event.button.which = which;
        event.button.button = button;
        event.button.x = static_cast<int>(at.x);
        event.button.y = static_cast<int>(at.y);
    }
    return event;
}

SDL_Event finger(Uint32 type, CGPoint at, SDL_FingerID id = 7, SDL_TouchID device = 3) {
    SDL_Event event{};
    event.type = type;
    event.tfinger.touchId = device;
    event.tfinger.fingerId = id;
    event.tfinger.x = static_cast<float>(at.x / kSize.width);
    event.tfinger.y = static_cast<float>(at.y / kSize.height);
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

void push(std::vector<SDL_Event> events) {
    for (SDL_Event& event : events)
        ASSERT_EQ(SDL_PushEvent(&event), 1);
}

// --- Input --------------------------------------------------------------------------------------

TEST(SDLHost, TouchesReachTheWindowOnceAndTheRestTheApplication) {
    struct Case {
        const char* name;
        std::vector<SDL_Event> events;
        const char* story;
        int taps; // that the application hears of
    };
    const auto down = SDL_MOUSEBUTTONDOWN, up = SDL_MOUSEBUTTONUP, motion = SDL_MOUSEMOTION;
    const Case cases[] = {
        {"a click", {mouse(down, kOnPad), mouse(up, kOnPad)}, "down up", 0},
        {"a hover", {mouse(motion, kOnPad)}, "", 0},
        {"another button",
         {mouse(down, kOnPad, 0, SDL_BUTTON_RIGHT), mouse(up, kOnPad, 0, SDL_BUTTON_RIGHT)},
         "",
         0},
        {"a finger with its echo as a mouse",
         {finger(SDL_FINGERDOWN, kOnPad), mouse(down, kOnPad, SDL_TOUCH_MOUSEID),
          finger(SDL_FINGERUP, kOnPad), mouse(up, kOnPad, SDL_TOUCH_MOUSEID)},
         "down up",
         0},
        {"a mouse with its echo as a finger",
         {mouse(down, kOnPad), finger(SDL_FINGERDOWN, kOnPad, 0, SDL_MOUSE_TOUCHID),
          mouse(up, kOnPad), finger(SDL_FINGERUP, kOnPad, 0, SDL_MOUSE_TOUCHID)},
         "down up",
         0},
        {"two fingers of two devices with the same name",
         {finger(SDL_FINGERDOWN, kOnPad, 1, 1), finger(SDL_FINGERDOWN, kOnPad, 1, 2),
          finger(SDL_FINGERUP, kOnPad, 1, 1), finger(SDL_FINGERUP, kOnPad, 1, 2)},
         "down down up up",
         0},
        {"a lift of what never landed", {finger(SDL_FINGERUP, kOnPad)}, "", 0},
        {"beside it", {mouse(down, kBesidePad), mouse(up, kBesidePad)}, "", 1},
        {"a drag beside it", {mouse(down, kBesidePad), mouse(up, {190, 90})}, "", 0},
        {"a drag from it stays its own",
         {mouse(down, kOnPad), mouse(motion, kBesidePad), mouse(up, kBesidePad)},
         "down move up",
         0},
        {"the focus is lost",
         {mouse(down, kOnPad), windowEvent(SDL_WINDOWEVENT_FOCUS_LOST), mouse(up, kOnPad)},
         "down cancel",
         0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Screen screen;
        int taps = 0;
        screen.host.onTap([&](CGPoint) { ++taps; });
        push(c.events);
        screen.settle();
        EXPECT_EQ(screen.pad->story, c.story);
        EXPECT_EQ(taps, c.taps);
    }
}

TEST(SDLHost, PositionsAreInPointsWhateverTheScale) {
    Screen screen(2);
    push({mouse(SDL_MOUSEBUTTONDOWN, {2 * kOnPad.x, 2 * kOnPad.y})});
    screen.settle();
    EXPECT_EQ(screen.pad->last, kOnPad);
    EXPECT_EQ(screen.host.window()->frame().size, kSize);
    EXPECT_EQ(screen.host.window()->scale(), 2);
}

TEST(SDLHost, KeysThatTheWindowHasNoUseForAreTheApplications) {
    Screen screen;
    std::string heard;
    screen.host.onKey([&](const SDLHost::Key& k) { heard += k.name + (k.repeated ? "* " : " "); });
    push({key(SDLK_SPACE), key(SDLK_LEFT, 0, 1), key(SDLK_c, KMOD_LCTRL), key(SDLK_ESCAPE)});
    screen.settle();
    EXPECT_EQ(heard, "Space Left* Escape ");

    const auto sheet = make<UIViewController>();
    screen.host.window()->presentViewController(sheet, false);
    screen.settle();
    push({key(SDLK_ESCAPE)});
    screen.settle();
    EXPECT_EQ(heard, "Space Left* Escape ");
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

TEST(SDLHost, UploadsWhatChangedAndPresentsOnlyThen) {
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

TEST(SDLHost, FollowsTheWindowsSize) {
    Screen screen(2);
    CGSize told;
    screen.host.onResize([&](CGSize size) { told = size; });
    SDL_SetWindowSize(Screen::window(), 300, 240);
    screen.settle();
    EXPECT_EQ(told, (CGSize{150, 120}));
    EXPECT_EQ(screen.host.window()->pixelSize(), (CGSize{300, 240}));
    EXPECT_EQ(screen.pixel(90, 110), 0xFFFF0000u);
}

// --- Sleep --------------------------------------------------------------------------------------

TEST(SDLHost, SleepsUntilTheNextDeadline) {
    Screen screen;
    bool rang = false;
    const auto start = Clock::now();
    NSRunLoop::mainRunLoop().schedule(0.08, [&] { rang = true; });
    int turns = 0;
    while (!rang && ++turns < 50)
        screen.host.turn();
    const std::chrono::duration<double> slept = Clock::now() - start;
    EXPECT_TRUE(rang);
    EXPECT_GE(slept.count(), 0.07);
    EXPECT_LE(turns, 3);
}

TEST(SDLHost, AnotherThreadEndsTheSleep) {
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
    screen.host.turn(); // without a deadline: only the other thread ends it
    other.join();
    screen.settle();
    EXPECT_GE(woken, 1);
    EXPECT_LT(woken, 1000);
}

TEST(SDLHost, QuitsWhenTheViewerClosesTheWindow) {
    Screen screen;
    SDL_Event quit{};
    quit.type = SDL_QUIT;
    push({quit});
    screen.host.run();
    EXPECT_FALSE(screen.host.turn());
}

TEST(SDLHost, SaysWhyThereIsNoDisplay) {
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
