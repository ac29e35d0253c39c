// The ring around the focused control, which slides from control to control.
#pragma once

#include "tesmar/platform/ui/internal/Transition.h"
#include "tesmar/platform/ui/internal/focus/focus_places.h"

#include <optional>

namespace tesmar {

class UIWindow;

class FocusRing {
  public:
    // How far the ring reaches beyond the control, in points.
    static constexpr CGFloat kReach = 4.5;

    // `window` owns this.
    explicit FocusRing(UIWindow& window);

    // Slides to the cell; appears there at once when the ring is hidden.
    void slideTo(const ShownCell& cell);
    // The cell is there now. A slide under way ends there.
    void follow(const ShownCell& cell);
    void hide();
    // Into the current context, in window coordinates.
    void draw() const;
    CGRect extent() const;

  private:
    void update();
    void damage(const std::optional<ShownCell>& cell);

    UIWindow& window_;
    ShownCell from_;
    std::optional<ShownCell> to_; // while the ring shows
    Transition progress_;         // from one to the other
    std::optional<ShownCell> drawn_;
};

} // namespace tesmar
