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

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    if (isCounted) ++count;
    return std::malloc(size);
}

void* operator new(std::size_t size) {
    if (void* const memory = operator new(size, std::nothrow)) return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
