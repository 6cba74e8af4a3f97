#include "filterctl_support.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace {

using namespace FiltersCommon;
using namespace FiltersCommon::test;
using namespace std::string_literals;

constexpr std::array<const char*, 5> COLUMNS = {"@10.1.0.9/16", "192.168.7.0/24", "0 : 65535",
                                                "1024 : 2047", "0x06/0xFF"};

constexpr char SHOWN[] = "=FiltersGroup=\n"
                         "  ID: 0\n"
                         "  Priority: 0\n"
                         "  Stage: 0\n"
                         "  Type: 3\n"
                         "  =FiltersEntry=\n"
                         "    ID: 0\n"
                         "    Priority: 1\n"
                         "    =MatchDstL4Port=\n"
                         "      Match Type ID: 5\n"
                         "      Port: 1024\n"
                         "      Mask: 64512\n"
                         "    =MatchSrcIPv4=\n"
                         "      Match Type ID: 9\n"
                         "      IP: 10.1.0.9\n"
                         "      Mask: 255.255.0.0\n"
                         "    =MatchDstIPv4=\n"
                         "      Match Type ID: 10\n"
                         "      IP: 192.168.7.0\n"
                         "      Mask: 255.255.255.0\n"
                         "    =MatchIpProtocol=\n"
                         "      Match Type ID: 17\n"
                         "      Ip Protocol: 6\n"
                         "    =ActionPermit=\n"
                         "      Action Type ID: 0\n"
                         "      <no parameters>\n";

TEST_F(Filterctl, ImportsAndShowsThroughFilesAndStreams)
{
    const std::string bytes = bytesOf(goodGroup());
    for (const char* arguments :
         {"import good", "import good -o -", "import - < good", "import < good",
          "import -o - -- - < good", "import good -o other -o -"})
        expectDone(arguments, bytes);
    expectDone("import good -o group", "", "POSIXLY_CORRECT=1 ");
    EXPECT_EQ(read("group"), bytes);
    EXPECT_EQ(names(), (std::vector<std::string>{"good", "group"}));
    for (const char* arguments : {"show group", "show < group", "show - < group"})
        expectDone(arguments, SHOWN);
    expectDone("show group -o text");
    EXPECT_EQ(read("text"), SHOWN);
    expectDone("import --allow-empty /dev/null", "\x08\0\x10\0\x18\0\x20\x03"s);
}

TEST_F(Filterctl, Options)
{
    FiltersEntry entry = goodEntry();
    entry.deleteAction(ACTION_PERMIT);
    entry.setAction(ActionDeny());
    FiltersGroup group(65535);
    group.setPriority(65534);
    group.setStage(GROUP_STAGE_1);
    group.setType(GROUP_TYPE_4);
    group.insertEntry(entry);
    expectDone("import --group 65535 good --priority=65534 --stage 1 --type 4 --action deny",
               bytesOf(group));
    expectDone("import good --action permit", bytesOf(goodGroup()));
}

/** The help is what was published last; or it is published now, where the test is asked to. */
void expectGolden(const std::string& command, const std::string& help)
{
    const std::string file = GOLDEN_FOLDER "/help/" + command + ".txt";
    if (std::getenv("FILTER_COMMON_REWRITE_GOLDEN") != nullptr)
        std::ofstream(file) << help;
    std::ostringstream golden;
    golden << std::ifstream(file).rdbuf();
    EXPECT_EQ(help, golden.str());
}

/** All commands, each with the letters of its options. */
const std::pair<std::string, std::string> COMMANDS[] = {
    {"import", "oh"}, {"list", "oh"},  {"show", "oh"}, {"json", "oh"},  {"stats", "oh"},
    {"check", "h"},   {"diff", "oqh"}, {"add", "h"},   {"delete", "h"}, {"merge", "oh"},
};

/** The letter between quotes of the shell. */
std::string quoted(char letter) { return letter == '\'' ? "'\\''" : std::string(1, letter); }

TEST_F(Filterctl, Help)
{
    const Outcome generalOutcome = run("--help");
    EXPECT_EQ(generalOutcome.status, 0);
    EXPECT_EQ(generalOutcome.err, "");
    const std::string general = generalOutcome.out;
    EXPECT_EQ(general.substr(0, 17), "usage: filterctl ");
    for (const char* same : {"-h", "help"})
        expectDone(same, general);
    for (const auto& [command, letters] : COMMANDS) {
        EXPECT_NE(general.find("  filterctl " + command + " "), std::string::npos) << command;
        const Outcome outcome = run(command + " --help");
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.err, "");
        EXPECT_EQ(outcome.out.rfind("usage: filterctl " + command + " ", 0), 0u) << outcome.out;
        const std::size_t examples = outcome.out.find("\nExamples:\n");
        ASSERT_NE(examples, std::string::npos) << command;
        EXPECT_NE(outcome.out.find("filterctl " + command, examples), std::string::npos);
        expectGolden(command, outcome.out);
        for (const std::string& same : {command + " -h", "help " + command})
            expectDone(same, outcome.out);
    }
    expectGolden("filterctl", general);
}

TEST_F(Filterctl, Version)
{
    const Outcome outcome = run("--version");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_TRUE(std::regex_match(outcome.out, std::regex("filterctl \\d+\\.\\d+\\.\\d+\n")))
        << outcome.out;
}

/** No command takes a letter that its help does not name. */
TEST_F(Filterctl, LettersOfOptions)
{
#ifdef FILTER_COMMON_EMULATED
    GTEST_SKIP() << "an emulator is slow to start";
#endif
    for (const auto& [command, letters] : COMMANDS)
        for (char letter = '!'; letter <= '~'; ++letter)
            if (letter != '-' && letters.find(letter) == std::string::npos)
                expectWrongUsage(command, command + " '-" + quoted(letter) + "'",
                                 "there is no option '-"s + letter + "'");
}

TEST_F(Filterctl, WrongUsage)
{
    const std::tuple<const char*, const char*, const char*> wrong[] = {
        {"", "", "no command is given"},
        {"", "lsit", "there is no command 'lsit'; did you mean 'list'?"},
        {"", "help lsit", "there is no command 'lsit'; did you mean 'list'?"},
        {"", "'\033'", "there is no command '\\x1b'"},
        {"import", "import good good", "import takes one file"},
        {"show", "show good good", "show takes one file"},
        {"show", "show -x good", "there is no option '-x'"},
        {"diff", "diff -qx good good", "there is no option '-x'"},
        {"import", "import good -o", "the option '-o' needs an argument"},
        {"import", "import good --stage", "the option '--stage' needs an argument"},
        {"import", "import good --color", "there is no option '--color'"},
        {"import", "import good --color=x", "there is no option '--color'"},
        {"check", "check good good", "check takes one file"},
        {"check", "check good -o x", "there is no option '-o'"},
        {"json", "json --brief good", "there is no option '--brief'"},
        {"show", "show --help=x good", "the option '--help' takes no argument"},
        {"diff", "diff --brief=x good good", "the option '--brief' takes no argument"},
        {"diff", "diff good", "diff takes two files"},
        {"diff", "diff - -", "only one of the files can be read from standard input"},
        {"import", "import good --action drop", "--action takes permit or deny"},
        {"import", "import good --group 65536", "--group takes a number from 0 to 65535"},
        {"import", "import good --group ''", "--group takes a number from 0 to 65535"},
        {"import", "import good --priority -1", "--priority takes a number from 0 to 65535"},
        {"import", "import good --priority 1x", "--priority takes a number from 0 to 65535"},
        {"import", "import good --stage one",
         "--stage takes a number from -2147483648 to 2147483647"},
        {"import", "import good --type 2147483648",
         "--type takes a number from -2147483648 to 2147483647"},
        {"list", "list good --from text", "--from takes bytes, rules, list or json"},
        {"list", "list good --id 1-2", "--id takes a number from 0 to 65535"},
        {"list", "list good --match src_ip",
         "there is no match 'src_ip'; did you mean 'src_ipv4'?"},
        {"list", "list good --match dst_l4_port=http",
         "dst_l4_port takes a number from 0 to 65535, not 'http'"},
        {"list", "list good --match ''", "a word of rule text has no blanks, and is not empty"},
        {"list", "list good --match priority=1",
         "a word of rule text is wanted for a match or an action"},
        {"list", "list good --action permitted",
         "there is no action 'permitted'; did you mean 'permit'?"},
        {"add", "add", "add takes a file and rules"},
        {"delete", "delete good", "delete takes a file and identifiers of entries"},
        {"delete", "delete good x", "an ID is a number from 0 to 65535, which 'x' is not"},
        {"merge", "merge good", "merge takes two files or more"},
        {"merge", "merge - - good", "only one of the files can be read from standard input"},
        {"merge", "merge --above --below good good", "--above and --below exclude each other"},
    };
    for (const auto& [command, arguments, why] : wrong)
        expectWrongUsage(command, arguments, why);
}

struct Malformed {
    std::size_t column;
    std::string text; /**< replaces the column */
    std::string reason;

    std::string line() const
    {
        std::string line;
        for (std::size_t index = 0; index < COLUMNS.size(); ++index)
            line += (index == column ? text : COLUMNS[index]) + (index < 4 ? " " : "");
        return line;
    }
};

const std::vector<Malformed>& malformedLines()
{
    static const std::vector<Malformed> lines = {
        {0, "10.1.0.0/16", "source prefix: missing '@'"},
        {0, " #@10.1.0.0/16", "source prefix: missing '@'"},
        {0, "@ 10.1.0.0/16", "source prefix: not an address of four octets"},
        {0, "@/16", "source prefix: not an address of four octets"},
        {0, "@10.1.0/16", "source prefix: not an address of four octets"},
        {0, "@10.1.0.0.0/16", "source prefix: not an address of four octets"},
        {0, "@10..0.0/16", "source prefix: not an address of four octets"},
        {0, "@10.1.0./16", "source prefix: not an address of four octets"},
        {0, "@256.1.0.0/16", "source prefix: not an address of four octets"},
        {0, "@10.01.0.0/16", "source prefix: not an address of four octets"},
        {0, "@10.1.0.-1/16", "source prefix: not an address of four octets"},
        {0, "@10.1.0.0\0/16"s, "source prefix: not an address of four octets"},
        {0, "@10.1.0.0", "source prefix: missing length"},
        {0, "@10.1.0.0/", "source prefix: length is not a number"},
        {0, "@10.1.0.0/16/8", "source prefix: length is not a number"},
        {0, "@10.1.0.0/-1", "source prefix: length is not a number"},
        {0, "@10.1.0.0/33", "source prefix: length is over 32"},
        {0, "@10.1.0.0/18446744073709551616", "source prefix: length is over 32"},
        {1, "@192.168.7.0/24", "destination prefix: not an address of four octets"},
        {1, "192.168.7.0", "destination prefix: missing length"},
        {1, "192.168.7.0/x", "destination prefix: length is not a number"},
        {1, "192.168.7.0/240", "destination prefix: length is over 32"},
        {2, ": 65535", "source port range: low port is not a number"},
        {2, "-1 : 65535", "source port range: low port is not a number"},
        {2, "0~: 65535", "source port range: low port is not a number"},
        {2, "0x0 : 65535", "source port range: low port is not a number"},
        {2, "65536 : 65536", "source port range: low port is over 65535"},
        {2, "4294967296 : 65535", "source port range: low port is over 65535"},
        {2, "0 65535", "source port range: missing ':'"},
        {2, "0 - 65535", "source port range: missing ':'"},
        {2, "0 : any", "source port range: high port is not a number"},
        {2, "0 : 65536", "source port range: high port is over 65535"},
        {2, "0 : 1:2", "source port range: high port is not a number"},
        {2, "2 : 1", "source port range: low port is above high port"},
        {2, "", "destination port range: low port is not a number"},
        {3, "x : 1", "destination port range: low port is not a number"},
        {3, "70000 : 1", "destination port range: low port is over 65535"},
        {3, "1024", "destination port range: missing ':'"},
        {3, "1024 : 1024\r", "destination port range: high port is not a number"},
        {3, "1024 : 99999", "destination port range: high port is over 65535"},
        {3, "1024 : 1023", "destination port range: low port is above high port"},
        {4, "tcp", "protocol: value is not 0x and hexadecimal digits"},
        {4, "6/0xFF", "protocol: value is not 0x and hexadecimal digits"},
        {4, "0X06/0xFF", "protocol: value is not 0x and hexadecimal digits"},
        {4, "0x/0xFF", "protocol: value is not 0x and hexadecimal digits"},
        {4, "0x0G/0xFF", "protocol: value is not 0x and hexadecimal digits"},
        {4, "0x100/0xFF", "protocol: value is over 0xFF"},
        {4, "0x100000006/0xFF", "protocol: value is over 0xFF"},
        {4, "0x06", "protocol: missing mask"},
        {4, "0x06 /0xFF", "protocol: missing mask"},
        {4, "0x06/", "protocol: mask is not 0x and hexadecimal digits"},
        {4, "0x06/255", "protocol: mask is not 0x and hexadecimal digits"},
        {4, "0x06/0x0F", "protocol: mask is neither 0x00 nor 0xFF"},
        {4, "0x06/0x1FF", "protocol: mask is neither 0x00 nor 0xFF"},
        {4, "0x06/0x1000000FF", "protocol: mask is neither 0x00 nor 0xFF"},
    };
    return lines;
}

TEST_F(Filterctl, MalformedLinesLeaveTheTargetAlone)
{
    write("target", "kept");
    for (const Malformed& malformed : malformedLines()) {
        write("bad", "# comment\n\n"s + GOOD_LINE + malformed.line() + "\n");
        const Outcome outcome = run("import bad -o target");
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.out, "");
        EXPECT_EQ(std::regex_replace(outcome.err, std::regex(":4:\\d+:"), ":4:COLUMN:"),
                  "filterctl: bad:4:COLUMN: " + malformed.reason + "\n");
    }
    const std::string last = ":4:51: " + malformedLines().back().reason;
    expectRefused("import bad -o new", "bad" + last);
    expectRefused("import - < bad", "-" + last);
    EXPECT_EQ(read("target"), "kept");
}

TEST_F(Filterctl, RefusalsOfTheGroup)
{
    const std::pair<const char*, const char*> refused[] = {
        {"--stage 4", "good: group stage 4 is unknown; known are "},
        {"--stage -1", "good: group stage -1 is unknown; known are "},
        {"--type 10", "good: group type 10 is unknown; known are "},
        {"--stage 3", "good: group type GROUP_TYPE_3 is not admitted at group stage "},
        {"--type 0", "good:1: match kind MATCH_DST_L4_PORT is not admitted in a group of type "},
    };
    for (const auto& [options, why] : refused) {
        const Outcome outcome = run("import good -o new "s + options);
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.err.rfind("filterctl: "s + why, 0), 0u) << outcome.err;
        EXPECT_FALSE(fs::exists(file("new")));
    }
}

TEST_F(Filterctl, AGroupHoldsAtMost65536Entries)
{
    std::string full;
    for (int line = 0; line < 65536; ++line)
        full += "@0.0.0.0/0 0.0.0.0/0 0:65535 0:65535 0x00/0x00\n";
    write("full", full);
    expectDone("import full -o group");
    const FiltersGroup group(read("group"));
    ASSERT_EQ(group.getEntriesRef().size(), 65536u);
    EXPECT_EQ(group.getEntriesRef().at(0).getPriority(), 65536u);
    EXPECT_EQ(group.getEntriesRef().at(65535).getPriority(), 1u);
    write("over", "\n" + full + GOOD_LINE);
    expectRefused("import over -o new", "over:65538: a group holds at most 65536 entries");

    // Each line takes 30 times 30 entries.
    full.clear();
    for (int line = 0; line < 73; ++line)
        full += "@0.0.0.0/0 0.0.0.0/0 1:65534 1:65534 0x00/0x00\n";
    write("over", full);
    expectRefused("import over", "over:73: a group holds at most 65536 entries");
}

TEST_F(Filterctl, FilesThatCannotBeReadOrWritten)
{
    fs::create_directory(file("folder"));
    expectRefused("import none", "none: cannot open: No such file or directory");
    expectRefused("import folder", "folder: cannot read: Is a directory");
    expectRefused("import - <&-", "-: cannot read: Bad file descriptor");
    expectRefused("import good -o folder", "folder: cannot open: Is a directory");
    expectRefused("import good -o none/new", "none/new: cannot open: No such file or directory");
    expectRefused("import good -o good/new", "good/new: cannot open: Not a directory");
    expectRefused("import good -o ''", ": cannot replace: No such file or directory");
    expectRefused("import good -o /dev/full", "/dev/full: cannot write: No space left on device");
    for (const char* arguments : {"import good", "--help", "show group"}) {
        write("group", bytesOf(goodGroup()));
        expectRefused(arguments + " > /dev/full"s, "-: cannot write: No space left on device");
        expectRefused(arguments + " >&-"s, "-: cannot write: Bad file descriptor");
    }
    fs::create_symlink("other", file("one"));
    fs::create_symlink("one", file("other"));
    expectRefused("import good -o one", "one: cannot open: Too many levels of symbolic links");
    write("many", "@0.0.0.0/0 0.0.0.0/0 1:65534 1:65534 0x00/0x00\n");
    // What a program that counts coverage writes at its end, the limit does not hold for.
    expectRefused("import many -o group", "group: cannot write: File too large",
                  "export LLVM_PROFILE_FILE=/dev/null; ulimit -f 1; ");
    EXPECT_EQ(read("group"), bytesOf(goodGroup()));
}

TEST_F(Filterctl, MemoryRunsOut)
{
    const std::string limit = "ulimit -v 100000; ";
    if (run("--help", limit).status != 0)
        GTEST_SKIP() << "the program needs more address space than the test leaves to it";
    write("large", "");
    fs::resize_file(file("large"), 1 << 30);
    expectRefused("import large", "out of memory", limit);
}

TEST_F(Filterctl, TheTargetKeepsItsNatureAndPermissions)
{
    const std::string bytes = bytesOf(goodGroup());
    const auto permissions = [this](const char* name) {
        return static_cast<unsigned>(fs::status(file(name)).permissions());
    };
    const std::pair<const char*, unsigned> masks[] = {
        {"umask 0; ", 0666}, {"umask 022; ", 0644}, {"umask 077; ", 0600}, {"umask 777; ", 0}};
    for (const auto& [mask, expected] : masks) {
        expectDone("import good -o new", "", mask);
        EXPECT_EQ(permissions("new"), expected);
        fs::remove(file("new"));
    }
    expectDone("import good -o new");
    fs::permissions(file("new"), static_cast<fs::perms>(0604));
    fs::create_directory(file("folder"));
    fs::create_symlink("../new", file("folder/link"));
    fs::create_symlink("folder/link", file("link"));
    write("new", "old");
    expectDone("import good -o link");
    EXPECT_EQ(read("new"), bytes);
    EXPECT_EQ(permissions("new"), 0604u);
    fs::remove(file("new"));
    expectDone("import good -o link");
    EXPECT_EQ(read("new"), bytes);
    EXPECT_TRUE(fs::is_symlink(file("link")) && fs::is_symlink(file("folder/link")));

    expectDone("import good -o /dev/null");
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
    expectDone("import good -o pipe; wait", bytes, "mkfifo pipe; cat pipe & ");
    EXPECT_TRUE(fs::is_fifo(file("pipe")));
}

TEST_F(Filterctl, WhatIsReadIsNotReplaced)
{
    const std::string list = read("good");
    fs::create_symlink("good", file("link"));
    for (const std::string output : {"good", "./good", "link"})
        for (const std::string command : {"import good", "list good", "json good", "show good",
                                          "merge --renumber /dev/null good --allow-empty"})
            expectRefused(command + " -o " + output,
                          output + ": is an input of this command, too; write to another file");
    EXPECT_EQ(read("good"), list);
    expectDone("import --allow-empty /dev/null -o /dev/null");
}

} // namespace
