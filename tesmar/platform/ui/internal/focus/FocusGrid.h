// Finds the way from cell to cell. Knows rectangles only, neither views nor windows.
#pragma once

#include "tesmar/platform/geometry/geometry.h"
#include "tesmar/platform/ui/UIKey.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace tesmar {

// Orders cells into rows by their rectangles: cells that overlap in height by more than half of
// the lower one make a row. Every cell is in exactly one row, and can be reached from every other
// by up, down, left and right.
class FocusGrid {
  public:
    struct Cell {
        CGRect rect;
        int group = 0;
        bool isSelected = false; // where Tab enters the group
    };

    // Not empty; coordinates are finite. Cells are named by their indices.
    explicit FocusGrid(std::vector<Cell> cells);

    // Where `key` leads from a cell: one that moves the focus. `x` is the column that up and down
    // keep to. Nothing where the way ends.
    std::optional<std::size_t> destination(UIKey key, std::size_t from, CGFloat x) const;
    // The first cell of the first row.
    std::size_t start() const { return rows_.front().front(); }
    // The cell closest to a point, with preference for those beside it.
    std::size_t nearest(CGPoint point) const;

  private:
    using Row = std::vector<std::size_t>; // left to right

    std::size_t rowOf(std::size_t cell) const;
    std::size_t nearestInRow(const Row& row, CGFloat x) const;
    std::size_t nextGroup(std::size_t from, bool forwards) const;

    std::vector<Cell> cells_;
    std::vector<Row> rows_; // top to bottom
};

} // namespace tesmar
