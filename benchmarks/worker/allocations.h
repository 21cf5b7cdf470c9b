#pragma once

namespace bench {

struct Allocations {
    long own = 0;     // by the module or this program
    long driver = 0;  // by the libraries below: EGL, GLES, X
};

/// From now on each allocation of the heap, by whatever thread, is counted by who has asked for it; or none any more.
/// Slow while it is on.
void countAllocations(bool on);
/// Counted so far. Any thread.
Allocations allocations();

}  // namespace bench
