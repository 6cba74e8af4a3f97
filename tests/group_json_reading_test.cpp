#include "any_groups.h"
#include "group_json.h"
#include "group_json_support.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace filterctl;
using namespace FiltersCommon;
using namespace FiltersCommon::test;

std::string bytesOf(const FiltersGroup& group)
{
    std::string bytes;
    group.serialize(&bytes);
    return bytes;
}

/** The value of a member of the document, which is on one line and has "group" first. */
std::string groupIn(const std::string& json)
{
    const std::size_t begin = json.find(':') + 1;
    return json.substr(begin, json.find(",\"readable\":") - begin);
}
std::string readableIn(const std::string& json)
{
    constexpr std::string_view NAME = ",\"readable\":";
    const std::size_t begin = json.find(NAME) + NAME.size();
    return json.substr(begin, json.size() - begin - 2);
}

/** LINE:COLUMN: SENTENCE, or nothing if the text is taken. */
std::string problemOf(const std::string& text)
{
    Problem why;
    if (groupFromJson(text, why))
        return "";
    return std::to_string(why.line) + ":" + std::to_string(why.column) + ": " + why.sentence;
}

// --------------------------------------------------------------------------------- what is taken

void expectBackAgain(const FiltersGroup& group)
{
    const std::string line = jsonOf(group, true);
    for (const std::string& text :
         {line, jsonOf(group, false), "{\"group\":" + groupIn(line) + "}",
          "{\"readable\":" + readableIn(line) + ",\"group\":" + groupIn(line) + "}"}) {
        Problem why;
        const auto read = groupFromJson(text, why);
        ASSERT_TRUE(read) << why.line << ":" << why.column << ": " << why.sentence << "\n" << text;
        ASSERT_TRUE(*read == group) << text;
        ASSERT_EQ(bytesOf(*read), bytesOf(group)) << text;
    }
}

TEST(GroupFromJson, OfEveryKind)
{
    for (const FiltersGroup& group : sampleGroups())
        ASSERT_NO_FATAL_FAILURE(expectBackAgain(group));
}

TEST(GroupFromJson, OfAnyGroup)
{
    AnyGroups groups;
    for (int left = 200; left != 0; --left)
        ASSERT_NO_FATAL_FAILURE(expectBackAgain(groups.next()));
}

/** A group with a value of each type that the messages have, on one line. */
std::string sampleText()
{
    FiltersEntry entry(7);
    entry.setPriority(9);
    entry.setMatch(MatchExternalVlanId({10, 20}));
    entry.setMatch(MatchTPID(0x8100));
    entry.setMatch(MatchDstMac(mac("02:10:20:30:40:50"), mac("ff:ff:ff:00:00:00")));
    entry.setMatch(MatchDrop(true));
    entry.setAction(ActionPermit());
    entry.setCounter(Counter(12, COUNTER_TYPE_OCTETS));
    FiltersGroup group(1);
    group.setType(GROUP_TYPE_1);
    EXPECT_EQ(group.insertEntry(entry), FILTERS_OK);
    return jsonOf(group, true);
}

/** The sample with @p from, in the part with that name, replaced. */
std::string changed(const std::string& part, const std::string& from, const std::string& to)
{
    std::string text = sampleText();
    const std::size_t at = text.find(from, text.find('"' + part + '"'));
    if (at == std::string::npos)
        throw std::invalid_argument(from);
    return text.replace(at, from.size(), to);
}

TEST(GroupFromJson, TakesMembersInAnyOrder)
{
    EXPECT_EQ(problemOf(sampleText()), "");
    EXPECT_EQ(problemOf(changed("group", R"("id":12,"type":2)", R"("type":2,"id":12)")), "");
    EXPECT_EQ(problemOf(changed("readable", R"("MAC":"2:10:20:30:40:50","Mask":"ff:ff:ff:0:0:0")",
                                R"("Mask":"ff:ff:ff:0:0:0","MAC":"2:10:20:30:40:50")")),
              "");
    EXPECT_EQ(problemOf(changed("readable", R"("MAC")", R"("\u004dAC")")), "");
}

// ------------------------------------------------------------------------------- what is refused

/** The sentence, for a text with one line; the problem is to be where @p words are. */
std::string refusalAt(const std::string& words, const std::string& text)
{
    Problem why;
    EXPECT_FALSE(groupFromJson(text, why)) << text;
    EXPECT_EQ(why.line, 1u);
    EXPECT_EQ(why.column == 0 ? "" : text.substr(why.column - 1, words.size()), words) << text;
    return why.sentence;
}

TEST(GroupFromJson, JsonOfSomethingElse)
{
    constexpr char NO_OBJECT[] = "this is JSON, but no object with the member \"group\"";
    constexpr char NO_GROUP[] = "this is JSON, but has no member \"group\"";
    constexpr char OTHER[] = "this is JSON, but of something else than a group, which has the "
                             "members \"group\" and \"readable\"";
    for (const std::string text : {"[]", "7", "null", "\"group\"", "true"})
        EXPECT_EQ(refusalAt(text, text), NO_OBJECT);
    EXPECT_EQ(refusalAt("{", "{}"), NO_GROUP);
    EXPECT_EQ(refusalAt("{", R"({"readable":{"group":[1,{}]}})"), NO_GROUP);
    EXPECT_EQ(refusalAt("\"rules\"", R"({"rules":[]})"), OTHER);
    EXPECT_EQ(refusalAt("\"\"", R"({"readable":{"a":{}},"":[]})"), OTHER);
    EXPECT_EQ(refusalAt("\"more\"", changed("group", R"("readable")", R"("more":0,"readable")")),
              OTHER);
    EXPECT_EQ(problemOf(sampleText() + "x"), "2:1: this is no JSON here");
    EXPECT_EQ(problemOf(""), "1:1: the JSON ends before it is complete");
}

TEST(GroupFromJson, MembersThatTheMessagesDoNotHave)
{
    const auto refusal = [](const std::string& words, const std::string& from,
                            const std::string& to) {
        return refusalAt(words, changed("group", from, to));
    };
    EXPECT_EQ(refusal("\"port\"", "\"tpid\"", "\"port\""), "MatchPB has no member \"port\"");
    EXPECT_EQ(refusal("\"tpid_\"", "\"tpid\"", "\"tpid_\""), "MatchPB has no member \"tpid_\"");
    EXPECT_EQ(refusal("\"xxxxx", "\"tpid\"", "\"" + std::string(50, 'x') + "\\n\""),
              "MatchPB has no member \"" + std::string(40, 'x') + "...\"");
    EXPECT_EQ(refusal("\"type\":4", "\"tpid\"", "\"type\":4,\"tpid\""),
              "the member \"type\" is given twice");
    EXPECT_EQ(refusal("\"matches\":[{", "\"matches\"", "\"matches\":[],\"matches\""),
              "the member \"matches\" is given twice");
    EXPECT_EQ(refusal("\"group\":0", "\"readable\"", "\"group\":0,\"readable\""),
              "the member \"group\" is given twice");
    EXPECT_EQ(refusalAt("\"readable\":0", changed("readable", "}\n", ",\"readable\":0}\n")),
              "the member \"readable\" is given twice");
    EXPECT_EQ(refusal("{\"priority\":9", "\"id\":7,", ""),
              "FiltersEntryPB lacks the member \"id\"");
    EXPECT_EQ(refusal("{}", "[{\"type\":0}]", "[{}]"), "ActionPB lacks the member \"type\"");
    EXPECT_EQ(refusalAt("{}", "{\"group\":{}}"), "FiltersGroupPB lacks the member \"id\"");
}

TEST(GroupFromJson, ValuesOfOtherTypes)
{
    struct Row {
        const char* member;
        const char* value; /**< in the sample */
        std::vector<const char*> others;
        const char* sentence;
    };
    const std::vector<Row> rows = {
        {"\"tpid\":",
         "33024",
         {"-1", "4294967296", "99999999999999999999", "-9223372036854775808", "33024.0", "1e2",
          "\"33024\"", "true", "null", "[33024]", "{}"},
         "\"tpid\" is a whole number from 0 to 4294967295"},
        {"\"counter\":{\"id\":",
         "12",
         {"2147483648", "-2147483649", "1.5", "\"12\"", "[]", "{}"},
         "\"id\" is a whole number from -2147483648 to 2147483647"},
        {"\"dropFlag\":",
         "true",
         {"1", "\"true\"", "null", "[]", "{}"},
         "\"dropFlag\" is true or false"},
        {"\"mac\":",
         "\"AhAgMEBQ\"",
         {"2", "true", "null", "\"AhAgMEB\"", "\"AhAgMEB-\"", "[]", "{}"},
         "\"mac\" is bytes in base64"},
        {"\"vlanId\":", "[10,20]", {"10", "\"10\"", "true", "null", "{}"}, "\"vlanId\" is a list"},
        {"\"vlanId\":[10,",
         "20",
         {"-1", "4294967296", "\"20\"", "null", "[20]", "{}"},
         "an element of \"vlanId\" is a whole number from 0 to 4294967295"},
        {"\"counter\":",
         "{\"id\":12,\"type\":2}",
         {"0", "\"\"", "null", "[]", "true"},
         "\"counter\" is an object"},
        {"\"actions\":[",
         "{\"type\":0}",
         {"0", "\"\"", "null", "[]", "true"},
         "an element of \"actions\" is an object"},
        {"\"actions\":",
         "[{\"type\":0}]",
         {"0", "\"\"", "null", "{}", "true"},
         "\"actions\" is a list"},
    };
    for (const Row& row : rows)
        for (const std::string other : row.others)
            EXPECT_EQ(refusalAt(other, changed("group", std::string(row.member) + row.value,
                                               row.member + other)),
                      row.sentence)
                << other;
    for (const std::string value : {"7", "[]", "null", "\"\""})
        EXPECT_EQ(refusalAt(value, "{\"group\":" + value + "}"), "FiltersGroupPB is an object");
}

TEST(GroupFromJson, WhatAGroupWouldNotHold)
{
    const std::string unknown = changed("group", "\"type\":28,", "\"type\":32,");
    EXPECT_EQ(refusalAt("{\"id\":1,", unknown).substr(0, 35),
              "entry 7: match kind 32 is unknown; ");
    const std::string notAdmitted = changed("group", "\"type\":1,", "\"type\":8,");
    EXPECT_EQ(refusalAt("{\"id\":1,", notAdmitted),
              "entry 7: match kind MATCH_EXTERNAL_VLAN_ID is not admitted in a group of type "
              "GROUP_TYPE_8; admitted are MATCH_ALL, MATCH_DST_IPV6 and MATCH_VRF_ID "
              "(and 3 more)");
    EXPECT_EQ(refusalAt("{\"id\":1,", changed("group", "33024", "98560")),
              "entry 7: field tpid_ of match kind MATCH_TPID holds 98560, which does not fit and "
              "becomes 33024");
    EXPECT_EQ(refusalAt("{\"id\":1,", changed("group", "\"id\":7", "\"id\":65543")),
              "entry 7: field id_ of the entry holds 65543, which does not fit and becomes 7");
    const std::string entry =
        R"({"id":7,"priority":1,"policer":"CP////8PEAIaDggEEAAYACAAKAAwADgA",)"
        R"("counter":{"id":0,"type":0}})";
    EXPECT_EQ(refusalAt("{\"id\":1,", changed("group", "[{\"id\"", "[" + entry + ",{\"id\"")),
              "entry 7: the entry is replaced by a later one with its identifier");
}

TEST(GroupFromJson, AReadablePartThatDiffers)
{
    const auto refusal = [](const std::string& words, const std::string& from,
                            const std::string& to) {
        const std::string sentence = refusalAt(words, changed("readable", from, to));
        const std::size_t end = sentence.find("; change \"group\", or leave \"readable\" out");
        EXPECT_NE(end, std::string::npos) << sentence;
        return sentence.substr(0, end);
    };
    const auto gives = [](const std::string& value) {
        return "\"readable\" differs from \"group\", which gives " + value + " here";
    };
    EXPECT_EQ(refusal("2,", "\"id\":1,", "\"id\":2,"), gives("1"));
    EXPECT_EQ(refusal("33025", "33024", "33025"), gives("33024"));
    EXPECT_EQ(refusal("33024.0", "33024", "33024.0"), gives("33024"));
    EXPECT_EQ(refusal("\"33024\"", "33024", "\"33024\""), gives("33024"));
    EXPECT_EQ(refusal("[", "33024", "[33024]"), gives("33024"));
    EXPECT_EQ(refusal("{", "33024", "{}"), gives("33024"));
    EXPECT_EQ(refusal("false", "true", "false"), gives("true"));
    EXPECT_EQ(refusal("1", "true", "1"), gives("true"));
    EXPECT_EQ(refusal("\"ACTION_DENY\"", "ACTION_PERMIT", "ACTION_DENY"),
              gives("\"ACTION_PERMIT\""));
    EXPECT_EQ(refusal("7", "\"ACTION_PERMIT\"", "7"), gives("\"ACTION_PERMIT\""));
    EXPECT_EQ(refusal("7", "[10,20]", "7"), gives("a list"));
    EXPECT_EQ(refusal("{", "[10,20]", "{}"), gives("a list"));
    EXPECT_EQ(refusal("0", "{\"TPID\":33024}", "0"), gives("an object"));
    EXPECT_EQ(refusal("[", "{\"TPID\":33024}", "[]"), gives("an object"));
    EXPECT_EQ(refusal("\"Tpid\"", "\"TPID\"", "\"Tpid\""),
              "\"readable\" has a member that \"group\" does not give");
    EXPECT_EQ(refusal("{}", "{\"TPID\":33024}", "{}"), "\"readable\" lacks the member \"TPID\"");
    EXPECT_EQ(refusal("30", "[10,20]", "[10,20,30]"),
              "\"readable\" has more elements than \"group\" gives");
    EXPECT_EQ(refusal("[10]", "[10,20]", "[10]"),
              "\"readable\" lacks elements that \"group\" gives");
    EXPECT_EQ(refusal("{\"id\":8}", "]}}\n", ",{\"id\":8}]}}\n"),
              "\"readable\" has more elements than \"group\" gives");
    EXPECT_EQ(refusalAt("\"id\":1", changed("readable", "\"id\":1", "\"id\":1,\"id\":1")),
              "the member \"id\" is given twice");
}

} // namespace
