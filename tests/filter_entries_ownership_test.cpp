#include "entry_maps.h"
#include "samples.h"
#include "test_allocator.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <set>
#include <type_traits>
#include <utility>

// An entry must free what it gives up, including the lists and sets within its objects.

namespace FiltersCommon {
namespace {

using test::actionKind;
using test::Actions;
using test::actionsOf;
using test::fill;
using test::ipv4;
using test::ipv6;
using test::isExactly;
using test::keysOf;
using test::Matches;
using test::matchesOf;
using test::matchKind;
using test::put;

/** How many more blocks are in use after @p function than before. */
template <class Function>
long blocksKeptBy(Function function)
{
    const auto inUse = [] { return static_cast<long>(test::allocationTotals().live); };
    const long before = inUse();
    function();
    return inUse() - before;
}

// ---------------------------------------------------------------------------------------- entries

void empty(FiltersEntry& entry)
{
    for (std::uint32_t code = 0; code < test::MATCH_KINDS; ++code) {
        entry.deleteMatch(matchKind(code));
        entry.deleteAction(actionKind(code));
    }
}

TEST(EntryOwnership, ObjectsAreKept)
{
    FiltersEntry entry;
    // A block of matches, one of actions, two nodes of each list and set, one of a redirection.
    EXPECT_EQ(blocksKeptBy([&] { fill(entry); }), 2 + 5 * 2 + 1);
}

TEST(EntryOwnership, ReplacedObjectsAreFreed)
{
    FiltersEntry entry;
    fill(entry);
    EXPECT_EQ(blocksKeptBy([&] { fill(entry); }), 0);
    Matches matches;
    Actions actions;
    copy_map(matches, entry.getMatchesRef());
    copy_map(actions, entry.getActionsRef());
    EXPECT_EQ(blocksKeptBy([&] { entry.copyMatches(matches); }), 0);
    EXPECT_EQ(blocksKeptBy([&] { entry.copyActions(actions); }), 0);
    EXPECT_EQ(blocksKeptBy([&] { entry.setMatches(matches); }), 0);
    EXPECT_EQ(blocksKeptBy([&] { entry.setActions(actions); }), 0);
    const FiltersEntry copy(entry);
    for (const FiltersEntry* other : {&copy, static_cast<const FiltersEntry*>(&entry)}) {
        EXPECT_EQ(blocksKeptBy([&] { entry.copyMatchesFrom(*other); }), 0);
        EXPECT_EQ(blocksKeptBy([&] { entry.copyActionsFrom(*other); }), 0);
        EXPECT_EQ(blocksKeptBy([&] { entry.setMatchesFrom(*other); }), 0);
        EXPECT_EQ(blocksKeptBy([&] { entry.setActionsFrom(*other); }), 0);
    }
    EXPECT_EQ(entry.getMatchesRef().size(), test::MATCH_KINDS - 2);
}

TEST(EntryOwnership, SecondMatchPcpReplacesAndFreesTheFirst)
{
    FiltersEntry entry;
    entry.setMatch(MatchPcp(1));
    EXPECT_EQ(blocksKeptBy([&] { entry.setMatch(MatchPcp(2)); }), 0);
    EXPECT_EQ(entry.getMatchesRef().size(), 1u);
    EXPECT_TRUE(*entry.getMatchesRef().find(MATCH_PCP)->second == MatchPcp(2));
}

TEST(EntryOwnership, DeletedObjectsAreFreed)
{
    FiltersEntry entry;
    EXPECT_EQ(blocksKeptBy([&] {
                  fill(entry);
                  empty(entry);
              }),
              0);
}

TEST(EntryOwnership, ObjectsDieWithTheEntryAndWithItsCopy)
{
    EXPECT_EQ(blocksKeptBy([] {
                  FiltersEntry entry;
                  fill(entry);
                  const FiltersEntry copy(entry);
              }),
              0);
}

TEST(EntryOwnership, MoveAssignmentFreesWhatTheTargetHeldAndAllocatesNoObject)
{
    FiltersEntry source;
    fill(source);
    FiltersEntry target;
    const long filled = blocksKeptBy([&] { fill(target); });
    EXPECT_EQ(blocksKeptBy([&] { target = std::move(source); }), -filled);
}

TEST(EntryOwnership, RefusalsKeepNothing)
{
    FiltersEntry entry;
    fill(entry);
    const Matches mixed = matchesOf(MatchDSCP(1), MatchExternalVlanId({1, 2}),
                                    MatchSrcIPv6(ipv6("::1")), MatchSrcIPv4(ipv4("192.0.2.1")));
    FiltersEntry v6;
    v6.setMatch(MatchExternalVlanId({3, 4}));
    v6.setMatch(MatchSrcIPv6(ipv6("::1")));
    const Actions lying = actionsOf(ActionBlockEgressPorts({limid_t()}), Action(ACTION_REDIRECT));
    EXPECT_EQ(blocksKeptBy([&] {
                  entry.setMatch(MatchSrcIPv6(ipv6("::1")));
                  entry.copyMatchesFrom(v6);
                  entry.setMatches(mixed);
                  entry.setActions(lying);
              }),
              0);
}

// --------------------------------------------------------------------------------------- copy_map

static_assert(
    std::is_same_v<decltype(&copy_map<filtersMatch_t, Match>), void (*)(Matches&, const Matches&)>);
static_assert(std::is_same_v<decltype(&copy_map<filtersAction_t, Action>),
                             void (*)(Actions&, const Actions&)>);

TEST(CopyMap, ReplacesTheKeysOfTheSourceAndKeepsTheOthers)
{
    Matches to = matchesOf(MatchAll(), MatchPcp(1), MatchTTL(1));
    const Matches from = matchesOf(MatchPcp(2), MatchVrfId(3));
    copy_map(to, from);
    EXPECT_EQ(keysOf(to), (std::set<int>{0, 12, 26, 27}));
    EXPECT_TRUE(*to[MATCH_PCP] == MatchPcp(2));
    EXPECT_TRUE(*to[MATCH_TTL] == MatchTTL(1));
    EXPECT_TRUE(*to[MATCH_VRF_ID] == MatchVrfId(3));
    EXPECT_NE(to[MATCH_VRF_ID].get(), from.at(MATCH_VRF_ID).get());
}

TEST(CopyMap, KeepsTheKeyWhateverTheKind)
{
    Matches from;
    put(from, 3, MatchDSCP(10));
    put(from, 99, MatchSrcIPv4(ipv4("192.0.2.1")));
    put(from, 100, MatchSrcIPv6(ipv6("::1")));
    Matches to;
    copy_map(to, from);
    EXPECT_EQ(keysOf(to), (std::set<int>{3, 99, 100}));
    EXPECT_TRUE(isExactly<MatchToS>(*to[matchKind(3)]));
    EXPECT_TRUE(*to[matchKind(3)] == MatchToS(40));
    EXPECT_TRUE(*to[matchKind(99)] == MatchSrcIPv4(ipv4("192.0.2.1")));
    EXPECT_TRUE(*to[matchKind(100)] == MatchSrcIPv6(ipv6("::1")));
}

TEST(CopyMap, GivesANullPointerWhereThereIsNothingToCopyByKind)
{
    Matches from;
    from[MATCH_ALL] = nullptr;
    put(from, 1, Match(test::UNKNOWN_MATCH));
    put(from, 2, Match(MATCH_PCP));
    put(from, 3, Match(MATCH_CPU_PORT));
    Matches to = matchesOf(MatchAll());
    copy_map(to, from);
    EXPECT_EQ(keysOf(to), (std::set<int>{0, 1, 2, 3}));
    EXPECT_EQ(to[matchKind(0)], nullptr);
    EXPECT_EQ(to[matchKind(1)], nullptr);
    EXPECT_EQ(to[matchKind(2)], nullptr);
    EXPECT_TRUE(isExactly<MatchCpuPort>(*to[matchKind(3)]));
}

TEST(CopyMap, OfAMapIntoItselfKeepsTheValues)
{
    Actions map = actionsOf(ActionSetPcp(3), ActionDeny());
    copy_map(map, map);
    EXPECT_EQ(keysOf(map), (std::set<int>{1, 5}));
    EXPECT_TRUE(*map[ACTION_SET_PCP] == ActionSetPcp(3));
}

TEST(CopyMap, ReplacesActions)
{
    Actions to = actionsOf(ActionSetPcp(3), ActionPermit());
    Actions from = actionsOf(ActionSetPcp(4), ActionDeny());
    put(from, 44, Action(test::UNKNOWN_ACTION));
    copy_map(to, from);
    EXPECT_EQ(keysOf(to), (std::set<int>{0, 1, 5, 44}));
    EXPECT_TRUE(*to[ACTION_SET_PCP] == ActionSetPcp(4));
    EXPECT_EQ(to[actionKind(44)], nullptr);
}

TEST(CopyMap, FreesWhatItReplaces)
{
    FiltersEntry entry;
    fill(entry);
    Matches matches;
    Actions actions;
    copy_map(matches, entry.getMatchesRef());
    copy_map(actions, entry.getActionsRef());
    EXPECT_EQ(blocksKeptBy([&] {
                  copy_map(matches, entry.getMatchesRef());
                  copy_map(actions, entry.getActionsRef());
              }),
              0);
}

} // namespace
} // namespace FiltersCommon
