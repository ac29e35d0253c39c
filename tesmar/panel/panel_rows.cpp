// Rows that a subclass adds to the panel.
#include "tesmar/panel/TESMARViewController.h"
#include "tesmar/platform/foundation/diagnostics.h"

#include <cmath>

namespace tesmar {
namespace {

struct Gap {
    std::shared_ptr<LayoutItem> above;
    NSLayoutAttribute edge; // of that item
    CGFloat length;
};

// The gap above an edge of `below`, taken out of the view: rows come in its place.
Gap removeGapAbove(UIView& from, const UIView& below, NSLayoutAttribute edge) {
    using enum NSLayoutAttribute;
    for (const auto& constraint : from.layoutConstraints()) {
        const auto first = constraint->firstItem(), second = constraint->secondItem();
        const NSLayoutAttribute firstEdge = constraint->firstAttribute();
        const NSLayoutAttribute secondEdge = constraint->secondAttribute();
        const bool isFirst = first.get() == &below && firstEdge == edge;
        const bool isSecond = second.get() == &below && secondEdge == edge;
        const NSLayoutAttribute other = isFirst ? secondEdge : firstEdge;
        if (!(isFirst || isSecond) || !(other == top || other == bottom))
            continue;
        Gap gap{isFirst ? second : first, other, std::abs(constraint->constant())};
        from.removeConstraints({Ref<NSLayoutConstraint>(constraint)});
        return gap;
    }
    fatalError("TESMARViewController: rows were added to a panel without the place for them");
}

} // namespace

void TESMARViewController::addRows(RowPlace place, const std::vector<Row>& rows) {
    using enum NSLayoutAttribute;
    if (rows.empty())
        return;
    UIView& root = *view();
    UIView* const scroll = scrollView();
    if (!scroll)
        fatalError("TESMARViewController: rows were added to a panel that has been laid out anew");
    const bool isFixed = place == RowPlace::fixed || place == RowPlace::footer;
    UIView& container = isFixed ? root : *scroll;
    UIView& controls = *textColorPicker_;

    const bool endsPart = place == RowPlace::last || place == RowPlace::footer;
    UIView& below = endsPart ? container : isFixed ? *scroll : controls;
    const NSLayoutAttribute belowEdge = endsPart ? bottom : top;
    const Gap gap = removeGapAbove(container, below, belowEdge);

    const auto pin = [&](UIView& first, NSLayoutAttribute firstEdge,
                         const std::shared_ptr<LayoutItem>& second, NSLayoutAttribute secondEdge,
                         CGFloat distance) {
        container.addConstraint(NSLayoutConstraint::constraintWithItem(
            refTo(&first), firstEdge, NSLayoutRelation::equal, second, secondEdge, 1, distance));
    };
    std::shared_ptr<LayoutItem> above = gap.above;
    NSLayoutAttribute aboveEdge = gap.edge;
    for (const Row& row : rows) {
        UIView& view = *row.view;
        view.setTranslatesAutoresizingMaskIntoConstraints(false);
        if (!row.identifier.empty())
            view.setAccessibilityIdentifier(row.identifier);
        container.addSubview(row.view);
        const bool startsPart = above.get() == scroll; // keeps the margin of the first control
        pin(view, top, above, aboveEdge, startsPart ? gap.length : row.gap);
        if (isFixed) {
            pin(view, leading, refTo(scroll), leading, 0);
            pin(view, trailing, refTo(scroll), trailing, 0);
        } else {
            pin(view, left, refTo(&controls), left, row.indent);
        }
        above = row.view;
        aboveEdge = bottom;
    }
    pin(below, belowEdge, above, aboveEdge, endsPart ? gap.length : rows.back().gap);
}

} // namespace tesmar
