#include "filter_rule_text.h"
#include "named_entries.h"
#include "refusals_support.h"

#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <stdexcept>
#include <string>

// Writes the inputs from which fuzzing starts to FOLDER/TARGET/NAME, and touches nothing else.

namespace {

namespace fs = std::filesystem;

using namespace FiltersCommon;

/** Contents by name. */
using Inputs = std::map<std::string, std::string>;

/** The same bytes as the tests' golden files. */
template <class T>
void add(Inputs& inputs, const std::string& prefix, const std::vector<test::Named<T>>& samples)
{
    for (const auto& sample : samples)
        sample.object->serialize(&inputs[prefix + sample.name]);
}

Inputs entries()
{
    Inputs inputs;
    add(inputs, "", test::entrySamples());
    return inputs;
}

Inputs groups()
{
    Inputs inputs;
    add(inputs, "", test::groupSamples());
    return inputs;
}

Inputs entriesAndGroups()
{
    Inputs inputs;
    add(inputs, "entry_", test::entrySamples());
    add(inputs, "group_", test::groupSamples());
    return inputs;
}

/** Random programs, the same in every run. */
Inputs programs()
{
    constexpr int COUNT = 12;
    constexpr int SIZE = 200;
    std::mt19937 generator(20240229);
    Inputs inputs;
    for (int number = 0; number < COUNT; ++number) {
        std::string& program = inputs["program_" + std::to_string(number)];
        for (int i = 0; i < SIZE; ++i)
            program += static_cast<char>(generator() & 0xFF);
    }
    return inputs;
}

Inputs accessLists()
{
    return {
        {"empty", ""},
        {"comments", "# nothing but this\n\n \t\r\n"},
        {"everything", "@0.0.0.0/0 0.0.0.0/0 0 : 65535 0 : 65535 0x00/0x00\n"},
        {"columns",
         " @10.1.0.0/16\t192.168.7.0/24  0 : 65535  1024:2047  0x06/0xFF  0x00/0x01\r\n"},
        {"pairs", "@192.0.2.1/32 0.0.0.0/0 1 : 65534 7 : 7 0x11/0xFF\n"
                  "@0.0.0.0/0 198.51.100.0/25 3 : 12 80 : 89 0x00/0x00"},
        {"refused", "@10.0.0.0/8 10.0.0.0/8 0 : 1 0 : 65535 0x06/0xFF\n"
                    "@10.0.0.0/33 10.0.0.0/8 0 : 1 0 : 65535 0x06/0xFF\n"},
        {"backwards", "@10.0.0.0/8 10.0.0.0/8 2 : 1 0 : 65535 0x06/0xFF\n"},
        {"mask", "@10.0.0.0/8 10.0.0.0/8 1 : 2 0 : 65535 0x06/0x0F\n"},
        {"octal", "@10.01.0.0/8 10.0.0.0/8 1 : 2 0 : 65535 0x06/0xFF\n"},
        {"missing", "@10.0.0.0/8\n"},
    };
}

/** Groups as bytes and as text, and texts in which something is wrong. */
Inputs ruleTexts()
{
    Inputs inputs;
    for (const auto& [name, group] : test::groupSamples()) {
        std::string bytes;
        group->serialize(&bytes);
        inputs["bytes_" + name] = '0' + bytes;
        inputs["text_" + name] = '1' + toRuleText(*group);
    }
    for (const auto& [name, entry] : test::entriesOfEachKind()) {
        FiltersGroup group(1);
        test::insertSomewhere(group, *entry);
        inputs["text_" + name] = '1' + toRuleText(group);
    }
    inputs["text_ranges"] = "1group 1 type=3\ndst_l4_port=1-6 src_l4_port=0-65535 then\nthen\n";
    inputs["text_lenient"] = "1\xEF\xBB\xBFgroup 0x1 type=9 # IPv4\r\n\r\n"
                             "dscp=1 priority=2 7 external_vlan_id=9,5-7,6 then";
    inputs["text_wrong"] =
        "1group x\n1 tll=1 ttl=256 all all then premit\n1 then counter=1 policer=x";
    return inputs;
}

/** Groups as bytes, and texts: whole, in another order, and wrong. */
Inputs jsonTexts()
{
    const std::string group =
        R"("group":{"id":1,"priority":0,"stage":0,"type":1,"entries":[)"
        R"({"id":7,"priority":9,"policer":"CP////8PEAIaDggEEAAYACAAKAAwADgA",)"
        R"("matches":[{"type":2,"vlanId":[10,20]},{"type":3,"tpid":33024},)"
        R"({"type":4,"mac":"AhAgMEBQ","macMask":"////AAAA"},)"
        R"({"type":28,"dropFlag":true}],"actions":[{"type":0}],)"
        R"("counter":{"id":12,"type":2}}]})";
    const std::string header = R"("group":{"id":1,"priority":0,"stage":0,"type":3})";
    const std::string readable = R"("readable":{"id":1,"priority":0,"stage":"GROUP_STAGE_0",)"
                                 R"("type":"GROUP_TYPE_3","entries":[]})";
    Inputs inputs = {
        {"group", "1{" + group + "}\n"},
        {"header", "1{" + header + ", " + readable + "}"},
        {"readable_first", "1\xEF\xBB\xBF{" + readable + ",\n" + header + "}"},
        {"readable_only", "1{" + readable + "}"},
        {"no_group", "1[1.5, -1e9, null, \"\\u00e9\\ud83d\\ude00\\n\", {}]"},
        {"unfinished", "1{\"group\": {\"id\": 4294967296"},
    };
    for (const auto& [name, sample] : test::groupSamples()) {
        std::string bytes;
        sample->serialize(&bytes);
        inputs["bytes_" + name] = '0' + bytes;
    }
    return inputs;
}

void write(const fs::path& folder, const Inputs& inputs)
{
    fs::create_directories(folder);
    for (const auto& [name, bytes] : inputs) {
        std::ofstream out(folder / name, std::ios::binary);
        out << bytes << std::flush;
        if (!out)
            throw std::runtime_error("cannot write " + (folder / name).string());
    }
}

} // namespace

int main(int argc, char** argv)
try {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s FOLDER\n", argv[0]);
        return 2;
    }
    const fs::path folder = argv[1];
    write(folder / "entry_bytes", entries());
    write(folder / "group_bytes", groups());
    write(folder / "plain_path", entriesAndGroups());
    write(folder / "operations", programs());
    write(folder / "rule_text", ruleTexts());
    write(folder / "access_list", accessLists());
    write(folder / "json", jsonTexts());
    return 0;
} catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
}
