// The typesetter for most texts of a panel, and for captions in the languages with Latin letters:
// one face has all characters, they run from left to right, and each line fits into the width.
// HarfBuzz alone does that, without the libraries that the full typesetter needs. Guarded by the
// shaping lock.
#pragma once

#include "tesmar/platform/text/internal/typesetting.h"

namespace tesmar {

// The same as the full typesetter's result. std::nullopt if the text is not plain, the face lacks
// one of its characters, or a line has to be broken or truncated.
std::optional<TypesetText> typesetPlainText(const FontFileRef& face,
                                            const TypesettingRequest& request);

// For an installation without the full typesetter: shows any text with the face alone, from left to
// right, in lines that only the text's own line breaks end.
TypesetText typesetAsPlainText(const FontFileRef& face, const TypesettingRequest& request);

} // namespace tesmar
