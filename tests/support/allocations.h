#pragma once

namespace zet::test {

// How often a thread calls operator new. Only in programs that hold allocations.cpp.

/// Counts the calling thread from now on.
void countAllocations();
/// By all counted threads since the start of the program.
int allocations();

}  // namespace zet::test
