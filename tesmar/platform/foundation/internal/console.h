// The console. Private to the library.
#pragma once

namespace tesmar {

// Writes `text` and a line end to standard output at once. Where nobody reads it any more, nothing
// happens: the signal that would end the process (SIGPIPE) stays away. Any thread.
void printLine(const char* text);

} // namespace tesmar
