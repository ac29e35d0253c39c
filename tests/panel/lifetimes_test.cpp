// A panel let go, or its window destroyed, at every stage of its life: nothing is left, and nobody
// is called who is gone. TESMAR_SOAK=f goes round f times as often.
#include "panel_fixture.h"
#include "soundness.h"

#include <cstdlib>
#include <fstream>
#include <functional>

namespace tesmar {
namespace {

constexpr int kRounds = 8;        // through every cell, in the short form
constexpr CGSize kSize{340, 300}; // the panel has to scroll

struct Life : std::enable_shared_from_this<Life> {
    std::unique_ptr<HeadlessHost> host = std::make_unique<HeadlessHost>(kSize);
    Ref<TESMARViewController> panel = make<TESMARViewController>();

    void press() {
        const UIView& swatch = *host->window()->viewWithIdentifier("textColorPicker.2");
        host->touch(UITouchPhase::began, swatch.convertRectTo(swatch.bounds(), nullptr).center());
        host->advance(0.2);
    }
    void drag() {
        host->touch(UITouchPhase::began, {170, 200});
        host->advance(0.02);
        host->touch(UITouchPhase::moved, {170, 150});
    }
};

// Hears of changes, and then lets everything go from within.
struct Quitter : TESMARViewControllerDelegate {
    void CCSwitchValueChanged(bool) override {}
    void CCStyleAttributesChanged(const Ref<NSDictionary>&) override {
        if (quit)
            std::exchange(quit, {})();
    }
    void CCViewControllerWillDisappear() override {}
    std::function<void()> quit;
};

struct Stage {
    const char* name;
    void (*reach)(Life&);
};
const Stage kStages[] = {
    {"made", [](Life&) {}},
    {"loaded", [](Life& l) { l.panel->view(); }},
    {"arriving", [](Life& l) { l.host->advance(0.1); }},
    {"standing", [](Life& l) { l.host->advance(0.5); }},
    {"pressed", [](Life& l) { l.host->advance(0.5), l.press(); }},
    {"dragged", [](Life& l) { l.host->advance(0.5), l.drag(); }},
    {"gliding",
     [](Life& l) {
         l.host->advance(0.5), l.drag();
         l.host->touch(UITouchPhase::ended, {170, 130});
         l.host->advance(0.02);
     }},
    {"wheeled",
     [](Life& l) {
         l.host->advance(0.5), l.host->window()->wheel({170, 200}, {0, -9}, 0);
     }},
    {"about to leave", [](Life& l) { l.host->advance(2.2); }},
    {"leaving",
     [](Life& l) { l.panel->dismissViewControllerAnimated(true), l.host->advance(0.1); }},
    {"saving", nullptr}, // from within the call that follows the save
};

using Deed = void (*)(Life&);
const std::pair<const char*, Deed> kDeeds[] = {
    {"release the panel", [](Life& l) { l.panel.reset(); }},
    {"destroy the window", [](Life& l) { l.host.reset(); }},
    {"clear the delegate", [](Life& l) { l.panel->setDelegate(nullptr); }},
    {"destroy the window, then the panel", [](Life& l) { l.host.reset(), l.panel.reset(); }},
    {"release the panel, then the window", [](Life& l) { l.panel.reset(), l.host.reset(); }},
};

void live(const Stage& stage, Deed deed) {
    const auto life = std::make_shared<Life>();
    const auto delegate = std::make_shared<Quitter>();
    const WeakRef<TESMARViewController> panel = life->panel;
    const WeakRef<UIWindow> window = life->host->window();
    life->panel->setDelegate(delegate);
    life->panel->setAutoHideInterval(2);
    if (std::string_view(stage.name) != "made" && std::string_view(stage.name) != "loaded")
        life->host->window()->presentViewController(life->panel, true);
    if (stage.reach) {
        stage.reach(*life);
        deed(*life);
    } else {
        life->host->advance(0.5);
        life->panel->setRememberChangedStyle(true);
        // The host's own hold on its window ends here, not the window under its own call.
        delegate->quit = [&] { deed(*life); };
        const auto held = life->host->window();
        const UIView& swatch = *held->viewWithIdentifier("textColorPicker.2");
        const CGPoint at = swatch.convertRectTo(swatch.bounds(), nullptr).center();
        const double now = NSRunLoop::mainRunLoop().now();
        held->touch(UITouchPhase::began, 1, at, now);
        held->touch(UITouchPhase::ended, 1, at, now);
        EXPECT_FALSE(delegate->quit);
    }
    NSRunLoop& loop = NSRunLoop::mainRunLoop();
    // A panel that outlives its window serves in another one: no finger is on it any more.
    if (life->panel && !life->host) {
        life->panel->setRememberChangedStyle(false);
        bool heard = false;
        delegate->quit = [&] { heard = true; };
        life->host = std::make_unique<HeadlessHost>(CGSize{480, 420});
        life->host->window()->presentViewController(life->panel, false);
        if (life->panel->delegate()) {
            life->press();
            life->host->window()->cancelTouches(loop.now());
            const UIView& swatch = *life->host->window()->viewWithIdentifier("textColorPicker.2");
            life->host->tap(swatch.convertRectTo(swatch.bounds(), nullptr).center());
            EXPECT_TRUE(heard);
        }
    }
    if (life->host)
        life->host->window()->cancelTouches(loop.now());
    for (int i = 0; i < 3; ++i) // it arrives, it leaves, it is gone
        loop.advanceTo(loop.now() + 30);
    if (life->host)
        requireRest(*life->host->window());
    EXPECT_FALSE(loop.nextDeadline());
    life->panel.reset();
    life->host.reset();
    EXPECT_TRUE(panel.expired() && window.expired());
    EXPECT_EQ(delegate.use_count(), 1);
}

long residentKiB() {
    std::ifstream file("/proc/self/statm");
    long pages = 0;
    file >> pages >> pages;
    return pages * (sysconf(_SC_PAGESIZE) / 1024);
}

TEST_F(PanelTest, MayEndAtAnyStage) {
    const char* const soak = std::getenv("TESMAR_SOAK");
    const int rounds = kRounds * (soak ? std::max(1, std::atoi(soak)) : 1);
    long lives = 0, before = 0;
    for (int round = 0; round < rounds && !HasFailure(); ++round) {
        for (const Stage& stage : kStages)
            for (const auto& [name, deed] : kDeeds) {
                SCOPED_TRACE(std::string(stage.name) + ": " + name);
                try {
                    live(stage, deed);
                } catch (const Unsound& unsound) {
                    ADD_FAILURE() << unsound.what();
                }
                ++lives;
            }
        if (round == rounds / 10)
            before = residentKiB(); // caches are as full as they get
    }
    const long after = residentKiB();
    std::printf("%ld lives; resident memory %ld KiB, then %ld KiB\n", lives, before, after);
#ifndef SANITIZED                    // freed memory is kept for a while
    EXPECT_LE(after - before, 8192); // what the allocator keeps to itself
#endif
}

} // namespace
} // namespace tesmar
