#include "BackdropPicture.h"

#include <algorithm>

void drawBackdrop(std::uint32_t* pixels, int width, int height, int stride) {
    for (int y = 0; y < height; ++y) {
        const auto shade = static_cast<std::uint32_t>(24 * (height - y) / height);
        std::fill_n(pixels + static_cast<std::ptrdiff_t>(y) * (stride / 4), width,
                    (18 + shade) << 16 | (20 + shade) << 8 | (28 + 2 * shade));
    }
}
