#include "CairoTape.h"

#include <dlfcn.h>

namespace {

CairoTape* current = nullptr;

template <class Function>
Function* originalFunction(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

} // namespace

CairoTape::CairoTape() {
    current = this;
}

CairoTape::~CairoTape() {
    stop();
    for (cairo_surface_t* surface : surfaces_)
        cairo_surface_destroy(surface);
}

void CairoTape::stop() {
    if (current == this)
        current = nullptr;
}

CairoTape* CairoTape::recording() {
    return current;
}

void CairoTape::replay(void* pixels, int width, int height, int stride) const {
    cairo_surface_t* const surface = cairo_image_surface_create_for_data(
        static_cast<unsigned char*>(pixels), CAIRO_FORMAT_ARGB32, width, height, stride);
    cairo_t* const cr = cairo_create(surface);
    for (const auto& call : calls_)
        call(cr);
    cairo_destroy(cr);
    cairo_surface_finish(surface);
    cairo_surface_destroy(surface);
}

// Calls the function and records the call.
template <class... Values>
void callAndRecord(void (*real)(cairo_t*, Values...), cairo_t* cr, Values... values) {
    real(cr, values...);
    if (CairoTape* const tape = CairoTape::recording())
        tape->record([=](cairo_t* replayed) { real(replayed, values...); });
}

// The same for a function with a surface, which must live as long as the tape.
void callAndRecordSurface(void (*real)(cairo_t*, cairo_surface_t*, double, double), cairo_t* cr,
                          cairo_surface_t* surface, double x, double y) {
    if (CairoTape* const tape = CairoTape::recording())
        tape->retain(surface);
    callAndRecord(real, cr, surface, x, y);
}

#define REPLACE_CAIRO(name, parameters, ...)                                                       \
    extern "C" __attribute__((visibility("default"))) void name parameters {                       \
        static auto* const real = originalFunction<void parameters>(#name);                        \
        __VA_ARGS__;                                                                               \
    }

REPLACE_CAIRO(cairo_set_source_rgba, (cairo_t * cr, double r, double g, double b, double a),
              callAndRecord(real, cr, r, g, b, a))
REPLACE_CAIRO(cairo_rectangle, (cairo_t * cr, double x, double y, double w, double h),
              callAndRecord(real, cr, x, y, w, h))
REPLACE_CAIRO(cairo_set_operator, (cairo_t * cr, cairo_operator_t op), callAndRecord(real, cr, op))
REPLACE_CAIRO(cairo_clip, (cairo_t * cr), callAndRecord(real, cr))
REPLACE_CAIRO(cairo_reset_clip, (cairo_t * cr), callAndRecord(real, cr))
REPLACE_CAIRO(cairo_fill, (cairo_t * cr), callAndRecord(real, cr))
REPLACE_CAIRO(cairo_paint_with_alpha, (cairo_t * cr, double alpha), callAndRecord(real, cr, alpha))
REPLACE_CAIRO(cairo_mask_surface, (cairo_t * cr, cairo_surface_t* mask, double x, double y),
              callAndRecordSurface(real, cr, mask, x, y))
REPLACE_CAIRO(cairo_set_source_surface,
              (cairo_t * cr, cairo_surface_t* picture, double x, double y),
              callAndRecordSurface(real, cr, picture, x, y))
