// Whatever is unarchived archives back to an equal object.
#include "tesmar/platform/foundation/archive/NSKeyedArchiver.h"
#include "tesmar/platform/foundation/archive/NSKeyedUnarchiver.h"

#include <cstdlib>

using namespace tesmar;

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    const auto object =
        NSKeyedUnarchiver::unarchiveObjectWithData({reinterpret_cast<const char*>(data), size});
    if (!object)
        return 0;
    const std::string bytes = NSKeyedArchiver::archivedDataWithRootObject(object);
    const auto again = NSKeyedUnarchiver::unarchiveObjectWithData(bytes);
    if (again && (!again->isEqual(object.get()) ||
                  NSKeyedArchiver::archivedDataWithRootObject(again) != bytes))
        std::abort();
    return 0;
}
