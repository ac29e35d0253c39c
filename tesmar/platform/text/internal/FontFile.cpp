#include "tesmar/platform/text/internal/FontFile.h"

#include <hb-ot.h>

#include <algorithm>
#include <filesystem>

namespace tesmar {
namespace {

// The top of a tall letter, 0 where the face lacks it.
hb_position_t accentedCapital(hb_font_t* font) {
    constexpr hb_codepoint_t kRingedA = 0xC5;
    hb_codepoint_t glyph = 0;
    hb_glyph_extents_t extents{};
    const bool exists = hb_font_get_nominal_glyph(font, kRingedA, &glyph) &&
                        hb_font_get_glyph_extents(font, glyph, &extents);
    return exists ? extents.y_bearing : 0;
}

} // namespace

FontFile::FontFile(std::string path, int index, FcCharSet* characters)
    : path_(std::move(path)), index_(index), characters_(FcCharSetCopy(characters)) {}

FontFile::~FontFile() {
    hb_font_destroy(font_);
    if (characters_)
        FcCharSetDestroy(characters_);
}

hb_font_t* FontFile::font() {
    if (font_)
        return font_;
    const auto index = static_cast<unsigned>(index_);
    // The path may have become another file since the fonts were listed; opening a fifo waits.
    std::error_code error;
    hb_blob_t* const bytes = std::filesystem::is_regular_file(path_, error)
                                 ? hb_blob_create_from_file(path_.c_str())
                                 : hb_blob_get_empty();
    hb_face_t* const face = hb_face_create(bytes, index & 0xFFFF);
    font_ = hb_font_create(face);
    constexpr unsigned kWholeVariableFont = 0x8000;
    if (const unsigned instance = index >> 16; instance > 0 && instance < kWholeVariableFont)
        hb_font_set_var_named_instance(font_, instance - 1);
    hb_face_destroy(face);
    hb_blob_destroy(bytes);
    return font_;
}

unsigned FontFile::unitsPerEm() {
    return hb_face_get_upem(hb_font_get_face(font()));
}

hb_font_extents_t FontFile::extents() {
    if (extents_)
        return *extents_;
    hb_font_extents_t extents{};
    hb_font_get_h_extents(font(), &extents);
    // Some faces count the height of accents as a gap between lines. Lines here have no gaps, and
    // the background of each must hold its letters.
    if (extents.line_gap > 0)
        extents.ascender = std::max(extents.ascender + extents.line_gap, accentedCapital(font()));
    const auto most = 4 * static_cast<hb_position_t>(unitsPerEm());
    extents.ascender = std::clamp(extents.ascender, -most, most);
    extents.descender = std::clamp(extents.descender, -most, most);
    extents_ = extents;
    return extents;
}

bool FontFile::isColored() {
    hb_face_t* const face = hb_font_get_face(font());
    return hb_ot_color_has_png(face) || hb_ot_color_has_layers(face);
}

} // namespace tesmar
