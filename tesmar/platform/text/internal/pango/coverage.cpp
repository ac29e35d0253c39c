#include "tesmar/platform/text/internal/pango/coverage.h"

#include "tesmar/platform/text/internal/pango/gobject_ptr.h"

#include <array>

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

PangoCoverage* coverageOf(FontFile& file) {
    if (!file.coverage) {
        PangoCoverage* const coverage = pango_coverage_new();
        file.coverage = std::shared_ptr<PangoCoverage>(coverage, GObjectDeleter());
        if (const FcCharSet* characters = file.characters())
            addCharacters(coverage, characters);
        else
            addCharacters(coverage, hb_font_get_face(file.font()));
    }
    return static_cast<PangoCoverage*>(file.coverage.get());
}

} // namespace tesmar
