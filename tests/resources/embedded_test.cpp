#include "tesmar/resources/internal/embedded.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace {

using namespace std::literals;
using tesmar::embeddedResource;

using PixelSize = std::pair<unsigned, unsigned>;

// From the header; zeros if the file is not a PNG.
PixelSize pixelSize(std::string_view fileName) {
    const auto png = embeddedResource(fileName);
    if (!png || png->size() < 24 || png->substr(1, 3) != "PNG")
        return {};
    const auto number = [&](std::size_t at) {
        unsigned value = 0;
        for (std::size_t i = at; i < at + 4; ++i)
            value = value << 8 | static_cast<unsigned char>((*png)[i]);
        return value;
    };
    return {number(16), number(20)};
}

TEST(Embedded, ImagesHaveTheSameSizeInPointsAtAllScales) {
    for (const std::string name :
         {"stepper-up", "stepper-down", "stepper-pipe", "chevron-left", "chevron-right"}) {
        const auto [width, height] = pixelSize(name + ".png");
        ASSERT_TRUE(width && height) << name;
        for (const unsigned scale : {2u, 3u})
            EXPECT_EQ(pixelSize(name + "@" + std::to_string(scale) + "x.png"),
                      PixelSize(width * scale, height * scale));
    }
}

TEST(Embedded, FindsExactNamesOnly) {
    for (std::string_view name :
         {""sv, "."sv, "/"sv, "stepper-up"sv, "Stepper-Up.png"sv, "stepper-up.png/"sv,
          "./stepper-up.png"sv, "../tesmar/stepper-up.png"sv, "stepper-up.png\0"sv, "\xff"sv})
        EXPECT_FALSE(embeddedResource(name)) << name;
}

} // namespace
