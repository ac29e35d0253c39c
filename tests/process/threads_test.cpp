// The first use of everything that any thread may use, by many threads at once.
#include "tesmar/controls/library_bundle.h"
#include "tesmar/model/CCConstants.h"
#include "tesmar/panel/registration.h"
#include "tesmar/platform/foundation/archive/NSKeyedArchiver.h"
#include "tesmar/platform/foundation/defaults/NSUserDefaults.h"
#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/platform/text/NSAttributedString.h"

#include <algorithm>
#include <array>
#include <barrier>
#include <cstdlib>
#include <gtest/gtest.h>
#include <thread>

namespace tesmar {
namespace {

// Uses everything; returns the results, and the addresses of objects that must be made once.
std::string useEverything() {
    std::string seen;
    const std::initializer_list<const void*> made = {
        &CCConstants::CCFontsNameList(), &CCConstants::paletteColors(),
        CCConstants::font().get(),       CCConstants::CCDefaultStyleAttributes().get(),
        NSBundle::mainBundle().get(),    NSUserDefaults::standardUserDefaults().get()};
    for (const void* address : made)
        seen += std::to_string(reinterpret_cast<std::uintptr_t>(address)) + ' ';
    for (const auto& name : UIFont::CCSupportedFonts())
        for (const CGFloat size : UIFont::fontSizesForFontName(name))
            seen += name + std::to_string(UIFont::fontWithName(name, size)->lineHeight()) + ' ';
    registerTESMAR();
    const auto style = fromValue<Ref<NSDictionary>>(performClassSelector(
        *classNamed("TESMARConfig"), Selector("sessionOrDefaultClosedCaptureStyle")));
    seen += std::to_string(NSAttributedString::attributedString("AV", style)->size().width);
    return seen + *TESMARHostBundle("org.tesmar.threads")->resource("stepper-up.png") +
           NSKeyedArchiver::archivedDataWithRootObject(style);
}

[[noreturn]] void useEverythingConcurrently() {
    ::setenv("XDG_CONFIG_HOME", "/nonexistent", 1);
    constexpr std::size_t kThreads = 64;
    std::barrier start(kThreads);
    std::array<std::string, kThreads> seen;
    std::vector<std::jthread> threads;
    for (std::string& mine : seen)
        threads.emplace_back([&] {
            start.arrive_and_wait();
            mine = useEverything();
        });
    threads.clear();
    const bool isComplete = seen[0].find(".SystemUI") != std::string::npos;
    std::_Exit(isComplete && std::count(seen.begin(), seen.end(), seen[0]) == std::ssize(seen) ? 0
                                                                                               : 1);
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
