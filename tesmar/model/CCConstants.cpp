#include "tesmar/model/CCConstants.h"

#include "tesmar/platform/text/NSAttributedString.h"

namespace tesmar {

const std::vector<std::string>& CCConstants::CCFontsNameList() {
    static const std::vector<std::string> names{
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
    static const std::map<std::string, std::vector<CGFloat>, std::less<>> sizes{
        // The letters of a script face are small, so it gets larger sizes.
        {"SavoyeLetPlain", {25, 28, 30, 35, 40, 45}},
        {std::string(CCFontDefaultSizesKey()), {15, 18, 20, 23, 26, 30}},
    };
    return sizes;
}

const Ref<NSDictionary>& CCConstants::CCDefaultStyleAttributes() {
    static const Ref<NSDictionary> style = NSDictionary::dictionaryWithEntries({
        {std::string(NSForegroundColorAttributeName), UIColor::whiteColor()},
        {std::string(NSBackgroundColorAttributeName),
         UIColor::blackColor()->colorWithAlphaComponent(0.5)},
        {std::string(NSFontAttributeName), UIFont::systemFontOfSize(17)},
    });
    return style;
}

const std::vector<Ref<UIColor>>& CCConstants::paletteColors() {
    static const std::vector<Ref<UIColor>> colors{
        UIColor::magentaColor(), UIColor::cyanColor(), UIColor::whiteColor(), UIColor::blackColor(),
        UIColor::yellowColor(),  UIColor::redColor(),  UIColor::blueColor(),  UIColor::greenColor(),
    };
    return colors;
}

const Ref<UIFont>& CCConstants::font() {
    static const Ref<UIFont> font = UIFont::fontWithName("HelveticaNeue-Medium", 12);
    return font;
}

} // namespace tesmar
