// What a call costs in processor time and in memory of our own. For one file of a program: it
// replaces the program's operator new.
#pragma once

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <malloc.h>
#include <new>

namespace tesmar::test {

inline std::size_t liveBytes = 0, peakBytes = 0, allocations = 0;

struct Cost {
    double milliseconds = 0;
    std::size_t bytes = 0; // at the most, at one time
    std::size_t allocations = 0;
};

template <class Call>
Cost measured(Call&& call) {
    const std::size_t before = peakBytes = liveBytes, allocationsBefore = allocations;
    const std::clock_t start = std::clock();
    call();
    return {1e3 * static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC, peakBytes - before,
            allocations - allocationsBefore};
}

} // namespace tesmar::test

void* operator new(std::size_t size) {
    void* memory = std::malloc(size);
    if (!memory)
        throw std::bad_alloc();
    using namespace tesmar::test;
    ++allocations;
    liveBytes += malloc_usable_size(memory);
    peakBytes = std::max(peakBytes, liveBytes);
    return memory;
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return operator new(size);
}
// Inlined, it would look to the compiler as if memory of its own operator new were passed to
// free().
[[gnu::noinline]] void operator delete(void* memory) noexcept {
    tesmar::test::liveBytes -= malloc_usable_size(memory);
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    operator delete(memory);
}
