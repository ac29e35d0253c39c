#include "tesmar/extended/internal/CaptionStyle.h"

#include "tesmar/platform/foundation/scalars.h"
#include "tesmar/platform/text/NSAttributedString.h"

#include <utility>

namespace tesmar {
namespace {

constexpr std::array<std::pair<TextEdge, std::string_view>, 5> kNames{{
    {TextEdge::none, "none"},
    {TextEdge::raised, "raised"},
    {TextEdge::depressed, "depressed"},
    {TextEdge::uniform, "uniform"},
    {TextEdge::dropShadow, "dropShadow"},
}};

bool areEqual(const NSObject* a, const NSObject* b) {
    return a == b || (a && a->isEqual(b));
}

} // namespace

std::string_view edgeName(TextEdge edge) {
    for (const auto& [each, name] : kNames)
        if (each == edge)
            return name;
    return {};
}

CaptionStyle::CaptionStyle(const NSDictionary& style)
    : text(as<UIColor>(style.objectForKey(NSForegroundColorAttributeName))),
      background(as<UIColor>(style.objectForKey(NSBackgroundColorAttributeName))),
      font(as<UIFont>(style.objectForKey(NSFontAttributeName))),
      window(as<UIColor>(style.objectForKey(TESMARWindowColorAttributeName))) {
    if (const auto name = as<NSString>(style.objectForKey(TESMAREdgeAttributeName)))
        for (const auto& [each, eachName] : kNames)
            if (eachName == name->text())
                edge = each;
    if (edge != TextEdge::none)
        edgeColor = as<UIColor>(style.objectForKey(TESMAREdgeColorAttributeName));
    if (window && window->alpha() == 0)
        window = nullptr;
}

bool CaptionStyle::looksLike(const CaptionStyle& other) const {
    return edge == other.edge && areEqual(text.get(), other.text.get()) &&
           areEqual(background.get(), other.background.get()) &&
           areEqual(font.get(), other.font.get()) &&
           areEqual(edgeColor.get(), other.edgeColor.get()) &&
           areEqual(window.get(), other.window.get());
}

} // namespace tesmar
