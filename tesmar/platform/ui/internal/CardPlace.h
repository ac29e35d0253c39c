// The frame of a presented card, which moves when the host's captions change.
#pragma once

#include "tesmar/platform/geometry/geometry.h"
#include "tesmar/platform/ui/internal/Transition.h"
#include "tesmar/platform/ui/internal/presented_frames.h"

#include <cstdint>
#include <functional>
#include <optional>

namespace tesmar {

class UIViewController;
class UIWindow;

class CardPlace {
  public:
    // `onMove` is called when frame() has changed in a motion; `isSeen` as for a Transition.
    // `window` outlives this.
    CardPlace(const UIWindow& window, std::function<void()> onMove, std::function<bool()> isSeen);

    // Places the card for the window as it is now: centred, unless only the captions or the height
    // of the content have changed since the viewer saw it. Then its upper edge stays if there is
    // enough room below it, so that no control moves away from the finger, and the rest moves.
    // Measures the controller's content again if its layout or the room has changed.
    void update(UIViewController& controller);
    // A frame has shown the card where it is.
    void noteSeen() { wasSeen_ = true; }

    // Of the card in the window, in points.
    CGRect frame() const;

  private:
    CGSize measured(UIViewController& controller, CGSize room);

    const UIWindow& window_;
    // The size that the content preferred when last measured. Cached, because measuring lays the
    // content out again.
    struct MeasuredSize {
        CGSize room;
        std::uint64_t layoutChanges = 0; // of the content, see UIView::layoutChanges
        CGSize size;
    };
    std::optional<MeasuredSize> measured_;
    std::optional<CardSurroundings> around_; // nothing before the first update
    bool wasSeen_ = false;                   // since it was centred
    CGRect from_, to_;
    Transition progress_; // from one to the other
};

} // namespace tesmar
