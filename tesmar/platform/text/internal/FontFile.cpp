#include "tesmar/platform/text/internal/FontFile.h"

#include <hb-ot.h>

#include <algorithm>
#include <array>
#include <filesystem>

namespace tesmar {
namespace {

void addCharacters(PangoCoverage* coverage, const FcCharSet* characters) {
    std::array<FcChar32, FC_CHARSET_MAP_SIZE> page;
    FcChar32 next;
    for (FcChar32 start = FcCharSetFirstPage(characters, page.data(), &next);
         start != FC_CHARSET_DONE; start = FcCharSetNextPage(characters, page.data(), &next))
        for (FcChar32 i = 0; i < 32 * page.size(); ++i)
            if (page[i / 32] >> (i % 32) & 1)
                pango_coverage_set(coverage, static_cast<int>(start + i), PANGO_COVERAGE_EXACT);
}

void addCharacters(PangoCoverage* coverage, hb_face_t* face) {
    hb_set_t* const characters = hb_set_create();
    hb_face_collect_unicodes(face, characters);
    for (hb_codepoint_t c = HB_SET_VALUE_INVALID; hb_set_next(characters, &c);)
        pango_coverage_set(coverage, static_cast<int>(c), PANGO_COVERAGE_EXACT);
    hb_set_destroy(characters);
}

} // namespace

FontFile::FontFile(std::string path, int index, FcCharSet* characters)
    : path_(std::move(path)), index_(index), characters_(FcCharSetCopy(characters)) {}

FontFile::~FontFile() {
    if (coverage_)
        g_object_unref(coverage_);
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

PangoCoverage* FontFile::coverage() {
    if (!coverage_) {
        coverage_ = pango_coverage_new();
        if (characters_)
            addCharacters(coverage_, characters_);
        else
            addCharacters(coverage_, hb_font_get_face(font()));
    }
    return coverage_;
}

} // namespace tesmar
