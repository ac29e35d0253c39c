#include "tesmar/platform/text/FontDescription.h"

#include "tesmar/platform/text/UIFont.h"
#include "tesmar/platform/text/internal/FontFace.h"

#include <hb-ot.h>

#include <algorithm>
#include <cmath>
#include <optional>

namespace tesmar {
namespace {

constexpr double kSmallestHeight = 0.1;

hb_blob_t* table(hb_face_t* face, const char (&tag)[5]) {
    return hb_face_reference_table(face, HB_TAG(tag[0], tag[1], tag[2], tag[3]));
}

bool hasTable(hb_face_t* face, const char (&tag)[5]) {
    hb_blob_t* const bytes = table(face, tag);
    const bool has = hb_blob_get_length(bytes) > 0;
    hb_blob_destroy(bytes);
    return has;
}

// In the font's units. Unset without the table, or when it says nothing.
std::optional<int> windowsHeight(hb_face_t* face) {
    constexpr unsigned kWinAscent = 74, kWinDescent = 76; // offsets of big-endian 16-bit numbers
    hb_blob_t* const bytes = table(face, "OS/2");
    unsigned length = 0;
    const char* const data = hb_blob_get_data(bytes, &length);
    const auto at = [&](unsigned offset) {
        const auto high = static_cast<unsigned char>(data[offset]);
        return high << 8 | static_cast<unsigned char>(data[offset + 1]);
    };
    const int height = length >= kWinDescent + 2 ? at(kWinAscent) + at(kWinDescent) : 0;
    hb_blob_destroy(bytes);
    return height > 0 ? std::optional(height) : std::nullopt;
}

std::string fullName(hb_face_t* face) {
    char name[256];
    unsigned size = sizeof name;
    hb_ot_name_get_utf8(face, HB_OT_NAME_ID_FULL_NAME, hb_language_from_string("en", -1), &size,
                        name);
    return {name, size};
}

} // namespace

FontDescription describeFont(const UIFont& font) {
    const FontRegistry::Source& source = font.face()->source;
    FontDescription description;
    if (source.file.empty())
        return description;
    description.file = source.file;
    description.index = source.index;
    description.family = source.family;
    description.postScriptName = source.fontName;

    const auto lock = lockShaping();
    FontFile file(source.file, source.index);
    hb_font_t* const shaped = file.font();
    hb_face_t* const face = hb_font_get_face(shaped);
    description.lineHeight = font.lineHeight() / font.pointSize();
    description.fullName = fullName(face);
    if (description.fullName.empty())
        description.fullName = source.fontName;
    if (hasTable(face, "CFF ") || hasTable(face, "CFF2"))
        description.outlines = FontDescription::Outlines::cff;
    const float weight = hb_style_get_value(shaped, HB_STYLE_TAG_WEIGHT);
    description.weight = static_cast<int>(std::lround(std::clamp(weight, 1.0F, 1000.0F)));
    description.isItalic = hb_style_get_value(shaped, HB_STYLE_TAG_ITALIC) > 0 ||
                           hb_style_get_value(shaped, HB_STYLE_TAG_SLANT_ANGLE) != 0;
    const hb_font_extents_t extents = file.extents();
    const int height = windowsHeight(face).value_or(extents.ascender - extents.descender);
    description.windowsHeight =
        std::max(static_cast<double>(height) / file.unitsPerEm(), kSmallestHeight);
    return description;
}

} // namespace tesmar
