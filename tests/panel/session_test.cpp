// Random sessions. TESMAR_SEED=n plays the one of that seed again.
#include "host_scenario.h"
#include "random_session.h"

#include <random>

namespace tesmar {
namespace {

constexpr int kSeeds = 100;
constexpr int kBytes = 400; // of each session; an event takes about eight

TEST_F(PanelTest, SurvivesRandomSessions) {
    setDiagnosticHandler({}); // small windows cause diagnostics
    const char* const only = std::getenv("TESMAR_SEED");
    const int first = only ? std::atoi(only) : 1, last = only ? first : kSeeds;
    long events = 0;
    for (int seed = first; seed <= last; ++seed) {
        std::mt19937 engine(static_cast<std::uint32_t>(seed));
        int left = kBytes * soakFactor();
        try {
            events += playRandomSession([&] {
                return left-- > 0 ? std::optional<std::uint8_t>(engine() >> 24) : std::nullopt;
            });
        } catch (const InvariantViolated& violation) {
            ADD_FAILURE() << "TESMAR_SEED=" << seed << ": " << violation.what();
        }
    }
    std::printf("%ld events\n", events);
}

} // namespace
} // namespace tesmar
