#include "tesmar/platform/graphics/internal/box_blur.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace tesmar {
namespace {

constexpr int kPasses = 3;

// Blurs one row or column: `count` pixels, `step` bytes apart. `line` is scratch for them and for
// `radius` pixels before and after. Those before are 0 already.
void blurLine(unsigned char* pixels, std::ptrdiff_t step, int count, int radius,
              unsigned char* line) {
    for (int i = 0; i < count; ++i)
        line[radius + i] = pixels[i * step];
    std::fill_n(line + radius + count, radius, 0);
    const unsigned window = 2 * static_cast<unsigned>(radius) + 1;
    // Multiplying by the reciprocal is several times as fast as dividing, and as exact as long as
    // the window is smaller than 65,536 pixels: twice a surface's largest side.
    constexpr int kFractionBits = 40;
    const std::uint64_t reciprocal = (std::uint64_t{1} << kFractionBits) / window + 1;
    std::uint64_t sum = window / 2; // rounds the quotients
    for (int i = 0; i < 2 * radius; ++i)
        sum += line[i];
    for (int i = 0; i < count; ++i) {
        sum += line[i + 2 * radius];
        pixels[i * step] = static_cast<unsigned char>(sum * reciprocal >> kFractionBits);
        sum -= line[i];
    }
}

} // namespace

void boxBlur(cairo_surface_t* mask, int radius) {
    if (radius <= 0)
        return;
    cairo_surface_flush(mask);
    const int width = cairo_image_surface_get_width(mask);
    const int height = cairo_image_surface_get_height(mask);
    const std::ptrdiff_t stride = cairo_image_surface_get_stride(mask);
    unsigned char* const data = cairo_image_surface_get_data(mask);
    const int longest = std::max(width, height);
    std::vector<unsigned char> line(static_cast<std::size_t>(longest) +
                                    2 * static_cast<std::size_t>(radius));
    for (int pass = 0; pass < kPasses; ++pass) {
        for (int y = 0; y < height; ++y)
            blurLine(data + y * stride, 1, width, radius, line.data());
        for (int x = 0; x < width; ++x)
            blurLine(data + x, stride, height, radius, line.data());
    }
    cairo_surface_mark_dirty(mask);
}

} // namespace tesmar
