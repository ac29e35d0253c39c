#include "tesmar/platform/foundation/internal/main_thread.h"

#include "tesmar/platform/foundation/diagnostics.h"

#include <thread>

#ifndef NDEBUG
namespace tesmar {

void assertMainThread(const char* operation) {
    static const std::thread::id main = std::this_thread::get_id();
    if (std::this_thread::get_id() != main)
        fatalError(std::string(operation) +
                   " was called off the main thread, the first that used the user interface");
}

} // namespace tesmar
#endif
