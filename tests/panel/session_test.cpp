// Random sessions. TESMAR_SEED=n plays the one of that seed again.
#include "random_session.h"
#include "stage.h"

#include <random>

namespace tesmar {
namespace {

constexpr int kSeeds = 100;
constexpr int kBytes = 400; // of each; an event takes eight or so

TEST_F(PanelTest, StandsAnyHost) {
    setDiagnosticHandler({}); // small windows give reason to complain
    const char* const only = std::getenv("TESMAR_SEED");
    long events = 0;
    const int first = only ? std::atoi(only) : 1;
    for (int seed = first; seed < first + (only ? 1 : kSeeds); ++seed) {
        std::mt19937 engine(static_cast<std::uint32_t>(seed));
        int left = kBytes * soakFactor();
        const auto bytes = [&]() -> std::optional<std::uint8_t> {
            return left-- > 0 ? std::optional(static_cast<std::uint8_t>(engine() >> 24))
                              : std::nullopt;
        };
        try {
            events += playRandomSession(bytes);
        } catch (const Unsound& unsound) {
            ADD_FAILURE() << "TESMAR_SEED=" << seed << ": " << unsound.what();
        }
    }
    std::printf("%ld events\n", events);
}

} // namespace
} // namespace tesmar
