/**
 * The commands that change groups: add, delete and merge.
 */
#include "filterctl_support.h"

#include <filter_rule_text.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <utility>

namespace {

using namespace FiltersCommon;
using namespace FiltersCommon::test;
using namespace std::string_literals;

constexpr char TEXT[] = "# The guests.\n"
                        "group 7   type=3\n"
                        "\n"
                        "10 priority=0x20 dst_l4_port=53 then permit  # names\n"
                        "20 dst_l4_port=1024-3071\tthen deny\n"
                        "  src_ipv4=10.0.0.0/8 then permit\n"
                        "ip_protocol=tcp then permit\n"
                        "9 then deny\n";

class FilterctlChanges : public Filterctl {
protected:
    FilterctlChanges()
    {
        write("text", TEXT);
        EXPECT_EQ(run("import text -o bytes").status, 0);
    }

    /** The text file holds what stood in it before, with another part in the place of one. */
    void expectText(const std::string& old, const std::string& part) const
    {
        std::string text = TEXT;
        text.replace(text.find(old), old.size(), part);
        EXPECT_EQ(read("text"), text);
    }

    /** Both files hold the same group. */
    void expectSame() const { expectDone("diff text bytes"); }
};

// ------------------------------------------------------------------------------------------- add

TEST_F(FilterctlChanges, AddPutsALineAtTheEnd)
{
    for (const std::string name : {"text", "bytes"}) {
        expectDone("add " + name + " 30 dst_l4_port=1-2 then deny");
        expectDone("add " + name + " '40 all then permit # mine' '  50 all then'");
        expectDone("add " + name + " priority=4 all then");
        expectDone("add " + name, "", "printf '# more\\n\\n60 then\\nthen permit' | ");
        expectDone("add " + name + " 70 then -", "", "echo 71 then permit | ");
    }
    EXPECT_EQ(read("text"), TEXT + "30 dst_l4_port=1-2 then deny\n"
                                   "40 all then permit # mine\n"
                                   "  50 all then\n"
                                   "51 priority=4 all then\n"
                                   "# more\n\n60 then\n61 then permit\n"
                                   "70 then\n71 then permit\n"s);
    expectSame();
    EXPECT_EQ(FiltersGroup(read("bytes")).getEntriesRef().count(31), 1u);
}

TEST_F(FilterctlChanges, AddKeepsTheEndsOfLines)
{
    write("crlf", "group 1\r\n1 then\r\n2 then");
    expectDone("add crlf 3 then deny");
    EXPECT_EQ(read("crlf"), "group 1\r\n1 then\r\n2 then\r\n3 then deny\r\n");
    write("mark", "\xEF\xBB\xBF# first\ngroup 1 type=3\nthen");
    expectDone("add mark all then");
    EXPECT_EQ(read("mark"), "\xEF\xBB\xBF# first\ngroup 1 type=3\nthen\n1 all then\n");
    write("header", "group 1 type=3\n");
    expectDone("add --allow-empty header all then");
    EXPECT_EQ(read("header"), "group 1 type=3\n0 all then\n");
    write("empty", "");
    expectDone("add --allow-empty empty then permit");
    EXPECT_EQ(read("empty"), "0 then permit\n");
}

TEST_F(FilterctlChanges, AddRefusesAllOrNothing)
{
    const std::string bytes = read("bytes");
    for (const std::string name : {"text", "bytes"}) {
        expectRefused("add " + name + " 30 then permt",
                      "RULE:1:9: there is no action 'permt'; did you mean 'permit'?");
        expectRefused("add " + name + " '30 then' '10 then'",
                      "RULE:2:1: identifier 10 is taken by an entry in front of this one");
        expectRefused("add " + name + " group 8",
                      "RULE:1:1: the header stands in front of all entries, and only once");
        expectRefused("add " + name,
                      "-:2:9: there is no action 'x'; the nearest word is 'all'\n"
                      "filterctl: -:4:1: identifier 30 is taken by an entry in front of this one",
                      "printf '30 then\\n31 then x\\n\\n30 then\\n' | ");
        expectRefused("add " + name + " 30 then x -",
                      "RULE:1:9: there is no action 'x'; the nearest word is 'all'\n"
                      "filterctl: -:1:9: there is no action 'y'; the nearest word is 'deny'",
                      "echo 31 then y | ");
        expectRefused("add " + name + " < /dev/null", "-: holds no rule");
        expectRefused("add " + name + " '# comment'", "RULE: holds no rule");
    }
    const Outcome outcome = run("add text 30 vlan_info=1 then");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.err, "");
    EXPECT_EQ(read("text"), TEXT);
    EXPECT_EQ(read("bytes"), bytes);
}

TEST_F(FilterctlChanges, OnlyBytesAndRuleTextAreChangedInPlace)
{
    const std::string why = ": only bytes and rule text can be changed in place; 'filterctl list' "
                            "makes rule text of other forms";
    expectRefused("add good 1 then", "good" + why);
    expectRefused("delete good 0", "good" + why);
    EXPECT_EQ(read("good"), GOOD_LINE);
    expectRefused("add - 30 then < text", "-: standard input cannot be changed in place");
    expectRefused("delete - 10 < text", "-: standard input cannot be changed in place");
    expectRefused("add none 30 then", "none: cannot open: No such file or directory");
}

// ---------------------------------------------------------------------------------------- delete

TEST_F(FilterctlChanges, DeleteLeavesTheOtherLinesAlone)
{
    for (const std::string name : {"text", "bytes"})
        expectDone("delete " + name + " 10 9");
    EXPECT_EQ(read("text"), "# The guests.\n"
                            "group 7   type=3\n"
                            "\n"
                            "20 dst_l4_port=1024-3071\tthen deny\n"
                            "  src_ipv4=10.0.0.0/8 then permit\n"
                            "ip_protocol=tcp then permit\n");
    expectSame();
}

TEST_F(FilterctlChanges, DeleteKeepsTheIdentifiersOfTheOthers)
{
    for (const std::string name : {"text", "bytes"})
        expectDone("delete " + name + " 22");
    expectText("  src_ipv4=10.0.0.0/8 then permit\nip_protocol", "23 ip_protocol");
    expectSame();
    for (const std::string name : {"text", "bytes"})
        expectDone("delete " + name + " 23 23");
    expectSame();
}

TEST_F(FilterctlChanges, DeleteTakesSomeEntriesOfALine)
{
    for (const std::string name : {"text", "bytes"})
        expectDone("delete " + name + " 20");
    expectText("20 dst_l4_port=1024-3071\t", "21 dst_l4_port=2048/0xfc00 ");
    expectSame();
    write("text", TEXT);
    expectDone("import text -o bytes");
    for (const std::string name : {"text", "bytes"})
        expectDone("delete " + name + " 21");
    expectText("20 dst_l4_port=1024-3071\tthen deny\n  src",
               "20 dst_l4_port=1024/0xfc00 then deny\n  22 src");
    expectSame();
}

TEST_F(FilterctlChanges, DeleteRefusesWhatIsNotThere)
{
    const std::string bytes = read("bytes");
    for (const std::string name : {"text", "bytes"})
        expectRefused("delete " + name + " 10 11 5", name + ": there is no entry 5\nfilterctl: " +
                                                         name + ": there is no entry 11");
    EXPECT_EQ(read("text"), TEXT);
    EXPECT_EQ(read("bytes"), bytes);
}

TEST_F(FilterctlChanges, ChangedFilesKeepTheirPermissions)
{
    fs::permissions(file("text"), static_cast<fs::perms>(0604));
    fs::create_symlink("text", file("link"));
    expectDone("add link 30 then");
    expectDone("delete link 30");
    EXPECT_EQ(read("text"), TEXT);
    EXPECT_EQ(static_cast<unsigned>(fs::status(file("text")).permissions()), 0604u);
    EXPECT_TRUE(fs::is_symlink(file("link")));
}

// ----------------------------------------------------------------------------------------- merge

class FilterctlMerge : public Filterctl {
protected:
    FilterctlMerge()
    {
        write("a", "group 1 priority=5 type=3\n1 priority=10 then permit\n2 priority=20 then\n");
        write("b", "group 2 type=3\n3 priority=15 all then deny\n4 priority=30 then\n");
        write("c", "2 then\n3 then\n4 then permit\n");
    }

    /** The merged group has the header of a. */
    void expectMerged(const std::string& arguments, const std::string& lines) const
    {
        expectDone("merge " + arguments + " -o merged");
        expectDone("list merged", "group 1 priority=5 stage=0 type=3\n" + lines);
    }
};

TEST_F(FilterctlMerge, EntriesOfAll)
{
    expectMerged("a b", "1 priority=10 then permit\n2 priority=20 then\n"
                        "3 priority=15 all then deny\n4 priority=30 then\n");
    expectMerged("--renumber a b c", "0 priority=10 then permit\n1 priority=20 then\n"
                                     "2 priority=15 all then deny\n3 priority=30 then\n"
                                     "4 then\n5 then\n6 then permit\n");
}

TEST_F(FilterctlMerge, AWinsOrLoses)
{
    expectMerged("--above a b", "1 priority=31 then permit\n2 priority=41 then\n"
                                "3 priority=15 all then deny\n4 priority=30 then\n");
    expectMerged("--below a b", "1 priority=10 then permit\n2 priority=20 then\n"
                                "3 priority=21 all then deny\n4 priority=36 then\n");
    expectMerged("--below --renumber a b c", "0 priority=10 then permit\n1 priority=20 then\n"
                                             "2 priority=36 all then deny\n3 priority=51 then\n"
                                             "4 priority=21 then\n5 priority=21 then\n"
                                             "6 priority=21 then permit\n");
    // Nothing is shifted that need not be.
    write("high", "7 priority=0xffffffff then\n");
    expectMerged("--below a high", "1 priority=10 then permit\n2 priority=20 then\n"
                                   "7 priority=4294967295 then\n");
}

TEST_F(FilterctlMerge, Refuses)
{
    expectRefused("merge a c", "c: identifier 2 is taken by a file in front of this one; "
                               "--renumber gives new ones");
    expectRefused("merge b c", "c: identifier 3 and 1 more are taken by a file in front of this "
                               "one; --renumber gives new ones");
    write("high", "7 priority=0xffffffff then\n");
    expectRefused("merge --above a high", "a: the priorities would have to be shifted up to "
                                          "4294967306, and the greatest is 4294967295");
    write("spread", "7 then\n8 priority=0xffffffff then\n");
    expectRefused("merge --below a spread -o merged",
                  "spread: the priorities would have to be shifted up to 4294967316, and the "
                  "greatest is 4294967295");
    const Outcome outcome = run("merge --renumber c b");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_NE(outcome.err.find("filterctl: b: entry 3: match kind MATCH_ALL is not admitted in a "
                               "group of type GROUP_TYPE_0"),
              std::string::npos)
        << outcome.err;
}

TEST_F(FilterctlMerge, NoMoreThanAGroupHolds)
{
    std::string full = "group 1 type=3\n";
    for (int line = 0; line < 65536; ++line)
        full += "then\n";
    write("full", full);
    expectRefused("merge --renumber full a", "a: a group holds at most 65536 entries");
    expectRefused("add full then", "RULE:1:1: no identifier is left for this entry; the greatest "
                                   "is 65535");
    expectDone("delete full $(seq 100 65535)");
    EXPECT_EQ(read("full"), full.substr(0, full.find('\n') + 1 + 100 * 5));
    write("full", full);
    expectDone("delete full 17");
    expectDone("add full 17 then permit");
    EXPECT_EQ(read("full"),
              full.replace(full.find('\n') + 1 + 17 * 5, 10, "18 then\n") + "17 then permit\n");
}

TEST_F(FilterctlMerge, TheDiskMayBeFull)
{
    expectRefused("merge --renumber a b > /dev/full", "-: cannot write: No space left on device");
}

} // namespace
