#include "tesmar/platform/graphics/UIImage.h"

#include "tesmar/platform/foundation/NSBundle.h"
#include "tesmar/platform/foundation/diagnostics.h"
#include "tesmar/platform/graphics/CGContext.h"
#include "tesmar/platform/graphics/UIColor.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <limits>
#include <map>
#include <vector>

namespace tesmar {
namespace {

Ref<UIImage> square(int side, double scale = 1) {
    UIGraphicsBeginImageContextWithOptions(CGSize(side, side), false, scale);
    CGContext& context = *UIGraphicsGetCurrentContext();
    context.setFillColor(*UIColor::colorWithRed(1, 0, 0, 0.5));
    context.fillRect({0, 0, side / 2.0, side / 2.0});
    auto image = UIGraphicsGetImageFromCurrentImageContext();
    UIGraphicsEndImageContext();
    return image;
}

std::string png(int side) {
    return *square(side)->PNGData();
}

class UIImageTest : public testing::Test {
  protected:
    UIImageTest() {
        setDiagnosticHandler([this](std::string_view m) { diagnostics.emplace_back(m); });
    }
    ~UIImageTest() override {
        setDiagnosticHandler({});
        UIImage::setMainScreenScale(1);
        NSBundle::setMainBundle(nullptr);
    }
    std::vector<std::string> diagnostics;
};

TEST_F(UIImageTest, TheVariantSuitsTheScreen) {
    const struct {
        double screen;
        std::vector<std::string> files;
        double expectedScale; // 0: none
    } rows[] = {
        {1, {"i.png", "i@2x.png", "i@3x.png"}, 1},
        {1.5, {"i.png", "i@2x.png", "i@3x.png"}, 2},
        {2, {"i.png", "i@2x.png", "i@3x.png"}, 2},
        {3, {"i.png", "i@2x.png", "i@3x.png"}, 3},
        {4, {"i.png", "i@2x.png", "i@3x.png"}, 3},
        {1, {"i@3x.png"}, 3},
        {3, {"i.png"}, 1},
        {2, {"i.png", "i@3x.png"}, 3},
        {3, {"i.png", "i@2x.png"}, 2},
        {1, {"other.png"}, 0},
    };
    for (const auto& row : rows) {
        diagnostics.clear();
        NSBundle::setMainBundle(NSBundle::bundle(
            "org.example.player", [&](std::string_view name) -> std::optional<std::string> {
                for (const auto& file : row.files)
                    if (file == name)
                        return png(6);
                return std::nullopt;
            }));
        UIImage::setMainScreenScale(row.screen);
        const auto image = UIImage::imageNamed("i");
        EXPECT_EQ(image ? image->scale() : 0, row.expectedScale) << row.screen;
        EXPECT_EQ(diagnostics.size(), row.expectedScale ? 0u : 1u);
        if (image) {
            EXPECT_EQ(image->size(), (CGSize{6 / row.expectedScale, 6 / row.expectedScale}));
        }
    }
}

TEST_F(UIImageTest, HostileFilesAreRefused) {
    const std::string good = png(8);
    const auto withSize = [&good](std::uint32_t width, std::uint32_t height) {
        std::string bytes = good;
        for (int i = 0; i < 4; ++i) {
            bytes[16 + static_cast<std::size_t>(i)] = static_cast<char>(width >> (24 - 8 * i));
            bytes[20 + static_cast<std::size_t>(i)] = static_cast<char>(height >> (24 - 8 * i));
        }
        return bytes;
    };
    std::string flipped = good;
    flipped[good.size() - 20] ^= 0x55; // in the pixels' chunk, the last but one
    const std::map<std::string, std::string> rows = {
        {"empty", ""},
        {"signature only", good.substr(0, 8)},
        {"header only", good.substr(0, 33)},
        {"cut in half", good.substr(0, good.size() / 2)},
        {"without its end", good.substr(0, good.size() - 12)},
        {"broken data", flipped},
        {"text", std::string(4096, 'x')},
        {"too wide", withSize(8193, 1)},
        {"too high", withSize(1, 8193)},
        {"too many pixels", withSize(8192, 8192)},
        {"no width", withSize(0, 8)},
        {"negative", withSize(0xffffffff, 0xffffffff)},
        {"other size than its data", withSize(9, 9)},
    };
    for (const auto& [name, bytes] : rows) {
        EXPECT_EQ(UIImage::imageWithPNGData(bytes, 1), nullptr) << name;
        const auto bundle = NSBundle::bundle("b", [&](std::string_view) { return bytes; });
        diagnostics.clear();
        EXPECT_EQ(UIImage::imageNamedFrom("i", *bundle), nullptr) << name;
        EXPECT_EQ(diagnostics.size(), 1u) << name;
    }
    EXPECT_NE(UIImage::imageWithPNGData(good + "trailing", 1), nullptr);
}

TEST_F(UIImageTest, PixelsComeBackFromPNG) {
    const auto image = square(8, 2);
    EXPECT_EQ(image->size(), (CGSize{8, 8}));
    EXPECT_EQ(image->pixel(7, 7), 0x80800000u);
    EXPECT_EQ(image->pixel(8, 8), 0u);
    EXPECT_EQ(image->pixel(-1, 99), 0u);
    const auto path = (std::filesystem::temp_directory_path() / "tesmar_image_test.png").string();
    ASSERT_TRUE(writePNG(path, image->pixels(), 16, 16, image->bytesPerRow()));
    const auto directory = std::filesystem::temp_directory_path().string();
    const auto back =
        UIImage::imageNamedFrom("tesmar_image_test", *NSBundle::bundleWithPath("b", directory));
    std::filesystem::remove(path);
    ASSERT_TRUE(back);
    for (int y = 0; y < 16; ++y)
        for (int x = 0; x < 16; ++x)
            EXPECT_EQ(back->pixel(x, y), image->pixel(x, y));
    EXPECT_FALSE(image->writePNG("/nowhere/at/all.png"));
}

TEST_F(UIImageTest, ImageContextsHaveTheSizeThatWasAskedFor) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    UIImage::setMainScreenScale(2);
    const struct {
        CGSize size;
        double scale;
        int expectedPixels; // 0: no image
    } rows[] = {{{10, 10}, 0, 20},    {{10, 10}, 1, 10},  {{10.2, 10.2}, 1, 11}, {{0, 10}, 1, 0},
                {{-5, 10}, 1, 0},     {{nan, nan}, 1, 0}, {{1e9, 1e9}, 1, 0},    {{9000, 1}, 1, 0},
                {{8000, 8000}, 1, 0}, {{1, 1}, nan, 1}};
    for (const auto& row : rows) {
        UIGraphicsBeginImageContextWithOptions(row.size, true, row.scale);
        ASSERT_NE(UIGraphicsGetCurrentContext(), nullptr);
        UIGraphicsGetCurrentContext()->fillEllipse({0, 0, 5, 5});
        const auto image = UIGraphicsGetImageFromCurrentImageContext();
        EXPECT_EQ(image ? image->pixelWidth() : 0, row.expectedPixels);
        if (image) {
            EXPECT_EQ(image->pixel(0, 0), 0xff000000); // opaque
            EXPECT_NE(image, UIGraphicsGetImageFromCurrentImageContext());
        }
        UIGraphicsEndImageContext();
    }
}

TEST_F(UIImageTest, AnImageTakenDoesNotChangeAnyMore) {
    UIGraphicsBeginImageContextWithOptions({4, 4}, false, 1);
    const auto before = UIGraphicsGetImageFromCurrentImageContext();
    UIGraphicsGetCurrentContext()->fillRect({0, 0, 4, 4});
    const auto after = UIGraphicsGetImageFromCurrentImageContext();
    UIGraphicsEndImageContext();
    EXPECT_EQ(before->pixel(1, 1), 0u);
    EXPECT_EQ(after->pixel(1, 1), 0xff000000);
}

TEST_F(UIImageTest, DrawingScalesAndTints) {
    const auto image = square(4);
    UIGraphicsBeginImageContextWithOptions({24, 8}, false, 1);
    CGContext& context = *UIGraphicsGetCurrentContext();
    context.drawImage(*image, {0, 0, 4, 4});
    context.drawImage(*image, {8, 0, 8, 8});
    context.drawImage(*image, {16, 0, 4, 4}, *UIColor::greenColor());
    context.drawImage(*make<UIImage>(), {0, 0, 4, 4});
    const auto drawn = UIGraphicsGetImageFromCurrentImageContext();
    UIGraphicsEndImageContext();
    EXPECT_EQ(drawn->pixel(1, 1), image->pixel(1, 1));
    EXPECT_EQ(drawn->pixel(2, 2), 0u);
    EXPECT_EQ(drawn->pixel(9, 1), image->pixel(0, 0)); // no soft outer edge
    EXPECT_EQ(drawn->pixel(14, 6), 0u);
    EXPECT_EQ(drawn->pixel(17, 1), 0x80008000u);
}

} // namespace
} // namespace tesmar
