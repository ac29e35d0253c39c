#include "tesmar/platform/graphics/UIGraphics.h"

#include "tesmar/platform/graphics/internal/CGContextImpl.h"
#include "tesmar/platform/graphics/internal/UIImageImpl.h"

#include <utility>

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
    ImageContext* image; // owned; null for a context that was pushed
    StackEntry* below;
};

// The bottom entry, which every frame uses, needs no allocation. `top` is null when the stack is
// empty. Neither has a destructor, so that those of other thread-local objects can draw.
thread_local StackEntry bottom;
thread_local StackEntry* top = nullptr;

void push(CGContext& context, std::unique_ptr<ImageContext> image) {
    StackEntry* const entry = top ? new StackEntry : &bottom;
    *entry = {&context, image.release(), top};
    top = entry;
}

void pop() {
    StackEntry* const popped = std::exchange(top, top->below);
    const std::unique_ptr<ImageContext> image(popped->image);
    if (popped != &bottom)
        delete popped;
}

ImageContext* currentImageContext() {
    return top ? top->image : nullptr;
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
    return top ? top->context : nullptr;
}

void UIGraphicsPushContext(CGContext& context) {
    push(context, nullptr);
}

void UIGraphicsPopContext() {
    if (top && !top->image)
        pop();
}

void UIGraphicsBeginImageContextWithOptions(CGSize size, bool opaque, CGFloat scale) {
    const double drawingScale = top ? top->context->scale() : UIImage::mainScreenScale();
    const double pixelsPerPoint = scale == 0 ? std::ceil(drawingScale) : finite(scale, 0.1, 16, 1);
    auto image = std::make_unique<ImageContext>(imageSurface(size, pixelsPerPoint), pixelsPerPoint);
    CGContext& context = image->context;
    if (opaque)
        context.impl().fillPixels(context.clipPixels(), Paint{});
    push(context, std::move(image));
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
        pop();
}

} // namespace tesmar
