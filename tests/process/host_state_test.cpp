// What the library leaves as it was in its host's process, under whatever the host has set there.
#include "tesmar/platform/hosts/headless/HeadlessHost.h"
#include "tesmar/tesmar.h"

#include <cfenv>
#include <clocale>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <locale>
#include <sstream>
#include <sys/stat.h>
#include <unistd.h>

namespace tesmar {
namespace {

namespace fs = std::filesystem;

std::string hostState() {
    std::ostringstream state;
    state.imbue(std::locale::classic());
    const mode_t mask = ::umask(0);
    ::umask(mask);
    state << std::setlocale(LC_ALL, nullptr) << ' ' << std::locale().name() << '\n'
          << fs::current_path() << ", umask " << mask << ", rounding " << std::fegetround()
          << ", traps " << ::fegetexcept() << '\n';
    sigset_t blocked;
    ::pthread_sigmask(SIG_SETMASK, nullptr, &blocked);
    for (int number = 1; number < NSIG; ++number) {
        struct sigaction action {};
        ::sigaction(number, nullptr, &action);
        state << "signal " << number << ": " << reinterpret_cast<void*>(action.sa_handler)
              << " flags " << action.sa_flags << " blocked " << sigismember(&blocked, number)
              << '\n';
    }
    for (char** variable = environ; *variable; ++variable)
        state << *variable << '\n';
    return state.str();
}

// Everything once; answers what depended on numbers: the picture, the saved file, and frames.
std::string session(const fs::path& preferences) {
    fs::remove(preferences);
    NSUserDefaults::standardUserDefaults()->setPreferencesPath(preferences);
    NSBundle::setMainBundle(TESMARHostBundle("org.tesmar.guest"));
    HeadlessHost host({568, 320}, 2);
    const auto panel = make<TESMARViewController>();
    panel->setRememberChangedStyle(true);
    host.window()->presentViewController(panel, true);
    host.advance(0.5);
    for (const char* control : {"CCSwitch", "textColorPicker.5", "textColorOpacityStepper",
                                "fontPicker.next", "resetButton", "CCSwitch", "textColorPicker.2"})
        if (UIView* const view = host.window()->viewWithIdentifier(control))
            host.tap(view->convertRectTo(view->bounds(), nullptr).center());
    host.drag({200, 200}, {0, -60}, 0.2);
    host.advance(1);
    host.render();
    const auto pixels = host.pixels();
    panel->dismissViewControllerAnimated(true);
    host.advance(1);
    host.render();

    const auto source = [](std::string_view) -> std::optional<std::string> {
        return R"(<interface><object class="UIView" id="v"><array key="subviews">
            <object class="UIView" id="s" translatesAutoresizingMaskIntoConstraints="false"/>
            </array><constraints format="H:|-1.5-[s(2.25)]"/></object></interface>)";
    };
    const auto view = UIView::loadFromTESMARNib("v", NSBundle::bundle("numbers", source));
    view->layoutIfNeeded();
    std::ostringstream result;
    result.imbue(std::locale::classic());
    result << view->subviews()[0]->frame().minX() << ' ' << view->subviews()[0]->frame().maxX();
    for (const std::uint32_t pixel : pixels)
        result << ' ' << pixel;
    result << ' ' << std::ifstream(preferences, std::ios::binary).rdbuf();
    return result.str();
}

struct Setting {
    const char* name;
    const char* locale;
    int rounding, traps;
};
class HostState : public testing::TestWithParam<Setting> {};

TEST_P(HostState, IsAsItWas) {
    const fs::path directory =
        fs::temp_directory_path() / ("tesmar-guest-" + std::to_string(::getpid()));
    fs::create_directories(directory);
    const std::string localedef =
        "localedef -i de_DE -f UTF-8 " + (directory / "de_DE.UTF-8").string() + " 2>&1";
    ::setenv("LOCPATH", directory.c_str(), 1);
    if (std::strcmp(GetParam().locale, "C") != 0 &&
        (std::system(localedef.c_str()) != 0 || !std::setlocale(LC_ALL, GetParam().locale)))
        GTEST_SKIP() << "no locale with a decimal comma can be made here";
    std::locale::global(std::locale(GetParam().locale));
    std::setlocale(LC_COLLATE, "C"); // the order of the fonts is the locale's indeed
    std::fesetround(GetParam().rounding);
    ::feenableexcept(GetParam().traps);
    ::umask(0137);

    const std::string before = hostState();
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    const std::string there = session(directory / "preferences.plist");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Switch ON\nSwitch OFF\n");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(hostState(), before);

    ::fedisableexcept(FE_ALL_EXCEPT);
    std::fesetround(FE_TONEAREST);
    std::locale::global(std::locale::classic());
    EXPECT_TRUE(GetParam().rounding != FE_TONEAREST || session(directory / "plain") == there);
    fs::remove_all(directory);
}

INSTANTIATE_TEST_SUITE_P(Settings, HostState,
                         testing::Values(Setting{"Plain", "C", FE_TONEAREST, 0},
                                         Setting{"DecimalComma", "de_DE.UTF-8", FE_TONEAREST, 0},
                                         Setting{"RoundsUp", "C", FE_UPWARD, 0},
                                         Setting{"Traps", "C", FE_TONEAREST,
                                                 FE_DIVBYZERO | FE_INVALID | FE_OVERFLOW}),
                         [](const auto& setting) { return setting.param.name; });

} // namespace
} // namespace tesmar
