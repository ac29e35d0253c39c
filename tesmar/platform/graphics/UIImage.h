// An image: premultiplied ARGB pixels and a scale in pixels per point. Immutable; may be used by
// any thread.
//
// Toolkit: may change with any version.
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

    // Limits of every image: pixels per side, and pixels in all.
    static constexpr int kMaximumSide = 8192;
    static constexpr int kMaximumPixels = 16 * 1024 * 1024;

    // Loads "name.png", "name@2x.png" or "name@3x.png" from the main bundle: the one with the
    // smallest scale that is not below mainScreenScale, or else with the largest scale. Null, with
    // a diagnostic, if none exists or if the chosen one is broken or too large. `imageNamedFrom`
    // loads from another bundle.
    //
    // The first drawing at another scale loads the file for that scale, from the bundle that the
    // image keeps alive and by the drawing thread, and draws it instead; the image's size
    // and pixels are those of the file loaded first, which is also drawn if the other one is
    // broken. The files should be of one size in points.
    static Ref<UIImage> imageNamed(std::string_view name);
    static Ref<UIImage> imageNamedFrom(std::string_view name, const NSBundle& bundle);
    // Null if the bytes are not a complete PNG, or if the image is too large. `scale` is clamped to
    // 0.1…16.
    static Ref<UIImage> imageWithPNGData(std::string_view bytes, CGFloat scale);

    CGSize size() const;   // points
    CGFloat scale() const; // pixels per point
    int pixelWidth() const;
    int pixelHeight() const;
    // Premultiplied ARGB; 0 outside the image.
    std::uint32_t pixel(int x, int y) const;

    // The image as a PNG file; std::nullopt if encoding fails.
    std::optional<std::string> PNGData() const;

    // Pixels per point of the main screen: initially 1, set by windows, clamped to 0.1…16. Only
    // the default where no drawing gives a scale. Any thread.
    static CGFloat mainScreenScale();
    static void setMainScreenScale(CGFloat scale);

    // Added by the caption library: a new transparent image of 1 × 1 point, of the scale that an
    // image context has by default.
    static Ref<UIImage> emptyImageForBorders();

    // For the graphics layer: the implementation, which uses the drawing library.
    struct Impl;
    const Impl& impl() const { return *impl_; }
    static Ref<UIImage> imageWithImpl(std::unique_ptr<Impl> impl);

  private:
    std::unique_ptr<Impl> impl_;
};

// Writes pixels in CGContext's format (sizes in pixels, stride in bytes) to a PNG file, which is
// replaced if it exists. False if the sizes are not possible or the file cannot be written.
TESMAR_API bool writePNG(const std::string& path, const void* pixels, int width, int height,
                         int stride);

} // namespace tesmar
