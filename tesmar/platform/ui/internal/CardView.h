// The card behind a presented controller's view, and its place in the window.
#pragma once

#include "tesmar/platform/ui/UIView.h"
#include "tesmar/platform/ui/UIViewController.h"

#include <cstdint>
#include <optional>

namespace tesmar {

// Contains a controller's view, which is the root of its own layout.
class ContainerView : public UIView {
  public:
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

// The paper of a controller that fills the window: clear of the host's captions where that leaves
// enough room.
CGRect paperFrame(const UIWindow& window);
// What of the paper, in its own coordinates, is inside the safe area.
CGRect safePartOfPaper(const UIWindow& window, const CGRect& paper);

// The size that a card's content preferred when last measured. Cached, because measuring lays the
// content out again.
struct MeasuredSize {
    CGSize room;                     // that was available
    std::uint64_t layoutChanges = 0; // of the content, see UIView::layoutChanges
    CGSize size;
};

// The card's frame in the window: of the controller's preferred content size where there is room,
// inside the safe area, and clear of the host's captions where that leaves enough. Brings
// `measured` up to date when the room or the content's layout has changed.
CGRect cardFrame(const UIWindow& window, UIViewController& controller,
                 std::optional<MeasuredSize>& measured);

} // namespace tesmar
