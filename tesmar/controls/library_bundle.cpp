#include "tesmar/controls/library_bundle.h"

#include "tesmar/controls/internal/own_bundle.h"
#include "tesmar/resources/internal/embedded.h"

#include <mutex>

namespace tesmar {

Ref<NSBundle> TESMARHostBundle(std::string applicationIdentifier) {
    return NSBundle::bundle(std::move(applicationIdentifier), embeddedResource);
}

Ref<NSBundle> TESMARBundle() {
    static std::once_flag once;
    std::call_once(once, [] {
        NSBundle::registerBundle(
            NSBundle::bundle(std::string(TESMARBundleIdentifier), embeddedResource));
    });
    return NSBundle::bundleWithIdentifier(TESMARBundleIdentifier);
}

} // namespace tesmar
