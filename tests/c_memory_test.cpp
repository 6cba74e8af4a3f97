/**
 * The C interface when memory runs out, and what it leaves allocated.
 */
#include "c_support.h"
#include "test_allocator.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <initializer_list>
#include <utility>

namespace FiltersCommon {
namespace {

using test::failEachAllocation;
using test::Handle;
using test::limId;

constexpr limid_t PORTS[] = {limId(0, 3, 0, 7), limId(1, 0, 0, 2), limId(255, 254, 253, 252)};

std::size_t live() { return test::allocationTotals().live; }

FiltersEntry fullEntry(filtersEntryId_t id)
{
    FiltersEntry entry(id);
    entry.setPolicer(test::policerAt(policer::STAGE_NONE));
    entry.setMatch(MatchIngressPorts({PORTS[0], PORTS[1]}));
    entry.setMatch(MatchExternalVlanId(100));
    entry.setAction(ActionBlockEgressPorts({PORTS[1]}));
    entry.setAction(ActionDeny());
    return entry;
}

FiltersGroup groupOf(std::initializer_list<filtersEntryId_t> ids)
{
    FiltersGroup group(1);
    group.setType(GROUP_TYPE_9);
    for (const filtersEntryId_t id : ids)
        EXPECT_EQ(group.insertEntry(fullEntry(id)), FILTERS_OK);
    return group;
}

// ----------------------------------------------------------------------------------- constructors

template <class Base, class Create>
void expectBadAlloc(std::size_t atLeast, Create create)
{
    Handle<Base> made;
    const std::size_t allocations = failEachAllocation(
        [&] { made.reset(static_cast<Base*>(create())); }, [&] { EXPECT_EQ(made, nullptr); });
    EXPECT_GE(allocations, atLeast);
    EXPECT_NE(made, nullptr);
}

TEST(OutOfMemory, ConstructorsRaiseBadAlloc)
{
    expectBadAlloc<Match>(1, [] { return newMatchAll(); });
    expectBadAlloc<Match>(1, [] { return newMatchDSCP(10); });
    expectBadAlloc<Match>(2, [] { return newMatchExternalVlanId(5); });
    expectBadAlloc<Match>(2, [] { return newMatchInternalVlanId(5); });
    expectBadAlloc<Match>(1, [] { return newMatchIngressPorts(nullptr, 0); });
    expectBadAlloc<Match>(4, [] { return newMatchIngressPorts(PORTS, 3); });
    expectBadAlloc<Match>(4, [] { return newMatchEgressPorts(PORTS, 3); });
    expectBadAlloc<Action>(1, [] { return newActionPermit(); });
    expectBadAlloc<Action>(2, [] { return newActionRedirect(PORTS); });
    expectBadAlloc<Action>(4, [] { return newActionBlockEgressPorts(PORTS, 3); });
    expectBadAlloc<FiltersEntry>(1, [] { return newFiltersEntry(7); });
    expectBadAlloc<FiltersGroup>(1, [] { return newFiltersGroup(1); });
}

TEST(OutOfMemory, CopyingAnEntryRaisesBadAlloc)
{
    FiltersEntry entry(fullEntry(7));
    expectBadAlloc<FiltersEntry>(5, [&] { return copyFiltersEntry(&entry); });
    EXPECT_TRUE(entry == fullEntry(7));
}

// ----------------------------------------------------------------------------- entries and groups

TEST(OutOfMemory, SettingLeavesTheEntryAsItWas)
{
    MatchIngressPorts ports({PORTS[2]});
    ActionBlockEgressPorts blocked({PORTS[2]});
    for (const FiltersEntry& before : {FiltersEntry(7), fullEntry(7)}) {
        FiltersEntry withMatch(before);
        EXPECT_GE(failEachAllocation([&] { filtersEntrySetMatch(&withMatch, &ports); },
                                     [&] { EXPECT_TRUE(withMatch == before); }),
                  2u);
        EXPECT_TRUE(*withMatch.getMatchesRef().at(MATCH_INGRESS_PORTS) == ports);
        FiltersEntry withAction(before);
        EXPECT_GE(failEachAllocation([&] { filtersEntrySetAction(&withAction, &blocked); },
                                     [&] { EXPECT_TRUE(withAction == before); }),
                  2u);
        EXPECT_TRUE(*withAction.getActionsRef().at(ACTION_BLOCK_EGRESS_PORTS) == blocked);
    }
}

TEST(OutOfMemory, GettingLeavesTheHandleAsItWas)
{
    FiltersEntry entry(fullEntry(7));
    const MatchIngressPorts before({PORTS[2], PORTS[1], PORTS[0]});
    MatchIngressPorts ports(before);
    EXPECT_GE(failEachAllocation([&] { filtersEntryGetMatch(&entry, &ports); },
                                 [&] { EXPECT_TRUE(ports == before); }),
              1u);
    const ActionBlockEgressPorts blockedBefore({PORTS[2], PORTS[1], PORTS[0]});
    ActionBlockEgressPorts blocked(blockedBefore);
    EXPECT_GE(failEachAllocation([&] { filtersEntryGetAction(&entry, &blocked); },
                                 [&] { EXPECT_TRUE(blocked == blockedBefore); }),
              1u);
}

TEST(OutOfMemory, InsertingLeavesTheGroupAsItWas)
{
    FiltersEntry replacement(5);
    replacement.setMatch(MatchIngressPorts({PORTS[2]}));
    FiltersEntry another(fullEntry(6));
    const FiltersGroup before(groupOf({2, 5, 9}));
    for (FiltersEntry* entry : {&replacement, &another}) {
        FiltersGroup group(before);
        EXPECT_GE(failEachAllocation([&] { filtersGroupInsertEntry(&group, entry); },
                                     [&] { EXPECT_TRUE(group == before); }),
                  4u);
        EXPECT_TRUE(group.getEntriesRef().at(entry->getId()) == *entry);
    }
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
    Sentinel sentinel;
    const std::size_t start = live();
    EXPECT_GE(failEachAllocation([&] { filtersGroupGetEntries(&group, &sentinel.record); },
                                 [&] { sentinel.expectUntouched(); }),
              allocationsAtLeast);
    EXPECT_TRUE(group == before);
    EXPECT_EQ(static_cast<std::size_t>(sentinel.record.count), group.getEntriesRef().size());
    deleteFiltersEntriesStruct(&sentinel.record);
    EXPECT_EQ(live(), start);
}

TEST(OutOfMemory, ListingLeavesTheRecordUntouched)
{
    // Two arrays, and for each entry a copy of at least its two matches and two actions.
    expectListingSurvives(groupOf({9, 2, 5}), 2 + 3 * 5);
}

TEST(OutOfMemory, ListingAnEmptyGroupLeavesTheRecordUntouched)
{
    expectListingSurvives(groupOf({}), 2);
}

// ------------------------------------------------------------------------- what is left allocated

TEST(LeftAllocated, NothingOfAListing)
{
    FiltersGroup group(groupOf({2, 5, 9}));
    const std::size_t start = live();
    entriesStruct record;
    filtersGroupGetEntries(&group, &record);
    EXPECT_GE(live(), start + 2 + 3 * 5);
    deleteFiltersEntriesStruct(&record);
    EXPECT_EQ(live(), start);
}

TEST(LeftAllocated, TheFirstArraysOfARecordThatIsFilledTwice)
{
    FiltersGroup group(groupOf({2, 5}));
    const std::size_t start = live();
    entriesStruct record;
    filtersGroupGetEntries(&group, &record);
    entriesStruct first = record;
    const std::size_t once = live() - start;
    filtersGroupGetEntries(&group, &record);
    EXPECT_EQ(live(), start + 2 * once);
    deleteFiltersEntriesStruct(&record);
    EXPECT_EQ(live(), start + once);
    deleteFiltersEntriesStruct(&first);
    EXPECT_EQ(live(), start);
}

TEST(LeftAllocated, TheEntriesOfARecordWithANegativeCount)
{
    FiltersGroup group(groupOf({2}));
    const std::size_t start = live();
    entriesStruct record;
    filtersGroupGetEntries(&group, &record);
    Handle<FiltersEntry> entry(record.entries[0]);
    const std::size_t filled = live();
    record.count = -1;
    deleteFiltersEntriesStruct(&record);
    EXPECT_EQ(live(), filled - 2) << "the two arrays";
    entry.reset();
    EXPECT_EQ(live(), start);
}

TEST(LeftAllocated, NothingOfARecordWithNullMembers)
{
    FiltersGroup group(groupOf({2, 5}));
    const std::size_t start = live();
    entriesStruct record;
    filtersGroupGetEntries(&group, &record);
    deleteFiltersEntry(std::exchange(record.entries[0], nullptr));
    entriesStruct idsAlone = {0, std::exchange(record.ids, nullptr), nullptr};
    deleteFiltersEntriesStruct(&record);
    EXPECT_EQ(live(), start + 1) << "the identifiers";
    deleteFiltersEntriesStruct(&idsAlone);
    EXPECT_EQ(live(), start);
}

TEST(LeftAllocated, TheIdentifiersOfARecordWithoutEntriesAreFreedWhateverItsCount)
{
    const std::size_t start = live();
    entriesStruct record = {3, new filtersEntryId_t[3], nullptr};
    deleteFiltersEntriesStruct(&record);
    EXPECT_EQ(live(), start);
}

TEST(LeftAllocated, NothingOfARule)
{
    const std::size_t start = live();
    {
        const Handle<FiltersGroup> group(newFiltersGroup(1));
        const Handle<FiltersEntry> entry(newFiltersEntry(7));
        const Handle<Match> match(static_cast<Match*>(newMatchEgressPorts(PORTS, 3)));
        const Handle<Action> action(static_cast<Action*>(newActionBlockEgressPorts(PORTS, 2)));
        ASSERT_EQ(filtersEntrySetMatch(entry.get(), match.get()), FILTERS_OK);
        ASSERT_EQ(filtersEntrySetMatch(entry.get(), match.get()), FILTERS_OK);
        ASSERT_EQ(filtersEntryGetMatch(entry.get(), match.get()), FILTERS_OK);
        ASSERT_EQ(filtersEntrySetAction(entry.get(), action.get()), FILTERS_OK);
        ASSERT_EQ(filtersEntryGetAction(entry.get(), action.get()), FILTERS_OK);
        ASSERT_EQ(filtersGroupSetType(group.get(), GROUP_TYPE_5), FILTERS_OK);
        ASSERT_EQ(filtersGroupInsertEntry(group.get(), entry.get()), FILTERS_OK);
        ASSERT_EQ(filtersGroupInsertEntry(group.get(), entry.get()), FILTERS_OK);
        const Handle<FiltersEntry> copy(copyFiltersEntry(entry.get()));
    }
    EXPECT_EQ(live(), start);
}

} // namespace
} // namespace FiltersCommon
