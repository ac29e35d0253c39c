// A drawing context over pixels that the caller owns.
//
// Coordinates are in points and y grows downwards; `scale` device pixels make one point. Drawing
// the same thing once through each of several clips that tile the surface produces exactly the
// bytes of one unclipped drawing: clips consist of whole device pixels, and curved shapes are
// painted through cached coverage masks that do not depend on the clip. Every number passed in is
// made finite: NaN counts as 0 (a scale as 1), and values out of range are clamped.
//
// Only one thread at a time may use a context; different threads may use different contexts.
#pragma once

#include "tesmar/platform/foundation/export.h"
#include "tesmar/platform/geometry/geometry.h"

#include <memory>

namespace tesmar {

class UIColor;
class UIImage;

// A rectangle of whole device pixels.
struct PixelRect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    int right() const { return x + width; }
    int bottom() const { return y + height; }
    bool isEmpty() const { return width <= 0 || height <= 0; }
    bool operator==(const PixelRect&) const = default;
};

// `r`, in points, as device pixels at `scale` pixels per point (clamped to 0.1…16). Each edge is
// rounded to the nearest pixel, but a rectangle that is not empty keeps at least one pixel in both
// directions. Edges are clamped to ±4,194,304.
TESMAR_API PixelRect snappedToPixels(const CGRect& r, CGFloat scale);

// All zero when the rectangles share no pixel.
TESMAR_API PixelRect intersection(const PixelRect& a, const PixelRect& b);

class TESMAR_API CGContext {
  public:
    // Draws into `pixels`: premultiplied ARGB, one native-endian 32-bit word per pixel, with rows
    // `stride` bytes apart (at least 4 * width, and a multiple of 4). The memory stays the
    // caller's, is not cleared, and must outlive the context or the call of finish(). `width` and
    // `height` are in device pixels, 1 to 32767; `scale` is in device pixels per point, clamped to
    // 0.1…16. With null pixels or a size out of range the context draws nothing.
    CGContext(void* pixels, int width, int height, int stride, CGFloat scale);
    // Draws nothing until drawInto() is called.
    CGContext();
    ~CGContext();
    // Starts again on other pixels, in the initial state. The same as a new context, but reuses
    // this one's memory.
    void drawInto(void* pixels, int width, int height, int stride, CGFloat scale);
    // Ends the use of the pixels; draws nothing until drawInto() is called again.
    void finish();
    CGContext(const CGContext&) = delete;
    CGContext& operator=(const CGContext&) = delete;

    // Device pixels per point.
    CGFloat scale() const;

    // The state: colours, line width, alpha, translation and clip. Each save needs one restore; a
    // restore without a save does nothing.
    void saveGState();
    void restoreGState();

    // Initially opaque black.
    void setFillColor(const UIColor& color);
    void setStrokeColor(const UIColor& color);
    // Sets the fill colour from components, each 0 to 1.
    void setRGBFillColor(CGFloat red, CGFloat green, CGFloat blue, CGFloat alpha);
    // In points; initially 1. Zero and negative widths stroke nothing.
    void setLineWidth(CGFloat width);
    // Multiplies the alpha, initially 1, that applies to everything drawn from now on.
    void setAlpha(CGFloat alpha);
    // Moves the origin, in points.
    void translate(CGFloat dx, CGFloat dy);

    // Intersects the clip with `r`, in device pixels of the whole surface: the translation does not
    // apply.
    void clipToPixels(const PixelRect& r);
    // The clip, in device pixels of the whole surface.
    PixelRect clipPixels() const;

    // `r`, in points, with its edges moved to device pixels (see snappedToPixels); takes the
    // translation into account.
    CGRect snapped(const CGRect& r) const;
    // A rectangle of whole device pixels whose middle is as near to `center` as they allow. Its
    // size is `size` rounded, at least one pixel each way, and does not depend on the place.
    CGRect snapped(CGPoint center, CGSize size) const;
    // The device pixels of `r`, in points of the current origin.
    PixelRect pixels(const CGRect& r) const;

    // Uses the fill colour. Edges that lie on device pixels are exact, others are antialiased.
    void fillRect(const CGRect& r);
    // Fills the ellipse inscribed in `r`; an empty rectangle draws nothing.
    void fillEllipse(const CGRect& r);
    // Strokes the inscribed ellipse with the stroke colour; the line is centred on its edge.
    void strokeEllipse(const CGRect& r);
    // The radius, in points, is clamped to half of the shorter side.
    void fillRoundedRect(const CGRect& r, CGFloat radius);
    // Fills only what lies within `width` points of the rounded rectangle's edge; zero and negative
    // widths fill nothing.
    void fillRoundedFrame(const CGRect& r, CGFloat radius, CGFloat width);

    // The soft shadow of the rounded rectangle, moved by `offset` (each way clamped to ±100 points
    // and ±300 pixels) and reaching `blur` points (clamped to 0…100, and to 300 pixels) beyond its
    // edge. Draws nothing inside the rounded rectangle itself, which may therefore be translucent.
    // The limits in pixels bound the time: a first shadow takes at most about 0.1 s, and the same
    // again next to none.
    void drawShadow(const CGRect& r, CGFloat radius, CGFloat blur, CGPoint offset,
                    const UIColor& color);

    // Draws the image, scaled to the snapped rectangle.
    void drawImage(const UIImage& image, const CGRect& r);
    // Fills the image's shape, its alpha, with one colour. A shape without translucent pixels keeps
    // sharp edges at every size.
    void drawImage(const UIImage& image, const CGRect& r, const UIColor& tint);
    // Draws premultiplied ARGB pixels, in the constructor's format, at `place`, in device pixels of
    // the whole surface and one device pixel each: the translation does not apply. Sizes out of
    // range draw nothing. The memory is only read, and not used after the call.
    void drawPixels(const void* pixels, const PixelRect& place, int stride);

    // Makes pixels of the whole surface transparent, within the clip; alpha and translation do not
    // apply.
    void clearPixels(const PixelRect& r);

    // Composes everything drawn between the two calls as one picture, with `alpha` from 0 to 1.
    // Also saves and restores the state; saves inside the layer that lack a restore end with it.
    // Layers nest.
    void beginTransparencyLayer(CGFloat alpha);
    void endTransparencyLayer();

    // For the text layer: the implementation, which uses the drawing library.
    class Impl;
    Impl& impl() { return *impl_; }

  private:
    std::unique_ptr<Impl> impl_;
};

// The same operations under the platform's names.
inline void CGContextSetFillColorWithColor(CGContext& c, const UIColor& color) {
    c.setFillColor(color);
}
inline void CGContextSetStrokeColorWithColor(CGContext& c, const UIColor& color) {
    c.setStrokeColor(color);
}
inline void CGContextSetLineWidth(CGContext& c, CGFloat width) {
    c.setLineWidth(width);
}
inline void CGContextFillRect(CGContext& c, const CGRect& r) {
    c.fillRect(r);
}
inline void CGContextFillEllipseInRect(CGContext& c, const CGRect& r) {
    c.fillEllipse(r);
}
inline void CGContextStrokeEllipseInRect(CGContext& c, const CGRect& r) {
    c.strokeEllipse(r);
}

} // namespace tesmar
