#include "c_support.h"

#include "filter_groups.pb.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <limits>
#include <type_traits>
#include <vector>

namespace FiltersCommon {
namespace {

using test::ANY_LINE;
using test::BrokenContract;
using test::Handle;
using test::ipv4;

// The record is laid out for C.
static_assert(std::is_standard_layout_v<entriesStruct> && std::is_trivial_v<entriesStruct>);
static_assert(std::is_same_v<decltype(entriesStruct::count), std::int32_t>);
static_assert(std::is_same_v<decltype(entriesStruct::ids), std::uint16_t*>);
static_assert(std::is_same_v<decltype(entriesStruct::entries), FiltersEntry**>);
static_assert(offsetof(entriesStruct, count) == 0);
static_assert(offsetof(entriesStruct, ids) == sizeof(void*));
static_assert(offsetof(entriesStruct, entries) == 2 * sizeof(void*));
static_assert(sizeof(entriesStruct) == 3 * sizeof(void*));

/** An entry that a group of type 3 at stage 2 admits, with something in each of its places. */
FiltersEntry fullEntry(filtersEntryId_t id)
{
    FiltersEntry entry(id);
    entry.setPriority(1000u + id);
    entry.setPolicer(test::policerAt(policer::STAGE_INGRESS, id));
    entry.setCounter(Counter(id, COUNTER_TYPE_PACKETS));
    entry.setMatch(MatchDstIPv4(ipv4("192.0.2.0"), ipv4("255.255.255.0")));
    entry.setMatch(MatchTTL(64));
    entry.setAction(ActionDeny());
    return entry;
}

filtersErr_t insert(FiltersGroup* group, FiltersEntry entry)
{
    return filtersGroupInsertEntry(group, &entry);
}

/** A group of type 3 at stage 2 with full entries of these identifiers. */
Handle<FiltersGroup> groupOf(std::initializer_list<filtersEntryId_t> ids)
{
    Handle<FiltersGroup> group(newFiltersGroup(1));
    EXPECT_EQ(filtersGroupSetType(group.get(), GROUP_TYPE_3), FILTERS_OK);
    filtersGroupSetStage(group.get(), GROUP_STAGE_2);
    for (const filtersEntryId_t id : ids)
        EXPECT_EQ(insert(group.get(), fullEntry(id)), FILTERS_OK);
    return group;
}

/** A group with any stage and type, as only bytes can give it. */
FiltersGroup groupRead(std::uint32_t stage, std::uint32_t type)
{
    FiltersGroupPB pb;
    pb.set_id_(1);
    pb.set_priority_(0);
    pb.set_stage_(stage);
    pb.set_type_(type);
    return FiltersGroup(pb.SerializeAsString());
}

std::vector<filtersEntryId_t> idsOf(const entriesStruct& listing)
{
    return {listing.ids, listing.ids + listing.count};
}

/** The record, freed at the end of the scope. */
struct Listing : entriesStruct {
    explicit Listing(FiltersGroup* group) : entriesStruct{-1, nullptr, nullptr}
    {
        filtersGroupGetEntries(group, this);
    }
    Listing(const Listing&) = delete;
    Listing& operator=(const Listing&) = delete;
    ~Listing() { deleteFiltersEntriesStruct(this); }
};

// ----------------------------------------------------------------------- life cycle and accessors

TEST(GroupsC, ANewGroupHasItsIdentifierAndNothingElse)
{
    for (const filtersGroupId_t id : std::vector<filtersGroupId_t>{0, 7, 65535}) {
        const Handle<FiltersGroup> group(newFiltersGroup(id));
        EXPECT_EQ(filtersGroupGetId(group.get()), id);
        EXPECT_EQ(filtersGroupGetPriority(group.get()), 0);
        EXPECT_EQ(filtersGroupGetStage(group.get()), GROUP_STAGE_0);
        EXPECT_EQ(filtersGroupGetType(group.get()), GROUP_TYPE_0);
        EXPECT_TRUE(group->getEntriesRef().empty());
    }
}

TEST(GroupsC, ThePriorityHas16Bits)
{
    const Handle<FiltersGroup> group(newFiltersGroup(1));
    for (const auto priority : std::vector<filtersGroupPriority_t>{1, 0x89AB, 65535, 0}) {
        filtersGroupSetPriority(group.get(), priority);
        EXPECT_EQ(filtersGroupGetPriority(group.get()), priority);
        EXPECT_EQ(group->getPriority(), priority);
    }
}

// --------------------------------------------------------------------------------- stage and type

TEST(GroupsC, EveryAdmittedStageIsSet)
{
    const Handle<FiltersGroup> group(newFiltersGroup(1));
    for (const auto stage : {GROUP_STAGE_3, GROUP_STAGE_2, GROUP_STAGE_1, GROUP_STAGE_0}) {
        filtersGroupSetStage(group.get(), stage);
        EXPECT_EQ(filtersGroupGetStage(group.get()), stage);
        EXPECT_EQ(group->getStage(), stage);
    }
}

TEST(GroupsC, AStageThatTheTypeForbidsLeavesTheStageUnchangedWithoutNotice)
{
    const Handle<FiltersGroup> group(newFiltersGroup(1));
    ASSERT_EQ(filtersGroupSetType(group.get(), GROUP_TYPE_1), FILTERS_OK);
    filtersGroupSetStage(group.get(), GROUP_STAGE_2);
    for (const int stage : {1, 3, 4, -1}) {
        filtersGroupSetStage(group.get(), static_cast<filtersGroupStage_t>(stage));
        EXPECT_EQ(filtersGroupGetStage(group.get()), GROUP_STAGE_2);
    }
}

TEST(GroupsC, AStageThatAnEntryForbidsLeavesTheStageUnchanged)
{
    const Handle<FiltersGroup> group(newFiltersGroup(1));
    FiltersEntry redirecting(1);
    redirecting.setAction(ActionRedirectCancel());
    ASSERT_EQ(insert(group.get(), redirecting), FILTERS_OK);
    filtersGroupSetStage(group.get(), GROUP_STAGE_1);
    EXPECT_EQ(filtersGroupGetStage(group.get()), GROUP_STAGE_0);
    filtersGroupSetStage(group.get(), GROUP_STAGE_2);
    EXPECT_EQ(filtersGroupGetStage(group.get()), GROUP_STAGE_2);
}

TEST(GroupsC, EveryTypeIsSetAtStage0)
{
    const Handle<FiltersGroup> group(newFiltersGroup(1));
    for (int type = 9; type >= 0; --type) {
        const auto wanted = static_cast<filtersGroupType_t>(type);
        EXPECT_EQ(filtersGroupSetType(group.get(), wanted), FILTERS_OK);
        EXPECT_EQ(filtersGroupGetType(group.get()), wanted);
        EXPECT_EQ(group->getType(), wanted);
    }
}

TEST(GroupsC, ARefusedTypeIsAnsweredWithItsCodeAndChangesNothing)
{
    const auto expectRefused = [](FiltersGroup group, int type, filtersErr_t code) {
        const FiltersGroup before(group);
        EXPECT_EQ(filtersGroupSetType(&group, static_cast<filtersGroupType_t>(type)), code);
        EXPECT_TRUE(group == before);
    };
    FiltersGroup stage1(1);
    stage1.setStage(GROUP_STAGE_1);
    expectRefused(stage1, 1, FILTERS_ERR_TYPE_NOT_ALLOWED);
    expectRefused(FiltersGroup(1), 10, FILTERS_ERR_TYPE_NOT_ALLOWED);
    expectRefused(groupRead(4, 0), 0, FILTERS_ERR_UNKNOWN_STAGE);
    expectRefused(*groupOf({5}), 1, FILTERS_ERR_MATCH_NOT_ALLOWED);
}

// ---------------------------------------------------------------------------- inserting, removing

TEST(GroupsC, InsertingStoresACopyAndLeavesTheEntryToTheCaller)
{
    const Handle<FiltersGroup> group = groupOf({});
    Handle<FiltersEntry> entry(new FiltersEntry(fullEntry(5)));
    ASSERT_EQ(filtersGroupInsertEntry(group.get(), entry.get()), FILTERS_OK);
    filtersEntrySetPriority(entry.get(), 1);
    filtersEntryDeleteMatch(entry.get(), MATCH_TTL);
    entry.reset();
    ASSERT_EQ(group->getEntriesRef().size(), 1u);
    EXPECT_TRUE(group->getEntriesRef().at(5) == fullEntry(5));
}

TEST(GroupsC, InsertingReplacesAnEntryOfTheSameIdentifier)
{
    const Handle<FiltersGroup> group = groupOf({5});
    EXPECT_EQ(insert(group.get(), FiltersEntry(5)), FILTERS_OK);
    ASSERT_EQ(group->getEntriesRef().size(), 1u);
    EXPECT_TRUE(group->getEntriesRef().at(5) == FiltersEntry(5));
}

TEST(GroupsC, ARefusedEntryIsAnsweredWithItsCodeAndChangesNothing)
{
    const auto expectRefused = [](FiltersGroup group, const FiltersEntry& entry,
                                  filtersErr_t code) {
        const FiltersGroup before(group);
        EXPECT_EQ(insert(&group, entry), code);
        EXPECT_TRUE(group == before);
    };
    FiltersEntry untagged(5);
    untagged.setMatch(MatchVlanUntagged());
    FiltersEntry innerPcp(5);
    innerPcp.setAction(ActionSetInnerPcp(1));
    FiltersEntry egress(5);
    egress.setPolicer(test::policerAt(policer::STAGE_EGRESS));

    const FiltersGroup group(*groupOf({5}));
    expectRefused(group, untagged, FILTERS_ERR_MATCH_NOT_ALLOWED);
    expectRefused(group, innerPcp, FILTERS_ERR_ACTION_NOT_ALLOWED);
    expectRefused(group, egress, FILTERS_ERR_POLICER_STAGE);
    expectRefused(groupRead(0, 10), FiltersEntry(5), FILTERS_ERR_INVALID);
    expectRefused(groupRead(4, 0), FiltersEntry(5), FILTERS_ERR_UNKNOWN_STAGE);
}

TEST(GroupsC, RemovingTakesOutThatEntryAlone)
{
    const Handle<FiltersGroup> group = groupOf({2, 5, 9});
    EXPECT_EQ(filtersGroupRemoveEntry(group.get(), 5), FILTERS_OK);
    EXPECT_EQ(filtersGroupRemoveEntry(group.get(), 5), FILTERS_ERR_NOT_FOUND);
    EXPECT_TRUE(*group == *groupOf({2, 9}));
}

TEST(GroupsC, RemovingFromANullGroupIsBadParamAndFromAnEmptyOneNotFound)
{
    EXPECT_EQ(filtersGroupRemoveEntry(nullptr, 1), -5);
    const Handle<FiltersGroup> group(newFiltersGroup(1));
    EXPECT_EQ(filtersGroupRemoveEntry(group.get(), 1), -3);
}

// ---------------------------------------------------------------------------------------- listing

TEST(GroupsC, EntriesInserted9And2And5AreListedAs2And5And9)
{
    const Handle<FiltersGroup> group = groupOf({9, 2, 5});
    const Listing listing(group.get());
    ASSERT_EQ(listing.count, 3);
    EXPECT_EQ(idsOf(listing), (std::vector<filtersEntryId_t>{2, 5, 9}));
    for (int i = 0; i < listing.count; ++i) {
        EXPECT_EQ(filtersEntryGetId(listing.entries[i]), listing.ids[i]);
        EXPECT_TRUE(*listing.entries[i] == fullEntry(listing.ids[i]));
        EXPECT_NE(listing.entries[i], &group->getEntriesRef().at(listing.ids[i]));
    }
}

TEST(GroupsC, EveryIdentifierIsListed)
{
    FiltersGroup group(1);
    for (int id = 0; id < 65536; ++id)
        ASSERT_EQ(insert(&group, FiltersEntry(static_cast<filtersEntryId_t>(id))), FILTERS_OK);
    const Listing listing(&group);
    ASSERT_EQ(listing.count, 65536);
    for (int i = 0; i < listing.count; ++i)
        ASSERT_EQ(listing.ids[i], i);
}

TEST(GroupsC, AnEmptyGroupIsListedAsArraysWithoutElements)
{
    const Handle<FiltersGroup> group(newFiltersGroup(1));
    const Listing listing(group.get());
    EXPECT_EQ(listing.count, 0);
    EXPECT_NE(listing.ids, nullptr);
    EXPECT_NE(listing.entries, nullptr);
}

TEST(GroupsC, ListedEntriesDoNotChangeWithTheGroup)
{
    Handle<FiltersGroup> group = groupOf({2, 5});
    const Listing listing(group.get());
    ASSERT_EQ(insert(group.get(), FiltersEntry(2)), FILTERS_OK);
    ASSERT_EQ(filtersGroupRemoveEntry(group.get(), 5), FILTERS_OK);
    group.reset();
    ASSERT_EQ(idsOf(listing), (std::vector<filtersEntryId_t>{2, 5}));
    EXPECT_TRUE(*listing.entries[0] == fullEntry(2));
    EXPECT_TRUE(*listing.entries[1] == fullEntry(5));
}

TEST(GroupsC, TheGroupDoesNotChangeWithListedEntries)
{
    const Handle<FiltersGroup> group = groupOf({5});
    const Listing listing(group.get());
    ASSERT_EQ(listing.count, 1);
    filtersEntrySetPriority(listing.entries[0], 1);
    EXPECT_EQ(filtersEntryDeleteMatch(listing.entries[0], MATCH_TTL), FILTERS_OK);
    EXPECT_TRUE(group->getEntriesRef().at(5) == fullEntry(5));
}

TEST(GroupsC, ListingTwiceOverwritesTheRecordAndFreesNothing)
{
    const Handle<FiltersGroup> group = groupOf({2, 5});
    entriesStruct record;
    filtersGroupGetEntries(group.get(), &record);
    entriesStruct first = record;
    ASSERT_EQ(insert(group.get(), fullEntry(3)), FILTERS_OK);
    filtersGroupGetEntries(group.get(), &record);

    EXPECT_NE(record.ids, first.ids);
    EXPECT_NE(record.entries, first.entries);
    EXPECT_EQ(idsOf(record), (std::vector<filtersEntryId_t>{2, 3, 5}));
    EXPECT_EQ(idsOf(first), (std::vector<filtersEntryId_t>{2, 5}));
    EXPECT_TRUE(*record.entries[2] == fullEntry(5));
    EXPECT_TRUE(*first.entries[1] == fullEntry(5));
    deleteFiltersEntriesStruct(&first);
    deleteFiltersEntriesStruct(&record);
}

// ------------------------------------------------------------------------------ freeing a listing

TEST(GroupsC, FreeingDoesNotResetTheRecord)
{
    const Handle<FiltersGroup> group = groupOf({2, 5});
    entriesStruct record;
    filtersGroupGetEntries(group.get(), &record);
    const entriesStruct before = record;
    deleteFiltersEntriesStruct(&record);
    EXPECT_EQ(record.count, before.count);
    EXPECT_EQ(record.ids, before.ids);
    EXPECT_EQ(record.entries, before.entries);
}

TEST(GroupsC, ANegativeCountFreesNoEntry)
{
    const Handle<FiltersGroup> group = groupOf({2});
    for (const int count : {0, -1, std::numeric_limits<int>::min()}) {
        entriesStruct record;
        filtersGroupGetEntries(group.get(), &record);
        const Handle<FiltersEntry> kept(record.entries[0]);
        record.count = count;
        deleteFiltersEntriesStruct(&record);
        EXPECT_TRUE(*kept == fullEntry(2));
    }
}

TEST(GroupsC, NullMembersAreNotFreed)
{
    entriesStruct nothing = {0, nullptr, nullptr};
    deleteFiltersEntriesStruct(&nothing);
    nothing.count = -1;
    deleteFiltersEntriesStruct(&nothing);

    const Handle<FiltersGroup> group = groupOf({2, 5, 9});
    entriesStruct record;
    filtersGroupGetEntries(group.get(), &record);
    for (const int i : {0, 2}) {
        deleteFiltersEntry(record.entries[i]);
        record.entries[i] = nullptr;
    }
    entriesStruct idsAlone = {0, record.ids, nullptr};
    record.ids = nullptr;
    deleteFiltersEntriesStruct(&record);
    deleteFiltersEntriesStruct(&idsAlone);
}

// ----------------------------------------------------------------------------------- null handles

class GroupsCDeathTest : public test::ContractDeathTest {};

TEST_P(GroupsCDeathTest, ANullHandleIsReported) { expectReport("filter_groups_c.cpp"); }

constexpr BrokenContract broken(const char* name, const char* function, void (*call)())
{
    return {name, ANY_LINE, "g != nullptr", function, call};
}

constexpr char GROUP_AND_ENTRY[] = "g != nullptr && e != nullptr";
constexpr char GROUP_AND_ENTRIES[] = "g != nullptr && entries != nullptr";

// clang-format off
constexpr char INSERT_ENTRY[] =
    "FiltersCommon::filtersErr_t FiltersCommon::filtersGroupInsertEntry(FiltersCommon::FiltersGroup*, FiltersCommon::FiltersEntry*)";
constexpr char GET_ENTRIES[] =
    "void FiltersCommon::filtersGroupGetEntries(FiltersCommon::FiltersGroup*, FiltersCommon::entriesStruct*)";

const BrokenContract BROKEN[] = {
    broken("deleteFiltersGroup",
           "void FiltersCommon::deleteFiltersGroup(FiltersCommon::FiltersGroup*)",
           [] { deleteFiltersGroup(nullptr); }),
    broken("filtersGroupGetId",
           "FiltersCommon::filtersGroupId_t FiltersCommon::filtersGroupGetId(FiltersCommon::FiltersGroup*)",
           [] { filtersGroupGetId(nullptr); }),
    broken("filtersGroupSetPriority",
           "void FiltersCommon::filtersGroupSetPriority(FiltersCommon::FiltersGroup*, FiltersCommon::filtersGroupPriority_t)",
           [] { filtersGroupSetPriority(nullptr, 1); }),
    broken("filtersGroupGetPriority",
           "FiltersCommon::filtersGroupPriority_t FiltersCommon::filtersGroupGetPriority(FiltersCommon::FiltersGroup*)",
           [] { filtersGroupGetPriority(nullptr); }),
    broken("filtersGroupSetStage",
           "void FiltersCommon::filtersGroupSetStage(FiltersCommon::FiltersGroup*, FiltersCommon::filtersGroupStage_t)",
           [] { filtersGroupSetStage(nullptr, GROUP_STAGE_0); }),
    broken("filtersGroupGetStage",
           "FiltersCommon::filtersGroupStage_t FiltersCommon::filtersGroupGetStage(FiltersCommon::FiltersGroup*)",
           [] { filtersGroupGetStage(nullptr); }),
    broken("filtersGroupSetType",
           "FiltersCommon::filtersErr_t FiltersCommon::filtersGroupSetType(FiltersCommon::FiltersGroup*, FiltersCommon::filtersGroupType_t)",
           [] { filtersGroupSetType(nullptr, GROUP_TYPE_0); }),
    broken("filtersGroupGetType",
           "FiltersCommon::filtersGroupType_t FiltersCommon::filtersGroupGetType(FiltersCommon::FiltersGroup*)",
           [] { filtersGroupGetType(nullptr); }),

    {"filtersGroupInsertEntry_noGroup", ANY_LINE, GROUP_AND_ENTRY, INSERT_ENTRY,
     [] { FiltersEntry e(1); filtersGroupInsertEntry(nullptr, &e); }},
    {"filtersGroupInsertEntry_noEntry", ANY_LINE, GROUP_AND_ENTRY, INSERT_ENTRY,
     [] { FiltersGroup g(1); filtersGroupInsertEntry(&g, nullptr); }},
    {"filtersGroupInsertEntry_neither", ANY_LINE, GROUP_AND_ENTRY, INSERT_ENTRY,
     [] { filtersGroupInsertEntry(nullptr, nullptr); }},

    {"filtersGroupGetEntries_noGroup", ANY_LINE, GROUP_AND_ENTRIES, GET_ENTRIES,
     [] { entriesStruct record; filtersGroupGetEntries(nullptr, &record); }},
    {"filtersGroupGetEntries_noRecord", ANY_LINE, GROUP_AND_ENTRIES, GET_ENTRIES,
     [] { FiltersGroup g(1); filtersGroupGetEntries(&g, nullptr); }},
    {"filtersGroupGetEntries_neither", ANY_LINE, GROUP_AND_ENTRIES, GET_ENTRIES,
     [] { filtersGroupGetEntries(nullptr, nullptr); }},

    {"deleteFiltersEntriesStruct", ANY_LINE, "entries != nullptr",
     "void FiltersCommon::deleteFiltersEntriesStruct(FiltersCommon::entriesStruct*)",
     [] { deleteFiltersEntriesStruct(nullptr); }},
};
// clang-format on
INSTANTIATE_TEST_SUITE_P(Null, GroupsCDeathTest, testing::ValuesIn(BROKEN),
                         test::nameOf<BrokenContract>);

} // namespace
} // namespace FiltersCommon
