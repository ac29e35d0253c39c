// Random sessions. TESMAR_SEED=n plays the one of that seed again; TESMAR_SOAK=f plays them longer.
#include "panel_fixture.h"
#include "random_session.h"
#include "soundness.h"

#include <cstdlib>
#include <random>

namespace tesmar {
namespace {

constexpr std::uint64_t kSeeds = 100;
constexpr int kEvents = 40; // of each

class RandomBytes : public ByteSource {
  public:
    explicit RandomBytes(std::uint64_t seed) : engine_(seed) {}
    std::optional<std::uint8_t> next() override {
        return static_cast<std::uint8_t>(engine_() >> 24);
    }

  private:
    std::mt19937_64 engine_;
};

void play(std::uint64_t seed, int events) {
    int event = 0;
    try {
        RandomBytes bytes(seed);
        RandomSession session(bytes);
        for (; event < events; ++event)
            session.step();
        session.finish();
    } catch (const Unsound& unsound) {
        ADD_FAILURE() << "TESMAR_SEED=" << seed << ", event " << event << ": " << unsound.what();
    }
}

TEST_F(PanelTest, StandsAnyHost) {
    setDiagnosticHandler({}); // small windows and hosts gone wild give reason to complain
    const char* const seed = std::getenv("TESMAR_SEED");
    const char* const soak = std::getenv("TESMAR_SOAK");
    const int events = kEvents * (soak ? std::max(1, std::atoi(soak)) : 1);
    const std::uint64_t first = seed ? std::strtoull(seed, nullptr, 10) : 1;
    for (std::uint64_t s = first; s < first + (seed ? 1 : kSeeds); ++s)
        play(s, events);
}

} // namespace
} // namespace tesmar
