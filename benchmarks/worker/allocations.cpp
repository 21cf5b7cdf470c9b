// Replaces the C library's malloc, also for operator new and for all libraries of the process.

#include "worker/allocations.h"

#include <dlfcn.h>
#include <execinfo.h>

#include <atomic>
#include <cstddef>
#include <string_view>

extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
}

namespace bench {

namespace {

std::atomic<bool> counting = false;
std::atomic<long> own = 0;
std::atomic<long> driver = 0;
thread_local bool inside = false;  // the count's own calls allocate too

// Who has asked for an allocation: the first on the stack that is neither the C nor the C++ library, whose containers
// allocate for others. The first two frames, the count and its malloc, are this program's own.
bool isOwn(void* const* frames, int count) {
    Dl_info here{};
    dladdr(reinterpret_cast<void*>(&isOwn), &here);
    for (int i = 2; i < count; ++i) {
        Dl_info info{};
        if (!dladdr(frames[i], &info) || !info.dli_fname) return false;
        if (info.dli_fbase == here.dli_fbase) return true;
        const std::string_view path = info.dli_fname;
        const std::string_view file = path.substr(path.rfind('/') + 1);
        if (file.starts_with("libc.") || file.starts_with("libstdc++")) continue;
        return file.starts_with("libZETDisplay");
    }
    return false;
}

__attribute__((noinline)) void count() {
    if (!counting || inside) return;
    inside = true;
    void* frames[12];
    ++(isOwn(frames, backtrace(frames, 12)) ? own : driver);
    inside = false;
}

}  // namespace

void countAllocations(bool on) {
    void* frame[1];
    backtrace(frame, 1);  // its first call loads a library
    counting = on;
}

Allocations allocations() {
    return {own, driver};
}

}  // namespace bench

extern "C" {

void* malloc(std::size_t size) {
    bench::count();
    return __libc_malloc(size);
}

void* calloc(std::size_t count, std::size_t size) {
    bench::count();
    return __libc_calloc(count, size);
}

void* realloc(void* block, std::size_t size) {
    bench::count();
    return __libc_realloc(block, size);
}

}  // extern "C"
