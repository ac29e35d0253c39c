// The library changes no process-wide state, and works with whatever settings the host has made.
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
    {"DecimalComma", "de_DE.UTF-8", FE_TONEAREST, 0},
    {"RoundsUpAndTraps", "C", FE_UPWARD, FE_DIVBYZERO | FE_INVALID | FE_OVERFLOW},
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
    // Uses everything; returns results that depend on numbers: a picture, the saved file, a frame.
    auto session() const {
        HeadlessHost host({568, 320}, 2);
        const auto panel = make<TESMARViewController>();
        panel->setRememberChangedStyle(true);
        host.window()->presentViewController(panel, true);
        host.advance(0.5);
        for (const char* control : {"CCSwitch", "textColorPicker.5", "textColorOpacityStepper",
                                    "fontPicker.next", "resetButton", "CCSwitch"})
            host.tap(centerOf(*host.window(), control));
        host.drag({200, 200}, {0, -60}, 0.2);
        host.advance(1);
        host.render();
        const std::vector<std::uint32_t> picture(host.pixels().begin(), host.pixels().end());
        panel->dismissViewControllerAnimated(true);
        host.advance(1);

        const auto xml = R"(<interface><object class="UIView"><array key="subviews">
            <object class="UIView" id="s" translatesAutoresizingMaskIntoConstraints="false"/></array>
            <constraints format="H:|-1.5-[s(2.25)]"/></object></interface>)";
        const auto view = UIView::loadFromTESMARNib(
            "numbers", NSBundle::bundle("numbers", [=](auto) { return std::string(xml); }));
        view->layoutIfNeeded();
        const auto saved = NSBundle::bundleWithPath("", directory)->resource("preferences.plist");
        return std::tuple(picture, saved.value(), view->subviews()[0]->frame().maxX());
    }
};

TEST_P(HostState, IsUnchanged) {
    const auto [name, locale, rounding, traps] = GetParam();
    const std::string make = "localedef -i de_DE -f UTF-8 " + (directory / "de_DE.UTF-8").string();
    ::setenv("LOCPATH", directory.c_str(), 1);
    if (locale != std::string("C") && std::system((make + " 2>&1").c_str()) != 0)
        GTEST_SKIP() << "no locale with a decimal comma can be made here";
    std::locale::global(std::locale(locale));
    std::setlocale(LC_COLLATE, "C"); // LC_COLLATE may decide the order of the fonts
    std::fesetround(rounding);
    ::feenableexcept(traps);
    ::umask(0137);

    const std::string before = hostState();
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    const auto result = session();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Switch ON\nSwitch OFF\n");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(hostState(), before);

    ::fedisableexcept(FE_ALL_EXCEPT);
    std::fesetround(FE_TONEAREST);
    std::locale::global(std::locale::classic());
    EXPECT_TRUE(rounding != FE_TONEAREST || session() == result);
    EXPECT_EQ(std::get<double>(result), 3.75);
}

TEST_F(PanelTest, SurvivesAStandardOutputThatIsClosed) {
    int pipe[2];
    ASSERT_EQ(::pipe(pipe), 0);
    const int output = ::dup(STDOUT_FILENO);
    ::dup2(pipe[1], STDOUT_FILENO);
    ::close(pipe[0]);
    make<TESMARViewController>()->CCSwitchValueDidChange(*make<UISwitch>()); // no SIGPIPE
    std::clearerr(stdout);
    ::dup2(output, STDOUT_FILENO);
}

// A font picker registers the classes that it needs: no panel has been made in this process.
TEST_F(PanelTest, AFontPickerWorksWithoutThePanel) {
    EXPECT_TRUE(make<FontPicker>()->selectedFont());
}

INSTANTIATE_TEST_SUITE_P(Settings, HostState, testing::ValuesIn(kSettings),
                         [](const auto& setting) { return setting.param.name; });

} // namespace
} // namespace tesmar
