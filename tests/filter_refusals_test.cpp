#include "refusals_support.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

// Why groups refuse. Other tests check what the tables admit; this one relies on them.

namespace FiltersCommon {
namespace {

using namespace test;

template <class Code>
CodeSet<Code> setOf(const std::set<Code>& codes)
{
    CodeSet<Code> set;
    for (const Code code : codes)
        set.insert(code);
    return set;
}

template <class Key, class Value>
CodeSet<Key> keysOf(const std::map<Key, Value>& map)
{
    CodeSet<Key> keys;
    for (const auto& element : map)
        keys.insert(element.first);
    return keys;
}

// ------------------------------------------------------------------------------- what is expected

/** The refusals expected of a group with a certain stage and type. */
class Expected {
public:
    Expected(filtersGroupStage_t stage, filtersGroupType_t type) : stage_(stage), type_(type) {}

    Refusals list;

    void addUnknownStage(std::optional<filtersEntryId_t> id = {})
    {
        add(REFUSAL_UNKNOWN_STAGE, id).admittedStages =
            keysOf(FiltersGroup::StageTypesDescription_);
    }

    void addUnknownType(std::optional<filtersEntryId_t> id = {})
    {
        add(REFUSAL_UNKNOWN_TYPE, id).admittedTypes = keysOf(FiltersGroup::TypeDescription_);
    }

    void addTypeAtStage()
    {
        const auto& table = FiltersGroup::StageTypesDescription_;
        if (table.count(stage_) == 0) {
            addUnknownStage();
        } else if (table.at(stage_).count(type_) == 0) {
            FiltersRefusal& refusal = add(REFUSAL_TYPE_NOT_AT_STAGE, {});
            refusal.admittedTypes = setOf(table.at(stage_));
            for (const auto& [stage, types] : table)
                if (types.count(type_) != 0)
                    refusal.admittedStages.insert(stage);
        }
    }

    /** The type is known. */
    void addMatches(const FiltersEntry& entry)
    {
        const std::set<filtersMatch_t>& row = FiltersGroup::TypeDescription_.at(type_);
        for (const auto& element : entry.getMatchesRef())
            if (row.count(element.first) == 0) {
                FiltersRefusal& refusal = add(REFUSAL_MATCH_NOT_IN_TYPE, entry.getId());
                refusal.match = element.first;
                refusal.admittedMatches = setOf(row);
            }
    }

    /** The stage is known. */
    void addActionsAndPolicer(const FiltersEntry& entry)
    {
        const std::set<filtersAction_t>& row = FiltersGroup::StageActionsDescription_.at(stage_);
        for (const auto& element : entry.getActionsRef())
            if (row.count(element.first) == 0) {
                FiltersRefusal& refusal = add(REFUSAL_ACTION_NOT_AT_STAGE, entry.getId());
                refusal.action = element.first;
                refusal.admittedActions = setOf(row);
            }
        using policer::STAGE_EGRESS;
        using policer::STAGE_INGRESS;
        using policer::STAGE_NONE;
        static const CodeSet<policer::Stage> POLICERS[] = {
            {STAGE_NONE}, {STAGE_NONE}, {STAGE_INGRESS, STAGE_NONE}, {STAGE_EGRESS, STAGE_NONE}};
        const CodeSet<policer::Stage> admitted = POLICERS[stage_];
        if (!admitted.contains(entry.getPolicer().GetStage())) {
            FiltersRefusal& refusal = add(REFUSAL_POLICER_NOT_AT_STAGE, entry.getId());
            refusal.policerStage = entry.getPolicer().GetStage();
            refusal.admittedPolicerStages = admitted;
        }
    }

private:
    FiltersRefusal& add(filtersRefusalReason_t reason, std::optional<filtersEntryId_t> id)
    {
        FiltersRefusal& refusal = list.emplace_back(reason);
        refusal.entry = id;
        refusal.stage = stage_;
        refusal.type = type_;
        return refusal;
    }

    const filtersGroupStage_t stage_;
    const filtersGroupType_t type_;
};

bool isKnown(filtersGroupStage_t stage) { return static_cast<std::uint32_t>(stage) < 4; }
bool isKnown(filtersGroupType_t type) { return static_cast<std::uint32_t>(type) < 10; }

Refusals expectedInsertion(const FiltersEntry& entry, filtersGroupStage_t stage,
                           filtersGroupType_t type)
{
    Expected expected(stage, type);
    if (isKnown(type))
        expected.addMatches(entry);
    else
        expected.addUnknownType(entry.getId());
    if (isKnown(stage))
        expected.addActionsAndPolicer(entry);
    else
        expected.addUnknownStage(entry.getId());
    return expected.list;
}

Refusals expectedStageChange(const FiltersGroup& group, filtersGroupStage_t stage)
{
    Expected expected(stage, group.getType());
    expected.addTypeAtStage();
    if (isKnown(stage))
        for (const auto& element : group.getEntriesRef())
            expected.addActionsAndPolicer(element.second);
    return expected.list;
}

Refusals expectedTypeChange(const FiltersGroup& group, filtersGroupType_t type)
{
    Expected expected(group.getStage(), type);
    expected.addTypeAtStage();
    if (isKnown(type))
        for (const auto& element : group.getEntriesRef())
            expected.addMatches(element.second);
    else if (!group.getEntriesRef().empty())
        expected.addUnknownType();
    return expected.list;
}

/** Compares the reasons with the result of the operation on a copy of the group. */
void expectInsertion(const FiltersGroup& group, const FiltersEntry& entry)
{
    const Refusals refusals = insertEntryRefusals(group, entry);
    ASSERT_EQ(refusals, expectedInsertion(entry, group.getStage(), group.getType()));
    ASSERT_EQ(FiltersGroup(group).insertEntry(entry), codeOf(refusals));
}

void expectStageChange(const FiltersGroup& group, filtersGroupStage_t stage)
{
    const Refusals refusals = setStageRefusals(group, stage);
    ASSERT_EQ(refusals, expectedStageChange(group, stage));
    ASSERT_EQ(FiltersGroup(group).setStage(stage), codeOf(refusals));
}

void expectTypeChange(const FiltersGroup& group, filtersGroupType_t type)
{
    const Refusals refusals = setTypeRefusals(group, type);
    ASSERT_EQ(refusals, expectedTypeChange(group, type));
    ASSERT_EQ(FiltersGroup(group).setType(type), codeOf(refusals));
}

/** An entry with every match but the addresses of one version, every action, and a policer. */
FiltersEntry fullEntry(filtersEntryId_t id, bool withIPv4, policer::Stage policerStage)
{
    FiltersEntry entry(id);
    const std::set<std::uint32_t>& excluded =
        withIPv4 ? FiltersEntry::ipv6OnlyMatchTypes : FiltersEntry::ipv4OnlyMatchTypes;
    MatchClasses::forEach([&](auto row) {
        if (excluded.count(row.CODE) == 0)
            entry.setMatch(row.sample());
    });
    ActionClasses::forEach([&](auto row) { entry.setAction(row.sample()); });
    entry.setPolicer(policerAt(policerStage));
    return entry;
}

// --------------------------------------------------------------------------------- complete walks

TEST(InsertEntryRefusals, OfEverySmallEntryAtEveryStageAndType)
{
    for (const filtersGroupStage_t stage : stages())
        for (const filtersGroupType_t type : types()) {
            FiltersGroup group(1);
            place(group, stage, type);
            forEachSmallEntry([&](const FiltersEntry& entry) { expectInsertion(group, entry); });
        }
}

TEST(InsertEntryRefusals, OfEntriesThatHoldEverything)
{
    for (const filtersGroupStage_t stage : stages())
        for (const filtersGroupType_t type : types()) {
            FiltersGroup group(1);
            place(group, stage, type);
            for (const bool withIPv4 : {false, true})
                for (const policer::Policer& policer : policers())
                    expectInsertion(group, fullEntry(65535, withIPv4, policer.GetStage()));
        }
}

/** Calls @p check with a group of each small entry that some group can hold. */
template <class Check>
void forEachGroupOfASmallEntry(Check check)
{
    std::size_t held = 0;
    forEachSmallEntry([&](const FiltersEntry& entry) {
        FiltersGroup group(1);
        if (!insertSomewhere(group, entry))
            return;
        ++held;
        check(group);
    });
    EXPECT_GT(held, 1000u);
}

TEST(SetStageRefusals, OfEverySmallEntryThatAGroupCanHold)
{
    forEachGroupOfASmallEntry([](FiltersGroup& group) {
        for (const filtersGroupStage_t stage : stages())
            expectStageChange(group, stage);
    });
}

TEST(SetTypeRefusals, OfEverySmallEntryThatAGroupCanHold)
{
    forEachGroupOfASmallEntry([](FiltersGroup& group) {
        for (const filtersGroupType_t type : types())
            expectTypeChange(group, type);
    });
}

TEST(GroupRefusals, OfGroupsWithoutEntries)
{
    for (const filtersGroupStage_t stage : stages())
        for (const filtersGroupType_t type : types()) {
            FiltersGroup group(1);
            place(group, stage, type);
            for (const filtersGroupStage_t other : stages())
                expectStageChange(group, other);
            for (const filtersGroupType_t other : types())
                expectTypeChange(group, other);
        }
}

/** A group with an entry for each match class, each action class and each policer stage. */
FiltersGroup crowdedGroup()
{
    FiltersGroup group(1);
    filtersEntryId_t id = 0;
    const auto insert = [&](FiltersEntry entry) {
        entry.setId(++id);
        insertSomewhere(group, entry);
    };
    for (const FiltersEntry& entry : entriesByMatch())
        insert(entry);
    for (const FiltersEntry& entry : withEachAction(FiltersEntry()))
        insert(entry);
    for (const policer::Policer& policer : policers()) {
        FiltersEntry entry;
        entry.setPolicer(policer);
        entry.setAction(ActionDeny());
        entry.setAction(ActionPermit());
        insert(entry);
    }
    return group;
}

TEST(GroupRefusals, NameEveryEntryInTheWay)
{
    FiltersGroup group = crowdedGroup();
    EXPECT_GT(group.getEntriesRef().size(), 50u);
    for (const filtersGroupStage_t stage : stages())
        for (const filtersGroupType_t type : types()) {
            place(group, stage, type);
            for (const filtersGroupStage_t other : stages())
                expectStageChange(group, other);
            for (const filtersGroupType_t other : types())
                expectTypeChange(group, other);
        }
}

// -------------------------------------------------------------------------------- what stands out

TEST(GroupRefusals, AnUnknownStageIsOneReasonHoweverManyEntriesMeetIt)
{
    const FiltersGroup group = crowdedGroup();
    const Refusals refusals = setStageRefusals(group, stage(7));
    ASSERT_EQ(refusals.size(), 1u);
    EXPECT_EQ(refusals[0].reason, REFUSAL_UNKNOWN_STAGE);
    EXPECT_FALSE(refusals[0].entry.has_value());
}

TEST(GroupRefusals, AnUnknownTypeIsRefusedByTheStageAndByTheEntries)
{
    FiltersGroup group = crowdedGroup();
    place(group, GROUP_STAGE_0, GROUP_TYPE_0);
    const Refusals refusals = setTypeRefusals(group, type(10));
    ASSERT_EQ(refusals.size(), 2u);
    EXPECT_EQ(refusals[0].reason, REFUSAL_TYPE_NOT_AT_STAGE);
    EXPECT_EQ(refusals[1].reason, REFUSAL_UNKNOWN_TYPE);
    EXPECT_FALSE(refusals[1].entry.has_value());
}

TEST(GroupRefusals, WhatIsSaidToBeAdmittedIsAdmitted)
{
    FiltersGroup group(1);
    group.setType(GROUP_TYPE_4);
    FiltersEntry entry(12);
    entry.setMatch(MatchVlanUntagged());
    const Refusals refusals = insertEntryRefusals(group, entry);
    ASSERT_EQ(refusals.size(), 1u);
    MatchClasses::forEach([&](auto row) {
        FiltersEntry other;
        other.setMatch(row.sample());
        EXPECT_EQ(refusals[0].admittedMatches.contains(static_cast<filtersMatch_t>(row.CODE)),
                  group.insertEntry(other) == FILTERS_OK);
    });
}

TEST(GroupRefusals, AskingChangesNothing)
{
    const FiltersGroup group = crowdedGroup();
    const FiltersEntry entry = fullEntry(3, true, policer::STAGE_EGRESS);
    const std::string groupBefore = stateOf(group);
    const std::string entryBefore = stateOf(entry);
    insertEntryRefusals(group, entry);
    setStageRefusals(group, GROUP_STAGE_3);
    setTypeRefusals(group, GROUP_TYPE_1);
    EXPECT_EQ(stateOf(group), groupBefore);
    EXPECT_EQ(stateOf(entry), entryBefore);
}

TEST(GroupRefusals, ATypeThatFitsNoStageSaysSo)
{
    const Refusals refusals = setTypeRefusals(FiltersGroup(1), type(10));
    ASSERT_EQ(refusals.size(), 1u);
    EXPECT_TRUE(refusals[0].admittedStages.empty());
    EXPECT_EQ(refusals[0].admittedTypes.size(), 10u);
}

} // namespace
} // namespace FiltersCommon
