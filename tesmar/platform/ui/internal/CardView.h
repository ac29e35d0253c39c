// The card or the paper behind a presented controller's view.
#pragma once

#include "tesmar/platform/ui/UIView.h"

namespace tesmar {

// Contains a controller's view, which is the root of its own layout.
class ContainerView : public UIView {
  public:
    using UIView::paintPictureAhead;
    using UIView::setKeepsPicture; // while the container moves

    // Darkens all in it as the window's presentedBrightness says.
    void drawOverlay(CGRect rect) override;

  protected:
    bool subviewsAreLayoutRoots() const override { return true; }
    virtual CGFloat cornerRadius() const { return 0; } // points
};

// White paper, so that black text is legible over any picture. Opaque: nothing shows through.
class PaperView : public ContainerView {
  public:
    PaperView();
};

// The same, rounded and with a soft shadow.
class CardView : public ContainerView {
  public:
    static constexpr CGFloat kCornerRadius = 14;

    void draw(CGRect rect) override;
    UIEdgeInsets drawingOverflow() const override;

  protected:
    CGFloat cornerRadius() const override { return kCornerRadius; }
};

} // namespace tesmar
