// The player's parts without a video: its command line, its captions, and how it wears the panel.
#include "Player.h"
#include "options.h"

#include "tesmar/platform/hosts/headless/HeadlessHost.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>

namespace tesmar {
namespace {

TEST(Options, AreTakenOrRefused) {
    struct Case {
        std::vector<std::string> arguments;
        const char* refusal; // a part of it; null when all is well
    };
    const Case cases[] = {
        {{}, nullptr},
        {{"film.mkv", "--auto-hide", "2.5", "--no-remember", "--size", "320x480", "--scale", "2",
          "--prefs", "p", "--headless", "d", "--reduced-motion"},
         nullptr},
        {{"--", "--film.mkv"}, nullptr},
        {{"--loud"}, "'--loud'"},
        {{"-x"}, "'-x'"},
        {{"--size"}, "--size needs a value"},
        {{"--size", "320"}, "'320'"},
        {{"--size", "0x480"}, "'0x480'"},
        {{"--size", "320x480x2"}, "'320x480x2'"},
        {{"--auto-hide", "soon"}, "'soon'"},
        {{"--auto-hide", "nan"}, "'nan'"},
        {{"--scale", "-1"}, "'-1'"},
        {{"--prefs", ""}, "--prefs cannot be ''"},
        {{"one.mkv", "two.mkv"}, "'two.mkv'"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.arguments));
        const auto parsed = parseOptions(c.arguments);
        const auto* wrong = std::get_if<UsageError>(&parsed);
        ASSERT_EQ(wrong != nullptr, c.refusal != nullptr);
        const std::string said = wrong ? wrong->message : "";
        EXPECT_NE(said.find(c.refusal ? c.refusal : ""), std::string::npos) << said;
    }
    const auto options = std::get<Options>(parseOptions(cases[1].arguments));
    EXPECT_EQ(options.video, "film.mkv");
    EXPECT_EQ(options.autoHide, 2.5);
    EXPECT_EQ(options.size, (CGSize{320, 480}));
    EXPECT_EQ(options.scale, 2);
    EXPECT_FALSE(options.remembersStyle);
    EXPECT_TRUE(std::holds_alternative<HelpWanted>(parseOptions({"film.mkv", "--help"})));
}

// --- Captions -----------------------------------------------------------------------------------

Ref<NSDictionary> style(CGFloat size) {
    return NSDictionary::dictionaryWithEntries(
        {{std::string(NSForegroundColorAttributeName), UIColor::yellowColor()},
         {std::string(NSBackgroundColorAttributeName), UIColor::blueColor()},
         {std::string(NSFontAttributeName), UIFont::systemFontOfSize(size)}});
}

struct Drawn {
    int yellow = 0; // pixels
    int blue = 0;
    PixelRect box; // around the blue
};

Drawn draw(const std::string& text, CGFloat size, CGRect room) {
    HeadlessHost host({300, 200});
    const auto captions = make<CaptionView>();
    host.window()->rootViewController()->view()->addSubview(captions);
    captions->setStyle(style(size));
    captions->setRoom(room);
    captions->setText(text);
    host.render();
    Drawn drawn{0, 0, {300, 200, 0, 0}};
    int right = 0, bottom = 0;
    for (int y = 0; y < 200; ++y)
        for (int x = 0; x < 300; ++x) {
            const std::uint32_t pixel = host.pixels()[static_cast<std::size_t>(y * 300 + x)];
            drawn.yellow += pixel == 0xFFFFFF00;
            if (pixel != 0xFF0000FF)
                continue;
            ++drawn.blue;
            drawn.box.x = std::min(drawn.box.x, x);
            drawn.box.y = std::min(drawn.box.y, y);
            right = std::max(right, x + 1);
            bottom = std::max(bottom, y + 1);
        }
    drawn.box.width = right - drawn.box.x;
    drawn.box.height = bottom - drawn.box.y;
    return drawn;
}

TEST(CaptionView, DrawsTheStyleAtTheFootOfTheRoom) {
    const CGRect room{20, 0, 260, 180};
    const auto line = [](CGFloat size) { return UIFont::systemFontOfSize(size)->lineHeight(); };
    struct Case {
        const char* text;
        CGFloat size;
        CGFloat height; // of the box
    };
    const Case cases[] = {
        {"Hello", 15, line(15)},
        {"Hello", 30, line(30)},
        {"Hello\nthere", 20, 2 * line(20)},
        {"words enough to need a second line of this room", 20, 2 * line(20)},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        const Drawn drawn = draw(c.text, c.size, room);
        EXPECT_GT(drawn.yellow, 10);
        EXPECT_NEAR(drawn.box.height, c.height, 2);
        EXPECT_NEAR(drawn.box.bottom(), room.maxY(), 1);
        EXPECT_NEAR(drawn.box.x + drawn.box.width / 2.0, room.midX(), 1.5); // centred
        EXPECT_LT(drawn.box.width, room.size.width + 1);
    }
    EXPECT_EQ(draw("", 20, room).blue, 0);
    // More than there is room for starts at the top of the room.
    EXPECT_EQ(draw("a\nb\nc\nd\ne\nf\ng\nh", 30, {20, 40, 260, 140}).box.y, 40);
}

TEST(CaptionView, ReservesRoomThatLeavesThePanelItsOwn) {
    for (const CGSize size : {CGSize{320, 480}, CGSize{568, 320}, CGSize{1280, 720}}) {
        const CGRect room{16, 0, size.width - 32, size.height - 52};
        const CGRect area = CaptionView::reservedArea(room);
        EXPECT_EQ(area.maxY(), room.maxY());
        EXPECT_LE(area.size.height, room.size.height / 4);
        EXPECT_GE(area.size.height, size.width < 400 ? 90 : 60);
    }
}

// --- The player ---------------------------------------------------------------------------------

class PlayerTest : public testing::Test {
  protected:
    void SetUp() override {
        preferences_ = testing::TempDir() + "player-test-preferences.plist";
        std::filesystem::remove(preferences_);
        NSBundle::setMainBundle(TESMARHostBundle("org.tesmar.player-test"));
        NSUserDefaults::standardUserDefaults()->setPreferencesPath(preferences_);
    }
    void TearDown() override { std::filesystem::remove(preferences_); }

    // A viewer's stay: opens the panel, taps, closes it and leaves.
    template <class Look>
    void visit(const Options& options, std::vector<const char*> taps, const Look& look) {
        HeadlessHost host({800, 600});
        Player player(host.window(), nullptr, options);
        const auto tap = [&](const char* identifier) {
            host.window()->layoutIfNeeded();
            UIView* const view = host.window()->viewWithIdentifier(identifier);
            ASSERT_NE(view, nullptr) << identifier;
            host.tap(view->convertPointTo(view->bounds().center(), nullptr));
            host.advance(0.5);
        };
        tap("captionsButton");
        EXPECT_TRUE(player.isPanelOpen());
        for (const char* identifier : taps)
            tap(identifier);
        look(host, player);
    }

    static bool shows(HeadlessHost& host, std::uint32_t color) {
        const UIView* const captions = host.window()->viewWithIdentifier("captions");
        const CGRect place = captions->convertRectTo(captions->bounds(), nullptr);
        host.render();
        for (int y = static_cast<int>(place.minY()); y < static_cast<int>(place.maxY()); ++y)
            for (int x = 0; x < host.pixelWidth(); ++x)
                if (host.pixels()[static_cast<std::size_t>(y * host.pixelWidth() + x)] == color)
                    return true;
        return false;
    }

    std::string preferences_;
};

TEST_F(PlayerTest, CaptionsWearTheStyleNowAndAtTheNextStartWhereItIsRemembered) {
    for (const bool remembers : {true, false}) {
        SCOPED_TRACE(remembers);
        std::filesystem::remove(preferences_);
        Options options;
        options.remembersStyle = remembers;
        const auto color = CCConstants::paletteColors()[5];
        const auto wanted = static_cast<std::uint32_t>(
            0xFF000000u | std::lround(color->red() * 255) << 16 |
            std::lround(color->green() * 255) << 8 | std::lround(color->blue() * 255));
        visit(options, {"textColorPicker.5"},
              [&](HeadlessHost& host, Player&) { EXPECT_TRUE(shows(host, wanted)); });
        HeadlessHost next({800, 600});
        Player player(next.window(), nullptr, options);
        EXPECT_EQ(shows(next, wanted), remembers);
    }
}

TEST_F(PlayerTest, OwnsWhetherCaptionsAreOn) {
    visit({}, {"CCSwitch"}, [](HeadlessHost& host, Player& player) {
        EXPECT_TRUE(host.window()->viewWithIdentifier("captions")->isHidden());
        player.togglePanel();
        host.advance(1);
        player.togglePanel(); // the panel shows the player's state
        const auto* captionsSwitch =
            dynamic_cast<UISwitch*>(host.window()->viewWithIdentifier("CCSwitch"));
        EXPECT_FALSE(captionsSwitch->isOn());
    });
}

TEST_F(PlayerTest, ThePanelStaysClearOfCaptionsAndControls) {
    visit({}, {}, [](HeadlessHost& host, Player& player) {
        for (const CGSize size : {CGSize{568, 320}, CGSize{800, 600}, CGSize{1280, 720}}) {
            host.resize(size, 1);
            player.layOut();
            host.render();
            const CGRect card = host.window()->viewWithIdentifier("card")->frame();
            for (const char* other : {"captions", "playButton"}) {
                const UIView* const view = host.window()->viewWithIdentifier(other);
                const CGRect place = view->convertRectTo(view->bounds(), nullptr);
                const bool hidden = view->superview()->isHidden(); // as small windows have it
                EXPECT_TRUE(hidden || CGRectIntersection(card, place).isEmpty()) << other;
            }
        }
    });
}

} // namespace
} // namespace tesmar
