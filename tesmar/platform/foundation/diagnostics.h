// Messages for developers: fatal errors and diagnostics. Any thread.
#pragma once

#include "tesmar/platform/foundation/export.h"

#include <functional>
#include <string>
#include <string_view>

namespace tesmar {

// Calls the fatal error handler, writes one line, "tesmar: <message>", to standard error and calls
// abort(). For programming errors of the caller.
[[noreturn]] TESMAR_API void fatalError(std::string_view message);

// Receives the message of a fatal error, for crash reporters, just before the process ends. Called
// on the thread of the error, in the middle of whatever the library was doing there; it
// should not use the library. An exception is dropped. An error within the handler is the end,
// without another call of it. Errors of several threads may call it at the same time.
using FatalErrorHandler = std::function<void(std::string_view message)>;

// Replaces the handler; an empty one, the initial state, removes it. Any thread.
TESMAR_API void setFatalErrorHandler(FatalErrorHandler handler);

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
