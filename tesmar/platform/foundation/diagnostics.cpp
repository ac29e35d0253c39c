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
    // Never destroyed: static destructors may still report diagnostics.
    static auto* const instance = new Slot;
    return *instance;
}

// A copy: a running handler may replace itself.
DiagnosticHandler currentHandler() {
    const std::lock_guard lock(slot().mutex);
    return slot().handler;
}

} // namespace

void fatalError(std::string_view message) {
    // A single write keeps lines of several threads apart, and does not depend on stream state.
    const std::string line = "tesmar: " + std::string(message) + "\n";
    [[maybe_unused]] const auto written = ::write(STDERR_FILENO, line.data(), line.size());
    std::abort();
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
