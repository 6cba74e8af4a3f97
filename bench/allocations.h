/**
 * Counts what a program allocates, whichever language and library it comes from: the programs that
 * link this have malloc and its like go through it. Needs the GNU C library.
 *
 * The allocator of the tests is another: it fails on demand, and sees only what C++ allocates.
 */
#ifndef FILTER_COMMON_BENCH_ALLOCATIONS_H
#define FILTER_COMMON_BENCH_ALLOCATIONS_H

#include <cstddef>
#include <cstdint>

namespace bench {

struct Allocations {
    std::size_t count = 0;
    std::int64_t live = 0; /**< bytes allocated and not freed; negative if more was freed */
};

/**
 * Has the heap keep all memory that it was ever given, for blocks of any size. Without it some runs
 * would take fresh pages from the kernel, and others the pages that the run before left.
 */
void keepMemory();

/** Joins what lies free on the heap, so that nothing depends on the order in which it was freed. */
void settleHeap();

/** Between the two, allocations are counted. Only one thread may run then. */
void startCounting();
Allocations stopCounting();

} // namespace bench

#endif // FILTER_COMMON_BENCH_ALLOCATIONS_H
