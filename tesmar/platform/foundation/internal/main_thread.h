// Checks that the user interface is used from one thread only.
#pragma once

namespace tesmar {

// The main thread is the first that calls this; after its end, the next that calls is. In builds
// without NDEBUG, a call from another thread is a fatal error that names `operation`; with NDEBUG
// this does nothing.
#ifdef NDEBUG
inline void assertMainThread(const char* /*operation*/) {}
#else
void assertMainThread(const char* operation);
#endif

} // namespace tesmar
