// Anything that a host may do with a panel: every action in every call that it gets, and random
// sessions. TESMAR_SEED=n plays the session of that seed again.
#include "host_scenario.h"
#include "random_session.h"

#include <fstream>
#include <iterator>
#include <random>
#include <set>
#include <sstream>

namespace tesmar {
namespace {

using S = HostScenario;

constexpr CGSize kOtherSize{320, 480};
constexpr CGPoint kLeft{60, 150}, kRight{250, 150};
constexpr int kSeeds = 100;
constexpr int kBytes = 400; // of each random session; an event takes about eight

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
    {"set its own style",
     [](S& s) { s.panel->setCCStyleAttributes(s.panel->CCStyleAttributes()); }},
    {"set the view", [](S& s) { s.panel->setView(s.panel->view()), s.panel->setCCEnabled(true); }},
    {"reset", [](S& s) { s.panel->resetButtonTap(); }},
    {"remove the view", [](S& s) { s.panel->view()->removeFromSuperview(); }},
    {"cancel the touches", [](S& s) { s.host->window()->cancelTouches(s.host->now()); }},
    {"touch", [](S& s) { s.host->tap(kLeft), s.host->tap(kRight, 7); }},
    {"let time pass", [](S& s) { s.host->advance(10); }},
    {"draw", [](S& s) { s.host->window()->invalidate(), s.host->render(); }},
};
constexpr std::size_t kReleases = 4; // of kActions, at the start

// Plays the scenario without any further action, and returns the calls.
std::string usualCalls(S& s) {
    s.log->calls.clear();
    s.replacePanel();
    s.host->resize(S::kSize, 1);
    s.play();
    return s.log->calls;
}

long residentKiB() {
    long pages = 0;
    std::ifstream("/proc/self/statm") >> pages >> pages;
    return pages * (sysconf(_SC_PAGESIZE) / 1024);
}

// All actions once; the long form then repeats those that release something and measures the
// memory.
TEST_F(PanelTest, SurvivesAnyActionInAnyCall) {
    S plain;
    plain.replaceWindow();
    plain.log->where = "style";
    plain.log->action = [&] { // the style is saved before the delegate is notified
        const auto stored = TESMARConfig::sessionClosedCaptureStyle();
        EXPECT_TRUE(stored && stored->isEqual(plain.panel->CCStyleAttributes().get()));
    };
    const std::string usual = usualCalls(plain);
    EXPECT_FALSE(plain.log->action);
    std::istringstream words(usual);
    const std::set<std::string> calls(std::istream_iterator<std::string>(words), {});
    EXPECT_EQ(calls.size(), 28u) << usual;

    const int rounds = soakFactor();
    long before = 0;
    for (int round = 0; round < rounds && !HasFailure(); ++round) {
        for (const auto& where : calls)
            for (std::size_t i = 0; i < (round == 0 ? std::size(kActions) : kReleases); ++i) {
                const auto& action = kActions[i];
                if (where == "draw" && action.name == std::string("resize"))
                    continue; // a resize frees the pixels that are being painted
                SCOPED_TRACE(std::string(action.name) + " in " + where);
                S s;
                s.replaceWindow(), s.replacePanel();
                s.log->where = where;
                s.log->action = [&] { action.perform(s); };
                try {
                    s.play();
                    EXPECT_FALSE(s.log->action) << "it was never called";
                    s.end();
                    // The same window works as before.
                    EXPECT_EQ(round == 0 ? usualCalls(s) : usual, usual);
                    s.end();
                } catch (const InvariantViolated& violation) {
                    ADD_FAILURE() << violation.what();
                }
            }
        if (round == rounds / 10)
            before = residentKiB(); // caches have reached their full size
    }
    std::printf("resident %ld KiB, then %ld KiB\n", before, residentKiB());
#ifndef SANITIZED // sanitizers delay the reuse of freed memory
    EXPECT_LE(residentKiB() - before, 8192);
#endif
}

TEST_F(PanelTest, SurvivesRandomSessions) {
    setDiagnosticHandler({}); // small windows cause diagnostics
    const char* const only = std::getenv("TESMAR_SEED");
    const int first = only ? std::atoi(only) : 1, last = only ? first : kSeeds;
    for (int seed = first; seed <= last; ++seed) {
        std::mt19937 engine(static_cast<std::uint32_t>(seed));
        int left = kBytes * soakFactor();
        try {
            playRandomSession([&] {
                return left-- > 0 ? std::optional<std::uint8_t>(engine() >> 24) : std::nullopt;
            });
        } catch (const InvariantViolated& violation) {
            ADD_FAILURE() << "TESMAR_SEED=" << seed << ": " << violation.what();
        }
    }
}

} // namespace
} // namespace tesmar
