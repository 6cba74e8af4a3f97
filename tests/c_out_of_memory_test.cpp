/**
 * The C interface when memory runs out: every allocation of every function fails once, and once
 * together with all later ones. What comes out is std::bad_alloc, nothing is left allocated, and
 * every object and every record is what it was.
 */
#include "c_constructors.h"
#include "c_support.h"
#include "filter_refusals_c.h"
#include "full_entries.h"
#include "out_of_memory.h"
#include "samples.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <fstream>
#include <set>
#include <string>

namespace FiltersCommon {
namespace {

using namespace test;

// ----------------------------------------------------------------------------------- constructors

/** Expects the function to raise until it makes an object, never to answer null. */
template <class Base, class Create>
void expectMade(std::size_t allocationsAtLeast, Create create)
{
    expectBadAlloc(
        [&] {
            const Handle<Base> made(static_cast<Base*>(create()));
            EXPECT_NE(made, nullptr);
        },
        allocationsAtLeast);
}

TEST(OutOfMemory, EveryConstructorRaisesBadAlloc)
{
    std::set<std::string> names = {"newFiltersEntry", "newFiltersGroup",
                                   "newFiltersGroupFromBytes"};
    for (const Constructor& constructor : MATCH_CONSTRUCTORS) {
        SCOPED_TRACE(*names.insert(constructor.name).first);
        expectMade<Match>(1, constructor.create);
    }
    for (const Constructor& constructor : ACTION_CONSTRUCTORS) {
        SCOPED_TRACE(*names.insert(constructor.name).first);
        expectMade<Action>(1, constructor.create);
    }
    expectMade<FiltersEntry>(1, [] { return newFiltersEntry(7); });
    expectMade<FiltersGroup>(1, [] { return newFiltersGroup(1); });
    // What it finds wrong with these bytes takes memory too.
    expectBadAlloc([] {
        FiltersRefusals* losses = nullptr;
        const Handle<FiltersGroup> made(newFiltersGroupFromBytes("\x08\x01\x7F", 3, &losses));
        deleteFiltersRefusals(losses);
    });

    std::set<std::string> offered;
    std::ifstream symbols(C_SYMBOLS);
    for (std::string name; symbols >> name;)
        if (name.compare(0, 3, "new") == 0)
            offered.insert(name);
    EXPECT_EQ(names, offered);
}

TEST(OutOfMemory, AListIsMadeAsAWhole)
{
    expectMade<Match>(1, [] { return newMatchIngressPorts(nullptr, 0); });
    expectMade<Match>(1, [] { return newMatchEgressPorts(nullptr, 0); });
    expectMade<Action>(1, [] { return newActionBlockEgressPorts(nullptr, 0); });
    expectMade<Match>(3, [] { return newMatchIngressPorts(SOME_PORTS, 2); });
    expectMade<Match>(3, [] { return newMatchEgressPorts(SOME_PORTS, 2); });
    expectMade<Action>(3, [] { return newActionBlockEgressPorts(SOME_PORTS, 2); });
    expectMade<Match>(2, [] { return newMatchExternalVlanId(5); });
    expectMade<Match>(2, [] { return newMatchInternalVlanId(5); });
    expectMade<Action>(2, [] { return newActionRedirect(SOME_PORTS); });
}

TEST(OutOfMemory, CopyingAnEntryRaisesBadAlloc)
{
    FiltersEntry entry(fullEntry(7));
    expectMade<FiltersEntry>(8, [&] { return copyFiltersEntry(&entry); });
    expectSame(entry, fullEntry(7));
}

// ---------------------------------------------------------------------------------------- entries

/** Calls @p function with the handle that each constructor makes, a match or an action. */
template <class Function>
void withEachHandle(Function function)
{
    for (const Constructor& constructor : MATCH_CONSTRUCTORS) {
        SCOPED_TRACE(constructor.name);
        function(*Handle<Match>(static_cast<Match*>(constructor.create())));
    }
    for (const Constructor& constructor : ACTION_CONSTRUCTORS) {
        SCOPED_TRACE(constructor.name);
        function(*Handle<Action>(static_cast<Action*>(constructor.create())));
    }
}

filtersErr_t set(FiltersEntry& entry, Match& match) { return filtersEntrySetMatch(&entry, &match); }
filtersErr_t set(FiltersEntry& entry, Action& action)
{
    return filtersEntrySetAction(&entry, &action);
}
filtersErr_t get(FiltersEntry& entry, Match& match) { return filtersEntryGetMatch(&entry, &match); }
filtersErr_t get(FiltersEntry& entry, Action& action)
{
    return filtersEntryGetAction(&entry, &action);
}

filtersErr_t erase(FiltersEntry& entry, const Match& match)
{
    return filtersEntryDeleteMatch(&entry, match.getType());
}
filtersErr_t erase(FiltersEntry& entry, const Action& action)
{
    return filtersEntryDeleteAction(&entry, action.getType());
}

TEST(OutOfMemory, SettingLeavesTheEntryAndTheHandle)
{
    withEachHandle([](auto& handle) {
        const std::string held = dump(handle);
        FiltersEntry full(9);
        EXPECT_EQ(set(full, handle), FILTERS_OK);
        FiltersEntry others(full);
        fill(others);
        EXPECT_EQ(erase(others, handle), FILTERS_OK);
        const auto take = [&](FiltersEntry& entry) { EXPECT_EQ(set(entry, handle), FILTERS_OK); };
        expectUnchanged(FiltersEntry(7), take, 0); // a small one stands in the entry itself
        expectUnchanged(full, take, 0);
        expectUnchanged(others, take, 1);
        EXPECT_EQ(dump(handle), held);
    });
}

TEST(OutOfMemory, GettingLeavesTheEntryAndTheHandle)
{
    withEachHandle([](auto& handle) {
        FiltersEntry entry(7);
        expectNoAllocation([&] { EXPECT_EQ(get(entry, handle), FILTERS_ERR_NOT_FOUND); });
        EXPECT_EQ(set(entry, handle), FILTERS_OK);
        const FiltersEntry before(entry);
        const std::string held = dump(handle);
        for (const Failing failing : FAILINGS)
            failEachAllocation(
                failing, [&] { EXPECT_EQ(get(entry, handle), FILTERS_OK); },
                [&] { EXPECT_EQ(dump(handle), held); });
        expectSame(entry, before);
    });
}

TEST(OutOfMemory, GettingAListLeavesTheOldOne)
{
    FiltersEntry entry(fullEntry(7));
    expectUnchanged(
        MatchIngressPorts({SOME_PORTS[1]}),
        [&](auto& ports) { EXPECT_EQ(filtersEntryGetMatch(&entry, &ports), FILTERS_OK); }, 2);
    expectUnchanged(MatchExternalVlanId({1, 2}),
                    [&](auto& ids) { EXPECT_EQ(filtersEntryGetMatch(&entry, &ids), FILTERS_OK); });
    expectUnchanged(ActionBlockEgressPorts({SOME_PORTS[0]}), [&](auto& blocked) {
        EXPECT_EQ(filtersEntryGetAction(&entry, &blocked), FILTERS_OK);
    });
    expectSame(entry, fullEntry(7));
}

TEST(OutOfMemory, AccessorsAndRefusalsNeedNone)
{
    FiltersEntry entry(fullEntry(7));
    MatchForwardingType notOffered(FORWARDING_TYPE_0);
    MatchSrcIPv6 notBesideIPv4(SOME_IPV6);
    entry.setMatch(MatchSrcIPv4(SOME_IPV4));
    expectNoAllocation([&] {
        EXPECT_EQ(filtersEntryGetId(&entry), 7);
        filtersEntrySetPriority(&entry, 5);
        EXPECT_EQ(filtersEntryGetPriority(&entry), 5u);
        EXPECT_EQ(filtersEntrySetMatch(&entry, &notOffered), FILTERS_ERR_INVALID);
        EXPECT_EQ(filtersEntryGetMatch(&entry, &notOffered), FILTERS_ERR_INVALID);
        EXPECT_EQ(filtersEntrySetMatch(&entry, &notBesideIPv4), FILTERS_ERR_INVALID);
        EXPECT_EQ(filtersEntrySetMatch(&entry, nullptr), FILTERS_ERR_BAD_PARAM);
        EXPECT_EQ(filtersEntryDeleteMatch(&entry, MATCH_SRC_IPV4), FILTERS_OK);
        EXPECT_EQ(filtersEntryDeleteMatch(&entry, MATCH_SRC_IPV4), FILTERS_ERR_NOT_FOUND);
        EXPECT_EQ(filtersEntryDeleteAction(&entry, ACTION_DENY), FILTERS_OK);
    });
    expectInvariants(entry);
}

// ----------------------------------------------------------------------------------------- groups

TEST(OutOfMemory, InsertingLeavesTheGroupAndTheEntry)
{
    FiltersEntry replacement(5);
    replacement.setMatch(MatchIngressPorts({SOME_PORTS[1]}));
    FiltersEntry another(fullEntry(6));
    const FiltersGroup before(groupOf({2, 5, 9}));
    const auto expectInserted = [&](FiltersEntry& entry, std::size_t allocationsAtLeast) {
        const FiltersEntry held(entry);
        expectUnchanged(
            before,
            [&](FiltersGroup& group) {
                EXPECT_EQ(filtersGroupInsertEntry(&group, &entry), FILTERS_OK);
            },
            allocationsAtLeast);
        expectSame(entry, held);
    };
    expectInserted(replacement, 3);
    expectInserted(another, 8);
}

TEST(OutOfMemory, WhatChangesNoEntryNeedsNone)
{
    FiltersGroup group(groupOf({2, 5, 9}));
    FiltersEntry refused(3);
    refused.setMatch(MatchDrop(true));
    expectNoAllocation([&] {
        EXPECT_EQ(filtersGroupGetId(&group), 1);
        filtersGroupSetPriority(&group, 4);
        EXPECT_EQ(filtersGroupGetPriority(&group), 4);
        filtersGroupSetStage(&group, GROUP_STAGE_1); // refused
        filtersGroupSetStage(&group, GROUP_STAGE_2);
        EXPECT_EQ(filtersGroupGetStage(&group), GROUP_STAGE_2);
        EXPECT_EQ(filtersGroupSetType(&group, GROUP_TYPE_8), FILTERS_ERR_MATCH_NOT_ALLOWED);
        EXPECT_EQ(filtersGroupSetType(&group, GROUP_TYPE_1), FILTERS_OK);
        EXPECT_EQ(filtersGroupGetType(&group), GROUP_TYPE_1);
        EXPECT_EQ(filtersGroupSetType(&group, GROUP_TYPE_2), FILTERS_OK);
        EXPECT_EQ(filtersGroupInsertEntry(&group, &refused), FILTERS_ERR_MATCH_NOT_ALLOWED);
        EXPECT_EQ(filtersGroupRemoveEntry(&group, 5), FILTERS_OK);
        EXPECT_EQ(filtersGroupRemoveEntry(&group, 5), FILTERS_ERR_NOT_FOUND);
    });
    EXPECT_EQ(group.getEntriesRef().size(), 2u);
    expectInvariants(group);
}

// ---------------------------------------------------------------------------------------- listing

/** A record whose members would be noticed if they were written to or freed. */
struct Sentinel {
    filtersEntryId_t id = 4711;
    FiltersEntry* entry = nullptr;
    entriesStruct record = {-7, &id, &entry};

    void expectUntouched() const
    {
        EXPECT_EQ(record.count, -7);
        EXPECT_EQ(record.ids, &id);
        EXPECT_EQ(record.entries, &entry);
        EXPECT_EQ(id, 4711);
        EXPECT_EQ(entry, nullptr);
    }
};

void expectListingSurvives(FiltersGroup group, std::size_t allocationsAtLeast)
{
    const FiltersGroup before(group);
    expectSame(group, before); // and what is built once is there
    for (const Failing failing : FAILINGS) {
        Sentinel sentinel;
        const std::size_t start = allocationTotals().live;
        EXPECT_GE(failEachAllocation(
                      failing, [&] { filtersGroupGetEntries(&group, &sentinel.record); },
                      [&] { sentinel.expectUntouched(); }),
                  allocationsAtLeast);
        expectSame(group, before);
        EXPECT_EQ(static_cast<std::size_t>(sentinel.record.count), group.getEntriesRef().size());
        deleteFiltersEntriesStruct(&sentinel.record);
        EXPECT_EQ(allocationTotals().live, start);
    }
}

TEST(OutOfMemory, ListingLeavesTheRecordUntouched)
{
    // Two arrays, and for each entry a copy: itself, a block of two matches with three elements in
    // their lists, a block of two actions with one, and the action of its policer.
    expectListingSurvives(groupOf({9, 2, 5}), 2 + 3 * (1 + 4 + 2 + 1));
}

TEST(OutOfMemory, ListingAnEmptyGroupLeavesTheRecordUntouched)
{
    expectListingSurvives(groupOf({}), 2);
}

} // namespace
} // namespace FiltersCommon
