// Where presented controllers are in a window: inside its safe area, and clear of the host's
// captions where that leaves enough room. All in points and window coordinates, unless said
// otherwise.
#pragma once

#include "tesmar/platform/geometry/geometry.h"

#include <optional>

namespace tesmar {

class UIWindow;

// What a card depends on.
struct CardSurroundings {
    CGRect room; // that cards keep to
    CGSize size; // that its content prefers, not larger than the room
    std::optional<CGRect> captions;
    bool operator==(const CardSurroundings&) const = default;
};

CGRect cardRoom(const UIWindow& window);
// `preferred` where it is a number, but not larger than the room.
CGSize preferredSizeIn(CGSize room, CGSize preferred);
// Centred in the best part of the room.
CGRect cardFrame(const CardSurroundings& around);
// As high as it can be with its upper edge at `top`; nothing when that is not enough.
std::optional<CGRect> cardFrameBelow(CGFloat top, const CardSurroundings& around);

// The paper of a controller that fills the window.
CGRect paperFrame(const UIWindow& window);
// What of the paper, in its own coordinates, is inside the safe area.
CGRect safePartOfPaper(const UIWindow& window, const CGRect& paper);

} // namespace tesmar
