#include "tesmar/captions/TESMARCaptionStyle.h"

#include "tesmar/captions/internal/StyleAttributes.h"

namespace tesmar {
namespace {

constexpr CGFloat kSizeWithoutFont = 12; // as NSAttributedString draws it

TESMARCaptionStyle::Color plain(const UIColor& color) {
    return {color.red(), color.green(), color.blue(), color.alpha()};
}

} // namespace

TESMARCaptionStyle TESMARCaptionStyleFrom(const Ref<NSDictionary>& attributes) {
    const StyleAttributes given(attributes ? *attributes
                                           : *NSDictionary::dictionaryWithEntries({}));
    const auto text = given.text ? given.text : UIColor::blackColor();
    const auto font = given.font ? given.font : UIFont::systemFontOfSize(kSizeWithoutFont);

    TESMARCaptionStyle style;
    style.text = plain(*text);
    if (given.background)
        style.background = plain(*given.background);
    style.points = font->pointSize();
    style.fontName = font->fontName();
    style.face = describeFont(*font);
    style.edge = given.edge;
    if (given.edge != TextEdge::none)
        style.edgeColor = plain(given.edgeColor ? *given.edgeColor : *derivedEdgeColor(*text));
    if (given.window)
        style.window = plain(*given.window);
    return style;
}

} // namespace tesmar
