// A host without a screen: its pixels are in memory, and its time moves only when told to. For
// tests, tools, and programs that render without a display. Main thread only.
//
// Toolkit: may change with any version.
#pragma once

#include "tesmar/platform/ui/UIWindow.h"

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace tesmar {

class TESMAR_API HeadlessHost {
  public:
    // `size` in points, `scale` in pixels per point, both clamped to UIWindow's limits. Throws
    // std::bad_alloc when there is no memory for the pixels.
    explicit HeadlessHost(CGSize size, CGFloat scale = 1);

    const Ref<UIWindow>& window() const { return window_; }
    // Discards the pixels; the next render() paints everything.
    void resize(CGSize size, CGFloat scale);

    // --- Time -----------------------------------------------------------------------------------

    // Seconds since this host was made.
    double now() const { return now_; }
    // Moves the time, and the main run loop's, forward by `seconds`, clamped to 0 to 10^9 (NaN
    // becomes 0), through every deadline of the run loop on the way. Zero runs only what is due.
    void advance(double seconds);

    // --- Input, at the present time, in window coordinates --------------------------------------

    // As UIWindow::touch.
    bool touch(UITouchPhase phase, CGPoint point, std::int64_t id = 0);
    // As UIWindow::key.
    bool key(UIKey key, UIKeyRepeat repeat = UIKeyRepeat::pressed);
    // A finger lands and lifts at once.
    void tap(CGPoint point, std::int64_t id = 0);
    // A finger lands at `start`, moves by `distance` in steps of a sixtieth of a second for
    // `seconds` (clamped to 0 to 3600), and lifts. The time moves on meanwhile.
    void drag(CGPoint start, CGPoint distance, double seconds, std::int64_t id = 0);

    // --- Pixels ---------------------------------------------------------------------------------

    // Repaints what is out of date. Returns the repainted rectangles, valid until the next call;
    // empty when there were none.
    std::span<const PixelRect> render();
    // Premultiplied ARGB as of the last render(), pixelWidth() words a row without gaps.
    // Valid until the size changes.
    std::span<const std::uint32_t> pixels() const { return {pixels_.get(), pixelCount()}; }
    int pixelWidth() const { return width_; }
    int pixelHeight() const { return height_; }
    // Renders, and writes the picture over an opaque `backdrop` (null: transparent). Returns false
    // when the file cannot be written.
    bool writePNG(const std::string& path, const Ref<UIColor>& backdrop = nullptr);
    // The same over an opaque picture, laid out like pixels(). Also returns false when it has
    // another number of pixels.
    bool writePNG(const std::string& path, std::span<const std::uint32_t> backdrop);

  private:
    struct Free {
        void operator()(void* memory) const { std::free(memory); }
    };

    void allocate();
    std::size_t pixelCount() const {
        return static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_);
    }
    // Over `picture`, which has as many pixels.
    bool writeOver(const std::string& path, std::vector<std::uint32_t> picture) const;

    Ref<UIWindow> window_;
    std::unique_ptr<std::uint32_t[], Free> pixels_;
    int width_ = 0;
    int height_ = 0;
    double start_ = 0; // the run loop's time when this host was made
    double now_ = 0;
};

} // namespace tesmar
