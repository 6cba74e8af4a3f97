#include "samples.h"

#include "filter_groups.pb.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

// What a group lets in and which changes it makes, from the outside; the tables themselves are
// asked elsewhere.

namespace FiltersCommon {
namespace {

using test::ipv6;
using test::policerAt;
using test::stateOf;

filtersGroupStage_t stage(std::uint32_t code) { return static_cast<filtersGroupStage_t>(code); }
filtersGroupType_t type(std::uint32_t code) { return static_cast<filtersGroupType_t>(code); }

/** Gives the group a stage and a type as the wire does: neither is checked. */
void place(FiltersGroup& group, std::uint32_t stageCode, std::uint32_t typeCode)
{
    FiltersGroupPB pb;
    pb.set_id_(5);
    pb.set_priority_(50);
    pb.set_stage_(stageCode);
    pb.set_type_(typeCode);
    group.convertFromFiltersGroupPB(&pb);
}

/** Inserts the entry at the first stage and type that admit it. */
void insertSomewhere(FiltersGroup& group, const FiltersEntry& entry)
{
    for (std::uint32_t stageCode = 0; stageCode < 4; ++stageCode)
        for (std::uint32_t typeCode = 0; typeCode < 10; ++typeCode) {
            place(group, stageCode, typeCode);
            if (group.insertEntry(entry) == FILTERS_OK)
                return;
        }
    ADD_FAILURE() << "no group admits the entry " << entry.getId();
}

/** A group of this stage and type with entries that need not fit them. */
FiltersGroup groupAt(std::uint32_t stageCode, std::uint32_t typeCode,
                     const std::vector<FiltersEntry>& entries = {})
{
    FiltersGroup group(1);
    for (const FiltersEntry& entry : entries)
        insertSomewhere(group, entry);
    place(group, stageCode, typeCode);
    return group;
}

template <class T>
FiltersEntry withMatch(filtersEntryId_t id, const T& match)
{
    FiltersEntry entry(id);
    entry.setMatch(match);
    return entry;
}

template <class T>
FiltersEntry withAction(filtersEntryId_t id, const T& action)
{
    FiltersEntry entry(id);
    entry.setAction(action);
    return entry;
}

FiltersEntry withPolicer(filtersEntryId_t id, std::uint32_t policerStage)
{
    FiltersEntry entry(id);
    entry.setPolicer(policerAt(static_cast<policer::Stage>(policerStage)));
    return entry;
}

/** Does @p call, and expects that it is refused so and changes nothing that can be seen. */
template <class Call>
void expectRefusal(FiltersGroup group, filtersErr_t refusal, Call call)
{
    const std::string before = stateOf(group);
    EXPECT_EQ(call(group), refusal);
    EXPECT_EQ(stateOf(group), before);
}

/** Offers the entry to be copied and to be taken over. */
void expectInsert(const FiltersGroup& group, const FiltersEntry& entry, filtersErr_t result)
{
    FiltersEntry offered(entry);
    if (result != FILTERS_OK) {
        expectRefusal(group, result, [&](FiltersGroup& g) { return g.insertEntry(entry); });
        expectRefusal(group, result,
                      [&](FiltersGroup& g) { return g.takeEntry(std::move(offered)); });
        EXPECT_EQ(stateOf(offered), stateOf(entry));
        return;
    }
    FiltersGroup changed(group);
    EXPECT_EQ(changed.insertEntry(entry), FILTERS_OK);
    EXPECT_TRUE(changed.getEntriesRef().at(entry.getId()) == entry);
    FiltersGroup taking(group);
    EXPECT_EQ(taking.takeEntry(std::move(offered)), FILTERS_OK);
    EXPECT_TRUE(taking == changed);
    EXPECT_EQ(stateOf(taking), stateOf(changed));
    EXPECT_TRUE(offered.getMatchesRef().empty());
    EXPECT_TRUE(offered.getActionsRef().empty());
}

void expectSetStage(const FiltersGroup& group, std::uint32_t code, filtersErr_t result)
{
    if (result != FILTERS_OK) {
        expectRefusal(group, result, [&](FiltersGroup& g) { return g.setStage(stage(code)); });
        return;
    }
    FiltersGroup changed(group);
    EXPECT_EQ(changed.setStage(stage(code)), FILTERS_OK);
    EXPECT_EQ(changed.getStage(), stage(code));
    EXPECT_EQ(changed.getType(), group.getType());
    EXPECT_EQ(changed.getPriority(), group.getPriority());
    EXPECT_TRUE(changed.getEntriesRef().size() == group.getEntriesRef().size());
}

void expectSetType(const FiltersGroup& group, std::uint32_t code, filtersErr_t result)
{
    if (result != FILTERS_OK) {
        expectRefusal(group, result, [&](FiltersGroup& g) { return g.setType(type(code)); });
        return;
    }
    FiltersGroup changed(group);
    EXPECT_EQ(changed.setType(type(code)), FILTERS_OK);
    EXPECT_EQ(changed.getType(), type(code));
    EXPECT_EQ(changed.getStage(), group.getStage());
    EXPECT_EQ(changed.getPriority(), group.getPriority());
    EXPECT_TRUE(changed.getEntriesRef().size() == group.getEntriesRef().size());
}

bool admits(filtersErr_t result) { return result == FILTERS_OK; }

constexpr std::uint32_t STAGES[] = {0, 1, 2, 3, 4, 7, 10, 31, 32, 0x7FFFFFFF, 0xFFFFFFFF};
constexpr std::uint32_t TYPES[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 0x7FFFFFFF, 0xFFFFFFFF};

// --------------------------------------------------------------------------------- complete walks

template <class Row>
class EveryMatchInAGroup : public testing::Test {};
TYPED_TEST_SUITE(EveryMatchInAGroup, test::MatchClasses::Tests, );

TYPED_TEST(EveryMatchInAGroup, IsInsertedWhereTheTypeAdmitsIt)
{
    const FiltersEntry entry = withMatch(1, TypeParam::sample());
    for (const std::uint32_t code : TYPES)
        expectInsert(groupAt(0, code), entry,
                     FiltersGroup(1).groupMatchValidation(entry, type(code)));
}

TYPED_TEST(EveryMatchInAGroup, KeepsItsGroupFromTheTypesThatDoNotAdmitIt)
{
    const FiltersEntry entry = withMatch(1, TypeParam::sample());
    for (std::uint32_t from = 0; from < 10; ++from) {
        if (!admits(FiltersGroup(1).groupMatchValidation(entry, type(from))))
            continue;
        FiltersGroup group = groupAt(0, from);
        group.insertEntry(entry);
        for (std::uint32_t to = 0; to < 10; ++to)
            expectSetType(group, to, FiltersGroup(1).groupMatchValidation(entry, type(to)));
    }
}

template <class Row>
class EveryActionInAGroup : public testing::Test {};
TYPED_TEST_SUITE(EveryActionInAGroup, test::ActionClasses::Tests, );

TYPED_TEST(EveryActionInAGroup, IsInsertedWhereTheStageAdmitsIt)
{
    const FiltersEntry entry = withAction(1, TypeParam::sample());
    for (const std::uint32_t code : STAGES)
        expectInsert(groupAt(code, 0), entry,
                     FiltersGroup(1).groupActionValidation(entry, stage(code)));
}

TYPED_TEST(EveryActionInAGroup, KeepsItsGroupFromTheStagesThatDoNotAdmitIt)
{
    const FiltersEntry entry = withAction(1, TypeParam::sample());
    for (std::uint32_t from = 0; from < 4; ++from) {
        if (!admits(FiltersGroup(1).groupActionValidation(entry, stage(from))))
            continue;
        FiltersGroup group = groupAt(from, 0);
        group.insertEntry(entry);
        for (const std::uint32_t to : STAGES)
            expectSetStage(group, to, FiltersGroup(1).groupActionValidation(entry, stage(to)));
    }
}

TEST(FilterGroupChecks, PolicerIsInsertedWhereTheStageAdmitsIt)
{
    for (const std::uint32_t policerStage : {0u, 1u, 2u, 3u}) {
        const FiltersEntry entry = withPolicer(1, policerStage);
        for (std::uint32_t code = 0; code < 4; ++code)
            expectInsert(groupAt(code, 0), entry,
                         FiltersGroup(1).groupPolicerValidation(entry.getPolicer(), stage(code)));
    }
}

TEST(FilterGroupChecks, PolicerKeepsItsGroupFromTheStagesThatDoNotAdmitIt)
{
    for (const std::uint32_t policerStage : {0u, 1u, 2u}) {
        const FiltersEntry entry = withPolicer(1, policerStage);
        const std::uint32_t from[] = {2, 3, 0};
        FiltersGroup group = groupAt(from[policerStage], 0);
        ASSERT_EQ(group.insertEntry(entry), FILTERS_OK);
        for (std::uint32_t to = 0; to < 4; ++to)
            expectSetStage(group, to,
                           FiltersGroup(1).groupPolicerValidation(entry.getPolicer(), stage(to)));
    }
}

TEST(FilterGroupChecks, EmptyGroupTakesTheStagesOfItsTypeAndTheTypesOfItsStage)
{
    for (const std::uint32_t stageCode : STAGES)
        for (const std::uint32_t typeCode : TYPES) {
            const FiltersGroup group = groupAt(stageCode, typeCode);
            for (const std::uint32_t to : STAGES)
                expectSetStage(group, to,
                               FiltersGroup(1).groupStageValidation(stage(to), type(typeCode)));
            for (const std::uint32_t to : TYPES)
                expectSetType(group, to,
                              FiltersGroup(1).groupStageValidation(stage(stageCode), type(to)));
        }
}

// ---------------------------------------------------------------------------- order of the checks

/** Everything about it is refused at stage 1 and type 0. */
FiltersEntry refusedEntry()
{
    FiltersEntry entry(1);
    entry.setMatch(MatchAll());
    entry.setAction(ActionRedirectCancel());
    entry.setPolicer(policerAt(policer::STAGE_EGRESS));
    return entry;
}

TEST(InsertEntry, AsksForMatchesThenActionsThenThePolicer)
{
    FiltersEntry entry = refusedEntry();
    expectInsert(groupAt(1, 0), entry, FILTERS_ERR_MATCH_NOT_ALLOWED);
    entry.deleteMatch(MATCH_ALL);
    expectInsert(groupAt(1, 0), entry, FILTERS_ERR_ACTION_NOT_ALLOWED);
    entry.deleteAction(ACTION_REDIRECT_CANCEL);
    expectInsert(groupAt(1, 0), entry, FILTERS_ERR_POLICER_STAGE);
    entry.setPolicer(policer::Policer());
    expectInsert(groupAt(1, 0), entry, FILTERS_OK);
}

TEST(InsertEntry, AsksForTheTypeBeforeTheStage)
{
    const FiltersEntry nothing(1);
    expectInsert(groupAt(7, 10), refusedEntry(), FILTERS_ERR_INVALID);
    expectInsert(groupAt(7, 10), nothing, FILTERS_ERR_INVALID);
    expectInsert(groupAt(7, 0), refusedEntry(), FILTERS_ERR_MATCH_NOT_ALLOWED);
    expectInsert(groupAt(7, 1), refusedEntry(), FILTERS_ERR_UNKNOWN_STAGE);
    expectInsert(groupAt(7, 0), nothing, FILTERS_ERR_UNKNOWN_STAGE);
}

TEST(InsertEntry, DoesNotAskWhetherStageAndTypeFitEachOther)
{
    const FiltersGroup group = groupAt(3, 1);
    ASSERT_EQ(group.groupStageValidation(GROUP_STAGE_3, GROUP_TYPE_1),
              FILTERS_ERR_TYPE_NOT_ALLOWED);
    expectInsert(group, withMatch(1, MatchAll()), FILTERS_OK);
}

TEST(InsertEntry, RefusalLeavesTheOldEntryOfTheIdentifier)
{
    FiltersGroup group = groupAt(0, 9);
    group.insertEntry(withMatch(1, MatchPcp(3)));
    expectInsert(group, withMatch(1, MatchTTL(3)), FILTERS_ERR_MATCH_NOT_ALLOWED);
    expectInsert(group, withAction(1, ActionMapToCpuCosQueue(3)), FILTERS_ERR_ACTION_NOT_ALLOWED);
    expectInsert(group, withPolicer(1, 0), FILTERS_ERR_POLICER_STAGE);
}

TEST(SetStage, AsksForTheTypeBeforeTheEntries)
{
    const FiltersGroup group = groupAt(0, 1, {withAction(1, ActionRedirectCancel())});
    expectSetStage(group, 1, FILTERS_ERR_TYPE_NOT_ALLOWED);
    expectSetStage(group, 3, FILTERS_ERR_TYPE_NOT_ALLOWED);
    expectSetStage(group, 4, FILTERS_ERR_UNKNOWN_STAGE);
    expectSetStage(group, 2, FILTERS_OK);
}

TEST(SetStage, AsksForActionsBeforeThePolicerOfAnEntry)
{
    FiltersEntry entry = withAction(1, ActionRedirectCancel());
    entry.setPolicer(policerAt(policer::STAGE_INGRESS));
    const FiltersGroup group = groupAt(2, 0, {entry});
    expectSetStage(group, 1, FILTERS_ERR_ACTION_NOT_ALLOWED);
    expectSetStage(group, 3, FILTERS_ERR_ACTION_NOT_ALLOWED);
    expectSetStage(group, 0, FILTERS_ERR_POLICER_STAGE);
    expectSetStage(group, 2, FILTERS_OK);
}

TEST(SetStage, AnswersForTheFirstEntryThatDoesNotFit)
{
    const auto ofBoth = [](const FiltersEntry& a, const FiltersEntry& b) {
        return groupAt(2, 0, {FiltersEntry(0), a, b, FiltersEntry(65535)});
    };
    expectSetStage(ofBoth(withPolicer(1, 0), withAction(2, ActionRedirectCancel())), 3,
                   FILTERS_ERR_POLICER_STAGE);
    expectSetStage(ofBoth(withPolicer(2, 0), withAction(1, ActionRedirectCancel())), 3,
                   FILTERS_ERR_ACTION_NOT_ALLOWED);
}

TEST(SetStage, AsksForEveryEntry)
{
    const FiltersGroup group = groupAt(
        2, 0, {FiltersEntry(0), FiltersEntry(1), withAction(65535, ActionRedirectCancel())});
    expectSetStage(group, 3, FILTERS_ERR_ACTION_NOT_ALLOWED);
    expectSetStage(group, 0, FILTERS_OK);
}

TEST(SetStage, AsksForTheEntriesAfterAPolicerThatFits)
{
    const FiltersGroup group =
        groupAt(2, 0, {withPolicer(1, 1), withAction(2, ActionRedirectCancel())});
    ASSERT_EQ(group.groupPolicerValidation(group.getEntriesRef().at(1).getPolicer(), stage(3)),
              FILTERS_OK);
    expectSetStage(group, 3, FILTERS_ERR_ACTION_NOT_ALLOWED);
}

TEST(SetStage, DoesNotAskForMatchesAgain)
{
    const FiltersGroup group = groupAt(0, 8, {withMatch(1, MatchPcp(3))});
    ASSERT_EQ(group.groupMatchValidation(group.getEntriesRef().at(1), GROUP_TYPE_8),
              FILTERS_ERR_MATCH_NOT_ALLOWED);
    expectSetStage(group, 2, FILTERS_OK);
}

TEST(SetStage, OfTheStageThatItHasIsAskedForToo)
{
    expectSetStage(groupAt(3, 1), 3, FILTERS_ERR_TYPE_NOT_ALLOWED);
    expectSetStage(groupAt(7, 0), 7, FILTERS_ERR_UNKNOWN_STAGE);
    expectSetStage(groupAt(0, 1, {withAction(1, ActionMapToCpuCosQueue(1))}), 0,
                   FILTERS_ERR_ACTION_NOT_ALLOWED);
}

TEST(SetStage, TakesTheGroupOutOfAStageThatOnlyTheWireCanGive)
{
    expectSetStage(groupAt(7, 0), 1, FILTERS_OK);
    expectSetStage(groupAt(3, 1), 2, FILTERS_OK);
}

TEST(SetType, AsksForTheStageBeforeTheEntries)
{
    const FiltersGroup group = groupAt(1, 4, {withMatch(1, MatchToS(1))});
    expectSetType(group, 1, FILTERS_ERR_TYPE_NOT_ALLOWED);
    expectSetType(group, 10, FILTERS_ERR_TYPE_NOT_ALLOWED);
    expectSetType(group, 6, FILTERS_ERR_MATCH_NOT_ALLOWED);
    expectSetType(groupAt(7, 4, {withMatch(1, MatchToS(1))}), 6, FILTERS_ERR_UNKNOWN_STAGE);
}

TEST(SetType, AsksForEveryEntry)
{
    const FiltersGroup group =
        groupAt(0, 9, {FiltersEntry(0), withMatch(1, MatchPcp(1)), withMatch(65535, MatchToS(1))});
    expectSetType(group, 5, FILTERS_ERR_MATCH_NOT_ALLOWED);
    expectSetType(group, 4, FILTERS_OK);
}

TEST(SetType, DoesNotAskForActionsAndPolicersAgain)
{
    FiltersEntry entry = withAction(1, ActionRedirectCancel());
    entry.setPolicer(policerAt(policer::STAGE_INGRESS));
    const FiltersGroup group = groupAt(1, 0, {entry});
    ASSERT_EQ(group.groupActionValidation(entry, GROUP_STAGE_1), FILTERS_ERR_ACTION_NOT_ALLOWED);
    expectSetType(group, 4, FILTERS_OK);
}

TEST(SetType, OfTheTypeThatItHasIsAskedForToo)
{
    expectSetType(groupAt(3, 1), 1, FILTERS_ERR_TYPE_NOT_ALLOWED);
    expectSetType(groupAt(0, 8, {withMatch(1, MatchPcp(3))}), 8, FILTERS_ERR_MATCH_NOT_ALLOWED);
}

// ------------------------------------------------------------------------------------ known cases

TEST(SetType, Type1AtStage1IsRefused)
{
    FiltersGroup group(1);
    ASSERT_EQ(group.setStage(GROUP_STAGE_1), FILTERS_OK);
    EXPECT_EQ(group.setType(GROUP_TYPE_1), FILTERS_ERR_TYPE_NOT_ALLOWED);
    EXPECT_EQ(group.getType(), GROUP_TYPE_0);
}

TEST(SetType, Type1WithADestinationIPv6IsRefused)
{
    FiltersGroup group(1);
    ASSERT_EQ(group.setType(GROUP_TYPE_8), FILTERS_OK);
    ASSERT_EQ(group.insertEntry(withMatch(1, MatchDstIPv6(ipv6("::1")))), FILTERS_OK);
    EXPECT_EQ(group.setType(GROUP_TYPE_1), FILTERS_ERR_MATCH_NOT_ALLOWED);
    EXPECT_EQ(group.getType(), GROUP_TYPE_8);
}

TEST(SetStage, Stage3OfType1IsRefusedAndOfAnEmptyGroupOfType5IsTaken)
{
    FiltersGroup group(1);
    ASSERT_EQ(group.setType(GROUP_TYPE_1), FILTERS_OK);
    EXPECT_EQ(group.setStage(GROUP_STAGE_3), FILTERS_ERR_TYPE_NOT_ALLOWED);
    EXPECT_EQ(group.getStage(), GROUP_STAGE_0);
    ASSERT_EQ(group.setType(GROUP_TYPE_5), FILTERS_OK);
    EXPECT_EQ(group.setStage(GROUP_STAGE_3), FILTERS_OK);
    EXPECT_EQ(group.getStage(), GROUP_STAGE_3);
}

TEST(FilterGroupChecks, RemovedEntriesDoNotCount)
{
    FiltersGroup group = groupAt(2, 9, {withMatch(1, MatchPcp(1)), withPolicer(2, 0)});
    EXPECT_EQ(group.setType(GROUP_TYPE_0), FILTERS_ERR_MATCH_NOT_ALLOWED);
    EXPECT_EQ(group.removeEntry(1), FILTERS_OK);
    EXPECT_EQ(group.setType(GROUP_TYPE_0), FILTERS_OK);
    EXPECT_EQ(group.setStage(GROUP_STAGE_3), FILTERS_ERR_POLICER_STAGE);
    EXPECT_EQ(group.removeEntry(2), FILTERS_OK);
    EXPECT_EQ(group.setStage(GROUP_STAGE_3), FILTERS_OK);
}

} // namespace
} // namespace FiltersCommon
