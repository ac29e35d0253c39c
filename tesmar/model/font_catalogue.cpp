// The operations of UIFont that the panel's font picker uses. They cache nothing.
#include "tesmar/model/CCConstants.h"
#include "tesmar/platform/foundation/scalars.h"
#include "tesmar/platform/text/UIFont.h"

#include <algorithm>

namespace tesmar {

std::string UIFont::systemFontFamily() {
    // Any size: the family does not depend on it.
    return systemFontOfSize(12)->familyName();
}

std::vector<std::string> UIFont::CCSupportedFonts() {
    const auto& candidates = CCConstants::CCFontsNameList();
    std::vector<std::string> supported;
    for (const auto& family : familyNames())
        for (const auto& face : fontNamesForFamilyName(family))
            if (std::find(candidates.begin(), candidates.end(), face) != candidates.end())
                supported.push_back(face);
    // The system font is a candidate by its family name, which need not be the name of a face.
    for (const auto& candidate : candidates)
        if (candidate == systemFontFamily())
            supported.push_back(candidate);
    std::sort(supported.begin(), supported.end(), localizedCaseInsensitiveLess);
    return supported;
}

std::vector<CGFloat> UIFont::fontSizesForFontName(std::string_view name) {
    const auto& sizes = CCConstants::CCFontsSizesDict();
    auto found = sizes.find(name);
    if (found == sizes.end())
        found = sizes.find(CCConstants::CCFontDefaultSizesKey());
    return found == sizes.end() ? std::vector<CGFloat>() : found->second;
}

} // namespace tesmar
