#include "checks.h"
#include "group_import.h"

#include "named_entries.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using namespace filterctl;
using namespace FiltersCommon;
using namespace FiltersCommon::test;
using namespace std::string_literals;

std::vector<std::string> textsOf(const std::vector<Problem>& refusals)
{
    std::vector<std::string> texts;
    for (const Problem& refusal : refusals)
        texts.push_back(std::to_string(refusal.line) + ": " + refusal.sentence);
    return texts;
}

/** Compares only the beginnings, without the list of what is admitted. */
void expectBeginnings(const std::vector<Problem>& refusals, const std::vector<std::string>& wanted)
{
    const std::vector<std::string> texts = textsOf(refusals);
    ASSERT_EQ(texts.size(), wanted.size()) << testing::PrintToString(texts);
    for (std::size_t index = 0; index < wanted.size(); ++index)
        EXPECT_EQ(texts[index].substr(0, wanted[index].size()), wanted[index]);
}

constexpr char ANYTHING[] = "@0.0.0.0/0 0.0.0.0/0 0:65535 0:65535 0x00/0x00\n";
constexpr char SOURCE[] = "@10.0.0.0/8 0.0.0.0/0 0:65535 0:65535 0x00/0x00\n";
constexpr char PORTS[] = "@0.0.0.0/0 0.0.0.0/0 1:6 1:6 0x06/0xFF\n";

ImportOptions optionsAt(int stage, int type)
{
    ImportOptions options;
    options.stage = static_cast<filtersGroupStage_t>(stage);
    options.type = static_cast<filtersGroupType_t>(type);
    return options;
}

/** Why the list cannot be imported; checks that it gives a group if there is no reason. */
std::vector<Problem> checkAccessList(const std::string& text, const ImportOptions& options)
{
    std::vector<Problem> problems;
    const bool isImported = groupFromAccessList(text, options, problems).has_value();
    EXPECT_EQ(isImported, problems.empty());
    return problems;
}

TEST(Checks, EveryReasonOfEveryLine)
{
    const std::string list = "bad\n"s + SOURCE + "# comment\n" + PORTS + "@1.2.3.4/33\n" + SOURCE;
    expectBeginnings(checkAccessList(list, optionsAt(0, 3)),
                     {"1: source prefix: missing '@'", "5: source prefix: length is over 32"});
    expectBeginnings(
        checkAccessList(list, optionsAt(0, 5)),
        {
            "1: source prefix: missing '@'",
            "2: match kind MATCH_SRC_IPV4 is not admitted in a group of type GROUP_TYPE_5; admit",
            "4: match kind MATCH_DST_L4_PORT is not admitted in a group of type GROUP_TYPE_5; ",
            "4: match kind MATCH_SRC_L4_PORT is not admitted in a group of type GROUP_TYPE_5; ",
            "4: match kind MATCH_IP_PROTOCOL is not admitted in a group of type GROUP_TYPE_5; ",
            "5: source prefix: length is over 32",
            "6: match kind MATCH_SRC_IPV4 is not admitted in a group of type GROUP_TYPE_5; admit",
        });
}

TEST(Checks, StageAndTypeAreRefusedOnce)
{
    expectBeginnings(
        checkAccessList(SOURCE + "bad\n"s + SOURCE, optionsAt(9, 3)),
        {"0: group stage 9 is unknown; known are GROUP_STAGE_0", "2: source prefix: missing '@'"});
    expectBeginnings(checkAccessList(SOURCE, optionsAt(0, -7)),
                     {"0: group type -7 is unknown; known are GROUP_TYPE_0"});
    expectBeginnings(checkAccessList(SOURCE, optionsAt(9, 10)),
                     {"0: group type 10 is unknown", "0: group stage 9 is unknown"});
    expectBeginnings(
        checkAccessList(SOURCE, optionsAt(3, 3)),
        {"0: group type GROUP_TYPE_3 is not admitted at group stage GROUP_STAGE_3; admitted are "});
    for (int stage = -1; stage <= 4; ++stage)
        for (int type = -1; type <= 10; ++type)
            EXPECT_EQ(checkAccessList("", optionsAt(stage, type)).empty(),
                      FiltersGroup(0).groupStageValidation(
                          optionsAt(stage, type).stage, optionsAt(stage, type).type) == FILTERS_OK);
}

TEST(Checks, TooManyEntriesAreRefusedOnce)
{
    std::string list; // 72 times 900 entries, and one line with 736 more
    for (int line = 0; line < 72; ++line)
        list += "@0.0.0.0/0 0.0.0.0/0 1:65534 1:65534 0x00/0x00\n";
    for (int line = 0; line < 736; ++line)
        list += ANYTHING;
    EXPECT_TRUE(checkAccessList(list, {}).empty());
    list += "bad\n"s + ANYTHING + ANYTHING + "bad\n";
    EXPECT_EQ(textsOf(checkAccessList(list, {})),
              (std::vector<std::string>{"809: source prefix: missing '@'",
                                        "810: a group holds at most 65536 entries",
                                        "812: source prefix: missing '@'"}));
}

std::vector<Problem> checkSample(const FiltersGroup& group, int stage, int type)
{
    return checkGroupAt(group, static_cast<filtersGroupStage_t>(stage),
                        static_cast<filtersGroupType_t>(type));
}

TEST(Checks, GroupsAreAdmittedWhereTheyAre)
{
    for (const Named<FiltersGroup>& sample : groupSamples()) {
        const FiltersGroup& group = *sample.object;
        const bool fits =
            group.groupStageValidation(group.getStage(), group.getType()) == FILTERS_OK;
        EXPECT_EQ(checkSample(group, group.getStage(), group.getType()).empty(), fits)
            << sample.name;
        EXPECT_EQ(checkPlace(group.getStage(), group.getType()).empty(), fits) << sample.name;
    }
}

TEST(Checks, WhatAnotherPlaceWouldNotAdmit)
{
    FiltersEntry entry(4);
    entry.setMatch(MatchSrcIPv4(ipv4("10.0.0.0"), ipv4("255.0.0.0")));
    FiltersGroup group(0);
    group.setType(GROUP_TYPE_3);
    group.insertEntry(entry);
    EXPECT_TRUE(checkSample(group, 0, 3).empty());
    expectBeginnings(checkSample(group, 0, 5),
                     {"0: entry 4: match kind MATCH_SRC_IPV4 is not admitted in a group of type "});

    // The stage takes egress policers.
    entry.deleteMatch(MATCH_SRC_IPV4);
    entry.setPolicer(policerAt(policer::STAGE_INGRESS));
    FiltersGroup policed(0);
    policed.setStage(GROUP_STAGE_2);
    ASSERT_EQ(policed.insertEntry(entry), FILTERS_OK);
    expectBeginnings(checkSample(policed, 3, 0),
                     {"0: entry 4: a policer of stage STAGE_INGRESS is not admitted at group stage "
                      "GROUP_STAGE_3"});
    // An unknown stage admits no entry; it is reported once, for the group.
    expectBeginnings(checkSample(group, 7, 3), {"0: group stage 7 is unknown; known are "});
}

TEST(Checks, AnEmptyGroupIsAnywhere)
{
    const FiltersGroup group = emptyGroup(9, static_cast<filtersGroupStage_t>(-7), GROUP_TYPE_5);
    EXPECT_EQ(group.getId(), 9);
    EXPECT_EQ(group.getStage(), -7);
    EXPECT_EQ(group.getType(), GROUP_TYPE_5);
    EXPECT_TRUE(group.getEntriesRef().empty());
}

} // namespace
