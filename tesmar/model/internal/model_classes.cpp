#include "tesmar/model/internal/model_classes.h"

#include "tesmar/model/TESMARConfig.h"
#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/platform/text/UIFont.h"
#include "tesmar/platform/ui/internal/platform_classes.h"

#include <mutex>

namespace tesmar {

void registerModelClasses() {
    static std::once_flag once;
    std::call_once(once, [] {
        registerPlatformClasses();
        UIFont::classObject().addClassMethods(
            {method<&UIFont::CCSupportedFonts>("CCSupportedFonts"),
             method<&UIFont::systemFontFamily>("systemFontFamily"),
             method<&UIFont::fontSizesForFontName>("fontSizesForFontName:")});
        registerClass(TESMARConfig::classObject());
    });
}

} // namespace tesmar
