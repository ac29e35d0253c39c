// The thin bars that show which part of a scroll view's content is visible. They appear while the
// content moves and fade afterwards.
#pragma once

#include "tesmar/platform/geometry/geometry.h"
#include "tesmar/platform/layout/LayoutItem.h"
#include "tesmar/platform/ui/internal/Transition.h"

namespace tesmar {

class UIScrollView;

class ScrollIndicators {
  public:
    // `view` owns this.
    explicit ScrollIndicators(UIScrollView& view);

    // Whether an axis has an indicator, and the view is on screen.
    bool canBeSeen() const;
    void show();
    // At once when no indicator can be seen.
    void fade();
    // At once, and ends any fade.
    void hide();
    // Marks the indicators that are shown to be painted: before and after any change of what places
    // them.
    void setNeedsDisplay();
    // Into the current context, in the view's bounds coordinates.
    void draw() const;

  private:
    CGRect rect(LayoutAxis axis) const;
    void damage();

    UIScrollView& view_;
    Transition alpha_;
};

} // namespace tesmar
