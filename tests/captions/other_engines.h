// Compares the drawings of other caption engines with the library's own.
#pragma once

#include "tesmar/tesmar.h"
#include "tests/platform/Canvas.h"
#include "tests/platform/sanitized.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <map>

namespace tesmar {

inline constexpr int kWidth = 600; // points, as the height
inline constexpr int kHeight = 100;
inline constexpr int kScale = 4; // so that the middle of a stroke has its colour alone
inline constexpr std::uint32_t kGray = 0xff808080;
inline constexpr const char* kText = "Hamburg 1234";

inline int channel(std::uint32_t pixel, int shift) {
    return static_cast<int>(pixel >> shift & 255);
}

// What a picture shows of red text on a black background, which is translucent over grey.
struct Seen {
    explicit Seen(const std::vector<std::uint32_t>& pixels) {
        const auto ink = [](std::uint32_t pixel) { return channel(pixel, 16) - channel(pixel, 8); };
        std::map<std::uint32_t, int> colors, inks;
        int most = 0;
        for (const std::uint32_t pixel : pixels) {
            colors[pixel] += std::abs(channel(pixel, 8) - channel(kGray, 8)) > 2; // in mpv's video
            most = std::max(most, ink(pixel));
        }
        for (const std::uint32_t pixel : pixels)
            inks[pixel] += ink(pixel) >= most - 2;
        const auto commonest = [](const auto& counts) {
            return std::ranges::max_element(counts, {}, [](const auto& c) { return c.second; })
                ->first;
        };
        box = commonest(colors);
        stroke = commonest(inks);
        int left = kWidth * kScale, right = 0;
        for (std::size_t i = 0; i < pixels.size(); ++i)
            if (2 * ink(pixels[i]) > ink(stroke)) {
                left = std::min(left, static_cast<int>(i % (kWidth * kScale)));
                right = std::max(right, static_cast<int>(i % (kWidth * kScale)));
            }
        width = right - left;
    }
    int width = 0;
    std::uint32_t stroke = 0, box = 0;
};

inline std::vector<std::uint32_t> ownDrawing(const Ref<NSDictionary>& attributes) {
    Canvas canvas(kWidth, kHeight, kScale, kGray);
    CGContext context = canvas.context();
    NSAttributedString::attributedString(kText, attributes)
        ->drawInRect(context, {10, 30, kWidth - 20, 60}, NSTextAlignment::center);
    return canvas.pixels;
}

// Has `draw` draw kText, centred in a picture of kWidth × kHeight points, in every face, three
// sizes and three opacities.
template <class Draw>
void compareDrawings(const Draw& draw, std::vector<double> sizes = {15, 20, 30},
                     const std::vector<double>& alphas = {0.3, 0.5, 1}) {
    if (test::kSanitized)
        sizes = {20};
    const std::vector<std::string> names = UIFont::CCSupportedFonts();
    EXPECT_EQ(names.size(), 8u);
    for (const std::string& name : names)
        for (const double size : sizes)
            for (const double alpha : alphas) {
                const auto font = UIFont::fontWithName(name, size);
                const auto attributes = NSDictionary::dictionaryWithEntries(
                    {{"NSFont", font ? font : UIFont::systemFontOfSize(size)},
                     {"NSColor", UIColor::colorWithRed(1, 0, 0, alpha)},
                     {"NSBackgroundColor", UIColor::colorWithWhite(0, 1.3 - alpha)}});
                const Seen other(draw(TESMARCaptionStyleFrom(attributes)));
                const Seen own(ownDrawing(attributes));
                EXPECT_NEAR(other.width, own.width, 0.02 * own.width) << name << ' ' << size;
                for (const int shift : {16, 8, 0}) {
                    EXPECT_NEAR(channel(other.stroke, shift), channel(own.stroke, shift), 3)
                        << name << ' ' << size << ' ' << alpha << " stroke " << shift;
                    EXPECT_NEAR(channel(other.box, shift), channel(own.box, shift), 3)
                        << name << ' ' << size << ' ' << alpha << " box " << shift;
                }
            }
}

} // namespace tesmar
