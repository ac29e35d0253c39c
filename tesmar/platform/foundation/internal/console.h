// Standard output.
#pragma once

namespace tesmar {

// Writes `text` and a line end to standard output and flushes. A closed pipe is ignored: SIGPIPE is
// not delivered. Any thread.
void printLine(const char* text);

} // namespace tesmar
