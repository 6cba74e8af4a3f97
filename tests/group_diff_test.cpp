#include "group_diff.h"

#include "description_text.h"
#include "named_entries.h"
#include "wire_text.h"

#include <filter_names.h>

#include <gtest/gtest.h>

#include <iomanip>
#include <map>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <type_traits>
#include <vector>

namespace {

using namespace filterctl;
using namespace FiltersCommon;
using namespace FiltersCommon::test;
using namespace std::string_literals;

/** A group that takes what the tests put into it. */
FiltersGroup emptyGroup()
{
    FiltersGroup group(1);
    group.setType(GROUP_TYPE_3);
    return group;
}

FiltersEntry entryOf(filtersEntryId_t id, std::uint32_t priority, std::uint16_t port)
{
    FiltersEntry entry(id);
    entry.setPriority(priority);
    entry.setMatch(MatchDstL4Port(port, 0xFFFF));
    entry.setAction(ActionPermit());
    return entry;
}

FiltersGroup groupWith(const FiltersEntry& entry)
{
    FiltersGroup group = emptyGroup();
    EXPECT_EQ(group.insertEntry(entry), FILTERS_OK);
    return group;
}

std::string diff(const FiltersGroup& a, const FiltersGroup& b, const DiffOptions& options = {})
{
    return diffGroups({"a", a}, {"b", b}, options);
}

constexpr char HEADER[] = "--- a\n+++ b\n";

TEST(GroupDiff, NothingIsSaidOfTheSameGroups)
{
    for (const Named<FiltersGroup>& sample : groupSamples())
        for (const bool byContent : {false, true})
            for (const bool brief : {false, true}) {
                DiffOptions options;
                options.byContent = byContent;
                options.brief = brief;
                EXPECT_EQ(diff(*sample.object, *sample.object, options), "") << sample.name;
            }
}

TEST(GroupDiff, SomethingIsSaidOfDifferentGroups)
{
    for (const Named<FiltersGroup>& a : groupSamples())
        for (const Named<FiltersGroup>& b : groupSamples())
            EXPECT_EQ(diff(*a.object, *b.object).empty(), *a.object == *b.object)
                << a.name << " " << b.name;
}

TEST(GroupDiff, WhatGroupsHoldBesideEntries)
{
    FiltersGroup a = emptyGroup();
    FiltersGroup b(2);
    b.setPriority(7);
    b.setStage(GROUP_STAGE_3);
    b.setType(GROUP_TYPE_5);
    EXPECT_EQ(diff(a, b), HEADER + "  group\n"s +
                              "-   id 1\n"
                              "+   id 2\n"
                              "-   priority 0\n"
                              "+   priority 7\n"
                              "-   stage GROUP_STAGE_0\n"
                              "+   stage GROUP_STAGE_3\n"
                              "-   type GROUP_TYPE_3\n"
                              "+   type GROUP_TYPE_5\n"
                              "group differs; entries: 0 the same, 0 differing, "
                              "0 only in a, 0 only in b\n");
}

TEST(GroupDiff, EntriesOfOneIdentifier)
{
    FiltersGroup a = emptyGroup();
    FiltersGroup b = emptyGroup();
    for (const int id : {1, 2, 4})
        a.insertEntry(entryOf(static_cast<filtersEntryId_t>(id), 10, 80));
    b.insertEntry(entryOf(2, 10, 80));
    FiltersEntry changed = entryOf(4, 11, 81);
    changed.setMatch(MatchIpProtocol(6));
    changed.setCounter(Counter(12, COUNTER_TYPE_OCTETS));
    changed.deleteAction(ACTION_PERMIT);
    changed.setAction(ActionDeny());
    b.insertEntry(changed);
    b.insertEntry(entryOf(5, 9, 22));
    const std::string summary = "entries: 1 the same, 1 differing, 1 only in a, 1 only in b\n";
    const std::string expected = HEADER + "- entry 1 only in a\n"s +
                                 "-   priority 10\n"
                                 "-   MATCH_DST_L4_PORT Port: 80, Mask: 65535\n"
                                 "-   ACTION_PERMIT\n"
                                 "  entry 4 differs\n"
                                 "-   priority 10\n"
                                 "+   priority 11\n"
                                 "+   counter ID: 12, Type: Octets\n"
                                 "-   MATCH_DST_L4_PORT Port: 80, Mask: 65535\n"
                                 "+   MATCH_DST_L4_PORT Port: 81, Mask: 65535\n"
                                 "+   MATCH_IP_PROTOCOL Ip Protocol: 6\n"
                                 "-   ACTION_PERMIT\n"
                                 "+   ACTION_DENY\n"
                                 "+ entry 5 only in b\n"
                                 "+   priority 9\n"
                                 "+   MATCH_DST_L4_PORT Port: 22, Mask: 65535\n"
                                 "+   ACTION_PERMIT\n" +
                                 summary;
    EXPECT_EQ(diff(a, b), expected);
    DiffOptions brief;
    brief.brief = true;
    EXPECT_EQ(diff(a, b, brief), summary);
    b.setPriority(1);
    EXPECT_EQ(diff(a, b, brief), "group differs; " + summary);
}

TEST(GroupDiff, Colors)
{
    const FiltersGroup a = groupWith(entryOf(1, 1, 1));
    const FiltersGroup b = groupWith(entryOf(1, 2, 1));
    DiffOptions options;
    options.painter = Painter(true);
    EXPECT_EQ(diff(a, b, options), "\033[1m--- a\033[0m\n"
                                   "\033[1m+++ b\033[0m\n"
                                   "  entry 1 differs\n"
                                   "\033[31m-   priority 1\033[0m\n"
                                   "\033[32m+   priority 2\033[0m\n"
                                   "entries: 0 the same, 1 differing, 0 only in a, 0 only in b\n");
}

// ----------------------------------------------------------------------------- what an entry holds

/** A group of the first stage and type that admit both entries; none for entries that none admits.
 */
std::optional<FiltersGroup> groupFor(const FiltersEntry& a, const FiltersEntry& b)
{
    for (const auto& [stage, types] : FiltersGroup::StageTypesDescription_)
        for (const filtersGroupType_t type : types) {
            FiltersGroup group(0);
            group.setStage(stage);
            group.setType(type);
            if (group.insertEntry(a) == FILTERS_OK && group.insertEntry(b) == FILTERS_OK) {
                group.removeEntry(0);
                return group;
            }
        }
    return std::nullopt;
}

/** The lines between the header of an entry that differs and the line that counts. */
std::optional<std::string> changes(const FiltersEntry& a, const FiltersEntry& b)
{
    const auto group = groupFor(a, b);
    if (!group)
        return std::nullopt;
    FiltersGroup groups[] = {*group, *group};
    groups[0].insertEntry(a);
    groups[1].insertEntry(b);
    const std::string text = diff(groups[0], groups[1]);
    const std::string before = HEADER + "  entry 0 differs\n"s;
    EXPECT_EQ(text.substr(0, before.size()), before);
    return text.substr(before.size(), text.find("entries: ") - before.size());
}

/** Compares with an entry that holds nothing; counts the samples that a group admits. */
template <class Base, class Name>
std::size_t expectNamed(const std::vector<Sample<Base>>& samples, Name&& nameOfKind)
{
    std::size_t seen = 0;
    for (const Sample<Base>& sample : samples) {
        FiltersEntry with;
        std::map<decltype(sample.object->getType()), std::unique_ptr<Base>> map;
        map[sample.object->getType()] = sample.copy();
        if constexpr (std::is_same_v<Base, Match>)
            with.copyMatches(map);
        else
            with.copyActions(map);
        const auto added = changes(FiltersEntry(), with);
        if (!added)
            continue;
        ++seen;
        const std::string fields = textOf(describe(*sample.object));
        const std::string line =
            nameOfKind(sample.object->getType()) + (fields.empty() ? "" : " " + fields) + "\n";
        EXPECT_EQ(added, "+   " + line) << sample.name;
        EXPECT_EQ(changes(with, FiltersEntry()), "-   " + line) << sample.name;
    }
    return seen;
}

TEST(GroupDiff, EachKind)
{
    // No type admits a source of IPv6 or an untagged packet.
    EXPECT_EQ(expectNamed(matchSamples(), filtersMatchName), matchSamples().size() - 2);
    EXPECT_EQ(expectNamed(actionSamples(), filtersActionName), actionSamples().size());
}

TEST(GroupDiff, Policers)
{
    FiltersEntry without;
    FiltersEntry with;
    with.setPolicer(policerOf(policer::STAGE_INGRESS, policer::Mode::FLOW));
    const std::string text =
        "   policer Policer Id: 17, Stage: Ingress, Mode: Flow, CIR: 1000, CBS: 2000, "
        "EBS: 3000, EIR: 4000, PBS: 5000, PIR: 6000, "
        "Actions: [{Color: Red, Action: Drop}, {Color: Yellow, Action: Set PCP, PCP: 3}, "
        "{Color: Green, Action: Set DSCP, DSCP: 46}]\n";
    EXPECT_EQ(changes(without, with), "+" + text);
    EXPECT_EQ(changes(with, without), "-" + text);
}

/** Two hexadecimal digits for each byte. */
std::string hexadecimal(const std::string& bytes)
{
    std::ostringstream text;
    text << std::hex << std::setfill('0');
    for (const char byte : bytes)
        text << std::setw(2) << static_cast<unsigned>(static_cast<unsigned char>(byte));
    return text.str();
}

TEST(WireText, OfAPolicerIsItsBytes)
{
    const policer::Policer policer(0xFEDCBA98, policer::STAGE_EGRESS, policer::Mode(), {});
    EXPECT_EQ(wireTextOf(policer), "bytes " + hexadecimal(policer.Serialize()));
}

TEST(GroupDiff, WhatNamesDoNotShow)
{
    // Two interfaces of one name.
    FiltersEntry a;
    FiltersEntry b;
    a.setMatch(MatchIngressPorts({limId(1, 0, 0, 5)}));
    b.setMatch(MatchIngressPorts({limId(1, 7, 0, 5)}));
    EXPECT_EQ(changes(a, b), "-   MATCH_INGRESS_PORTS type_: 1 ports_: 16777221\n"
                             "+   MATCH_INGRESS_PORTS type_: 1 ports_: 17235973\n");
    a = FiltersEntry();
    b = FiltersEntry();
    a.setAction(ActionRedirect(limId(1, 0, 0, 5)));
    b.setAction(ActionRedirect(limId(1, 7, 0, 5)));
    EXPECT_EQ(changes(a, b), "-   ACTION_REDIRECT type_: 11 ports_: 16777221\n"
                             "+   ACTION_REDIRECT type_: 11 ports_: 17235973\n");

    // A value that the policer's action does not use.
    const auto policerWith = [](std::uint8_t value) {
        return policer::Policer(7, policer::STAGE_INGRESS, policer::Mode(),
                                {{policer::Action::RED, policer::Action::DROP, value}});
    };
    a = FiltersEntry();
    b = FiltersEntry();
    a.setPolicer(policerWith(1));
    b.setPolicer(policerWith(2));
    EXPECT_EQ(changes(a, b), "-   policer " + wireTextOf(policerWith(1)) + "\n+   policer " +
                                 wireTextOf(policerWith(2)) + "\n");
}

// ------------------------------------------------------------------------------------- by content

TEST(GroupDiff, RenumberedEntriesHaveTheSameContent)
{
    FiltersGroup a = emptyGroup();
    FiltersGroup b = emptyGroup();
    a.insertEntry(entryOf(0, 3, 80));
    a.insertEntry(entryOf(1, 2, 81));
    a.insertEntry(entryOf(2, 2, 80)); // the same again, once too often
    a.insertEntry(entryOf(3, 1, 82));
    b.insertEntry(entryOf(0, 4, 22));
    b.insertEntry(entryOf(1, 3, 82));
    b.insertEntry(entryOf(2, 2, 80));
    b.insertEntry(entryOf(3, 1, 81));
    b.insertEntry(entryOf(4, 1, 82)); // here it is this one
    DiffOptions options;
    options.byContent = true;
    EXPECT_EQ(diff(a, b, options), HEADER + "+ entry 0 only in b\n"s +
                                       "+   priority 4\n"
                                       "+   MATCH_DST_L4_PORT Port: 22, Mask: 65535\n"
                                       "+   ACTION_PERMIT\n"
                                       "- entry 2 only in a\n"
                                       "-   priority 2\n"
                                       "-   MATCH_DST_L4_PORT Port: 80, Mask: 65535\n"
                                       "-   ACTION_PERMIT\n"
                                       "+ entry 4 only in b\n"
                                       "+   priority 1\n"
                                       "+   MATCH_DST_L4_PORT Port: 82, Mask: 65535\n"
                                       "+   ACTION_PERMIT\n"
                                       "entries: 3 the same, 0 differing, 1 only in a, "
                                       "2 only in b\n");
    // One of each under the same identifier.
    EXPECT_EQ(diff(groupWith(entryOf(1, 1, 1)), groupWith(entryOf(1, 1, 2)), options),
              HEADER + "- entry 1 only in a\n"s +
                  "-   priority 1\n"
                  "-   MATCH_DST_L4_PORT Port: 1, Mask: 65535\n"
                  "-   ACTION_PERMIT\n"
                  "+ entry 1 only in b\n"
                  "+   priority 1\n"
                  "+   MATCH_DST_L4_PORT Port: 2, Mask: 65535\n"
                  "+   ACTION_PERMIT\n"
                  "entries: 0 the same, 0 differing, 1 only in a, 1 only in b\n");
}

} // namespace
