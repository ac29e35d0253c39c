#include "tesmar/platform/ui/internal/focus/FocusGrid.h"

#include <algorithm>
#include <numeric>
#include <tuple>
#include <utility>

namespace tesmar {
namespace {

CGFloat outside(CGFloat x, CGFloat low, CGFloat high) {
    return std::max({low - x, 0.0, x - high});
}

bool areSideBySide(const CGRect& a, const CGRect& b) {
    const CGFloat overlap = std::min(a.maxY(), b.maxY()) - std::max(a.minY(), b.minY());
    return overlap > std::min(a.size.height, b.size.height) / 2;
}

// The index after `at`, or before it, in a cycle of `count`.
std::size_t cycled(std::size_t at, bool forwards, std::size_t count) {
    return (at + (forwards ? 1 : count - 1)) % count;
}

} // namespace

FocusGrid::FocusGrid(std::vector<Cell> cells) : cells_(std::move(cells)) {
    Row downwards(cells_.size());
    std::iota(downwards.begin(), downwards.end(), 0u);
    std::ranges::stable_sort(downwards, {}, [&](auto cell) { return cells_[cell].rect.midY(); });
    const CGRect* first = nullptr; // of the row
    for (const std::size_t cell : downwards) {
        const CGRect& rect = cells_[cell].rect;
        if (!first || !areSideBySide(rect, *first)) {
            rows_.emplace_back();
            first = &rect;
        }
        rows_.back().push_back(cell);
    }
    for (Row& row : rows_)
        std::ranges::stable_sort(row, {}, [&](auto cell) { return cells_[cell].rect.midX(); });
}

std::size_t FocusGrid::rowOf(std::size_t cell) const {
    const auto row = std::ranges::find_if(
        rows_, [&](const Row& r) { return std::ranges::find(r, cell) != r.end(); });
    return static_cast<std::size_t>(row - rows_.begin());
}

std::size_t FocusGrid::nearestInRow(const Row& row, CGFloat x) const {
    return *std::ranges::min_element(row, {}, [&](std::size_t cell) {
        const CGRect& rect = cells_[cell].rect;
        return std::pair(outside(x, rect.minX(), rect.maxX()), std::abs(x - rect.midX()));
    });
}

std::size_t FocusGrid::nearest(CGPoint point) const {
    std::size_t best = 0;
    auto least = std::tuple(kLargestCoordinate, kLargestCoordinate);
    for (std::size_t cell = 0; cell < cells_.size(); ++cell) {
        const CGRect& rect = cells_[cell].rect;
        constexpr CGFloat otherRow = 4; // a cell beside the point is closer than one above or below
        const CGPoint away{outside(point.x, rect.minX(), rect.maxX()),
                           otherRow * outside(point.y, rect.minY(), rect.maxY())};
        const CGPoint middle = rect.center() - point;
        const auto distance =
            std::tuple(std::hypot(away.x, away.y), std::hypot(middle.x, middle.y));
        if (distance < least)
            std::tie(best, least) = std::tuple(cell, distance);
    }
    return best;
}

// A group starts at its first cell in reading order, and is entered at its selected cell if it has
// one.
std::size_t FocusGrid::nextGroup(std::size_t from, bool forwards) const {
    std::vector<std::size_t> entries; // of each group, in reading order
    std::size_t own = 0;
    for (const Row& row : rows_)
        for (const std::size_t cell : row) {
            const int group = cells_[cell].group;
            const auto known = std::ranges::find_if(
                entries, [&](std::size_t entry) { return cells_[entry].group == group; });
            if (group == cells_[from].group)
                own = static_cast<std::size_t>(known - entries.begin());
            if (known == entries.end())
                entries.push_back(cell);
            else if (cells_[cell].isSelected && !cells_[*known].isSelected)
                *known = cell;
        }
    return entries[cycled(own, forwards, entries.size())];
}

std::optional<std::size_t> FocusGrid::destination(UIKey key, std::size_t from, CGFloat x) const {
    const std::size_t rowIndex = rowOf(from);
    const Row& row = rows_[rowIndex];
    const auto at = std::ranges::find(row, from);
    switch (key) {
    case UIKey::left:
        return at == row.begin() ? std::nullopt : std::optional(*(at - 1));
    case UIKey::right:
        return at + 1 == row.end() ? std::nullopt : std::optional(*(at + 1));
    case UIKey::up:
        return rowIndex == 0 ? std::nullopt : std::optional(nearestInRow(rows_[rowIndex - 1], x));
    case UIKey::down:
        return rowIndex + 1 == rows_.size() ? std::nullopt
                                            : std::optional(nearestInRow(rows_[rowIndex + 1], x));
    case UIKey::first:
        return row.front();
    case UIKey::last:
        return row.back();
    case UIKey::next:
    case UIKey::previous:
        return nextGroup(from, key == UIKey::next);
    case UIKey::select:
    case UIKey::back:
    case UIKey::increment:
    case UIKey::decrement:
        break;
    }
    return std::nullopt;
}

} // namespace tesmar
