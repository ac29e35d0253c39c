// A picture: premultiplied ARGB pixels with the number of pixels that make a point. Immutable.
#pragma once

#include "tesmar/platform/foundation/NSObject.h"
#include "tesmar/platform/geometry/geometry.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace tesmar {

class NSBundle;

class TESMAR_API UIImage : public NSObject {
    TESMAR_CLASS

  public:
    UIImage(); // no pixels
    ~UIImage() override;

    // No image has more pixels than this each way, nor more than kMaximumPixels in all.
    static constexpr int kMaximumSide = 8192;
    static constexpr int kMaximumPixels = 16 * 1024 * 1024;

    // The PNG of that name in the main bundle. Of "name@3x.png", "name@2x.png" and "name.png" the
    // one that suits mainScreenScale: the smallest scale that is not below it, else the largest.
    // Null, with a diagnostic, when there is none or when it is broken or too large.
    static Ref<UIImage> imageNamed(std::string_view name);
    static Ref<UIImage> imageNamedFrom(std::string_view name, const NSBundle& bundle);
    // Null for bytes that are no whole PNG or that are too large. `scale` is held to 0.1…16.
    static Ref<UIImage> imageWithPNGData(std::string_view bytes, CGFloat scale);

    CGSize size() const; // points
    CGFloat scale() const;
    int pixelWidth() const;
    int pixelHeight() const;
    // Premultiplied ARGB; 0 outside.
    std::uint32_t pixel(int x, int y) const;
    // The first row; rows are bytesPerRow() apart. Lives as long as the image.
    const std::uint32_t* pixels() const;
    int bytesPerRow() const;

    // Nothing on a failure to encode.
    std::optional<std::string> PNGData() const;
    // False when the file can't be written.
    bool writePNG(const std::string& path) const;

    // Pixels in a point on the main screen, 1 until the host says otherwise; 0.1 to 16. Main
    // thread.
    static CGFloat mainScreenScale();
    static void setMainScreenScale(CGFloat scale);

    // Added by the caption library
    static Ref<UIImage> emptyImageForBorders();

    // Behind this header: the drawing library's surface.
    struct Impl;
    const Impl& impl() const { return *impl_; }
    static Ref<UIImage> imageWithImpl(std::unique_ptr<Impl> impl);

  private:
    std::unique_ptr<Impl> impl_;
};

// Image contexts: a new transparent (or, when opaque, black) picture becomes the current context.
// `scale` 0 means the main screen's. A size that is empty, not finite or beyond the largest image
// still opens a context, which draws nothing and gives no image. They nest, and belong to the
// thread that opened them.
TESMAR_API void UIGraphicsBeginImageContextWithOptions(CGSize size, bool opaque, CGFloat scale);
// What has been drawn so far, as a new image each time; null when the current context is no image
// context.
TESMAR_API Ref<UIImage> UIGraphicsGetImageFromCurrentImageContext();
// Does nothing when the current context is no image context.
TESMAR_API void UIGraphicsEndImageContext();

// Writes a premultiplied ARGB buffer (as a CGContext draws it; sizes in pixels, stride in bytes) to
// a PNG file. False when that fails.
TESMAR_API bool writePNG(const std::string& path, const void* pixels, int width, int height,
                         int stride);

} // namespace tesmar
