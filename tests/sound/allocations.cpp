#include "tests/sound/allocations.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {
std::atomic<int> allocations = 0;
}

int Allocations() {
    return allocations;
}

// These replace the operators of the standard library in every program that this file goes into.

void* operator new(std::size_t size) {
    ++allocations;
    if (void* memory = std::malloc(size > 0 ? size : 1))
        return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
