// Messages for developers: fatal errors and diagnostics. Any thread.
#pragma once

#include "tesmar/platform/foundation/export.h"

#include <functional>
#include <string>
#include <string_view>

namespace tesmar {

// Writes one line, "tesmar: <message>", to standard error and calls abort(). For programming errors
// of the caller.
[[noreturn]] TESMAR_API void fatalError(std::string_view message);

// Receives a message about a problem that the library recovered from, such as a constraint that was
// dropped or an image that was not found. Called on the thread on which the problem occurred.
using DiagnosticHandler = std::function<void(std::string_view message)>;

// Replaces the handler. Without one, the initial state, diagnostics are dropped.
TESMAR_API void setDiagnosticHandler(DiagnosticHandler handler);

// Passes `message` to the handler, if there is one.
TESMAR_API void diagnostic(std::string_view message);

// Whether there is a handler. Lets a caller skip building a message.
TESMAR_API bool diagnosticsWanted();

} // namespace tesmar
