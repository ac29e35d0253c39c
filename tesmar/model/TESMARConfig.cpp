#include "tesmar/model/TESMARConfig.h"

#include "tesmar/model/CCConstants.h"
#include "tesmar/platform/foundation/archive/NSKeyedArchiver.h"
#include "tesmar/platform/foundation/archive/NSKeyedUnarchiver.h"
#include "tesmar/platform/foundation/defaults/NSUserDefaults.h"
#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/platform/foundation/scalars.h"
#include "tesmar/platform/ui/internal/platform_classes.h"

namespace tesmar {

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

bool TESMARConfig::saveSessionClosedCaptureStyle(const Ref<NSDictionary>& attributes) {
    const auto defaults = NSUserDefaults::standardUserDefaults();
    const auto key = CCConstants::CCSessionStyleUserDefaultsKey();
    if (!attributes) {
        defaults->removeObjectForKey(key);
    } else {
        std::string record = NSKeyedArchiver::archivedDataWithRootObject(attributes);
        if (record.empty())
            return false; // too large
        defaults->setObject(NSData::dataWithBytes(std::move(record)), key);
    }
    return defaults->synchronize();
}

Ref<NSDictionary> TESMARConfig::sessionOrDefaultClosedCaptureStyle() {
    const auto stored = sessionClosedCaptureStyle();
    return stored ? stored : CCConstants::CCDefaultStyleAttributes();
}

} // namespace tesmar
