#include "tesmar/model/TESMARConfig.h"

#include "tesmar/model/CCConstants.h"
#include "tesmar/platform/foundation/archive/NSKeyedArchiver.h"
#include "tesmar/platform/foundation/archive/NSKeyedUnarchiver.h"
#include "tesmar/platform/foundation/defaults/NSUserDefaults.h"
#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/platform/foundation/scalars.h"
#include "tesmar/platform/ui/internal/platform_classes.h"

#include <mutex>

namespace tesmar {
namespace {

struct LastSave {
    std::mutex mutex;
    std::string failure;
};

LastSave& lastSave() {
    static auto* const instance = new LastSave; // never destroyed
    return *instance;
}

} // namespace

Class& TESMARConfig::classObject() {
    static Class& type =
        *new Class("TESMARConfig", &NSObject::classObject(), allocator<TESMARConfig>(), {},
                   {method<&TESMARConfig::sessionClosedCaptureStyle>("sessionClosedCaptureStyle"),
                    method<&TESMARConfig::saveSessionClosedCaptureStyle>(
                        "saveSessionClosedCaptureStyleWithAttributes:"),
                    method<&TESMARConfig::sessionOrDefaultClosedCaptureStyle>(
                        "sessionOrDefaultClosedCaptureStyle")});
    return type;
}

Ref<NSDictionary> TESMARConfig::sessionClosedCaptureStyle() {
    registerPlatformClasses();
    const auto stored = NSUserDefaults::standardUserDefaults()->objectForKey(
        CCConstants::CCSessionStyleUserDefaultsKey());
    const auto record = as<NSData>(stored);
    if (!record)
        return nullptr;
    return as<NSDictionary>(NSKeyedUnarchiver::unarchiveObjectWithData(record->bytes()));
}

void TESMARConfig::saveSessionClosedCaptureStyle(const Ref<NSDictionary>& attributes) {
    const auto defaults = NSUserDefaults::standardUserDefaults();
    const auto key = CCConstants::CCSessionStyleUserDefaultsKey();
    std::string failure;
    if (!attributes) {
        defaults->removeObjectForKey(key);
    } else if (std::string record = NSKeyedArchiver::archivedDataWithRootObject(attributes);
               !record.empty()) {
        defaults->setObject(NSData::dataWithBytes(std::move(record)), key);
    } else {
        failure = "the style is too large to be archived";
    }
    if (!defaults->synchronize())
        failure = defaults->synchronizeFailure();
    LastSave& last = lastSave();
    const std::lock_guard lock(last.mutex);
    last.failure = std::move(failure);
}

std::string TESMARConfig::saveFailure() {
    LastSave& last = lastSave();
    const std::lock_guard lock(last.mutex);
    return last.failure;
}

Ref<NSDictionary> TESMARConfig::sessionOrDefaultClosedCaptureStyle() {
    const auto stored = sessionClosedCaptureStyle();
    return stored ? stored : CCConstants::CCDefaultStyleAttributes();
}

} // namespace tesmar
