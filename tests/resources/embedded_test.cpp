#include "tesmar/resources/internal/embedded.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace std::literals;
using tesmar::embeddedResource;

struct PixelSize {
    unsigned width, height;
};

// From the header; std::nullopt if the file is not a PNG.
std::optional<PixelSize> pixelSize(std::string_view fileName) {
    const auto png = embeddedResource(fileName);
    if (!png || png->size() < 24 || png->substr(1, 3) != "PNG")
        return std::nullopt;
    const auto number = [&](std::size_t at) {
        unsigned value = 0;
        for (std::size_t i = at; i < at + 4; ++i)
            value = value << 8 | static_cast<unsigned char>((*png)[i]);
        return value;
    };
    return PixelSize{number(16), number(20)};
}

TEST(Embedded, ImagesHaveTheSameSizeInPointsAtAllScales) {
    for (const std::string name :
         {"stepper-up", "stepper-down", "stepper-pipe", "chevron-left", "chevron-right"}) {
        const auto points = pixelSize(name + ".png");
        ASSERT_TRUE(points) << name;
        for (unsigned scale : {2u, 3u}) {
            const auto pixels = pixelSize(name + "@" + std::to_string(scale) + "x.png");
            ASSERT_TRUE(pixels) << name << scale;
            EXPECT_EQ(pixels->width, points->width * scale) << name << scale;
            EXPECT_EQ(pixels->height, points->height * scale) << name << scale;
        }
    }
}

TEST(Embedded, FindsExactNamesOnly) {
    for (std::string_view name :
         {""sv, "."sv, "/"sv, "stepper-up"sv, "Stepper-Up.png"sv, "stepper-up.png/"sv,
          "./stepper-up.png"sv, "../tesmar/stepper-up.png"sv, "stepper-up.png\0"sv, "\xff"sv})
        EXPECT_FALSE(embeddedResource(name)) << name;
}

} // namespace
