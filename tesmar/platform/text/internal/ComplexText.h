// The full typesetter, for text of any kind: with pango it breaks and truncates lines, orders
// scripts of both directions, and finds fonts for what the face lacks. It is a module of its own,
// so that programs in which all texts are plain need not load pango and the libraries below it.
// Guarded by the shaping lock.
#pragma once

#include "tesmar/platform/text/internal/typesetting.h"

#include <memory>

namespace tesmar {

// For one face.
class ComplexText {
  public:
    virtual ~ComplexText() = default;
    virtual TypesetText typeset(const TypesettingRequest& request) = 0;

  protected:
    ComplexText() = default;
};

// The module's function, which it exports without C++ name mangling. The result is owned by the
// caller; the module is never unloaded. See fallback_fonts.h.
using FallbackFonts = const std::vector<FontFileRef>& (*)(const std::string& family,
                                                          const std::string& language);
using MakeComplexText = ComplexText* (*)(FontFileRef face, FallbackFonts fallbackFonts);
inline constexpr const char* kMakeComplexText = "tesmarMakeComplexText";

} // namespace tesmar
