// The host's door to the toolkit: one surface over the host's own picture.
//
// The host makes a window, feeds it touches, wheel and keys, pumps the main run loop
// (NSRunLoop::mainRunLoop()), and asks for pixels when needsRender() says that there are new ones:
//
//     for (;;) {
//         feed events, each with its time;
//         NSRunLoop::mainRunLoop().advanceTo(now);
//         if (window->needsRender())
//             show the rectangles that window->render(pixels, stride) answers;
//         sleep until the next event, or NSRunLoop::mainRunLoop().nextDeadline();
//     }
//
// Main thread only: the first that uses the user interface is the one. Where the library was built
// with assertions (without NDEBUG), a call from another ends the process with one line that names
// it. Positions and sizes are in points, times in seconds on one monotonic clock.
#pragma once

#include "tesmar/platform/graphics/CGContext.h"
#include "tesmar/platform/ui/UITouch.h"
#include "tesmar/platform/ui/UIView.h"
#include "tesmar/platform/ui/UIViewController.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>

namespace tesmar {

class DamageRegion;
class TouchDispatcher;

enum class UIKey { escape };
enum class OutsideTap { ignored, dismisses };

class TESMAR_API UIWindow : public UIView {
    TESMAR_CLASS

  public:
    // `size` in points, `scale` in pixels per point; numbers out of range are held within 0 to
    // 65,535 points and 0.1 to 16 (a scale that is no number, or not positive, becomes 1). No side
    // of the surface is longer than 32,767 pixels: a larger scale is lowered to fit.
    static Ref<UIWindow> windowWithSize(CGSize size, CGFloat scale = 1);

    UIWindow();
    ~UIWindow() override;

    void setSize(CGSize size);
    CGFloat scale() const { return scale_; }
    void setScale(CGFloat scale);
    // The parts of the surface that a card keeps clear of.
    UIEdgeInsets safeAreaInsets() const { return safeArea_; }
    void setSafeAreaInsets(UIEdgeInsets insets);
    // Where the host's captions stand, in window coordinates: cards keep clear of it where there is
    // room. Nothing, or an empty rectangle, for none.
    std::optional<CGRect> captionArea() const { return captionArea_; }
    void setCaptionArea(std::optional<CGRect> area);
    // Whether a tap beside a card dismisses it; ignored at the start.
    void setOutsideTap(OutsideTap behaviour) { outsideTap_ = behaviour; }
    OutsideTap outsideTap() const { return outsideTap_; }

    // Covers the window below everything that is presented; invisible, and lets touches through to
    // the host.
    const Ref<UIViewController>& rootViewController() const { return rootController_; }
    // The topmost presented controller, or null.
    Ref<UIViewController> presentedViewController() const;
    // Presents over the topmost controller. What is to move sets off at the run loop's time: after
    // a sleep, note the time first (NSRunLoop::noteTime), or the motion has passed before it is
    // seen.
    void presentViewController(const Ref<UIViewController>& controller, bool animated,
                               UIViewController::Completion completion = {});

    // --- Input ----------------------------------------------------------------------------------
    // Each answers whether the event was the window's; what was not is the host's to use. A touch
    // that the window took stays the window's until it ends.

    // `id` tells fingers apart. One that moves or lifts without having landed is nobody's; one
    // that lands again, or the oldest of more than a few hands could have, has lifted unheard and
    // is cancelled.
    bool touch(UITouchPhase phase, std::int64_t id, CGPoint point, double time);
    // `delta` in points; positive scrolls towards the content's start.
    bool wheel(CGPoint point, CGPoint delta, double time);
    bool key(UIKey key, double time);
    // The system takes every finger away (the host lost its focus, say).
    void cancelTouches(double time);

    // --- Pixels ---------------------------------------------------------------------------------

    CGSize pixelSize() const;
    // Whether anything on the surface is out of date. Brings the layout up to date to find out.
    bool needsRender();
    // Repaints what is out of date in `pixels`: premultiplied ARGB32 in native byte order, rows
    // `stride` bytes apart (a multiple of 4), pixelSize() large, and left as the last call left it.
    // Answers the rectangles that were repainted, valid until the next call; none when nothing was.
    // Null pixels, or rows shorter than the surface, are not painted on, and when a view's drawing
    // throws the picture is not finished: what was out of date stays so.
    std::span<const PixelRect> render(void* pixels, int stride);
    // Everything is out of date: the host brings another buffer, or lost the old one's pixels.
    void invalidate();

    // --- For views ------------------------------------------------------------------------------

    // The pixels that `rect` touches are out of date.
    void damageSurface(const CGRect& rect);
    // The nearest point on the pixel grid.
    CGPoint snapToPixels(CGPoint point) const;
    UIView* hitTest(CGPoint point) override;
    void layoutSubviews() override;

  protected:
    bool subviewsAreLayoutRoots() const override { return true; }

  private:
    void paintRects(CGContext& context, std::span<const PixelRect> rects);

    CGFloat scale_ = 1;
    UIEdgeInsets safeArea_;
    std::optional<CGRect> captionArea_;
    OutsideTap outsideTap_ = OutsideTap::ignored;
    Ref<UIViewController> rootController_;
    std::unique_ptr<PresentationStack> presentations_;
    std::unique_ptr<TouchDispatcher> touches_;
    std::unique_ptr<DamageRegion> damage_;
    std::unique_ptr<DamageRegion> repainted_; // by the last render()
    // Kept from frame to frame for its memory; taken while a frame is painted.
    std::unique_ptr<CGContext> context_;
};

} // namespace tesmar
