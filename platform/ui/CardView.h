// The card on which a presented controller's view stands, and where it stands.
#pragma once

#include "tesmar/platform/ui/UIView.h"

namespace tesmar {

// Holds a controller's view, which lays itself out.
class ContainerView : public UIView {
  protected:
    bool subviewsAreLayoutRoots() const override { return true; }
};

// Rounded, light and softly shadowed: black text on it is legible whatever picture lies below.
class CardView : public ContainerView {
  public:
    static constexpr CGFloat kCornerRadius = 14;

    void draw(CGRect rect) override;
    UIEdgeInsets drawingOverflow() const override;
};

// The card's place in the window: large enough for what `content` shows without scrolling where
// there is room, inside the safe area, and clear of the host's captions where that leaves enough.
CGRect cardFrame(const UIWindow& window, UIView& content);

} // namespace tesmar
