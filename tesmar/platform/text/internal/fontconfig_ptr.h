// Owning pointers to fontconfig objects.
#pragma once

#include <fontconfig/fontconfig.h>

#include <memory>

namespace tesmar {

struct FontconfigDeleter {
    void operator()(FcConfig* config) const { FcConfigDestroy(config); }
    void operator()(FcPattern* pattern) const { FcPatternDestroy(pattern); }
    void operator()(FcFontSet* fonts) const { FcFontSetDestroy(fonts); }
};
using FcConfigPtr = std::unique_ptr<FcConfig, FontconfigDeleter>;
using FcPatternPtr = std::unique_ptr<FcPattern, FontconfigDeleter>;
using FcFontSetPtr = std::unique_ptr<FcFontSet, FontconfigDeleter>;

} // namespace tesmar
