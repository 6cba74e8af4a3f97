/**
 * The allocator of a test program: it counts, and fails when it is told to. A program that links it
 * has all its allocations go this way, those of the library and of the runtimes too.
 */
#ifndef FILTER_COMMON_TESTS_TEST_ALLOCATOR_H
#define FILTER_COMMON_TESTS_TEST_ALLOCATOR_H

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <new>

namespace FiltersCommon::test {

/** Since the program began: how many allocations of how many bytes, and how many still live. */
struct AllocationTotals {
    std::size_t count;
    std::size_t bytes;
    std::size_t live;
    std::size_t liveBytes;
};

AllocationTotals allocationTotals();

/** The most bytes that lived at once since the peak was forgotten last. */
std::size_t peakLiveBytes();
void forgetPeak();

/** Which allocations fail. */
enum class Failing { NONE, ONE, ONE_AND_ALL_LATER };

/** Has the @p n-th allocation from now on fail, counted from 1. */
void failAllocation(std::size_t n, Failing failing);

/** Has no allocation fail any more, and tells whether one did. */
bool stopFailing();

/** Notes which blocks are allocated from now on and still live; a few hundred at most. */
void noteBlocks();

/** Frees the noted blocks, which nobody else will, and notes none any more. */
void freeNotedBlocks();

/** What it took to have an operation succeed after each of its allocations had failed. */
struct FailedAllocations {
    std::size_t count;         /**< how many allocations there are */
    std::size_t leftAllocated; /**< the most blocks that one failure left allocated */
};

/**
 * Runs @p operation with its first allocation failing, then with its second, and so on until it
 * succeeds. Each failure has to be std::bad_alloc and nothing else; after each, @p unchanged checks
 * what the operation must not have changed.
 */
template <class Operation, class Check>
FailedAllocations failInTurn(Failing failing, Operation operation, Check unchanged)
{
    FailedAllocations result = {0, 0};
    for (std::size_t n = 1;; ++n) {
        const std::size_t before = allocationTotals().live;
        const char* outcome = "success";
        failAllocation(n, failing);
        try {
            operation();
        } catch (const std::bad_alloc&) {
            outcome = "std::bad_alloc";
        } catch (...) {
            outcome = "another exception";
        }
        const bool failed = stopFailing();
        const std::size_t after = allocationTotals().live;
        EXPECT_STREQ(outcome, failed ? "std::bad_alloc" : "success") << "allocation " << n;
        if (!failed)
            return result;
        result = {n, std::max(result.leftAllocated, after - before)};
        unchanged();
    }
}

/**
 * As failInTurn, and each failure has to leave nothing allocated.
 * @return how many allocations there are
 */
template <class Operation, class Check>
std::size_t failEachAllocation(Failing failing, Operation operation, Check unchanged)
{
    const FailedAllocations result = failInTurn(failing, operation, unchanged);
    EXPECT_EQ(result.leftAllocated, 0u);
    return result.count;
}

template <class Operation, class Check>
std::size_t failEachAllocation(Operation operation, Check unchanged)
{
    return failEachAllocation(Failing::ONE, operation, unchanged);
}

} // namespace FiltersCommon::test

#endif // FILTER_COMMON_TESTS_TEST_ALLOCATOR_H
