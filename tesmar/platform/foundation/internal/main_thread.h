// Who may call the user interface. Private to the toolkit.
#pragma once

namespace tesmar {

// The user interface belongs to one thread: the first that called here. In builds without NDEBUG, a
// call from any other ends the process with one line that names `operation`; with it, this is
// nothing.
#ifdef NDEBUG
inline void assertMainThread(const char* /*operation*/) {}
#else
void assertMainThread(const char* operation);
#endif

} // namespace tesmar
