#include "tesmar/platform/foundation/diagnostics.h"

#include <cstdlib>
#include <unistd.h>

namespace tesmar {
namespace {

DiagnosticHandler& handlerSlot() {
    static DiagnosticHandler handler;
    return handler;
}

} // namespace

void fatalError(std::string_view message) {
    // One write, so that lines of several threads do not mix; streams may be broken by now.
    const std::string line = "tesmar: " + std::string(message) + "\n";
    [[maybe_unused]] const auto written = ::write(STDERR_FILENO, line.data(), line.size());
    std::abort();
}

void setDiagnosticHandler(DiagnosticHandler handler) {
    handlerSlot() = std::move(handler);
}

void diagnostic(std::string_view message) {
    // A copy: the handler may replace itself.
    if (const DiagnosticHandler handler = handlerSlot())
        handler(message);
}

bool diagnosticsWanted() {
    return static_cast<bool>(handlerSlot());
}

} // namespace tesmar
