// Threads that come first, all at once, to what any thread may use.
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
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace tesmar {
namespace {

// All that a thread saw, with the addresses of what is made once.
std::string everything() {
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

TEST(Threads, MayAllComeFirst) {
    ::setenv("XDG_CONFIG_HOME", "/nonexistent", 1);
    constexpr std::size_t kThreads = 64;
    std::barrier start(kThreads);
    std::array<std::string, kThreads> seen;
    std::vector<std::jthread> threads;
    for (std::string& mine : seen)
        threads.emplace_back([&] {
            start.arrive_and_wait();
            mine = everything();
        });
    threads.clear();
    EXPECT_EQ(std::count(seen.begin(), seen.end(), seen[0]), std::ssize(seen));
    EXPECT_NE(seen[0].find(".SystemUI"), std::string::npos);
}

// TESMAR_SOAK=N starts 50 processes, or 10 N if that is more.
TEST(Threads, MayComeFirstInEveryProcess) {
    const char* soak = std::getenv("TESMAR_SOAK");
    const int starts = std::max(50, 10 * (soak ? std::atoi(soak) : 1));
    for (int i = 0; i < starts; ++i) {
        int status = -1;
        const pid_t child = ::fork();
        if (child == 0)
            ::execl("/proc/self/exe", "threads", "--gtest_filter=Threads.MayAllComeFirst",
                    "--gtest_brief=1", "--gtest_output=", nullptr);
        ::waitpid(child, &status, 0);
        ASSERT_EQ(status, 0) << "start " << i;
    }
    RecordProperty("starts", starts);
}

} // namespace
} // namespace tesmar
