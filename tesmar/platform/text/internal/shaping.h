// Shaping with pango: the objects that each face needs for it, and the lock for all of them.
//
// Text is first shaped with the face alone, which needs none of the machine's other fonts; they are
// loaded only for a text with characters that the face lacks. Pango's objects are not thread-safe,
// so all of them are used and released under one lock.
#pragma once

#include "tesmar/platform/text/internal/FontFileMap.h"

#include <mutex>
#include <string>

namespace tesmar {

struct FontFace;

// The shaping lock. Recursive: releasing a font while it is held may lock it again.
std::unique_lock<std::recursive_mutex> lockShaping();

// From the face's own tables, as fractions of the font size.
struct FaceMetrics {
    double ascender = 0;
    double descender = 0; // negative
};

// The pango objects of one face, made when they are first needed. Guarded by the shaping lock. The
// face passed in must always be the same.
class Shaper {
  public:
    Shaper() = default;
    ~Shaper();
    Shaper(const Shaper&) = delete;
    Shaper& operator=(const Shaper&) = delete;

    // A new layout without text, which counts in points. Null for a face without a file.
    GObjectPtr<PangoLayout> makeLayout(const FontFace& face, double pointSize, Fallback fallback);
    // Zero for a face without a file.
    FaceMetrics metrics(const FontFace& face);

  private:
    const FontFileRef& file(const FontFace& face);

    FontFileRef file_;
    GObjectPtr<PangoContext> withoutFallback_;
    GObjectPtr<PangoContext> withFallback_;
};

// Sets the text, valid UTF-8, of a layout that was made with that fallback.
void setLayoutText(PangoLayout* layout, const std::string& text, Fallback fallback);

} // namespace tesmar
