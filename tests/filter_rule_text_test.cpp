#include "filter_rule_text.h"

#include "named_entries.h"
#include "refusals_support.h"
#include "rule_text_support.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace FiltersCommon::test {
namespace {

// ------------------------------------------------------------------------------------------ words

const std::map<std::string, std::string> MATCH_WORDS = {
    {"MatchAll", "all"},
    {"MatchIngressPorts", "ingress_ports=01020304,00000001"},
    {"MatchIngressPorts_none", "ingress_ports="},
    {"MatchIngressPorts_excluded", "ingress_ports=except:0"},
    {"MatchIngressPorts_excludedUnnamed", "ingress_ports=except:5,except:0"},
    {"MatchExternalVlanId", "external_vlan_id=5,300"},
    {"MatchExternalVlanId_one", "external_vlan_id=4094"},
    {"MatchExternalVlanId_none", "external_vlan_id="},
    {"MatchTPID", "tpid=0x8100"},
    {"MatchTPID_small", "tpid=0x00ab"},
    {"MatchDstMac", "dst_mac=00:1a:2b:00:00:01"},
    {"MatchDstMac_masked", "dst_mac=01:80:c2:00:00:00/ff:ff:ff:00:00:0f"},
    {"MatchDstL4Port", "dst_l4_port=80"},
    {"MatchDstL4Port_masked", "dst_l4_port=1024/0xfc00"},
    {"MatchSrcL4Port", "src_l4_port=65535"},
    {"MatchSrcL4Port_masked", "src_l4_port=32768/0xc000"},
    {"MatchSrcMac", "src_mac=aa:bb:cc:dd:ee:0f"},
    {"MatchSrcMac_masked", "src_mac=02:00:00:00:00:00/03:00:00:00:00:00"},
    {"MatchL2SrcEntryType", "l2_src_entry_type=3"},
    {"MatchL2SrcEntryType_negative", "l2_src_entry_type=4294967295"},
    {"MatchSrcIPv4", "src_ipv4=192.0.2.1"},
    {"MatchSrcIPv4_masked", "src_ipv4=192.0.2.1/24"},
    {"MatchDstIPv4", "dst_ipv4=198.51.100.7"},
    {"MatchDstIPv4_masked", "dst_ipv4=203.0.113.128/25"},
    {"MatchInternalVlanId", "internal_vlan_id=10,20"},
    {"MatchInternalVlanId_one", "internal_vlan_id=65535"},
    {"MatchInternalVlanId_none", "internal_vlan_id="},
    {"MatchPcp", "pcp=7"},
    {"MatchPcp_cut", "pcp=1"},
    {"MatchInternalPcp", "internal_pcp=5"},
    {"MatchInternalPcp_cut", "internal_pcp=6"},
    {"MatchSrcIPv6", "src_ipv6=2001:db8::1"},
    {"MatchDstIPv6", "dst_ipv6=2001:db8:0:1:2:3:4:5"},
    {"MatchDstIPv6_masked", "dst_ipv6=2001:db8:1::/48"},
    {"MatchVlanUntagged", "vlan_untagged"},
    {"MatchIpProtocol", "ip_protocol=tcp"},
    {"MatchIpProtocol_letter", "ip_protocol=65"},
    {"MatchPacketRes", "packet_res=4"},
    {"MatchPacketRes_negative", "packet_res=4294967294"},
    {"MatchMplsTerm", "mpls_term=true"},
    {"MatchMplsTerm_false", "mpls_term=false"},
    {"MatchToS", "tos=41"},
    {"MatchDSCP", "tos=40"},
    {"MatchDSCP_cut", "tos=4"},
    {"MatchVirtualPort", "virtual_port=0200012c"},
    {"MatchEgressPorts", "egress_ports=01020304,00000001"},
    {"MatchEgressPorts_none", "egress_ports="},
    {"MatchIngressStpState", "ingress_stp_state=2"},
    {"MatchIngressStpState_negative", "ingress_stp_state=4294967293"},
    {"MatchVlanInfo", "vlan_info=7"},
    {"MatchVlanInfo_large", "vlan_info=4294967295"},
    {"MatchSrcPort", "src_port=03010000"},
    {"MatchSrcPort_unnamed", "src_port=ff008001"},
    {"MatchTTL", "ttl=64"},
    {"MatchVrfId", "vrf_id=5"},
    {"MatchVrfId_large", "vrf_id=65535"},
    {"MatchDrop", "drop=true"},
    {"MatchDrop_false", "drop=false"},
    {"MatchCpuPort", "cpu_port"},
    {"MatchForwardingType", "forwarding_type=1"},
    {"MatchForwardingType_negative", "forwarding_type=4294967292"},
    {"MatchDestinationCpu", "destination_cpu"},
};

const std::map<std::string, std::string> ACTION_WORDS = {
    {"ActionPermit", "permit"},
    {"ActionDeny", "deny"},
    {"ActionCopyToCpu", "copy_to_cpu"},
    {"ActionBlockEgressPorts", "block_egress_ports=00020003,01020304,00020003"},
    {"ActionBlockEgressPorts_none", "block_egress_ports="},
    {"ActionCopyToCpuCancel", "copy_to_cpu_cancel=0"},
    {"ActionCopyToCpuCancel_switch", "copy_to_cpu_cancel=1"},
    {"ActionSetPcp", "set_pcp=7"},
    {"ActionSetPcp_wide", "set_pcp=200"},
    {"ActionSetPcpAndQueue", "set_pcp_and_queue=66"},
    {"ActionSetInnerPcp", "set_inner_pcp=3"},
    {"ActionSetDSCP", "set_dscp=46"},
    {"ActionMapToCosQueue", "map_to_cos_queue=0"},
    {"ActionMapToCpuCosQueue", "map_to_cpu_cos_queue=255"},
    {"ActionRedirect", "redirect=01020304"},
    {"ActionRedirect_several", "redirect=00020003,01020304,00020003"},
    {"ActionRedirect_none", "redirect="},
    {"ActionReplaceDstMac", "replace_dst_mac=00:1a:2b:00:00:01"},
    {"ActionRedirectCancel", "redirect_cancel"},
    {"ActionReplaceSrcMac", "replace_src_mac=fe:dc:ba:98:76:54"},
    {"ActionL3Switch", "l3_switch=4000000000"},
    {"ActionBlackHole", "black_hole"},
};

TEST(RuleText, OfEveryFormOfEachClass)
{
    std::size_t count = 0;
    for (const auto& [name, entry] : entriesOfEachKind()) {
        SCOPED_TRACE(name);
        if (const auto match = MATCH_WORDS.find(name); match != MATCH_WORDS.end())
            expectLine(*entry, "1 " + match->second + " then");
        else
            expectLine(*entry, "1 then " + ACTION_WORDS.at(name));
        ++count;
    }
    EXPECT_EQ(count, MATCH_WORDS.size() + ACTION_WORDS.size());
}

// ------------------------------------------------------------------------------ entries and groups

const std::map<std::string, std::string> ENTRIES = {
    {"empty", "0 then"},
    {"typical", "7 priority=100 dst_ipv4=192.0.2.0/24 then deny"},
    {"limits", "65535 priority=4294967295 then counter=65535:-1"},
    {"tpid_in_the_middle",
     "42 priority=1000 external_vlan_id=10,20 tpid=0x8100 dst_l4_port=80 ip_protocol=udp "
     "then map_to_cpu_cos_queue=31 l3_switch=3054 counter=12:octets policer=id:17,stage:ingress,"
     "mode:flow,cir:1000,cbs:2000,ebs:3000,eir:4000,pbs:5000,pir:6000,"
     "red:drop,yellow:set_pcp:3,green:set_dscp:46"},
    {"ipv6", "3 dst_ipv6=2001:db8::/32 vrf_id=9 then redirect=00010001,00010002,01000007"},
    {"dscp", "4 tos=40 then"},
    {"counter_packets", "5 then counter=6:packets"},
    {"every_match_but_ipv6",
     "1000 all ingress_ports=01020304,00000001 external_vlan_id=5,300 tpid=0x8100 "
     "dst_mac=00:1a:2b:00:00:01 dst_l4_port=80 src_l4_port=65535 src_mac=aa:bb:cc:dd:ee:0f "
     "l2_src_entry_type=3 src_ipv4=192.0.2.1 dst_ipv4=198.51.100.7 internal_vlan_id=10,20 pcp=7 "
     "internal_pcp=5 vlan_untagged ip_protocol=tcp packet_res=4 mpls_term=true tos=41 "
     "virtual_port=0200012c egress_ports=01020304,00000001 ingress_stp_state=2 vlan_info=7 "
     "src_port=03010000 ttl=64 vrf_id=5 drop=true cpu_port forwarding_type=1 destination_cpu "
     "then"},
    {"every_match_but_ipv4_and_tpid",
     "1001 all ingress_ports=01020304,00000001 external_vlan_id=5,300 dst_mac=00:1a:2b:00:00:01 "
     "dst_l4_port=80 src_l4_port=65535 src_mac=aa:bb:cc:dd:ee:0f l2_src_entry_type=3 "
     "internal_vlan_id=10,20 pcp=7 internal_pcp=5 src_ipv6=2001:db8::1 "
     "dst_ipv6=2001:db8:0:1:2:3:4:5 vlan_untagged ip_protocol=tcp packet_res=4 mpls_term=true "
     "tos=41 virtual_port=0200012c egress_ports=01020304,00000001 ingress_stp_state=2 vlan_info=7 "
     "src_port=03010000 ttl=64 vrf_id=5 drop=true cpu_port forwarding_type=1 destination_cpu "
     "then"},
    {"every_action",
     "1002 then permit deny copy_to_cpu block_egress_ports=00020003,01020304,00020003 "
     "copy_to_cpu_cancel=0 set_pcp=7 set_pcp_and_queue=66 set_inner_pcp=3 set_dscp=46 "
     "map_to_cos_queue=0 map_to_cpu_cos_queue=255 redirect=01020304 "
     "replace_dst_mac=00:1a:2b:00:00:01 redirect_cancel replace_src_mac=fe:dc:ba:98:76:54 "
     "l3_switch=4000000000 black_hole"},
    {"policer_sr_tcm", "1 then policer=id:17,stage:ingress,mode:sr_tcm,@"},
    {"policer_tr_tcm", "1 then policer=id:17,stage:egress,mode:tr_tcm,@"},
    {"policer_tr_tcm_ds", "1 then policer=id:17,stage:ingress,mode:tr_tcm_ds,@"},
    {"policer_flow", "1 then policer=id:17,stage:egress,mode:flow,@"},
    {"policer_invalid", "1 then policer=stage:ingress"},
    {"policer_not_shown", "1 then policer=id:17,mode:flow,@"},
    // The value of its action is not told.
    {"policer_unnamed", // and a value that no accessor tells
     "1 then policer=bytes:08feffffff0f10051a14080510e80718d00f20b81728a01f30882738f02e"
     "2206080510051801"},
};

TEST(RuleText, OfNamedEntries)
{
    const std::string rates = "cir:1000,cbs:2000,ebs:3000,eir:4000,pbs:5000,pir:6000,"
                              "red:drop,yellow:set_pcp:3,green:set_dscp:46";
    for (const auto& [name, entry] : entrySamples()) {
        SCOPED_TRACE(name);
        std::string line = ENTRIES.at(name);
        if (line.back() == '@')
            line.replace(line.size() - 1, 1, rates);
        expectLine(*entry, line);
    }
}

TEST(RuleText, OfNamedGroups)
{
    std::map<std::string, std::string> expected = {
        {"empty", "group 7 priority=0 stage=0 type=0\n"},
        {"limits", "group 65535 priority=65535 stage=3 type=5\n"},
        {"access_list",
         "group 1 priority=500 stage=0 type=3\n"
         "2 priority=4294967295 src_l4_port=1024/0xfc00 src_ipv4=10.1.0.0/16 ip_protocol=tcp then "
         "permit set_dscp=10\n"
         "11 priority=100 dst_ipv4=192.0.2.0/24 then deny\n"
         "300 then\n"},
    };
    for (const auto& [name, group] : groupSamples()) {
        SCOPED_TRACE(name);
        expectBackAgain(*group);
        if (const auto text = expected.find(name); text != expected.end()) {
            EXPECT_EQ(toRuleText(*group), text->second);
            expected.erase(text);
        }
    }
    EXPECT_TRUE(expected.empty());
}

TEST(RuleText, OfGroupsWhoseStageAndTypeDoNotFit)
{
    FiltersGroup group(1);
    place(group, stage(0xFFFFFFFF), type(0x80000000));
    EXPECT_EQ(toRuleText(group), "group 1 priority=0 stage=4294967295 type=2147483648\n");
    expectBackAgain(group);
    place(group, stage(3), type(0));
    group.insertEntry(FiltersEntry(1));
    place(group, stage(3), type(3));
    expectBackAgain(group);
}

} // namespace
} // namespace FiltersCommon::test
