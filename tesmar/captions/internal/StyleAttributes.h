// A style dictionary read as what it looks like.
#pragma once

#include "tesmar/platform/foundation/NSDictionary.h"
#include "tesmar/platform/graphics/UIColor.h"
#include "tesmar/platform/text/TextEdge.h"
#include "tesmar/platform/text/UIFont.h"

#include <array>

namespace tesmar {

// In the order in which they are offered.
inline constexpr std::array kOfferedEdges{TextEdge::none, TextEdge::raised, TextEdge::depressed,
                                          TextEdge::uniform, TextEdge::dropShadow};

// Null and none for what is missing or of another class.
struct StyleAttributes {
    explicit StyleAttributes(const NSDictionary& style);

    Ref<UIColor> text;
    Ref<UIColor> background;
    Ref<UIFont> font;
    TextEdge edge = TextEdge::none;
    Ref<UIColor> edgeColor; // null without an edge
    Ref<UIColor> window;    // null where it is transparent

    bool looksLike(const StyleAttributes& other) const;
};

} // namespace tesmar
