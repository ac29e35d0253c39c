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
#include <spawn.h>
#include <sys/wait.h>
#include <thread>

namespace tesmar {
namespace {

// All that a thread saw, with the addresses of what is made once.
std::string everything() {
    std::string seen;
    for (const void* made :
         {static_cast<const void*>(&CCConstants::CCFontsNameList()),
          static_cast<const void*>(&CCConstants::paletteColors()),
          static_cast<const void*>(CCConstants::CCDefaultStyleAttributes().get()),
          static_cast<const void*>(CCConstants::font().get()),
          static_cast<const void*>(NSBundle::mainBundle().get()),
          static_cast<const void*>(NSUserDefaults::standardUserDefaults().get())})
        seen += std::to_string(reinterpret_cast<std::uintptr_t>(made)) + ' ';
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
    std::string program = "/proc/self/exe", filter = "--gtest_filter=Threads.MayAllComeFirst",
                brief = "--gtest_brief=1", output = "--gtest_output=";
    char* const arguments[] = {program.data(), filter.data(), brief.data(), output.data(), nullptr};
    for (int i = 0; i < starts; ++i) {
        pid_t child;
        int status = -1;
        ASSERT_EQ(::posix_spawn(&child, program.c_str(), nullptr, nullptr, arguments, environ), 0);
        ::waitpid(child, &status, 0);
        ASSERT_EQ(status, 0) << "start " << i;
    }
    RecordProperty("starts", starts);
}

} // namespace
} // namespace tesmar
