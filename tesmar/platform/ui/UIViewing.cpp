#include "tesmar/platform/ui/UIViewing.h"

namespace tesmar {
namespace {

constexpr CGFloat kTelevisionHeight = 540; // points
constexpr CGFloat kPointsPerInch = 160;    // of a device in the hand
constexpr UIEdgeInsets kTelevisionEdges{27, 48, 27, 48};

} // namespace

CGFloat pixelsPerPoint(UIViewing viewing, const UIScreen& screen) {
    CGFloat scale = screen.scale;
    if (viewing == UIViewing::television)
        scale = screen.pixels.height / kTelevisionHeight;
    else if (viewing == UIViewing::hand && screen.dotsPerInch)
        scale = *screen.dotsPerInch / kPointsPerInch;
    return finite(scale, 0.1, 16, 1);
}

UIEdgeInsets safeAreaInsets(UIViewing viewing) {
    return viewing == UIViewing::television ? kTelevisionEdges : UIEdgeInsets();
}

} // namespace tesmar
