/**
 * The commands that look at groups: check, diff, json and stats.
 */
#include "filterctl_support.h"
#include "group_json.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include <fcntl.h>
#include <unistd.h>

namespace {

using namespace FiltersCommon;
using namespace FiltersCommon::test;
using namespace std::string_literals;

class FilterctlCommands : public Filterctl {
protected:
    FilterctlCommands() { write("group", bytesOf(goodGroup())); }

    /** Another exit status than 0 and nothing on standard output. */
    void expectStatus(int status, const std::string& arguments, const std::string& err) const
    {
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.status, status) << arguments;
        EXPECT_EQ(outcome.out, "") << arguments;
        EXPECT_EQ(outcome.err, err) << arguments;
    }
};

// ----------------------------------------------------------------------------------------- check

TEST_F(FilterctlCommands, CheckIsSilentWhereNothingIsRefused)
{
    for (const char* arguments :
         {"check good", "check - < good", "check < good", "check --allow-empty /dev/null",
          "check group", "check < group", "check good --group 7 --priority 8 --action deny",
          "check good --stage 1 --type 4", "check group --stage 2"})
        expectDone(arguments);
}

TEST_F(FilterctlCommands, CheckNamesEveryPlace)
{
    write("bad", GOOD_LINE + "@1.2.3.4/33\n# comment\n"s + GOOD_LINE + "\nbad\r\n");
    const auto expectPlaces = [this](const std::string& name, const std::string& arguments) {
        expectStatus(1, arguments,
                     "filterctl: " + name + ":2:1: source prefix: length is over 32\n" +
                         "filterctl: " + name + ":6:1: source prefix: missing '@'\n");
    };
    expectPlaces("bad", "check bad");
    expectPlaces("-", "check < bad");
    expectPlaces("bad", "import bad");
    const auto notInType0 = [](const std::string& place, const std::string& kind) {
        return "filterctl: " + place + ": match kind MATCH_" + kind +
               " is not admitted in a group of type GROUP_TYPE_0; none is admitted\n";
    };
    const auto rule = [&](const std::string& place) {
        return notInType0(place, "DST_L4_PORT") + notInType0(place, "SRC_IPV4") +
               notInType0(place, "DST_IPV4") + notInType0(place, "IP_PROTOCOL");
    };
    expectStatus(1, "check bad --type 0",
                 rule("bad:1") + "filterctl: bad:2:1: source prefix: length is over 32\n" +
                     rule("bad:4") + "filterctl: bad:6:1: source prefix: missing '@'\n");
    expectStatus(1, "check good --stage 4",
                 "filterctl: good: group stage 4 is unknown; known are GROUP_STAGE_0, "
                 "GROUP_STAGE_1, GROUP_STAGE_2 and GROUP_STAGE_3\n");
    expectStatus(1, "check group --type 0", rule("group: entry 0"));
}

TEST_F(FilterctlCommands, CheckAsksWhetherAGroupCouldBeElsewhere)
{
    expectDone("list group -o text");
    for (const std::string name : {"group", "text"}) {
        expectStatus(1, "check --stage 3 " + name,
                     "filterctl: " + name +
                         ": group type GROUP_TYPE_3 is not admitted at group stage GROUP_STAGE_3; "
                         "admitted are GROUP_TYPE_0 and GROUP_TYPE_5; the type is admitted at "
                         "GROUP_STAGE_0 and GROUP_STAGE_2\n");
        expectDone("check --stage 2 --group 7 --priority 7 --action deny " + name);
    }
}

TEST_F(FilterctlCommands, CheckCannotReadItsFile)
{
    fs::create_directory(file("folder"));
    expectRefused("check none", "none: cannot open: No such file or directory");
    expectRefused("check folder", "folder: cannot read: Is a directory");
}

// ------------------------------------------------------------------------------------------ diff

TEST_F(FilterctlCommands, DiffAnswersByItsStatus)
{
    for (const char* arguments :
         {"diff group group", "diff group - < group", "diff - group < group", "diff -q group group",
          "diff --content group group"})
        expectDone(arguments);
    write("changed", CHANGED_LINE);
    expectDone("import changed -o other");
    const std::string summary = "entries: 0 the same, 1 differing, 0 only in group, "
                                "0 only in other\n";
    const std::string text = "--- group\n"
                             "+++ other\n"
                             "  entry 0 differs\n"
                             "-   MATCH_DST_L4_PORT Port: 1024, Mask: 64512\n"
                             "+   MATCH_DST_L4_PORT Port: 1024, Mask: 65535\n" +
                             summary;
    Outcome outcome = run("diff group other");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, text);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(run("diff --brief group other").out, summary);
    EXPECT_EQ(run("diff group other --content").out.find("differs"), std::string::npos);
    outcome = run("diff group other -o text");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(read("text"), text);
}

TEST_F(FilterctlCommands, DiffInTrouble)
{
    expectRefused("diff group none", "none: cannot open: No such file or directory", "", 2);
    expectRefused("diff none group", "none: cannot open: No such file or directory", "", 2);
    expectRefused("diff group /dev/null",
                  "/dev/null: holds no rule; --allow-empty takes it all the same", "", 2);
    write("changed", CHANGED_LINE);
    expectDone("import changed -o other");
    expectRefused("diff group other > /dev/full", "-: cannot write: No space left on device", "",
                  2);
    expectRefused("diff group other -o none/text",
                  "none/text: cannot open: No such file or directory", "", 2);
}

// -------------------------------------------------------------------------------- json and stats

TEST_F(FilterctlCommands, Json)
{
    const std::string json = filterctl::jsonOf(goodGroup(), false);
    for (const char* arguments : {"json group", "json < group", "json - -o - < group"})
        expectDone(arguments, json);
    expectDone("json --compact group", filterctl::jsonOf(goodGroup(), true));
    expectDone("json group -o text");
    EXPECT_EQ(read("text"), json);
    expectDone("import --allow-empty /dev/null -o empty");
    expectDone("json --compact --allow-empty empty",
               "{\"group\":{\"id\":0,\"priority\":0,\"stage\":0,\"type\":3},"
               "\"readable\":{\"id\":0,\"priority\":0,\"stage\":\"GROUP_STAGE_0\",\"type\":\"GROUP_TYPE_3\","
               "\"entries\":[]}}\n");
}

constexpr char STATISTICS[] = "id                          0\n"
                              "priority                    0\n"
                              "stage                       GROUP_STAGE_0\n"
                              "type                        GROUP_TYPE_3\n"
                              "bytes                       100\n"
                              "entries                     1\n"
                              "policers                    0\n"
                              "counters                    0\n"
                              "matches                     4\n"
                              "MATCH_DST_L4_PORT           1\n"
                              "MATCH_SRC_IPV4              1\n"
                              "MATCH_DST_IPV4              1\n"
                              "MATCH_IP_PROTOCOL           1\n"
                              "actions                     1\n"
                              "ACTION_PERMIT               1\n";

TEST_F(FilterctlCommands, Stats)
{
    ASSERT_EQ(bytesOf(goodGroup()).size(), 100u);
    for (const char* arguments : {"stats group", "stats < group", "stats - < group"})
        expectDone(arguments, STATISTICS);
    expectDone("stats group -o text");
    EXPECT_EQ(read("text"), STATISTICS);

    FiltersGroup group(9);
    group.setPriority(8);
    group.setStage(GROUP_STAGE_2);
    group.setType(GROUP_TYPE_1);
    for (const int id : {1, 2, 3}) {
        FiltersEntry entry(static_cast<filtersEntryId_t>(id));
        if (id > 1)
            entry.setPolicer(policerAt(policer::STAGE_INGRESS));
        if (id > 2)
            entry.setCounter(Counter(1, COUNTER_TYPE_PACKETS));
        ASSERT_EQ(group.insertEntry(entry), FILTERS_OK);
    }
    write("group", bytesOf(group));
    expectDone("stats group", "id                          9\n"
                              "priority                    8\n"
                              "stage                       GROUP_STAGE_2\n"
                              "type                        GROUP_TYPE_1\n"
                              "bytes                       " +
                                  std::to_string(bytesOf(group).size()) +
                                  "\n"
                                  "entries                     3\n"
                                  "policers                    2\n"
                                  "counters                    1\n"
                                  "matches                     0\n"
                                  "actions                     0\n");
}

TEST_F(FilterctlCommands, FilesThatCannotBeReadOrWritten)
{
    for (const std::string command : {"json", "stats", "show", "list"}) {
        expectRefused(command + " none", "none: cannot open: No such file or directory");
        expectRefused(command + " group > /dev/full", "-: cannot write: No space left on device");
        expectRefused(command + " group >&-", "-: cannot write: Bad file descriptor");
    }
}

TEST_F(FilterctlCommands, LargeGroups)
{
    std::string lines;
    for (int line = 0; line < 16384; ++line)
        lines += "@10." + std::to_string(line >> 8) + "." + std::to_string(line & 0xFF) +
                 ".0/24 0.0.0.0/0 0:65535 80:80 0x06/0xFF\n";
    write("large", lines);
    expectDone("check large");
    expectDone("import large -o first");
    const std::size_t middle = lines.find('\n', lines.size() / 2) + 1;
    write("large", lines.substr(0, middle) + lines.substr(lines.find('\n', middle) + 1));
    expectDone("import large -o second");
    // All priorities differ.
    EXPECT_EQ(run("diff -q first second").out, "entries: 0 the same, 16383 differing, "
                                               "1 only in first, 0 only in second\n");
    EXPECT_EQ(run("diff -q --content first second").out,
              "entries: 16383 the same, 0 differing, 1 only in first, 0 only in second\n");
    EXPECT_NE(run("stats first").out.find("entries                     16384\n"),
              std::string::npos);
    expectDone("json first -o text");
    EXPECT_GT(fs::file_size(file("text")), 65536u);
}

} // namespace
