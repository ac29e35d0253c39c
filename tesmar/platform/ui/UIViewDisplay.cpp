// The display of views: painting, and reporting damage to the window.
#include "tesmar/platform/foundation/internal/main_thread.h"
#include "tesmar/platform/graphics/CGContext.h"
#include "tesmar/platform/ui/UIView.h"
#include "tesmar/platform/ui/UIWindow.h"
#include "tesmar/platform/ui/internal/DamageRegion.h"
#include "tesmar/platform/ui/internal/KeptPicture.h"
#include "tesmar/platform/ui/internal/equal_objects.h"

#include <algorithm>
#include <new>
#include <utility>

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
    if (!equalObjects(std::exchange(backgroundColor_, color), color))
        setNeedsDisplay();
}

void UIView::setAlpha(double alpha) {
    alpha = finite(alpha, 0, 1, 1);
    if (alpha == alpha_)
        return;
    damagePlace();
    alpha_ = alpha;
    damagePlace();
}

void UIView::setHidden(bool hidden) {
    if (hidden == hidden_)
        return;
    damagePlace();
    hidden_ = hidden;
    damagePlace();
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
    assertMainThread("UIView::setNeedsDisplay");
    if (UIWindow* const window = windowToDamage())
        damage(drawnRect(), *window);
}

void UIView::setNeedsDisplayInRect(const CGRect& rect) {
    assertMainThread("UIView::setNeedsDisplay");
    if (UIWindow* const window = windowToDamage())
        damage(CGRectIntersection(rect, drawnRect()), *window);
}

void UIView::draw(CGRect) {}

// Where `rect` (bounds coordinates) is painted on the surface when the view's origin is at
// `origin`: views paint from their origin rounded to a pixel.
CGRect UIView::onSurface(const CGRect& rect, CGPoint origin, CGFloat scale) const {
    return rect.offsetBy(snappedPoint(origin, scale) - boundsOrigin_);
}

CGRect UIView::subtreeExtent(CGPoint origin, CGFloat scale) const {
    CGRect extent = onSurface(drawnRect(), origin, scale);
    if (!clipsToBounds_)
        for (const auto& view : subviews_)
            if (!view->hidden_)
                extent = CGRectUnion(
                    extent,
                    view->subtreeExtent(origin - boundsOrigin_ + view->originInSuperview(), scale));
    return extent;
}

CGRect UIView::shownExtent(CGFloat scale) const {
    return hidden_ || alpha_ <= 0 ? CGRect{} : subtreeExtent(originOnSurface(), scale);
}

PixelRect UIView::visiblePixels(CGRect rect, const UIWindow& window) const {
    CGPoint origin = originOnSurface();
    for (const UIView* view = this; view; view = view->superview_) {
        if (view->hidden_ || view->alpha_ <= 0)
            return {};
        if (view->clipsToBounds_)
            rect =
                CGRectIntersection(rect, {snappedPoint(origin, window.scale()), view->frame_.size});
        if (view->superview_)
            origin = origin - view->originInSuperview() + view->superview_->boundsOrigin_;
    }
    const PixelRect pixels = rect.isEmpty() ? PixelRect{} : window.surfacePixels(rect);
    return pixels.isEmpty() || isCovered(pixels, window.scale()) ? PixelRect{} : pixels;
}

bool UIView::isOnScreen() const {
    const UIWindow* const window = this->window();
    return window &&
           !visiblePixels(onSurface(drawnRect(), originOnSurface(), window->scale()), *window)
                .isEmpty();
}

// The window whose damage a change of this view may add to. Null while the view is in none, or in
// one that is repainted wholly anyway: where views draw is not worth computing then, since that may
// take the shaping of texts at widths that they never get on screen.
UIWindow* UIView::windowToDamage() const {
    UIWindow* const window = this->window();
    return window && (!window->isDamagedWholly() || isInKeptPicture()) ? window : nullptr;
}

bool UIView::isInKeptPicture() const {
    for (const UIView* view = this; view; view = view->superview_)
        if (view->picture_)
            return true;
    return false;
}

void UIView::damageSubtree() {
    if (picture_)
        picture_->clear();
    damagePlace();
}

void UIView::damagePlace() {
    assertMainThread("UIView::setNeedsDisplay");
    UIWindow* const window = windowToDamage();
    if (!window)
        return;
    const CGRect extent = subtreeExtent(originOnSurface(), window->scale());
    if (superview_)
        superview_->damageKeptPictures(extent);
    window->damagePixels(visiblePixels(extent, *window));
}

void UIView::damage(const CGRect& rect, UIWindow& window) {
    if (rect.isEmpty())
        return;
    const CGRect damaged = onSurface(rect, originOnSurface(), window.scale());
    damageKeptPictures(damaged);
    window.damagePixels(visiblePixels(damaged, window));
}

void UIView::damageKeptPictures(const CGRect& onSurface) {
    for (UIView* view = this; view; view = view->superview_)
        if (view->picture_)
            view->picture_->damage(onSurface.offsetBy(CGPoint() - view->originOnSurface()));
}

void UIView::setKeepsPicture(bool keeps) {
    if (keeps == (picture_ != nullptr))
        return;
    picture_ = keeps ? std::make_shared<KeptPicture>() : nullptr;
    damagePlace(); // translucent pixels round otherwise through a picture
}

// Whether an opaque view in front hides all of these pixels.
bool UIView::isCovered(const PixelRect& pixels, CGFloat scale) const {
    for (const UIView* view = this; view->superview_; view = view->superview_) {
        const auto& siblings = view->superview_->subviews_;
        auto above = std::find_if(siblings.begin(), siblings.end(),
                                  [&](const auto& sibling) { return sibling.get() == view; });
        for (++above; above != siblings.end(); ++above)
            if ((*above)->covers(pixels, (*above)->originOnSurface(), scale))
                return true;
    }
    return false;
}

// Looks only into views that contain all of the pixels, so most of a tree is passed over.
bool UIView::covers(const PixelRect& pixels, CGPoint origin, CGFloat scale) const {
    if (hidden_ || alpha_ < 1)
        return false;
    const PixelRect solid = snappedToPixels({origin, frame_.size}, scale);
    if (intersection(solid, pixels) != pixels)
        return false;
    return isOpaque(backgroundColor_) ||
           std::any_of(subviews_.begin(), subviews_.end(), [&](const auto& view) {
               return view->covers(pixels, origin - boundsOrigin_ + view->originInSuperview(),
                                   scale);
           });
}

// A quick test that passes over most views of a small frame; false if it is unsure.
bool UIView::isFarFrom(const PixelRect& clip, CGPoint origin, CGFloat scale) const {
    if (!clipsToBounds_ && !subviews_.empty())
        return false;
    constexpr int kRounding = 2; // pixels, at most, by which rounding moves an edge
    const UIEdgeInsets overflow = clipsToBounds_ ? UIEdgeInsets() : drawingOverflow();
    return (origin.x - overflow.left) * scale > clip.right() + kRounding ||
           (origin.y - overflow.top) * scale > clip.bottom() + kRounding ||
           (origin.x + frame_.size.width + overflow.right) * scale < clip.x - kRounding ||
           (origin.y + frame_.size.height + overflow.bottom) * scale < clip.y - kRounding;
}

void UIView::paint(CGContext& context, CGPoint superOrigin) {
    if (hidden_ || alpha_ <= 0)
        return;
    if (picture_ && paintPicture(context, superOrigin))
        return;
    const CGPoint origin = superOrigin + originInSuperview();
    if (isFarFrom(context.clipPixels(), origin, context.scale()))
        return;
    if (alpha_ >= 1) {
        paintSelf(context, origin);
        return;
    }
    const SavedState saved(context); // the layer is as small as the content allows
    context.clipToPixels(pixelsTouchedBy(subtreeExtent(origin, context.scale()), context.scale()));
    context.beginTransparencyLayer(alpha_);
    paintSelf(context, origin);
    context.endTransparencyLayer();
}

// False: there is no memory for the picture.
bool UIView::updatePicture(KeptPicture& picture, CGPoint superOrigin, CGFloat scale) {
    const CGPoint origin = superOrigin + frame_.origin;
    return picture.update(origin, pixelsTouchedBy(subtreeExtent(origin, scale), scale), scale,
                          [this](CGContext& context, CGPoint at) { paintSelf(context, at); });
}

void UIView::paintPictureAhead() {
    const auto picture = picture_;
    const UIWindow* const window = this->window();
    if (picture && window && superview_)
        updatePicture(*picture, superview_->originOnSurface() - superview_->boundsOrigin_,
                      window->scale());
}

bool UIView::paintPicture(CGContext& context, CGPoint superOrigin) {
    const auto picture = picture_;
    if (!updatePicture(*picture, superOrigin, context.scale()))
        return false;
    const SavedState saved(context);
    context.setAlpha(alpha_);
    picture->draw(context, translation_);
    return true;
}

void UIView::paintSelf(CGContext& context, CGPoint origin) {
    const CGFloat scale = context.scale();
    const CGPoint snapped = snappedPoint(origin, scale);
    const PixelRect clip = context.clipPixels();
    // What clips is rounded as backgrounds are, so that it does not reach over the view beside it.
    const PixelRect inside = clipsToBounds_ ? snappedToPixels({origin, frame_.size}, scale)
                                            : pixelsTouchedBy({snapped, frame_.size}, scale);
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
