/**
 * The command that prints rule text, and the entries that it picks.
 */
#include "filterctl_support.h"

#include <filter_rule_text.h>

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace {

using namespace FiltersCommon;
using namespace FiltersCommon::test;
using namespace std::string_literals;

constexpr char HEADER[] = "group 7 priority=3 stage=2 type=3\n";
constexpr char LINES[][120] = {
    "1 priority=9 dst_l4_port=53 src_ipv4=10.20.0.0/16 ip_protocol=udp then permit\n",
    "2 dst_l4_port=1024/0xfc00 ip_protocol=tcp then permit set_dscp=10 counter=4:packets\n",
    "3 dst_l4_port=2048/0xfc00 ip_protocol=tcp then permit set_dscp=12\n",
    "4 all then deny\n",
};

class FilterctlList : public Filterctl {
protected:
    FilterctlList()
    {
        std::string text = HEADER;
        for (const char* line : LINES)
            text += line;
        write("rules", text);
    }

    /** @p picked are the numbers of the lines, from 1. */
    void expectPicked(const std::string& options, const std::string& picked) const
    {
        std::string text = HEADER;
        for (const char number : picked)
            text += LINES[number - '1'];
        expectDone("list rules " + options, text);
    }
};

TEST_F(FilterctlList, PrintsRuleText)
{
    expectPicked("", "1234");
    expectDone("list rules -o text");
    EXPECT_EQ(read("text"), read("rules"));
    expectDone("list good", toRuleText(goodGroup()));
    EXPECT_EQ(read("rules"), read("text"));
}

TEST_F(FilterctlList, PicksEntries)
{
    const std::pair<const char*, const char*> picks[] = {
        {"--id 3", "3"},
        {"--id 3 --id=1 --id 9", "13"},
        {"--action permit", "123"},
        {"--action deny", "4"},
        {"--action set_dscp", "23"},
        {"--action set_dscp=0xa", "2"},
        {"--action permit --action set_dscp=12", "3"},
        {"--action set_pcp", ""},
        {"--match all", "4"},
        {"--match dst_l4_port", "123"},
        {"--match dst_l4_port=53", "1"},
        {"--match dst_l4_port=1024-3071", "23"},
        {"--match dst_l4_port=1024/0xfc00", "2"},
        {"--match src_ipv4=10.20.0.0/255.255.0.0", "1"},
        {"--match src_ipv4=10.20.1.0/24", ""},
        {"--match dst_l4_port ip_protocol=6", "23"},
        {"--match dst_l4_port --match ip_protocol=udp", "1"},
        {"--match ip_protocol=tcp --action set_dscp --id 2 --id 1", "2"},
        {"--match vlan_info", ""},
        {"--match tos=4", ""},
        {"--match dscp=1", ""},
    };
    for (const auto& [options, picked] : picks)
        expectPicked(options, picked);
}

TEST_F(FilterctlList, TheFileStandsInFrontOfTheWords)
{
    expectWrongUsage("list", "list --match all rulebook",
                     "there is no match 'rulebook'; the nearest word is 'all'");
    expectDone("list --match all -o text rules");
    EXPECT_EQ(read("text"), HEADER + std::string(LINES[3]));
}

} // namespace
