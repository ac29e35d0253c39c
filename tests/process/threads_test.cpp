// The first use of everything that any thread may use, by many threads at once.
#include "everything.h"

#include <algorithm>
#include <array>
#include <barrier>
#include <cstdlib>
#include <gtest/gtest.h>
#include <thread>

namespace tesmar {
namespace {

[[noreturn]] void useEverythingConcurrently() {
    ::setenv("XDG_CONFIG_HOME", "/nonexistent", 1);
    constexpr std::size_t kThreads = 64;
    std::barrier start(kThreads);
    std::array<std::string, kThreads> seen;
    std::vector<std::jthread> threads(kThreads);
    for (std::size_t i = 0; i < kThreads; ++i)
        threads[i] = std::jthread([&, i] {
            start.arrive_and_wait();
            seen[i] = useEverything();
        });
    threads.clear(); // joins
    std::_Exit(std::count(seen.begin(), seen.end(), seen[0]) == std::ssize(seen) ? 0 : 1);
}

// Starts at least 50 processes, or 10 N with TESMAR_SOAK=N if that is more.
TEST(Threads, FirstUseMayBeConcurrent) {
    const char* const soak = std::getenv("TESMAR_SOAK");
    const int starts = std::max(50, 10 * (soak ? std::atoi(soak) : 1));
    for (int i = 0; i < starts && !HasFailure(); ++i)
        EXPECT_EXIT(useEverythingConcurrently(), testing::ExitedWithCode(0), "") << "start " << i;
}

} // namespace
} // namespace tesmar
