#include "filter_code_set.h"

#include "filter_types.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <set>
#include <vector>

namespace FiltersCommon {
namespace {

using Kinds = CodeSet<filtersMatch_t>;

filtersMatch_t kind(std::uint32_t code) { return static_cast<filtersMatch_t>(code); }

/** The ends of the set and of its halves, which make every pattern of neighbours and ends. */
constexpr std::uint32_t CODES[] = {0, 1, 2, 3, 4, 5, 30, 31, 32, 33, 62, 63};
constexpr std::uint32_t SUBSETS = 1u << std::size(CODES);

std::set<filtersMatch_t> subset(std::uint32_t number)
{
    std::set<filtersMatch_t> kinds;
    for (std::size_t i = 0; i < std::size(CODES); ++i)
        if ((number >> i & 1) != 0)
            kinds.insert(kind(CODES[i]));
    return kinds;
}

Kinds setOf(const std::set<filtersMatch_t>& kinds)
{
    Kinds set;
    for (const filtersMatch_t code : kinds)
        set.insert(code);
    return set;
}

TEST(CodeSet, IsWalkedInAscendingOrder)
{
    for (std::uint32_t number = 0; number < SUBSETS; ++number) {
        const std::set<filtersMatch_t> expected = subset(number);
        const Kinds set = setOf(expected);
        ASSERT_EQ(std::vector<filtersMatch_t>(set.begin(), set.end()),
                  std::vector<filtersMatch_t>(expected.begin(), expected.end()));
        ASSERT_EQ(set.size(), expected.size());
        ASSERT_EQ(set.empty(), expected.empty());
        for (std::uint32_t code = 0; code < CodeSet<filtersMatch_t>::LIMIT; ++code) {
            ASSERT_EQ(set.contains(kind(code)), expected.count(kind(code)) != 0);
            ASSERT_EQ(set.bits() >> code & 1, expected.count(kind(code)));
        }
    }
}

TEST(CodeSet, IsWalkedByBothFormsOfTheStep)
{
    const Kinds set = {MATCH_TPID, MATCH_TTL, MATCH_DROP};
    Kinds::Iterator at = set.begin();
    for (const filtersMatch_t code : {MATCH_TPID, MATCH_TTL, MATCH_DROP}) {
        const Kinds::Iterator place = at;
        EXPECT_TRUE(at == place);
        EXPECT_FALSE(at == set.end());
        EXPECT_EQ(*at++, code);
        EXPECT_FALSE(at == place);
        EXPECT_TRUE(++Kinds::Iterator(place) == at);
    }
    EXPECT_TRUE(at == set.end());
    EXPECT_FALSE(at != set.end());
}

TEST(CodeSet, MeetsAndLeavesOthers)
{
    for (std::uint32_t number = 0; number < SUBSETS; number += 7)
        for (std::uint32_t other = 0; other < SUBSETS; other += 61) {
            const Kinds set = setOf(subset(number));
            const Kinds otherSet = setOf(subset(other));
            ASSERT_EQ(set & otherSet, setOf(subset(number & other)));
            ASSERT_EQ(set - otherSet, setOf(subset(number & ~other)));
            ASSERT_EQ(set == otherSet, number == other);
            ASSERT_EQ(set != otherSet, number != other);
        }
}

TEST(CodeSet, LeavesCodesWithoutAPlaceOut)
{
    for (const std::uint32_t code : {64u, 65u, 127u, 128u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
        Kinds set = {MATCH_TTL};
        set.insert(kind(code));
        EXPECT_FALSE(set.contains(kind(code)));
        EXPECT_EQ(set, Kinds({MATCH_TTL}));
    }
}

TEST(CodeSet, IsKnownToTheCompiler)
{
    constexpr Kinds SET = {MATCH_DESTINATION_CPU, MATCH_ALL, MATCH_ALL};
    static_assert(SET.bits() == 0x80000001 && SET.size() == 2 && *SET.begin() == MATCH_ALL);
    static_assert(Kinds().empty() && sizeof(Kinds) == 8);
}

} // namespace
} // namespace FiltersCommon
