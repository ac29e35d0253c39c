#include "tesmar/platform/text/shaping.h"

#include "tesmar/platform/text/FontFace.h"
#include "tesmar/platform/text/fontconfig_ptr.h"

#include <hb.h>
#include <pango/pangocairo.h>
#include <pango/pangofc-fontmap.h>

namespace tesmar {
namespace {

const FcChar8* chars(const std::string& text) {
    return reinterpret_cast<const FcChar8*>(text.c_str());
}

FcConfigPtr configurationOfFile(const std::string& file) {
    FcConfigPtr config(FcConfigCreate());
    FcConfigAppFontAddFile(config.get(), chars(file));
    return config;
}

// All installed fonts with the machine's own rules for choosing among them, loaded when first
// needed and kept. Never the process's current configuration, which others may share.
FcConfig* configurationOfEverything() {
    static FcConfig* const config = FcInitLoadConfigAndFonts();
    return config;
}

// Makes the file decide, the first thing that fontconfig compares; what else the pattern holds
// chooses the fallback.
void chooseFace(FcPattern* pattern, gpointer data) {
    const auto& source = static_cast<const FontFace*>(data)->source;
    FcPatternDel(pattern, FC_FILE);
    FcPatternAddString(pattern, FC_FILE, chars(source.file));
    FcPatternDel(pattern, FC_POSTSCRIPT_NAME);
    FcPatternAddString(pattern, FC_POSTSCRIPT_NAME, chars(source.fontName));
    for (const char* property : {FC_HINTING, FC_AUTOHINT, FC_EMBEDDED_BITMAP}) {
        FcPatternDel(pattern, property);
        FcPatternAddBool(pattern, property, FcFalse);
    }
}

GObjectPtr<PangoContext> makeContext(const FontFace& face, FcConfig* config) {
    const GObjectPtr<PangoFontMap> map(pango_cairo_font_map_new_for_font_type(CAIRO_FONT_TYPE_FT));
    auto* const fontconfigMap = PANGO_FC_FONT_MAP(map.get());
    // First of all: every later change lists the families of the configuration.
    pango_fc_font_map_set_config(fontconfigMap, config);
    pango_cairo_font_map_set_resolution(PANGO_CAIRO_FONT_MAP(map.get()), 72);
    pango_fc_font_map_set_default_substitute(fontconfigMap, chooseFace,
                                             const_cast<FontFace*>(&face), nullptr);
    GObjectPtr<PangoContext> context(pango_font_map_create_context(map.get()));
    pango_context_set_round_glyph_positions(context.get(), FALSE);
    cairo_font_options_t* const options = cairo_font_options_create();
    cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
    cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
    cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
    pango_cairo_context_set_font_options(context.get(), options);
    cairo_font_options_destroy(options);
    return context;
}

struct DescriptionDeleter {
    void operator()(PangoFontDescription* d) const { pango_font_description_free(d); }
};

// The family tells fontconfig which kind of fallback suits.
std::unique_ptr<PangoFontDescription, DescriptionDeleter> description(double points) {
    std::unique_ptr<PangoFontDescription, DescriptionDeleter> d(pango_font_description_new());
    pango_font_description_set_family_static(d.get(), "sans-serif");
    pango_font_description_set_absolute_size(d.get(), points * PANGO_SCALE);
    return d;
}

} // namespace

std::unique_lock<std::recursive_mutex> lockShaping() {
    static auto* const mutex = new std::recursive_mutex; // outlives every font
    return std::unique_lock(*mutex);
}

void prepareShaping() {
    const auto lock = lockShaping();
    // The first map of the process starts pango's own loading; it is not needed for more.
    GObjectPtr<PangoFontMap>(pango_cairo_font_map_new_for_font_type(CAIRO_FONT_TYPE_FT));
}

void setFontSize(PangoLayout* layout, double points) {
    pango_layout_set_font_description(layout, description(points).get());
}

Shaper::~Shaper() {
    const auto lock = lockShaping();
    alone_.reset();
    withFallback_.reset();
}

PangoContext* Shaper::context(const FontFace& face, Fallback fallback) {
    if (face.source.file.empty())
        return nullptr;
    if (fallback == Fallback::none) {
        if (!alone_)
            alone_ = makeContext(face, configurationOfFile(face.source.file).get());
        return alone_.get();
    }
    if (!withFallback_) {
        FcConfigAppFontAddFile(configurationOfEverything(), chars(face.source.file));
        withFallback_ = makeContext(face, configurationOfEverything());
    }
    return withFallback_.get();
}

const FaceMetrics& Shaper::metrics(const FontFace& face) {
    if (metrics_)
        return *metrics_;
    metrics_ = std::make_unique<FaceMetrics>();
    PangoContext* const context = this->context(face, Fallback::none);
    if (!context)
        return *metrics_;
    constexpr double kPoints = 100;
    const GObjectPtr<PangoFont> font(pango_font_map_load_font(pango_context_get_font_map(context),
                                                              context, description(kPoints).get()));
    hb_font_extents_t extents{};
    if (font && hb_font_get_h_extents(pango_font_get_hb_font(font.get()), &extents))
        *metrics_ = {extents.ascender / kPoints / PANGO_SCALE,
                     extents.descender / kPoints / PANGO_SCALE};
    return *metrics_;
}

} // namespace tesmar
