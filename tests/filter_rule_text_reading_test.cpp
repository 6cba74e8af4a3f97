#include "filter_rule_text.h"

#include "rule_text_support.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

namespace FiltersCommon::test {
namespace {

// -------------------------------------------------------------------------------------- leniencies

struct Reading {
    std::string text;
    std::string written;
};

void expectReadings(const std::string& header, const std::vector<Reading>& readings)
{
    for (const auto& [text, written] : readings)
        EXPECT_EQ(rewritten(header + text), header + written) << text;
}

constexpr const char* TYPE_0 = "group 0 priority=0 stage=0 type=0\n";
constexpr const char* TYPE_3 = "group 1 priority=2 stage=2 type=3\n";

TEST(RuleTextReading, TakesHeadersInAnyForm)
{
    const std::vector<Reading> readings = {
        {"", TYPE_0},
        {"\xEF\xBB\xBF", TYPE_0},
        {"\n \t\r\n\r\n# group 9 stage=1\n#\n\r", TYPE_0},
        {"\xEF\xBB\xBFgroup 7", "group 7 priority=0 stage=0 type=0\n"},
        {"# header\n\tgroup\t0x7  type=0x2 stage=1 #priority=3\n",
         "group 7 priority=0 stage=1 type=2\n"},
        {"group 7 stage=4294967295 priority=0010 type=0xFFFFFFFE",
         "group 7 priority=10 stage=4294967295 type=4294967294\n"},
    };
    for (const auto& [text, written] : readings)
        EXPECT_EQ(rewritten(text), written) << text;
}

TEST(RuleTextReading, TakesEntriesInAnyForm)
{
    expectReadings(
        TYPE_0,
        {
            {"then", "0 then\n"},
            {"\t5 \t then\t#permit\r\n 3 then permit \r", "3 then permit\n5 then\n"},
            {"0x10 then\nthen\n7 then\nthen\n2 then\nthen\n1 then",
             "1 then\n2 then\n3 then\n7 then\n8 then\n16 then\n17 then\n"},
            {"65535 then", "65535 then\n"},
            {"priority=0 7 then counter=0:invalid policer=", "7 then\n"},
            {"priority=5 then policer=id:4294967295,stage:none,mode:none,cir:0",
             "0 priority=5 then\n"},
            {"then policer=id:1 counter=1:packets deny permit",
             "0 then permit deny counter=1:packets policer=id:1\n"},
            {"then counter=0x1:0x2", "0 then counter=1:octets\n"},
            {"then counter=1:-0x2", "0 then counter=1:-2\n"},
            {"then policer=green:2:0x7,yellow:set_pcp:1,0:0,pir:0x5,mode:3,stage:2,id:0",
             "0 then policer=id:0,mode:flow,pir:5,red:drop,yellow:set_pcp:1,green:set_dscp:7\n"},
            {"then policer=bytes:08FFFFFFFF0F10021A0E0804100018002000280030003800", "0 then\n"},
            {"then redirect=", "0 then redirect=\n"},
            {"then redirect=ABCDEF01", "0 then redirect=abcdef01\n"},
        });
}

TEST(RuleTextReading, TakesValuesInAnyForm)
{
    expectReadings(
        TYPE_3,
        {
            {"ttl=0x40 3 src_ipv4=192.0.2.1/32 priority=1 then",
             "3 priority=1 src_ipv4=192.0.2.1 ttl=64 then\n"},
            {"src_ipv4=192.0.2.1/255.255.255.255 then", "0 src_ipv4=192.0.2.1 then\n"},
            {"src_ipv4=192.0.2.1/255.255.254.0 then", "0 src_ipv4=192.0.2.1/23 then\n"},
            {"src_ipv4=192.0.2.1/0.0.0.0 then", "0 src_ipv4=192.0.2.1/0 then\n"},
            {"src_ipv4=192.0.2.1/0x18 then", "0 src_ipv4=192.0.2.1/24 then\n"},
            {"dst_l4_port=80/65535 then", "0 dst_l4_port=80 then\n"},
            {"dst_l4_port=0x50/0xFFFF then", "0 dst_l4_port=80 then\n"},
            {"dst_l4_port=80/0xF then", "0 dst_l4_port=80/0x000f then\n"},
            {"tpid=33024 then", "0 tpid=0x8100 then\n"},
            {"tpid=0x1 then", "0 tpid=0x0001 then\n"},
            {"ip_protocol=0x11 then", "0 ip_protocol=udp then\n"},
            {"external_vlan_id=9,0x1-3,2,2-5 then", "0 external_vlan_id=1-5,9 then\n"},
            {"external_vlan_id=7-7 then", "0 external_vlan_id=7 then\n"},
            {"ingress_ports=0000000A,except:0x5 then", "0 ingress_ports=0000000a,except:5 then\n"},
        });
    expectReadings(
        "group 0 priority=0 stage=0 type=1\n",
        {
            {"dst_mac=0:1a:2B:0:0:1/FF:ff:ff:ff:ff:ff then", "0 dst_mac=00:1a:2b:00:00:01 then\n"},
            {"src_mac=0:0:0:0:0:0/0:0:0:0:0:0 then",
             "0 src_mac=00:00:00:00:00:00/00:00:00:00:00:00 then\n"},
        });
    expectReadings("group 0 priority=0 stage=0 type=8\n",
                   {
                       {"dst_ipv6=2001:DB8:0:0::1/ffff:: then", "0 dst_ipv6=2001:db8::1/16 then\n"},
                       {"dst_ipv6=::192.0.2.1/128 then", "0 dst_ipv6=::192.0.2.1 then\n"},
                       {"dst_ipv6=::/:: then", "0 dst_ipv6=::/0 then\n"},
                       {"dst_ipv6=0000:0000:0000:0000:0000:ffff:192.168.100.228 then",
                        "0 dst_ipv6=::ffff:192.168.100.228 then\n"},
                   });
    expectReadings("group 0 priority=0 stage=0 type=9\n", {
                                                              {"dscp=63 then", "0 tos=252 then\n"},
                                                              {"dscp=0x0A then", "0 tos=40 then\n"},
                                                          });
}

TEST(RuleTextReading, MakesAnEntryOfEachPairOfPorts)
{
    expectReadings(
        TYPE_3,
        {
            {"4 dst_l4_port=1-6 then\nthen",
             "4 dst_l4_port=1 then\n5 dst_l4_port=2/0xfffe then\n6 dst_l4_port=4/0xfffe then\n"
             "7 dst_l4_port=6 then\n8 then\n"},
            {"dst_l4_port=1-2 ttl=3 src_l4_port=0x9-10 then deny",
             "0 dst_l4_port=1 src_l4_port=9 ttl=3 then deny\n"
             "1 dst_l4_port=2 src_l4_port=9 ttl=3 then deny\n"
             "2 dst_l4_port=1 src_l4_port=10 ttl=3 then deny\n"
             "3 dst_l4_port=2 src_l4_port=10 ttl=3 then deny\n"},
            {"src_l4_port=7-7 dst_l4_port=3 then", "0 dst_l4_port=3 src_l4_port=7 then\n"},
            {"src_l4_port=0-65535 then", "0 src_l4_port=0/0x0000 then\n"},
            {"src_l4_port=65534-65535 then", "0 src_l4_port=65534/0xfffe then\n"},
            {"65534 src_l4_port=1-2 then", "65534 src_l4_port=1 then\n65535 src_l4_port=2 then\n"},
        });
}

TEST(RuleTextReading, CoversTheWidestRanges)
{
    const auto group = groupFromRuleText(std::string(TYPE_3) +
                                         "src_l4_port=1-65534 dst_l4_port=1-65534 then\n900 then");
    ASSERT_TRUE(group);
    EXPECT_EQ(group->getEntriesRef().size(), 30u * 30u + 1);
    const auto word = [&](filtersEntryId_t id) {
        const std::string line = toRuleText(group->getEntriesRef().at(id));
        return line.substr(line.find(' ') + 1);
    };
    EXPECT_EQ(word(14), "dst_l4_port=16384/0xc000 src_l4_port=1 then");
    EXPECT_EQ(word(15), "dst_l4_port=32768/0xc000 src_l4_port=1 then");
    EXPECT_EQ(word(899), "dst_l4_port=65534 src_l4_port=65534 then");
}

// ---------------------------------------------------------------------------------- number limits

/** A line in which "@" stands for a number, and the greatest number that may stand there. */
struct Limit {
    const char* header;
    const char* line;
    std::uint64_t most;
    const char* written; /**< with that number */
};

constexpr std::uint64_t MOST_8 = 0xFF;
constexpr std::uint64_t MOST_16 = 0xFFFF;
constexpr std::uint64_t MOST_32 = 0xFFFFFFFF;

const std::vector<Limit> LIMITS = {
    {"", "group @", MOST_16, "group 65535"},
    {"", "group 0 priority=@", MOST_16, "priority=65535"},
    {"", "group 0 stage=@", MOST_32, "stage=4294967295"},
    {"", "group 0 type=@", MOST_32, "type=4294967295"},
    {"", "priority=@ then", MOST_32, "priority=4294967295"},
    {"type=1", "l2_src_entry_type=@ then", MOST_32, "l2_src_entry_type=4294967295"},
    {"type=1", "packet_res=@ then", MOST_32, "packet_res=4294967295"},
    {"type=1", "ingress_stp_state=@ then", MOST_32, "ingress_stp_state=4294967295"},
    {"type=1", "ingress_ports=except:@ then", MOST_32, "ingress_ports=except:4294967295"},
    {"type=1", "tpid=@ then", MOST_16, "tpid=0xffff"},
    {"type=1", "external_vlan_id=0,@ then", MOST_16, "external_vlan_id=0,65535"},
    {"type=1", "external_vlan_id=0-@ then", MOST_16, "external_vlan_id=0-65535"},
    {"type=3", "dst_l4_port=@ then", MOST_16, "dst_l4_port=65535"},
    {"type=3", "dst_l4_port=5/@ then", MOST_16, "dst_l4_port=5 then"},
    {"type=3", "dst_l4_port=0-@ then", MOST_16, "dst_l4_port=0/0x0000"},
    {"type=3", "src_ipv4=192.0.2.1/@ then", 32, "src_ipv4=192.0.2.1 then"},
    {"type=3", "ttl=@ then", MOST_8, "ttl=255"},
    {"type=4", "pcp=@ then", MOST_8, "pcp=255"},
    {"type=4", "internal_pcp=@ then", MOST_8, "internal_pcp=255"},
    {"type=4", "ip_protocol=@ then", MOST_8, "ip_protocol=255"},
    {"type=4", "tos=@ then", MOST_8, "tos=255"},
    {"type=4", "dscp=@ then", 63, "tos=252"},
    {"type=7", "vlan_info=@ then", MOST_32, "vlan_info=4294967295"},
    {"type=7", "forwarding_type=@ then", MOST_32, "forwarding_type=4294967295"},
    {"type=8", "vrf_id=@ then", MOST_16, "vrf_id=65535"},
    {"type=8", "dst_ipv6=::1/@ then", 128, "dst_ipv6=::1 then"},
    {"", "then copy_to_cpu_cancel=@", MOST_32, "copy_to_cpu_cancel=4294967295"},
    {"", "then set_pcp=@", MOST_8, "set_pcp=255"},
    {"", "then set_pcp_and_queue=@", MOST_8, "set_pcp_and_queue=255"},
    {"", "then set_inner_pcp=@", MOST_8, "set_inner_pcp=255"},
    {"", "then set_dscp=@", MOST_8, "set_dscp=255"},
    {"", "then map_to_cos_queue=@", MOST_8, "map_to_cos_queue=255"},
    {"stage=2", "then map_to_cpu_cos_queue=@", MOST_8, "map_to_cpu_cos_queue=255"},
    {"", "then l3_switch=@", MOST_32, "l3_switch=4294967295"},
    {"", "then counter=@:packets", MOST_16, "counter=65535:packets"},
    {"", "then counter=1:@", 0x7FFFFFFF, "counter=1:2147483647"},
    {"", "then counter=1:-@", 0x80000000, "counter=1:-2147483648"},
    {"", "then policer=cir:1,id:@", MOST_32, "policer=cir:1\n"},
    {"", "then policer=mode:@", MOST_32, "mode:4294967295"},
    {"", "then policer=cir:@", MOST_32, "cir:4294967295"},
    {"", "then policer=cbs:@", MOST_32, "cbs:4294967295"},
    {"", "then policer=ebs:@", MOST_32, "ebs:4294967295"},
    {"", "then policer=eir:@", MOST_32, "eir:4294967295"},
    {"", "then policer=pbs:@", MOST_32, "pbs:4294967295"},
    {"", "then policer=pir:@", MOST_32, "pir:4294967295"},
    {"", "then policer=red:@", MOST_32, "red:4294967295"},
    {"", "then policer=@:drop", MOST_32, "4294967295:drop"},
    {"", "then policer=red:set_pcp:@", MOST_8, "red:set_pcp:255"},
    {"", "then policer=red:set_dscp:@", MOST_8, "red:set_dscp:255"},
};

std::string hexadecimal(std::uint64_t number)
{
    std::ostringstream text;
    text << "0x" << std::hex << std::uppercase << number;
    return text.str();
}

TEST(RuleTextReading, KnowsTheLimitsOfNumbers)
{
    for (const Limit& limit : LIMITS) {
        SCOPED_TRACE(limit.line);
        const auto with = [&](const std::string& number) {
            std::string line = limit.line;
            line.replace(line.find('@'), 1, number);
            return (*limit.header == '\0' ? "" : std::string("group 0 ") + limit.header + "\n") +
                   line;
        };
        const std::string most = rewritten(with(std::to_string(limit.most)));
        EXPECT_NE(most.find(limit.written), most.npos) << most;
        EXPECT_EQ(rewritten(with(hexadecimal(limit.most))), most);
        EXPECT_EQ(rewritten(with("0000000000000000000000" + std::to_string(limit.most))), most);
        EXPECT_EQ(errorsOf(with("0")), "");
        EXPECT_EQ(rewritten(with("0x0")), rewritten(with("0")));
        for (const std::string wrong : {"", "x", "0x", "0xg", "+1", "1x", "1.0", "--1",
                                        "18446744073709551616", "36893488147419103232"}) {
            const std::string errors = errorsOf(with(wrong));
            EXPECT_NE(errors, "") << wrong;
            EXPECT_EQ(errors.find('\n'), errors.size() - 1) << errors;
        }
        EXPECT_NE(errorsOf(with(std::to_string(limit.most + 1))), "");
        EXPECT_NE(errorsOf(with(hexadecimal(limit.most + 1))), "");
    }
}

TEST(RuleTextReading, KnowsTheLimitsOfIdentifiers)
{
    EXPECT_EQ(rewritten("0xFFFF then"), TYPE_0 + std::string("65535 then\n"));
    for (const std::string wrong : {"65536", "0x10000", "0x", "1x", "1=1"})
        EXPECT_EQ(errorsOf("priority=1 " + wrong + " then"),
                  "1:12: an entry's identifier takes a number from 0 to 65535, not '" + wrong +
                      "'\n");
}

} // namespace
} // namespace FiltersCommon::test
