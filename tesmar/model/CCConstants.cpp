#include "tesmar/model/CCConstants.h"

#include "tesmar/platform/text/NSAttributedString.h"

namespace tesmar {

// No value is ever destroyed, so that destructors of static objects can still read it.

const std::vector<std::string>& CCConstants::CCFontsNameList() {
    static const auto& names = *new const std::vector<std::string>{
        UIFont::systemFontOfSize(12)->familyName(),
        "HelveticaNeue",
        "Courier",
        "Menlo-Regular",
        "TrebuchetMS",
        "Avenir",
        "SavoyeLetPlain",
        "Copperplate",
    };
    return names;
}

const std::map<std::string, std::vector<CGFloat>, std::less<>>& CCConstants::CCFontsSizesDict() {
    static const auto& sizes = *new const std::map<std::string, std::vector<CGFloat>, std::less<>>{
        // The letters of a script face are small, so it gets larger sizes.
        {"SavoyeLetPlain", {25, 28, 30, 35, 40, 45}},
        {std::string(CCFontDefaultSizesKey()), {15, 18, 20, 23, 26, 30}},
    };
    return sizes;
}

const Ref<NSDictionary>& CCConstants::CCDefaultStyleAttributes() {
    static const auto& style = *new const Ref<NSDictionary>(NSDictionary::dictionaryWithEntries({
        {std::string(NSForegroundColorAttributeName), UIColor::whiteColor()},
        {std::string(NSBackgroundColorAttributeName),
         UIColor::blackColor()->colorWithAlphaComponent(0.5)},
        {std::string(NSFontAttributeName), UIFont::systemFontOfSize(17)},
    }));
    return style;
}

const std::vector<Ref<UIColor>>& CCConstants::paletteColors() {
    static const auto& colors = *new const std::vector<Ref<UIColor>>{
        UIColor::magentaColor(), UIColor::cyanColor(), UIColor::whiteColor(), UIColor::blackColor(),
        UIColor::yellowColor(),  UIColor::redColor(),  UIColor::blueColor(),  UIColor::greenColor(),
    };
    return colors;
}

const Ref<UIFont>& CCConstants::font() {
    static const auto& font =
        *new const Ref<UIFont>(UIFont::fontWithName("HelveticaNeue-Medium", 12));
    return font;
}

} // namespace tesmar
