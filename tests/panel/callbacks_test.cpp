// Every call that a host gets and every stage of a panel's life, times everything that a host might
// do there: go on, throw, or end it all.
#include "stage.h"

#include <fstream>

namespace tesmar {
namespace {

const std::pair<const char*, std::function<void(Stage&)>> kActions[] = {
    {"release the panel", [](Stage& s) { s.replacePanel(); }},
    {"destroy the window", [](Stage& s) { s.replaceWindow(); }},
    {"destroy both", [](Stage& s) { s.replaceWindow(), s.replacePanel(); }},
    {"clear the delegate", [](Stage& s) { s.panel->setDelegate(nullptr); }},
    {"throw", [](Stage&) { throw HostError(); }},
    {"dismiss", [](Stage& s) { s.panel->dismissViewControllerAnimated(true); }},
    {"dismiss at once", [](Stage& s) { s.panel->dismissViewControllerAnimated(false); }},
    {"present again", [](Stage& s) { s.host->window()->presentViewController(s.panel, true); }},
    {"present another",
     [](Stage& s) { s.host->window()->presentViewController(make<TESMARViewController>(), true); }},
    {"resize",
     [](Stage& s) {
         s.host->resize({320, 480}, 2);
     }},
    {"assign a style",
     [](Stage& s) { s.panel->setCCStyleAttributes(make<NSMutableDictionary>()); }},
    {"set everything",
     [](Stage& s) {
         s.panel->setAutoHideInterval(0.01);
         s.panel->setRememberChangedStyle(true);
         s.panel->setCCEnabled(true);
         s.panel->setView(s.panel->view());
         s.panel->setDelegate(s.panel->delegate());
         s.panel->setCCStyleAttributes(s.panel->CCStyleAttributes());
     }},
    {"reset", [](Stage& s) { s.panel->resetButtonTap(); }},
    {"remove the view", [](Stage& s) { s.panel->view()->removeFromSuperview(); }},
    {"lose the touches", [](Stage& s) { s.host->window()->cancelTouches(s.host->now()); }},
    {"touch",
     [](Stage& s) {
         s.host->tap({60, 150}), s.host->tap({250, 150}, 7);
     }},
    {"let time pass", [](Stage& s) { s.host->advance(10); }},
    {"draw", [](Stage& s) { s.host->window()->invalidate(), s.host->render(); }},
};
constexpr std::size_t kEnds = 4; // of kActions, that end a life
const std::string kCalls[] = {
    "setupView", "willAppear", "didAppear", "stands", "switch", "style", "operated", "willDrag",
    "scroll", "didThrow", "didStop", "didDrag", "selfDismiss", "willDisappear", "hasGone", "left",
    "draw", "diagnostic",
    // and moments of the host's own
    "made", "arriving", "pressed", "gliding", "dragging", "wheeled", "leaving"};

long residentKiB() {
    long pages = 0;
    std::ifstream("/proc/self/statm") >> pages >> pages;
    return pages * (sysconf(_SC_PAGESIZE) / 1024);
}

// Plays with that action in that call; all is in order afterwards.
void misbehave(Stage& stage, const std::string& where, const std::function<void(Stage&)>& action) {
    stage.replaceWindow(), stage.replacePanel();
    stage.ears->where = where;
    stage.ears->action = [&] { action(stage); };
    stage.play();
    EXPECT_FALSE(stage.ears->action) << "it was never called";
    stage.clear();
}

TEST_F(PanelTest, AHostMayDoAnythingInAnyCall) {
    const auto playSane = [](Stage& stage) {
        stage.ears->calls.clear();
        stage.replacePanel();
        stage.host->resize(Stage::kSize, 1);
        stage.play();
        return stage.ears->calls;
    };
    Stage sane;
    sane.replaceWindow();
    const std::string usual = playSane(sane);
    for (const auto& where : kCalls)
        for (const auto& [name, action] : kActions) {
            if (where == "draw" && name == std::string("resize"))
                continue; // it would take away the pixels that are being painted on
            SCOPED_TRACE(std::string(name) + " in " + where);
            try {
                Stage stage;
                misbehave(stage, where, action);
                EXPECT_EQ(playSane(stage), usual); // the window is as good as new
                stage.clear();
            } catch (const Unsound& unsound) {
                ADD_FAILURE() << unsound.what();
            }
        }
}

TEST_F(PanelTest, MayEndAtAnyStageWithoutALeak) {
    const int rounds = soakFactor();
    long lives = 0, before = 0;
    for (int round = 0; round < rounds && !HasFailure(); ++round) {
        for (const auto& where : kCalls)
            for (std::size_t end = 0; end < kEnds; ++end, ++lives) {
                Stage stage;
                misbehave(stage, where, kActions[end].second);
            }
        if (round == rounds / 10)
            before = residentKiB(); // caches are as full as they get
    }
    std::printf("%ld lives; resident %ld KiB, then %ld KiB\n", lives, before, residentKiB());
#ifndef SANITIZED // freed memory is kept for a while
    EXPECT_LE(residentKiB() - before, 8192);
#endif
}

// The style is saved before the delegate hears of it.
TEST_F(PanelTest, SavesFirstThenTells) {
    Stage stage;
    stage.replaceWindow(), stage.replacePanel();
    stage.panel->setRememberChangedStyle(true);
    stage.host->window()->presentViewController(stage.panel, false);
    stage.ears->where = "style";
    stage.ears->action = [&] {
        const auto stored = TESMARConfig::sessionClosedCaptureStyle();
        EXPECT_TRUE(stored && stored->isEqual(stage.panel->CCStyleAttributes().get()));
    };
    tap(*stage.host, "textColorPicker.5");
    EXPECT_FALSE(stage.ears->action);
}

} // namespace
} // namespace tesmar
