#include "tesmar/platform/text/NSAttributedString.h"

#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/platform/foundation/scalars.h"
#include "tesmar/platform/graphics/CGContext.h"
#include "tesmar/platform/graphics/UIColor.h"
#include "tesmar/platform/text/UIFont.h"

#include <algorithm>

namespace tesmar {
namespace {

constexpr CGFloat kDefaultSize = 12;

template <class T>
Ref<T> attribute(const NSDictionary& attributes, std::string_view name) {
    return as<T>(attributes.objectForKey(name));
}

Ref<UIColor> textColor(const NSDictionary& attributes) {
    const auto color = attribute<UIColor>(attributes, NSForegroundColorAttributeName);
    return color ? color : UIColor::blackColor();
}

// Null without a window that can be seen.
Ref<UIColor> windowColor(const NSDictionary& attributes) {
    const auto color = attribute<UIColor>(attributes, TESMARWindowColorAttributeName);
    return color && color->alpha() > 0 ? color : nullptr;
}

TextEdge edgeOf(const NSDictionary& attributes) {
    const auto name = attribute<NSString>(attributes, TESMAREdgeAttributeName);
    return name ? textEdgeNamed(name->text()) : TextEdge::none;
}

CGFloat fontSize(const NSDictionary& attributes) {
    const auto font = attribute<UIFont>(attributes, NSFontAttributeName);
    return font ? font->pointSize() : kDefaultSize;
}

CGRect unionOf(const std::vector<CGRect>& boxes) {
    CGRect all;
    for (const CGRect& box : boxes)
        all = CGRectUnion(all, box);
    return all;
}

// Empty for a text without width.
CGRect windowRect(const TextLayout& text, CGFloat fontSize) {
    const CGRect lines = unionOf(text.lineBoxes());
    return lines.isEmpty() ? CGRect() : CGRectInset(lines, -fontSize / 3, -fontSize / 6);
}

} // namespace

Class& NSAttributedString::classObject() {
    static Class& type = *new Class("NSAttributedString", &NSObject::classObject(), {});
    return type;
}

Ref<NSAttributedString> NSAttributedString::attributedString(std::string text,
                                                             const Ref<NSDictionary>& attributes,
                                                             int maximumLines) {
    auto string = alloc<NSAttributedString>();
    string->text_ = std::move(text);
    string->attributes_ = NSDictionary::dictionaryWithEntries(attributes ? attributes->entries()
                                                                         : NSDictionary::Entries());
    const auto font = attribute<UIFont>(*string->attributes_, NSFontAttributeName);
    string->layout_.setText(string->text_);
    string->layout_.setFont(font ? font : UIFont::systemFontOfSize(kDefaultSize));
    string->maximumLines_ = std::max(maximumLines, 0);
    string->layout_.setLineCount(string->maximumLines_);
    return string;
}

const TextLayout& NSAttributedString::layout(std::optional<CGFloat> width,
                                             NSTextAlignment alignment) const {
    layout_.setWidth(width);
    layout_.setAlignment(alignment);
    return layout_;
}

CGSize NSAttributedString::size(std::optional<CGFloat> maxWidth) const {
    return layout(maxWidth, NSTextAlignment::left).size();
}

void NSAttributedString::drawInRect(CGContext& context, const CGRect& rect,
                                    NSTextAlignment alignment) const {
    const CGRect r = finiteRect(rect);
    const TextLayout& text = layout(r.size.width, alignment);
    if (const auto window = windowColor(*attributes_)) {
        const CGFloat size = fontSize(*attributes_);
        context.saveGState();
        context.setFillColor(*window);
        const CGRect box = windowRect(text, size).offsetBy(r.origin);
        context.fillRoundedRect(box.isEmpty() ? box : context.snapped(box), size / 5);
        context.restoreGState();
    }
    if (const auto background = attribute<UIColor>(*attributes_, NSBackgroundColorAttributeName)) {
        context.saveGState();
        context.setFillColor(*background);
        // Snapped to whole pixels: antialiased edges would leave a seam between translucent lines.
        for (const CGRect& line : text.lineBoxes())
            context.fillRect(context.snapped(line.offsetBy(r.origin)));
        context.restoreGState();
    }
    const Ref<UIColor> color = textColor(*attributes_);
    if (const TextEdge edge = edgeOf(*attributes_); edge != TextEdge::none) {
        const auto own = attribute<UIColor>(*attributes_, TESMAREdgeColorAttributeName);
        text.drawEdge(context, r.origin, edge, own ? *own : *derivedEdgeColor(*color),
                      color->alpha());
    }
    text.draw(context, r.origin, *color);
}

CGRect NSAttributedString::drawingBounds(CGFloat width, NSTextAlignment alignment) const {
    const TextLayout& text = layout(width, alignment);
    CGRect boxes;
    if (windowColor(*attributes_))
        boxes = windowRect(text, fontSize(*attributes_));
    if (attribute<UIColor>(*attributes_, NSBackgroundColorAttributeName))
        boxes = CGRectUnion(boxes, unionOf(text.lineBoxes()));
    if (!boxes.isEmpty())
        boxes = CGRectInset(boxes, -1, -1); // they are snapped to whole pixels
    const CGRect characters = CGRectUnion(text.inkBounds(), text.edgeBounds(edgeOf(*attributes_)));
    return CGRectUnion(boxes, characters);
}

bool NSAttributedString::isEqual(const NSObject* other) const {
    const auto* string = dynamic_cast<const NSAttributedString*>(other);
    return string && text_ == string->text_ && maximumLines_ == string->maximumLines_ &&
           attributes_->isEqual(string->attributes_.get());
}

} // namespace tesmar
