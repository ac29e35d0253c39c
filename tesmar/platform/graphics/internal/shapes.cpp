#include "tesmar/platform/graphics/internal/shapes.h"

#include "tesmar/platform/graphics/internal/box_blur.h"

#include <array>
#include <numbers>

namespace tesmar {
namespace {

constexpr int kSubpixels = 16; // per device pixel, in each direction

int toSubpixels(double pixels) {
    return static_cast<int>(std::floor(pixels * kSubpixels + 0.5));
}

int floorPixel(int subpixels) {
    return (subpixels >= 0 ? subpixels : subpixels - (kSubpixels - 1)) / kSubpixels;
}
int ceilPixel(int subpixels) {
    return floorPixel(subpixels + kSubpixels - 1);
}
double toPixels(int subpixels) {
    return static_cast<double>(subpixels) / kSubpixels;
}

struct SubpixelRect {
    int left, top, right, bottom;

    PixelRect pixels() const {
        const int x = floorPixel(left), y = floorPixel(top);
        return {x, y, ceilPixel(right) - x, ceilPixel(bottom) - y};
    }
    SubpixelRect movedBy(int dx, int dy) const {
        return {left + dx, top + dy, right + dx, bottom + dy};
    }
    SubpixelRect grownBy(int d) const { return {left - d, top - d, right + d, bottom + d}; }
    bool isEmpty() const { return right <= left || bottom <= top; }
};

SubpixelRect subpixelRect(const CGContext::Impl& painter, const CGRect& r) {
    const CGPoint topLeft = painter.device(r.origin);
    const CGPoint bottomRight = painter.device({r.maxX(), r.maxY()});
    return {toSubpixels(topLeft.x), toSubpixels(topLeft.y), toSubpixels(bottomRight.x),
            toSubpixels(bottomRight.y)};
}

// The same rectangle relative to the top left corner of `box`.
SubpixelRect relativeTo(const PixelRect& box, const SubpixelRect& r) {
    return r.movedBy(-box.x * kSubpixels, -box.y * kSubpixels);
}

void ellipsePath(cairo_t* cr, const SubpixelRect& r) {
    cairo_matrix_t matrix;
    cairo_get_matrix(cr, &matrix);
    cairo_translate(cr, toPixels(r.left + r.right) / 2, toPixels(r.top + r.bottom) / 2);
    cairo_scale(cr, toPixels(r.right - r.left) / 2, toPixels(r.bottom - r.top) / 2);
    cairo_arc(cr, 0, 0, 1, 0, 2 * std::numbers::pi);
    cairo_close_path(cr);
    cairo_set_matrix(cr, &matrix);
}

void roundedRectPath(cairo_t* cr, const SubpixelRect& r, double radius) {
    const double left = toPixels(r.left), top = toPixels(r.top);
    const double right = toPixels(r.right), bottom = toPixels(r.bottom);
    constexpr double quarter = std::numbers::pi / 2;
    cairo_new_sub_path(cr);
    cairo_arc(cr, right - radius, top + radius, radius, -quarter, 0);
    cairo_arc(cr, right - radius, bottom - radius, radius, 0, quarter);
    cairo_arc(cr, left + radius, bottom - radius, radius, quarter, 2 * quarter);
    cairo_arc(cr, left + radius, top + radius, radius, 2 * quarter, 3 * quarter);
    cairo_close_path(cr);
}

double clampedRadius(const SubpixelRect& r, double radius) {
    return std::min({radius, toPixels(r.right - r.left) / 2, toPixels(r.bottom - r.top) / 2});
}

// Whether all of the clip lies within the rounded rectangle and clear of its corners: no mask needs
// to be looked up then. Most of a small frame lies so in a card and its shadow.
bool isWithin(const PixelRect& clip, const SubpixelRect& r, int cornerRadius) {
    constexpr int kAntialiasing = 2; // pixels
    const PixelRect inside = r.grownBy(-cornerRadius - kAntialiasing * kSubpixels).pixels();
    return clip.x > inside.x && clip.y > inside.y && clip.right() < inside.right() &&
           clip.bottom() < inside.bottom();
}

// One direction of a large box whose mask does not change along its middle: the mask is rendered
// with a middle of one pixel, which is stretched when it is painted. Lengths are device pixels.
struct Stretch {
    int margin;     // at each end, not stretched
    int length;     // of the box
    int maskLength; // of the mask: at most two margins and one pixel between them

    Stretch(int marginPixels, int boxLength)
        : margin(marginPixels), length(boxLength),
          maskLength(std::min(boxLength, 2 * marginPixels + 1)) {}
    int removed() const { return length - maskLength; }

    struct Segment {
        int mask;   // start in the mask
        int box;    // start in the box
        int length; // in the box
        bool isStretched;
    };
    std::array<Segment, 3> segments() const {
        if (!removed())
            return {{{0, 0, length, false}, {0, 0, 0, false}, {0, 0, 0, false}}};
        return {{{0, 0, margin, false},
                 {margin, margin, length - 2 * margin, true},
                 {margin + 1, length - margin, margin, false}}};
    }
};

unsigned char coverage(cairo_surface_t* mask, int x, int y) {
    return cairo_image_surface_get_data(mask)[y * cairo_image_surface_get_stride(mask) + x];
}

// Fills a stretched part of the box, whose mask varies in at most one direction: one rectangle for
// each run of equal coverage.
void fillRuns(CGContext::Impl& painter, cairo_surface_t* mask, const Stretch::Segment& x,
              const Stretch::Segment& y, const PixelRect& box, const Paint& paint) {
    const auto along = [&](int i) {
        return coverage(mask, x.isStretched ? x.mask : x.mask + i,
                        y.isStretched ? y.mask : y.mask + i);
    };
    const bool variesDownwards = x.isStretched;
    const int count = x.isStretched && y.isStretched ? 1 : variesDownwards ? y.length : x.length;
    for (int start = 0, end; start < count; start = end) {
        for (end = start + 1; end < count && along(end) == along(start);)
            ++end;
        const Paint covered = paint.withAlpha(along(start) / 255.0);
        if (count == 1 && y.isStretched)
            painter.fillPixels({box.x + x.box, box.y + y.box, x.length, y.length}, covered);
        else if (variesDownwards)
            painter.fillPixels({box.x + x.box, box.y + y.box + start, x.length, end - start},
                               covered);
        else
            painter.fillPixels({box.x + x.box + start, box.y + y.box, end - start, y.length},
                               covered);
    }
}

void paintStretched(CGContext::Impl& painter, cairo_surface_t* mask, const Stretch& across,
                    const Stretch& down, const PixelRect& box, const Paint& paint) {
    for (const auto& y : down.segments()) {
        for (const auto& x : across.segments()) {
            const PixelRect part{box.x + x.box, box.y + y.box, x.length, y.length};
            if (intersection(part, painter.state.clip).isEmpty())
                continue;
            if (x.isStretched || y.isStretched)
                fillRuns(painter, mask, x, y, box, paint);
            else
                painter.paintMask(mask, part.x - x.mask, part.y - y.mask, part, paint);
        }
    }
}

// The A8 surface cached under `shape`, made by `render()` if there is none. Null if that fails.
template <class Render>
cairo_surface_t* cachedMask(std::span<const std::int32_t> shape, const Render& render) {
    SurfaceCache& cache = SurfaceCache::ofThisThread();
    if (cairo_surface_t* cached = cache.find({shape}))
        return cached;
    SurfacePtr rendered = render();
    return rendered ? cache.insert({shape}, std::move(rendered)) : nullptr;
}

SubpixelRect shortened(const SubpixelRect& r, const Stretch& across, const Stretch& down) {
    return {r.left, r.top, r.right - across.removed() * kSubpixels,
            r.bottom - down.removed() * kSubpixels};
}

constexpr std::int32_t keyWord(SurfaceKind kind) {
    return static_cast<std::int32_t>(kind);
}

} // namespace

void drawEllipse(CGContext::Impl& painter, const CGRect& rect, const Paint& paint) {
    const SubpixelRect place = subpixelRect(painter, rect);
    if (place.isEmpty())
        return;
    const PixelRect box = place.pixels();
    const SubpixelRect r = relativeTo(box, place);
    const std::array key{keyWord(SurfaceKind::ellipse), r.left, r.top, r.right, r.bottom};
    painter.paintCached(key, box, CAIRO_FORMAT_A8, paint, [&](cairo_t* cr) {
        ellipsePath(cr, r);
        cairo_fill(cr);
    });
}

void drawRing(CGContext::Impl& painter, const CGRect& rect, double lineWidth, const Paint& paint) {
    const SubpixelRect place = subpixelRect(painter, rect);
    const int width = toSubpixels(std::min(lineWidth * painter.scale, kLargestPixel));
    if (place.isEmpty() || width <= 0)
        return;
    const PixelRect box = place.grownBy((width + 1) / 2).pixels();
    const SubpixelRect r = relativeTo(box, place);
    const std::array key{keyWord(SurfaceKind::ring), r.left, r.top, r.right, r.bottom, width};
    painter.paintCached(key, box, CAIRO_FORMAT_A8, paint, [&](cairo_t* cr) {
        ellipsePath(cr, r);
        cairo_set_line_width(cr, toPixels(width));
        cairo_stroke(cr);
    });
}

void drawRoundedRect(CGContext::Impl& painter, const CGRect& rect, double radius,
                     const Paint& paint, double frameWidth) {
    const SubpixelRect place = subpixelRect(painter, rect);
    if (place.isEmpty())
        return;
    const PixelRect box = place.pixels();
    const SubpixelRect r = relativeTo(box, place);
    const int cornerRadius =
        toSubpixels(clampedRadius(r, std::min(radius * painter.scale, kLargestPixel)));
    const int frame = toSubpixels(std::min(frameWidth * painter.scale, kLargestPixel));
    const bool coversWholePixels = r.left == 0 && r.top == 0 && r.right == box.width * kSubpixels &&
                                   r.bottom == box.height * kSubpixels;
    if (cornerRadius == 0 && frame == 0 && coversWholePixels) {
        painter.fillPixels(box, paint);
        return;
    }
    const int margin = ceilPixel(std::max(cornerRadius, frame)) + 2;
    const auto render = [cornerRadius, frame](const SubpixelRect& shape) {
        return [shape, cornerRadius, frame](cairo_t* cr) {
            roundedRectPath(cr, shape, toPixels(cornerRadius));
            if (const SubpixelRect hole = shape.grownBy(-frame); frame > 0 && !hole.isEmpty())
                roundedRectPath(cr, hole, toPixels(std::max(0, cornerRadius - frame)));
            cairo_set_fill_rule(cr, CAIRO_FILL_RULE_EVEN_ODD);
            cairo_fill(cr);
        };
    };
    constexpr int kSmall = 128; // device pixels; below, one mask is faster than nine parts
    if ((box.width <= kSmall && box.height <= kSmall) || margin > kTileSide / 2) {
        const std::array key{keyWord(SurfaceKind::roundedRect),
                             r.left,
                             r.top,
                             r.right,
                             r.bottom,
                             cornerRadius,
                             frame};
        painter.paintCached(key, box, CAIRO_FORMAT_A8, paint, render(r));
        return;
    }
    if (frame == 0 && isWithin(painter.state.clip, place, cornerRadius)) {
        painter.fillPixels(box, paint);
        return;
    }
    const Stretch across(margin, box.width), down(margin, box.height);
    const SubpixelRect s = shortened(r, across, down);
    const std::array key{
        keyWord(SurfaceKind::roundedRect), s.left, s.top, s.right, s.bottom, cornerRadius, frame};
    cairo_surface_t* mask = cachedMask(key, [&] {
        return renderedSurface(CAIRO_FORMAT_A8, across.maskLength, down.maskLength, 0, 0,
                               render(s));
    });
    if (mask)
        paintStretched(painter, mask, across, down, box, paint);
}

void drawShadow(CGContext::Impl& painter, const CGRect& rect, double radius, double blur,
                CGPoint offset, const Paint& paint) {
    const SubpixelRect place = subpixelRect(painter, rect);
    if (place.isEmpty() || paint.alpha <= 0)
        return;
    // In pixels; they limit the size of the mask.
    constexpr double kLargestReach = 300, kLargestOffset = 300, kLargestRadius = 512;
    const auto moved = [&](double points) {
        return toSubpixels(std::clamp(points * painter.scale, -kLargestOffset, kLargestOffset));
    };
    // Three box blurs in a row reach three times as far as one, and are close to a Gaussian blur.
    const int blurRadius = static_cast<int>(std::min(blur * painter.scale, kLargestReach) / 3);
    const int reach = 3 * blurRadius;
    const int dx = moved(offset.x), dy = moved(offset.y);
    const int cornerRadius =
        toSubpixels(clampedRadius(place, std::min(radius * painter.scale, kLargestRadius)));
    if (isWithin(painter.state.clip, place, cornerRadius))
        return;

    const SubpixelRect shadowRect = place.movedBy(dx, dy).grownBy(reach * kSubpixels);
    const PixelRect box =
        SubpixelRect{std::min(place.left, shadowRect.left), std::min(place.top, shadowRect.top),
                     std::max(place.right, shadowRect.right),
                     std::max(place.bottom, shadowRect.bottom)}
            .pixels();
    const int margin =
        ceilPixel(cornerRadius) + 2 * reach + ceilPixel(std::max(std::abs(dx), std::abs(dy))) + 3;
    const Stretch across(margin, box.width), down(margin, box.height);
    const SubpixelRect s = shortened(relativeTo(box, place), across, down);
    const std::array key{keyWord(SurfaceKind::shadow),
                         s.left,
                         s.top,
                         s.right,
                         s.bottom,
                         cornerRadius,
                         dx,
                         dy,
                         blurRadius};
    const auto rendered = [&](const auto& render) {
        return renderedSurface(CAIRO_FORMAT_A8, across.maskLength, down.maskLength, 0, 0, render);
    };
    cairo_surface_t* mask = cachedMask(key, [&]() -> SurfacePtr {
        // A surface of its own: cairo would subtract a path row by row, each an expensive
        // operation.
        const SurfacePtr hole = rendered([&](cairo_t* cr) {
            roundedRectPath(cr, s, toPixels(cornerRadius));
            cairo_fill(cr);
        });
        if (!hole)
            return nullptr;
        return rendered([&](cairo_t* cr) {
            roundedRectPath(cr, s.movedBy(dx, dy), toPixels(cornerRadius));
            cairo_fill(cr);
            boxBlur(cairo_get_target(cr), blurRadius);
            cairo_set_operator(cr, CAIRO_OPERATOR_DEST_OUT);
            cairo_set_source_surface(cr, hole.get(), 0, 0);
            cairo_paint(cr);
        });
    });
    if (mask)
        paintStretched(painter, mask, across, down, box, paint);
}

} // namespace tesmar
