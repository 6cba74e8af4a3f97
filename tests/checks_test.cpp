#include "checks.h"

#include "named_entries.h"

#include "filter_groups.pb.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <variant>
#include <vector>

namespace {

using namespace filterctl;
using namespace FiltersCommon;
using namespace FiltersCommon::test;
using namespace std::string_literals;

std::vector<std::string> textsOf(const std::vector<Refusal>& refusals)
{
    std::vector<std::string> texts;
    for (const Refusal& refusal : refusals)
        texts.push_back(std::to_string(refusal.line) + ": " + refusal.reason);
    return texts;
}

/** Compares only the beginnings, without the list of what is admitted. */
void expectBeginnings(const std::vector<Refusal>& refusals, const std::vector<std::string>& wanted)
{
    const std::vector<std::string> texts = textsOf(refusals);
    ASSERT_EQ(texts.size(), wanted.size()) << testing::PrintToString(texts);
    for (std::size_t index = 0; index < wanted.size(); ++index)
        EXPECT_EQ(texts[index].substr(0, wanted[index].size()), wanted[index]);
}

constexpr char ANYTHING[] = "@0.0.0.0/0 0.0.0.0/0 0:65535 0:65535 0x00/0x00\n";
constexpr char SOURCE[] = "@10.0.0.0/8 0.0.0.0/0 0:65535 0:65535 0x00/0x00\n";
constexpr char PORTS[] = "@0.0.0.0/0 0.0.0.0/0 1:6 1:6 0x06/0xFF\n";

ImportOptions optionsAt(int stage, int type, bool deny = false)
{
    ImportOptions options;
    options.stage = static_cast<filtersGroupStage_t>(stage);
    options.type = static_cast<filtersGroupType_t>(type);
    options.deny = deny;
    return options;
}

/** The refusal of the text by the import, or nothing. */
std::vector<Refusal> refusalOfImport(const std::string& text, const ImportOptions& options)
{
    auto rules = readAccessList(text);
    if (const auto* refusal = std::get_if<Refusal>(&rules))
        return {*refusal};
    auto group = importGroup(std::get<AccessList>(rules), options);
    if (const auto* refusal = std::get_if<Refusal>(&group))
        return {*refusal};
    return {};
}

TEST(Checks, ListsAreRefusedAtTheLineAtWhichImportRefusesThem)
{
    const std::string lists[] = {
        "",
        "# none\n",
        ANYTHING,
        SOURCE,
        PORTS,
        ANYTHING + ""s + SOURCE,
        SOURCE + ""s + PORTS,
        ANYTHING + ""s + PORTS + SOURCE,
    };
    std::size_t taken = 0;
    for (int stage = -1; stage <= 4; ++stage)
        for (int type = -1; type <= 10; ++type)
            for (const bool deny : {false, true})
                for (const std::string& list : lists) {
                    SCOPED_TRACE(testing::Message() << stage << " " << type << " " << list);
                    const ImportOptions options = optionsAt(stage, type, deny);
                    const auto first = refusalOfImport(list, options);
                    const auto all = checkAccessList(list, options);
                    ASSERT_EQ(all.empty(), first.empty());
                    if (!first.empty()) {
                        EXPECT_EQ(all.front().line, first.front().line);
                    }
                    taken += first.empty();
                }
    EXPECT_GT(taken, 0u);
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
}

TEST(Checks, TooManyEntriesAreRefusedOnce)
{
    std::string list; // 72 times 900 entries, and one line with 736 more
    for (int line = 0; line < 72; ++line)
        list += "@0.0.0.0/0 0.0.0.0/0 1:65534 1:65534 0x00/0x00\n";
    for (int line = 0; line < 736; ++line)
        list += ANYTHING;
    EXPECT_TRUE(checkAccessList(list, {}).empty());
    EXPECT_TRUE(refusalOfImport(list, {}).empty());
    list += "bad\n"s + ANYTHING + ANYTHING + "bad\n";
    EXPECT_EQ(textsOf(checkAccessList(list, {})),
              (std::vector<std::string>{"809: source prefix: missing '@'",
                                        "810: a group holds at most 65536 entries",
                                        "812: source prefix: missing '@'"}));
}

std::vector<Refusal> checkMessage(const FiltersGroupPB& message)
{
    return checkGroup(message.SerializeAsString(),
                      static_cast<filtersGroupStage_t>(message.stage_()),
                      static_cast<filtersGroupType_t>(message.type_()));
}

TEST(Checks, SampleGroupsLoseNothing)
{
    for (const Named<FiltersGroup>& sample : groupSamples()) {
        const FiltersGroup& group = *sample.object;
        const auto refusals = checkMessage(group.convertToFiltersGroupPB());
        const bool fits =
            group.groupStageValidation(group.getStage(), group.getType()) == FILTERS_OK;
        EXPECT_EQ(refusals.empty(), fits) << sample.name;
    }
}

TEST(Checks, WhatReadingAGroupLeavesOut)
{
    FiltersEntry entry(4);
    entry.setMatch(MatchSrcIPv4(ipv4("10.0.0.0"), ipv4("255.0.0.0")));
    entry.setAction(ActionPermit());
    FiltersGroup group(0);
    group.setType(GROUP_TYPE_3);
    group.insertEntry(entry);
    FiltersGroupPB message = group.convertToFiltersGroupPB();
    EXPECT_TRUE(checkMessage(message).empty());

    message.mutable_entries_(0)->add_matches_()->set_type_(99);
    message.mutable_entries_(0)->add_actions_()->set_type_(1000);
    expectBeginnings(checkMessage(message),
                     {"0: entry 4: match kind 99 is unknown; known are ",
                      "0: entry 4: action kind 1000 is unknown; known are "});
    message.set_type_(5);
    expectBeginnings(checkMessage(message),
                     {"0: entry 4: match kind 99 is unknown", "0: entry 4: action kind 1000 is un",
                      "0: entry 4: match kind MATCH_SRC_IPV4 is not admitted in a group of type "});
    // The stage takes egress policers.
    message.mutable_entries_(0)->clear_matches_();
    message.mutable_entries_(0)->clear_actions_();
    message.mutable_entries_(0)->set_policer_(policerAt(policer::STAGE_INGRESS).Serialize());
    message.set_stage_(3);
    expectBeginnings(checkMessage(message),
                     {"0: entry 4: a policer of stage STAGE_INGRESS is not admitted at group stage "
                      "GROUP_STAGE_3"});

    // At an unknown stage no entry is left; it is reported once, for the group.
    *message.add_entries_() = message.entries_(0);
    message.set_stage_(7);
    for (FiltersEntryPB& sent : *message.mutable_entries_())
        sent.set_policer_(policer::Policer().Serialize());
    expectBeginnings(checkMessage(message), {"0: group stage 7 is unknown; known are "});
}

} // namespace
