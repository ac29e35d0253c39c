// The faces that can be asked for, at one moment. Never changes once built; any thread. Private to
// the floor.
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

    // `hostFaces` come before installed ones. `offered`: just these names, whatever draws them.
    // Costs about a millisecond for 500 installed faces, and far more once on a machine whose font
    // caches are missing.
    FontCatalogue(const std::vector<FontRegistry::Source>& hostFaces,
                  const std::optional<Names>& offered);

    // Null when there is none of exactly that name.
    FontFaceRef find(std::string_view name) const;
    // Never null. Its source has no file on a machine without any font.
    const FontFaceRef& systemFace() const { return systemFace_; }

    std::vector<std::string> familyNames() const;
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
