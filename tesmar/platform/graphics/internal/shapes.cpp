#include "tesmar/platform/graphics/internal/shapes.h"

#include "tesmar/platform/graphics/internal/box_blur.h"

#include <array>
#include <numbers>

namespace tesmar {
namespace {

constexpr int kParts = 16; // of a pixel

int parts(double pixels) {
    return static_cast<int>(std::floor(pixels * kParts + 0.5));
}

int floorPixel(int p) {
    return (p >= 0 ? p : p - (kParts - 1)) / kParts;
}
int ceilPixel(int p) {
    return floorPixel(p + kParts - 1);
}
double inPixels(int p) {
    return static_cast<double>(p) / kParts;
}

// A rectangle in sixteenths of a device pixel.
struct PartsRect {
    int left, top, right, bottom;

    PixelRect pixels() const {
        const int x = floorPixel(left), y = floorPixel(top);
        return {x, y, ceilPixel(right) - x, ceilPixel(bottom) - y};
    }
    PartsRect movedBy(int dx, int dy) const {
        return {left + dx, top + dy, right + dx, bottom + dy};
    }
    PartsRect grownBy(int d) const { return {left - d, top - d, right + d, bottom + d}; }
    bool isEmpty() const { return right <= left || bottom <= top; }
};

PartsRect partsOf(const CGContext::Impl& painter, const CGRect& r) {
    const CGPoint topLeft = painter.device(r.origin);
    const CGPoint bottomRight = painter.device({r.maxX(), r.maxY()});
    return {parts(topLeft.x), parts(topLeft.y), parts(bottomRight.x), parts(bottomRight.y)};
}

// The same rectangle as seen from the corner of `box`.
PartsRect within(const PixelRect& box, const PartsRect& r) {
    return r.movedBy(-box.x * kParts, -box.y * kParts);
}

void ellipsePath(cairo_t* cr, const PartsRect& r) {
    cairo_matrix_t matrix;
    cairo_get_matrix(cr, &matrix);
    cairo_translate(cr, inPixels(r.left + r.right) / 2, inPixels(r.top + r.bottom) / 2);
    cairo_scale(cr, inPixels(r.right - r.left) / 2, inPixels(r.bottom - r.top) / 2);
    cairo_arc(cr, 0, 0, 1, 0, 2 * std::numbers::pi);
    cairo_close_path(cr);
    cairo_set_matrix(cr, &matrix);
}

void roundedRectPath(cairo_t* cr, const PartsRect& r, double radius) {
    const double left = inPixels(r.left), top = inPixels(r.top);
    const double right = inPixels(r.right), bottom = inPixels(r.bottom);
    constexpr double quarter = std::numbers::pi / 2;
    cairo_new_sub_path(cr);
    cairo_arc(cr, right - radius, top + radius, radius, -quarter, 0);
    cairo_arc(cr, right - radius, bottom - radius, radius, 0, quarter);
    cairo_arc(cr, left + radius, bottom - radius, radius, quarter, 2 * quarter);
    cairo_arc(cr, left + radius, top + radius, radius, 2 * quarter, 3 * quarter);
    cairo_close_path(cr);
}

double heldRadius(const PartsRect& r, double radius) {
    return std::min({radius, inPixels(r.right - r.left) / 2, inPixels(r.bottom - r.top) / 2});
}

// A large box whose mask is the same all along its middle is rendered small, with a middle of one
// pixel, and painted stretched.
struct Stretch {
    int margin;     // pixels at both ends that are not stretched
    int length;     // of the box
    int maskLength; // of the mask: the same, or two margins and the one pixel between

    Stretch(int marginPixels, int boxLength)
        : margin(marginPixels), length(boxLength),
          maskLength(std::min(boxLength, 2 * marginPixels + 1)) {}
    int removed() const { return length - maskLength; }

    struct Segment {
        int mask;   // where it starts in the mask
        int box;    // where it starts in the box
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

// Fills a rectangle whose mask varies in one direction at most, one run of equal coverage at a
// time.
void fillRuns(CGContext::Impl& painter, cairo_surface_t* mask, const Stretch::Segment& x,
              const Stretch::Segment& y, const PixelRect& box, const Paint& paint) {
    const auto along = [&](int i) {
        return coverage(mask, x.isStretched ? x.mask : x.mask + i,
                        y.isStretched ? y.mask : y.mask + i);
    };
    const bool isDownwards = x.isStretched;
    const int count = x.isStretched && y.isStretched ? 1 : isDownwards ? y.length : x.length;
    for (int start = 0, end; start < count; start = end) {
        for (end = start + 1; end < count && along(end) == along(start);)
            ++end;
        const Paint part = paint.withAlpha(along(start) / 255.0);
        if (count == 1 && y.isStretched)
            painter.fillPixels({box.x + x.box, box.y + y.box, x.length, y.length}, part);
        else if (isDownwards)
            painter.fillPixels({box.x + x.box, box.y + y.box + start, x.length, end - start}, part);
        else
            painter.fillPixels({box.x + x.box + start, box.y + y.box, end - start, y.length}, part);
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

// The mask of the smallest box that can be stretched: as kept, or as `render()` makes it.
template <class Render>
cairo_surface_t* keptMask(std::span<const std::int32_t> shape, const Render& render) {
    SurfaceCache& cache = SurfaceCache::ofThisThread();
    if (cairo_surface_t* kept = cache.find({shape}))
        return kept;
    SurfacePtr fresh = render();
    return fresh ? cache.insert({shape}, std::move(fresh)) : nullptr;
}

PartsRect shortened(const PartsRect& r, const Stretch& across, const Stretch& down) {
    return {r.left, r.top, r.right - across.removed() * kParts, r.bottom - down.removed() * kParts};
}

constexpr std::int32_t word(SurfaceKind kind) {
    return static_cast<std::int32_t>(kind);
}

} // namespace

void drawEllipse(CGContext::Impl& painter, const CGRect& rect, const Paint& paint) {
    const PartsRect place = partsOf(painter, rect);
    if (place.isEmpty())
        return;
    const PixelRect box = place.pixels();
    const PartsRect r = within(box, place);
    const std::array key{word(SurfaceKind::ellipse), r.left, r.top, r.right, r.bottom};
    painter.paintKept(key, box, CAIRO_FORMAT_A8, paint, [&](cairo_t* cr) {
        ellipsePath(cr, r);
        cairo_fill(cr);
    });
}

void drawRing(CGContext::Impl& painter, const CGRect& rect, double lineWidth, const Paint& paint) {
    const PartsRect place = partsOf(painter, rect);
    const int width = parts(std::min(lineWidth * painter.scale, kFarthestPixel));
    if (place.isEmpty() || width <= 0)
        return;
    const PixelRect box = place.grownBy((width + 1) / 2).pixels();
    const PartsRect r = within(box, place);
    const std::array key{word(SurfaceKind::ring), r.left, r.top, r.right, r.bottom, width};
    painter.paintKept(key, box, CAIRO_FORMAT_A8, paint, [&](cairo_t* cr) {
        ellipsePath(cr, r);
        cairo_set_line_width(cr, inPixels(width));
        cairo_stroke(cr);
    });
}

void drawRoundedRect(CGContext::Impl& painter, const CGRect& rect, double radius,
                     const Paint& paint) {
    const PartsRect place = partsOf(painter, rect);
    if (place.isEmpty())
        return;
    const PixelRect box = place.pixels();
    const PartsRect r = within(box, place);
    const int roundness = parts(heldRadius(r, std::min(radius * painter.scale, kFarthestPixel)));
    const bool fillsItsPixels = r.left == 0 && r.top == 0 && r.right == box.width * kParts &&
                                r.bottom == box.height * kParts;
    if (roundness == 0 && fillsItsPixels) {
        painter.fillPixels(box, paint);
        return;
    }
    const int margin = ceilPixel(roundness) + 2;
    const auto render = [roundness](const PartsRect& shape) {
        return [shape, roundness](cairo_t* cr) {
            roundedRectPath(cr, shape, inPixels(roundness));
            cairo_fill(cr);
        };
    };
    constexpr int kSmall = 128; // painted in one go sooner than in nine parts
    if ((box.width <= kSmall && box.height <= kSmall) || margin > kTileSide / 2) {
        const std::array key{
            word(SurfaceKind::roundedRect), r.left, r.top, r.right, r.bottom, roundness};
        painter.paintKept(key, box, CAIRO_FORMAT_A8, paint, render(r));
        return;
    }
    const Stretch across(margin, box.width), down(margin, box.height);
    const PartsRect s = shortened(r, across, down);
    const std::array key{
        word(SurfaceKind::roundedRect), s.left, s.top, s.right, s.bottom, roundness};
    cairo_surface_t* mask = keptMask(key, [&] {
        return renderedSurface(CAIRO_FORMAT_A8, across.maskLength, down.maskLength, 0, 0,
                               render(s));
    });
    if (mask)
        paintStretched(painter, mask, across, down, box, paint);
}

void drawPolyline(CGContext::Impl& painter, std::span<const CGPoint> points, double lineWidth,
                  LineCap cap, const Paint& paint) {
    const int width = parts(std::min(lineWidth * painter.scale, kFarthestPixel));
    if (points.size() < 2 || width <= 0)
        return;
    static thread_local std::vector<std::int32_t> key; // kept for its memory
    key.assign({word(SurfaceKind::polyline), width, static_cast<std::int32_t>(cap)});
    const std::size_t first = key.size();
    PartsRect reach{};
    for (const CGPoint& point : points) {
        const CGPoint p = painter.device({finiteCoordinate(point.x), finiteCoordinate(point.y)});
        const int x = parts(p.x), y = parts(p.y);
        reach = key.size() == first
                    ? PartsRect{x, y, x, y}
                    : PartsRect{std::min(reach.left, x), std::min(reach.top, y),
                                std::max(reach.right, x), std::max(reach.bottom, y)};
        key.insert(key.end(), {x, y});
    }
    const PixelRect box = reach.grownBy((width + 1) / 2 + kParts).pixels();
    for (std::size_t i = first; i < key.size(); i += 2) {
        key[i] -= box.x * kParts;
        key[i + 1] -= box.y * kParts;
    }
    painter.paintKept(key, box, CAIRO_FORMAT_A8, paint, [&](cairo_t* cr) {
        for (std::size_t i = first; i < key.size(); i += 2)
            cairo_line_to(cr, inPixels(key[i]), inPixels(key[i + 1]));
        cairo_set_line_width(cr, inPixels(width));
        cairo_set_line_join(cr, CAIRO_LINE_JOIN_ROUND);
        cairo_set_line_cap(cr, cap == LineCap::round ? CAIRO_LINE_CAP_ROUND : CAIRO_LINE_CAP_BUTT);
        cairo_stroke(cr);
    });
}

void drawShadow(CGContext::Impl& painter, const CGRect& rect, double radius, double blur,
                CGPoint offset, const Paint& paint) {
    const PartsRect place = partsOf(painter, rect);
    if (place.isEmpty() || paint.alpha <= 0)
        return;
    // Three box blurs of this radius reach three times as far, and look like a Gaussian one.
    const int blurRadius = static_cast<int>(blur * painter.scale / 3);
    const int reach = 3 * blurRadius;
    const int dx = parts(offset.x * painter.scale), dy = parts(offset.y * painter.scale);
    constexpr double kRoundest = 512; // pixels; no mask is larger than it need be
    const int roundness = parts(heldRadius(place, std::min(radius * painter.scale, kRoundest)));

    const PartsRect thrown = place.movedBy(dx, dy).grownBy(reach * kParts);
    const PixelRect box =
        PartsRect{std::min(place.left, thrown.left), std::min(place.top, thrown.top),
                  std::max(place.right, thrown.right), std::max(place.bottom, thrown.bottom)}
            .pixels();
    const int margin =
        ceilPixel(roundness) + 2 * reach + ceilPixel(std::max(std::abs(dx), std::abs(dy))) + 3;
    const Stretch across(margin, box.width), down(margin, box.height);
    const PartsRect s = shortened(within(box, place), across, down);
    const std::array key{
        word(SurfaceKind::shadow), s.left, s.top, s.right, s.bottom, roundness, dx, dy, blurRadius};
    cairo_surface_t* mask = keptMask(key, [&] {
        const auto shadow = [&](cairo_t* cr) {
            roundedRectPath(cr, s.movedBy(dx, dy), inPixels(roundness));
            cairo_fill(cr);
            boxBlur(cairo_get_target(cr), blurRadius);
            cairo_set_operator(cr, CAIRO_OPERATOR_DEST_OUT);
            roundedRectPath(cr, s, inPixels(roundness));
            cairo_fill(cr);
        };
        return renderedSurface(CAIRO_FORMAT_A8, across.maskLength, down.maskLength, 0, 0, shadow);
    });
    if (mask)
        paintStretched(painter, mask, across, down, box, paint);
}

} // namespace tesmar
