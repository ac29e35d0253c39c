// The faces that exist at one moment. Immutable; may be used by any thread.
#pragma once

#include "tesmar/platform/text/internal/FontFace.h"

#include <map>
#include <optional>
#include <set>
#include <string_view>
#include <vector>

namespace tesmar {

class FontCatalogue {
  public:
    using Names = std::set<std::string, std::less<>>;

    // `hostFaces` take precedence over installed ones. With `offered`, exactly those names exist;
    // the system font draws the ones that have no file. Takes about a millisecond for 500 installed
    // faces, but much longer once on a machine without font caches.
    FontCatalogue(const std::vector<FontRegistry::Source>& hostFaces,
                  const std::optional<Names>& offered);

    // Null if no face has exactly that name.
    FontFaceRef find(std::string_view name) const;
    // Never null. On a machine without fonts its source has no file.
    const FontFaceRef& systemFace() const { return systemFace_; }

    // In ascending byte order, without the system font's.
    std::vector<std::string> familyNames() const;
    // In ascending byte order; empty for an unknown family.
    std::vector<std::string> facesOfFamily(std::string_view family) const;

  private:
    using Sources = std::map<std::string, FontRegistry::Source, std::less<>>;

    void add(std::string_view name, std::string_view family, const FontRegistry::Source& source);
    void addStandIns(const Sources& real);
    void chooseSystemFace(const Sources& real);
    void restrictTo(const Names& offered);

    std::map<std::string, FontFaceRef, std::less<>> faces_;
    std::map<std::string, std::vector<std::string>, std::less<>> families_;
    FontFaceRef systemFace_;
};

} // namespace tesmar
