#include "tesmar/platform/foundation/internal/main_thread.h"

#include "tesmar/platform/foundation/diagnostics.h"

#include <atomic>

#ifndef NDEBUG
namespace tesmar {
namespace {

// Its address tells living threads apart; thread ids are used again.
thread_local bool hasEnded = false;
std::atomic<const bool*> mainThread = nullptr;

struct Release {
    ~Release() {
        hasEnded = true;
        const bool* self = &hasEnded;
        mainThread.compare_exchange_strong(self, nullptr);
    }
};

// Whether this is the main thread, or has become it now. Objects of the thread that are destroyed
// after its Release pass until another thread takes over.
bool isMainThread() {
    const bool* main = nullptr;
    if (hasEnded)
        return mainThread == nullptr;
    return mainThread.compare_exchange_strong(main, &hasEnded) || main == &hasEnded;
}

} // namespace

void assertMainThread(const char* operation) {
    thread_local const Release atThreadEnd;
    static_cast<void>(atThreadEnd);
    if (!isMainThread())
        fatalError(std::string(operation) +
                   " was called off the main thread, the first that used the user interface");
}

} // namespace tesmar
#endif
