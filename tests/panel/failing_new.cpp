// In a file of its own: a compiler that inlines these warns of mismatched new and delete.
#include "failing_new.h"

#include <cstdlib>
#include <new>

thread_local long tesmar::allocationsLeft = 0;

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    if (tesmar::allocationsLeft > 0 && --tesmar::allocationsLeft == 0)
        return nullptr;
    return std::malloc(size ? size : 1);
}
void* operator new(std::size_t size) {
    if (void* const memory = operator new(size, std::nothrow))
        return memory;
    throw std::bad_alloc();
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
