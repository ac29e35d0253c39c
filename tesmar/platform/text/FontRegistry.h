// The available font faces, and the files that draw them. Any thread may use this.
//
// A face is looked up by its name, which is compared byte for byte: first among the files that the
// host added, then among the installed faces, then in the table of stand-ins,
// internal/stand_in_fonts.def, whose rows count only if their file is installed. The system font
// has a family of its own, which is not listed; its only face has the family's name. So have the
// generic styles, each of which exists where one of its stand-ins is installed: ".MonospacedSerif",
// ".ProportionalSerif", ".MonospacedSans", ".ProportionalSans", ".Casual" and ".Cursive". The face
// ".SmallCapitals" is the system font with small capitals in the place of small letters, by the
// module for other scripts; without that it draws small letters.
//
// Toolkit: may change with any version.
#pragma once

#include "tesmar/platform/foundation/export.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tesmar {

class FontCatalogue;

class TESMAR_API FontRegistry {
  public:
    // The name of the system font's family, and of its only face.
    static constexpr std::string_view kSystemFont = ".SystemUI";

    // The file that draws a face, for hosts that draw text with another engine.
    struct Source {
        std::string file;   // an absolute path, or the path given to addFontFile
        int index = 0;      // fontconfig's index of the face in the file
        std::string family; // the names inside the file
        std::string fontName;
    };
    // std::nullopt if no face has that name, or if the machine has no fonts at all.
    static std::optional<Source> sourceOf(std::string_view fontName);

    // Adds the faces of a font file. False if it is not a regular file, has none, or cannot be
    // read.
    static bool addFontFile(const std::string& path);
    // Limits the faces to these names and the system font, replacing any earlier limit. A name
    // without a font file is drawn with the system font. Files added later add their faces.
    static void restrictTo(std::vector<std::string> fontNames);
    // Undoes addFontFile and restrictTo, and searches the installed fonts again. UIFont objects
    // keep their faces.
    static void reset();

    // For the text layer: the faces as they are now. Lists the installed fonts when it is first
    // called after a change.
    static std::shared_ptr<const FontCatalogue> catalogue();
};

} // namespace tesmar
