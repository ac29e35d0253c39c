// Reads from a tree of views where the focus can be.
#pragma once

#include "tesmar/platform/ui/UIFocusCell.h"
#include "tesmar/platform/ui/internal/focus/FocusGrid.h"

#include <optional>
#include <string>
#include <vector>

namespace tesmar {

struct FocusPlace {
    Ref<UIView> view;
    std::size_t index = 0; // in UIView::focusCells()
    std::string identifier;
    FocusGrid::Cell cell; // as if no scroll view cut its content off; the root's coordinates
};

// The cells of `root` and its descendants that a finger could operate, if need be after scrolling:
// not hidden, transparent, covered, or in a view that takes no touches.
std::vector<FocusPlace> focusPlaces(UIView& root);

// How a cell is shown at the moment.
struct ShownCell {
    CGRect frame;       // the visible part, in window coordinates; may be empty
    CGFloat radius = 0; // of its corners, points
    double alpha = 1;   // of the view and everything that it is in
    bool operator==(const ShownCell&) const = default;
};

// Nothing when the view is not in `root`, or has no cell of that index.
std::optional<ShownCell> shownCell(const UIView& root, const UIView& view, std::size_t index);

// Whether focusPlaces(root) would still list the cell.
bool isUsable(UIView& root, UIView& view, std::size_t index);

// Scrolls so that `place` can be seen, with a margin for the ring and the fades of edges, and the
// titles above its row.
void reveal(const FocusPlace& place, const std::vector<FocusPlace>& all);

} // namespace tesmar
