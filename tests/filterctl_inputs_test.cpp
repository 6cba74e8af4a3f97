/**
 * Every command takes a group in every form, and refuses everything else.
 */
#include "filterctl_support.h"
#include "group_json.h"

#include <filter_groups.pb.h>
#include <filter_rule_text.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace {

using namespace FiltersCommon;
using namespace FiltersCommon::test;
using namespace std::string_literals;

constexpr char TAKEN[] = "; taken are the bytes of a group, rule text, five-tuple access lists and "
                         "what 'filterctl json' prints";
constexpr char EMPTY[] = "holds no rule; --allow-empty takes it all the same";

class FilterctlInputs : public Filterctl {
protected:
    FilterctlInputs()
    {
        write("bytes", bytesOf(goodGroup()));
        write("rules", toRuleText(goodGroup()));
        write("json", filterctl::jsonOf(goodGroup(), false));
    }

    /** The same group in all forms. */
    const std::vector<std::string> forms_ = {"good", "bytes", "rules", "json"};
    /** The commands that read one group. */
    const std::vector<std::string> readers_ = {"import", "list", "show", "json", "stats", "check"};
};

TEST_F(FilterctlInputs, EveryCommandTakesEveryForm)
{
    for (const std::string& command : readers_) {
        const std::string out = run(command + " bytes").out;
        for (const std::string& form : forms_) {
            expectDone(command + " " + form, out);
            expectDone(command + " < " + form, out);
            expectDone(command + " - < " + form, out);
        }
    }
    for (const std::string& a : forms_)
        for (const std::string& b : forms_) {
            expectDone("diff " + a + " " + b);
            expectDone("diff - " + b + " < " + a);
            expectDone("merge --renumber " + a + " " + b + " -o merged");
            EXPECT_EQ(FiltersGroup(read("merged")).getEntriesRef().size(), 2u);
        }
}

TEST_F(FilterctlInputs, TheFormCanBeSaid)
{
    expectDone("import --from list good", bytesOf(goodGroup()));
    expectDone("import --from rules rules", bytesOf(goodGroup()));
    expectDone("import --from=bytes bytes", bytesOf(goodGroup()));
    expectDone("import --from json json", bytesOf(goodGroup()));
    expectDone("diff --from list good - < good");
    expectRefused("show --from list rules", "rules:1:1: source prefix: missing '@'\n"
                                            "filterctl: rules:2:1: source prefix: missing '@'");
    expectRefused("show --from bytes good",
                  "good: holds no group: the bytes cannot be read from offset 26 on");
    EXPECT_EQ(run("show --from rules good").status, 1);
    EXPECT_EQ(run("show --from json good").status, 1);
}

TEST_F(FilterctlInputs, StrangersAreNamed)
{
    write("zipped", "\x1F\x8B\x08\0"s);
    write("prose", "Dear colleague,\n");
    for (const std::string& command : readers_) {
        expectRefused(command + " zipped", "zipped: looks like a gzip file"s + TAKEN);
        expectRefused(command + " < prose", "-: looks like text of another kind"s + TAKEN);
    }
    expectRefused("diff prose good", "prose: looks like text of another kind"s + TAKEN, "", 2);
    expectRefused("merge good prose", "prose: looks like text of another kind"s + TAKEN);
    expectRefused("add prose 1 then", "prose: looks like text of another kind"s + TAKEN);
    expectRefused("delete prose 1", "prose: looks like text of another kind"s + TAKEN);
}

TEST_F(FilterctlInputs, BytesThatHoldNoGroup)
{
    const std::string bytes = bytesOf(goodGroup());
    std::string entry;
    goodEntry().serialize(&entry);
    const std::size_t size = bytes.size();
    const std::vector<std::pair<std::string, std::string>> none = {
        {entry, "the required field stage_ of the group is missing"},
        {bytes.substr(0, 6), "the required field type_ of the group is missing"},
        {bytes.substr(2), "the required field id_ of the group is missing"},
        {bytes.substr(0, size - 1), "the bytes cannot be read from offset 98 on"},
    };
    for (const auto& [content, why] : none) {
        write("none", content);
        for (const std::string& command : readers_)
            expectRefused(command + " none", "none: holds no group: " + why);
    }
    write("envelope", bytes + '\0'); // as processes send it
    expectDone("import envelope", bytes);
}

TEST_F(FilterctlInputs, AnInputWithoutAnyRule)
{
    write("comments", "# none\n\n");
    write("header", "group 7 type=3\n");
    write("empty", bytesOf(FiltersGroup(7)));
    for (const std::string name : {"/dev/null", "comments", "header", "empty"}) {
        for (const std::string& command : readers_) {
            expectRefused(command + " " + name, name + ": " + EMPTY);
            EXPECT_EQ(run(command + " --allow-empty " + name).status, 0) << command << name;
        }
        expectRefused("diff good " + name, name + ": " + EMPTY, "", 2);
        expectRefused("merge good " + name, name + ": " + EMPTY);
        expectDone("diff --allow-empty " + name + " " + name);
        expectDone("merge --allow-empty good " + name, bytesOf(goodGroup()));
        expectDone("merge --allow-empty --above good " + name, bytesOf(goodGroup()));
    }
    expectRefused("add comments 1 then", "comments: "s + EMPTY);
    expectRefused("delete header 1", "header: "s + EMPTY);
    expectDone("list --allow-empty comments", "group 0 priority=0 stage=0 type=3\n");
    expectDone("list --allow-empty --from rules comments", "group 0 priority=0 stage=0 type=0\n");
}

TEST_F(FilterctlInputs, OptionsForListsAreForNothingElse)
{
    for (const std::string option : {"group", "priority", "stage", "type"}) {
        expectRefused("import rules --" + option + " 1",
                      "rules: --" + option + " is for access lists; this group says it itself");
        expectRefused("import bytes --" + option + " 1",
                      "bytes: --" + option + " is for access lists; this group says it itself");
    }
    EXPECT_EQ(run("import rules --action deny").status, 1);
}

TEST_F(FilterctlInputs, AllThatIsWrongIsToldAtOnce)
{
    write("wrong", "group 7 type=3\n1 src_ipv=1 then\n\n# comment\n2 then permit permit\n");
    const std::string why = "wrong:2:3: there is no match 'src_ipv'; did you mean 'src_ipv4'?\n"
                            "filterctl: wrong:5:15: 'permit' is given twice";
    for (const std::string& command : readers_)
        expectRefused(command + " wrong -o new"s.substr(0, command == "check" ? 6 : 13), why);
    expectRefused("diff good wrong", why, "", 2);
    expectRefused("merge good wrong -o new", why);
    expectRefused("add wrong 3 then", why);
    expectRefused("delete wrong 2", why);
}

/** Bytes that lose an action of an unknown kind when they are read. */
std::string lossyBytes()
{
    FiltersGroupPB message = goodGroup().convertToFiltersGroupPB();
    message.mutable_entries_(0)->add_actions_()->set_type_(1000);
    return message.SerializeAsString();
}

TEST_F(FilterctlInputs, WhatIsLostIsTold)
{
    write("lossy", lossyBytes());
    const std::string loss = "filterctl: lossy: entry 0: action kind 1000 is unknown; known are ";
    for (const std::string& command : readers_) {
        const Outcome outcome = run(command + " lossy");
        EXPECT_EQ(outcome.status, 1) << command;
        EXPECT_EQ(outcome.err.substr(0, loss.size()), loss) << command;
        const bool looks = command != "import" && command != "check";
        EXPECT_EQ(outcome.out, looks ? run(command + " bytes").out : "") << command;
    }
    for (const std::string command :
         {"diff good lossy", "merge --renumber good lossy", "add lossy 7 then", "delete lossy 0"}) {
        const Outcome outcome = run(command);
        EXPECT_EQ(outcome.status, command[1] == 'i' ? 2 : 1) << command;
        EXPECT_EQ(outcome.out, "") << command;
        EXPECT_EQ(outcome.err.substr(0, loss.size()), loss) << command;
    }
    EXPECT_EQ(read("lossy"), lossyBytes());
}

TEST_F(FilterctlInputs, ManyLines)
{
    std::string list;
    std::string rules;
    for (int line = 0; line < 200000; ++line) {
        list += GOOD_LINE;
        rules += std::to_string(line) + " all then permit\n";
    }
    write("list", list);
    write("rules", rules);
    expectRefused("stats list", "list:65537: a group holds at most 65536 entries");
    const Outcome outcome = run("import rules -o group");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.err.find("\nfilterctl: rules:65537:1: an entry's identifier takes a number "
                               "from 0 to 65535, not '65536'\n"),
              std::string::npos);
    EXPECT_FALSE(fs::exists(file("group")));
}

TEST_F(FilterctlInputs, ControlCharactersStayWhereTheyAre)
{
    write("bad\033[2J", "1 src_ip\033[2J=\033 then\n");
    const Outcome outcome = run("check 'bad\033[2J'");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err.find('\033'), std::string::npos);
    EXPECT_EQ(outcome.err.rfind("filterctl: bad\\x1b[2J", 0), 0u) << outcome.err;
    for (const char* arguments : {"show 'none\033'", "'\033'", "show '-\033'", "show '--\033'",
                                  "list good --match '\033'", "delete good '\033'"})
        EXPECT_EQ(run(arguments).err.find('\033'), std::string::npos) << arguments;
    write("\033", CHANGED_LINE);
    EXPECT_EQ(run("diff good '\033'").out.find('\033'), std::string::npos);
}

TEST_F(FilterctlInputs, AReaderThatStopsReadingIsNoError)
{
    std::string rules = "group 0 type=3\n";
    for (int line = 0; line < 20000; ++line)
        rules += "all then permit\n";
    write("many", rules);
    for (const char* command : {"list", "show", "json"}) {
        const Outcome outcome = run(command + " many | head -n 1"s);
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.err, "") << command;
    }
}

} // namespace
