#include "tests/allocations/allocations.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

constinit std::atomic<int> allocations = 0;
constinit std::atomic<bool (*)()> counting{[] { return true; }};

} // namespace

int Allocations() {
    return allocations;
}

void CountAllocationsIf(bool (*counts)()) {
    counting = counts;
}

// These replace the operators of the standard library in every program that this file goes into.

void* operator new(std::size_t size) {
    if (counting.load()())
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
