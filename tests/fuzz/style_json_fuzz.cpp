// Every text is a style that comes back equal, or is refused with a reason.
#include "tesmar/sharing/TESMARStyleJSON.h"

#include <cstdlib>

using namespace tesmar;

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    const auto result = styleFromJSON({reinterpret_cast<const char*>(data), size});
    if (!result.style == result.problem.empty())
        std::abort();
    if (result.style &&
        !result.style->isEqual(styleFromJSON(styleToJSON(*result.style)).style.get()))
        std::abort();
    return 0;
}
