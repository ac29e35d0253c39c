// The library in destructors of static and thread-local objects and in handlers of atexit.
#include "everything.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <malloc.h>
#include <thread>

namespace tesmar {
namespace {

std::string expected; // empty: nothing happens at exit

void check() {
    if (!expected.empty() && useEverything() != expected)
        std::_Exit(1);
}

struct ChecksAtEnd {
    ~ChecksAtEnd() { check(); }
};
const ChecksAtEnd outlivesStatics;

[[noreturn]] void useAtExit() {
    ::mallopt(M_PERTURB, 0xAA); // overwrites freed memory
    std::atexit(check);         // runs after what is registered later: the library's statics
    static thread_local ChecksAtEnd outlivesThreadLocals;
    static thread_local const ChecksAtEnd* const used = &outlivesThreadLocals;
    const auto useThread = [] { return used ? useEverything() : ""; };
    expected = useThread();
    for (int i = 0; i < 3; ++i)
        std::thread(useThread).join();
    std::exit(expected.empty() ? 2 : 0);
}

TEST(Exit, EverythingWorksUntilTheProcessEnds) {
    EXPECT_EXIT(useAtExit(), testing::ExitedWithCode(0), "");
}

} // namespace
} // namespace tesmar
