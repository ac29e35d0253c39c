// A view that draws nothing and takes touches only on its subviews.
#pragma once

#include "tesmar/platform/ui/UIView.h"

namespace tesmar {

class PassThroughView : public UIView {
  public:
    UIView* hitTest(CGPoint point) override {
        UIView* const hit = UIView::hitTest(point);
        return hit == this ? nullptr : hit;
    }
};

} // namespace tesmar
