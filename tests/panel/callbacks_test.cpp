// Every call that a host gets, and every stage of a panel's life, combined with every action that a
// host might perform there.
#include "host_scenario.h"

#include <fstream>

namespace tesmar {
namespace {

using S = HostScenario;
constexpr CGSize kOtherSize{320, 480};
constexpr CGPoint kLeft{60, 150}, kRight{250, 150};

const struct {
    const char* name;
    std::function<void(S&)> perform;
} kActions[] = {
    {"release the panel", [](S& s) { s.replacePanel(); }},
    {"destroy the window", [](S& s) { s.replaceWindow(); }},
    {"destroy both", [](S& s) { s.replaceWindow(), s.replacePanel(); }},
    {"clear the delegate", [](S& s) { s.panel->setDelegate(nullptr); }},
    {"throw", [](S&) { throw HostError(); }},
    {"dismiss", [](S& s) { s.panel->dismissViewControllerAnimated(true); }},
    {"dismiss at once", [](S& s) { s.panel->dismissViewControllerAnimated(false); }},
    {"present again", [](S& s) { s.present(s.panel); }},
    {"present another", [](S& s) { s.present(make<TESMARViewController>()); }},
    {"resize", [](S& s) { s.host->resize(kOtherSize, 2); }},
    {"set a style", [](S& s) { s.panel->setCCStyleAttributes(make<NSMutableDictionary>()); }},
    {"set everything",
     [](S& s) {
         s.panel->setAutoHideInterval(0.01);
         s.panel->setRememberChangedStyle(true);
         s.panel->setCCEnabled(true);
         s.panel->setView(s.panel->view());
         s.panel->setDelegate(s.panel->delegate());
         s.panel->setCCStyleAttributes(s.panel->CCStyleAttributes());
     }},
    {"reset", [](S& s) { s.panel->resetButtonTap(); }},
    {"remove the view", [](S& s) { s.panel->view()->removeFromSuperview(); }},
    {"cancel the touches", [](S& s) { s.host->window()->cancelTouches(s.host->now()); }},
    {"touch", [](S& s) { s.host->tap(kLeft), s.host->tap(kRight, 7); }},
    {"let time pass", [](S& s) { s.host->advance(10); }},
    {"draw", [](S& s) { s.host->window()->invalidate(), s.host->render(); }},
};
constexpr std::size_t kReleases = 4; // of kActions, at the start

const std::string kCalls[] = {
    "setupView", "willAppear", "didAppear", "presented", "switch", "style", "operated", "willDrag",
    "scroll", "glide", "didGlide", "didDrag", "selfDismiss", "willDisappear", "didHide",
    "dismissed", "draw", "diagnostic",
    // and moments outside any call
    "created", "appearing", "pressed", "gliding", "dragging", "wheeled", "hiding"};

// Plays the scenario with that action in that call.
void playWith(S& s, const std::string& where, const std::function<void(S&)>& action) {
    s.replaceWindow(), s.replacePanel();
    s.log->where = where;
    s.log->action = [&] { action(s); };
    s.play();
    EXPECT_FALSE(s.log->action) << "it was never called";
    s.end();
}

// Plays it without any action, and returns the calls.
std::string usualCalls(S& s) {
    s.log->calls.clear();
    s.replacePanel();
    s.host->resize(S::kSize, 1);
    s.play();
    return s.log->calls;
}

TEST_F(PanelTest, SurvivesAnyActionInAnyCall) {
    S plain;
    plain.replaceWindow();
    const std::string usual = usualCalls(plain);
    for (const auto& where : kCalls)
        for (const auto& [name, perform] : kActions) {
            if (where == "draw" && name == std::string("resize"))
                continue; // it would free the pixels that are being painted
            SCOPED_TRACE(std::string(name) + " in " + where);
            try {
                S s;
                playWith(s, where, perform);
                EXPECT_EQ(usualCalls(s), usual); // the same window works as before
                s.end();
            } catch (const InvariantViolated& violation) {
                ADD_FAILURE() << violation.what();
            }
        }
}

long residentKiB() {
    long pages = 0;
    std::ifstream("/proc/self/statm") >> pages >> pages;
    return pages * (sysconf(_SC_PAGESIZE) / 1024);
}

TEST_F(PanelTest, DoesNotLeakWhenReleasedInAnyCall) {
    const int rounds = soakFactor();
    long scenarios = 0, before = 0;
    for (int round = 0; round < rounds && !HasFailure(); ++round) {
        for (const auto& where : kCalls)
            for (std::size_t i = 0; i < kReleases; ++i, ++scenarios) {
                S s;
                playWith(s, where, kActions[i].perform);
            }
        if (round == rounds / 10)
            before = residentKiB(); // caches have reached their full size
    }
    std::printf("%ld scenarios; resident %ld KiB, then %ld KiB\n", scenarios, before,
                residentKiB());
#ifndef SANITIZED // sanitizers delay the reuse of freed memory
    EXPECT_LE(residentKiB() - before, 8192);
#endif
}

TEST_F(PanelTest, SavesTheStyleBeforeItNotifiesTheDelegate) {
    S s;
    s.replaceWindow(), s.replacePanel();
    s.present(s.panel, false);
    s.log->where = "style";
    s.log->action = [&] {
        const auto stored = TESMARConfig::sessionClosedCaptureStyle();
        EXPECT_TRUE(stored && stored->isEqual(s.panel->CCStyleAttributes().get()));
    };
    tap(*s.host, "textColorPicker.5");
    EXPECT_FALSE(s.log->action);
}

} // namespace
} // namespace tesmar
