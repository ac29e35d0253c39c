#include "tesmar/platform/ui/internal/accessibility/reading_order.h"

#include <algorithm>
#include <numeric>

namespace tesmar {
namespace {

bool containsMiddle(const CGRect& of, const CGRect& other) {
    return other.midY() >= of.minY() && other.midY() < of.maxY();
}

} // namespace

std::vector<std::size_t> readingOrder(const std::vector<CGRect>& frames, ReadingOrder order) {
    std::vector<std::size_t> indices(frames.size());
    std::iota(indices.begin(), indices.end(), 0);
    std::ranges::stable_sort(indices, {}, [&](std::size_t i) { return frames[i].minY(); });
    for (auto row = indices.begin(); row != indices.end();) {
        const CGRect& first = frames[*row];
        const auto end = std::find_if(row, indices.end(), [&](std::size_t i) {
            return !containsMiddle(first, frames[i]) && !containsMiddle(frames[i], first);
        });
        // The first frame is in its own row, even if it is empty.
        const auto next = std::max(end, row + 1);
        std::ranges::stable_sort(row, next, {}, [&](std::size_t i) {
            return order == ReadingOrder::leftToRight ? frames[i].minX() : -frames[i].maxX();
        });
        row = next;
    }
    return indices;
}

} // namespace tesmar
