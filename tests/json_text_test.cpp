#include "json_text.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace {

using namespace filterctl;
using namespace std::string_literals;

// ---------------------------------------------------------------------------------------- writing

template <class Write>
std::string written(bool compact, Write&& write)
{
    std::string text;
    const Sink sink = [&text](std::string_view piece) { text += piece; };
    JsonWriter json(sink, compact);
    write(json);
    json.end();
    return text;
}

void writeEveryForm(JsonWriter& json)
{
    json.startObject();
    json.key("numbers");
    json.startList();
    json.number(0);
    json.number(std::numeric_limits<std::int64_t>::min());
    json.number(std::numeric_limits<std::int64_t>::max());
    json.endList();
    json.key("empty");
    json.startList();
    json.endList();
    json.key("none");
    json.startObject();
    json.endObject();
    json.key("parts");
    json.startList();
    json.startObject();
    json.key("yes");
    json.truth(true);
    json.key("no");
    json.truth(false);
    json.endObject();
    json.text("text");
    json.endList();
    json.endObject();
}

TEST(JsonWriter, OnOneLine)
{
    EXPECT_EQ(written(true, writeEveryForm),
              R"({"numbers":[0,-9223372036854775808,9223372036854775807],"empty":[],"none":{},)"
              R"("parts":[{"yes":true,"no":false},"text"]})"
              "\n");
}

TEST(JsonWriter, OnALineForEachElement)
{
    EXPECT_EQ(written(false, writeEveryForm), R"({
 "numbers": [
  0,
  -9223372036854775808,
  9223372036854775807
 ],
 "empty": [],
 "none": {},
 "parts": [
  {
   "yes": true,
   "no": false
  },
  "text"
 ]
}
)");
}

TEST(JsonWriter, Texts)
{
    const auto text = [](const std::string& value) {
        return written(true, [&](JsonWriter& json) { json.text(value); });
    };
    EXPECT_EQ(text(""), "\"\"\n");
    EXPECT_EQ(text(" !#[]~/'"), "\" !#[]~/'\"\n");
    EXPECT_EQ(text("\"\\\n\x01\0"s), R"("\"\\\n\u0001\u0000")"
                                     "\n");
    EXPECT_EQ(text("\u00E9\u20AC"), "\"\u00E9\u20AC\"\n");
    EXPECT_EQ(text("a\xFFz\xE2\x82"), "\"a\uFFFDz\uFFFD\"\n"); // no UTF-8
}

TEST(JsonWriter, TextsOfAnySize)
{
    std::string expected = "[";
    const std::string text = written(true, [&](JsonWriter& json) {
        json.startList();
        for (const std::size_t size : {65530U, 65536U, 7U, 65534U, 65535U, 200000U, 1U}) {
            json.text(std::string(size, 'x'));
            expected += (expected.size() > 1 ? ",\"" : "\"") + std::string(size, 'x') + '"';
        }
        json.endList();
    });
    EXPECT_TRUE(text == expected + "]\n");
}

// ---------------------------------------------------------------------------------------- reading

/** Notes each event on a line. */
class Notes final : public JsonEvents {
public:
    void key(std::string_view name) override { note("key " + std::string(name)); }
    void value(const JsonScalar& value) override
    {
        if (const auto* truth = std::get_if<bool>(&value))
            note(*truth ? "true" : "false");
        else if (const auto* number = std::get_if<std::int64_t>(&value))
            note("number " + std::to_string(*number));
        else if (const auto* other = std::get_if<double>(&value))
            note("other " + std::to_string(*other));
        else if (const auto* text = std::get_if<std::string_view>(&value))
            note("text " + std::string(*text));
        else
            note("null");
    }
    void startObject(std::size_t place) override { note("{ at " + std::to_string(place)); }
    void endObject() override { note("}"); }
    void startList(std::size_t place) override { note("[ at " + std::to_string(place)); }
    void endList() override { note("]"); }

    std::vector<std::string> notes;
    std::string refused; /**< the event that is not taken */

private:
    void note(const std::string& event)
    {
        if (event == refused)
            throw JsonRefusal{"refused"};
        notes.push_back(event);
    }
};

std::vector<std::string> eventsOf(const std::string& text)
{
    Notes notes;
    EXPECT_FALSE(readJson(text, notes)) << text;
    return notes.notes;
}

TEST(JsonReading, TellsWhatATextHolds)
{
    EXPECT_EQ(
        eventsOf(" {\"a\\u0042\" : [ 1, -2 ,true,false,null, \"\\n\"],\r\n\t\"\":{} }\n"),
        (std::vector<std::string>{"{ at 1", "key aB", "[ at 14", "number 1", "number -2", "true",
                                  "false", "null", "text \n", "]", "key ", "{ at 52", "}", "}"}));
    EXPECT_EQ(eventsOf("\xEF\xBB\xBF[9223372036854775807,9223372036854775808,-9223372036854775808,"
                       "1.5,1e2]"),
              (std::vector<std::string>{
                  "[ at 0", "number 9223372036854775807", "other 9223372036854775808.000000",
                  "number -9223372036854775808", "other 1.500000", "other 100.000000", "]"}));
    EXPECT_EQ(eventsOf("7"), std::vector<std::string>{"number 7"});
}

/** LINE:COLUMN: SENTENCE */
std::string problemOf(const std::string& text, const std::string& refused = "")
{
    Notes notes;
    notes.refused = refused;
    const auto problem = readJson(text, notes);
    if (!problem)
        return "";
    return std::to_string(problem->line) + ":" + std::to_string(problem->column) + ": " +
           problem->sentence;
}

TEST(JsonReading, SaysWhereATextIsNoJson)
{
    constexpr char NO_JSON[] = "this is no JSON here";
    constexpr char ENDS[] = "the JSON ends before it is complete";
    constexpr char TOO_LARGE[] = "this number is too large";
    const struct {
        std::string text;
        std::string place;
        std::string sentence;
    } texts[] = {
        {"", "1:1", ENDS},
        {" \n ", "2:2", ENDS},
        {"\xEF\xBB", "1:3", ENDS},
        {"{", "1:2", ENDS},
        {"[1,\n2", "2:2", ENDS},
        {"\"abc", "1:5", ENDS},
        {"tru", "1:4", ENDS},
        {"@10.0.0.0/8", "1:1", NO_JSON},
        {"\x08\x01", "1:1", NO_JSON},
        {"{\n \"a\": 1,\n}", "3:1", NO_JSON},
        {"{\"a\" 1}", "1:6", NO_JSON},
        {"{a: 1}", "1:2", NO_JSON},
        {"[1 2]", "1:4", NO_JSON},
        {"[1,,2]", "1:4", NO_JSON},
        {"[1]]", "1:4", NO_JSON},
        {"{}\n{}", "2:1", NO_JSON},
        {"[1}", "1:3", NO_JSON},
        {"[NaN]", "1:2", NO_JSON},
        {"[-Infinity]", "1:3", NO_JSON},
        {"[01]", "1:3", NO_JSON},
        {"[+1]", "1:2", NO_JSON},
        {"[.5]", "1:2", NO_JSON},
        {"[1.]", "1:4", NO_JSON},
        {"['a']", "1:2", NO_JSON},
        {"[1] // one", "1:5", NO_JSON},
        {"[\"a\nb\"]", "1:4", NO_JSON},
        {"[\"\\x\"]", "1:4", NO_JSON},
        {"[\"\\ud800\"]", "1:9", NO_JSON},
        {"[\"\xC0\x80\"]", "1:3", NO_JSON},
        {"[\"\xFF\"]", "1:3", NO_JSON},
        {"[\"\xED\xA0\x80\"]", "1:4", NO_JSON},
        {"[1\0]"s, "1:3", NO_JSON},
        {"[\"\0\"]"s, "1:3", NO_JSON},
        {"[1,\n 1e999]", "2:2", TOO_LARGE},
        {"[-" + std::string(500, '9') + "]", "1:2", TOO_LARGE},
    };
    for (const auto& [text, place, sentence] : texts)
        EXPECT_EQ(problemOf(text), place + ": " + sentence) << text;
}

TEST(JsonReading, SaysWhereARefusedEventIs)
{
    const std::string text = "{\"a\":\n [ 1 , \"b\\u0020\",\n{}],\n \"c\" : [true,-7]}\n";
    EXPECT_EQ(problemOf(text, "{ at 0"), "1:1: refused");
    EXPECT_EQ(problemOf(text, "key a"), "1:2: refused");
    EXPECT_EQ(problemOf(text, "[ at 7"), "2:2: refused");
    EXPECT_EQ(problemOf(text, "number 1"), "2:4: refused");
    EXPECT_EQ(problemOf(text, "text b "), "2:8: refused");
    EXPECT_EQ(problemOf(text, "{ at 24"), "3:1: refused");
    EXPECT_EQ(problemOf(text, "key c"), "4:2: refused");
    EXPECT_EQ(problemOf(text, "true"), "4:9: refused");
    EXPECT_EQ(problemOf(text, "number -7"), "4:14: refused");
}

TEST(JsonReading, TakesAnyDepth)
{
    constexpr std::size_t DEPTH = 1'000'000;
    Notes notes;
    EXPECT_FALSE(readJson(std::string(DEPTH, '[') + std::string(DEPTH, ']'), notes));
    EXPECT_EQ(notes.notes.size(), 2 * DEPTH);
}

} // namespace
