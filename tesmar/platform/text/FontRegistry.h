// Which faces there are, and the files behind them.
//
// A face that is asked for by name is, in this order: a face of a file that the host added, an
// installed face of that very name, a stand-in from the table in internal/stand_in_fonts.def whose
// file is installed. Names are compared byte for byte. The system font has a family of its own,
// which is not listed and whose only face bears the family's name. Any thread.
#pragma once

#include "tesmar/platform/foundation/export.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tesmar {

class TESMAR_API FontRegistry {
  public:
    // The name of the system font's family and of its one face.
    static constexpr std::string_view kSystemFont = ".SystemUI";

    // What stands behind a face, for hosts that draw text with another engine.
    struct Source {
        std::string file;   // an absolute path, or as it was given to addFontFile
        int index = 0;      // of the face in the file
        std::string family; // the names that the file itself gives
        std::string fontName;
    };
    // Nothing when there is no face of that name.
    static std::optional<Source> sourceOf(std::string_view fontName);

    // Adds the faces of a font file that the host brings along. False when it holds none.
    static bool addFontFile(const std::string& path);
    // From now on just these faces, and the system font, are offered; for a name with no file
    // behind it the system font's stands in. Files added later are offered too.
    static void restrictTo(std::vector<std::string> fontNames);
    // Forgets the two above and looks at the installed fonts again. Fonts that exist keep their
    // faces.
    static void reset();
};

} // namespace tesmar
