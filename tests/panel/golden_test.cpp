// The panel's look against pictures that somebody looked at. TESMAR_UPDATE_GOLDEN=1 rewrites them.
#include "panel_fixture.h"

#include <cstdlib>
#include <fstream>
#include <iterator>

namespace tesmar {
namespace {

// Measured: builds by g++ and clang, optimised and with sanitizers, differed in no more than 0.04%
// of the pixels, none of them visibly. Another minor version of a font may move outlines by parts
// of a pixel; a missing label or a moved control is far beyond.
constexpr int kVisibleDifference = 24;   // of 255, in any channel
constexpr double kToleratedPart = 0.002; // of all pixels

double differingPart(const UIImage& golden, const HeadlessHost& host) {
    int differing = 0;
    for (int y = 0; y < host.pixelHeight(); ++y)
        for (int x = 0; x < host.pixelWidth(); ++x) {
            const auto a = golden.pixel(x, y);
            const auto b = host.pixels()[static_cast<std::size_t>(y * host.pixelWidth() + x)];
            for (int shift = 0; shift < 32; shift += 8)
                if (std::abs(static_cast<int>((a >> shift) & 255) -
                             static_cast<int>((b >> shift) & 255)) > kVisibleDifference) {
                    ++differing;
                    break;
                }
        }
    return static_cast<double>(differing) / (host.pixelWidth() * host.pixelHeight());
}

TEST_F(PanelTest, LooksAsItDid) {
    struct Case {
        const char* name;
        CGSize size;
        CGFloat scale;
    };
    for (const Case& c :
         {Case{"panel-568x320@1", {568, 320}, 1}, Case{"panel-320x480@2", {320, 480}, 2},
          Case{"panel-480x420@3", {480, 420}, 3}}) {
        HeadlessHost host(c.size, c.scale);
        const auto panel = make<TESMARViewController>();
        panel->setCCEnabled(true);
        host.window()->presentViewController(panel, false);
        tap(host, "textColorPicker.4");
        host.advance(1); // the press has faded
        const std::string path = std::string(GOLDEN_DIRECTORY "/") + c.name + ".png";
        if (std::getenv("TESMAR_UPDATE_GOLDEN")) {
            ASSERT_TRUE(host.writePNG(path));
            continue;
        }
        host.render();
        std::ifstream file(path, std::ios::binary);
        const std::string bytes(std::istreambuf_iterator<char>(file), {});
        const auto golden = UIImage::imageWithPNGData(bytes, c.scale);
        ASSERT_TRUE(golden) << path;
        ASSERT_EQ(golden->pixelWidth(), host.pixelWidth());
        ASSERT_EQ(golden->pixelHeight(), host.pixelHeight());
        const double part = differingPart(*golden, host);
        EXPECT_LE(part, kToleratedPart) << c.name;
        if (part > kToleratedPart)
            host.writePNG(
                (std::filesystem::temp_directory_path() / (std::string(c.name) + "-actual.png"))
                    .string());
    }
}

} // namespace
} // namespace tesmar
