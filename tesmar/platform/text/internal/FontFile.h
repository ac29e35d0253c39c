// One face of a font file, opened when it is first needed and then kept. Lengths are the font's own
// units, unitsPerEm() to its size. Private to the floor; used under the shaping lock.
#pragma once

#include <fontconfig/fontconfig.h>
#include <hb.h>
#include <pango/pango.h>

#include <memory>
#include <string>

namespace tesmar {

class FontFile {
  public:
    // `index` is fontconfig's: the face's place in the file, and a variable font's named instance.
    FontFile(std::string path, int index) : path_(std::move(path)), index_(index) {}
    // With the characters that it is known to have, so that asking for them does not open it.
    FontFile(std::string path, int index, FcCharSet* characters);
    ~FontFile();
    FontFile(const FontFile&) = delete;
    FontFile& operator=(const FontFile&) = delete;

    // A font without glyphs when the file can't be read.
    hb_font_t* font();
    unsigned unitsPerEm();
    hb_font_extents_t extents();
    // Whether some of its glyphs have colours of their own.
    bool isColored();
    PangoCoverage* coverage();

  private:
    std::string path_;
    int index_;
    FcCharSet* characters_ = nullptr;
    hb_font_t* font_ = nullptr;
    PangoCoverage* coverage_ = nullptr;
};

using FontFileRef = std::shared_ptr<FontFile>;

} // namespace tesmar
