// One face: what it is called and the file that draws it. Private to the floor.
#pragma once

#include "tesmar/platform/text/FontRegistry.h"
#include "tesmar/platform/text/internal/shaping.h"

#include <memory>
#include <string>
#include <utility>

namespace tesmar {

// Shared by all fonts of the face; any thread.
struct FontFace {
    FontFace(std::string faceName, std::string familyName, FontRegistry::Source drawnBy)
        : name(std::move(faceName)), family(std::move(familyName)), source(std::move(drawnBy)) {}

    std::string name;
    std::string family; // under which it is listed
    FontRegistry::Source source;

    // Guarded by the shaping lock; filled when first needed.
    mutable Shaper shaper;
};

using FontFaceRef = std::shared_ptr<const FontFace>;

} // namespace tesmar
