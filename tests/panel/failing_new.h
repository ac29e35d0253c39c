// Replaces operator new of the program by one that counts, and fails on request.
#pragma once

namespace tesmar {

// Counts down with every allocation of this thread while it is positive. The allocation that makes
// it zero fails; further ones succeed.
extern thread_local long allocationsLeft;

} // namespace tesmar
