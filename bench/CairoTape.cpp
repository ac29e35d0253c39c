#include "CairoTape.h"

#include <dlfcn.h>

namespace {

CairoTape* current = nullptr;

template <class Function>
Function* cairos(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

} // namespace

CairoTape::CairoTape() {
    current = this;
}

CairoTape::~CairoTape() {
    stop();
    for (cairo_surface_t* surface : kept_)
        cairo_surface_destroy(surface);
}

void CairoTape::stop() {
    if (current == this)
        current = nullptr;
}

CairoTape* CairoTape::running() {
    return current;
}

void CairoTape::play(void* pixels, int width, int height, int stride) const {
    cairo_surface_t* const surface = cairo_image_surface_create_for_data(
        static_cast<unsigned char*>(pixels), CAIRO_FORMAT_ARGB32, width, height, stride);
    cairo_t* const cr = cairo_create(surface);
    for (const auto& call : calls_)
        call(cr);
    cairo_destroy(cr);
    cairo_surface_finish(surface);
    cairo_surface_destroy(surface);
}

// One cairo function: calls it, and takes the call down.
template <class... Values>
void taped(void (*real)(cairo_t*, Values...), cairo_t* cr, Values... values) {
    real(cr, values...);
    if (CairoTape* const tape = CairoTape::running())
        tape->take([=](cairo_t* again) { real(again, values...); });
}

// One that takes a surface, which has to live for as long as the tape.
void tapedWithSurface(void (*real)(cairo_t*, cairo_surface_t*, double, double), cairo_t* cr,
                      cairo_surface_t* surface, double x, double y) {
    if (CairoTape* const tape = CairoTape::running())
        tape->keep(surface);
    taped(real, cr, surface, x, y);
}

#define BEFORE_CAIROS(name, parameters, ...)                                                       \
    extern "C" __attribute__((visibility("default"))) void name parameters {                       \
        static auto* const real = cairos<void parameters>(#name);                                  \
        __VA_ARGS__;                                                                               \
    }

BEFORE_CAIROS(cairo_set_source_rgba, (cairo_t * cr, double r, double g, double b, double a),
              taped(real, cr, r, g, b, a))
BEFORE_CAIROS(cairo_rectangle, (cairo_t * cr, double x, double y, double w, double h),
              taped(real, cr, x, y, w, h))
BEFORE_CAIROS(cairo_set_operator, (cairo_t * cr, cairo_operator_t op), taped(real, cr, op))
BEFORE_CAIROS(cairo_clip, (cairo_t * cr), taped(real, cr))
BEFORE_CAIROS(cairo_reset_clip, (cairo_t * cr), taped(real, cr))
BEFORE_CAIROS(cairo_fill, (cairo_t * cr), taped(real, cr))
BEFORE_CAIROS(cairo_paint_with_alpha, (cairo_t * cr, double alpha), taped(real, cr, alpha))
BEFORE_CAIROS(cairo_mask_surface, (cairo_t * cr, cairo_surface_t* mask, double x, double y),
              tapedWithSurface(real, cr, mask, x, y))
BEFORE_CAIROS(cairo_set_source_surface,
              (cairo_t * cr, cairo_surface_t* picture, double x, double y),
              tapedWithSurface(real, cr, picture, x, y))
