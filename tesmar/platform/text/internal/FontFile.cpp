#include "tesmar/platform/text/internal/FontFile.h"

#include <hb-ot.h>

#include <algorithm>
#include <filesystem>

namespace tesmar {

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
    hb_font_extents_t extents{};
    hb_font_get_h_extents(font(), &extents);
    const auto most = 4 * static_cast<hb_position_t>(unitsPerEm());
    extents.ascender = std::clamp(extents.ascender, -most, most);
    extents.descender = std::clamp(extents.descender, -most, most);
    return extents;
}

bool FontFile::isColored() {
    hb_face_t* const face = hb_font_get_face(font());
    return hb_ot_color_has_png(face) || hb_ot_color_has_layers(face);
}

} // namespace tesmar
