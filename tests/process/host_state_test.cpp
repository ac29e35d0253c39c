// What the library leaves as it was in its host's process, whatever the host has set there.
#include "tests/panel/panel_fixture.h"

#include <cfenv>
#include <clocale>
#include <csignal>
#include <fstream>
#include <locale>
#include <sstream>
#include <sys/stat.h>
#include <tuple>

namespace tesmar {
namespace {

struct Setting {
    const char *name, *locale;
    int rounding, traps;
};
const Setting kSettings[] = {
    {"Plain", "C", FE_TONEAREST, 0},
    {"DecimalComma", "de_DE.UTF-8", FE_TONEAREST, 0},
    {"RoundsUp", "C", FE_UPWARD, 0},
    {"Traps", "C", FE_TONEAREST, FE_DIVBYZERO | FE_INVALID | FE_OVERFLOW},
};

std::string hostState() {
    std::ostringstream state;
    const mode_t mask = ::umask(0);
    ::umask(mask);
    state << std::setlocale(LC_ALL, nullptr) << std::locale().name() << ", threads "
          << std::distance(std::filesystem::directory_iterator("/proc/self/task"), {}) << '\n'
          << std::filesystem::current_path() << ", umask " << mask << ", rounding "
          << std::fegetround() << ", traps " << ::fegetexcept();
    sigset_t blocked;
    ::pthread_sigmask(SIG_SETMASK, nullptr, &blocked);
    for (int number = 1; number < NSIG; ++number) {
        struct sigaction action {};
        ::sigaction(number, nullptr, &action);
        state << "\nsignal " << number << ": " << reinterpret_cast<void*>(action.sa_handler)
              << ", flags " << action.sa_flags << ", blocked " << sigismember(&blocked, number);
    }
    for (char** variable = environ; *variable; ++variable)
        state << '\n' << *variable;
    return state.str();
}

class HostState : public PanelTest, public testing::WithParamInterface<Setting> {
  protected:
    // Uses everything; answers what numbers have a part in: a picture, the saved file, a frame.
    auto session() const {
        HeadlessHost host({568, 320}, 2);
        const auto panel = make<TESMARViewController>();
        panel->setRememberChangedStyle(true);
        host.window()->presentViewController(panel, true);
        host.advance(0.5);
        for (const char* control : {"CCSwitch", "textColorPicker.5", "textColorOpacityStepper",
                                    "fontPicker.next", "resetButton", "CCSwitch"})
            tap(host, control);
        host.drag({200, 200}, {0, -60}, 0.2);
        host.advance(1);
        host.render();
        const auto picture = host.pixels();
        panel->dismissViewControllerAnimated(true);
        host.advance(1);
        host.render();

        const auto views = UIView::loadFromTESMARNib(
            "numbers",
            NSBundle::bundle("numbers", [](std::string_view) -> std::optional<std::string> {
                return R"(<interface><object class="UIView" id="v"><array key="subviews">
                    <object class="UIView" id="s" translatesAutoresizingMaskIntoConstraints="false"/>
                    </array><constraints format="H:|-1.5-[s(2.25)]"/></object></interface>)";
            }));
        views->layoutIfNeeded();
        std::ostringstream saved;
        saved << std::ifstream(directory / "preferences.plist", std::ios::binary).rdbuf();
        return std::tuple(picture, saved.str(), views->subviews()[0]->frame().maxX());
    }
};

TEST_P(HostState, IsAsItWas) {
    const auto [name, locale, rounding, traps] = GetParam();
    const std::string make = "localedef -i de_DE -f UTF-8 " + (directory / "de_DE.UTF-8").string();
    ::setenv("LOCPATH", directory.c_str(), 1);
    if (locale != std::string("C") && std::system((make + " 2>&1").c_str()) != 0)
        GTEST_SKIP() << "no locale with a decimal comma can be made here";
    std::locale::global(std::locale(locale));
    std::setlocale(LC_COLLATE, "C"); // the order of the fonts is the locale's indeed
    std::fesetround(rounding);
    ::feenableexcept(traps);
    ::umask(0137);

    const std::string before = hostState();
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    const auto there = session();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Switch ON\nSwitch OFF\n");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(hostState(), before);

    ::fedisableexcept(FE_ALL_EXCEPT);
    std::fesetround(FE_TONEAREST);
    std::locale::global(std::locale::classic());
    EXPECT_TRUE(rounding != FE_TONEAREST || session() == there);
    EXPECT_EQ(std::get<double>(there), 3.75);
}

TEST_F(PanelTest, NobodyNeedReadItsOutput) {
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    const int output = ::dup(STDOUT_FILENO);
    ::dup2(ends[1], STDOUT_FILENO);
    ::close(ends[0]);
    make<TESMARViewController>()->CCSwitchValueDidChange(*make<UISwitch>()); // would be killed here
    std::clearerr(stdout);
    ::dup2(output, STDOUT_FILENO);
}

INSTANTIATE_TEST_SUITE_P(Settings, HostState, testing::ValuesIn(kSettings),
                         [](const auto& setting) { return setting.param.name; });

} // namespace
} // namespace tesmar
