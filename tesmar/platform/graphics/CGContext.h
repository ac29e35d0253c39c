// A drawing context over pixels that the caller owns.
//
// Coordinates are points, y grows down; `scale` device pixels make a point. Drawing through any set
// of clip rectangles that tile the surface gives, byte for byte, the pixels of one unclipped
// drawing: clips fall on whole device pixels, and a curved shape is rendered whole, once, into a
// coverage mask that is kept and painted through. Numbers that are not finite draw nothing strange:
// they are made finite first.
//
// A context belongs to one thread at a time; several threads may each draw into their own.
#pragma once

#include "tesmar/platform/foundation/NSObject.h"
#include "tesmar/platform/foundation/export.h"
#include "tesmar/platform/geometry/geometry.h"

#include <cstdint>
#include <memory>
#include <span>

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

// The pixels of `r` at `scale`: every edge goes to the nearest device pixel, but a rectangle that
// is not empty keeps at least one pixel each way. Held within what fits an int.
TESMAR_API PixelRect snappedToPixels(const CGRect& r, CGFloat scale);

// Empty (all zero) when the rectangles share no pixel.
TESMAR_API PixelRect intersection(const PixelRect& a, const PixelRect& b);

enum class LineCap { butt, round };

class TESMAR_API CGContext {
  public:
    // Draws into `pixels`: premultiplied ARGB, one native-endian 32-bit word a pixel, rows `stride`
    // bytes apart (at least 4 * width, a multiple of 4). The memory stays the caller's, is not
    // cleared, and must outlive the context. Sizes are in device pixels, at most 32767 each way;
    // `scale` is from 0.1 to 16. Impossible sizes give a context that draws nothing.
    CGContext(void* pixels, int width, int height, int stride, CGFloat scale);
    // Draws nothing until it is told where.
    CGContext();
    ~CGContext();
    // As newly made, over other pixels, in the memory that it has.
    void drawInto(void* pixels, int width, int height, int stride, CGFloat scale);
    // Lets the pixels go; draws nothing until it is told where again.
    void finish();
    CGContext(const CGContext&) = delete;
    CGContext& operator=(const CGContext&) = delete;

    CGFloat scale() const;
    int pixelWidth() const;
    int pixelHeight() const;

    // State: colours, line width, alpha, translation and clip. Every save needs its restore; a
    // restore too many does nothing.
    void saveGState();
    void restoreGState();

    // Black, opaque at the start.
    void setFillColor(const UIColor& color);
    void setStrokeColor(const UIColor& color);
    // The same without a colour object; each from 0 to 1.
    void setRGBFillColor(CGFloat red, CGFloat green, CGFloat blue, CGFloat alpha);
    // Points; 1 at the start. Zero and less strokes nothing.
    void setLineWidth(CGFloat width);
    // Multiplies the alpha of everything drawn from now on; 1 at the start.
    void setAlpha(CGFloat alpha);
    // Moves the origin, in points.
    void translate(CGFloat dx, CGFloat dy);

    // Narrows the clip to the snapped rectangle.
    void clipToRect(const CGRect& r);
    // The same in device pixels of the whole surface, whatever the translation.
    void clipToPixels(const PixelRect& r);
    // The clip in points of the current origin; empty when nothing can be drawn.
    CGRect clipBounds() const;
    // The clip in device pixels of the whole surface.
    PixelRect clipPixels() const;

    // `r`, in points, with its edges on device pixels (see snappedToPixels), in points again. It
    // takes the translation into account.
    CGRect snapped(const CGRect& r) const;
    // The device pixels of `r`, in points of the current origin.
    PixelRect pixels(const CGRect& r) const;

    // Filled with the fill colour. Edges on device pixels are exact, others are antialiased.
    void fillRect(const CGRect& r);
    // The ellipse inscribed in `r`; an empty rectangle draws nothing.
    void fillEllipse(const CGRect& r);
    // Centred on the ellipse, with the stroke colour and the line width.
    void strokeEllipse(const CGRect& r);
    // The radius is held to half of the shorter side.
    void fillRoundedRect(const CGRect& r, CGFloat radius);
    // Through the points in turn, with the stroke colour and round joins; `width` in points. Fewer
    // than two points draw nothing.
    void strokePolyline(std::span<const CGPoint> points, CGFloat width, LineCap cap);

    // The soft shadow that the rounded rectangle casts when it is moved by `offset`; `blur` is the
    // distance in points, 0 to 100, to which the shadow reaches beyond its own edge. Nothing is
    // drawn inside the rounded rectangle itself, so that it may be translucent.
    void drawShadow(const CGRect& r, CGFloat radius, CGFloat blur, CGPoint offset,
                    const UIColor& color);

    // The image in the snapped rectangle, scaled to it.
    void drawImage(const UIImage& image, const CGRect& r);
    // The image's shape in one colour.
    void drawImage(const UIImage& image, const CGRect& r, const UIColor& tint);

    // Makes the snapped rectangle transparent, whatever the alpha.
    void clearRect(const CGRect& r);
    // The same in device pixels of the whole surface. The clip counts.
    void clearPixels(const PixelRect& r);

    // What is drawn between the two calls comes out as one picture, `alpha` (0 to 1) opaque. Saves
    // and restores the state too. Layers nest.
    void beginTransparencyLayer(CGFloat alpha);
    void endTransparencyLayer();

    // For the text floor: the drawing library's surface and state behind this header.
    class Impl;
    Impl& impl() { return *impl_; }

  private:
    std::unique_ptr<Impl> impl_;
};

// The contexts that views and images draw into, one stack a thread. Null when there is none.
TESMAR_API CGContext* UIGraphicsGetCurrentContext();
TESMAR_API void UIGraphicsPushContext(CGContext& context);
// Does nothing when there is none, or when the current one is an image context.
TESMAR_API void UIGraphicsPopContext();

// The platform's own names.
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
inline void CGContextClearRect(CGContext& c, const CGRect& r) {
    c.clearRect(r);
}
inline void CGContextFillEllipseInRect(CGContext& c, const CGRect& r) {
    c.fillEllipse(r);
}
inline void CGContextStrokeEllipseInRect(CGContext& c, const CGRect& r) {
    c.strokeEllipse(r);
}
inline void CGContextSaveGState(CGContext& c) {
    c.saveGState();
}
inline void CGContextRestoreGState(CGContext& c) {
    c.restoreGState();
}
inline void CGContextTranslateCTM(CGContext& c, CGFloat dx, CGFloat dy) {
    c.translate(dx, dy);
}
inline void CGContextClipToRect(CGContext& c, const CGRect& r) {
    c.clipToRect(r);
}

} // namespace tesmar
