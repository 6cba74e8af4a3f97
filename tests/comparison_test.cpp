// Compiled once for each standard of C++ that callers may use, which STANDARD names: how a == b is
// understood differs between them.

#include "support.h"

#include "filter_actions_c.h"
#include "filter_description.h"
#include "filter_entries_c.h"
#include "filter_groups_c.h"
#include "filter_matches_c.h"
#include "filter_refusals.h"
#include "filter_refusals_c.h"
#include "filter_serialized.h"

#include <gtest/gtest.h>

#include <tuple>
#include <type_traits>

#define SUITE_OF(name, standard) name##standard
#define SUITE(name, standard) SUITE_OF(name, standard)

namespace FiltersCommon::test {
namespace {

/** Classes of a caller's own. */
struct OwnMatch : Match {
    OwnMatch() : Match(static_cast<filtersMatch_t>(-1)) {}
};
struct OwnDstMac : MatchDstMac {};
struct OwnAction : Action {
    OwnAction() : Action(static_cast<filtersAction_t>(-1)) {}
};

#define NEXT(kind, Class, Values) , Class
using Classes =
    std::tuple<Match, MatchPorts, MatchLimId, MatchL4Port, MatchVlanId, MatchMac, MatchIPv4,
               MatchIPv6, MatchDSCP, OwnMatch, OwnDstMac FILTERS_COMMON_EACH_MATCH_KIND(NEXT)>;
using ActionClasses =
    std::tuple<Action, ActionPorts, OwnAction FILTERS_COMMON_EACH_ACTION_KIND(NEXT)>;
#undef NEXT

/** An object without values; one that is no kind's has a code that is none. */
template <class T>
T sample()
{
    if constexpr (std::is_default_constructible_v<T>) {
        return T();
    } else {
        using Code = decltype(std::declval<const T&>().getType());
        constexpr auto NONE = static_cast<Code>(-2);
        if constexpr (std::is_same_v<T, MatchPorts> || std::is_same_v<T, ActionPorts>)
            return T(NONE, std::list<limid_t>());
        else if constexpr (std::is_same_v<T, MatchVlanId>)
            return T(NONE, std::set<unsigned short>());
        else if constexpr (std::is_same_v<T, Match> || std::is_same_v<T, Action>)
            return T(NONE);
        else
            return T(NONE, {});
    }
}

/**
 * Objects without values are equal as objects of one class, or of a class and another derived from
 * it, but for the base: as objects of that they are compared by their codes, of which those that
 * are no kind's are equal for actions only.
 */
template <class Base, class A, class B>
bool areEqual()
{
    constexpr bool HAVE_BASE =
        std::is_same_v<A, Base> || std::is_same_v<B, Base> || std::is_same_v<A, OwnMatch>;
    if constexpr (!HAVE_BASE && (std::is_base_of_v<A, B> || std::is_base_of_v<B, A>))
        return true;
    else
        return std::is_same_v<Base, Action> && sample<A>().getType() == sample<B>().getType();
}

void expectSame(bool answer, bool expected, const char* comparison)
{
    EXPECT_EQ(answer, expected) << comparison;
}

template <class Base, class A, class B>
void compare()
{
    const A a = sample<A>();
    const B b = sample<B>();
    const bool expected = areEqual<Base, A, B>();
    expectSame(a == b, expected, __PRETTY_FUNCTION__);
    expectSame(b == a, expected, __PRETTY_FUNCTION__);
#if __cplusplus > 201703L
    expectSame(a != b, !expected, __PRETTY_FUNCTION__);
#endif
}

template <class Base, class A, class... Bs>
void compareWithEach(std::tuple<Bs...>*)
{
    (compare<Base, A, Bs>(), ...);
}

template <class Base, class... As>
void compareAll(std::tuple<As...>* classes)
{
    (compareWithEach<Base, As>(classes), ...);
}

TEST(SUITE(Comparisons, STANDARD), OfMatchesAreTheSameBothWays)
{
    compareAll<Match>(static_cast<Classes*>(nullptr));
}

TEST(SUITE(Comparisons, STANDARD), OfActionsAreTheSameBothWays)
{
    compareAll<Action>(static_cast<ActionClasses*>(nullptr));
}

TEST(SUITE(Comparisons, STANDARD), OfAKindAndItsFamilyCompareValues)
{
    const MatchDstMac dst(mac("02:00:00:00:00:01"));
    const MatchMac same(MATCH_SRC_MAC, mac("02:00:00:00:00:01"));
    const MatchMac other(MATCH_DST_MAC, mac("02:00:00:00:00:02"));
    EXPECT_TRUE(dst == same);
    EXPECT_TRUE(same == dst);
    EXPECT_FALSE(dst == other);
    EXPECT_FALSE(other == dst);
    EXPECT_FALSE(dst == static_cast<const Match&>(same));
    EXPECT_FALSE(static_cast<const Match&>(same) == dst);

    const ActionBlockEgressPorts block({limId(1, 2, 3, 4)});
    const ActionPorts ports(ACTION_PERMIT, {limId(1, 2, 3, 4)});
    EXPECT_TRUE(block == ports);
    EXPECT_TRUE(ports == block);
    EXPECT_FALSE(block == static_cast<const Action&>(ports));
}

TEST(SUITE(Comparisons, STANDARD), OfMatchesOfOneByteByDSCP)
{
    EXPECT_TRUE(MatchDSCP(10) == MatchToS(40));
    EXPECT_TRUE(MatchToS(40) == MatchDSCP(10));
    EXPECT_FALSE(MatchDSCP(10) == MatchToS(41));
    EXPECT_FALSE(MatchToS(41) == MatchDSCP(10));
}

} // namespace
} // namespace FiltersCommon::test
