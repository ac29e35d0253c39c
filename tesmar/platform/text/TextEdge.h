// Edges of characters, which keep text legible on any picture: their names and their colours.
// NSAttributedString draws them; all functions may be used by any thread.
#pragma once

#include "tesmar/platform/foundation/NSObject.h"

#include <string_view>

namespace tesmar {

class UIColor;

// raised and depressed: a side of the characters at the bottom right or at the top left, as light
// from the top left leaves it dark. uniform: an outline all around. dropShadow: a soft shadow at
// the bottom right.
enum class TextEdge { none, raised, depressed, uniform, dropShadow };

// The enumerator's name: "none", "raised", "depressed", "uniform" or "dropShadow".
TESMAR_API std::string_view textEdgeName(TextEdge edge);
// Any other name counts as none.
TESMAR_API TextEdge textEdgeNamed(std::string_view name);

// Opaque black, or white where that has the higher contrast with `text`. The alpha of `text` does
// not matter.
TESMAR_API Ref<UIColor> derivedEdgeColor(const UIColor& text);

} // namespace tesmar
