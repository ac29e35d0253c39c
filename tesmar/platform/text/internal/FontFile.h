// One face of a font file, loaded when it is first needed and then kept in memory. Lengths are in
// the font's own units, of which unitsPerEm() make up the font size. Guarded by the shaping lock.
#pragma once

#include <fontconfig/fontconfig.h>
#include <hb.h>

#include <memory>
#include <optional>
#include <string>

namespace tesmar {

class FontFile {
  public:
    // `index` is fontconfig's: the number of the face in the file, and above bit 15 the named
    // instance of a variable font.
    FontFile(std::string path, int index) : path_(std::move(path)), index_(index) {}
    // `characters` are those that the face is known to have: they then need not be read from the
    // file. The set is shared, not copied.
    FontFile(std::string path, int index, FcCharSet* characters);
    ~FontFile();
    FontFile(const FontFile&) = delete;
    FontFile& operator=(const FontFile&) = delete;

    // Owned by this object. If the file cannot be read, a font without glyphs.
    hb_font_t* font();
    unsigned unitsPerEm();
    // Of a line without a gap to the next one, which holds accented capitals too, except where a
    // face without a line gap draws them higher than it says. Both are clamped to four times the
    // font size, as a broken font may have any.
    hb_font_extents_t extents();
    // Whether some of its glyphs have colours of their own, as emoji do.
    bool isColored();
    // Null if they are not known. Owned by this object.
    const FcCharSet* characters() const { return characters_; }
    // The same as the typesetter for complex text has them; it alone makes and reads this.
    std::shared_ptr<void> coverage;

  private:
    std::string path_;
    int index_;
    FcCharSet* characters_ = nullptr;
    hb_font_t* font_ = nullptr;
    std::optional<hb_font_extents_t> extents_; // once they have been asked for
};

using FontFileRef = std::shared_ptr<FontFile>;

} // namespace tesmar
