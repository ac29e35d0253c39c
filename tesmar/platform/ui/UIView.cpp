#include "tesmar/platform/ui/UIView.h"

#include "tesmar/platform/foundation/archive/NSCoder.h"
#include "tesmar/platform/foundation/diagnostics.h"
#include "tesmar/platform/foundation/internal/FirstException.h"
#include "tesmar/platform/foundation/internal/main_thread.h"
#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/platform/layout/internal/LayoutEngine.h"
#include "tesmar/platform/ui/UIWindow.h"
#include "tesmar/platform/ui/internal/KeptPicture.h"

#include <algorithm>

namespace tesmar {

Class& UIView::classObject() {
    static Class& type = *new Class("UIView", &NSObject::classObject(), allocator<UIView>());
    return type;
}

UIView::UIView() {
    assertMainThread("UIView");
}

UIView::~UIView() {
    assertMainThread("~UIView");
    detachSubviews();
}

void UIView::detachSubviews() noexcept {
    const auto views = std::move(subviews_);
    subviews_.clear();
    for (const auto& view : views)
        view->superview_ = nullptr;
    FirstException dropped;
    for (const auto& view : views)
        if (view.use_count() > 1)
            dropped.run([&] { view->notifyMovedToWindow(); });
}

bool UIView::initWithFrame(CGRect frame) {
    frame_ = finiteRect(frame);
    return true;
}

bool UIView::initWithCoder(NSCoder& coder) {
    if (!UIView::initWithFrame(coder.decodeRect("frame").value_or(CGRect())))
        return false;
    hidden_ = coder.decodeBool("hidden").value_or(hidden_);
    clipsToBounds_ = coder.decodeBool("clipsToBounds").value_or(clipsToBounds_);
    userInteractionEnabled_ =
        coder.decodeBool("userInteractionEnabled").value_or(userInteractionEnabled_);
    backgroundColor_ = as<UIColor>(coder.decodeObject("backgroundColor"));
    identifier_ = coder.decodeString("accessibilityIdentifier").value_or("");
    translatesMask_ =
        coder.decodeBool("translatesAutoresizingMaskIntoConstraints").value_or(translatesMask_);
    for (const auto& object : coder.decodeObjects("subviews"))
        if (const auto view = as<UIView>(object))
            addSubview(view);
    return true;
}

// --- Geometry -----------------------------------------------------------------------------------

void UIView::setFrame(CGRect frame) {
    frame = finiteRect(frame);
    if (frame == frame_)
        return;
    applyFrame(frame);
    if (superview_ && !superview_->subviewsAreLayoutRoots())
        layoutNeedsUpdate();
}

void UIView::applyFrame(CGRect frame) {
    const bool resized = frame.size != frame_.size;
    damageSubtree();
    frame_ = frame;
    damageSubtree();
    if (resized)
        setNeedsLayout();
}

void UIView::setBoundsOrigin(CGPoint origin) {
    origin = {finiteCoordinate(origin.x), finiteCoordinate(origin.y)};
    if (origin == boundsOrigin_)
        return;
    damageSubtree();
    boundsOrigin_ = origin;
    damageSubtree();
}

void UIView::setTranslation(CGPoint translation) {
    translation = {finiteCoordinate(translation.x), finiteCoordinate(translation.y)};
    if (translation == translation_)
        return;
    damagePlace();
    translation_ = translation;
    damagePlace();
}

CGPoint UIView::originOnSurface() const {
    CGPoint origin;
    for (const UIView* view = this; view->superview_; view = view->superview_)
        origin = origin + view->originInSuperview() - view->superview_->boundsOrigin_;
    return origin;
}

CGPoint UIView::convertPointTo(CGPoint point, const UIView* view) const {
    const CGPoint onSurface = point - boundsOrigin_ + originOnSurface();
    return view ? onSurface - view->originOnSurface() + view->boundsOrigin_ : onSurface;
}

CGPoint UIView::convertPointFrom(CGPoint point, const UIView* view) const {
    const CGPoint onSurface = view ? view->convertPointTo(point, nullptr) : point;
    return onSurface - originOnSurface() + boundsOrigin_;
}

CGRect UIView::convertRectTo(const CGRect& rect, const UIView* view) const {
    return {convertPointTo(rect.origin, view), rect.size};
}

// --- Hierarchy ----------------------------------------------------------------------------------

UIWindow* UIView::window() const {
    const UIView* view = this;
    while (view->superview_)
        view = view->superview_;
    return dynamic_cast<UIWindow*>(const_cast<UIView*>(view));
}

void UIView::addSubview(const Ref<UIView>& view) {
    if (view)
        insertSubview(view, view->superview_ == this ? subviews_.size() - 1 : subviews_.size());
}

void UIView::insertSubview(const Ref<UIView>& view, std::size_t atIndex) {
    assertMainThread("UIView::insertSubview");
    if (!view)
        return;
    if (isDescendantOf(view.get()))
        fatalError("a view cannot be added to itself or to one of its descendants");
    UIWindow* const before = view->window();
    // `view` may be an element of a list that changes.
    const Ref<UIView> added = view;          // NOLINT(performance-unnecessary-copy-initialization)
    subviews_.reserve(subviews_.size() + 1); // may throw, so before any change
    if (UIView* old = added->superview_) {
        added->damageSubtree();
        old->layoutNeedsUpdate();
        std::erase(old->subviews_, added);
    }
    added->superview_ = this;
    added->engine_.reset();
    subviews_.insert(subviews_.begin() +
                         static_cast<std::ptrdiff_t>(std::min(atIndex, subviews_.size())),
                     added);
    layoutNeedsUpdate();
    added->setNeedsLayout();
    added->damageSubtree();
    if (window() != before)
        added->notifyMovedToWindow();
}

void UIView::bringSubviewToFront(const Ref<UIView>& view) {
    if (view && view->superview_ == this && subviews_.back() != view)
        insertSubview(view, subviews_.size());
}

void UIView::sendSubviewToBack(const Ref<UIView>& view) {
    if (view && view->superview_ == this && subviews_.front() != view)
        insertSubview(view, 0);
}

void UIView::removeFromSuperview() {
    assertMainThread("UIView::removeFromSuperview");
    if (!superview_)
        return;
    const auto self = refTo(this);
    const bool wasInWindow = window() != nullptr;
    damageSubtree();
    superview_->layoutNeedsUpdate();
    std::erase(superview_->subviews_, self);
    superview_ = nullptr;
    setNeedsLayout();
    if (wasInWindow)
        notifyMovedToWindow();
}

void UIView::notifyMovedToWindow() {
    const auto self = refTo(this);
    const auto views = subviews_;
    FirstException all;
    all.run([this] { didMoveToWindow(); });
    for (const auto& view : views)
        if (view->superview_ == this)
            all.run([&] { view->notifyMovedToWindow(); });
    all.rethrow();
}

bool UIView::isDescendantOf(const UIView* view) const {
    for (const UIView* v = this; v; v = v->superview_)
        if (v == view)
            return true;
    return false;
}

UIView* UIView::viewWithIdentifier(std::string_view identifier) {
    if (!identifier.empty() && identifier_ == identifier)
        return this;
    for (const auto& view : subviews_)
        if (UIView* found = view->viewWithIdentifier(identifier))
            return found;
    return nullptr;
}

// --- Touches ------------------------------------------------------------------------------------

UIView* UIView::hitTest(CGPoint point) {
    if (!takesTouches() || !pointInside(point))
        return nullptr;
    for (auto view = subviews_.rbegin(); view != subviews_.rend(); ++view) {
        const CGPoint inside = point - (*view)->originInSuperview() + (*view)->boundsOrigin_;
        if (UIView* hit = (*view)->hitTest(inside))
            return hit;
    }
    return this;
}

void UIView::describe(UIAccessibleElement&) const {}
bool UIView::perform(const UIAccessibleElement&, UIAccessibleAction) {
    return false;
}
void UIView::touchBegan(UITouch&) {}
void UIView::touchMoved(UITouch&) {}
void UIView::touchEnded(UITouch&) {}
void UIView::touchCancelled(UITouch&) {}

CGPoint UITouch::locationIn(const UIView& view) const {
    return view.convertPointFrom(point_, nullptr);
}

} // namespace tesmar
