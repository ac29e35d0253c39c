#include "tesmar/platform/ui/internal/scroll_fades.h"

#include "tesmar/platform/graphics/CGContext.h"
#include "tesmar/platform/graphics/UIColor.h"
#include "tesmar/platform/graphics/UIGraphics.h"

#include <algorithm>
#include <cmath>

namespace tesmar {
namespace {

constexpr CGFloat kRounding = 0.5; // less hidden content than this is a rounding error

} // namespace

void drawEdgeFades(const CGRect& bounds, const UIEdgeInsets& hidden, const UIColor& paper) {
    CGContext* const context = UIGraphicsGetCurrentContext();
    if (!context)
        return;
    const CGRect all = context->snapped(bounds);
    const CGFloat pixel = 1 / context->scale();

    // Lines of one pixel, so that no pixel depends on the clip.
    const auto fade = [&](CGFloat hiddenLength, CGFloat extent, auto lineAt) {
        if (hiddenLength < kRounding)
            return;
        const int lines = floorToInt(std::min(kEdgeFade, extent / 2) / pixel);
        const CGRect faded = CGRectUnion(lineAt(0), lineAt(lines * pixel));
        if (intersection(context->pixels(faded), context->clipPixels()).isEmpty())
            return;
        const CGFloat strength = std::min(1.0, hiddenLength / kEdgeFade);
        for (int line = 0; line < lines; ++line) {
            context->setRGBFillColor(paper.red(), paper.green(), paper.blue(),
                                     paper.alpha() * strength * (1 - (line + 0.5) / lines));
            context->fillRect(lineAt(line * pixel));
        }
    };
    const CGSize size = all.size;
    fade(hidden.top, size.height, [&](CGFloat in) {
        return CGRect{all.minX(), all.minY() + in, size.width, pixel};
    });
    fade(hidden.bottom, size.height, [&](CGFloat in) {
        return CGRect{all.minX(), all.maxY() - in - pixel, size.width, pixel};
    });
    fade(hidden.left, size.width, [&](CGFloat in) {
        return CGRect{all.minX() + in, all.minY(), pixel, size.height};
    });
    fade(hidden.right, size.width, [&](CGFloat in) {
        return CGRect{all.maxX() - in - pixel, all.minY(), pixel, size.height};
    });
}

} // namespace tesmar
