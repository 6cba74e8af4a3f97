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
         {"check good", "check - < good", "check < good", "check /dev/null", "check group",
          "check < group", "check good --group 7 --priority 8 --action deny",
          "check good --stage 1 --type 4", "check group --stage 2"})
        expectDone(arguments);
}

TEST_F(FilterctlCommands, CheckNamesEveryPlace)
{
    write("bad", "@1.2.3.4/33\n# comment\n"s + GOOD_LINE + "\nbad\r\n");
    expectStatus(1, "check bad",
                 "bad:1: source prefix: length is over 32\n"
                 "bad:5: source prefix: missing '@'\n");
    expectStatus(1, "check < bad",
                 "-:1: source prefix: length is over 32\n"
                 "-:5: source prefix: missing '@'\n");
    const std::string notInType0 = " is not admitted in a group of type GROUP_TYPE_0; "
                                   "none is admitted\n";
    expectStatus(1, "check bad --type 0",
                 "bad:1: source prefix: length is over 32\n"
                 "bad:3: match kind MATCH_DST_L4_PORT" +
                     notInType0 + "bad:3: match kind MATCH_SRC_IPV4" + notInType0 +
                     "bad:3: match kind MATCH_DST_IPV4" + notInType0 +
                     "bad:3: match kind MATCH_IP_PROTOCOL" + notInType0 +
                     "bad:5: source prefix: missing '@'\n");
    expectStatus(1, "check good --stage 4",
                 "good: group stage 4 is unknown; known are GROUP_STAGE_0, GROUP_STAGE_1, "
                 "GROUP_STAGE_2 and GROUP_STAGE_3\n");
}

TEST_F(FilterctlCommands, CheckAsksWhatReadingAGroupLeavesOut)
{
    const std::string notInType0 = " is not admitted in a group of type GROUP_TYPE_0; "
                                   "none is admitted\n";
    expectStatus(1, "check group --type 0",
                 "group: entry 0: match kind MATCH_DST_L4_PORT" + notInType0 +
                     "group: entry 0: match kind MATCH_SRC_IPV4" + notInType0 +
                     "group: entry 0: match kind MATCH_DST_IPV4" + notInType0 +
                     "group: entry 0: match kind MATCH_IP_PROTOCOL" + notInType0);
    expectStatus(1, "check --stage 3 group",
                 "group: group type GROUP_TYPE_3 is not admitted at group stage GROUP_STAGE_3; "
                 "admitted are GROUP_TYPE_0 and GROUP_TYPE_5; the type is admitted at "
                 "GROUP_STAGE_0 and GROUP_STAGE_2\n");
    // A group that is cut is no access list.
    const std::string bytes = bytesOf(goodGroup());
    write("cut", bytes.substr(0, bytes.size() - 1));
    expectStatus(1, "check cut", "cut: holds no group\n");
}

TEST_F(FilterctlCommands, CheckCannotReadItsFile)
{
    fs::create_directory(file("folder"));
    expectRefused("check none", "none: cannot open: No such file or directory");
    expectRefused("check folder", "folder: cannot read: Is a directory");
}

// ------------------------------------------------------------------------------------------ diff

constexpr char CHANGED_LINE[] = "@10.1.0.9/16  192.168.7.0/24  0 : 65535  1024 : 1024  0x06/0xFF\n";

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
    expectRefused("diff group good", "good: holds no group", "", 2);
    write("changed", CHANGED_LINE);
    expectDone("import changed -o other");
    expectRefused("diff group other > /dev/full", "-: cannot write: No space left on device", "",
                  2);
    expectRefused("diff group other -o none/text",
                  "none/text: cannot open: No such file or directory", "", 2);
    const std::string hint = "\nTry 'filterctl --help'.\n";
    expectStatus(2, "diff - - < group",
                 "filterctl: diff reads one of its files from standard input, not both" + hint);
    expectStatus(2, "diff group", "filterctl: diff takes two files" + hint);
    expectStatus(2, "diff group group group", "filterctl: diff takes two files" + hint);
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
    expectDone("import /dev/null -o empty");
    expectDone("json --compact empty",
               "{\"group\":{\"id\":0,\"priority\":0,\"stage\":0,\"type\":3},"
               "\"readable\":{\"id\":0,\"priority\":0,\"stage\":\"GROUP_STAGE_0\",\"type\":\"GROUP_TYPE_3\"}}\n");
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

TEST_F(FilterctlCommands, JsonAndStatsRefuseAsShowDoes)
{
    for (const std::string command : {"json", "stats", "show"}) {
        expectRefused(command + " good", "good: holds no group");
        expectRefused(command + " none", "none: cannot open: No such file or directory");
        expectRefused(command + " group > /dev/full", "-: cannot write: No space left on device");
        expectRefused(command + " group >&-", "-: cannot write: Bad file descriptor");
        expectStatus(2, command + " group group",
                     "filterctl: " + command + " takes one file\nTry 'filterctl --help'.\n");
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

// ---------------------------------------------------------------------------------------- colours

/** A terminal that keeps what is written to it. */
class Terminal {
public:
    Terminal() : master_(::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK))
    {
        if (master_ < 0 || ::grantpt(master_) != 0 || ::unlockpt(master_) != 0)
            return;
        name_ = ::ptsname(master_);
        // What was written is kept while somebody has the terminal open.
        slave_ = ::open(name_.c_str(), O_RDWR | O_NOCTTY);
    }
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;
    ~Terminal()
    {
        ::close(slave_);
        ::close(master_);
    }

    /** Not where the machine has no terminals to give, as in some containers. */
    bool isOpen() const { return slave_ >= 0; }

    const std::string& name() const { return name_; }

    std::string takeText() const
    {
        std::string text;
        char bytes[4096];
        for (ssize_t count; (count = ::read(master_, bytes, sizeof bytes)) > 0;)
            text.append(bytes, static_cast<std::size_t>(count));
        return text;
    }

private:
    int master_;
    int slave_ = -1;
    std::string name_;
};

class FilterctlColors : public FilterctlCommands {
protected:
    FilterctlColors()
    {
        write("changed", CHANGED_LINE);
        EXPECT_EQ(run("import changed -o other").status, 0);
    }

    void SetUp() override
    {
        if (!terminal_.isOpen())
            GTEST_SKIP() << "there is no terminal";
    }

    bool colors(const std::string& arguments, const std::string& environment) const
    {
        const Outcome outcome =
            run(arguments, "unset NO_COLOR; TERM=xterm; " + environment + " export TERM; ");
        return (terminal_.takeText() + outcome.out + outcome.err + read("text")).find('\033') !=
               std::string::npos;
    }

    const Terminal terminal_;
};

TEST_F(FilterctlColors, GoToTerminalsThatWantThem)
{
    write("text", "");
    const std::string terminal = terminal_.name();
    for (const std::string& arguments :
         {"diff group other > " + terminal, "check --type 0 good 2> " + terminal}) {
        EXPECT_TRUE(colors(arguments, ""));
        EXPECT_TRUE(colors(arguments, "export NO_COLOR=;"));
        EXPECT_FALSE(colors(arguments, "export NO_COLOR=1;"));
        EXPECT_FALSE(colors(arguments, "export NO_COLOR=0;"));
        EXPECT_FALSE(colors(arguments, "TERM=dumb;"));
        EXPECT_FALSE(colors(arguments, "TERM=;"));
        EXPECT_FALSE(colors(arguments, "unset TERM;"));
    }
}

TEST_F(FilterctlColors, GoNowhereElse)
{
    const std::string terminal = terminal_.name();
    EXPECT_FALSE(colors("diff group other", ""));
    EXPECT_FALSE(colors("diff group other 2> " + terminal, ""));
    EXPECT_FALSE(colors("diff group other -o text > " + terminal, ""));
    EXPECT_FALSE(colors("check --type 0 good", ""));
    EXPECT_FALSE(colors("check --type 0 good > " + terminal, ""));
    for (const char* command : {"show group", "json group", "stats group", "--help"})
        EXPECT_FALSE(colors(command + (" > " + terminal), ""));
}

TEST_F(FilterctlColors, WhatATerminalGets)
{
    const std::string before = "unset NO_COLOR; export TERM=xterm; ";
    EXPECT_EQ(run("diff group other > " + terminal_.name(), before).status, 1);
    EXPECT_EQ(terminal_.takeText(),
              "\033[1m--- group\033[0m\r\n"
              "\033[1m+++ other\033[0m\r\n"
              "  entry 0 differs\r\n"
              "\033[31m-   MATCH_DST_L4_PORT Port: 1024, Mask: 64512\033[0m\r\n"
              "\033[32m+   MATCH_DST_L4_PORT Port: 1024, Mask: 65535\033[0m\r\n"
              "entries: 0 the same, 1 differing, 0 only in group, 0 only in other\r\n");
    write("bad", "bad\n");
    EXPECT_EQ(run("check bad 2> " + terminal_.name(), before).status, 1);
    EXPECT_EQ(terminal_.takeText(), "\033[1mbad:1:\033[0m source prefix: missing '@'\r\n");
}

} // namespace
