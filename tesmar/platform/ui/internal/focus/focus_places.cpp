#include "tesmar/platform/ui/internal/focus/focus_places.h"

#include "tesmar/platform/ui/UIControl.h"
#include "tesmar/platform/ui/UIScrollView.h"
#include "tesmar/platform/ui/internal/ScrollTracking.h"
#include "tesmar/platform/ui/internal/focus/FocusRing.h"
#include "tesmar/platform/ui/internal/scroll_fades.h"

#include <algorithm>

namespace tesmar {
namespace {

// Points. What is smaller is a rounding error.
constexpr CGFloat kVisible = 0.1;

bool isVisible(const CGRect& rect) {
    return rect.size.width >= kVisible && rect.size.height >= kVisible;
}

// Where bounds coordinates are in the root when every scroll view shows all of its content, scaled
// down to its frame: so content keeps its order, and stays between what is around the scroll view.
struct Unscrolled {
    CGPoint origin;
    CGFloat x = 1; // points of the root for each point
    CGFloat y = 1;

    CGRect rect(const CGRect& r) const {
        return {origin.x + r.minX() * x, origin.y + r.minY() * y, r.size.width * x,
                r.size.height * y};
    }
    Unscrolled inside(const UIView& child) const {
        Unscrolled inner{rect(child.frame()).origin, x, y};
        const auto* scroll = dynamic_cast<const UIScrollView*>(&child);
        const CGSize visible = child.frame().size;
        if (scroll && scroll->contentSize().width > visible.width)
            inner.x *= visible.width / scroll->contentSize().width;
        if (scroll && scroll->contentSize().height > visible.height)
            inner.y *= visible.height / scroll->contentSize().height;
        return inner;
    }
};

// The part of `rect` (bounds coordinates of `view`) that is not clipped, in window coordinates.
CGRect visiblePart(const UIView& view, const CGRect& rect) {
    CGRect part = view.convertRectTo(rect, nullptr);
    for (const UIView* v = &view; v; v = v->superview())
        if (v->clipsToBounds() || !v->superview())
            part = CGRectIntersection(part, v->convertRectTo(v->bounds(), nullptr));
    return part;
}

// The same, but while a scroll view glides, which is towards the cell, not clipped there but moved
// to where the cell comes into view.
CGRect arrivingPart(const UIView& view, const CGRect& rect) {
    CGRect part = view.convertRectTo(rect, nullptr);
    for (const UIView* v = &view; v; v = v->superview()) {
        if (!v->clipsToBounds() && v->superview())
            continue;
        const CGRect frame = v->convertRectTo(v->bounds(), nullptr);
        const auto* scroll = dynamic_cast<const UIScrollView*>(v);
        if (scroll && scroll->isDecelerating()) {
            const CGRect content{{}, scroll->contentSize()};
            part = CGRectIntersection(part, scroll->convertRectTo(content, nullptr));
            const auto movedIn = [](CGFloat at, CGFloat length, CGFloat low, CGFloat high) {
                return std::max(low, std::min(at, high - length));
            };
            part.origin = {movedIn(part.minX(), part.size.width, frame.minX(), frame.maxX()),
                           movedIn(part.minY(), part.size.height, frame.minY(), frame.maxY())};
        }
        part = CGRectIntersection(part, frame);
    }
    return part;
}

// `part` in window coordinates.
bool isCovered(UIView& root, const UIView& view, const CGRect& part) {
    const UIView* const hit = root.hitTest(root.convertPointFrom(part.center(), nullptr));
    return !hit || !hit->isDescendantOf(&view);
}

class Collector {
  public:
    explicit Collector(UIView& root) : root_(root) {}

    void collect(UIView& view, const Unscrolled& unscrolled, CGRect clip, const UIView* group) {
        if (!view.takesTouches())
            return;
        if (view.clipsToBounds())
            clip = CGRectIntersection(clip, unscrolled.rect(wholeOf(view)));
        if (!group && view.isFocusGroup())
            group = &view;
        addCells(view, unscrolled, clip, group ? group : &view);
        const auto children = view.subviews(); // hit tests of views may change the tree
        for (const auto& child : children)
            collect(*child, unscrolled.inside(*child), clip, group);
    }

    std::vector<FocusPlace> places;

  private:
    static CGRect wholeOf(const UIView& view) {
        const auto* scroll = dynamic_cast<const UIScrollView*>(&view);
        const CGSize size = view.frame().size;
        return {{},
                scroll ? CGSize{std::max(size.width, scroll->contentSize().width),
                                std::max(size.height, scroll->contentSize().height)}
                       : size};
    }

    void addCells(UIView& view, const Unscrolled& unscrolled, const CGRect& clip,
                  const UIView* group) {
        const auto* const control = dynamic_cast<const UIControl*>(&view);
        const auto cells = view.focusCells();
        for (std::size_t i = 0; i < cells.size(); ++i) {
            const CGRect reachable = CGRectIntersection(unscrolled.rect(cells[i].rect), clip);
            const CGRect shown = visiblePart(view, cells[i].rect);
            if (reachable.isEmpty() || (isVisible(shown) && isCovered(root_, view, shown)))
                continue;
            std::string name = view.accessibilityIdentifier();
            if (!name.empty())
                name += cells[i].suffix;
            places.push_back({refTo(&view),
                              i,
                              std::move(name),
                              {reachable, numberOf(group), control && control->isSelected()}});
        }
    }

    int numberOf(const UIView* group) {
        const auto known = std::ranges::find(groups_, group);
        const auto number = static_cast<int>(known - groups_.begin());
        if (known == groups_.end())
            groups_.push_back(group);
        return number;
    }

    UIView& root_;
    std::vector<const UIView*> groups_;
};

// What to scroll to: the cell, and above it what the row before leaves free, where titles are. The
// content's ends are shown along with the first and the last row.
CGRect revealedRect(const UIScrollView& scroll, const FocusPlace& place,
                    const std::vector<FocusPlace>& all) {
    const auto inContent = [&](const FocusPlace& p) {
        const auto cells = p.view->focusCells(); // a delegate may have changed them
        return p.view->convertRectTo(p.index < cells.size() ? cells[p.index].rect : CGRect(),
                                     &scroll);
    };
    const CGRect cell = inContent(place);
    const CGFloat margin = scroll.edgeFadeColor() ? kEdgeFade : FocusRing::kReach;
    constexpr CGFloat highestTitles = 48;
    CGFloat top = std::max(0.0, cell.minY() - highestTitles);
    bool isLast = true;
    for (const FocusPlace& other : all) {
        if (!other.view->isDescendantOf(&scroll))
            continue;
        const CGRect rect = inContent(other);
        if (rect.maxY() <= cell.minY())
            top = std::max(top, rect.maxY());
        isLast = isLast && rect.minY() < cell.maxY();
    }
    const CGFloat room = scroll.frame().size.height;
    const CGFloat end = cell.maxY() + margin;
    const CGFloat bottom = isLast ? std::max(end, scroll.contentSize().height) : end;
    top = std::max(std::min(top, cell.minY() - margin), end - room);
    return {cell.minX() - margin, top, cell.size.width + 2 * margin,
            std::min(bottom - top, std::max(room, end - top))};
}

} // namespace

std::vector<FocusPlace> focusPlaces(UIView& root) {
    Collector collector(root);
    collector.collect(root, {}, root.bounds(), nullptr);
    return std::move(collector.places);
}

std::optional<ShownCell> shownCell(const UIView& root, const UIView& view, std::size_t index) {
    if (!view.isDescendantOf(&root))
        return std::nullopt;
    const auto cells = view.focusCells();
    if (index >= cells.size())
        return std::nullopt;
    double alpha = 1;
    for (const UIView* v = &view; v; v = v->superview())
        alpha *= v->isHidden() ? 0 : v->alpha();
    return ShownCell{arrivingPart(view, cells[index].rect), cells[index].cornerRadius, alpha};
}

bool isUsable(UIView& root, UIView& view, std::size_t index) {
    if (!view.isDescendantOf(&root))
        return false;
    for (const UIView* v = &view; v != root.superview(); v = v->superview())
        if (!v->takesTouches())
            return false;
    const auto cells = view.focusCells();
    if (index >= cells.size())
        return false;
    const CGRect part = visiblePart(view, cells[index].rect);
    return !isVisible(part) || !isCovered(root, view, part);
}

void reveal(const FocusPlace& place, const std::vector<FocusPlace>& all) {
    for (auto* scroll = UIScrollView::enclosing(place.view->superview()); scroll;) {
        const auto self = refTo(scroll); // scrolling calls a delegate
        ScrollTracking::of(*scroll).reveal(revealedRect(*scroll, place, all));
        if (place.index >= place.view->focusCells().size())
            return;
        scroll = UIScrollView::enclosing(scroll->superview());
    }
}

} // namespace tesmar
