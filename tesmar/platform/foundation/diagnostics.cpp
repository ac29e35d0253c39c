#include "tesmar/platform/foundation/diagnostics.h"

#include <cstdlib>
#include <memory>
#include <mutex>
#include <unistd.h>

namespace tesmar {
namespace {

struct Slot {
    std::mutex mutex;
    DiagnosticHandler handler;
    // Shared, so that getting it copies nothing of the host's.
    std::shared_ptr<const FatalErrorHandler> fatalErrorHandler;
};

Slot& slot() {
    // Never destroyed: static destructors may still report diagnostics.
    static auto* const instance = new Slot;
    return *instance;
}

// A copy: a running handler may replace itself.
DiagnosticHandler currentHandler() {
    const std::lock_guard lock(slot().mutex);
    return slot().handler;
}

std::shared_ptr<const FatalErrorHandler> currentFatalErrorHandler() {
    const std::lock_guard lock(slot().mutex);
    return slot().fatalErrorHandler;
}

} // namespace

void fatalError(std::string_view message) {
    // Of the error that this thread is reporting; a second one, within the handler, follows from
    // it.
    thread_local const std::string_view* first = nullptr;
    if (!first) {
        first = &message;
        try {
            if (const auto handler = currentFatalErrorHandler())
                (*handler)(message);
        } catch (...) { // the process ends all the same
        }
    }
    // A single write keeps lines of several threads apart, and does not depend on stream state.
    const std::string line = "tesmar: " + std::string(*first) + "\n";
    [[maybe_unused]] const auto written = ::write(STDERR_FILENO, line.data(), line.size());
    std::abort();
}

void setFatalErrorHandler(FatalErrorHandler handler) {
    auto next = handler ? std::make_shared<const FatalErrorHandler>(std::move(handler)) : nullptr;
    const std::lock_guard lock(slot().mutex);
    slot().fatalErrorHandler.swap(next); // the old one is destroyed after unlocking
}

void setDiagnosticHandler(DiagnosticHandler handler) {
    const std::lock_guard lock(slot().mutex);
    slot().handler.swap(handler); // the parameter destroys the old one after unlocking
}

void diagnostic(std::string_view message) {
    if (const DiagnosticHandler handler = currentHandler())
        handler(message);
}

bool diagnosticsWanted() {
    const std::lock_guard lock(slot().mutex);
    return static_cast<bool>(slot().handler);
}

} // namespace tesmar
