#include "tesmar/extended/TESMARStylePreset.h"

#include "tesmar/model/CCConstants.h"
#include "tesmar/platform/text/NSAttributedString.h"

namespace tesmar {
namespace {

constexpr CGFloat kLargeText = 30; // points

Ref<NSDictionary> defaultWith(const NSDictionary::Entries& changes) {
    auto style = CCConstants::CCDefaultStyleAttributes()->mutableCopy();
    for (const auto& [key, value] : changes)
        style->setObject(value, key);
    return NSDictionary::dictionaryWithEntries(style->entries());
}

Ref<NSDictionary> inColors(const Ref<UIColor>& text, const Ref<UIColor>& background) {
    return defaultWith({{std::string(NSForegroundColorAttributeName), text},
                        {std::string(NSBackgroundColorAttributeName), background}});
}

} // namespace

const std::vector<Ref<NSDictionary>>& TESMARPresetStyles() {
    static const auto& styles = *new const std::vector<Ref<NSDictionary>>{
        CCConstants::CCDefaultStyleAttributes(),
        inColors(UIColor::whiteColor(), UIColor::blackColor()),
        inColors(UIColor::blackColor(), UIColor::whiteColor()),
        inColors(UIColor::yellowColor(), UIColor::blackColor()),
        inColors(UIColor::yellowColor(), UIColor::blueColor()),
        defaultWith({{std::string(NSFontAttributeName), UIFont::systemFontOfSize(kLargeText)}}),
    };
    return styles;
}

} // namespace tesmar
