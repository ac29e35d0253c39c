// Every list that can be read survives a round trip and converts to objects.
#include "tesmar/platform/foundation/archive/internal/property_list_objects.h"

#include <cstdlib>

using namespace tesmar;

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    const auto list = readPropertyList({reinterpret_cast<const char*>(data), size});
    if (!list)
        return 0;
    const std::string bytes = writePropertyList(*list);
    const auto again = readPropertyList(bytes);
    if (!again || writePropertyList(*again) != bytes)
        std::abort();
    if (const auto object = objectFromPropertyList(*list))
        propertyListFromObject(*object);
    return 0;
}
