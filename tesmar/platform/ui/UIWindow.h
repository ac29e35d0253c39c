// The host's interface to the toolkit: one surface over the host's own picture.
//
// The host makes a window, feeds it touches, wheel and keys, pumps the main run loop
// (NSRunLoop::mainRunLoop()), and renders when needsRender() returns true:
//
//     for (;;) {
//         feed events, each with its time;
//         NSRunLoop::mainRunLoop().advanceTo(now);
//         if (window->needsRender())
//             show the rectangles that window->render(pixels, stride) returns;
//         sleep until the next event, or NSRunLoop::mainRunLoop().nextDeadline();
//     }
//
// A host that sleeps in somebody else's event loop is woken by NSRunLoop::setWakeHandler().
//
// Pixels are premultiplied ARGB32 in native byte order, as other libraries call it:
//
//     Qt            QImage::Format_ARGB32_Premultiplied
//     cairo         CAIRO_FORMAT_ARGB32
//     GTK 4         GDK_MEMORY_DEFAULT
//     OpenGL        GL_BGRA with GL_UNSIGNED_INT_8_8_8_8_REV
//     SDL 2         SDL_PIXELFORMAT_ARGB8888
//     mpv           "bgra" of overlay-add (little-endian machines)
//
// Where the blending is the host's, the source counts once and what is below it 1 - alpha:
// GL_ONE and GL_ONE_MINUS_SRC_ALPHA, with SDL the factors of the same names.
//
// Main thread only: the main thread is the first one that uses the user interface. A library that
// was built with assertions (without NDEBUG) ends the process when another thread calls, with one
// line that names the function. Positions and sizes are in points, times in seconds on one
// monotonic clock.
#pragma once

#include "tesmar/platform/graphics/CGContext.h"
#include "tesmar/platform/ui/UIKey.h"
#include "tesmar/platform/ui/UITouch.h"
#include "tesmar/platform/ui/UIView.h"
#include "tesmar/platform/ui/UIViewController.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string_view>

namespace tesmar {

class AccessibilityMonitor;
class DamageHistory;
class DamageRegion;
class HoverMark;
class KeyFocus;
class TouchDispatcher;
class UIAccessibilityObserver;

// What a tap outside all cards does: nothing, or dismiss the topmost controller.
enum class OutsideTap { ignored, dismisses };
// What a drag down on a card does, beside its controls and what scrolls: nothing, or move the card
// with the finger and, when it lets go far enough down or moving fast, dismiss it.
enum class DragDown { ignored, dismisses };

class TESMAR_API UIWindow : public UIView {
    TESMAR_CLASS

  public:
    // `size` in points, clamped to 0 to 65,535; `scale` in pixels per point, clamped to 0.1 to 16
    // (one that is NaN, or not positive, becomes 1). A scale that would make a side of the surface
    // longer than 32,767 pixels is lowered to fit, until the size allows it again.
    static Ref<UIWindow> windowWithSize(CGSize size, CGFloat scale = 1);

    UIWindow();
    ~UIWindow() override;

    void setSize(CGSize size);
    CGFloat scale() const { return scale_; }
    void setScale(CGFloat scale);
    // Both at once, for a surface of exactly `width` × `height` pixels (clamped to 0 to 32,767):
    // the size becomes that divided by the scale, without rounding, and pixelSize() returns these
    // two. setSize() rounds up instead: a pixel that a point covers partly belongs to the surface.
    void setPixelSize(int width, int height, CGFloat scale);
    // Margins of the surface that cards keep clear of; initially zero, clamped to 0 to 65,535
    // points (NaN becomes 0).
    UIEdgeInsets safeAreaInsets() const { return safeArea_; }
    void setSafeAreaInsets(UIEdgeInsets insets);
    // The area of the host's captions in window coordinates, which cards keep clear of where there
    // is room. std::nullopt (initially) or an empty rectangle: no captions. Takes effect when no
    // finger is down, so that no control moves away from under one. A card that has been shown
    // keeps its upper edge where that leaves enough room, and moves the rest within 0.2 seconds.
    std::optional<CGRect> captionArea() const { return captionArea_; }
    void setCaptionArea(std::optional<CGRect> area);
    // Initially ignored. With OutsideTap::dismisses, the window handles a touch outside all cards
    // while a controller is presented.
    void setOutsideTap(OutsideTap behaviour) { outsideTap_ = behaviour; }
    OutsideTap outsideTap() const { return outsideTap_; }
    // Initially ignored.
    void setDragDown(DragDown behaviour) { dragDown_ = behaviour; }
    DragDown dragDown() const { return dragDown_; }
    // How much of its light what is presented keeps, for dark rooms: 1 (initially) to 0.4, clamped
    // (NaN becomes 1). Black text on the card stays legible at all of them.
    double presentedBrightness() const { return presentedBrightness_; }
    void setPresentedBrightness(double brightness);

    // The controller whose view covers the window, below everything that is presented. The view is
    // transparent, and the window does not handle touches that hit none of its subviews.
    const Ref<UIViewController>& rootViewController() const { return rootController_; }
    // The topmost presented controller, or null.
    Ref<UIViewController> presentedViewController() const;
    // Presents over the topmost controller; see UIViewController. The motion starts at its first
    // frame, so a host that has slept need not pass the time on first. Without motion it does, by
    // NSRunLoop::noteTime(): delays, such as the panel's auto-hide interval, count from that time.
    void presentViewController(const Ref<UIViewController>& controller, bool animated,
                               UIViewController::Completion completion = {});

    // --- Input ----------------------------------------------------------------------------------
    // Each returns whether the window handled the event; events that it did not handle are the
    // host's to use. A touch that the window took when it began belongs to the window until it
    // ends.

    // Whether the window would handle a touch that began at `point` now, taps outside all cards
    // included: for hosts that must decide whom an event belongs to before they pass it on.
    bool wantsTouchAt(CGPoint point);
    // `time` should be the event's own, even if it is older than what the run loop has reached: the
    // speed of a flick comes from these times. Of one finger they never go back (NaN counts as the
    // run loop's time). `id` distinguishes fingers. Events of a finger that never landed are not
    // handled. If a finger lands twice, or more than 32 are down, the window assumes that this
    // finger, or the oldest, lifted without an event, and cancels its touch. `source` counts when
    // the touch begins.
    bool touch(UITouchPhase phase, std::int64_t id, CGPoint point, double time,
               UITouchSource source = UITouchSource::finger);
    // One notch of a wheel, in points. Devices with finer steps send fractions of it.
    static constexpr CGFloat kWheelNotch = 40;
    // `delta` in points; positive scrolls towards the content's start. Handled over any view, even
    // one that does not scroll: beside what scrolls in a card, it moves the card's content. Where
    // content scrolls sideways only, `delta.y` moves it as well.
    bool wheel(CGPoint point, CGPoint delta, double time);
    // Only for a mouse, or another pointer that is somewhere without a touch: it is at `point`.
    // Marks the control that a click there would operate, until a touch begins. Does nothing while
    // a touch lasts, so a host calls it again when the button of the mouse is released.
    void hover(CGPoint point);
    // The mouse has left the window, or is hidden: takes the mark away.
    void endHover();
    // Operates the topmost presented controller; no key is handled while there is none. Arrows move
    // the focus within a row and to the next row; Tab moves it from group to group. A key that
    // finds the focus hidden, as it is at first and after each touch, only shows it. Arrows, Tab,
    // plus and minus repeat after 0.4 seconds and then every 0.1 seconds, however often the host
    // reports that they are held; other keys don't repeat.
    bool key(UIKey key, UIKeyRepeat repeat, double time);
    // Initially taken: see UIEdgeKeys.
    void setEdgeKeys(UIEdgeKeys behaviour) { edgeKeys_ = behaviour; }
    UIEdgeKeys edgeKeys() const { return edgeKeys_; }
    // Whether the viewer last used a key that the window handled, rather than a touch. A host that
    // is notified of a dismissal (TESMARViewControllerDelegate,
    // UIViewController::viewWillDisappear) can then put its own focus back.
    bool keysAreInUse() const { return keysAreInUse_; }
    // std::nullopt before the first key of a presentation.
    std::optional<UIFocus> focus();
    // Moves the focus to the cell with this identifier in the topmost controller, and shows and
    // reveals it there as after a key: for a screen reader. Returns false, and does nothing, when
    // there is no such cell or the controller is being dismissed. May call the controller.
    bool moveFocus(std::string_view identifier);
    // Cancels the touches of all fingers, for example when the host loses the focus.
    void cancelTouches(double time);

    // Cancels the touches of `view` and what is in it; drags of scroll views go on.
    void cancelTouchesIn(const UIView& view);

    // --- Accessibility: see UIAccessibility.h ---------------------------------------------------

    // Null, the initial value, for none. Not owned: an observer must be removed before it is
    // destroyed. Presented controllers are told.
    void setAccessibilityObserver(UIAccessibilityObserver* observer);
    bool hasAccessibilityObserver() const { return accessibility_ != nullptr; }
    // Notifies the observer of what has changed since the last call; to be called in every turn of
    // the host's loop. Without an observer it does nothing.
    void updateAccessibility();
    // Has `text` spoken at the next update; dropped without an observer.
    void announce(std::string text);

    // --- Pixels ---------------------------------------------------------------------------------

    // Of the surface, in whole device pixels.
    CGSize pixelSize() const;
    // Whether any pixel of the surface is out of date. Lays out first.
    bool needsRender();
    // Repaints the pixels that are out of date in `pixels`: premultiplied ARGB32 in native byte
    // order, of pixelSize(), with rows `stride` bytes apart (a multiple of 4). `bufferAge` counts
    // the frames since these pixels were painted, as EGL_BUFFER_AGE_EXT does: 1 for those of the
    // last frame (a host with one buffer), 2 or 3 when buffers take turns. 0, a negative age, and
    // one of more than 4 mean that the content is unknown, and everything is painted. Returns the
    // repainted rectangles, valid until the next call; empty when there were none.
    //
    // Paints nothing, and the same pixels remain out of date, when `pixels` is shorter than the
    // rows, or `stride` is shorter than a row; the pixels also remain out of date when a view's
    // drawing throws. Nothing outside the rows is written.
    std::span<const PixelRect> render(std::span<std::uint32_t> pixels, int stride,
                                      int bufferAge = 1);
    // Paints these rectangles, clipped to the surface, as the views are now, and changes nothing of
    // what is out of date: for hosts that keep no pixels, or copy into buffers of another age.
    // Returns false, and paints nothing, where render() would not either.
    bool repaint(std::span<std::uint32_t> pixels, int stride, std::span<const PixelRect> rects);
    // Outside this rectangle all pixels are transparent; empty when nothing is shown. Lays out
    // first. Hosts that copy or blend need no more than these pixels.
    PixelRect visibleBounds();
    // Marks every pixel as out of date, for example when the host's buffer is new or was lost.
    void invalidate();

    // --- For views ------------------------------------------------------------------------------

    // The captionArea() that has taken effect.
    const std::optional<CGRect>& avoidedArea() const { return avoidedArea_; }
    // What cards have at most: the safe area without a margin.
    CGRect cardRoom() const;
    // Where a controller that prefers this size would be presented now.
    CGRect presentedFrame(UIModalPresentationStyle style, CGSize size) const;
    // The pixels of the surface that `rect` (window coordinates) covers, even partly.
    PixelRect surfacePixels(const CGRect& rect) const;
    // Marks these pixels of the surface as out of date.
    void damagePixels(const PixelRect& pixels);
    // Whether every pixel of the surface is out of date.
    bool isDamagedWholly() const;
    // Includes controls that take touches around their bounds.
    UIView* hitTest(CGPoint point) override;
    void layoutSubviews() override;

  protected:
    void drawOverlay(CGRect rect) override;
    bool subviewsAreLayoutRoots() const override { return true; }

  private:
    friend class AccessibleTree;

    void resize(CGSize size, CGFloat scale);
    double eventTime(double time) const;
    void prepareFrame();
    void avoidCaptions();
    void wakeForCaptions() const;
    void followHover();
    void paintRects(std::uint32_t* pixels, int stride, std::span<const PixelRect> rects);

    CGFloat scale_ = 1;
    CGFloat wantedScale_ = 1; // as it was set
    UIEdgeInsets safeArea_;
    std::optional<CGRect> captionArea_;
    std::optional<CGRect> avoidedArea_;
    OutsideTap outsideTap_ = OutsideTap::ignored;
    UIEdgeKeys edgeKeys_ = UIEdgeKeys::taken;
    bool keysAreInUse_ = false;
    DragDown dragDown_ = DragDown::ignored;
    double presentedBrightness_ = 1;
    Ref<UIViewController> rootController_;
    std::unique_ptr<PresentationStack> presentations_;
    std::unique_ptr<TouchDispatcher> touches_;
    std::unique_ptr<AccessibilityMonitor> accessibility_; // null without an observer
    std::unique_ptr<KeyFocus> focus_;                     // null before the first key
    std::unique_ptr<HoverMark> hover_;                    // null unless the mouse is on a control
    std::unique_ptr<DamageRegion> damage_;
    std::unique_ptr<DamageHistory> history_;
    std::unique_ptr<DamageRegion> repainted_; // by the last render()
    // Reused from frame to frame for its memory; null while a frame is painted.
    std::unique_ptr<CGContext> context_;
};

} // namespace tesmar
