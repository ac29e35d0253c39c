#include "tesmar/platform/text/NSAttributedString.h"

#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/platform/graphics/CGContext.h"
#include "tesmar/platform/graphics/UIColor.h"
#include "tesmar/platform/text/UIFont.h"

namespace tesmar {
namespace {

constexpr CGFloat kDefaultSize = 12;

template <class T>
Ref<T> attribute(const NSDictionary& attributes, std::string_view name) {
    return as<T>(attributes.objectForKey(name));
}

} // namespace

Class& NSAttributedString::classObject() {
    static Class& type = *new Class("NSAttributedString", &NSObject::classObject(), {});
    return type;
}

Ref<NSAttributedString> NSAttributedString::attributedString(std::string text,
                                                             const Ref<NSDictionary>& attributes) {
    auto string = alloc<NSAttributedString>();
    string->text_ = std::move(text);
    string->attributes_ = NSDictionary::dictionaryWithEntries(attributes ? attributes->entries()
                                                                         : NSDictionary::Entries());
    const auto font = attribute<UIFont>(*string->attributes_, NSFontAttributeName);
    string->layout_.setText(string->text_);
    string->layout_.setFont(font ? font : UIFont::systemFontOfSize(kDefaultSize));
    string->layout_.setLineCount(0);
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
    if (const auto background = attribute<UIColor>(*attributes_, NSBackgroundColorAttributeName)) {
        context.saveGState();
        context.setFillColor(*background);
        // Snapped to whole pixels: antialiased edges would leave a seam between translucent lines.
        for (const CGRect& line : text.lineBoxes())
            context.fillRect(context.snapped(line.offsetBy(r.origin)));
        context.restoreGState();
    }
    const auto color = attribute<UIColor>(*attributes_, NSForegroundColorAttributeName);
    text.draw(context, r.origin, color ? *color : *UIColor::blackColor());
}

CGRect NSAttributedString::drawingBounds(CGFloat width, NSTextAlignment alignment) const {
    const TextLayout& text = layout(width, alignment);
    CGRect bounds = text.inkBounds();
    for (const CGRect& line : text.lineBoxes())
        bounds = CGRectUnion(bounds, line);
    return bounds;
}

bool NSAttributedString::isEqual(const NSObject* other) const {
    const auto* string = dynamic_cast<const NSAttributedString*>(other);
    return string && text_ == string->text_ && attributes_->isEqual(string->attributes_.get());
}

} // namespace tesmar
