#include "tesmar/platform/foundation/diagnostics.h"

#include <cstdlib>
#include <mutex>
#include <unistd.h>

namespace tesmar {
namespace {

struct Slot {
    std::mutex mutex;
    DiagnosticHandler handler;
};

Slot& slot() {
    // Never destroyed: there may be something to tell until the very end of the process.
    static auto* const instance = new Slot;
    return *instance;
}

// A copy: a handler that is called may replace itself.
DiagnosticHandler currentHandler() {
    const std::lock_guard lock(slot().mutex);
    return slot().handler;
}

} // namespace

void fatalError(std::string_view message) {
    // One write, so that lines of several threads do not mix; streams may be broken by now.
    const std::string line = "tesmar: " + std::string(message) + "\n";
    [[maybe_unused]] const auto written = ::write(STDERR_FILENO, line.data(), line.size());
    std::abort();
}

void setDiagnosticHandler(DiagnosticHandler handler) {
    const std::lock_guard lock(slot().mutex);
    slot().handler.swap(handler); // what was there goes unlocked, with the parameter
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
