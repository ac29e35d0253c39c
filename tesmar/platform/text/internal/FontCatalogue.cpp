#include "tesmar/platform/text/internal/FontCatalogue.h"

#include "tesmar/platform/text/internal/installed_fonts.h"

#include <algorithm>

namespace tesmar {
namespace {

struct StandIn {
    std::string_view name;
    std::string_view family;
    std::string_view drawnBy;
};
constexpr StandIn kStandIns[] = {
#define STAND_IN(name, family, drawnBy) {name, family, drawnBy},
#include "tesmar/platform/text/internal/stand_in_fonts.def"
#undef STAND_IN
};

bool isSystemFont(std::string_view name) {
    return name == FontRegistry::kSystemFont;
}

// A style such as ".Cursive", which is found by its name only.
bool isGenericStyle(const FontFace& face) {
    return face.name.starts_with('.') && face.name == face.family;
}

} // namespace

FontCatalogue::FontCatalogue(const std::vector<FontRegistry::Source>& hostFaces,
                             const std::optional<Names>& offered) {
    Sources real;
    for (const auto& source : hostFaces)
        real.emplace(source.fontName, source);
    for (auto& source : installedFaces())
        real.emplace(source.fontName, std::move(source));
    chooseSystemFace(real);
    for (const auto& [name, source] : real)
        add(name, source.family, source);
    addStandIns(real);
    if (!systemFace_->source.file.empty())
        add(FontFace::kSmallCapitals, FontFace::kSmallCapitals, systemFace_->source);
    if (offered)
        restrictTo(*offered);
    for (const auto& [name, face] : faces_)
        if (!isGenericStyle(*face))
            families_[face->family].push_back(name);
}

void FontCatalogue::add(std::string_view name, std::string_view family,
                        const FontRegistry::Source& source) {
    if (isSystemFont(name) || faces_.contains(name))
        return;
    faces_.emplace(name,
                   std::make_shared<FontFace>(std::string(name), std::string(family), source));
}

void FontCatalogue::addStandIns(const Sources& real) {
    for (const StandIn& row : kStandIns)
        if (const auto found = real.find(row.drawnBy); found != real.end())
            add(row.name, row.family, found->second);
}

void FontCatalogue::chooseSystemFace(const Sources& real) {
    FontRegistry::Source source;
    if (!real.empty())
        source = real.begin()->second; // if no stand-in is installed
    for (const StandIn& row : kStandIns) {
        const auto found = isSystemFont(row.name) ? real.find(row.drawnBy) : real.end();
        if (found != real.end()) {
            source = found->second;
            break;
        }
    }
    const std::string name(FontRegistry::kSystemFont);
    systemFace_ = std::make_shared<FontFace>(name, name, std::move(source));
}

void FontCatalogue::restrictTo(const Names& offered) {
    std::erase_if(faces_, [&](const auto& face) { return !offered.contains(face.first); });
    for (const std::string& name : offered) {
        const auto row = std::ranges::find(kStandIns, name, &StandIn::name);
        add(name, row == std::end(kStandIns) ? name : row->family, systemFace_->source);
    }
}

FontFaceRef FontCatalogue::find(std::string_view name) const {
    if (isSystemFont(name))
        return systemFace_;
    const auto found = faces_.find(name);
    return found == faces_.end() ? nullptr : found->second;
}

std::vector<std::string> FontCatalogue::familyNames() const {
    std::vector<std::string> names;
    names.reserve(families_.size());
    for (const auto& [name, faces] : families_)
        names.push_back(name);
    return names;
}

std::vector<std::string> FontCatalogue::facesOfFamily(std::string_view family) const {
    if (isSystemFont(family))
        return {systemFace_->name};
    const auto found = families_.find(family);
    return found == families_.end() ? std::vector<std::string>() : found->second;
}

} // namespace tesmar
