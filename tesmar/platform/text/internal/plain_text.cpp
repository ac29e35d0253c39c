#include "tesmar/platform/text/internal/plain_text.h"

#include "tesmar/platform/text/internal/shown_text.h"

#include <algorithm>
#include <memory>
#include <string_view>

namespace tesmar {
namespace {

// More than that between two line breaks might be a word that has to be shaped in parts.
constexpr std::size_t kLongestPlainLine = 128; // bytes

struct HbBufferDeleter {
    void operator()(hb_buffer_t* buffer) const { hb_buffer_destroy(buffer); }
};
using HbBufferPtr = std::unique_ptr<hb_buffer_t, HbBufferDeleter>;

struct HbFontDeleter {
    void operator()(hb_font_t* font) const { hb_font_destroy(font); }
};
using HbFontPtr = std::unique_ptr<hb_font_t, HbFontDeleter>;

struct Range {
    hb_codepoint_t first, last;
};

// Latin letters, which need no reordering and take no marks, and the punctuation around them.
constexpr Range kPlainCharacters[] = {
    {0x20, 0x7E}, {0xA0, 0xAC}, {0xAE, 0x24F}, {0x2010, 0x2027}, {0x20A0, 0x20BF}};

bool isPlain(hb_codepoint_t character) {
    return std::ranges::any_of(kPlainCharacters, [&](Range range) {
        return character >= range.first && character <= range.last;
    });
}

std::vector<std::string_view> linesOf(std::string_view text) {
    std::vector<std::string_view> lines;
    for (auto end = text.find('\n'); end != std::string_view::npos; end = text.find('\n')) {
        lines.push_back(text.substr(0, end));
        text.remove_prefix(end + 1);
    }
    lines.push_back(text);
    return lines;
}

// Characters with the script of the letters beside them, as in any text.
hb_script_t scriptOf(hb_buffer_t* characters) {
    hb_unicode_funcs_t* const unicode = hb_buffer_get_unicode_funcs(characters);
    unsigned count = 0;
    const hb_glyph_info_t* const infos = hb_buffer_get_glyph_infos(characters, &count);
    const bool hasLetters = std::any_of(infos, infos + count, [&](const hb_glyph_info_t& info) {
        return hb_unicode_script(unicode, info.codepoint) == HB_SCRIPT_LATIN;
    });
    return hasLetters ? HB_SCRIPT_LATIN : HB_SCRIPT_COMMON;
}

class PlainTypesetter {
  public:
    PlainTypesetter(FontFileRef face, double pointSize)
        : face_(std::move(face)), pointSize_(pointsFromUnits(typesettingUnits(pointSize))),
          sized_(hb_font_create_sub_font(face_->font())) {
        const int scale = typesettingUnits(pointSize_);
        hb_font_set_scale(sized_.get(), scale, scale);
        const hb_font_extents_t extents = face_->extents();
        ascent_ = units(extents.ascender);
        height_ = ascent_ + units(-extents.descender);
    }

    void addLine(std::string_view text) {
        const HbBufferPtr buffer(hb_buffer_create());
        hb_buffer_add_utf8(buffer.get(), text.data(), static_cast<int>(text.size()), 0, -1);
        unsigned count = 0;
        const hb_glyph_info_t* infos = hb_buffer_get_glyph_infos(buffer.get(), &count);
        isPlain_ = isPlain_ && text.size() <= kLongestPlainLine &&
                   std::all_of(infos, infos + count,
                               [](const hb_glyph_info_t& info) { return isPlain(info.codepoint); });
        hb_buffer_set_direction(buffer.get(), HB_DIRECTION_LTR);
        hb_buffer_set_script(buffer.get(), scriptOf(buffer.get()));
        hb_buffer_set_flags(
            buffer.get(), static_cast<hb_buffer_flags_t>(HB_BUFFER_FLAG_BOT | HB_BUFFER_FLAG_EOT));
        hb_shape(sized_.get(), buffer.get(), nullptr, 0);
        place(buffer.get());
    }

    // Whether no added line needs the full typesetter, at any width.
    bool isPlain_ = true;

    int width() const { return *std::ranges::max_element(widths_); }

    // The lines that were added, aligned in `width` units.
    TypesetText aligned(NSTextAlignment alignment, int width);

  private:
    int units(double fontUnits) const {
        return typesettingUnits(fontUnits * pointSize_ / face_->unitsPerEm());
    }
    void place(hb_buffer_t* shaped);

    FontFileRef face_;
    double pointSize_;
    HbFontPtr sized_;
    int ascent_, height_; // of each line
    TypesetText text_;
    std::vector<int> widths_;
};

void PlainTypesetter::place(hb_buffer_t* shaped) {
    const int top = height_ * static_cast<int>(text_.lines.size());
    TypesetLine line;
    line.baseline = pointsFromUnits(top + ascent_);
    GlyphRun run{face_, pointSize_, {}};
    unsigned count = 0;
    const hb_glyph_info_t* const infos = hb_buffer_get_glyph_infos(shaped, &count);
    const hb_glyph_position_t* const places = hb_buffer_get_glyph_positions(shaped, &count);
    run.glyphs.reserve(count);
    int x = 0;
    for (unsigned i = 0; i < count; ++i) {
        isPlain_ = isPlain_ && infos[i].codepoint != 0;
        run.glyphs.push_back({infos[i].codepoint,
                              {pointsFromUnits(x + places[i].x_offset),
                               pointsFromUnits(top + ascent_ - places[i].y_offset)}});
        x += places[i].x_advance;
    }
    line.box = {0, pointsFromUnits(top), pointsFromUnits(x), pointsFromUnits(height_)};
    line.runs.push_back(std::move(run));
    text_.lines.push_back(std::move(line));
    widths_.push_back(x);
}

// Where a line with that much room starts. A position of a whole point stays one.
int startOfLine(NSTextAlignment alignment, int width, int lineWidth) {
    const int room = width - lineWidth;
    if (alignment == NSTextAlignment::left)
        return 0;
    if (alignment == NSTextAlignment::right)
        return room;
    const bool isWhole = width % kUnitsPerPoint == 0 && lineWidth % kUnitsPerPoint == 0;
    return isWhole ? (room / 2 + kUnitsPerPoint / 2) / kUnitsPerPoint * kUnitsPerPoint : room / 2;
}

TypesetText PlainTypesetter::aligned(NSTextAlignment alignment, int width) {
    for (std::size_t i = 0; i < text_.lines.size(); ++i) {
        const double start = pointsFromUnits(startOfLine(alignment, width, widths_[i]));
        text_.lines[i].box.origin.x = start;
        for (PlacedGlyph& glyph : text_.lines[i].runs.front().glyphs)
            glyph.origin.x += start;
    }
    return std::move(text_);
}

std::string withUniformLineBreaks(const TypesettingRequest& request) {
    return replaceLineBreaks(request.text, request.lineCount == 1 ? " " : "\n");
}

} // namespace

std::optional<TypesetText> typesetPlainText(const FontFileRef& face,
                                            const TypesettingRequest& request) {
    const std::string text = withUniformLineBreaks(request);
    const std::vector<std::string_view> lines = linesOf(text);
    const auto most = static_cast<std::size_t>(request.lineCount);
    if (most > 0 && lines.size() > most)
        return std::nullopt;
    // The full typesetter drops an empty last line then.
    if (most > 1 && isTruncating(request.lineBreakMode) && lines.back().empty() && lines.size() > 1)
        return std::nullopt;
    PlainTypesetter typesetter(face, request.pointSize);
    for (const std::string_view line : lines) {
        typesetter.addLine(line);
        if (!typesetter.isPlain_)
            return std::nullopt;
    }
    const int widest = typesetter.width();
    const int width = request.width ? typesettingUnits(*request.width) : widest;
    if (widest > width)
        return std::nullopt;
    return typesetter.aligned(request.alignment, width);
}

TypesetText typesetAsPlainText(const FontFileRef& face, const TypesettingRequest& request) {
    PlainTypesetter typesetter(face, request.pointSize);
    int left = request.lineCount;
    const std::string text = withUniformLineBreaks(request);
    for (const std::string_view line : linesOf(text)) {
        typesetter.addLine(line);
        if (--left == 0)
            break;
    }
    const int widest = typesetter.width();
    return typesetter.aligned(
        request.alignment, std::max(widest, request.width ? typesettingUnits(*request.width) : 0));
}

} // namespace tesmar
