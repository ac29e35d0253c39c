// What a face keeps for shaping, with pango. Private to the floor.
//
// A face is first shaped with alone, which needs none of the machine's other fonts; only a text
// with characters that it lacks brings these in. Pango's objects are for one thread at a time: all
// of them are used, and let go, under one lock.
#pragma once

#include "tesmar/platform/text/internal/FontFileMap.h"

#include <mutex>

namespace tesmar {

struct FontFace;

std::unique_lock<std::recursive_mutex> lockShaping();

// Heights by a face's own tables, as parts of its size.
struct FaceMetrics {
    double ascender = 0;
    double descender = 0; // negative
};

// Under the lock.
class Shaper {
  public:
    Shaper() = default;
    ~Shaper();
    Shaper(const Shaper&) = delete;
    Shaper& operator=(const Shaper&) = delete;

    // A new layout without text, in points. Null for a face without a file.
    GObjectPtr<PangoLayout> makeLayout(const FontFace& face, double pointSize, Fallback fallback);
    FaceMetrics metrics(const FontFace& face);

  private:
    const FontFileRef& file(const FontFace& face);

    FontFileRef file_;
    GObjectPtr<PangoContext> alone_;
    GObjectPtr<PangoContext> withFallback_;
};

} // namespace tesmar
