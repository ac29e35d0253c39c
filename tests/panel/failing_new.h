// Replaces operator new of the whole program by one that fails when it is told to.
#pragma once

namespace tesmar {

// How many allocations of this thread are left until one fails; 0: none does.
extern thread_local long allocationsLeft;

} // namespace tesmar
