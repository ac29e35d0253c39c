// Rows that a subclass adds to the panel.
#include "tesmar/panel/TESMARViewController.h"
#include "tesmar/platform/foundation/diagnostics.h"

#include <algorithm>

namespace tesmar {
namespace {

// The constraint between these edges, taken out of the view: rows come in its place.
CGFloat removeGap(UIView& from, const UIView& first, NSLayoutAttribute firstEdge,
                  const UIView& second, NSLayoutAttribute secondEdge) {
    const auto& all = from.layoutConstraints();
    const auto gap = std::ranges::find_if(all, [&](const auto& constraint) {
        const auto joins = [&](const LayoutItem* a, NSLayoutAttribute edgeOfA, const LayoutItem* b,
                               NSLayoutAttribute edgeOfB) {
            return constraint->firstItem().get() == a && constraint->firstAttribute() == edgeOfA &&
                   constraint->secondItem().get() == b && constraint->secondAttribute() == edgeOfB;
        };
        return joins(&first, firstEdge, &second, secondEdge) ||
               joins(&second, secondEdge, &first, firstEdge);
    });
    if (gap == all.end())
        fatalError("TESMARViewController: rows were added to a panel without the place for them");
    const CGFloat length = std::abs((*gap)->constant());
    from.removeConstraints({Ref<NSLayoutConstraint>(*gap)});
    return length;
}

} // namespace

void TESMARViewController::addRows(RowPlace place, const std::vector<Row>& rows) {
    using enum NSLayoutAttribute;
    if (rows.empty())
        return;
    UIView& root = *view();
    UIView* const scroll = scrollView();
    UIView* const header = root.viewWithIdentifier("topSeparator");
    UIView* const end = root.viewWithIdentifier("bottomSeparator");
    if (!scroll || !header || !end)
        fatalError("TESMARViewController: rows were added to a panel that has been laid out anew");
    const bool isFixed = place == RowPlace::fixed || place == RowPlace::footer;
    UIView& container = isFixed ? root : *scroll;
    UIView& controls = *textColorPicker_;

    // The views above and below the rows, and the gaps there.
    UIView* above = isFixed ? header : scroll;
    NSLayoutAttribute aboveEdge = isFixed ? bottom : top;
    UIView* below = isFixed ? scroll : &controls;
    NSLayoutAttribute belowEdge = top;
    const bool endsPart = place == RowPlace::last || place == RowPlace::footer;
    if (endsPart) {
        above = place == RowPlace::last ? backgroundColorOpacityStepper_.get() : end;
        aboveEdge = bottom;
        below = &container;
        belowEdge = bottom;
    }
    const CGFloat gapAtEdge = removeGap(container, *above, aboveEdge, *below, belowEdge);

    const auto pin = [&](UIView& first, NSLayoutAttribute firstEdge, UIView& second,
                         NSLayoutAttribute secondEdge, CGFloat distance) {
        container.addConstraint(NSLayoutConstraint::constraintWithItem(
            refTo(&first), firstEdge, NSLayoutRelation::equal, refTo(&second), secondEdge, 1,
            distance));
    };
    for (const Row& row : rows) {
        UIView& view = *row.view;
        view.setTranslatesAutoresizingMaskIntoConstraints(false);
        if (!row.identifier.empty())
            view.setAccessibilityIdentifier(row.identifier);
        container.addSubview(row.view);
        const bool startsPart = above == scroll; // keeps the margin of the first control
        pin(view, top, *above, aboveEdge, startsPart ? gapAtEdge : row.gap);
        if (isFixed) {
            pin(view, leading, *scroll, leading, 0);
            pin(view, trailing, *scroll, trailing, 0);
        } else {
            pin(view, left, controls, left, row.indent);
        }
        above = &view;
        aboveEdge = bottom;
    }
    if (endsPart)
        pin(*below, belowEdge, *above, aboveEdge, gapAtEdge);
    else
        pin(*below, belowEdge, *above, aboveEdge, rows.back().gap);
}

} // namespace tesmar
