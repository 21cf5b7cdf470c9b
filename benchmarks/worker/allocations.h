#pragma once

namespace bench {

struct Allocations {
    long own = 0;     // by the module or this program
    long driver = 0;  // by the libraries below: EGL, GLES, X
};

/// On: each allocation of the heap, by any thread, is counted for who has asked for it. Slow. Off: none is counted.
void countAllocations(bool on);
/// Counted so far. Any thread.
Allocations allocations();

}  // namespace bench
