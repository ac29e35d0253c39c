// A host without a screen: pixels in memory, time that moves when it is told to. Tests, tools and
// the smallest embedding use it; it is as real a host as one with a window.
#pragma once

#include "tesmar/platform/ui/UIWindow.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace tesmar {

class TESMAR_API HeadlessHost {
  public:
    // Size in points, scale in pixels per point; held within UIWindow's limits. The host's time
    // starts at the main run loop's.
    explicit HeadlessHost(CGSize size, CGFloat scale = 1);

    const Ref<UIWindow>& window() const { return window_; }
    // Throws the pixels away; the next frame paints everything.
    void resize(CGSize size, CGFloat scale);

    // --- Time -----------------------------------------------------------------------------------

    // Seconds since the start.
    double now() const { return now_; }
    // Lets `seconds` pass, stopping at every deadline on the way. Not positive: only what is due.
    void advance(double seconds);

    // --- Input, at the present time; points in the window ---------------------------------------

    bool touch(UITouchPhase phase, CGPoint point, std::int64_t id = 0);
    // Down and up in no time.
    void tap(CGPoint point, std::int64_t id = 0);
    // From `start` by `distance` in `seconds`, in sixtieths of a second, then up.
    void drag(CGPoint start, CGPoint distance, double seconds, std::int64_t id = 0);

    // --- Pixels ---------------------------------------------------------------------------------

    // Paints what is out of date; answers the rectangles (empty when nothing was).
    std::span<const PixelRect> render();
    // Premultiplied ARGB, as of the last render(); rows follow one another without a gap.
    const std::vector<std::uint32_t>& pixels() const { return pixels_; }
    int pixelWidth() const { return width_; }
    int pixelHeight() const { return height_; }
    // Renders, and writes the picture over an opaque `backdrop` (null: transparent). Returns false
    // when the file cannot be written.
    bool writePNG(const std::string& path, const Ref<UIColor>& backdrop = nullptr);
    // The same over an opaque picture, laid out like pixels(). Also returns false when it has
    // another number of pixels.
    bool writePNG(const std::string& path, std::span<const std::uint32_t> backdrop);

  private:
    void allocate();
    // Over `picture`, which has as many pixels.
    bool writeOver(const std::string& path, std::vector<std::uint32_t> picture) const;

    Ref<UIWindow> window_;
    std::vector<std::uint32_t> pixels_;
    int width_ = 0;
    int height_ = 0;
    double start_ = 0; // the run loop's time when this host began
    double now_ = 0;
};

} // namespace tesmar
