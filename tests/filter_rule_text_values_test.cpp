#include "filter_rule_text.h"

#include "any_groups.h"
#include "refusals_support.h"
#include "rule_text_support.h"

#include "filter_groups.pb.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <list>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace FiltersCommon::test {
namespace {

// ----------------------------------------------------------------------------------------- values

FiltersEntry with(const Counter& counter)
{
    FiltersEntryPB pb;
    counter.Serialize(pb.mutable_counter_());
    FiltersEntry entry;
    entry.convertFromFiltersEntryPB(&pb); // setCounter refuses some
    return entry;
}

FiltersEntry with(const policer::Policer& policer)
{
    FiltersEntry entry;
    entry.setPolicer(policer);
    return entry;
}

template <class Match>
FiltersEntry withMatch(const Match& match)
{
    FiltersEntry entry;
    entry.setMatch(match);
    return entry;
}

/** A mask that begins with @p length ones. */
template <class Mask>
Mask prefixMask(unsigned length)
{
    unsigned char bytes[sizeof(Mask)] = {};
    for (unsigned bit = 0; bit < length; ++bit)
        bytes[bit / 8] |= static_cast<unsigned char>(0x80 >> bit % 8);
    Mask mask;
    std::memcpy(&mask, bytes, sizeof mask);
    return mask;
}

TEST(RuleText, OfIPv4Masks)
{
    const in_addr address = ipv4("203.0.113.77"); // keeps the bits outside the mask
    for (unsigned length = 0; length < 32; ++length)
        expectLine(withMatch(MatchSrcIPv4(address, prefixMask<in_addr>(length))),
                   "0 src_ipv4=203.0.113.77/" + std::to_string(length) + " then");
    for (const std::string mask : {"0.0.0.1", "127.255.255.255", "255.0.255.0", "255.255.255.253"})
        expectLine(withMatch(MatchSrcIPv4(address, ipv4(mask.c_str()))),
                   "0 src_ipv4=203.0.113.77/" + mask + " then");
}

TEST(RuleText, OfIPv6Masks)
{
    const in6_addr address = ipv6("2001:db8::ffff");
    for (unsigned length = 0; length < 128; ++length)
        expectLine(withMatch(MatchDstIPv6(address, prefixMask<in6_addr>(length))),
                   "0 dst_ipv6=2001:db8::ffff/" + std::to_string(length) + " then");
    for (const std::string mask : {"::1", "7fff::", "ffff::ffff", "::ffff:255.255.255.255",
                                   "ffff:ffff:ffff:ffff:ffff:ffff:ffff:fffd"})
        expectLine(withMatch(MatchDstIPv6(address, ipv6(mask.c_str()))),
                   "0 dst_ipv6=2001:db8::ffff/" + mask + " then");
}

TEST(RuleText, OfPortMasks)
{
    std::set<unsigned short> masks;
    for (unsigned bit = 0; bit < 16; ++bit)
        for (const unsigned mask : {1U << bit, ~(1U << bit), 0xFFFFU << bit, 0xFFFFU >> bit})
            masks.insert(static_cast<unsigned short>(mask));
    masks.erase(0xFFFF);
    masks.insert(0);
    for (const unsigned short mask : masks) {
        char line[40];
        std::snprintf(line, sizeof line, "0 src_l4_port=50000/0x%04x then", mask);
        expectLine(withMatch(MatchSrcL4Port(50000, mask)), line);
    }
}

TEST(RuleText, OfProtocols)
{
    std::map<unsigned, std::string> names = {
        {1, "icmp"}, {2, "igmp"}, {6, "tcp"},     {17, "udp"},  {47, "gre"},
        {50, "esp"}, {51, "ah"},  {58, "icmpv6"}, {89, "ospf"}, {132, "sctp"},
    };
    for (unsigned protocol = 0; protocol < 256; ++protocol) {
        const std::string number = std::to_string(protocol);
        const auto name = names.emplace(protocol, number).first;
        const std::string line = "0 ip_protocol=" + name->second + " then";
        expectLine(withMatch(MatchIpProtocol(static_cast<unsigned char>(protocol))), line);
        const std::string header = "group 0 priority=0 stage=0 type=3\n";
        EXPECT_EQ(rewritten(header + "ip_protocol=" + number + " then"), header + line + "\n");
    }
}

TEST(RuleText, OfVlanIds)
{
    std::set<unsigned short> all;
    for (unsigned id = 0; id < 65536; ++id)
        all.insert(all.end(), static_cast<unsigned short>(id));
    const std::vector<std::pair<std::set<unsigned short>, std::string>> lists = {
        {{0}, "0"},
        {{10, 20, 21, 22, 23}, "10,20-23"},
        {{1, 2, 4, 5, 6, 8}, "1-2,4-6,8"},
        {{0, 65534, 65535}, "0,65534-65535"},
        {all, "0-65535"},
    };
    for (const auto& [ids, text] : lists)
        expectLine(withMatch(MatchExternalVlanId(ids)), "0 external_vlan_id=" + text + " then");
}

TEST(RuleText, OfValuesThatOnlyTheWireBrings)
{
    MatchPB pb;
    pb.add_ports_(0xFFFFFFFF);
    pb.add_excluded_port_types_(0xFFFFFFFF);
    pb.add_excluded_port_types_(0);
    pb.set_pcp_(255);
    MatchIngressPorts ports;
    ports.convertFromMatchPB(&pb);
    expectLine(withMatch(ports), "0 ingress_ports=ffffffff,except:4294967295,except:0 then");
    MatchPcp pcp;
    pcp.convertFromMatchPB(&pb);
    expectLine(withMatch(pcp), "0 pcp=255 then");
}

TEST(RuleText, OfEgressPortsThatWereAssignedExcludedTypes)
{
    MatchEgressPorts match;
    static_cast<MatchPorts&>(match) =
        MatchPorts(MATCH_INGRESS_PORTS, std::list<port_type_t>{PORT_TYPE_CPU});
    expectLine(withMatch(match), "0 egress_ports=except:0 then");
}

TEST(RuleText, OfCounters)
{
    const auto typed = [](std::int64_t number) {
        return static_cast<counter_type_t>(static_cast<std::int32_t>(number));
    };
    for (const std::int64_t number : {-2147483648LL, -2LL, -1LL, 3LL, 4LL, 2147483647LL})
        expectLine(with(Counter(1, typed(number))), "0 then counter=1:" + std::to_string(number));
    expectLine(with(Counter(5, COUNTER_TYPE_INVALID)), "0 then counter=5:invalid");
    expectLine(with(Counter(0, COUNTER_TYPE_PACKETS)), "0 then counter=0:packets");
    expectLine(with(Counter(65535, COUNTER_TYPE_OCTETS)), "0 then counter=65535:octets");
    expectLine(with(Counter(0, COUNTER_TYPE_INVALID)), "0 then");
}

TEST(RuleText, OfPolicers)
{
    using policer::Action;
    using policer::Mode;
    using policer::Policer;
    const std::uint32_t invalid = Policer::INVALID_ID;
    const auto none = policer::STAGE_NONE;
    const auto of = [&](const std::set<Action>& actions) {
        return Policer(invalid, none, Mode(), actions);
    };
    const auto color = [](std::uint32_t code) { return static_cast<Action::Color>(code); };
    const auto action = [](std::uint32_t code) { return static_cast<Action::Type>(code); };
    const std::vector<std::pair<Policer, std::string>> policers = {
        {Policer(0, none, Mode(), {}), "id:0"},
        {Policer(invalid - 1, policer::STAGE_EGRESS, Mode(), {}), "id:4294967294,stage:egress"},
        {Policer(invalid, static_cast<policer::Stage>(3), Mode(), {}), "stage:3"},
        {Policer(invalid, none, Mode(Mode::NONE, {1, 0, 2, 0, 3, 0}), {}), "cir:1,ebs:2,pbs:3"},
        {Policer(invalid, none, Mode(Mode::SR_TCM, {0, invalid, 0, 4, 0, 5}), {}),
         "mode:sr_tcm,cbs:4294967295,eir:4,pir:5"},
        {Policer(invalid, none, Mode(static_cast<Mode::Type>(invalid), {}), {}), "mode:4294967295"},
        {of({{Action::GREEN, Action::DROP},
             {Action::RED, Action::SET_DSCP, 255},
             {Action::RED, Action::SET_DSCP, 0},
             {Action::RED, Action::SET_PCP, 9},
             {color(3), action(3)},
             {color(invalid), action(invalid)}}),
         "red:set_pcp:9,red:set_dscp:0,red:set_dscp:255,green:drop,3:3,4294967295:4294967295"},
        // What no accessor tells: a value that the type does not use.
        {of({{Action::RED, Action::DROP, 7}}),
         "bytes:08ffffffff0f10021a0e08041000180020002800300038002206080010001807"},
        {of({{Action::RED, Action::DROP, 0}, {Action::RED, Action::DROP, 255}}),
         "bytes:"
         "08ffffffff0f10021a0e0804100018002000280030003800220608001000180022070800100018ff01"},
    };
    for (const auto& [policer, text] : policers)
        expectLine(with(policer), "0 then policer=" + text);
    expectLine(with(Policer()), "0 then");
}

// -------------------------------------------------------------------------------------- any values

// -------------------------------------------------------------------------------------- any values

TEST(RuleText, OfAnyGroup)
{
    AnyGroups groups;
    CodeSet<filtersMatch_t> matches;
    CodeSet<filtersAction_t> actions;
    for (int left = 2000; left != 0 && !HasFailure(); --left) {
        const FiltersGroup group = groups.next();
        expectBackAgain(group);
        for (const auto& element : group.getEntriesRef()) {
            matches = matches | element.second.getMatchesRef().kinds();
            actions = actions | element.second.getActionsRef().kinds();
        }
    }
    // No type admits these.
    EXPECT_EQ(matches, everyMatchBut({MATCH_SRC_IPV6, MATCH_VLAN_UNTAGGED}));
    EXPECT_EQ(actions, everyAction());
}

} // namespace
} // namespace FiltersCommon::test
