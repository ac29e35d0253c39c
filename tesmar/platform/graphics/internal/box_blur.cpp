#include "tesmar/platform/graphics/internal/box_blur.h"

#include <cstddef>
#include <vector>

namespace tesmar {
namespace {

constexpr int kPasses = 3;

// Blurs one row or column: `count` pixels, `step` bytes apart. `line` is scratch.
void blurLine(unsigned char* pixels, std::ptrdiff_t step, int count, int radius,
              std::vector<unsigned char>& line) {
    const int window = 2 * radius + 1;
    for (int i = 0; i < count; ++i)
        line[static_cast<std::size_t>(i)] = pixels[i * step];
    const auto at = [&](int i) {
        return i >= 0 && i < count ? line[static_cast<std::size_t>(i)] : 0;
    };
    int sum = 0;
    for (int i = 0; i < radius; ++i)
        sum += at(i);
    for (int i = 0; i < count; ++i) {
        sum += at(i + radius);
        pixels[i * step] = static_cast<unsigned char>((sum + window / 2) / window);
        sum -= at(i - radius);
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
    std::vector<unsigned char> line(static_cast<std::size_t>(width > height ? width : height));
    for (int pass = 0; pass < kPasses; ++pass) {
        for (int y = 0; y < height; ++y)
            blurLine(data + y * stride, 1, width, radius, line);
        for (int x = 0; x < width; ++x)
            blurLine(data + x, stride, height, radius, line);
    }
    cairo_surface_mark_dirty(mask);
}

} // namespace tesmar
