/**
 * Entries and groups when memory runs out: every allocation of every operation fails once, and once
 * together with all later ones. What comes out is std::bad_alloc, nothing is left allocated, and
 * every object is what it was.
 *
 * Those of every match and action class, of bytes, of text and of the C interface have programs of
 * their own.
 */
#include "entry_maps.h"
#include "out_of_memory.h"

#include "filter_groups.pb.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <utility>

namespace FiltersCommon {
namespace {

using namespace test;

const std::list<limid_t> PORTS = {limId(0, 0, 0, 1), limId(0, 0, 0, 2), limId(1, 0, 0, 3)};
const std::list<limid_t> OTHER_PORTS = {limId(9, 0, 0, 1), limId(9, 0, 0, 2)};

FiltersEntry fullEntry(filtersEntryId_t id)
{
    FiltersEntry entry(id);
    entry.setPolicer(policerAt(policer::STAGE_NONE));
    entry.setCounter(Counter(1, COUNTER_TYPE_OCTETS));
    entry.setMatch(MatchIngressPorts(PORTS));
    entry.setMatch(MatchExternalVlanId({10, 20}));
    entry.setMatch(MatchSrcIPv4(ipv4("192.0.2.1")));
    entry.setAction(ActionBlockEgressPorts(PORTS));
    entry.setAction(ActionReplaceDstMac(mac("0:1:2:3:4:5")));
    return entry;
}

FiltersEntry otherEntry(filtersEntryId_t id)
{
    FiltersEntry entry(id);
    entry.setPriority(99);
    entry.setPolicer(policerAt(policer::STAGE_NONE, 2));
    entry.setMatch(MatchIngressPorts(OTHER_PORTS));
    entry.setMatch(MatchTPID(0x8100));
    entry.setMatch(MatchDstIPv4(ipv4("192.0.2.2")));
    entry.setAction(ActionBlockEgressPorts(OTHER_PORTS));
    entry.setAction(ActionRedirect(limId(0, 0, 0, 9)));
    return entry;
}

FiltersGroup fullGroup()
{
    FiltersGroup group(1);
    group.setType(GROUP_TYPE_3);
    for (const filtersEntryId_t id : std::initializer_list<filtersEntryId_t>{2, 5, 9})
        EXPECT_EQ(group.insertEntry(fullEntry(id)), FILTERS_OK);
    return group;
}

// ---------------------------------------------------------------------------------------- entries

TEST(OutOfMemory, AnEntryIsNotHalfFilled)
{
    const FiltersEntry entries[] = {FiltersEntry(7), fullEntry(7)};
    const FiltersEntry other = otherEntry(8);
    FiltersEntryPB message;
    other.convertToFiltersEntryPB(&message);
    const policer::Policer policer = policerAt(policer::STAGE_EGRESS, 3);
    const MatchIngressPorts ports(OTHER_PORTS);
    const ActionBlockEgressPorts blocked(OTHER_PORTS);
    Matches matches;
    Actions actions;
    copy_map(matches, other.getMatchesRef());
    copy_map(actions, other.getActionsRef());
    for (const FiltersEntry& before : entries) {
        expectUnchanged(
            before, [&](auto& entry) { entry.setMatch(ports); }, 2);
        expectUnchanged(
            before, [&](auto& entry) { entry.setAction(blocked); }, 2);
        expectUnchanged(
            before, [&](auto& entry) { entry.copyMatches(matches); }, 3);
        expectUnchanged(
            before, [&](auto& entry) { entry.copyMatchesFrom(other); }, 3);
        expectUnchanged(
            before, [&](auto& entry) { entry.setMatches(matches); }, 3);
        expectUnchanged(
            before, [&](auto& entry) { entry.setMatchesFrom(other); }, 3);
        expectUnchanged(
            before, [&](auto& entry) { entry.copyActions(actions); }, 4);
        expectUnchanged(
            before, [&](auto& entry) { entry.copyActionsFrom(other); }, 4);
        expectUnchanged(
            before, [&](auto& entry) { entry.setActions(actions); }, 4);
        expectUnchanged(
            before, [&](auto& entry) { entry.setActionsFrom(other); }, 4);
        expectUnchanged(before, [&](auto& entry) { entry.setPolicer(policer); });
        expectUnchanged(
            before, [&](auto& entry) { entry.convertFromFiltersEntryPB(&message); }, 8);
    }
}

TEST(OutOfMemory, AnEntryIsCopiedOrNotMade)
{
    const FiltersEntry entry = fullEntry(7);
    expectBadAlloc([&] { FiltersEntry copy(entry); }, 11);
    FiltersEntry source = fullEntry(7);
    expectBadAlloc([&] { FiltersEntry copy(std::move(source)); }, 11); // deliberately a copy
    expectSame(source, entry);
    expectSame(entry, fullEntry(7));
}

TEST(OutOfMemory, AMoveLeavesBothEntries)
{
    for (const Failing failing : FAILINGS) {
        FiltersEntry source = otherEntry(8);
        FiltersEntry target = fullEntry(7);
        EXPECT_GE(failEachAllocation(
                      failing, [&] { target = std::move(source); },
                      [&] {
                          expectSame(target, fullEntry(7));
                          expectSame(source, otherEntry(8));
                      }),
                  1u);
        expectSame(target, otherEntry(8));
        EXPECT_TRUE(source.getMatchesRef().empty());
    }
}

TEST(OutOfMemory, ARefusedAdditionLeavesTheEntry)
{
    const FiltersEntry before = fullEntry(7); // holds an IPv4 address
    const MatchDstIPv6 refused(ipv6("2001:db8::1"));
    const Matches matches = matchesOf(MatchTPID(5), MatchInternalVlanId(6), refused);
    expectUnchanged(
        before, [&](auto& entry) { EXPECT_EQ(entry.setMatch(refused), FILTERS_ERR_INVALID); }, 0);
    expectUnchanged(
        before, [&](auto& entry) { EXPECT_EQ(entry.copyMatches(matches), FILTERS_ERR_INVALID); },
        2);
    FiltersEntry other;
    EXPECT_EQ(other.setMatches(matches), FILTERS_OK);
    expectUnchanged(
        before, [&](auto& entry) { EXPECT_EQ(entry.copyMatchesFrom(other), FILTERS_ERR_INVALID); },
        2);
    const Matches mixed =
        matchesOf(MatchSrcIPv4(ipv4("192.0.2.1")), MatchInternalVlanId(6), refused);
    expectUnchanged(
        before, [&](auto& entry) { EXPECT_EQ(entry.setMatches(mixed), FILTERS_ERR_INVALID); }, 1);
}

TEST(OutOfMemory, AMapIsCopiedAsAWholeOrStaysAsItWas)
{
    const FiltersEntry from = otherEntry(1);
    for (const Failing failing : FAILINGS) {
        Matches to;
        copy_map(to, fullEntry(1).getMatchesRef());
        const auto unchanged = [&] {
            FiltersEntry entry(fullEntry(1));
            EXPECT_EQ(entry.setMatches(to), FILTERS_OK);
            expectSame(entry, fullEntry(1));
        };
        EXPECT_GE(failEachAllocation(
                      failing, [&] { copy_map(to, from.getMatchesRef()); }, unchanged),
                  8u);
        EXPECT_EQ(to.size(), 5u);
    }
}

TEST(OutOfMemory, DeletingAndComparingNeedNone)
{
    FiltersEntry entry = fullEntry(7);
    const FiltersEntry same = fullEntry(7);
    expectNoAllocation([&] {
        EXPECT_TRUE(entry == same);
        entry.setId(8);
        entry.setPriority(9);
        EXPECT_EQ(entry.setCounter(Counter(1, COUNTER_TYPE_PACKETS)), FILTERS_OK);
        EXPECT_EQ(entry.setCounter(Counter()), FILTERS_ERR_INVALID);
        EXPECT_EQ(entry.deleteCounter(), FILTERS_OK);
        EXPECT_EQ(entry.deleteMatch(MATCH_INGRESS_PORTS), FILTERS_OK);
        EXPECT_EQ(entry.deleteAction(ACTION_BLOCK_EGRESS_PORTS), FILTERS_OK);
        EXPECT_EQ(entry.deleteAction(ACTION_DENY), FILTERS_ERR_NOT_FOUND);
        EXPECT_EQ(entry.setPolicer(policer::Policer()), FILTERS_OK);
        EXPECT_EQ(entry.copyMatches({}), FILTERS_OK);
        EXPECT_EQ(entry.setMatches({}), FILTERS_OK);
        EXPECT_EQ(entry.setActions({}), FILTERS_OK);
        EXPECT_EQ(entry.copyMatchesFrom(entry), FILTERS_OK);
        EXPECT_EQ(entry.setActionsFrom(entry), FILTERS_OK);
        FiltersEntry copy(entry);
        entry = std::move(copy);
    });
    expectInvariants(entry);
}

// ----------------------------------------------------------------------------------------- groups

TEST(OutOfMemory, AGroupIsNotHalfFilled)
{
    const FiltersGroup before = fullGroup();
    const FiltersEntry another = otherEntry(6);
    const FiltersEntry replacement = otherEntry(5);
    FiltersGroup other(4);
    other.setPriority(3);
    other.setType(GROUP_TYPE_3);
    other.insertEntry(another);
    other.insertEntry(replacement);
    const FiltersGroupPB message = other.convertToFiltersGroupPB();

    expectUnchanged(
        before, [&](auto& group) { group.insertEntry(another); }, 9);
    expectUnchanged(
        before, [&](auto& group) { group.insertEntry(replacement); }, 9);
    expectUnchanged(
        before, [&](auto& group) { group = other; }, 18);
    expectUnchanged(
        before, [&](auto& group) { group.convertFromFiltersGroupPB(&message); }, 18);
}

TEST(OutOfMemory, AnEntryIsTakenOverOrStaysWhereItIs)
{
    for (const Failing failing : FAILINGS)
        for (const filtersEntryId_t id : std::initializer_list<filtersEntryId_t>{5, 6}) {
            FiltersGroup group = fullGroup();
            const bool isReplaced = group.getEntriesRef().count(id) != 0;
            FiltersEntry entry = otherEntry(id);
            EXPECT_EQ(failEachAllocation(
                          failing,
                          [&] { EXPECT_EQ(group.takeEntry(std::move(entry)), FILTERS_OK); },
                          [&] {
                              expectSame(group, fullGroup());
                              expectSame(entry, otherEntry(id));
                          }),
                      isReplaced ? 1u : 2u); // the action of the policer, and perhaps a node
            FiltersGroup expected = fullGroup();
            EXPECT_EQ(expected.insertEntry(otherEntry(id)), FILTERS_OK);
            expectSame(group, expected);
            EXPECT_TRUE(entry.getMatchesRef().empty());
            EXPECT_TRUE(entry.getActionsRef().empty());
        }
}

TEST(OutOfMemory, AGroupIsCopiedOrNotMade)
{
    const FiltersGroup group = fullGroup();
    expectBadAlloc([&] { FiltersGroup copy(group); }, 36);
    expectBadAlloc([&] { group.getEntries(); }, 36);
    expectSame(group, fullGroup());
}

TEST(OutOfMemory, WhatChangesNoEntryNeedsNone)
{
    FiltersGroup group = fullGroup();
    const FiltersGroup same = fullGroup();
    FiltersEntry refused = fullEntry(3);
    refused.setMatch(MatchVlanUntagged());
    FiltersEntry limited(4);
    limited.setPolicer(policerAt(policer::STAGE_INGRESS));
    expectNoAllocation([&] {
        EXPECT_TRUE(group == same);
        EXPECT_FALSE(group != same);
        EXPECT_EQ(group.insertEntry(refused), FILTERS_ERR_MATCH_NOT_ALLOWED);
        EXPECT_EQ(group.insertEntry(limited), FILTERS_ERR_POLICER_STAGE);
        EXPECT_EQ(group.takeEntry(std::move(refused)), FILTERS_ERR_MATCH_NOT_ALLOWED);
        EXPECT_EQ(group.takeEntry(std::move(limited)), FILTERS_ERR_POLICER_STAGE);
        EXPECT_EQ(group.setStage(GROUP_STAGE_3), FILTERS_ERR_TYPE_NOT_ALLOWED);
        EXPECT_EQ(group.setStage(GROUP_STAGE_2), FILTERS_OK);
        EXPECT_EQ(group.setType(GROUP_TYPE_8), FILTERS_ERR_MATCH_NOT_ALLOWED);
        EXPECT_EQ(group.setType(GROUP_TYPE_2), FILTERS_OK);
        group.setPriority(9);
        EXPECT_EQ(group.removeEntry(5), FILTERS_OK);
        EXPECT_EQ(group.removeEntry(5), FILTERS_ERR_NOT_FOUND);
        FiltersGroup moved(std::move(group));
        group = std::move(moved);
    });
    EXPECT_EQ(group.getEntriesRef().size(), 2u);
    expectInvariants(group);
}

} // namespace
} // namespace FiltersCommon
