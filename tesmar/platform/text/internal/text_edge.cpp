#include "tesmar/platform/text/internal/text_edge.h"

#include "tesmar/platform/graphics/internal/CGContextImpl.h"

#include <array>
#include <cstdint>

namespace tesmar {
namespace {

constexpr double kWidth = 1.0 / 20, kShadowDistance = 1.0 / 15; // of the font size
// Bounds the time: it grows with the width.
constexpr double kLargestWidth = 24;

double pixelsOf(double share, double fontSize) {
    return std::clamp(share * fontSize, 1.0, kLargestWidth);
}

// Coverage in rows, one byte a pixel.
struct Plane {
    unsigned char* data;
    std::ptrdiff_t stride;
    int width;
    int height;

    static Plane of(cairo_surface_t* surface) {
        cairo_surface_flush(surface);
        return {cairo_image_surface_get_data(surface), cairo_image_surface_get_stride(surface),
                cairo_image_surface_get_width(surface), cairo_image_surface_get_height(surface)};
    }
    unsigned char* row(int y) const { return data + y * stride; }
};

// Where `from` is moved by (dx, dy) and loses `loss` of its coverage, `to` keeps what covers more.
// Both have the same size.
void spread(const Plane& to, const Plane& from, int dx, int dy, unsigned char loss) {
    const int left = std::max(dx, 0), count = to.width - std::abs(dx);
    for (int y = std::max(dy, 0); y < to.height + std::min(dy, 0); ++y) {
        unsigned char* const out = to.row(y) + left;
        const unsigned char* const in = from.row(y - dy) + left - dx;
        for (int x = 0; x < count; ++x)
            out[x] = std::max(out[x], static_cast<unsigned char>(std::max(in[x], loss) - loss));
    }
}

// What a move by more than the width loses, a fraction of a pixel.
unsigned char lossOf(double distance, double width) {
    return static_cast<unsigned char>(std::clamp(distance - width, 0.0, 1.0) * 255);
}

SurfacePtr copyOf(cairo_surface_t* mask) {
    const Plane from = Plane::of(mask);
    SurfacePtr copy = emptySurface(CAIRO_FORMAT_A8, from.width, from.height);
    if (!copy)
        return nullptr;
    std::copy_n(from.data, from.stride * from.height, Plane::of(copy.get()).data);
    return copy;
}

// Widens by a disc. Several small discs in a row make a large one, in less time.
void widenAllAround(SurfacePtr& mask, double width) {
    constexpr double kLargestStep = 3;
    for (double left = width; left > 0 && mask; left -= kLargestStep) {
        const double step = std::min(left, kLargestStep);
        SurfacePtr wider = copyOf(mask.get());
        if (!wider)
            return;
        const Plane to = Plane::of(wider.get()), from = Plane::of(mask.get());
        const int reach = static_cast<int>(std::ceil(step));
        for (int dy = -reach; dy <= reach; ++dy)
            for (int dx = -reach; dx <= reach; ++dx)
                if (const unsigned char loss = lossOf(std::hypot(dx, dy), step); loss < 255)
                    spread(to, from, dx, dy, loss);
        mask = std::move(wider);
    }
}

// Widens along the diagonal, by `width` pixels each way in the direction `sign`.
void extrude(SurfacePtr& mask, double width, int sign) {
    const SurfacePtr original = copyOf(mask.get());
    if (!original)
        return;
    const Plane to = Plane::of(mask.get()), from = Plane::of(original.get());
    for (int step = 1; step < width + 1; ++step)
        spread(to, from, sign * step, sign * step, lossOf(step, width));
}

// Adds the shadow, which fades out within `width` pixels around it: one pixel in each round.
void addShadow(SurfacePtr& mask, double width, int distance) {
    SurfacePtr shadow = copyOf(mask.get());
    const int rounds = floorToInt(width) + 1;
    for (int round = 0; round < rounds && shadow; ++round) {
        SurfacePtr wider = copyOf(shadow.get());
        if (!wider)
            return;
        for (int dy = -1; dy <= 1; ++dy)
            for (int dx = -1; dx <= 1; ++dx)
                spread(
                    Plane::of(wider.get()), Plane::of(shadow.get()), dx, dy,
                    static_cast<unsigned char>(std::min(255 * std::hypot(dx, dy) / rounds, 255.0)));
        shadow = std::move(wider);
    }
    if (shadow)
        spread(Plane::of(mask.get()), Plane::of(shadow.get()), distance, distance, 0);
}

// The characters together with their edge. Null if there is no memory.
SurfacePtr outlined(cairo_surface_t* glyphs, TextEdge edge, double fontSize) {
    SurfacePtr mask = copyOf(glyphs);
    if (!mask)
        return nullptr;
    const double width = pixelsOf(kWidth, fontSize);
    switch (edge) {
    case TextEdge::none:
        break;
    case TextEdge::raised:
        extrude(mask, width, 1);
        break;
    case TextEdge::depressed:
        extrude(mask, width, -1);
        break;
    case TextEdge::uniform:
        widenAllAround(mask, width);
        break;
    case TextEdge::dropShadow:
        addShadow(mask, width, floorToInt(pixelsOf(kShadowDistance, fontSize) + 0.5));
        break;
    }
    return mask;
}

// With the edge through m and the characters through textAlpha * c above it, the edge keeps
// m * (1 - textAlpha * c). That has to be what the edge covers beside the characters, e - c.
void setBeside(const Plane& mask, const Plane& outline, const Plane& glyphs, int margin,
               double textAlpha) {
    constexpr int kFractionBits = 16;
    std::array<std::uint32_t, 256> factors{}; // 1 / (1 - textAlpha * c)
    for (int c = 0; c < 255; ++c)
        factors.at(static_cast<std::size_t>(c)) =
            static_cast<std::uint32_t>((1 << kFractionBits) / (1 - textAlpha * c / 255));
    for (int y = 0; y < mask.height; ++y) {
        unsigned char* const out = mask.row(y);
        const unsigned char* const e = outline.row(y + margin) + margin;
        const unsigned char* const c = glyphs.row(y + margin) + margin;
        for (int x = 0; x < mask.width; ++x) {
            const std::uint32_t beside = (e[x] - c[x]) * factors[c[x]] + (1 << 15);
            out[x] = static_cast<unsigned char>(beside >> kFractionBits);
        }
    }
}

} // namespace

EdgeReach edgeReach(TextEdge edge, double fontSize) {
    const double width = pixelsOf(kWidth, fontSize);
    switch (edge) {
    case TextEdge::none:
        return {};
    case TextEdge::raised:
        return {0, 0, width, width};
    case TextEdge::depressed:
        return {width, width, 0, 0};
    case TextEdge::uniform:
        return {width, width, width, width};
    case TextEdge::dropShadow:
        break;
    }
    // Rounding to whole pixels adds to the distance and to the width.
    const double distance = pixelsOf(kShadowDistance, fontSize);
    return {2, 2, distance + width + 2, distance + width + 2};
}

int edgeMargin(TextEdge edge, double fontSize) {
    const EdgeReach reach = edgeReach(edge, fontSize);
    return static_cast<int>(std::ceil(std::max(reach.left, reach.right)));
}

void renderEdge(cairo_surface_t* mask, cairo_surface_t* glyphs, TextEdge edge, double fontSize,
                double textAlpha) {
    const SurfacePtr outline = outlined(glyphs, edge, fontSize);
    if (!outline)
        return;
    setBeside(Plane::of(mask), Plane::of(outline.get()), Plane::of(glyphs),
              edgeMargin(edge, fontSize), textAlpha);
    cairo_surface_mark_dirty(mask);
}

} // namespace tesmar
