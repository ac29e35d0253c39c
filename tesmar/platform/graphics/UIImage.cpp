#include "tesmar/platform/graphics/UIImage.h"

#include "tesmar/platform/foundation/NSBundle.h"
#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/platform/graphics/internal/CGContextImpl.h"
#include "tesmar/platform/graphics/internal/NamedImage.h"
#include "tesmar/platform/graphics/internal/UIImageImpl.h"
#include "tesmar/platform/graphics/internal/png.h"

#include <algorithm>
#include <atomic>
#include <fstream>

namespace tesmar {
namespace {

std::atomic<double>& screenScale() {
    static std::atomic<double> scale{1};
    return scale;
}

double clampedScale(CGFloat scale) {
    return finite(scale, 0.1, 16, 1);
}

// False if there are no bytes, or if writing fails.
bool writeFile(const std::string& path, const std::optional<std::string>& bytes) {
    if (!bytes)
        return false;
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << *bytes;
    file.close();
    return file.good();
}

template <class Predicate>
bool allPixels(cairo_surface_t* surface, Predicate holds) {
    const auto* const pixels =
        reinterpret_cast<const std::uint32_t*>(cairo_image_surface_get_data(surface));
    const int stride = cairo_image_surface_get_stride(surface) / 4;
    for (int y = 0; y < cairo_image_surface_get_height(surface); ++y) {
        const auto* const row = pixels + std::ptrdiff_t{y} * stride;
        if (!std::all_of(row, row + cairo_image_surface_get_width(surface), holds))
            return false;
    }
    return true;
}

} // namespace

UIImage::Impl::Impl(SurfacePtr pixels, double pixelsPerPoint)
    : surface(std::move(pixels)),
      isTransparent(allPixels(surface.get(), [](auto pixel) { return pixel == 0; })),
      hasHardEdges(allPixels(surface.get(),
                             [](auto pixel) { return pixel >> 24 == 0 || pixel >> 24 == 255; })),
      scale(pixelsPerPoint) {
    static std::atomic<std::int32_t> lastId{0};
    id = ++lastId;
}

UIImage::Impl::~Impl() = default;

const UIImage::Impl& UIImage::Impl::pictureFor(double drawnScale) const {
    return named ? named->picture(drawnScale, *this) : *this;
}

void UIImage::Impl::render(cairo_t* cr, int width, int height, cairo_filter_t filter) const {
    const int ownWidth = cairo_image_surface_get_width(surface.get());
    const int ownHeight = cairo_image_surface_get_height(surface.get());
    cairo_scale(cr, static_cast<double>(width) / ownWidth, static_cast<double>(height) / ownHeight);
    cairo_set_source_surface(cr, surface.get(), 0, 0);
    cairo_pattern_set_extend(cairo_get_source(cr), CAIRO_EXTEND_PAD); // the outer edge stays opaque
    const bool isUnscaled = width == ownWidth && height == ownHeight;
    cairo_pattern_set_filter(cairo_get_source(cr), isUnscaled ? CAIRO_FILTER_NEAREST : filter);
    cairo_paint(cr);
}

Class& UIImage::classObject() {
    static Class& type = *new Class("UIImage", &NSObject::classObject(), {});
    return type;
}

UIImage::UIImage()
    : impl_(std::make_unique<Impl>(
          SurfacePtr(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 0, 0)), 1)) {}
UIImage::~UIImage() = default;

Ref<UIImage> UIImage::imageWithImpl(std::unique_ptr<Impl> impl) {
    auto image = make<UIImage>();
    image->impl_ = std::move(impl);
    return image;
}

Ref<UIImage> UIImage::imageNamed(std::string_view name) {
    return imageNamedFrom(name, *NSBundle::mainBundle());
}

Ref<UIImage> UIImage::imageNamedFrom(std::string_view name, const NSBundle& bundle) {
    auto impl = NamedImage::load(name, bundle, mainScreenScale());
    if (!impl)
        return nullptr;
    impl->named = std::make_unique<NamedImage>(name, bundle);
    return imageWithImpl(std::move(impl));
}

Ref<UIImage> UIImage::imageWithPNGData(std::string_view bytes, CGFloat scale) {
    SurfacePtr surface = decodePNG(bytes);
    if (!surface)
        return nullptr;
    return imageWithImpl(std::make_unique<Impl>(std::move(surface), clampedScale(scale)));
}

CGSize UIImage::size() const {
    return {pixelWidth() / scale(), pixelHeight() / scale()};
}
CGFloat UIImage::scale() const {
    return impl_->scale;
}
int UIImage::pixelWidth() const {
    return cairo_image_surface_get_width(impl_->surface.get());
}
int UIImage::pixelHeight() const {
    return cairo_image_surface_get_height(impl_->surface.get());
}
std::uint32_t UIImage::pixel(int x, int y) const {
    if (x < 0 || y < 0 || x >= pixelWidth() || y >= pixelHeight())
        return 0;
    cairo_surface_t* const surface = impl_->surface.get();
    const unsigned char* const row = cairo_image_surface_get_data(surface) +
                                     std::ptrdiff_t{y} * cairo_image_surface_get_stride(surface);
    return reinterpret_cast<const std::uint32_t*>(row)[x];
}

std::optional<std::string> UIImage::PNGData() const {
    return encodePNG(impl_->surface.get());
}

CGFloat UIImage::mainScreenScale() {
    return screenScale();
}
void UIImage::setMainScreenScale(CGFloat scale) {
    screenScale() = clampedScale(scale);
}

bool writePNG(const std::string& path, const void* pixels, int width, int height, int stride) {
    const SurfacePtr surface = readOnlySurface(pixels, width, height, stride);
    return surface && writeFile(path, encodePNG(surface.get()));
}

} // namespace tesmar
