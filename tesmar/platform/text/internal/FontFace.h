// A font face: its names, the file that draws it, and what is needed to shape text with it.
#pragma once

#include "tesmar/platform/text/FontRegistry.h"
#include "tesmar/platform/text/internal/FaceTypesetter.h"

#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace tesmar {

// Shared by all fonts of the face; may be used by any thread.
struct FontFace {
    FontFace(std::string faceName, std::string familyName, FontRegistry::Source drawnBy)
        : name(std::move(faceName)), family(std::move(familyName)), source(std::move(drawnBy)) {}

    // The face of that name draws the system font in small capitals.
    static constexpr std::string_view kSmallCapitals = ".SmallCapitals";
    Letters letters() const {
        return name == kSmallCapitals ? Letters::smallCapitals : Letters::asWritten;
    }

    std::string name;
    std::string family; // the one that lists the face; the file may name another
    FontRegistry::Source source;

    mutable FaceTypesetter typesetter; // guarded by the shaping lock
};

using FontFaceRef = std::shared_ptr<const FontFace>;

} // namespace tesmar
