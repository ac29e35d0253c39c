// Pango, on a private fontconfig configuration for each face. Private to the floor.
//
// A face is first shaped with alone, which needs none of the machine's other fonts; only a text
// with characters that it lacks brings these in. Pango's objects are for one thread at a time: all
// of them are used, and let go, under one lock.
#pragma once

#include <pango/pango.h>

#include <memory>
#include <mutex>

namespace tesmar {

struct FontFace;

template <class T>
struct GObjectDeleter {
    void operator()(T* object) const { g_object_unref(object); }
};
template <class T>
using GObjectPtr = std::unique_ptr<T, GObjectDeleter<T>>;

std::unique_lock<std::recursive_mutex> lockShaping();

// Starts what pango loads once in the background, so that the first text waits for less of it.
void prepareShaping();

enum class Fallback { none, installedFonts };

// Heights by a face's own tables, as parts of its size.
struct FaceMetrics {
    double ascender = 0;
    double descender = 0; // negative
};

// What a face keeps for shaping. Under the lock.
class Shaper {
  public:
    Shaper() = default;
    ~Shaper();
    Shaper(const Shaper&) = delete;
    Shaper& operator=(const Shaper&) = delete;

    // Lengths are points: no resolution, no hinting, no rounding. Null for a face without a file.
    PangoContext* context(const FontFace& face, Fallback fallback);
    const FaceMetrics& metrics(const FontFace& face);

  private:
    GObjectPtr<PangoContext> alone_;
    GObjectPtr<PangoContext> withFallback_;
    std::unique_ptr<FaceMetrics> metrics_;
};

// Any family name does: a shaper's context draws with its face.
void setFontSize(PangoLayout* layout, double points);

} // namespace tesmar
