/**
 * What the C interface leaves allocated.
 */
#include "c_support.h"
#include "filter_refusals_c.h"
#include "full_entries.h"
#include "test_allocator.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <utility>

namespace FiltersCommon {
namespace {

using test::fullEntry;
using test::groupOf;
using test::Handle;
using test::limId;

constexpr limid_t PORTS[] = {limId(0, 3, 0, 7), limId(1, 0, 0, 2), limId(255, 254, 253, 252)};

std::size_t live() { return test::allocationTotals().live; }

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

TEST(LeftAllocated, NothingOfRefusals)
{
    FiltersGroup group(1);
    FiltersEntry entry(fullEntry(1));
    const std::size_t start = live();
    FiltersRefusals* const refusals = filtersGroupInsertEntryRefusals(&group, &entry);
    ASSERT_GT(filtersRefusalsGetCount(refusals), 1u);
    for (std::uint32_t i = 0; i < filtersRefusalsGetCount(refusals); ++i)
        EXPECT_NE(filtersRefusalsGetSentence(refusals, i), nullptr);
    EXPECT_GT(live(), start);
    deleteFiltersRefusals(refusals);
    EXPECT_EQ(live(), start);
}

} // namespace
} // namespace FiltersCommon
