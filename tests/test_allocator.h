/**
 * The allocator of a test program: it counts, and fails when it is told to. A program that links it
 * has all its allocations go this way, those of the library and of the runtimes too.
 */
#ifndef FILTER_COMMON_TESTS_TEST_ALLOCATOR_H
#define FILTER_COMMON_TESTS_TEST_ALLOCATOR_H

#include <gtest/gtest.h>

#include <cstddef>
#include <new>

namespace FiltersCommon::test {

/** Since the program began: how many allocations of how many bytes, and how many still live. */
struct AllocationTotals {
    std::size_t count;
    std::size_t bytes;
    std::size_t live;
};

AllocationTotals allocationTotals();

/** Which allocations fail. */
enum class Failing { NONE, ONE, ONE_AND_ALL_LATER };

/** Has the @p n-th allocation from now on fail, counted from 1. */
void failAllocation(std::size_t n, Failing failing);

/** Has no allocation fail any more, and tells whether one did. */
bool stopFailing();

/**
 * Runs @p operation with its first allocation failing, then with its second, and so on until it
 * succeeds. Each failure has to be std::bad_alloc and to leave nothing allocated; after each,
 * @p unchanged checks what the operation must not have changed.
 * @return how many allocations there are
 */
template <class Operation, class Check>
std::size_t failEachAllocation(Failing failing, Operation operation, Check unchanged)
{
    for (std::size_t n = 1;; ++n) {
        const std::size_t before = allocationTotals().live;
        bool thrown = false;
        failAllocation(n, failing);
        try {
            operation();
        } catch (const std::bad_alloc&) {
            thrown = true;
        }
        const bool failed = stopFailing();
        const std::size_t after = allocationTotals().live;
        EXPECT_EQ(thrown, failed) << "allocation " << n;
        if (!failed)
            return n - 1;
        EXPECT_EQ(after, before) << "allocation " << n;
        unchanged();
    }
}

template <class Operation, class Check>
std::size_t failEachAllocation(Operation operation, Check unchanged)
{
    return failEachAllocation(Failing::ONE, operation, unchanged);
}

} // namespace FiltersCommon::test

#endif // FILTER_COMMON_TESTS_TEST_ALLOCATOR_H
