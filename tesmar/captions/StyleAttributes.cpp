#include "tesmar/captions/internal/StyleAttributes.h"

#include "tesmar/platform/foundation/scalars.h"
#include "tesmar/platform/text/NSAttributedString.h"

namespace tesmar {
namespace {

bool areEqual(const NSObject* a, const NSObject* b) {
    return a == b || (a && a->isEqual(b));
}

} // namespace

StyleAttributes::StyleAttributes(const NSDictionary& style)
    : text(as<UIColor>(style.objectForKey(NSForegroundColorAttributeName))),
      background(as<UIColor>(style.objectForKey(NSBackgroundColorAttributeName))),
      font(as<UIFont>(style.objectForKey(NSFontAttributeName))),
      window(as<UIColor>(style.objectForKey(TESMARWindowColorAttributeName))) {
    if (const auto name = as<NSString>(style.objectForKey(TESMAREdgeAttributeName)))
        edge = textEdgeNamed(name->text());
    if (edge != TextEdge::none)
        edgeColor = as<UIColor>(style.objectForKey(TESMAREdgeColorAttributeName));
    if (window && window->alpha() == 0)
        window = nullptr;
}

bool StyleAttributes::looksLike(const StyleAttributes& other) const {
    return edge == other.edge && areEqual(text.get(), other.text.get()) &&
           areEqual(background.get(), other.background.get()) &&
           areEqual(font.get(), other.font.get()) &&
           areEqual(edgeColor.get(), other.edgeColor.get()) &&
           areEqual(window.get(), other.window.get());
}

} // namespace tesmar
