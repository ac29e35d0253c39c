#include "tesmar/platform/graphics/UIGraphics.h"

#include "tesmar/platform/graphics/internal/CGContextImpl.h"
#include "tesmar/platform/graphics/internal/UIImageImpl.h"

namespace tesmar {
namespace {

// Without a surface, drawing has no effect and there is no image.
struct ImageContext {
    ImageContext(SurfacePtr pixels, double scale)
        : surface(std::move(pixels)),
          context(surface ? cairo_image_surface_get_data(surface.get()) : nullptr,
                  surface ? cairo_image_surface_get_width(surface.get()) : 0,
                  surface ? cairo_image_surface_get_height(surface.get()) : 0,
                  surface ? cairo_image_surface_get_stride(surface.get()) : 0, scale) {}
    SurfacePtr surface;
    CGContext context;
};

struct StackEntry {
    CGContext* context;
    std::unique_ptr<ImageContext> image; // null for a context that was pushed
};

std::vector<StackEntry>& contextStack() {
    static thread_local std::vector<StackEntry> stack;
    return stack;
}

ImageContext* currentImageContext() {
    return contextStack().empty() ? nullptr : contextStack().back().image.get();
}

// Null for a size that no image can have.
SurfacePtr imageSurface(CGSize size, double scale) {
    const double width = std::ceil(size.width * scale), height = std::ceil(size.height * scale);
    const bool isPossible = width >= 1 && height >= 1 && width <= UIImage::kMaximumSide &&
                            height <= UIImage::kMaximumSide &&
                            width * height <= UIImage::kMaximumPixels;
    if (!isPossible)
        return nullptr;
    return emptySurface(CAIRO_FORMAT_ARGB32, static_cast<int>(width), static_cast<int>(height));
}

} // namespace

CGContext* UIGraphicsGetCurrentContext() {
    return contextStack().empty() ? nullptr : contextStack().back().context;
}

void UIGraphicsPushContext(CGContext& context) {
    contextStack().push_back({&context, nullptr});
}

void UIGraphicsPopContext() {
    if (!contextStack().empty() && !currentImageContext())
        contextStack().pop_back();
}

void UIGraphicsBeginImageContextWithOptions(CGSize size, bool opaque, CGFloat scale) {
    const double pixelsPerPoint =
        scale == 0 ? std::ceil(UIImage::mainScreenScale()) : finite(scale, 0.1, 16, 1);
    auto image = std::make_unique<ImageContext>(imageSurface(size, pixelsPerPoint), pixelsPerPoint);
    CGContext& context = image->context;
    if (opaque)
        context.impl().fillPixels(context.clipPixels(), Paint{});
    contextStack().push_back({&context, std::move(image)});
}

Ref<UIImage> UIGraphicsGetImageFromCurrentImageContext() {
    ImageContext* const current = currentImageContext();
    if (!current || !current->surface)
        return nullptr;
    cairo_surface_t* const drawn = current->surface.get();
    cairo_surface_mark_dirty(drawn); // the context drew into its memory through another surface
    SurfacePtr copy =
        renderedSurface(CAIRO_FORMAT_ARGB32, cairo_image_surface_get_width(drawn),
                        cairo_image_surface_get_height(drawn), 0, 0, [drawn](cairo_t* cr) {
                            cairo_set_operator(cr, CAIRO_OPERATOR_SOURCE);
                            cairo_set_source_surface(cr, drawn, 0, 0);
                            cairo_paint(cr);
                        });
    if (!copy)
        return nullptr;
    return UIImage::imageWithImpl(
        std::make_unique<UIImage::Impl>(std::move(copy), current->context.scale()));
}

void UIGraphicsEndImageContext() {
    if (currentImageContext())
        contextStack().pop_back();
}

} // namespace tesmar
