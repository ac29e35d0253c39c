#include "tesmar/platform/graphics/UIImage.h"

#include "tesmar/platform/foundation/NSBundle.h"
#include "tesmar/platform/foundation/diagnostics.h"
#include "tesmar/platform/graphics/CGContext.h"
#include "tesmar/platform/graphics/UIColor.h"
#include "tesmar/platform/graphics/UIGraphics.h"
#include "tests/platform/Canvas.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <iterator>
#include <unistd.h>
#include <vector>

namespace tesmar {
namespace {

// Half transparent red in its top left quarter.
Ref<UIImage> square(double side) {
    UIGraphicsBeginImageContextWithOptions({side, side}, false, 1);
    UIGraphicsGetCurrentContext()->setFillColor(*UIColor::colorWithRed(1, 0, 0, 0.5));
    UIGraphicsGetCurrentContext()->fillRect({0, 0, side / 2, side / 2});
    auto image = UIGraphicsGetImageFromCurrentImageContext();
    UIGraphicsEndImageContext();
    return image;
}

using Pixels = std::vector<std::uint32_t>;

std::string filePNG(const Pixels& pixels, int width) {
    std::string path = testing::TempDir() + "tesmar-image-XXXXXX";
    ::close(::mkstemp(path.data()));
    const int height = static_cast<int>(pixels.size()) / width;
    EXPECT_TRUE(writePNG(path, pixels.data(), width, height, width * 4));
    std::ifstream file(path, std::ios::binary);
    ::unlink(path.c_str());
    return {std::istreambuf_iterator<char>(file), {}};
}

class UIImageTest : public testing::Test {
  protected:
    UIImageTest() {
        setDiagnosticHandler([this](std::string_view m) { diagnostics.emplace_back(m); });
    }
    ~UIImageTest() override {
        setDiagnosticHandler({});
        UIImage::setMainScreenScale(1);
    }
    std::vector<std::string> diagnostics;
};

TEST_F(UIImageTest, ChoosesTheFileForTheScreensScale) {
    const std::vector<std::string> all = {"i.png", "i@2x.png", "i@3x.png"};
    const struct {
        double screen;
        std::vector<std::string> files;
        double expectedScale; // 0: no image
    } rows[] = {{1, all, 1},          {1.5, all, 2},
                {3, all, 3},          {4, all, 3},
                {1, {"i@3x.png"}, 3}, {2, {"i.png", "i@3x.png"}, 3},
                {3, {"i.png"}, 1},    {3, {"i.png", "i@2x.png"}, 2},
                {1, {"other.png"}, 0}};
    for (const auto& row : rows) {
        diagnostics.clear();
        const auto bundle = NSBundle::bundle("b", [&](std::string_view name) {
            return std::ranges::count(row.files, name) ? square(6)->PNGData() : std::nullopt;
        });
        UIImage::setMainScreenScale(row.screen);
        const auto image = UIImage::imageNamedFrom("i", *bundle);
        EXPECT_EQ(image ? 6 / image->size().width : 0, row.expectedScale) << row.screen;
        EXPECT_EQ(diagnostics.size(), row.expectedScale ? 0u : 1u);
    }
}

// The files have different colours.
TEST_F(UIImageTest, DrawingChoosesTheFileForItsOwnScale) {
    bool isUnreadable = false;
    const auto bundle = NSBundle::bundle("b", [&](std::string_view name) {
        if (isUnreadable)
            throw std::bad_alloc();
        const bool isLarge = name.find('@') != name.npos;
        const std::string file =
            isLarge ? filePNG(Pixels(144, 0xff0000ff), 12) : filePNG(Pixels(36, 0xffff0000), 6);
        return name == "i@3x.png" ? "broken" : file;
    });
    for (const double loaded : {1.0, 2.0}) {
        UIImage::setMainScreenScale(loaded);
        const auto image = UIImage::imageNamedFrom("i", *bundle);
        Canvas failed(6, 6, 3 - loaded);
        isUnreadable = true; // at the first drawing
        EXPECT_THROW(failed.context().drawImage(*image, {0, 0, 6, 6}), std::bad_alloc);
        isUnreadable = false;
        for (const double drawn : {1.0, 2.0, 0.5, 1.5, 1.0, 3.0}) {
            const double shown = drawn == 3 ? loaded : drawn; // the file for 3 is broken
            Canvas canvas(6, 6, drawn);
            CGContext context = canvas.context();
            context.drawImage(*image, {0, 0, 6, 6});
            EXPECT_EQ(canvas.at(1, 1), shown <= 1 ? 0xffff0000 : 0xff0000ff) << drawn;
            EXPECT_EQ(image->size(), (CGSize{6, 6}));
        }
        EXPECT_EQ(diagnostics.size(), 1u);
        diagnostics.clear();
    }
}

TEST_F(UIImageTest, RefusesBrokenAndHugeFiles) {
    const std::string good = *square(8)->PNGData();
    std::string flipped = good;
    flipped[good.size() - 20] ^= 0x55; // in the pixel data, which is the last chunk but one
    const std::string rows[] = {"",
                                std::string(4096, 'x'),
                                flipped,
                                good.substr(0, 33),
                                good.substr(0, good.size() - 12),
                                filePNG(Pixels(8193), 8193),
                                filePNG(Pixels(8193), 1)};
    for (const std::string& bytes : rows) {
        diagnostics.clear();
        const auto bundle = NSBundle::bundle("b", [&bytes](std::string_view) { return bytes; });
        EXPECT_EQ(UIImage::imageNamedFrom("i", *bundle), nullptr) << bytes.size();
        EXPECT_EQ(diagnostics.size(), 1u);
    }
    EXPECT_TRUE(UIImage::imageWithPNGData(filePNG(Pixels(8192), 8192), 1));
    const auto back = UIImage::imageWithPNGData(good + "trailing", 1);
    ASSERT_TRUE(back);
    EXPECT_EQ(back->pixel(3, 3), 0x80800000u);
    EXPECT_EQ(back->pixel(4, 4) | back->pixel(-1, 99), 0u);
}

TEST_F(UIImageTest, ImageContextsHaveTheRequestedSize) {
    UIImage::setMainScreenScale(1.5); // image contexts round it up
    const struct {
        CGSize size;
        double scale;
        int expectedPixels; // 0: no image
    } rows[] = {{{10, 10}, 0, 20},  {{10.2, 10.2}, 1, 11}, {{1, 1}, NAN, 1},  {{-5, 10}, 1, 0},
                {{NAN, NAN}, 1, 0}, {{1e9, 1e9}, 1, 0},    {{9000, 1}, 1, 0}, {{8000, 8000}, 1, 0}};
    for (const auto& row : rows) {
        UIGraphicsBeginImageContextWithOptions(row.size, true, row.scale);
        const auto image = UIGraphicsGetImageFromCurrentImageContext();
        UIGraphicsGetCurrentContext()->setFillColor(*UIColor::redColor());
        UIGraphicsGetCurrentContext()->fillRect({0, 0, 5, 5});
        EXPECT_EQ(image ? image->pixelWidth() : 0, row.expectedPixels);
        if (image) {
            EXPECT_EQ(image->pixel(0, 0), 0xff000000); // a copy made before the red
            EXPECT_EQ(UIGraphicsGetImageFromCurrentImageContext()->pixel(0, 0), 0xffff0000);
        }
        UIGraphicsPopContext(); // has no effect on an image context
        EXPECT_NE(UIGraphicsGetCurrentContext(), nullptr);
        UIGraphicsEndImageContext();
        UIGraphicsEndImageContext(); // has no effect on an empty stack
        EXPECT_EQ(UIGraphicsGetCurrentContext(), nullptr);
    }
    UIGraphicsBeginImageContextWithOptions({1, 1}, true,
                                           3); // the drawing's scale, not the screen's
    UIGraphicsBeginImageContextWithOptions({1, 1}, true, 0);
    EXPECT_EQ(UIGraphicsGetImageFromCurrentImageContext()->scale(), 3);
    UIGraphicsEndImageContext();
    UIGraphicsEndImageContext();
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
    EXPECT_EQ(drawn->pixel(8, 0), image->pixel(0, 0)); // the outer edge stays opaque
    EXPECT_EQ(drawn->pixel(14, 6), 0u);
    EXPECT_EQ(drawn->pixel(17, 1), 0x80008000u);
}

} // namespace
} // namespace tesmar
