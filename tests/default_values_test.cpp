#include "samples.h"

#include "filter_entries.h"

#include <gtest/gtest.h>

#include <array>
#include <list>
#include <set>
#include <type_traits>

namespace FiltersCommon::test {
namespace {

// ---------------------------------------------------------------- constructors without arguments

using Ports = std::list<limid_t>;
using Ids = std::set<unsigned short>;

template <int CODE, auto KIND, class T>
T zeroOf(Row<CODE, KIND, T>)
{
    return T();
}

/** Made of a value that is zero, false or empty, and without a mask. */
template <int CODE, auto KIND, class T, class Value, class... Mask>
T zeroOf(Row<CODE, KIND, T, Value, Mask...>)
{
    return T(Value{});
}

template <class Function>
void forEachRow(Function function)
{
    MatchClasses::forEach(function);
    ActionClasses::forEach(function);
}

TEST(DefaultValues, AreZeroFalseAndEmpty)
{
    forEachRow([](auto row) {
        using Class = typename decltype(row)::Class;
        if constexpr (!std::is_same_v<Class, ActionRedirect>) { // has no port, see below
            EXPECT_TRUE(Class() == zeroOf(row)) << dump(Class());
            EXPECT_TRUE(Class{} == zeroOf(row)) << dump(Class());
        }
    });
    EXPECT_TRUE(ActionRedirect().getRedirectPorts().empty());
    EXPECT_EQ(ActionRedirect().getType(), ACTION_REDIRECT);
}

/** Of arrays, of members of an aggregate and of functions that return {}. */
TEST(DefaultValues, ArePossibleWithoutTheNameOfTheClass)
{
    forEachRow([](auto row) {
        using Class = typename decltype(row)::Class;
        const Class object = {};
        const std::array<Class, 2> objects = {};
        EXPECT_TRUE(object == Class());
        EXPECT_TRUE(objects.back() == object);
    });
}

TEST(DefaultValues, OfAddressesHaveAllBitsOfTheMask)
{
    EXPECT_TRUE(MatchDstMac() == MatchDstMac(ether_addr{}, mac("ff:ff:ff:ff:ff:ff")));
    EXPECT_TRUE(MatchSrcMac() == MatchSrcMac(ether_addr{}, mac("ff:ff:ff:ff:ff:ff")));
    EXPECT_TRUE(MatchSrcIPv4() == MatchSrcIPv4(in_addr{}, ipv4("255.255.255.255")));
    EXPECT_TRUE(MatchDstIPv4() == MatchDstIPv4(in_addr{}, ipv4("255.255.255.255")));
    const in6_addr ones = ipv6("ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff");
    EXPECT_TRUE(MatchDstIPv6() == MatchDstIPv6(in6_addr{}, ones));
    EXPECT_EQ(MatchDstL4Port().getMask(), 0xFFFF);
    EXPECT_EQ(MatchSrcL4Port().getMask(), 0xFFFF);
}

/** What callers may write for a value that is empty or zero. */
TEST(DefaultValues, AreThoseOfEmptyBraces)
{
    EXPECT_TRUE(MatchEgressPorts({}) == MatchEgressPorts(Ports()));
    EXPECT_TRUE(MatchTPID({}) == MatchTPID(0));
    EXPECT_TRUE(MatchDstMac({}) == MatchDstMac(ether_addr{}));
    EXPECT_TRUE(MatchDstL4Port({}) == MatchDstL4Port(0));
    EXPECT_TRUE(MatchSrcMac({}) == MatchSrcMac(ether_addr{}));
    EXPECT_TRUE(MatchL2SrcEntryType({}) == MatchL2SrcEntryType(L2_SRC_ENTRY_TYPE_0));
    EXPECT_TRUE(MatchSrcIPv4({}) == MatchSrcIPv4(in_addr{}));
    EXPECT_TRUE(MatchDstIPv4({}) == MatchDstIPv4(in_addr{}));
    EXPECT_TRUE(MatchPcp({}) == MatchPcp(0));
    EXPECT_TRUE(MatchSrcIPv6({}) == MatchSrcIPv6(in6_addr{}));
    EXPECT_TRUE(MatchDstIPv6({}) == MatchDstIPv6(in6_addr{}));
    EXPECT_TRUE(MatchMplsTerm({}) == MatchMplsTerm(false));
    EXPECT_TRUE(MatchVirtualPort({}) == MatchVirtualPort(limid_t{}));
    EXPECT_TRUE(MatchVlanInfo({}) == MatchVlanInfo(vlan_info_t{}));
    EXPECT_TRUE(MatchSrcPort({}) == MatchSrcPort(limid_t{}));
    EXPECT_TRUE(ActionBlockEgressPorts({}) == ActionBlockEgressPorts(Ports()));
    EXPECT_TRUE(ActionCopyToCpuCancel({}) == ActionCopyToCpuCancel(COPY_TO_CPU_CANCEL));
    EXPECT_TRUE(ActionSetPcp({}) == ActionSetPcp(0));
    EXPECT_TRUE(ActionReplaceDstMac({}) == ActionReplaceDstMac(ether_addr{}));
    EXPECT_TRUE(ActionReplaceSrcMac({}) == ActionReplaceSrcMac(ether_addr{}));
    EXPECT_TRUE(ActionL3Switch({}) == ActionL3Switch(0));
    // These are no values of zero: an identifier, and a port.
    EXPECT_TRUE(MatchExternalVlanId({}) == MatchExternalVlanId(Ids{0}));
    EXPECT_TRUE(MatchInternalVlanId({}) == MatchInternalVlanId(Ids{0}));
    EXPECT_TRUE(ActionRedirect({}) == ActionRedirect(limid_t{}));
    EXPECT_EQ(ActionRedirect({}).getRedirectPorts().size(), 1u);
}

TEST(DefaultValues, DoNotChangeWhatBracesWithElementsMean)
{
    const limid_t port = limId(1, 2, 3, 4);
    EXPECT_EQ(MatchEgressPorts({port, port}).getPorts().size(), 2u);
    EXPECT_EQ(MatchEgressPorts({port}).getPorts().size(), 1u);
    EXPECT_EQ(MatchEgressPorts{{}}.getPorts().size(), 0u);
    EXPECT_EQ(ActionBlockEgressPorts({port, port, port}).getPorts().size(), 3u);
    EXPECT_TRUE((MatchVirtualPort{{{1, 2, 3, 4}}}) == MatchVirtualPort(port));
    EXPECT_TRUE(MatchVlanInfo({7}) == MatchVlanInfo(vlan_info_t{7}));
    EXPECT_TRUE(MatchExternalVlanId({5, 300}) == MatchExternalVlanId(Ids{5, 300}));
    EXPECT_TRUE((ActionRedirect{{{1, 2, 3, 4}}}) == ActionRedirect(port));
}

// ------------------------------------------------------------------------------------- looked up

TEST(Found, IsTheStoredObjectOfEachClass)
{
    forEachRow([](auto row) {
        using Class = typename decltype(row)::Class;
        FiltersEntry entry;
        const Class object = row.sample();
        if constexpr (isMatchClass<Class>) {
            EXPECT_EQ(entry.findMatch<Class>(), nullptr);
            ASSERT_EQ(entry.setMatch(object), FILTERS_OK);
            const Class* found = entry.findMatch<Class>();
            ASSERT_NE(found, nullptr);
            EXPECT_EQ(found, entry.getMatchesRef().find(object.getType())->second);
            EXPECT_EQ(entry.findMatch<const Class>(), found);
        } else {
            EXPECT_EQ(entry.findAction<Class>(), nullptr);
            ASSERT_EQ(entry.setAction(object), FILTERS_OK);
            const Class* found = entry.findAction<Class>();
            ASSERT_NE(found, nullptr);
            EXPECT_EQ(found, entry.getActionsRef().find(object.getType())->second);
            EXPECT_EQ(entry.findAction<const Class>(), found);
        }
    });
}

TEST(Found, IsAMatchDSCPOnlyWhereOneIsStored)
{
    FiltersEntry entry;
    entry.setMatch(MatchToS(40));
    EXPECT_EQ(entry.findMatch<MatchDSCP>(), nullptr);
    EXPECT_NE(entry.findMatch<MatchToS>(), nullptr);
    entry.setMatch(MatchDSCP(10));
    ASSERT_NE(entry.findMatch<MatchDSCP>(), nullptr);
    EXPECT_EQ(entry.findMatch<MatchDSCP>()->getDSCP(), 10);
    ASSERT_NE(entry.findMatch<MatchToS>(), nullptr);
    EXPECT_EQ(entry.findMatch<MatchToS>()->getToS(), 40);
    const FiltersEntry copy(entry);
    EXPECT_EQ(copy.findMatch<MatchDSCP>(), nullptr);
    EXPECT_NE(copy.findMatch<MatchToS>(), nullptr);
}

struct OfTheCaller : MatchPcp {};

TEST(Found, IsNothingOfAClassThatEntriesDoNotKnow)
{
    FiltersEntry entry;
    entry.setMatch(MatchPcp(3));
    entry.setMatch(MatchDstMac(mac("02:00:00:00:00:01")));
    entry.setAction(ActionBlockEgressPorts({limId(1, 2, 3, 4)}));
    EXPECT_EQ(entry.findMatch<Match>(), nullptr);
    EXPECT_EQ(entry.findMatch<MatchMac>(), nullptr);
    EXPECT_EQ(entry.findMatch<OfTheCaller>(), nullptr);
    EXPECT_EQ(entry.findMatch<int>(), nullptr);
    EXPECT_EQ(entry.findAction<Action>(), nullptr);
    EXPECT_EQ(entry.findAction<ActionPorts>(), nullptr);
}

// ------------------------------------------------------------------------------------- qualified

TEST(QualifiedClasses, CountAsThemselves)
{
    FiltersEntry entry;
    const MatchPcp three(3);
    MatchPcp four(4);
    EXPECT_EQ(entry.setMatch<const MatchPcp>(three), FILTERS_OK);
    EXPECT_EQ(entry.findMatch<MatchPcp>()->getPcp(), 3);
    EXPECT_EQ(entry.setMatch<volatile MatchPcp>(four), FILTERS_OK);
    EXPECT_EQ(entry.findMatch<MatchPcp>()->getPcp(), 4);
    EXPECT_EQ(entry.setMatch<const volatile MatchPcp>(three), FILTERS_OK);
    EXPECT_EQ(entry.getMatch<volatile MatchPcp>(four), FILTERS_OK);
    EXPECT_EQ(four.getPcp(), 3);
    EXPECT_TRUE(entry.isL3CompatibleMatch<const MatchPcp>(three));

    const ActionSetPcp setThree(3);
    ActionSetPcp setFour(4);
    EXPECT_EQ(entry.setAction<const ActionSetPcp>(setThree), FILTERS_OK);
    EXPECT_EQ(entry.findAction<ActionSetPcp>()->getPcp(), 3);
    EXPECT_EQ(entry.setAction<volatile ActionSetPcp>(setFour), FILTERS_OK);
    EXPECT_EQ(entry.findAction<ActionSetPcp>()->getPcp(), 4);
    EXPECT_EQ(entry.setAction<const volatile ActionSetPcp>(setThree), FILTERS_OK);
    EXPECT_EQ(entry.getAction<volatile ActionSetPcp>(setFour), FILTERS_OK);
    EXPECT_EQ(setFour.getPcp(), 3);
}

TEST(QualifiedClasses, AreNotWrittenIfTheyAreConst)
{
    FiltersEntry entry;
    entry.setMatch(MatchPcp(3));
    entry.setAction(ActionSetPcp(3));
    const MatchPcp match(1);
    EXPECT_EQ(entry.getMatch<const MatchPcp>(match), FILTERS_ERR_INVALID);
    EXPECT_EQ(match.getPcp(), 1);
    const ActionSetPcp action(1);
    EXPECT_EQ(entry.getAction<const ActionSetPcp>(action), FILTERS_ERR_INVALID);
    EXPECT_EQ(action.getPcp(), 1);
}

} // namespace
} // namespace FiltersCommon::test
