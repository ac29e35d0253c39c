// Apart from whoever uses it, or the compiler sees pairs that do not match.
#include "failing_new.h"

#include <cstdlib>
#include <new>

namespace tesmar {
thread_local long allocationsLeft = 0;
}

namespace {

void* allocate(std::size_t size) noexcept {
    if (tesmar::allocationsLeft > 0 && --tesmar::allocationsLeft == 0)
        return nullptr;
    return std::malloc(size ? size : 1);
}

} // namespace

void* operator new(std::size_t size) {
    if (void* const memory = allocate(size))
        return memory;
    throw std::bad_alloc();
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return allocate(size);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
    std::free(memory);
}
