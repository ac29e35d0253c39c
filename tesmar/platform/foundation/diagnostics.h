// The two ways in which the toolkit speaks to developers. Viewers never see either.
#pragma once

#include "tesmar/platform/foundation/export.h"

#include <functional>
#include <string>
#include <string_view>

namespace tesmar {

// Ends the process (abort) after one line, "tesmar: <message>", on standard error. For misuse that
// the interface is built to prevent. Any thread.
[[noreturn]] TESMAR_API void fatalError(std::string_view message);

// Receives what is worth telling a developer but harms nobody: a constraint given up, an image that
// was not found. Called on the thread on which it happened.
using DiagnosticHandler = std::function<void(std::string_view message)>;

// Replaces the handler; an empty one (the start) keeps the library silent. Any thread, as the two
// below.
TESMAR_API void setDiagnosticHandler(DiagnosticHandler handler);

// Hands `message` to the handler, if there is one.
TESMAR_API void diagnostic(std::string_view message);

// Whether anybody listens: lets a caller skip building a message.
TESMAR_API bool diagnosticsWanted();

} // namespace tesmar
