#include "tesmar/platform/text/internal/ComplexText.h"
#include "tesmar/platform/text/internal/pango/FontFileMap.h"
#include "tesmar/platform/text/internal/shown_text.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tesmar {
namespace {

enum class Fallback { none, installedFonts };

static_assert(kUnitsPerPoint == PANGO_SCALE);

CGRect pointsRect(const PangoRectangle& r) {
    return {pointsFromUnits(r.x), pointsFromUnits(r.y), pointsFromUnits(r.width),
            pointsFromUnits(r.height)};
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

// Draws from byte `start` to byte `end` of the text at the size of small capitals.
void addSmallPart(PangoAttrList* attributes, std::size_t start, std::size_t end) {
    constexpr double kSmall = 0.8; // as high as small letters with a little more
    PangoAttribute* const part = pango_attr_scale_new(kSmall);
    part->start_index = static_cast<unsigned>(start);
    part->end_index = static_cast<unsigned>(end);
    pango_attr_list_insert(attributes, part);
}

// Replaces small letters by capitals and marks them. Letters whose capital takes another number of
// bytes stay small, so that all indices into the text stay valid.
void setSmallCapitals(PangoLayout* layout, std::string text) {
    PangoAttrList* const attributes = pango_layout_get_attributes(layout);
    std::size_t start = 0, at = 0; // of a row of small letters, and behind it
    for (std::size_t index = 0, next = 0; index < text.size(); index = next) {
        const char* const character = text.data() + index;
        const gunichar letter = g_utf8_get_char(character);
        const gunichar capital = g_unichar_toupper(letter);
        next = static_cast<std::size_t>(g_utf8_next_char(character) - text.data());
        char bytes[6];
        const int length = g_unichar_to_utf8(capital, bytes);
        if (capital == letter || static_cast<std::size_t>(length) != next - index)
            continue;
        text.replace(index, next - index, bytes, static_cast<std::size_t>(length));
        if (index != at) {
            if (at > start)
                addSmallPart(attributes, start, at);
            start = index;
        }
        at = next;
    }
    if (at > start)
        addSmallPart(attributes, start, at);
    pango_layout_set_text(layout, text.data(), static_cast<int>(text.size()));
    pango_layout_set_attributes(layout, attributes);
}

// Sets the text, valid UTF-8, of a layout that was made with that fallback.
void setLayoutText(PangoLayout* layout, const std::string& text, Fallback fallback,
                   Letters letters) {
    pango_layout_set_text(layout, text.data(), static_cast<int>(text.size()));
    const auto cuts = cutsOfLongWords(pango_layout_get_text(layout));
    if (!cuts.empty() || letters == Letters::smallCapitals)
        setFallback(layout, fallback, cuts);
    if (letters == Letters::smallCapitals)
        setSmallCapitals(layout, pango_layout_get_text(layout));
}

// Without fallback fonts if `fallbackFonts` is null.
GObjectPtr<PangoContext> makeContext(FontFileRef face, FallbackFonts fallbackFonts) {
    const GObjectPtr<PangoFontMap> map = makeFontFileMap(std::move(face), fallbackFonts);
    GObjectPtr<PangoContext> context(pango_font_map_create_context(map.get()));
    pango_context_set_round_glyph_positions(context.get(), FALSE);
    // Not that of the process's locale, which would choose fonts and forms of letters.
    pango_context_set_language(context.get(), pango_language_from_string("und"));
    return context;
}

// The family selects the kind of fallback fonts.
void setFont(PangoLayout* layout, double points) {
    PangoFontDescription* const description = pango_font_description_new();
    pango_font_description_set_family_static(description, "sans-serif");
    pango_font_description_set_absolute_size(description, typesettingUnits(points));
    pango_layout_set_font_description(layout, description);
    pango_font_description_free(description);
}

// Replaces the line breaks after the start of the last visible line by spaces: where the line is
// cut off by an ellipsis, they would show as symbols.
void joinLinesFrom(PangoLayout* layout, int lastLine, const std::string& text, Fallback fallback,
                   Letters letters) {
    if (const auto* line = pango_layout_get_line_readonly(layout, lastLine))
        setLayoutText(layout,
                      replaceSeparatorsBySpaces(text, static_cast<std::size_t>(line->start_index)),
                      fallback, letters);
}

// Whether the font lacks a character of the text, even one that an ellipsis replaces: the wide
// signs for missing glyphs may be why there is one.
bool lacksGlyphs(PangoLayout* layout) {
    if (!pango_layout_is_ellipsized(layout))
        return pango_layout_get_unknown_glyphs_count(layout) > 0;
    const PangoLayoutLine* const line = pango_layout_get_line_readonly(layout, 0);
    if (!line || !line->runs)
        return false;
    const auto* const run = static_cast<const PangoGlyphItem*>(line->runs->data);
    hb_font_t* const font = pango_font_get_hb_font(run->item->analysis.font);
    for (const char* at = pango_layout_get_text(layout); *at; at = g_utf8_next_char(at)) {
        hb_codepoint_t glyph = 0;
        const gunichar character = g_utf8_get_char(at);
        if (g_unichar_isgraph(character) && !hb_font_get_nominal_glyph(font, character, &glyph))
            return true;
    }
    return false;
}

PangoAlignment pangoAlignment(NSTextAlignment alignment) {
    switch (alignment) {
    case NSTextAlignment::center:
        return PANGO_ALIGN_CENTER;
    case NSTextAlignment::right:
        return PANGO_ALIGN_RIGHT;
    case NSTextAlignment::left:
        break;
    }
    return PANGO_ALIGN_LEFT;
}

PangoEllipsizeMode pangoEllipsis(NSLineBreakMode mode) {
    return mode == NSLineBreakMode::truncatingHead     ? PANGO_ELLIPSIZE_START
           : mode == NSLineBreakMode::truncatingMiddle ? PANGO_ELLIPSIZE_MIDDLE
                                                       : PANGO_ELLIPSIZE_END;
}

// Pango puts one where it breaks a word.
void forbidHyphens(PangoLayout* layout) {
    PangoAttrList* const attributes = pango_layout_get_attributes(layout);
    pango_attr_list_insert(attributes, pango_attr_insert_hyphens_new(FALSE));
    pango_layout_set_attributes(layout, attributes);
}

// Aligns a layout without a width in that one, in pango's units, if it need not wrap for that.
void alignIfNarrower(PangoLayout* layout, int width) {
    int own = 0;
    pango_layout_get_size(layout, &own, nullptr);
    if (own <= width)
        pango_layout_set_width(layout, width);
}

// The glyphs of a run whose first one is at `x`, in points.
GlyphRun placedGlyphs(const PangoLayoutRun& run, double x, double baseline) {
    PangoFont* const font = run.item->analysis.font;
    GlyphRun placed{fileOf(font), pointSizeOf(font), {}};
    placed.glyphs.reserve(static_cast<std::size_t>(run.glyphs->num_glyphs));
    for (int i = 0; i < run.glyphs->num_glyphs; ++i) {
        const PangoGlyphInfo& info = run.glyphs->glyphs[i];
        if (info.glyph != PANGO_GLYPH_EMPTY)
            placed.glyphs.push_back({glyphIndex(info.glyph),
                                     {x + pointsFromUnits(info.geometry.x_offset),
                                      baseline + pointsFromUnits(info.geometry.y_offset)}});
        x += pointsFromUnits(info.geometry.width);
    }
    return placed;
}

// The first `lineCount` lines; all if that is 0.
std::vector<TypesetLine> linesOf(PangoLayout* layout, int lineCount) {
    std::vector<TypesetLine> lines;
    TypesetLine line;
    PangoLayoutIter* const iterator = pango_layout_get_iter(layout);
    do {
        PangoRectangle box;
        const double baseline = pointsFromUnits(pango_layout_iter_get_baseline(iterator));
        if (const PangoLayoutRun* run = pango_layout_iter_get_run_readonly(iterator)) {
            pango_layout_iter_get_run_extents(iterator, nullptr, &box);
            line.runs.push_back(placedGlyphs(*run, pointsFromUnits(box.x), baseline));
            continue;
        }
        // At the end of the line.
        pango_layout_iter_get_line_extents(iterator, nullptr, &box);
        line.box = pointsRect(box);
        line.baseline = baseline;
        lines.push_back(std::exchange(line, {}));
    } while ((lineCount == 0 || static_cast<int>(lines.size()) < lineCount) &&
             pango_layout_iter_next_run(iterator));
    pango_layout_iter_free(iterator);
    return lines;
}

class PangoTypesetter : public ComplexText {
  public:
    PangoTypesetter(FontFileRef face, FallbackFonts fallbackFonts)
        : face_(std::move(face)), fallbackFonts_(fallbackFonts) {}

    TypesetText typeset(const TypesettingRequest& request) override;

  private:
    GObjectPtr<PangoLayout> makeLayout(const TypesettingRequest& request, Fallback fallback);

    FontFileRef face_;
    FallbackFonts fallbackFonts_;
    // Made when they are first needed.
    GObjectPtr<PangoContext> withoutFallback_;
    GObjectPtr<PangoContext> withFallback_;
};

GObjectPtr<PangoLayout> PangoTypesetter::makeLayout(const TypesettingRequest& request,
                                                    Fallback fallback) {
    GObjectPtr<PangoContext>& context =
        fallback == Fallback::none ? withoutFallback_ : withFallback_;
    if (!context)
        context = makeContext(face_, fallback == Fallback::none ? nullptr : fallbackFonts_);
    GObjectPtr<PangoLayout> owned(pango_layout_new(context.get()));
    PangoLayout* const layout = owned.get();
    setFont(layout, request.pointSize);
    setFallback(layout, fallback, {});
    pango_layout_set_alignment(layout, pangoAlignment(request.alignment));
    const NSLineBreakMode mode = request.lineBreakMode;
    const int width = request.width ? typesettingUnits(*request.width) : -1;
    if (mode != NSLineBreakMode::clipping)
        pango_layout_set_width(layout, width);
    pango_layout_set_wrap(layout, mode == NSLineBreakMode::charWrapping ? PANGO_WRAP_CHAR
                                                                        : PANGO_WRAP_WORD_CHAR);
    const bool hasLastLine = request.lineCount > 1 && isTruncating(mode);
    const std::string text = request.lineCount == 1 ? replaceLineBreaks(request.text, " ")
                             : hasLastLine ? replaceLineBreaks(request.text, kLineSeparator)
                                           : request.text;
    setLayoutText(layout, text, fallback, request.letters);
    if (mode == NSLineBreakMode::charWrapping)
        forbidHyphens(layout);
    if (mode == NSLineBreakMode::clipping)
        alignIfNarrower(layout, width);
    if (hasLastLine)
        joinLinesFrom(layout, request.lineCount - 1, text, fallback, request.letters);
    if (request.width && request.lineCount > 0 && isTruncating(mode)) {
        pango_layout_set_ellipsize(layout, pangoEllipsis(mode));
        pango_layout_set_height(layout, -request.lineCount);
    }
    return owned;
}

TypesetText PangoTypesetter::typeset(const TypesettingRequest& request) {
    GObjectPtr<PangoLayout> layout = makeLayout(request, Fallback::none);
    if (lacksGlyphs(layout.get()))
        layout = makeLayout(request, Fallback::installedFonts);
    TypesetText text;
    text.lines = linesOf(layout.get(), request.lineCount);
    const auto* const first = pango_layout_get_line_readonly(layout.get(), 0);
    text.isLeftToRight = first && first->resolved_dir == PANGO_DIRECTION_LTR;
    text.isEllipsized = pango_layout_is_ellipsized(layout.get());
    return text;
}

} // namespace
} // namespace tesmar

extern "C" __attribute__((visibility("default"))) tesmar::ComplexText*
tesmarMakeComplexText(tesmar::FontFileRef face, tesmar::FallbackFonts fallbackFonts) {
    return new tesmar::PangoTypesetter(std::move(face), fallbackFonts);
}
