#include "samples.h"

#include "filter_groups.pb.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace FiltersCommon {
namespace {

using test::policerAt;
using test::stateOf;

// ---------------------------------------------------------------------------------- what is asked

static_assert(std::is_same_v<decltype(FiltersGroup::TypeDescription_),
                             const std::map<filtersGroupType_t, std::set<filtersMatch_t>>>);
static_assert(std::is_same_v<decltype(FiltersGroup::StageTypesDescription_),
                             const std::map<filtersGroupStage_t, std::set<filtersGroupType_t>>>);
static_assert(std::is_same_v<decltype(FiltersGroup::StageActionsDescription_),
                             const std::map<filtersGroupStage_t, std::set<filtersAction_t>>>);

using Group = FiltersGroup;
static_assert(
    std::is_same_v<decltype(&Group::groupMatchValidation),
                   filtersErr_t (Group::*)(const FiltersEntry&, filtersGroupType_t) const>);
static_assert(
    std::is_same_v<decltype(&Group::groupActionValidation),
                   filtersErr_t (Group::*)(const FiltersEntry&, filtersGroupStage_t) const>);
static_assert(
    std::is_same_v<decltype(&Group::groupStageValidation),
                   filtersErr_t (Group::*)(filtersGroupStage_t, filtersGroupType_t) const>);
static_assert(
    std::is_same_v<decltype(&Group::groupPolicerValidation),
                   filtersErr_t (Group::*)(const policer::Policer&, filtersGroupStage_t) const>);

filtersGroupStage_t stage(std::uint32_t code) { return static_cast<filtersGroupStage_t>(code); }
filtersGroupType_t type(std::uint32_t code) { return static_cast<filtersGroupType_t>(code); }

constexpr std::uint32_t UNKNOWN_STAGES[] = {4,  5,  7,          8,          10,
                                            31, 32, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};
constexpr std::uint32_t UNKNOWN_TYPES[] = {10, 11, 31, 32, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};

// ------------------------------------------------------------------------------- what is admitted
//
// Each digit of a row is a type or a stage.

/** For each match kind, the group types that admit it. */
constexpr std::string_view TYPES_OF_MATCH[] = {
    "123456789", // MATCH_ALL
    "1234569",   // MATCH_INGRESS_PORTS
    "1234569",   // MATCH_EXTERNAL_VLAN_ID
    "1234567",   // MATCH_TPID
    "1567",      // MATCH_DST_MAC
    "347",       // MATCH_DST_L4_PORT
    "3",         // MATCH_SRC_L4_PORT
    "126",       // MATCH_SRC_MAC
    "1",         // MATCH_L2_SRC_ENTRY_TYPE
    "234",       // MATCH_SRC_IPV4
    "34",        // MATCH_DST_IPV4
    "24569",     // MATCH_INTERNAL_VLAN_ID
    "4569",      // MATCH_PCP
    "4569",      // MATCH_INTERNAL_PCP
    "",          // MATCH_SRC_IPV6
    "8",         // MATCH_DST_IPV6
    "",          // MATCH_VLAN_UNTAGGED
    "347",       // MATCH_IP_PROTOCOL
    "1",         // MATCH_PACKET_RES
    "1",         // MATCH_MPLS_TERM
    "49",        // MATCH_TOS
    "2",         // MATCH_VIRTUAL_PORT
    "5",         // MATCH_EGRESS_PORTS
    "1",         // MATCH_INGRESS_STP_STATE
    "7",         // MATCH_VLAN_INFO
    "7",         // MATCH_SRC_PORT
    "3",         // MATCH_TTL
    "8",         // MATCH_VRF_ID
    "1",         // MATCH_DROP
    "1",         // MATCH_CPU_PORT
    "7",         // MATCH_FORWARDING_TYPE
    "3",         // MATCH_DESTINATION_CPU
};
static_assert(std::size(TYPES_OF_MATCH) == test::MATCH_KINDS, "a row for each match kind");

/** For each group type, the group stages that admit it. */
constexpr std::string_view STAGES_OF_TYPE[] = {
    "0123", "02", "02", "02", "01", "03", "01", "02", "02", "02",
};
static_assert(std::size(STAGES_OF_TYPE) == 10);

/** For each action kind, the group stages that admit it. */
constexpr std::string_view STAGES_OF_ACTION[] = {
    "0123", // ACTION_PERMIT
    "0123", // ACTION_DENY
    "02",   // ACTION_COPY_TO_CPU
    "02",   // ACTION_BLOCK_EGRESS_PORTS
    "02",   // ACTION_COPY_TO_CPU_CANCEL
    "02",   // ACTION_SET_PCP
    "01",   // ACTION_SET_PCP_AND_QUEUE
    "01",   // ACTION_SET_INNER_PCP
    "02",   // ACTION_SET_DSCP
    "02",   // ACTION_MAP_TO_COS_QUEUE
    "2",    // ACTION_MAP_TO_CPU_COS_QUEUE
    "02",   // ACTION_REDIRECT
    "02",   // ACTION_REPLACE_DST_MAC
    "02",   // ACTION_REDIRECT_CANCEL
    "02",   // ACTION_REPLACE_SRC_MAC
    "02",   // ACTION_L3_SWITCH
    "02",   // ACTION_BLACK_HOLE
};
static_assert(std::size(STAGES_OF_ACTION) == test::ACTION_KINDS, "a row for each action kind");

bool names(std::string_view digits, std::uint32_t digit)
{
    return digits.find(static_cast<char>('0' + digit)) != std::string_view::npos;
}

// ------------------------------------------------------------------------------ the public tables

/** A public table as numbers. */
template <class Table>
std::map<int, std::vector<int>> numbersOf(const Table& table)
{
    std::map<int, std::vector<int>> numbers;
    for (const auto& [key, codes] : table)
        numbers[key].assign(codes.begin(), codes.end());
    return numbers;
}

/** The table by type or stage, of which there are @p keys, instead of by kind. */
template <std::size_t N>
std::map<int, std::vector<int>> turned(const std::string_view (&table)[N], std::uint32_t keys)
{
    std::map<int, std::vector<int>> rows;
    for (std::uint32_t key = 0; key < keys; ++key) {
        std::vector<int>& row = rows[static_cast<int>(key)];
        for (std::size_t code = 0; code < N; ++code)
            if (names(table[code], key))
                row.push_back(static_cast<int>(code));
    }
    return rows;
}

TEST(GroupTables, TypesAdmitTheirMatchKinds)
{
    EXPECT_EQ(numbersOf(FiltersGroup::TypeDescription_), turned(TYPES_OF_MATCH, 10));
}

TEST(GroupTables, StagesAdmitTheirTypes)
{
    EXPECT_EQ(numbersOf(FiltersGroup::StageTypesDescription_), turned(STAGES_OF_TYPE, 4));
}

TEST(GroupTables, StagesAdmitTheirActionKinds)
{
    EXPECT_EQ(numbersOf(FiltersGroup::StageActionsDescription_), turned(STAGES_OF_ACTION, 4));
}

// --------------------------------------------------------------------------------- complete walks

/** Groups of different stages and types, which no check may look at. */
std::vector<FiltersGroup> askedGroups()
{
    std::vector<FiltersGroup> groups(3, FiltersGroup(1));
    groups[1].setStage(GROUP_STAGE_2);
    groups[1].setType(GROUP_TYPE_8);
    FiltersGroupPB pb;
    pb.set_stage_(77);
    pb.set_type_(88);
    groups[2].convertFromFiltersGroupPB(&pb);
    return groups;
}

/** For each match class, its code and an entry with one such match. */
std::vector<std::pair<std::uint32_t, FiltersEntry>> entriesWithOneMatch()
{
    std::vector<std::pair<std::uint32_t, FiltersEntry>> entries;
    test::MatchClasses::forEach([&](auto row) {
        FiltersEntry entry;
        entry.setMatch(row.sample());
        entries.emplace_back(row.CODE, entry);
    });
    return entries;
}

std::vector<std::pair<std::uint32_t, FiltersEntry>> entriesWithOneAction()
{
    std::vector<std::pair<std::uint32_t, FiltersEntry>> entries;
    test::ActionClasses::forEach([&](auto row) {
        FiltersEntry entry;
        entry.setAction(row.sample());
        entries.emplace_back(row.CODE, entry);
    });
    return entries;
}

/** An entry that holds nothing, and one that holds nearly everything. */
std::vector<FiltersEntry> unlikeEntries()
{
    std::vector<FiltersEntry> entries(2);
    test::MatchClasses::forEach([&](auto row) { entries[1].setMatch(row.sample()); });
    test::ActionClasses::forEach([&](auto row) { entries[1].setAction(row.sample()); });
    entries[1].setPolicer(policerAt(policer::STAGE_INGRESS));
    return entries;
}

TEST(GroupMatchValidation, AdmitsEachKindInItsTypesAlone)
{
    for (const FiltersGroup& group : askedGroups())
        for (const auto& [kind, entry] : entriesWithOneMatch())
            for (std::uint32_t code = 0; code < 10; ++code)
                EXPECT_EQ(group.groupMatchValidation(entry, type(code)),
                          names(TYPES_OF_MATCH[kind], code) ? 0 : -6)
                    << "kind " << kind << ", type " << code;
}

TEST(GroupMatchValidation, AdmitsAnEntryWithoutMatchesInEveryType)
{
    FiltersEntry entry;
    entry.setAction(ActionMapToCpuCosQueue(1));
    entry.setPolicer(policerAt(policer::STAGE_EGRESS));
    for (std::uint32_t code = 0; code < 10; ++code)
        EXPECT_EQ(FiltersGroup(1).groupMatchValidation(entry, type(code)), 0) << code;
}

TEST(GroupMatchValidation, RefusesEveryEntryInAnUnknownType)
{
    for (const FiltersGroup& group : askedGroups())
        for (const std::uint32_t code : UNKNOWN_TYPES) {
            for (const FiltersEntry& entry : unlikeEntries())
                EXPECT_EQ(group.groupMatchValidation(entry, type(code)), -4) << code;
            for (const auto& element : entriesWithOneMatch())
                EXPECT_EQ(group.groupMatchValidation(element.second, type(code)), -4) << code;
        }
}

TEST(GroupMatchValidation, RefusesWhateverTheKindThatIsNotAdmitted)
{
    const FiltersGroup group(1);
    FiltersEntry entry;
    entry.setMatch(MatchAll());
    entry.setMatch(MatchVrfId(1));
    EXPECT_EQ(group.groupMatchValidation(entry, GROUP_TYPE_8), 0);
    entry.setMatch(MatchVlanUntagged()); // between the two
    EXPECT_EQ(group.groupMatchValidation(entry, GROUP_TYPE_8), -6);
    entry.setMatch(MatchDestinationCpu()); // and after them
    EXPECT_EQ(group.groupMatchValidation(entry, GROUP_TYPE_8), -6);
    entry.deleteMatch(MATCH_VLAN_UNTAGGED);
    EXPECT_EQ(group.groupMatchValidation(entry, GROUP_TYPE_8), -6);
}

TEST(GroupActionValidation, AdmitsEachKindAtItsStagesAlone)
{
    for (const FiltersGroup& group : askedGroups())
        for (const auto& [kind, entry] : entriesWithOneAction())
            for (std::uint32_t code = 0; code < 4; ++code)
                EXPECT_EQ(group.groupActionValidation(entry, stage(code)),
                          names(STAGES_OF_ACTION[kind], code) ? 0 : -9)
                    << "kind " << kind << ", stage " << code;
}

TEST(GroupActionValidation, AdmitsAnEntryWithoutActionsAtEveryStage)
{
    FiltersEntry entry;
    entry.setMatch(MatchVlanUntagged());
    entry.setPolicer(policerAt(policer::STAGE_EGRESS));
    for (std::uint32_t code = 0; code < 4; ++code)
        EXPECT_EQ(FiltersGroup(1).groupActionValidation(entry, stage(code)), 0) << code;
}

TEST(GroupActionValidation, RefusesEveryEntryAtAnUnknownStage)
{
    for (const FiltersGroup& group : askedGroups())
        for (const std::uint32_t code : UNKNOWN_STAGES) {
            for (const FiltersEntry& entry : unlikeEntries())
                EXPECT_EQ(group.groupActionValidation(entry, stage(code)), -8) << code;
            for (const auto& element : entriesWithOneAction())
                EXPECT_EQ(group.groupActionValidation(element.second, stage(code)), -8) << code;
        }
}

TEST(GroupActionValidation, RefusesWhateverTheKindThatIsNotAdmitted)
{
    const FiltersGroup group(1);
    FiltersEntry entry;
    entry.setAction(ActionPermit());
    entry.setAction(ActionSetInnerPcp(1));
    EXPECT_EQ(group.groupActionValidation(entry, GROUP_STAGE_1), 0);
    entry.setAction(ActionSetPcp(1)); // between the two
    EXPECT_EQ(group.groupActionValidation(entry, GROUP_STAGE_1), -9);
    entry.deleteAction(ACTION_SET_PCP);
    entry.setAction(ActionBlackHole()); // after them
    EXPECT_EQ(group.groupActionValidation(entry, GROUP_STAGE_1), -9);
}

TEST(GroupStageValidation, AdmitsEachTypeAtItsStagesAlone)
{
    for (const FiltersGroup& group : askedGroups())
        for (std::uint32_t at = 0; at < 4; ++at) {
            for (std::uint32_t code = 0; code < 10; ++code)
                EXPECT_EQ(group.groupStageValidation(stage(at), type(code)),
                          names(STAGES_OF_TYPE[code], at) ? 0 : -7)
                    << "stage " << at << ", type " << code;
            for (const std::uint32_t code : UNKNOWN_TYPES)
                EXPECT_EQ(group.groupStageValidation(stage(at), type(code)), -7)
                    << "stage " << at << ", type " << code;
        }
}

TEST(GroupStageValidation, RefusesEveryTypeAtAnUnknownStage)
{
    for (const FiltersGroup& group : askedGroups())
        for (const std::uint32_t at : UNKNOWN_STAGES) {
            for (std::uint32_t code = 0; code < 10; ++code)
                EXPECT_EQ(group.groupStageValidation(stage(at), type(code)), -8) << at;
            for (const std::uint32_t code : UNKNOWN_TYPES)
                EXPECT_EQ(group.groupStageValidation(stage(at), type(code)), -8) << at;
        }
}

/** The stage of a policer, the group stages that admit it, and whether unknown ones do. */
struct PolicerCells {
    std::uint32_t policerStage;
    std::string_view stages;
    filtersErr_t unknown;
};

TEST(GroupPolicerValidation, AdmitsEachPolicerAtItsStagesAlone)
{
    constexpr PolicerCells TABLE[] = {
        {0, "2", FILTERS_ERR_UNKNOWN_STAGE},
        {1, "3", FILTERS_ERR_UNKNOWN_STAGE},
        {2, "0123", FILTERS_OK},
        {3, "", FILTERS_ERR_UNKNOWN_STAGE},
        {4, "", FILTERS_ERR_UNKNOWN_STAGE},
        {0xFFFFFFFF, "", FILTERS_ERR_UNKNOWN_STAGE},
    };
    for (const FiltersGroup& group : askedGroups())
        for (const PolicerCells& row : TABLE) {
            const auto policer = policerAt(static_cast<policer::Stage>(row.policerStage));
            for (std::uint32_t code = 0; code < 4; ++code)
                EXPECT_EQ(group.groupPolicerValidation(policer, stage(code)),
                          names(row.stages, code) ? 0 : -10)
                    << "policer " << row.policerStage << ", stage " << code;
            for (const std::uint32_t code : UNKNOWN_STAGES)
                EXPECT_EQ(group.groupPolicerValidation(policer, stage(code)), row.unknown)
                    << "policer " << row.policerStage << ", stage " << code;
        }
}

TEST(GroupPolicerValidation, AdmitsTheDefaultPolicerEverywhere)
{
    for (const std::uint32_t code : {0u, 1u, 2u, 3u, 7u, 0xFFFFFFFFu})
        EXPECT_EQ(FiltersGroup(1).groupPolicerValidation(policer::Policer(), stage(code)), 0);
}

TEST(GroupPolicerValidation, LooksAtTheStageOfThePolicerAlone)
{
    const policer::Policer bare(policer::Policer::INVALID_ID, policer::STAGE_EGRESS,
                                policer::Mode(), {});
    EXPECT_EQ(FiltersGroup(1).groupPolicerValidation(bare, GROUP_STAGE_3), 0);
    EXPECT_EQ(FiltersGroup(1).groupPolicerValidation(bare, GROUP_STAGE_2), -10);
}

// ------------------------------------------------------------------------------------ known cases

TEST(GroupRules, TypeZeroAcceptsAnEntryWithoutMatchesAndNotMatchAll)
{
    const FiltersGroup group(1);
    FiltersEntry entry;
    EXPECT_EQ(group.groupMatchValidation(entry, GROUP_TYPE_0), 0);
    entry.setMatch(MatchAll());
    EXPECT_EQ(group.groupMatchValidation(entry, GROUP_TYPE_0), FILTERS_ERR_MATCH_NOT_ALLOWED);
}

TEST(GroupRules, MapToCpuCosQueuePassesAtStage2Alone)
{
    const FiltersGroup group(1);
    FiltersEntry entry;
    entry.setAction(ActionMapToCpuCosQueue(1));
    EXPECT_EQ(group.groupActionValidation(entry, GROUP_STAGE_0), FILTERS_ERR_ACTION_NOT_ALLOWED);
    EXPECT_EQ(group.groupActionValidation(entry, GROUP_STAGE_1), FILTERS_ERR_ACTION_NOT_ALLOWED);
    EXPECT_EQ(group.groupActionValidation(entry, GROUP_STAGE_2), FILTERS_OK);
    EXPECT_EQ(group.groupActionValidation(entry, GROUP_STAGE_3), FILTERS_ERR_ACTION_NOT_ALLOWED);
}

TEST(GroupRules, TosSlotIsAdmittedForADscpToo)
{
    const FiltersGroup group(1);
    FiltersEntry entry;
    entry.setMatch(MatchDSCP(10));
    EXPECT_EQ(group.groupMatchValidation(entry, GROUP_TYPE_4), FILTERS_OK);
    EXPECT_EQ(group.groupMatchValidation(entry, GROUP_TYPE_9), FILTERS_OK);
    EXPECT_EQ(group.groupMatchValidation(entry, GROUP_TYPE_3), FILTERS_ERR_MATCH_NOT_ALLOWED);
}

TEST(GroupRules, ChecksChangeNeitherTheGroupNorTheEntry)
{
    for (const FiltersGroup& group : askedGroups())
        for (const FiltersEntry& entry : unlikeEntries()) {
            const std::string groupBefore = stateOf(group);
            const std::string entryBefore = stateOf(entry);
            for (std::uint32_t code = 0; code < 11; ++code) {
                group.groupMatchValidation(entry, type(code));
                group.groupActionValidation(entry, stage(code));
                group.groupStageValidation(stage(code), type(code));
                group.groupPolicerValidation(entry.getPolicer(), stage(code));
            }
            EXPECT_EQ(stateOf(group), groupBefore);
            EXPECT_EQ(stateOf(entry), entryBefore);
        }
}

} // namespace
} // namespace FiltersCommon
