// The panel's look against reviewed pictures. TESMAR_UPDATE_GOLDEN=1 rewrites them.
#include "panel_fixture.h"

#include <cstdlib>
#include <tuple>

namespace tesmar {
namespace {

// Measured: builds by g++ and clang, optimised and with sanitizers, differed in no more than 0.04%
// of the pixels, none of them visibly. Another minor version of a font may move outlines by a
// fraction of a pixel; a missing label or a moved control is far beyond.
constexpr int kVisibleDifference = 24;       // of 255, in any channel
constexpr double kToleratedFraction = 0.002; // of all pixels

double differingFraction(const UIImage& golden, const HeadlessHost& host) {
    const auto width = static_cast<std::size_t>(host.pixelWidth());
    int differing = 0;
    for (std::size_t i = 0; i < host.pixels().size(); ++i) {
        const auto a = golden.pixel(static_cast<int>(i % width), static_cast<int>(i / width));
        const auto b = host.pixels()[i];
        int difference = 0;
        for (int shift = 0; shift < 32; shift += 8)
            difference =
                std::max(difference, std::abs(int((a >> shift) & 255) - int((b >> shift) & 255)));
        differing += difference > kVisibleDifference;
    }
    return differing / static_cast<double>(host.pixels().size());
}

TEST_F(PanelTest, MatchesTheReviewedPictures) {
    const auto plain = [] { return make<TESMARViewController>(); };
    const auto extended = []() -> Ref<TESMARViewController> {
        return make<TESMARExtendedViewController>();
    };
    const std::tuple<std::string, CGSize, CGFloat, std::function<Ref<TESMARViewController>()>>
        cases[] = {{"panel-568x320@1.png", {568, 320}, 1, plain},
                   {"panel-320x480@2.png", {320, 480}, 2, plain},
                   {"panel-480x420@3.png", {480, 420}, 3, plain},
                   {"extended-460x760@1.png", {460, 760}, 1, extended},
                   {"extended-320x480@2.png", {320, 480}, 2, extended},
                   {"extended-480x420@3.png", {480, 420}, 3, extended}};
    const auto files = NSBundle::bundleWithPath("golden", GOLDEN_DIRECTORY);
    for (const auto& [file, size, scale, makePanel] : cases) {
        HeadlessHost host(size, scale);
        const auto panel = makePanel();
        panel->setCCEnabled(true);
        host.window()->presentViewController(panel, false);
        host.tap(centerOf(*host.window(), "textColorPicker.4"));
        host.advance(2); // until the press and the indicators have faded
        host.render();
        if (std::getenv("TESMAR_UPDATE_GOLDEN")) {
            ASSERT_TRUE(host.writePNG(GOLDEN_DIRECTORY "/" + file));
        }
        const auto golden = UIImage::imageWithPNGData(files->resource(file).value_or(""), scale);
        ASSERT_TRUE(golden && golden->pixelWidth() == host.pixelWidth() &&
                    golden->pixelHeight() == host.pixelHeight())
            << file;
        EXPECT_LE(differingFraction(*golden, host), kToleratedFraction) << file;
    }
}

TEST_F(PanelTest, EverySwatchShowsAPress) {
    HeadlessHost host({568, 320});
    host.window()->presentViewController(make<TESMARViewController>(), false);
    for (const char swatch : std::string("01234567")) {
        const CGPoint at =
            centerOf(*host.window(), (std::string("textColorPicker.") + swatch).c_str());
        const auto pixel = [&] {
            host.render();
            return host.pixels()[int(at.y) * 568 + int(at.x)];
        };
        const auto before = pixel();
        host.touch(UITouchPhase::began, at);
        host.advance(0.2);
        int difference = 0;
        for (int shift = 0; shift < 24; shift += 8)
            difference = std::max(
                difference, std::abs(int(before >> shift & 255) - int(pixel() >> shift & 255)));
        EXPECT_GT(difference, 50) << swatch;
        host.touch(UITouchPhase::cancelled, at);
    }
}

} // namespace
} // namespace tesmar
