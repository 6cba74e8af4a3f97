#include "entry_maps.h"
#include "samples.h"

#include <gtest/gtest.h>

#include <functional>
#include <list>
#include <set>
#include <string>
#include <type_traits>

namespace FiltersCommon {
namespace {

using test::actionKind;
using test::Actions;
using test::actionsOf;
using test::ipv4;
using test::ipv6;
using test::isExactly;
using test::keysOf;
using test::limId;
using test::Matches;
using test::matchesOf;
using test::matchKind;
using test::put;
using test::stateOf;

std::set<int> matchesIn(const FiltersEntry& entry) { return keysOf(entry.getMatchesRef()); }
std::set<int> actionsIn(const FiltersEntry& entry) { return keysOf(entry.getActionsRef()); }

/** The class of the copy of a T. */
template <class T>
using CopiedAs = std::conditional_t<std::is_same_v<T, MatchDSCP>, MatchToS, T>;

FiltersEntry heldEntry()
{
    FiltersEntry entry(7);
    entry.setMatch(MatchSrcIPv4(ipv4("192.0.2.1")));
    entry.setMatch(MatchPcp(3));
    entry.setAction(ActionSetPcp(4));
    entry.setAction(ActionL3Switch(5));
    return entry;
}

FiltersEntry fullEntry()
{
    FiltersEntry entry;
    test::fill(entry);
    return entry;
}

const MatchSrcIPv4 SRC_IPV4(ipv4("198.51.100.7"));
const MatchSrcIPv6 SRC_IPV6(ipv6("2001:db8::1"));

// ------------------------------------------------------------------------------------ every class

template <class Row>
class EveryCopiedMatch : public testing::Test {};
TYPED_TEST_SUITE(EveryCopiedMatch, test::MatchClasses::Tests, );

TYPED_TEST(EveryCopiedMatch, IsCopiedAsTheClassOfItsCode)
{
    using T = typename TypeParam::Class;
    for (const auto& match : TypeParam::variants()) {
        const Matches from = matchesOf(match);
        FiltersEntry source;
        source.setMatch(match);
        const auto expectCopied = [&](const auto& map) {
            ASSERT_EQ(keysOf(map), std::set<int>{TypeParam::CODE});
            const Match& stored = *map.begin()->second;
            EXPECT_TRUE(isExactly<CopiedAs<T>>(stored));
            EXPECT_TRUE(stored == match);
            EXPECT_NE(&stored, from.begin()->second.get());
            EXPECT_NE(&stored, source.findMatch<T>());
        };
        for (const bool fromEntry : {false, true}) {
            FiltersEntry copied;
            FiltersEntry replaced;
            replaced.setMatch(MatchTTL(200));
            Matches snapshot;
            if (fromEntry) {
                EXPECT_EQ(copied.copyMatchesFrom(source), FILTERS_OK);
                EXPECT_EQ(replaced.setMatchesFrom(source), FILTERS_OK);
                copy_map(snapshot, source.getMatchesRef());
            } else {
                EXPECT_EQ(copied.copyMatches(from), FILTERS_OK);
                EXPECT_EQ(replaced.setMatches(from), FILTERS_OK);
                copy_map(snapshot, from);
            }
            expectCopied(copied.getMatchesRef());
            expectCopied(replaced.getMatchesRef());
            expectCopied(snapshot);
        }
        EXPECT_TRUE(*from.begin()->second == match);
        EXPECT_TRUE(isExactly<T>(*source.getMatchesRef().begin()->second));
        EXPECT_TRUE(*source.findMatch<T>() == match);
    }
}

TYPED_TEST(EveryCopiedMatch, IsNotCopiedFromABareMatchUnlessItHasNoValues)
{
    using T = typename TypeParam::Class;
    const Matches from = matchesOf(Match(matchKind(TypeParam::CODE)));
    const filtersErr_t result = TypeParam::HAS_VALUES ? FILTERS_ERR_INVALID : FILTERS_OK;
    FiltersEntry entry;
    EXPECT_EQ(entry.copyMatches(from), result);
    EXPECT_EQ(matchesIn(entry).size(), TypeParam::HAS_VALUES ? 0u : 1u);
    for (const auto& element : entry.getMatchesRef())
        EXPECT_TRUE(isExactly<T>(*element.second));

    FiltersEntry held = heldEntry();
    EXPECT_EQ(held.setMatches(from), result);
    if (TypeParam::HAS_VALUES)
        EXPECT_EQ(stateOf(held), stateOf(heldEntry()));
    else
        EXPECT_EQ(matchesIn(held), std::set<int>{TypeParam::CODE});
}

template <class Row>
class EveryCopiedAction : public testing::Test {};
TYPED_TEST_SUITE(EveryCopiedAction, test::ActionClasses::Tests, );

TYPED_TEST(EveryCopiedAction, IsCopiedAsTheClassOfItsCode)
{
    using T = typename TypeParam::Class;
    for (const auto& action : TypeParam::variants()) {
        const Actions from = actionsOf(action);
        FiltersEntry source;
        source.setAction(action);
        const auto expectCopied = [&](const auto& map) {
            ASSERT_EQ(keysOf(map), std::set<int>{TypeParam::CODE});
            const Action& stored = *map.begin()->second;
            EXPECT_TRUE(isExactly<T>(stored));
            EXPECT_TRUE(stored == action);
            EXPECT_NE(&stored, from.begin()->second.get());
            EXPECT_NE(&stored, source.findAction<T>());
        };
        for (const bool fromEntry : {false, true}) {
            FiltersEntry copied;
            FiltersEntry replaced;
            replaced.setAction(ActionL3Switch(200));
            Actions snapshot;
            if (fromEntry) {
                EXPECT_EQ(copied.copyActionsFrom(source), FILTERS_OK);
                EXPECT_EQ(replaced.setActionsFrom(source), FILTERS_OK);
                copy_map(snapshot, source.getActionsRef());
            } else {
                EXPECT_EQ(copied.copyActions(from), FILTERS_OK);
                EXPECT_EQ(replaced.setActions(from), FILTERS_OK);
                copy_map(snapshot, from);
            }
            expectCopied(copied.getActionsRef());
            expectCopied(replaced.getActionsRef());
            expectCopied(snapshot);
        }
        EXPECT_TRUE(*from.begin()->second == action);
        EXPECT_TRUE(*source.findAction<T>() == action);
    }
}

TYPED_TEST(EveryCopiedAction, IsNotCopiedFromABareActionUnlessItHasNoValues)
{
    const Actions from = actionsOf(Action(actionKind(TypeParam::CODE)));
    const filtersErr_t result = TypeParam::HAS_VALUES ? FILTERS_ERR_INVALID : FILTERS_OK;
    FiltersEntry entry;
    EXPECT_EQ(entry.copyActions(from), result);
    EXPECT_EQ(actionsIn(entry).size(), TypeParam::HAS_VALUES ? 0u : 1u);
    for (const auto& element : entry.getActionsRef())
        EXPECT_TRUE(isExactly<typename TypeParam::Class>(*element.second));

    FiltersEntry held = heldEntry();
    EXPECT_EQ(held.setActions(from), result);
    if (TypeParam::HAS_VALUES)
        EXPECT_EQ(stateOf(held), stateOf(heldEntry()));
    else
        EXPECT_EQ(actionsIn(held), std::set<int>{TypeParam::CODE});
}

// ------------------------------------------------------------------------------------ copyMatches

TEST(CopyMatches, AddsToTheHeldMatchesAndReplacesThoseOfTheSameKind)
{
    FiltersEntry entry = heldEntry();
    EXPECT_EQ(entry.copyMatches(matchesOf(MatchPcp(6), MatchTTL(9))), FILTERS_OK);
    FiltersEntry expected = heldEntry();
    expected.setMatch(MatchPcp(6));
    expected.setMatch(MatchTTL(9));
    EXPECT_TRUE(entry == expected);

    FiltersEntry other(1);
    other.setMatches(matchesOf(MatchAll(), MatchTTL(10)));
    EXPECT_EQ(entry.copyMatchesFrom(other), FILTERS_OK);
    expected.setMatch(MatchAll());
    expected.setMatch(MatchTTL(10));
    EXPECT_TRUE(entry == expected);
}

TEST(CopyMatches, OfAnEmptyMapChangesNothing)
{
    FiltersEntry entry = heldEntry();
    EXPECT_EQ(entry.copyMatches({}), FILTERS_OK);
    EXPECT_EQ(entry.copyActions({}), FILTERS_OK);
    EXPECT_EQ(entry.copyMatchesFrom(FiltersEntry()), FILTERS_OK);
    EXPECT_EQ(entry.copyActionsFrom(FiltersEntry()), FILTERS_OK);
    EXPECT_EQ(stateOf(entry), stateOf(heldEntry()));
}

TEST(CopyMatches, KeepsWhatItCopiedBeforeTheRefusedMatchAndNothingBehindIt)
{
    FiltersEntry entry;
    EXPECT_EQ(entry.copyMatches(matchesOf(MatchAll(), SRC_IPV4, SRC_IPV6, MatchTTL(9))),
              FILTERS_ERR_INVALID);
    EXPECT_EQ(matchesIn(entry), (std::set<int>{0, 9}));
}

TEST(CopyMatches, IsRefusedByTheMatchesThatTheEntryHolds)
{
    FiltersEntry entry = heldEntry();
    EXPECT_EQ(entry.copyMatches(matchesOf(MatchAll(), MatchPcp(6), SRC_IPV6, MatchTTL(9))),
              FILTERS_ERR_INVALID);
    EXPECT_EQ(matchesIn(entry), (std::set<int>{0, 9, 12}));
    MatchPcp pcp(0);
    entry.getMatch(pcp);
    EXPECT_EQ(pcp.getPcp(), 6);

    FiltersEntry other;
    other.setMatches(matchesOf(MatchAll(), MatchPcp(7), SRC_IPV6, MatchTTL(9)));
    EXPECT_EQ(entry.copyMatchesFrom(other), FILTERS_ERR_INVALID);
    EXPECT_EQ(matchesIn(entry), (std::set<int>{0, 9, 12}));
    entry.getMatch(pcp);
    EXPECT_EQ(pcp.getPcp(), 7);
    EXPECT_EQ(matchesIn(other), (std::set<int>{0, 12, 14, 26}));
}

TEST(CopyMatches, WalksTheKeysInAscendingOrderWhateverTheKinds)
{
    Matches from;
    put(from, 3, SRC_IPV4);
    put(from, 1, SRC_IPV6);
    put(from, 2, MatchTTL(1));
    FiltersEntry entry;
    EXPECT_EQ(entry.copyMatches(from), FILTERS_ERR_INVALID);
    EXPECT_EQ(matchesIn(entry), (std::set<int>{14, 26}));
}

TEST(CopyMatches, StoresUnderTheKindOfTheObjectWhateverTheKey)
{
    Matches from;
    put(from, 0, MatchPcp(1));
    put(from, 9, MatchTTL(2));
    put(from, 77, MatchAll());
    FiltersEntry entry;
    EXPECT_EQ(entry.copyMatches(from), FILTERS_OK);
    EXPECT_EQ(matchesIn(entry), (std::set<int>{0, 12, 26}));
    EXPECT_EQ(entry.setMatch(SRC_IPV6), FILTERS_OK);
}

TEST(CopyMatches, LaterMatchOfAKindReplacesTheEarlierOne)
{
    Matches from;
    put(from, 5, MatchDSCP(2));
    put(from, 1, MatchToS(1));
    FiltersEntry entry;
    EXPECT_EQ(entry.copyMatches(from), FILTERS_OK);
    EXPECT_EQ(matchesIn(entry), std::set<int>{20});
    EXPECT_TRUE(*entry.getMatchesRef().find(MATCH_TOS)->second == MatchToS(8));
}

TEST(CopyMatches, SkipsNullPointersAndUnknownKinds)
{
    Matches from = matchesOf(MatchAll(), MatchTTL(1));
    from[MATCH_PCP] = nullptr;
    int key = 1;
    for (const std::uint32_t code : test::unknownCodes(test::MATCH_KINDS))
        put(from, key++, Match(matchKind(code)));
    put(from, key, MatchLimId(test::UNKNOWN_MATCH, limId(1, 2, 3, 4)));
    FiltersEntry entry;
    EXPECT_EQ(entry.copyMatches(from), FILTERS_OK);
    EXPECT_EQ(matchesIn(entry), (std::set<int>{0, 26}));
    EXPECT_EQ(entry.setMatches(from), FILTERS_OK);
    EXPECT_EQ(matchesIn(entry), (std::set<int>{0, 26}));
}

TEST(CopyMatches, RefusesAFamilyObjectForItIsNoObjectOfTheKind)
{
    FiltersEntry entry;
    const auto refuse = [&](const auto& match) {
        EXPECT_EQ(entry.copyMatches(matchesOf(match)), FILTERS_ERR_INVALID) << match.getType();
    };
    refuse(MatchPorts(MATCH_INGRESS_PORTS, std::list<limid_t>()));
    refuse(MatchLimId(MATCH_SRC_PORT, limId(1, 2, 3, 4)));
    refuse(MatchL4Port(MATCH_DST_L4_PORT, 1));
    refuse(MatchVlanId(MATCH_EXTERNAL_VLAN_ID, {1}));
    refuse(MatchMac(MATCH_DST_MAC, ether_addr()));
    refuse(MatchIPv4(MATCH_SRC_IPV4, in_addr()));
    refuse(MatchIPv6(MATCH_DST_IPV6, in6_addr()));
    EXPECT_TRUE(entry.getMatchesRef().empty());
}

TEST(CopyMatches, CopiesACallersOwnSubclassAsTheKind)
{
    class Own : public MatchPcp {
    public:
        using MatchPcp::MatchPcp;
    };
    FiltersEntry entry;
    EXPECT_EQ(entry.copyMatches(matchesOf(Own(5))), FILTERS_OK);
    const Match& stored = *entry.getMatchesRef().find(MATCH_PCP)->second;
    EXPECT_TRUE(isExactly<MatchPcp>(stored));
    EXPECT_TRUE(stored == MatchPcp(5));
}

TEST(CopyMatches, LyingMatchStopsTheWalk)
{
    FiltersEntry entry;
    EXPECT_EQ(entry.copyMatches(matchesOf(MatchAll(), Match(MATCH_PCP), MatchTTL(1))),
              FILTERS_ERR_INVALID);
    EXPECT_EQ(matchesIn(entry), std::set<int>{0});
}

// ------------------------------------------------------------------------------------ copyActions

TEST(CopyActions, AddsToTheHeldActionsAndReplacesThoseOfTheSameKind)
{
    FiltersEntry entry = heldEntry();
    EXPECT_EQ(entry.copyActions(actionsOf(ActionSetPcp(9), ActionDeny())), FILTERS_OK);
    FiltersEntry expected = heldEntry();
    expected.setAction(ActionSetPcp(9));
    expected.setAction(ActionDeny());
    EXPECT_TRUE(entry == expected);

    FiltersEntry other(1);
    other.setActions(actionsOf(ActionPermit(), ActionSetPcp(10)));
    EXPECT_EQ(entry.copyActionsFrom(other), FILTERS_OK);
    expected.setAction(ActionPermit());
    expected.setAction(ActionSetPcp(10));
    EXPECT_TRUE(entry == expected);
}

TEST(CopyActions, SkipsNullPointersAndUnknownKinds)
{
    Actions from = actionsOf(ActionPermit(), ActionL3Switch(1));
    from[ACTION_DENY] = nullptr;
    int key = 3;
    for (const std::uint32_t code : test::unknownCodes(test::ACTION_KINDS))
        put(from, key++, Action(actionKind(code)));
    FiltersEntry entry;
    EXPECT_EQ(entry.copyActions(from), FILTERS_OK);
    EXPECT_EQ(actionsIn(entry), (std::set<int>{0, 15}));
    EXPECT_EQ(entry.setActions(from), FILTERS_OK);
    EXPECT_EQ(actionsIn(entry), (std::set<int>{0, 15}));
}

TEST(CopyActions, KeepsWhatItCopiedBeforeTheRefusedActionAndNothingBehindIt)
{
    const Actions from = actionsOf(ActionPermit(), Action(ACTION_SET_PCP), ActionBlackHole());
    FiltersEntry entry;
    EXPECT_EQ(entry.copyActions(from), FILTERS_ERR_INVALID);
    EXPECT_EQ(actionsIn(entry), std::set<int>{0});
}

TEST(CopyActions, StoresUnderTheKindOfTheObjectAndTheLastOfAKindWins)
{
    Actions from;
    put(from, 9, ActionSetPcp(2));
    put(from, 0, ActionSetPcp(1));
    put(from, 77, ActionDeny());
    FiltersEntry entry;
    EXPECT_EQ(entry.copyActions(from), FILTERS_OK);
    EXPECT_EQ(actionsIn(entry), (std::set<int>{1, 5}));
    EXPECT_TRUE(*entry.getActionsRef().find(ACTION_SET_PCP)->second == ActionSetPcp(2));
}

TEST(CopyActions, RefusesAnActionPortsForItIsNoObjectOfTheKind)
{
    FiltersEntry entry;
    const ActionPorts ports(ACTION_BLOCK_EGRESS_PORTS, {limId(1, 2, 3, 4)});
    EXPECT_EQ(entry.copyActions(actionsOf(ports)), FILTERS_ERR_INVALID);
    EXPECT_TRUE(entry.getActionsRef().empty());
}

// ------------------------------------------------------------------------- setMatches, setActions

TEST(SetMatches, ReplacesAllMatchesAndLeavesTheRest)
{
    FiltersEntry entry = heldEntry();
    EXPECT_EQ(entry.setMatches(matchesOf(MatchTTL(9), MatchAll())), FILTERS_OK);
    FiltersEntry expected(7);
    expected.setMatch(MatchAll());
    expected.setMatch(MatchTTL(9));
    expected.copyActionsFrom(heldEntry());
    EXPECT_TRUE(entry == expected);
}

TEST(SetMatches, OfAnEmptyMapEmptiesTheMatches)
{
    FiltersEntry entry = heldEntry();
    EXPECT_EQ(entry.setMatches({}), FILTERS_OK);
    EXPECT_TRUE(entry.getMatchesRef().empty());
    EXPECT_EQ(entry.getActionsRef().size(), 2u);
    EXPECT_EQ(entry.setActions({}), FILTERS_OK);
    EXPECT_TRUE(entry.getActionsRef().empty());

    entry = heldEntry();
    EXPECT_EQ(entry.setMatchesFrom(FiltersEntry()), FILTERS_OK);
    EXPECT_TRUE(entry.getMatchesRef().empty());
    EXPECT_EQ(entry.getActionsRef().size(), 2u);
    EXPECT_EQ(entry.setActionsFrom(FiltersEntry()), FILTERS_OK);
    EXPECT_TRUE(entry.getActionsRef().empty());
}

TEST(SetMatches, IsNotRefusedByTheMatchesThatItReplaces)
{
    FiltersEntry entry = heldEntry();
    EXPECT_EQ(entry.setMatches(matchesOf(SRC_IPV6)), FILTERS_OK);
    EXPECT_EQ(matchesIn(entry), std::set<int>{14});
    EXPECT_EQ(entry.setMatchesFrom(heldEntry()), FILTERS_OK);
    EXPECT_EQ(matchesIn(entry), (std::set<int>{9, 12}));
}

TEST(SetMatches, OfIPv4AndIPv6FailsAndLeavesThePreviousMatches)
{
    FiltersEntry entry = heldEntry();
    entry.setMatch(MatchDSCP(10));
    const std::string before = stateOf(entry);
    EXPECT_EQ(entry.setMatches(matchesOf(MatchAll(), MatchPcp(6), SRC_IPV4, SRC_IPV6)),
              FILTERS_ERR_INVALID);
    EXPECT_EQ(stateOf(entry), before);
    EXPECT_EQ(matchesIn(entry), (std::set<int>{9, 12, 20}));
}

TEST(SetActions, ReplacesAllActionsAndLeavesTheRest)
{
    FiltersEntry entry = heldEntry();
    EXPECT_EQ(entry.setActions(actionsOf(ActionDeny())), FILTERS_OK);
    EXPECT_EQ(actionsIn(entry), std::set<int>{1});
    EXPECT_EQ(matchesIn(entry), (std::set<int>{9, 12}));
}

TEST(SetActions, WithALyingActionFailsAndLeavesThePreviousActions)
{
    FiltersEntry entry = heldEntry();
    EXPECT_EQ(entry.setActions(actionsOf(ActionPermit(), ActionSetPcp(1), Action(ACTION_REDIRECT))),
              FILTERS_ERR_INVALID);
    EXPECT_EQ(stateOf(entry), stateOf(heldEntry()));
}

// ------------------------------------------------------------------------------- of the same entry

/** Copies, or replaces with, what the entry itself holds. */
const std::function<void(FiltersEntry&)> TAKES_ITS_OWN[] = {
    [](FiltersEntry& entry) {
        EXPECT_EQ(entry.copyMatchesFrom(entry), FILTERS_OK);
        EXPECT_EQ(entry.copyActionsFrom(entry), FILTERS_OK);
    },
    [](FiltersEntry& entry) {
        EXPECT_EQ(entry.setMatchesFrom(entry), FILTERS_OK);
        EXPECT_EQ(entry.setActionsFrom(entry), FILTERS_OK);
    },
    [](FiltersEntry& entry) {
        Matches matches;
        Actions actions;
        copy_map(matches, entry.getMatchesRef());
        copy_map(actions, entry.getActionsRef());
        EXPECT_EQ(entry.copyMatches(matches), FILTERS_OK);
        EXPECT_EQ(entry.copyActions(actions), FILTERS_OK);
        EXPECT_EQ(entry.setMatches(matches), FILTERS_OK);
        EXPECT_EQ(entry.setActions(actions), FILTERS_OK);
    },
};

TEST(TheEntrysOwnObjects, AreTakenAsEqualOnesAndADscpAsAToS)
{
    for (const auto& takeItsOwn : TAKES_ITS_OWN)
        for (const FiltersEntry& others : {FiltersEntry(7), heldEntry(), fullEntry()}) {
            FiltersEntry entry(others);
            entry.setMatch(MatchDSCP(10));
            const FiltersEntry expected(entry);
            takeItsOwn(entry);
            EXPECT_TRUE(entry == expected);
            EXPECT_EQ(stateOf(entry), stateOf(expected));
            EXPECT_TRUE(isExactly<MatchToS>(*entry.findMatch<MatchToS>()));
        }
}

} // namespace
} // namespace FiltersCommon
