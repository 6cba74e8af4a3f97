/**
 * What the tests of the class interface when memory runs out have in common: each allocation of an
 * operation fails once by itself, and once together with all later ones.
 */
#ifndef FILTER_COMMON_TESTS_OUT_OF_MEMORY_H
#define FILTER_COMMON_TESTS_OUT_OF_MEMORY_H

#include "invariants.h"
#include "support.h"
#include "test_allocator.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>

namespace FiltersCommon::test {

constexpr Failing FAILINGS[] = {Failing::ONE, Failing::ONE_AND_ALL_LATER};

/**
 * Expects that @p operation allocates, that each failure is std::bad_alloc and leaves nothing
 * allocated, and runs the check @p unchanged after it. The operation can be run any number of
 * times.
 */
template <class Operation, class Check = void (*)()>
void expectBadAlloc(
    Operation operation, std::size_t allocationsAtLeast = 1, Check unchanged = [] {})
{
    operation(); // what the runtimes build once, and the memory they keep
    for (const Failing failing : FAILINGS)
        EXPECT_GE(failEachAllocation(failing, operation, unchanged), allocationsAtLeast);
}

/** Expects that @p operation needs no memory: it succeeds when there is none. */
template <class Operation>
void expectNoAllocation(Operation operation)
{
    EXPECT_EQ(failEachAllocation(Failing::ONE_AND_ALL_LATER, operation, [] {}), 0u);
}

/** The same value, the same text, and the invariants hold. */
template <class Object>
void expectSame(const Object& object, const Object& expected)
{
    EXPECT_TRUE(object == expected);
    EXPECT_EQ(dump(object), dump(expected));
    expectInvariants(object);
}

/**
 * Has each allocation of @p operation on a copy of @p before fail in turn, and expects the copy to
 * equal @p before after each failure. When the operation succeeds at last, the copy is what the
 * operation makes of @p before where nothing fails.
 */
template <class Object, class Operation>
void expectUnchanged(const Object& before, Operation operation, std::size_t allocationsAtLeast = 1)
{
    for (const Failing failing : FAILINGS) {
        Object expected(before);
        operation(expected);
        Object object(before);
        EXPECT_GE(failEachAllocation(
                      failing, [&] { operation(object); }, [&] { expectSame(object, before); }),
                  allocationsAtLeast);
        expectSame(object, expected);
    }
}

} // namespace FiltersCommon::test

#endif // FILTER_COMMON_TESTS_OUT_OF_MEMORY_H
