#include "tesmar/platform/text/FontRegistry.h"

#include "tesmar/platform/text/internal/FontCatalogue.h"
#include "tesmar/platform/text/internal/installed_fonts.h"

#include <iterator>
#include <mutex>

namespace tesmar {
namespace {

struct Registry {
    std::mutex mutex;
    std::vector<FontRegistry::Source> hostFaces;
    std::optional<FontCatalogue::Names> offered;
    std::shared_ptr<const FontCatalogue> catalogue; // null when out of date
};

Registry& registry() {
    // Never destroyed: threads may ask for fonts until the process ends.
    static Registry* instance = new Registry;
    return *instance;
}

} // namespace

std::shared_ptr<const FontCatalogue> FontRegistry::catalogue() {
    Registry& r = registry();
    const std::lock_guard lock(r.mutex);
    if (!r.catalogue)
        r.catalogue = std::make_shared<FontCatalogue>(r.hostFaces, r.offered);
    return r.catalogue;
}

std::optional<FontRegistry::Source> FontRegistry::sourceOf(std::string_view fontName) {
    const FontFaceRef face = catalogue()->find(fontName);
    if (!face || face->source.file.empty())
        return std::nullopt;
    return face->source;
}

bool FontRegistry::addFontFile(const std::string& path) {
    auto faces = facesInFile(path);
    if (faces.empty())
        return false;
    Registry& r = registry();
    const std::lock_guard lock(r.mutex);
    if (r.offered)
        for (const Source& face : faces)
            r.offered->insert(face.fontName);
    std::move(faces.begin(), faces.end(), std::back_inserter(r.hostFaces));
    r.catalogue.reset();
    return true;
}

void FontRegistry::restrictTo(std::vector<std::string> fontNames) {
    Registry& r = registry();
    const std::lock_guard lock(r.mutex);
    r.offered.emplace(std::make_move_iterator(fontNames.begin()),
                      std::make_move_iterator(fontNames.end()));
    r.catalogue.reset();
}

void FontRegistry::reset() {
    Registry& r = registry();
    const std::lock_guard lock(r.mutex);
    r.hostFaces.clear();
    r.offered.reset();
    r.catalogue.reset();
}

} // namespace tesmar
