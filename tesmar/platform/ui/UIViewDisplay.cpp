// The display of views: painting, and reporting damage to the window.
#include "tesmar/platform/foundation/internal/main_thread.h"
#include "tesmar/platform/graphics/CGContext.h"
#include "tesmar/platform/ui/UIView.h"
#include "tesmar/platform/ui/UIWindow.h"
#include "tesmar/platform/ui/internal/DamageRegion.h"

#include <algorithm>
#include <new>

namespace tesmar {
namespace {

CGRect grownBy(const CGRect& r, const UIEdgeInsets& by) {
    return {r.minX() - by.left, r.minY() - by.top, r.size.width + by.left + by.right,
            r.size.height + by.top + by.bottom};
}

class SavedState {
  public:
    explicit SavedState(CGContext& context) : context_(context) { context_.saveGState(); }
    ~SavedState() { context_.restoreGState(); }
    SavedState(const SavedState&) = delete;
    SavedState& operator=(const SavedState&) = delete;

  private:
    CGContext& context_;
};

bool isOpaque(const Ref<UIColor>& color) {
    return color && color->alpha() >= 1;
}

} // namespace

void UIView::setBackgroundColor(const Ref<UIColor>& color) {
    backgroundColor_ = color;
    setNeedsDisplay();
}

void UIView::setAlpha(double alpha) {
    alpha = finite(alpha, 0, 1, 1);
    if (alpha == alpha_)
        return;
    damageSubtree();
    alpha_ = alpha;
    damageSubtree();
}

void UIView::setHidden(bool hidden) {
    if (hidden == hidden_)
        return;
    damageSubtree();
    hidden_ = hidden;
    damageSubtree();
}

void UIView::setClipsToBounds(bool clips) {
    if (clips == clipsToBounds_)
        return;
    damageSubtree();
    clipsToBounds_ = clips;
    damageSubtree();
}

// Where the view itself draws; when the overflow cannot be computed for lack of memory, everywhere.
CGRect UIView::drawnRect() const {
    try {
        return grownBy(bounds(), drawingOverflow());
    } catch (const std::bad_alloc&) {
        return CGRectInset(bounds(), -kLargestCoordinate, -kLargestCoordinate);
    }
}

void UIView::setNeedsDisplay() {
    damage(drawnRect());
}

void UIView::setNeedsDisplayInRect(const CGRect& rect) {
    damage(CGRectIntersection(rect, drawnRect()));
}

void UIView::draw(CGRect) {}

CGRect UIView::subtreeExtent() const {
    CGRect extent = drawnRect();
    if (!clipsToBounds_)
        for (const auto& view : subviews_)
            if (!view->hidden_)
                extent = CGRectUnion(extent, view->subtreeExtent().offsetBy(
                                                 view->originInSuperview() - view->boundsOrigin_));
    return extent;
}

void UIView::damageSubtree() {
    damage(subtreeExtent());
}

// Views paint from their origin rounded to a pixel, so damage is relative to the rounded origin
// too.
void UIView::damage(CGRect rect) {
    assertMainThread("UIView::setNeedsDisplay");
    UIWindow* const window = this->window();
    if (!window || rect.isEmpty())
        return;
    const CGPoint origin = originOnSurface();
    CGRect onSurface = rect.offsetBy(window->snapToPixels(origin) - boundsOrigin_);
    CGPoint viewOrigin = origin;
    for (const UIView* view = this; view; view = view->superview_) {
        if (view->hidden_ || view->alpha_ <= 0)
            return;
        if (view->clipsToBounds_) {
            const CGRect clip{window->snapToPixels(viewOrigin), view->frame_.size};
            onSurface = CGRectIntersection(onSurface, clip);
        }
        if (view->superview_)
            viewOrigin = viewOrigin - view->originInSuperview() + view->superview_->boundsOrigin_;
    }
    if (!onSurface.isEmpty() && !isCovered(onSurface))
        window->damageSurface(onSurface);
}

// Whether an opaque view in front hides the whole rectangle.
bool UIView::isCovered(const CGRect& surfaceRect) const {
    for (const UIView* view = this; view->superview_; view = view->superview_) {
        const auto& siblings = view->superview_->subviews_;
        auto above = std::find_if(siblings.begin(), siblings.end(),
                                  [&](const auto& sibling) { return sibling.get() == view; });
        for (++above; above != siblings.end(); ++above) {
            const UIView& other = **above;
            // A point less on each side, since frames are rounded to pixels when painted.
            const CGRect solid =
                CGRectInset(CGRect(other.originOnSurface(), other.frame_.size), 1, 1);
            if (!other.hidden_ && other.alpha_ >= 1 && isOpaque(other.backgroundColor_) &&
                solid.contains(surfaceRect))
                return true;
        }
        if (view->superview_->alpha_ < 1)
            return false;
    }
    return false;
}

void UIView::paint(CGContext& context, CGPoint superOrigin) {
    if (hidden_ || alpha_ <= 0)
        return;
    const CGPoint origin = superOrigin + originInSuperview();
    if (alpha_ >= 1) {
        paintSelf(context, origin);
        return;
    }
    // The layer is as small as the content allows, plus a pixel for rounding to pixels.
    const SavedState saved(context);
    const CGRect extent = subtreeExtent().offsetBy(origin - boundsOrigin_);
    const CGFloat pixel = 1 / context.scale();
    context.clipToPixels(pixelsTouchedBy(CGRectInset(extent, -pixel, -pixel), context.scale()));
    context.beginTransparencyLayer(alpha_);
    paintSelf(context, origin);
    context.endTransparencyLayer();
}

void UIView::paintSelf(CGContext& context, CGPoint origin) {
    const CGFloat scale = context.scale();
    const CGPoint snapped = snappedPoint(origin, scale);
    const PixelRect clip = context.clipPixels();
    const PixelRect inside = pixelsTouchedBy({snapped, frame_.size}, scale);
    const UIEdgeInsets overflow = clipsToBounds_ ? UIEdgeInsets() : drawingOverflow();
    const PixelRect extent =
        overflow == UIEdgeInsets()
            ? inside
            : pixelsTouchedBy(grownBy({snapped, frame_.size}, overflow), scale);
    const bool visible = !intersection(clip, extent).isEmpty();

    if (visible && backgroundColor_ && backgroundColor_->alpha() > 0) {
        context.setFillColor(*backgroundColor_);
        context.fillRect(context.snapped({origin, frame_.size}));
    }
    const auto drawInBounds = [&](void (UIView::*drawing)(CGRect)) {
        const SavedState saved(context);
        context.clipToPixels(extent);
        context.translate(snapped.x - boundsOrigin_.x, snapped.y - boundsOrigin_.y);
        (this->*drawing)(bounds());
    };
    if (visible)
        drawInBounds(&UIView::draw);

    if (!clipsToBounds_) {
        paintSubviews(context, origin - boundsOrigin_);
    } else if (!intersection(clip, inside).isEmpty()) {
        const SavedState saved(context);
        context.clipToPixels(inside);
        paintSubviews(context, origin - boundsOrigin_);
    }
    if (visible)
        drawInBounds(&UIView::drawOverlay);
}

// A view's drawing may remove views.
void UIView::paintSubviews(CGContext& context, CGPoint origin) {
    for (std::size_t i = 0; i < subviews_.size(); ++i)
        Ref<UIView>(subviews_[i])->paint(context, origin);
}

} // namespace tesmar
