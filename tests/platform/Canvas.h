// Pixels that a test draws into and examines.
#pragma once

#include "tesmar/platform/graphics/CGContext.h"

#include <cmath>
#include <random>
#include <vector>

namespace tesmar {

struct Canvas {
    Canvas(int w, int h, double pixelsPerPoint, std::uint32_t background = 0)
        : width(static_cast<int>(std::ceil(w * pixelsPerPoint))),
          height(static_cast<int>(std::ceil(h * pixelsPerPoint))), scale(pixelsPerPoint),
          pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), background) {}

    CGContext context() { return {pixels.data(), width, height, width * 4, scale}; }
    std::uint32_t at(int x, int y) const {
        return pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                      static_cast<std::size_t>(x)];
    }

    int width;
    int height;
    double scale;
    std::vector<std::uint32_t> pixels;
};

// Cuts a rectangle at random into rectangles, which are appended to `pieces`.
inline void cut(const PixelRect& r, std::mt19937& random, std::vector<PixelRect>& pieces) {
    const bool isWide = r.width >= r.height;
    const int side = isWide ? r.width : r.height;
    if (side < 2 || (side < 60 && random() % 3 == 0)) {
        pieces.push_back(r);
        return;
    }
    const int at = 1 + static_cast<int>(random() % static_cast<unsigned>(side - 1));
    PixelRect first = r, second = r;
    if (isWide) {
        first.width = at;
        second = {r.x + at, r.y, r.width - at, r.height};
    } else {
        first.height = at;
        second = {r.x, r.y + at, r.width, r.height - at};
    }
    cut(first, random, pieces);
    cut(second, random, pieces);
}

// The number of pixels that differ between `draw(CGContext&)` called once and called with each
// piece of a random cutting as the clip.
template <class Draw>
int differencesWhenClipped(const Canvas& background, unsigned seed, const Draw& draw) {
    Canvas whole = background, cutUp = background;
    std::mt19937 random(seed);
    std::vector<PixelRect> pieces;
    cut({0, 0, whole.width, whole.height}, random, pieces);
    const auto drawWhole = [&] {
        CGContext context = whole.context();
        draw(context);
    };
    if (seed % 2) // so that either order fills the cache for the other
        drawWhole();
    for (const PixelRect& piece : pieces) {
        CGContext context = cutUp.context();
        context.clipToPixels(piece);
        draw(context);
    }
    if (seed % 2 == 0)
        drawWhole();
    int differences = 0;
    for (std::size_t i = 0; i < whole.pixels.size(); ++i)
        differences += whole.pixels[i] != cutUp.pixels[i];
    return differences;
}

} // namespace tesmar
