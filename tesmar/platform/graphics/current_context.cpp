// The stack of contexts that a thread draws into, image contexts among them.
#include "tesmar/platform/graphics/UIColor.h"
#include "tesmar/platform/graphics/internal/CGContextImpl.h"
#include "tesmar/platform/graphics/internal/UIImageImpl.h"

namespace tesmar {
namespace {

// A picture that is being drawn. Without a surface it takes what is drawn and gives nothing.
struct Canvas {
    Canvas(SurfacePtr pixels, double scale)
        : surface(std::move(pixels)),
          context(surface ? cairo_image_surface_get_data(surface.get()) : nullptr,
                  surface ? cairo_image_surface_get_width(surface.get()) : 0,
                  surface ? cairo_image_surface_get_height(surface.get()) : 0,
                  surface ? cairo_image_surface_get_stride(surface.get()) : 0, scale) {}
    SurfacePtr surface;
    CGContext context;
};

struct Current {
    CGContext* context;
    std::unique_ptr<Canvas> canvas; // of an image context
};

std::vector<Current>& contexts() {
    static thread_local std::vector<Current> stack;
    return stack;
}

Canvas* currentCanvas() {
    return contexts().empty() ? nullptr : contexts().back().canvas.get();
}

// The pixels for an image context, or nothing for a size that no image can have.
SurfacePtr canvasSurface(CGSize size, double scale) {
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
    return contexts().empty() ? nullptr : contexts().back().context;
}

void UIGraphicsPushContext(CGContext& context) {
    contexts().push_back({&context, nullptr});
}

void UIGraphicsPopContext() {
    if (!contexts().empty() && !currentCanvas())
        contexts().pop_back();
}

void UIGraphicsBeginImageContextWithOptions(CGSize size, bool opaque, CGFloat scale) {
    const double pixelsPerPoint =
        scale == 0 ? UIImage::mainScreenScale() : finite(scale, 0.1, 16, 1);
    auto canvas = std::make_unique<Canvas>(canvasSurface(size, pixelsPerPoint), pixelsPerPoint);
    CGContext& context = canvas->context;
    if (opaque)
        context.impl().fillPixels(context.clipPixels(), Paint{});
    contexts().push_back({&context, std::move(canvas)});
}

Ref<UIImage> UIGraphicsGetImageFromCurrentImageContext() {
    Canvas* const canvas = currentCanvas();
    if (!canvas || !canvas->surface)
        return nullptr;
    cairo_surface_t* const drawn = canvas->surface.get();
    cairo_surface_mark_dirty(drawn); // it was drawn into behind its back
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
        std::make_unique<UIImage::Impl>(std::move(copy), canvas->context.scale()));
}

void UIGraphicsEndImageContext() {
    if (currentCanvas())
        contexts().pop_back();
}

} // namespace tesmar
