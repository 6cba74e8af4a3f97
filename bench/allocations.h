/**
 * Counts what a program allocates, in any language and library: in programs that link this, malloc
 * and the like go through it. Needs the GNU C library.
 *
 * The tests have a different allocator, which fails on demand and sees only C++ allocations.
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
 * Makes the heap keep all memory it was ever given, for blocks of any size. Otherwise some runs
 * would take fresh pages from the kernel, and others the pages left by the previous run.
 */
void keepMemory();

/** Joins the free blocks of the heap, so that the order of earlier frees does not matter. */
void settleHeap();

/** Allocations are counted between these two. Only one thread may run meanwhile. */
void startCounting();
Allocations stopCounting();

} // namespace bench

#endif // FILTER_COMMON_BENCH_ALLOCATIONS_H
