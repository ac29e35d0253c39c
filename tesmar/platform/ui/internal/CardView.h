// The card on which a presented controller's view stands, and where it stands.
#pragma once

#include "tesmar/platform/ui/UIView.h"

#include <cstdint>
#include <optional>

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

// What a card's content would like, and when that was found out: to measure is to lay out anew.
struct CardWish {
    CGSize room;
    std::uint64_t layoutChanges = 0;
    CGSize size;
};

// The card's place in the window: large enough for what `content` shows without scrolling where
// there is room, inside the safe area, and clear of the host's captions where that leaves enough.
// `wish` is what was measured before, and is brought up to date.
CGRect cardFrame(const UIWindow& window, UIView& content, std::optional<CardWish>& wish);

} // namespace tesmar
