#include "support/allocations.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

thread_local bool isCounted = false;
std::atomic<int> count = 0;

}  // namespace

void zet::test::countAllocations() {
    isCounted = true;
}

int zet::test::allocations() {
    return count;
}

void* operator new(std::size_t size) {
    if (isCounted) ++count;
    if (void* const memory = std::malloc(size)) return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
