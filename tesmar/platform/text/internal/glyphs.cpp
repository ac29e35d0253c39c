#include "tesmar/platform/text/internal/glyphs.h"

#include "tesmar/platform/graphics/internal/CGContextImpl.h"
#include "tesmar/platform/graphics/internal/png.h"

#include <hb-ot.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>
#include <vector>

namespace tesmar {
namespace {

cairo_t* path(void* data) {
    return static_cast<cairo_t*>(data);
}

// Functions that append an outline, in font units, to the path of a cairo_t.
hb_draw_funcs_t* makePathFunctions() {
    hb_draw_funcs_t* const f = hb_draw_funcs_create();
    using State = hb_draw_state_t*;
    hb_draw_funcs_set_move_to_func(
        f,
        [](auto*, void* data, State, float x, float y, void*) { cairo_move_to(path(data), x, y); },
        nullptr, nullptr);
    hb_draw_funcs_set_line_to_func(
        f,
        [](auto*, void* data, State, float x, float y, void*) { cairo_line_to(path(data), x, y); },
        nullptr, nullptr);
    hb_draw_funcs_set_cubic_to_func(
        f,
        [](auto*, void* data, State, float x1, float y1, float x2, float y2, float x, float y,
           void*) { cairo_curve_to(path(data), x1, y1, x2, y2, x, y); },
        nullptr, nullptr);
    hb_draw_funcs_set_close_path_func(
        f, [](auto*, void* data, State, void*) { cairo_close_path(path(data)); }, nullptr, nullptr);
    hb_draw_funcs_make_immutable(f);
    return f;
}

void addOutline(cairo_t* cr, hb_font_t* font, hb_codepoint_t glyph) {
    static hb_draw_funcs_t* const pathFunctions = makePathFunctions();
#if HB_VERSION_ATLEAST(7, 0, 0)
    hb_font_draw_glyph(font, glyph, pathFunctions, cr);
#else
    hb_font_get_glyph_shape(font, glyph, pathFunctions, cr);
#endif
}

// False if the glyph has no colour layers.
bool drawLayers(cairo_t* cr, hb_font_t* font, hb_codepoint_t glyph) {
    hb_face_t* const face = hb_font_get_face(font);
    std::vector<hb_ot_color_layer_t> layers(
        hb_ot_color_glyph_get_layers(face, glyph, 0, nullptr, nullptr));
    auto count = static_cast<unsigned>(layers.size());
    hb_ot_color_glyph_get_layers(face, glyph, 0, &count, layers.data());
    std::vector<hb_color_t> palette(hb_ot_color_palette_get_colors(face, 0, 0, nullptr, nullptr));
    auto colors = static_cast<unsigned>(palette.size());
    hb_ot_color_palette_get_colors(face, 0, 0, &colors, palette.data());
    for (const hb_ot_color_layer_t& layer : layers) {
        cairo_save(cr);
        if (layer.color_index < colors) { // else the text's own colour
            const hb_color_t c = palette[layer.color_index];
            cairo_set_source_rgba(cr, hb_color_get_red(c) / 255.0, hb_color_get_green(c) / 255.0,
                                  hb_color_get_blue(c) / 255.0, hb_color_get_alpha(c) / 255.0);
        }
        addOutline(cr, font, layer.glyph);
        cairo_fill(cr);
        cairo_restore(cr);
    }
    return !layers.empty();
}

// The picture, reduced to `width` × `height` device pixels if it is larger: reducing it anew for
// each glyph would take most of the time. Null if there is no memory.
SurfacePtr reduced(SurfacePtr picture, double width, double height) {
    const int fullWidth = cairo_image_surface_get_width(picture.get());
    const int fullHeight = cairo_image_surface_get_height(picture.get());
    if (!(width >= 1 && height >= 1 && width < fullWidth && height < fullHeight))
        return picture;
    const int w = static_cast<int>(std::ceil(width)), h = static_cast<int>(std::ceil(height));
    return renderedSurface(CAIRO_FORMAT_ARGB32, w, h, 0, 0, [&](cairo_t* cr) {
        cairo_scale(cr, static_cast<double>(w) / fullWidth, static_cast<double>(h) / fullHeight);
        cairo_set_source_surface(cr, picture.get(), 0, 0);
        cairo_paint(cr);
    });
}

// The pictures of glyphs, each decoded once, for one size of the text. The number of pixels is
// limited.
class Pictures {
  public:
    // Owned by this object. At most as large as `width` × `height` device pixels require. Null if
    // the picture cannot be decoded, or is one too many.
    cairo_surface_t* decoded(hb_font_t* font, hb_codepoint_t glyph, std::string_view png,
                             double width, double height) {
        const auto [entry, isNew] = decoded_.try_emplace({font, glyph});
        SurfacePtr& picture = entry->second;
        if (isNew && (picture = decodePNG(png, pixelsLeft_))) {
            pixelsLeft_ -= cairo_image_surface_get_width(picture.get()) *
                           cairo_image_surface_get_height(picture.get());
            picture = reduced(std::move(picture), width, height);
        }
        return picture.get();
    }

  private:
    int pixelsLeft_ = kMostPicturePixels;
    std::map<std::pair<hb_font_t*, hb_codepoint_t>, SurfacePtr> decoded_;
};

// False if the glyph has no picture. One that cannot be decoded draws nothing.
bool drawPicture(cairo_t* cr, hb_font_t* font, hb_codepoint_t glyph, Pictures& pictures) {
    hb_blob_t* const png = hb_ot_color_glyph_reference_png(font, glyph);
    unsigned length = 0;
    const char* const data = hb_blob_get_data(png, &length);
    hb_glyph_extents_t box{};
    const bool exists = length > 0 && hb_font_get_glyph_extents(font, glyph, &box);
    double width = box.width, height = box.height;
    cairo_user_to_device_distance(cr, &width, &height);
    cairo_surface_t* const picture =
        exists ? pictures.decoded(font, glyph, {data, length}, std::abs(width), std::abs(height))
               : nullptr;
    hb_blob_destroy(png);
    if (picture) {
        cairo_save(cr);
        cairo_translate(cr, box.x_bearing, box.y_bearing);
        cairo_scale(cr, static_cast<double>(box.width) / cairo_image_surface_get_width(picture),
                    static_cast<double>(box.height) / cairo_image_surface_get_height(picture));
        cairo_set_source_surface(cr, picture, 0, 0);
        cairo_paint(cr);
        cairo_restore(cr);
    }
    return exists;
}

// Whether the glyph, drawn with its own origin and in font units, touches the clip.
bool isInTheClip(cairo_t* cr, hb_font_t* font, hb_codepoint_t glyph) {
    hb_glyph_extents_t box{};
    if (!hb_font_get_glyph_extents(font, glyph, &box))
        return true;
    double left, top, right, bottom;
    cairo_clip_extents(cr, &left, &top, &right, &bottom);
    // Antialiasing adds less than a pixel; extents in fonts are rounded.
    double marginX = 2, marginY = 2;
    cairo_device_to_user_distance(cr, &marginX, &marginY);
    const double x = marginX + 2, y = std::abs(marginY) + 2;
    return box.x_bearing < right + x && box.x_bearing + box.width > left - x &&
           box.y_bearing > top - y && box.y_bearing + box.height < bottom + y;
}

struct Painter {
    cairo_t* cr;
    Glyphs glyphs;
    Pictures pictures;

    // In font units, with the glyph's origin at that of `cr`.
    void drawGlyph(FontFile& file, hb_codepoint_t glyph);
    void drawRun(const GlyphRun& run);
};

void Painter::drawGlyph(FontFile& file, hb_codepoint_t glyph) {
    hb_font_t* const font = file.font();
    const bool isColored = file.isColored();
    if (isColored && drawLayers(cr, font, glyph))
        return;
    if (glyphs == Glyphs::inTheClip && !isInTheClip(cr, font, glyph))
        return;
    if (!isColored || !drawPicture(cr, font, glyph, pictures))
        addOutline(cr, font, glyph);
}

void Painter::drawRun(const GlyphRun& run) {
    const double unit = run.pointSize / run.file->unitsPerEm();
    for (const PlacedGlyph& placed : run.glyphs) {
        cairo_save(cr);
        cairo_translate(cr, placed.origin.x, placed.origin.y);
        cairo_scale(cr, unit, -unit); // in fonts, y grows upwards
        drawGlyph(*run.file, placed.glyph);
        cairo_restore(cr);
    }
    // One fill for the whole run, or glyphs that touch would have a seam between them.
    cairo_fill(cr);
}

CGRect inkOf(const GlyphRun& run) {
    const double unit = run.pointSize / run.file->unitsPerEm();
    CGRect ink;
    for (const PlacedGlyph& placed : run.glyphs) {
        hb_glyph_extents_t box{};
        hb_font_get_glyph_extents(run.file->font(), placed.glyph, &box);
        if (box.width != 0 && box.height != 0)
            ink = CGRectUnion(ink, {placed.origin.x + box.x_bearing * unit,
                                    placed.origin.y - box.y_bearing * unit, box.width * unit,
                                    -box.height * unit});
    }
    return ink;
}

} // namespace

bool hasColoredGlyphs(const std::vector<TypesetLine>& lines) {
    return std::ranges::any_of(lines, [](const TypesetLine& line) {
        return std::ranges::any_of(line.runs,
                                   [](const GlyphRun& run) { return run.file->isColored(); });
    });
}

CGRect inkOf(const std::vector<TypesetLine>& lines) {
    CGRect ink;
    for (const TypesetLine& line : lines)
        for (const GlyphRun& run : line.runs)
            ink = CGRectUnion(ink, inkOf(run));
    return ink;
}

void drawGlyphs(cairo_t* cr, const std::vector<TypesetLine>& lines, Glyphs glyphs) {
    Painter painter{cr, glyphs, {}};
    for (const TypesetLine& line : lines)
        for (const GlyphRun& run : line.runs)
            painter.drawRun(run);
}

} // namespace tesmar
