#include "tesmar/platform/foundation/internal/main_thread.h"

#include "tesmar/platform/foundation/diagnostics.h"

#include <atomic>

#ifndef NDEBUG
namespace tesmar {
namespace {

// Its address tells living threads apart; thread ids are used again.
thread_local const char identity = 0;
std::atomic<const char*> mainThread = nullptr;

struct Release {
    ~Release() {
        const char* self = &identity;
        mainThread.compare_exchange_strong(self, nullptr);
    }
};

} // namespace

void assertMainThread(const char* operation) {
    thread_local const Release atThreadEnd;
    static_cast<void>(atThreadEnd);
    const char* main = nullptr;
    if (!mainThread.compare_exchange_strong(main, &identity) && main != &identity)
        fatalError(std::string(operation) +
                   " was called off the main thread, the first that used the user interface");
}

} // namespace tesmar
#endif
