#include "named_entries.h"
#include "refusals_support.h"
#include "wire_support.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using namespace FiltersCommon;
using namespace FiltersCommon::test;

TEST(WhatReadingLeavesOut, IsNothingOfWhatTheLibraryWrote)
{
    for (const Named<FiltersEntry>& sample : entrySamples())
        EXPECT_EQ(readEntryRefusals(serialized(*sample.object)), Refusals()) << sample.name;
    for (const Named<FiltersGroup>& sample : groupSamples())
        EXPECT_EQ(readGroupRefusals(serialized(*sample.object)), Refusals()) << sample.name;
}

TEST(WhatReadingLeavesOut, AreUnknownKinds)
{
    FiltersEntryPB pb = written(FiltersEntry(7));
    pb.add_matches_()->set_type_(MATCH_KINDS);
    pb.add_matches_()->set_type_(MATCH_TTL);
    const std::uint32_t number = 0xFFFFFFFF;
    pb.add_matches_()->set_type_(number);
    pb.add_actions_()->set_type_(ACTION_KINDS);
    pb.add_actions_()->set_type_(ACTION_DENY);

    const Refusals refusals = readEntryRefusals(bytesOf(pb));
    ASSERT_EQ(refusals.size(), 3u);
    EXPECT_EQ(refusals[0].reason, REFUSAL_UNKNOWN_MATCH_KIND);
    EXPECT_EQ(refusals[0].entry, 7);
    EXPECT_EQ(refusals[0].match, UNKNOWN_MATCH);
    EXPECT_EQ(refusals[0].admittedMatches, everyMatchBut({}));
    EXPECT_EQ(static_cast<std::uint32_t>(refusals[1].match.value()), number);
    EXPECT_EQ(refusals[2].reason, REFUSAL_UNKNOWN_ACTION_KIND);
    EXPECT_EQ(refusals[2].entry, 7);
    EXPECT_EQ(refusals[2].action, UNKNOWN_ACTION);
    EXPECT_EQ(refusals[2].admittedActions, everyAction());
}

/** The IP version of an address kind, or 0. */
int version(filtersMatch_t kind)
{
    switch (kind) {
    case MATCH_SRC_IPV4:
    case MATCH_DST_IPV4:
        return 4;
    case MATCH_SRC_IPV6:
    case MATCH_DST_IPV6:
        return 6;
    default:
        return 0;
    }
}

/** For each pair of IP kinds: the second is left out exactly where the two exclude each other. */
TEST(WhatReadingLeavesOut, AreAddressesOfTheOtherIPVersion)
{
    const std::vector<filtersMatch_t> kinds = {MATCH_SRC_IPV4, MATCH_DST_IPV4, MATCH_SRC_IPV6,
                                               MATCH_DST_IPV6, MATCH_TTL};
    for (const filtersMatch_t first : kinds)
        for (const filtersMatch_t second : kinds) {
            FiltersEntryPB pb = written(FiltersEntry(1));
            pb.add_matches_()->set_type_(static_cast<std::uint32_t>(first));
            pb.add_matches_()->set_type_(static_cast<std::uint32_t>(second));
            const FiltersEntry read(bytesOf(pb));
            const Refusals refusals = readEntryRefusals(bytesOf(pb));
            if (first == second) { // which replaces the first, as for any kind
                EXPECT_EQ(refusals.size(), 1u);
                continue;
            }
            const bool excluded =
                version(first) != 0 && version(second) != 0 && version(first) != version(second);
            ASSERT_EQ(refusals.size(), excluded ? 1u : 0u) << first << " " << second;
            EXPECT_EQ(read.getMatchesRef().count(second), excluded ? 0u : 1u);
            if (!excluded)
                continue;
            EXPECT_EQ(refusals[0].reason, REFUSAL_IPV4_WITH_IPV6);
            EXPECT_EQ(refusals[0].match, second);
            EXPECT_TRUE(refusals[0].excludingMatches.contains(first));
            EXPECT_EQ(refusals[0].excludingMatches.size(), 1u);
        }
}

/** Every small entry at every stage and type, and the reasons for which inserting it fails. */
TEST(WhatReadingLeavesOut, AreEntriesThatTheGroupDoesNotTake)
{
    for (const filtersGroupStage_t stage : stages())
        for (const filtersGroupType_t type : types()) {
            FiltersGroup group(1);
            place(group, stage, type);
            FiltersGroupPB pb = written(group);
            Refusals expected;
            std::size_t taken = 0;
            filtersEntryId_t id = 0;
            forEachSmallEntry([&](const FiltersEntry& small) {
                FiltersEntry entry(small);
                entry.setId(id++); // each its own, so that none replaces another
                entry.convertToFiltersEntryPB(pb.add_entries_());
                const Refusals refusals = insertEntryRefusals(group, entry);
                expected.insert(expected.end(), refusals.begin(), refusals.end());
                taken += refusals.empty() ? 1 : 0;
            });
            const std::string bytes = bytesOf(pb);
            EXPECT_EQ(readGroupRefusals(bytes), expected);
            EXPECT_EQ(FiltersGroup(bytes).getEntriesRef().size(), taken);
        }
}

TEST(WhatReadingLeavesOut, StandsInTheOrderOfTheBytes)
{
    FiltersGroupPB pb = written(FiltersGroup(1));
    pb.set_type_(GROUP_TYPE_3);
    FiltersEntry notTaken(2);
    notTaken.setAction(ActionReplaceSrcMac(mac("02:00:00:00:00:01")));
    const Refusals whyNot = [&] {
        FiltersGroup group(1);
        place(group, GROUP_STAGE_0, GROUP_TYPE_3);
        return insertEntryRefusals(group, notTaken);
    }();
    FiltersEntryPB* first = pb.add_entries_();
    notTaken.convertToFiltersEntryPB(first);
    first->add_matches_()->set_type_(99);
    FiltersEntryPB* second = pb.add_entries_();
    FiltersEntry(3).convertToFiltersEntryPB(second);
    second->add_matches_()->set_type_(98);

    const Refusals refusals = readGroupRefusals(bytesOf(pb));
    ASSERT_EQ(refusals.size(), whyNot.size() + 2);
    EXPECT_EQ(refusals.front().match, static_cast<filtersMatch_t>(99));
    EXPECT_EQ(Refusals(refusals.begin() + 1, refusals.end() - 1), whyNot);
    EXPECT_EQ(refusals.back().match, static_cast<filtersMatch_t>(98));
    EXPECT_EQ(refusals.back().entry, 3);
}

TEST(WhatReadingLeavesOut, IsSaidOnceAlsoOfBytesThatOnlyTheParserUnderstands)
{
    FiltersEntryPB pb = written(FiltersEntry(7));
    pb.add_matches_()->set_type_(MATCH_SRC_IPV4);
    pb.add_matches_()->set_type_(MATCH_SRC_IPV6);
    const std::string unknownField = "\xF8\x07\x01";
    const Refusals refusals = readEntryRefusals(bytesOf(pb) + unknownField);
    ASSERT_EQ(refusals.size(), 2u);
    EXPECT_EQ(refusals[0].reason, REFUSAL_IPV4_WITH_IPV6);
    EXPECT_EQ(refusals[1].reason, REFUSAL_FIELD_UNKNOWN);
}

} // namespace
