#include "samples.h"

#include "filter_groups.pb.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <utility>
#include <vector>

namespace FiltersCommon {
namespace {

using test::policerAt;
using test::positionIn;
using test::stateOf;

// --------------------------------------------------------------------------------- what it offers

static_assert(!std::is_polymorphic_v<FiltersGroup>);
static_assert(!std::is_default_constructible_v<FiltersGroup>);
static_assert(std::is_constructible_v<FiltersGroup, const filtersGroupId_t&>);
static_assert(std::is_constructible_v<FiltersGroup, const std::string&>);
static_assert(std::is_constructible_v<FiltersGroup, FiltersSerialized&>);
static_assert(std::is_copy_constructible_v<FiltersGroup>);
static_assert(std::is_copy_assignable_v<FiltersGroup>);

using Group = FiltersGroup;
using Entries = std::map<filtersEntryId_t, FiltersEntry>;

#define EXPECT_MEMBER(name, ...) static_assert(std::is_same_v<decltype(&Group::name), __VA_ARGS__>)
EXPECT_MEMBER(getId, filtersGroupId_t (Group::*)() const);
EXPECT_MEMBER(getPriority, filtersGroupPriority_t (Group::*)() const);
EXPECT_MEMBER(setPriority, void (Group::*)(const filtersGroupPriority_t&));
EXPECT_MEMBER(getStage, filtersGroupStage_t (Group::*)() const);
EXPECT_MEMBER(setStage, filtersErr_t (Group::*)(const filtersGroupStage_t&));
EXPECT_MEMBER(getType, filtersGroupType_t (Group::*)() const);
EXPECT_MEMBER(setType, filtersErr_t (Group::*)(const filtersGroupType_t&));
EXPECT_MEMBER(insertEntry, filtersErr_t (Group::*)(const FiltersEntry&));
EXPECT_MEMBER(takeEntry, filtersErr_t (Group::*)(FiltersEntry&&));
EXPECT_MEMBER(removeEntry, filtersErr_t (Group::*)(const filtersEntryId_t&));
EXPECT_MEMBER(getEntries, Entries (Group::*)() const);
EXPECT_MEMBER(getEntriesRef, const Entries& (Group::*)() const);
EXPECT_MEMBER(operator==, bool (Group::*)(const Group&) const);
EXPECT_MEMBER(operator!=, bool (Group::*)(const Group&) const);
#undef EXPECT_MEMBER

// ---------------------------------------------------------------------------------------- samples

FiltersEntry entryWithPcp(filtersEntryId_t id, unsigned char pcp)
{
    FiltersEntry entry(id);
    entry.setPriority(1000u + id);
    entry.setMatch(MatchPcp(pcp));
    entry.setAction(ActionPermit());
    return entry;
}

/** Stage 0, type 9, and the entries 3, 7 and 65535. */
FiltersGroup heldGroup()
{
    FiltersGroup group(5);
    group.setPriority(50);
    group.setType(GROUP_TYPE_9);
    for (const int id : {7, 65535, 3})
        group.insertEntry(
            entryWithPcp(static_cast<filtersEntryId_t>(id), static_cast<unsigned char>(id)));
    return group;
}

std::vector<int> idsIn(const FiltersGroup& group)
{
    std::vector<int> ids;
    for (const auto& [key, entry] : group.getEntriesRef()) {
        EXPECT_EQ(key, entry.getId());
        ids.push_back(key);
    }
    return ids;
}

// ------------------------------------------------------------------------ construction, accessors

TEST(FilterGroups, NewGroupHasItsDefaults)
{
    const FiltersGroup group(65535);
    EXPECT_EQ(group.getId(), 65535);
    EXPECT_EQ(group.getPriority(), 0);
    EXPECT_EQ(group.getStage(), GROUP_STAGE_0);
    EXPECT_EQ(group.getType(), GROUP_TYPE_0);
    EXPECT_TRUE(group.getEntriesRef().empty());
    EXPECT_TRUE(group.getEntries().empty());
}

TEST(FilterGroups, TakesAnyPriority)
{
    FiltersGroup group(1);
    for (const filtersGroupPriority_t priority :
         {filtersGroupPriority_t{65535}, filtersGroupPriority_t{0}}) {
        group.setPriority(priority);
        EXPECT_EQ(group.getPriority(), priority);
    }
}

TEST(FilterGroups, MembersStandInTheirOrder)
{
    FiltersGroupPB pb;
    pb.set_id_(0xA5B6);
    pb.set_priority_(0xC7D8);
    pb.set_stage_(0x11223344);
    pb.set_type_(0x55667788);
    FiltersGroup group(1);
    group.convertFromFiltersGroupPB(&pb);
    EXPECT_EQ(positionIn(group, std::uint16_t{0xA5B6}), 0u);
    EXPECT_EQ(positionIn(group, std::uint16_t{0xC7D8}), 2u);
    EXPECT_EQ(positionIn(group, std::uint32_t{0x11223344}), 4u);
    EXPECT_EQ(positionIn(group, std::uint32_t{0x55667788}), 8u);
    EXPECT_GE(reinterpret_cast<const char*>(&group.getEntriesRef()),
              reinterpret_cast<const char*>(&group) + 12);
}

// ---------------------------------------------------------------------------------------- entries

TEST(FilterGroups, NewGroupAcceptsAnEntryWithoutMatches)
{
    FiltersGroup group(1);
    EXPECT_EQ(group.insertEntry(FiltersEntry(1)), FILTERS_OK);
    FiltersEntry entry(2);
    entry.setPolicer(policerAt(policer::STAGE_NONE));
    EXPECT_EQ(group.insertEntry(entry), FILTERS_OK);
    test::ActionClasses::forEach([&](auto row) {
        FiltersEntry acting(3);
        acting.setAction(row.sample());
        EXPECT_EQ(group.insertEntry(acting),
                  row.CODE == 10 ? FILTERS_ERR_ACTION_NOT_ALLOWED : FILTERS_OK)
            << row.CODE;
    });
    FiltersEntry all(4);
    all.setMatch(MatchAll());
    EXPECT_EQ(group.insertEntry(all), FILTERS_ERR_MATCH_NOT_ALLOWED);
    EXPECT_EQ(idsIn(group), (std::vector<int>{1, 2, 3}));
}

TEST(FilterGroups, WalksItsEntriesInAscendingOrderOfTheirIdentifiers)
{
    EXPECT_EQ(idsIn(heldGroup()), (std::vector<int>{3, 7, 65535}));
}

TEST(FilterGroups, StoresACopyOfTheEntry)
{
    FiltersGroup group(1);
    group.setType(GROUP_TYPE_9);
    FiltersEntry entry = entryWithPcp(0, 1);
    const std::string before = stateOf(entry);
    EXPECT_EQ(group.insertEntry(entry), FILTERS_OK);
    EXPECT_EQ(stateOf(entry), before);
    entry.setMatch(MatchPcp(2));
    entry.setId(9);
    EXPECT_EQ(stateOf(group.getEntriesRef().at(0)), before);
}

TEST(FilterGroups, StoresAToSWhereTheEntryHoldsADscp)
{
    FiltersGroup group(1);
    group.setType(GROUP_TYPE_9);
    FiltersEntry entry(1);
    entry.setMatch(MatchDSCP(10));
    EXPECT_EQ(group.insertEntry(entry), FILTERS_OK);
    const Match& stored = *group.getEntriesRef().at(1).getMatchesRef().find(MATCH_TOS)->second;
    EXPECT_TRUE(typeid(stored) == typeid(MatchToS));
    EXPECT_TRUE(stored == MatchToS(40));
}

TEST(FilterGroups, SecondEntryOfAnIdentifierReplacesTheFirst)
{
    FiltersGroup group = heldGroup();
    FiltersEntry entry(7);
    entry.setMatch(MatchInternalPcp(5));
    EXPECT_EQ(group.insertEntry(entry), FILTERS_OK);
    EXPECT_EQ(idsIn(group), (std::vector<int>{3, 7, 65535}));
    EXPECT_TRUE(group.getEntriesRef().at(7) == entry);
    EXPECT_TRUE(group.getEntriesRef().at(3) == entryWithPcp(3, 3));
}

TEST(FilterGroups, InsertsAnEntryOfItsOwnAgain)
{
    FiltersGroup group = heldGroup();
    EXPECT_EQ(group.insertEntry(group.getEntriesRef().at(7)), FILTERS_OK);
    EXPECT_EQ(stateOf(group), stateOf(heldGroup()));
    EXPECT_TRUE(group == heldGroup());
}

TEST(FilterGroups, TakesTheObjectsOfAnEntryAndLeavesItTheRest)
{
    FiltersGroup group(1);
    group.setStage(GROUP_STAGE_2);
    group.setType(GROUP_TYPE_9);
    FiltersEntry entry = entryWithPcp(7, 5);
    entry.setPolicer(policerAt(policer::STAGE_INGRESS));
    entry.setCounter(Counter(5, COUNTER_TYPE_PACKETS));
    entry.setMatch(MatchInternalPcp(6));
    const FiltersEntry expected(entry);
    const Match* pcp = entry.findMatch<MatchPcp>();
    EXPECT_EQ(group.takeEntry(std::move(entry)), FILTERS_OK);
    const FiltersEntry& taken = group.getEntriesRef().at(7);
    EXPECT_TRUE(taken == expected);
    EXPECT_EQ(stateOf(taken), stateOf(expected));
    EXPECT_EQ(taken.findMatch<MatchPcp>(), pcp);

    FiltersEntry left(expected);
    left.setMatches({});
    left.setActions({});
    EXPECT_TRUE(entry == left);
    EXPECT_EQ(stateOf(entry), stateOf(left));
    EXPECT_EQ(entry.setMatch(MatchPcp(1)), FILTERS_OK);
    EXPECT_TRUE(taken == expected);
}

TEST(FilterGroups, TakesADscpAsAToS)
{
    for (const bool alone : {false, true}) {
        FiltersGroup group(1);
        group.setType(GROUP_TYPE_9);
        FiltersEntry entry = alone ? FiltersEntry(1) : entryWithPcp(1, 2);
        entry.setMatch(MatchDSCP(10));
        const FiltersEntry expected(entry);
        EXPECT_EQ(group.takeEntry(std::move(entry)), FILTERS_OK);
        const FiltersEntry& taken = group.getEntriesRef().at(1);
        EXPECT_TRUE(taken == expected);
        const Match& stored = *taken.getMatchesRef().find(MATCH_TOS)->second;
        EXPECT_TRUE(typeid(stored) == typeid(MatchToS));
        EXPECT_TRUE(stored == MatchToS(40));
    }
}

TEST(FilterGroups, TakesAnEntryInThePlaceOfOneOfItsIdentifier)
{
    FiltersGroup group = heldGroup();
    FiltersEntry entry(7);
    entry.setMatch(MatchInternalPcp(5));
    const FiltersEntry expected(entry);
    EXPECT_EQ(group.takeEntry(std::move(entry)), FILTERS_OK);
    EXPECT_EQ(idsIn(group), (std::vector<int>{3, 7, 65535}));
    EXPECT_TRUE(group.getEntriesRef().at(7) == expected);
    EXPECT_TRUE(group.getEntriesRef().at(3) == entryWithPcp(3, 3));
}

TEST(FilterGroups, RemovesAnEntryOnce)
{
    FiltersGroup group = heldGroup();
    EXPECT_EQ(group.removeEntry(7), FILTERS_OK);
    EXPECT_EQ(idsIn(group), (std::vector<int>{3, 65535}));
    EXPECT_EQ(group.removeEntry(7), FILTERS_ERR_NOT_FOUND);
    EXPECT_EQ(idsIn(group), (std::vector<int>{3, 65535}));
    EXPECT_EQ(group.insertEntry(entryWithPcp(7, 7)), FILTERS_OK);
    EXPECT_TRUE(group == heldGroup());
}

TEST(FilterGroups, RemovesAnEntryNamedByItsOwnIdentifier)
{
    FiltersGroup group = heldGroup();
    EXPECT_EQ(group.removeEntry(group.getEntriesRef().begin()->first), FILTERS_OK);
    EXPECT_EQ(idsIn(group), (std::vector<int>{7, 65535}));
}

TEST(FilterGroups, RemovingAnAbsentEntryChangesNothing)
{
    FiltersGroup group = heldGroup();
    EXPECT_EQ(group.removeEntry(4), FILTERS_ERR_NOT_FOUND);
    EXPECT_EQ(stateOf(group), stateOf(heldGroup()));
    EXPECT_EQ(FiltersGroup(1).removeEntry(0), FILTERS_ERR_NOT_FOUND);
}

TEST(FilterGroups, HandsOutDeepCopiesOfItsEntries)
{
    const FiltersGroup group = heldGroup();
    Entries entries = group.getEntries();
    ASSERT_EQ(entries.size(), 3u);
    for (auto& [id, entry] : entries) {
        EXPECT_TRUE(entry == group.getEntriesRef().at(id));
        entry.setMatch(MatchTTL(1));
        entry.deleteAction(ACTION_PERMIT);
    }
    entries.erase(3);
    EXPECT_EQ(stateOf(group), stateOf(heldGroup()));
}

TEST(FilterGroups, ShowsItsOwnEntries)
{
    FiltersGroup group = heldGroup();
    const Entries& entries = group.getEntriesRef();
    group.removeEntry(7);
    EXPECT_EQ(entries.size(), 2u);
    EXPECT_EQ(&entries, &group.getEntriesRef());
}

// --------------------------------------------------------------------------- copying and equality

TEST(FilterGroups, CopyIsDeep)
{
    FiltersGroup group = heldGroup();
    const FiltersGroup copy(group);
    EXPECT_EQ(stateOf(copy), stateOf(group));
    EXPECT_NE(copy.getEntriesRef().at(7).getMatchesRef().find(MATCH_PCP)->second,
              group.getEntriesRef().at(7).getMatchesRef().find(MATCH_PCP)->second);
    group.setPriority(1);
    group.removeEntry(3);
    group.insertEntry(entryWithPcp(7, 1));
    EXPECT_EQ(stateOf(copy), stateOf(heldGroup()));
}

TEST(FilterGroups, CopyKeepsAPairThatOnlyTheWireCanGive)
{
    FiltersGroupPB pb;
    pb.set_stage_(7);
    pb.set_type_(0xFFFFFFFF);
    FiltersGroup group(1);
    group.convertFromFiltersGroupPB(&pb);
    const FiltersGroup copy(group);
    EXPECT_EQ(static_cast<int>(copy.getStage()), 7);
    EXPECT_EQ(static_cast<int>(copy.getType()), -1);
}

TEST(FilterGroups, AssignmentTakesEverythingAndIsIndependent)
{
    FiltersGroup source = heldGroup();
    FiltersGroup target(99);
    target.setPriority(1);
    target.insertEntry(FiltersEntry(1));
    EXPECT_EQ(&(target = source), &target);
    EXPECT_TRUE(target == heldGroup());
    EXPECT_EQ(stateOf(target), stateOf(heldGroup()));
    source.removeEntry(7);
    EXPECT_EQ(stateOf(target), stateOf(heldGroup()));
}

TEST(FilterGroups, AssignmentToItselfChangesNothing)
{
    FiltersGroup group = heldGroup();
    const FiltersGroup& same = group;
    group = same;
    EXPECT_EQ(stateOf(group), stateOf(heldGroup()));
}

TEST(FilterGroups, MovesTakeEverything)
{
    FiltersGroup source = heldGroup();
    FiltersGroup moved(std::move(source));
    EXPECT_EQ(stateOf(moved), stateOf(heldGroup()));
    FiltersGroup target(99);
    target.insertEntry(FiltersEntry(1));
    target = std::move(moved);
    EXPECT_EQ(stateOf(target), stateOf(heldGroup()));
}

struct Change {
    const char* name;
    std::function<FiltersGroup(FiltersGroup)> apply;
};

/** The group with the numbers of its message changed. */
FiltersGroup withMessage(const FiltersGroup& group, void (*change)(FiltersGroupPB&))
{
    FiltersGroupPB pb = group.convertToFiltersGroupPB();
    change(pb);
    FiltersGroup changed(1);
    changed.convertFromFiltersGroupPB(&pb);
    return changed;
}

const Change CHANGES[] = {
    {"identifier", [](auto group) { return withMessage(group, [](auto& pb) { pb.set_id_(6); }); }},
    {"priority",
     [](auto group) {
         group.setPriority(51);
         return group;
     }},
    {"stage",
     [](auto group) {
         group.setStage(GROUP_STAGE_2);
         return group;
     }},
    {"type",
     [](auto group) {
         group.setType(GROUP_TYPE_5);
         return group;
     }},
    {"one entry more",
     [](auto group) {
         group.insertEntry(FiltersEntry(4));
         return group;
     }},
    {"one entry less",
     [](auto group) {
         group.removeEntry(65535);
         return group;
     }},
    {"identifier of an entry",
     [](auto group) {
         group.removeEntry(7);
         group.insertEntry(entryWithPcp(8, 7));
         return group;
     }},
    {"value in the last entry",
     [](auto group) {
         group.insertEntry(entryWithPcp(65535, 1));
         return group;
     }},
};

TEST(FilterGroupEquality, SameGroupsAreEqual)
{
    EXPECT_TRUE(heldGroup() == heldGroup());
    EXPECT_FALSE(heldGroup() != heldGroup());
    EXPECT_TRUE(FiltersGroup(1) == FiltersGroup(1));
    EXPECT_TRUE(withMessage(heldGroup(), [](auto&) {}) == heldGroup());
}

TEST(FilterGroupEquality, EachSingleDifferenceMakesGroupsDiffer)
{
    for (const Change& change : CHANGES) {
        const FiltersGroup changed = change.apply(heldGroup());
        EXPECT_FALSE(changed == heldGroup()) << change.name;
        EXPECT_FALSE(heldGroup() == changed) << change.name;
        EXPECT_TRUE(changed != heldGroup()) << change.name;
        EXPECT_TRUE(heldGroup() != changed) << change.name;
    }
}

TEST(FilterGroupEquality, OrderOfInsertionMakesNoDifference)
{
    FiltersGroup group = heldGroup();
    group.removeEntry(3);
    group.insertEntry(entryWithPcp(3, 3));
    group.insertEntry(entryWithPcp(7, 1));
    group.insertEntry(entryWithPcp(7, 7));
    EXPECT_TRUE(group == heldGroup());
}

} // namespace
} // namespace FiltersCommon
