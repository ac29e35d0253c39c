// Marks the control under a mouse that is not pressed.
#pragma once

#include "tesmar/platform/foundation/NSObject.h"
#include "tesmar/platform/ui/internal/focus/focus_places.h"

#include <optional>

namespace tesmar {

class UIWindow;

class HoverMark {
  public:
    // `window` owns this.
    explicit HoverMark(UIWindow& window) : window_(window) {}

    // The mouse is at `point` (window coordinates). To be followed by follow().
    void moveTo(CGPoint point) { point_ = point; }
    // The control may have moved, or another one may be under the mouse now. Returns whether there
    // is one: without, this draws nothing and can be destroyed.
    bool follow();
    void hide() { show(std::nullopt); }
    // Into the current context, in window coordinates.
    void draw() const;

  private:
    void show(const std::optional<ShownCell>& cell);

    UIWindow& window_;
    CGPoint point_;
    std::optional<ShownCell> drawn_;
};

} // namespace tesmar
