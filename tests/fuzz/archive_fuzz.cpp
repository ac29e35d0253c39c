// Every object that can be unarchived survives a round trip. A stored record that is a dictionary
// becomes a style, which can be saved and read again.
#include "tesmar/model/TESMARConfig.h"
#include "tesmar/platform/foundation/NSDictionary.h"
#include "tesmar/platform/foundation/archive/NSKeyedArchiver.h"
#include "tesmar/platform/foundation/archive/NSKeyedUnarchiver.h"
#include "tesmar/platform/foundation/defaults/NSUserDefaults.h"
#include "tesmar/platform/foundation/scalars.h"
#include "tesmar/platform/ui/internal/platform_classes.h"

#include <cstdlib>

using namespace tesmar;

namespace {

void require(bool holds) {
    if (!holds)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    registerPlatformClasses();
    const std::string record(reinterpret_cast<const char*>(data), size);
    const auto object = NSKeyedUnarchiver::unarchiveObjectWithData(record);
    if (object) {
        const std::string bytes = NSKeyedArchiver::archivedDataWithRootObject(object);
        const auto again = NSKeyedUnarchiver::unarchiveObjectWithData(bytes);
        require(again && again->isEqual(object.get()));
        require(NSKeyedArchiver::archivedDataWithRootObject(again) == bytes);
    }

    const auto defaults = NSUserDefaults::standardUserDefaults();
    defaults->setPreferencesPath("/dev/null/nowhere"); // values stay in memory
    defaults->setObject(NSData::dataWithBytes(record), "CCSessionStyleUserDefaultsKey");
    const auto style = TESMARConfig::sessionClosedCaptureStyle();
    require((style != nullptr) == (as<NSDictionary>(object) != nullptr));
    if (style) {
        TESMARConfig::saveSessionClosedCaptureStyle(style);
        require(style->isEqual(TESMARConfig::sessionClosedCaptureStyle().get()));
    }
    return 0;
}
