#include "tesmar/platform/ui/UIWindow.h"

#include "tesmar/platform/foundation/NSRunLoop.h"
#include "tesmar/platform/foundation/diagnostics.h"
#include "tesmar/platform/foundation/internal/main_thread.h"
#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/platform/graphics/CGContext.h"
#include "tesmar/platform/graphics/UIImage.h"
#include "tesmar/platform/ui/UIControl.h"
#include "tesmar/platform/ui/internal/DamageHistory.h"
#include "tesmar/platform/ui/internal/HoverMark.h"
#include "tesmar/platform/ui/internal/PassThroughView.h"
#include "tesmar/platform/ui/internal/PresentationStack.h"
#include "tesmar/platform/ui/internal/TouchDispatcher.h"
#include "tesmar/platform/ui/internal/accessibility/AccessibilityMonitor.h"
#include "tesmar/platform/ui/internal/focus/KeyFocus.h"
#include "tesmar/platform/ui/internal/near_control.h"
#include "tesmar/platform/ui/internal/wheel_routing.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tesmar {
namespace {

constexpr CGFloat kLargestSide = 65535;  // points
constexpr CGFloat kLargestPixel = 32767; // pixels per side
constexpr CGFloat kSmallestScale = 0.1;
constexpr CGFloat kLargestScale = 16;
constexpr double kLeastBrightness = 0.4;

CGSize finiteSize(CGSize size) {
    return {finite(size.width, 0, kLargestSide, 0), finite(size.height, 0, kLargestSide, 0)};
}

CGFloat finiteScale(CGFloat scale, CGSize size) {
    const CGFloat wanted = scale > 0 ? finite(scale, kSmallestScale, kLargestScale, 1) : 1;
    const CGFloat side = std::max({size.width, size.height, 1.0});
    return std::min(wanted, kLargestPixel / side);
}

class RootController : public UIViewController {
  public:
    void loadView() override { setView(make<PassThroughView>()); }
};

} // namespace

Class& UIWindow::classObject() {
    static Class& type = *new Class("UIWindow", &UIView::classObject(), allocator<UIWindow>());
    return type;
}

UIWindow::UIWindow()
    : presentations_(std::make_unique<PresentationStack>(*this)),
      touches_(std::make_unique<TouchDispatcher>(*this, *presentations_)),
      damage_(std::make_unique<DamageRegion>()), history_(std::make_unique<DamageHistory>()),
      repainted_(std::make_unique<DamageRegion>()), context_(std::make_unique<CGContext>()) {}

// Views and controllers that are notified meanwhile must not find a window that is being destroyed.
UIWindow::~UIWindow() {
    if (rootController_)
        presentations_->setRoot(*rootController_, PresentationStack::Root::detached);
    presentations_->abandon();
    detachSubviews();
    touches_.reset();
}

Ref<UIWindow> UIWindow::windowWithSize(CGSize size, CGFloat scale) {
    auto window = makeWith<UIWindow>(&UIWindow::initWithFrame, CGRect({}, finiteSize(size)));
    window->rootController_ = make<RootController>();
    window->presentations_->setRoot(*window->rootController_, PresentationStack::Root::attached);
    window->addSubview(window->rootController_->view());
    window->setScale(scale);
    window->layoutSubviews();
    window->invalidate();
    return window;
}

void UIWindow::setSize(CGSize size) {
    assertMainThread("UIWindow::setSize");
    resize(finiteSize(size), wantedScale_);
}

void UIWindow::setScale(CGFloat scale) {
    assertMainThread("UIWindow::setScale");
    resize(frame().size, scale);
}

void UIWindow::setPixelSize(int width, int height, CGFloat scale) {
    assertMainThread("UIWindow::setPixelSize");
    const CGSize pixels{finite(width, 0, kLargestPixel, 0), finite(height, 0, kLargestPixel, 0)};
    scale = finiteScale(scale, {});
    resize(finiteSize({pixels.width / scale, pixels.height / scale}), scale);
}

void UIWindow::resize(CGSize size, CGFloat scale) {
    const auto self = refTo(this);
    wantedScale_ = scale;
    const CGFloat usedScale = finiteScale(scale, size);
    const bool isNewSize = size != frame().size;
    if (!isNewSize && usedScale == scale_)
        return;
    setFrame({{}, size});
    if (std::exchange(scale_, usedScale) != usedScale)
        UIImage::setMainScreenScale(scale_);
    history_->clear(); // its rectangles are those of another surface
    invalidate();
    if (isNewSize)
        layoutSubviews();
}

CGSize UIWindow::pixelSize() const {
    return {std::min(kLargestPixel, std::ceil(frame().size.width * scale_ - 1e-6)),
            std::min(kLargestPixel, std::ceil(frame().size.height * scale_ - 1e-6))};
}

void UIWindow::setSafeAreaInsets(UIEdgeInsets insets) {
    const auto clamped = [](CGFloat v) { return finite(v, 0, kLargestSide, 0); };
    const UIEdgeInsets area{clamped(insets.top), clamped(insets.left), clamped(insets.bottom),
                            clamped(insets.right)};
    if (std::exchange(safeArea_, area) != area)
        setNeedsLayout();
}

void UIWindow::setCaptionArea(std::optional<CGRect> area) {
    assertMainThread("UIWindow::setCaptionArea");
    if (area)
        area = finiteRect(*area);
    if (area && area->isEmpty())
        area.reset();
    captionArea_ = area;
    avoidCaptions();
}

void UIWindow::avoidCaptions() {
    if (captionArea_ == avoidedArea_ || touches_->hasFingers())
        return;
    avoidedArea_ = captionArea_;
    setNeedsLayout();
}

// A caption area that waited for the last finger takes effect in the next frame.
void UIWindow::wakeForCaptions() const {
    if (captionArea_ != avoidedArea_ && !touches_->hasFingers())
        NSRunLoop::mainRunLoop().wake();
}

void UIWindow::setPresentedBrightness(double brightness) {
    assertMainThread("UIWindow::setPresentedBrightness");
    brightness = finite(brightness, kLeastBrightness, 1, 1);
    if (std::exchange(presentedBrightness_, brightness) != brightness)
        presentations_->setNeedsDisplay();
}

void UIWindow::layoutSubviews() {
    if (!rootController_)
        return;
    rootController_->view()->setFrame(bounds());
    presentations_->layOut();
}

CGRect UIWindow::cardRoom() const {
    return tesmar::cardRoom(*this);
}

CGRect UIWindow::presentedFrame(UIModalPresentationStyle style, CGSize size) const {
    if (style != UIModalPresentationStyle::card)
        return paperFrame(*this);
    const CGRect room = cardRoom();
    return cardFrame({room, preferredSizeIn(room.size, size), avoidedArea_});
}

// --- Controllers --------------------------------------------------------------------------------

Ref<UIViewController> UIWindow::presentedViewController() const {
    return presentations_->top();
}

void UIWindow::presentViewController(const Ref<UIViewController>& controller, bool animated,
                                     UIViewController::Completion completion) {
    assertMainThread("UIWindow::presentViewController");
    const auto self = refTo(this);
    auto presenter = presentations_->top();
    // A controller that is being dismissed is presented again, over the root.
    if (!presenter || presenter == controller)
        presenter = rootController_;
    if (!presenter)
        fatalError("a window that presents must be made by UIWindow::windowWithSize");
    presenter->presentViewController(controller, animated, std::move(completion));
}

// --- Input --------------------------------------------------------------------------------------

double UIWindow::eventTime(double time) const {
    return std::isfinite(time) ? time : NSRunLoop::mainRunLoop().now();
}

bool UIWindow::wantsTouchAt(CGPoint point) {
    assertMainThread("UIWindow::wantsTouchAt");
    const auto self = refTo(this);
    layoutIfNeeded();
    return touches_->wants({finiteCoordinate(point.x), finiteCoordinate(point.y)});
}

bool UIWindow::touch(UITouchPhase phase, std::int64_t id, CGPoint point, double time,
                     UITouchSource source) {
    assertMainThread("UIWindow::touch");
    const auto self = refTo(this);
    NSRunLoop::mainRunLoop().noteTime(time);
    time = eventTime(time);
    layoutIfNeeded();
    point = {finiteCoordinate(point.x), finiteCoordinate(point.y)};
    bool isTaken = false;
    switch (phase) {
    case UITouchPhase::began:
        keysAreInUse_ = false;
        if (focus_)
            focus_->touchLanded();
        endHover();
        return touches_->began(UITouch(id, point, time, source));
    case UITouchPhase::moved:
        return touches_->moved(id, point, time);
    case UITouchPhase::ended:
        isTaken = touches_->ended(id, point, time);
        break;
    case UITouchPhase::cancelled:
        isTaken = touches_->cancelled(id, time);
        break;
    }
    wakeForCaptions();
    return isTaken;
}

bool UIWindow::wheel(CGPoint point, CGPoint delta, double time) {
    assertMainThread("UIWindow::wheel");
    const auto self = refTo(this);
    NSRunLoop::mainRunLoop().noteTime(time);
    layoutIfNeeded();
    UIView* const hit = hitTest({finiteCoordinate(point.x), finiteCoordinate(point.y)});
    routeWheel(*this, hit, delta);
    return hit != nullptr;
}

void UIWindow::hover(CGPoint point) {
    assertMainThread("UIWindow::hover");
    const auto self = refTo(this);
    if (touches_->hasFingers())
        return;
    layoutIfNeeded();
    if (!hover_)
        hover_ = std::make_unique<HoverMark>(*this);
    hover_->moveTo({finiteCoordinate(point.x), finiteCoordinate(point.y)});
    followHover();
}

void UIWindow::endHover() {
    assertMainThread("UIWindow::endHover");
    if (hover_)
        hover_->hide();
    hover_.reset();
}

void UIWindow::followHover() {
    if (hover_ && !hover_->follow())
        hover_.reset();
}

bool UIWindow::key(UIKey key, UIKeyRepeat repeat, double time) {
    assertMainThread("UIWindow::key");
    const auto self = refTo(this);
    NSRunLoop& loop = NSRunLoop::mainRunLoop();
    loop.noteTime(time);
    const auto top = presentedViewController();
    if (!top)
        return false;
    keysAreInUse_ = true;
    if (key == UIKey::back) {
        if (repeat == UIKeyRepeat::pressed)
            top->dismissViewControllerAnimated(true);
        return true;
    }
    layoutIfNeeded();
    if (top->isBeingDismissed() || presentedViewController() != top)
        return true;
    if (!focus_)
        focus_ = std::make_unique<KeyFocus>(*this, *touches_);
    return focus_->key(key, repeat, loop.now(), top, edgeKeys_);
}

std::optional<UIFocus> UIWindow::focus() {
    layoutIfNeeded();
    return focus_ ? focus_->focus() : std::nullopt;
}

bool UIWindow::moveFocus(std::string_view identifier) {
    assertMainThread("UIWindow::moveFocus");
    const auto self = refTo(this);
    layoutIfNeeded();
    const auto top = presentedViewController();
    if (!top || top->isBeingDismissed())
        return false;
    if (!focus_)
        focus_ = std::make_unique<KeyFocus>(*this, *touches_);
    return focus_->moveTo(identifier, top);
}

void UIWindow::cancelTouches(double time) {
    assertMainThread("UIWindow::cancelTouches");
    const auto self = refTo(this);
    NSRunLoop::mainRunLoop().noteTime(time);
    touches_->cancelAll(eventTime(time));
    wakeForCaptions();
}

void UIWindow::cancelTouchesIn(const UIView& view) {
    touches_->cancelInside(view, NSRunLoop::mainRunLoop().now());
}

UIView* UIWindow::hitTest(CGPoint point) {
    UIView* const hit = UIView::hitTest(point);
    if (hit && isLeafControl(*hit))
        return hit;
    if (!hit || hit == this)
        return nearestControl(*this, point);
    // Only in the same card: it hides the controls behind it.
    UIView* front = hit;
    while (front->superview() != this)
        front = front->superview();
    UIControl* const control = nearestControl(*front, point);
    return control ? control : hit;
}

// --- Accessibility ------------------------------------------------------------------------------

void UIWindow::setAccessibilityObserver(UIAccessibilityObserver* observer) {
    assertMainThread("UIWindow::setAccessibilityObserver");
    const auto self = refTo(this);
    accessibility_ = observer ? std::make_unique<AccessibilityMonitor>(*this, *observer) : nullptr;
    presentations_->accessibilityObserverChanged();
}

void UIWindow::updateAccessibility() {
    assertMainThread("UIWindow::updateAccessibility");
    const auto self = refTo(this);
    if (accessibility_)
        accessibility_->update();
}

void UIWindow::announce(std::string text) {
    assertMainThread("UIWindow::announce");
    if (accessibility_)
        accessibility_->announce(std::move(text));
}

} // namespace tesmar
