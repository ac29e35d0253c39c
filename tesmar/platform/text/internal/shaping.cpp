#include "tesmar/platform/text/internal/shaping.h"

#include "tesmar/platform/text/internal/FontFace.h"

namespace tesmar {
namespace {

GObjectPtr<PangoContext> makeContext(FontFileRef file, Fallback fallback) {
    const GObjectPtr<PangoFontMap> map = makeFontFileMap(std::move(file), fallback);
    GObjectPtr<PangoContext> context(pango_font_map_create_context(map.get()));
    pango_context_set_round_glyph_positions(context.get(), FALSE);
    return context;
}

// The family selects the kind of fallback fonts.
void setFont(PangoLayout* layout, double points) {
    PangoFontDescription* const description = pango_font_description_new();
    pango_font_description_set_family_static(description, "sans-serif");
    pango_font_description_set_absolute_size(description, points * PANGO_SCALE);
    pango_layout_set_font_description(layout, description);
    pango_font_description_free(description);
}

// Makes pango use the face for every character, without determining its coverage.
void forbidFallback(PangoLayout* layout) {
    PangoAttrList* const attributes = pango_attr_list_new();
    pango_attr_list_insert(attributes, pango_attr_fallback_new(FALSE));
    pango_layout_set_attributes(layout, attributes);
    pango_attr_list_unref(attributes);
}

} // namespace

std::unique_lock<std::recursive_mutex> lockShaping() {
    static auto* const mutex = new std::recursive_mutex; // never destroyed
    return std::unique_lock(*mutex);
}

Shaper::~Shaper() {
    const auto lock = lockShaping();
    withoutFallback_.reset();
    withFallback_.reset();
    file_.reset();
}

const FontFileRef& Shaper::file(const FontFace& face) {
    if (!file_)
        file_ = std::make_shared<FontFile>(face.source.file, face.source.index);
    return file_;
}

GObjectPtr<PangoLayout> Shaper::makeLayout(const FontFace& face, double pointSize,
                                           Fallback fallback) {
    if (face.source.file.empty())
        return nullptr;
    GObjectPtr<PangoContext>& context =
        fallback == Fallback::none ? withoutFallback_ : withFallback_;
    if (!context)
        context = makeContext(file(face), fallback);
    GObjectPtr<PangoLayout> layout(pango_layout_new(context.get()));
    setFont(layout.get(), pointSize);
    if (fallback == Fallback::none)
        forbidFallback(layout.get());
    return layout;
}

FaceMetrics Shaper::metrics(const FontFace& face) {
    if (face.source.file.empty())
        return {};
    FontFile& file = *this->file(face);
    const hb_font_extents_t extents = file.extents();
    const double size = file.unitsPerEm();
    return {extents.ascender / size, extents.descender / size};
}

} // namespace tesmar
