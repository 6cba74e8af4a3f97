/**
 * Measures the work of an operation by what it allocates, and expects it to grow no faster than
 * its input.
 */
#ifndef FILTER_COMMON_TESTS_WORK_H
#define FILTER_COMMON_TESTS_WORK_H

#include "test_allocator.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <iomanip>
#include <iostream>
#include <string>
#include <vector>

namespace FiltersCommon::test {

struct Work {
    std::size_t allocations;
    std::size_t bytes; /**< all that were allocated, also those that were freed in between */
    std::size_t peak;  /**< the most bytes that lived at once */
};

/** What @p operation allocates; it must free whatever it makes. */
template <class Operation>
Work workOf(Operation operation)
{
    const AllocationTotals before = allocationTotals();
    forgetPeak();
    operation();
    const AllocationTotals after = allocationTotals();
    return {after.count - before.count, after.bytes - before.bytes,
            peakLiveBytes() - before.liveBytes};
}

/** Work that does not depend on the size: blocks of an arena, a buffer, what is built once. */
constexpr Work FIXED_WORK = {64, 64 << 10, 64 << 10};

/** Expects at most twice the work for twice the size, plus a tenth and a fixed part. */
inline void expectAtMostTwice(const Work& work, const Work& atHalfTheSize)
{
    const auto twice = [](std::size_t number) { return number * 22 / 10; };
    EXPECT_LE(work.allocations, twice(atHalfTheSize.allocations) + FIXED_WORK.allocations);
    EXPECT_LE(work.bytes, twice(atHalfTheSize.bytes) + FIXED_WORK.bytes);
    EXPECT_LE(work.peak, twice(atHalfTheSize.peak) + FIXED_WORK.peak);
}

/**
 * Has @p prepare make an operation for @p size, for twice and for four times as much, and expects
 * the work to grow in proportion.
 * @return the work at four times the size
 */
template <class Prepare>
Work expectProportional(std::size_t size, Prepare prepare)
{
    std::vector<Work> works;
    for (const std::size_t factor : {1u, 2u, 4u}) {
        const auto operation = prepare(size * factor);
        works.push_back(workOf(operation));
    }
    expectAtMostTwice(works[1], works[0]);
    expectAtMostTwice(works[2], works[1]);
    return works[2];
}

/** Prints the work for each unit of input. */
inline void printWork(const std::string& what, const Work& work, std::size_t units)
{
    const auto perUnit = [units](std::size_t number) {
        return static_cast<double>(number) / static_cast<double>(units);
    };
    std::cout << std::left << std::setw(48) << what << std::right << std::fixed
              << std::setprecision(2) << std::setw(9) << perUnit(work.allocations)
              << " allocations " << std::setw(9) << perUnit(work.bytes) << " bytes " << std::setw(9)
              << perUnit(work.peak) << " at the peak\n";
}

} // namespace FiltersCommon::test

#endif // FILTER_COMMON_TESTS_WORK_H
