// Typesets text with one face, and has the lock for all typesetting.
#pragma once

#include "tesmar/platform/text/internal/ComplexText.h"

#include <mutex>

namespace tesmar {

struct FontFace;

// The shaping lock. HarfBuzz's and pango's objects, and the caches of them, are not thread-safe.
// Recursive: releasing a font while it is held may lock it again.
std::unique_lock<std::recursive_mutex> lockShaping();

// From the face's own tables, as fractions of the font size.
struct FaceMetrics {
    double ascender = 0;
    double descender = 0; // negative
};

// What one face needs, made when it is first needed. Guarded by the shaping lock. The face passed
// in must always be the same.
class FaceTypesetter {
  public:
    FaceTypesetter() = default;
    ~FaceTypesetter();
    FaceTypesetter(const FaceTypesetter&) = delete;
    FaceTypesetter& operator=(const FaceTypesetter&) = delete;

    // Without lines for a face without a file.
    TypesetText typeset(const FontFace& face, const TypesettingRequest& request);
    // Zero for a face without a file.
    FaceMetrics metrics(const FontFace& face);

  private:
    const FontFileRef& file(const FontFace& face);

    FontFileRef file_;
    std::unique_ptr<ComplexText> complex_;
};

// Sends a diagnostic, once, after typesetting has missed the module for complex text. Not while the
// shaping lock is held: the handler may wait for a thread that measures text.
void reportMissingTypesetter();

} // namespace tesmar
