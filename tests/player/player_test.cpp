// The player without a video: its command line, its captions and its use of the panel.
#include "Player.h"
#include "options.h"
#include "player_fixture.h"

#include "tesmar/platform/hosts/headless/HeadlessHost.h"

#include <cmath>
#include <cstring>

namespace tesmar {
namespace {

TEST(PlayerOptions, AreAcceptedOrRefused) {
    const auto parse = [](std::vector<const char*> arguments) {
        arguments.insert(arguments.begin(), "player");
        return parseOptions(static_cast<int>(arguments.size()), arguments.data());
    };
    const std::vector<const char*> refused[] = {
        {"--loud"},
        {"--size", "320"},
        {"--size", "0x480"},
        {"--size", "320x480x2"},
        {"--auto-hide", "soon"},
        {"--scale", "-1"},
        {"--scale", "nan"},
        {"--extended", "maybe"},
        {"--renderer", "other"},
        {"--prefs", ""},
        {"one.mkv", "2.mkv"},
    };
    for (const auto& arguments : refused) {
        const char* wrong = arguments.back();
        wrong += std::strspn(wrong, "-");
        try {
            parse(arguments);
            ADD_FAILURE() << wrong << " was accepted";
        } catch (const UsageError& error) {
            EXPECT_NE(std::strstr(error.what(), wrong), nullptr) << error.what();
        }
    }
    const Options options = *parse({"--auto-hide", "2.5", "--no-remember", "--size", "320x480",
                                    "--scale", "2", "--prefs", "p", "--headless", "d",
                                    "--reduced-motion", "--extended", "off", "--", "--film.mkv"});
    EXPECT_EQ(options.video + options.preferences + *options.pictures, "--film.mkvpd");
    EXPECT_EQ(options.size, (CGSize{320, 480}));
    EXPECT_EQ(options.autoHide, 2.5);
    EXPECT_EQ(options.scale, 2);
    EXPECT_TRUE(!options.remembersStyle && options.reducedMotion && !options.isExtended);
    EXPECT_EQ(parse({"film.mkv", "--help"}), std::nullopt);
}

// --- The player ---------------------------------------------------------------------------------

struct Visit {
    explicit Visit(const Options& options = {}) : player(host.window(), nullptr, options) {}

    void tap(const char* identifier) {
        host.window()->layoutIfNeeded();
        UIView* const view = host.window()->viewWithIdentifier(identifier);
        ASSERT_NE(view, nullptr) << identifier;
        host.tap(view->convertPointTo(view->bounds().center(), nullptr));
        host.advance(0.5);
    }

    // Renders first.
    bool shows(std::uint32_t color) {
        host.render();
        return std::count(host.pixels().begin(), host.pixels().end(), color) > 0;
    }

    HeadlessHost host{{800, 600}};
    Player player;
};

using PlayerTest = PlayerFixture;

TEST_F(PlayerTest, CaptionsHaveTheNewStyleAndKeepItForTheNextStartIfRemembered) {
    constexpr std::uint32_t kRed = 0xFFFF0000;
    for (const bool remembers : {false, true}) {
        SCOPED_TRACE(remembers);
        options_.remembersStyle = remembers;
        {
            Visit first(options_);
            EXPECT_FALSE(first.shows(kRed));
            for (const char* control : {"captionsButton", "textColorPicker.5", "captionsButton"})
                first.tap(control);
            EXPECT_FALSE(first.player.isPanelOpen());
            EXPECT_TRUE(first.shows(kRed));
        }
        EXPECT_EQ(Visit(options_).shows(kRed), remembers);
    }
}

TEST_F(PlayerTest, OwnsWhetherCaptionsAreOn) {
    Visit visit;
    for (const char* control : {"captionsButton", "CCSwitch", "captionsButton", "captionsButton"})
        visit.tap(control);
    UIView& window = *visit.host.window();
    EXPECT_TRUE(window.viewWithIdentifier("captions")->isHidden());
    EXPECT_FALSE(dynamic_cast<UISwitch&>(*window.viewWithIdentifier("CCSwitch")).isOn());
}

TEST_F(PlayerTest, ThePanelStaysClearOfCaptionsAndControls) {
    Visit visit;
    visit.tap("captionsButton");
    UIWindow& window = *visit.host.window();
    auto& sizes = dynamic_cast<UIStepper&>(*window.viewWithIdentifier("fontPicker.size"));
    sizes.setValue(sizes.maximumValue());
    sizes.sendActionsForControlEvents(UIControlEventValueChanged);
    for (const CGSize size : {CGSize{320, 480}, {568, 280}, {800, 600}, {1280, 720}}) {
        visit.host.resize(size, 1);
        visit.player.layOut();
        visit.host.render();
        const CGRect captions = window.captionArea().value();
        EXPECT_GE(captions.size.height, size.width < 400 ? 90 : 60);
        const CGRect card = window.viewWithIdentifier("card")->frame();
        EXPECT_TRUE(CGRectIntersection(card, captions).isEmpty()) << size.width;
        EXPECT_GE(card.size.height, 180);
        const UIView& bar = *window.viewWithIdentifier("playButton")->superview();
        EXPECT_TRUE(bar.isHidden() || CGRectIntersection(card, bar.frame()).isEmpty());
    }
}

} // namespace
} // namespace tesmar
