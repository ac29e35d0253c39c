#include "tesmar/platform/text/internal/shaping.h"

#include "tesmar/platform/text/internal/FontFace.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

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

// With Fallback::none, makes pango use the face for every character, without determining its
// coverage.
//
// Pango needs time in proportion to the square of a run's length to break that run within words, so
// each part of the text gets an attribute of its own, which ends the run.
void setFallback(PangoLayout* layout, Fallback fallback, const std::vector<unsigned>& cuts) {
    PangoAttrList* const attributes = pango_attr_list_new();
    unsigned start = PANGO_ATTR_INDEX_FROM_TEXT_BEGINNING;
    const auto addPart = [&](unsigned end) {
        PangoAttribute* const part = pango_attr_fallback_new(fallback != Fallback::none);
        part->start_index = start;
        part->end_index = end;
        pango_attr_list_insert(attributes, part);
        start = end;
    };
    std::for_each(cuts.begin(), cuts.end(), addPart);
    addPart(PANGO_ATTR_INDEX_TO_TEXT_END);
    pango_layout_set_attributes(layout, attributes);
    pango_attr_list_unref(attributes);
}

// Where to cut words, and rows of spaces, that no text of a language has.
std::vector<unsigned> cutsOfLongWords(const char* text) {
    constexpr int kLongestWord = 128, kPart = 32; // characters
    std::vector<unsigned> cuts;
    int length = 0;
    bool isSpace = false;
    for (const char* c = text; *c; c = g_utf8_next_char(c)) {
        const bool wasSpace = std::exchange(isSpace, *c == ' ');
        length = isSpace == wasSpace ? length + 1 : 1;
        if (length > kLongestWord && length % kPart == 1)
            cuts.push_back(static_cast<unsigned>(c - text));
    }
    return cuts;
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
    setFallback(layout.get(), fallback, {});
    return layout;
}

void setLayoutText(PangoLayout* layout, const std::string& text, Fallback fallback) {
    pango_layout_set_text(layout, text.data(), static_cast<int>(text.size()));
    if (const auto cuts = cutsOfLongWords(pango_layout_get_text(layout)); !cuts.empty())
        setFallback(layout, fallback, cuts);
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
