// Points, sizes and rectangles. All lengths are in points unless a name says pixels; y grows down.
#pragma once

#include <algorithm>
#include <cmath>

namespace tesmar {

using CGFloat = double;

struct CGPoint {
    CGFloat x = 0;
    CGFloat y = 0;
    bool operator==(const CGPoint&) const = default;
};

inline CGPoint operator+(CGPoint a, CGPoint b) {
    return {a.x + b.x, a.y + b.y};
}
inline CGPoint operator-(CGPoint a, CGPoint b) {
    return {a.x - b.x, a.y - b.y};
}

struct CGSize {
    CGFloat width = 0;
    CGFloat height = 0;
    bool operator==(const CGSize&) const = default;
};

struct CGRect {
    CGPoint origin;
    CGSize size;

    constexpr CGRect() = default;
    constexpr CGRect(CGPoint o, CGSize s) : origin(o), size(s) {}
    constexpr CGRect(CGFloat x, CGFloat y, CGFloat width, CGFloat height)
        : origin{x, y}, size{width, height} {}

    CGFloat minX() const { return origin.x; }
    CGFloat minY() const { return origin.y; }
    CGFloat maxX() const { return origin.x + size.width; }
    CGFloat maxY() const { return origin.y + size.height; }
    CGFloat midX() const { return origin.x + size.width / 2; }
    CGFloat midY() const { return origin.y + size.height / 2; }
    CGPoint center() const { return {midX(), midY()}; }
    bool isEmpty() const { return !(size.width > 0) || !(size.height > 0); }

    // The left and top edges are inside, the right and bottom edges outside.
    bool contains(CGPoint p) const {
        return p.x >= minX() && p.x < maxX() && p.y >= minY() && p.y < maxY();
    }
    // A rectangle contains itself.
    bool contains(const CGRect& r) const {
        return r.minX() >= minX() && r.maxX() <= maxX() && r.minY() >= minY() && r.maxY() <= maxY();
    }
    CGRect offsetBy(CGPoint d) const { return {origin + d, size}; }
    bool operator==(const CGRect&) const = default;
};

struct UIEdgeInsets {
    CGFloat top = 0;
    CGFloat left = 0;
    CGFloat bottom = 0;
    CGFloat right = 0;
    bool operator==(const UIEdgeInsets&) const = default;
};

// Moves each side of `r` inwards, or outwards where the amount is negative. Empty (all zero) if a
// side would pass the opposite one.
inline CGRect CGRectInset(const CGRect& r, CGFloat dx, CGFloat dy) {
    const CGFloat width = r.size.width - 2 * dx;
    const CGFloat height = r.size.height - 2 * dy;
    if (width < 0 || height < 0)
        return {};
    return {r.minX() + dx, r.minY() + dy, width, height};
}

inline CGRect CGRectInset(const CGRect& r, const UIEdgeInsets& insets) {
    const CGFloat width = r.size.width - insets.left - insets.right;
    const CGFloat height = r.size.height - insets.top - insets.bottom;
    if (width < 0 || height < 0)
        return {};
    return {r.minX() + insets.left, r.minY() + insets.top, width, height};
}

// Empty (all zero) if the rectangles share no area.
inline CGRect CGRectIntersection(const CGRect& a, const CGRect& b) {
    const CGFloat x = std::max(a.minX(), b.minX());
    const CGFloat y = std::max(a.minY(), b.minY());
    const CGFloat right = std::min(a.maxX(), b.maxX());
    const CGFloat bottom = std::min(a.maxY(), b.maxY());
    if (!(right > x) || !(bottom > y))
        return {};
    return {x, y, right - x, bottom - y};
}

// The smallest rectangle around both; an empty one is ignored.
inline CGRect CGRectUnion(const CGRect& a, const CGRect& b) {
    if (a.isEmpty())
        return b;
    if (b.isEmpty())
        return a;
    const CGFloat x = std::min(a.minX(), b.minX());
    const CGFloat y = std::min(a.minY(), b.minY());
    return {x, y, std::max(a.maxX(), b.maxX()) - x, std::max(a.maxY(), b.maxY()) - y};
}

// For numbers from outside: clamps to [low, high]; NaN becomes `fallback`.
inline CGFloat finite(CGFloat value, CGFloat low, CGFloat high, CGFloat fallback) {
    return std::isnan(value) ? fallback : std::clamp(value, low, high);
}

// Rounded downwards; `value` must fit an int. Casts, because std::floor would be the most expensive
// part of a small frame: every view computes its pixels in every frame.
inline int floorToInt(double value) {
    const int truncated = static_cast<int>(value);
    return truncated - (value < truncated);
}

// In points. Larger than any screen, and small enough for accurate sums of several coordinates.
inline constexpr CGFloat kLargestCoordinate = 1e7;

// Clamps to the largest coordinate in either direction; NaN becomes 0.
inline CGFloat finiteCoordinate(CGFloat value) {
    return finite(value, -kLargestCoordinate, kLargestCoordinate, 0);
}

inline UIEdgeInsets finiteInsets(const UIEdgeInsets& i) {
    return {finiteCoordinate(i.top), finiteCoordinate(i.left), finiteCoordinate(i.bottom),
            finiteCoordinate(i.right)};
}

// The same for all four numbers; the size becomes at least 0.
inline CGRect finiteRect(const CGRect& r) {
    return {finiteCoordinate(r.origin.x), finiteCoordinate(r.origin.y),
            finite(r.size.width, 0, kLargestCoordinate, 0),
            finite(r.size.height, 0, kLargestCoordinate, 0)};
}

} // namespace tesmar
