#include "fields.h"

#include "named_entries.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace {

using namespace filterctl;
using namespace FiltersCommon;
using namespace FiltersCommon::test;

// clang-format off
const std::map<std::string, std::string> TEXTS = {
    {"MatchAll", ""},
    {"MatchIngressPorts", R"(Number of ports: 2, LIMIDs: "lag772" "eth0/1")"},
    {"MatchIngressPorts_none", "Number of ports: 0, LIMIDs:"},
    {"MatchIngressPorts_excluded", R"(Excluded Port Types: "CPU_PORT")"},
    {"MatchIngressPorts_excludedUnnamed", R"(Excluded Port Types: "" "CPU_PORT")"},
    {"MatchExternalVlanId", "VLAN IDs: [ 5 300 ]"},
    {"MatchExternalVlanId_one", "VLAN IDs: [ 4094 ]"},
    {"MatchExternalVlanId_none", "VLAN IDs: [ ]"},
    {"MatchTPID", "TPID: 0x8100"},
    {"MatchTPID_small", "TPID: 0xab"},
    {"MatchDstMac", "MAC: 0:1a:2b:0:0:1, Mask: ff:ff:ff:ff:ff:ff"},
    {"MatchDstMac_masked", "MAC: 1:80:c2:0:0:0, Mask: ff:ff:ff:0:0:f"},
    {"MatchDstL4Port", "Port: 80, Mask: 65535"},
    {"MatchDstL4Port_masked", "Port: 1024, Mask: 64512"},
    {"MatchSrcL4Port", "Port: 65535, Mask: 65535"},
    {"MatchSrcL4Port_masked", "Port: 32768, Mask: 49152"},
    {"MatchSrcMac", "MAC: aa:bb:cc:dd:ee:f, Mask: ff:ff:ff:ff:ff:ff"},
    {"MatchSrcMac_masked", "MAC: 2:0:0:0:0:0, Mask: 3:0:0:0:0:0"},
    {"MatchL2SrcEntryType", "L2 Src Entry Type: 3"},
    {"MatchL2SrcEntryType_negative", "L2 Src Entry Type: -1"},
    {"MatchSrcIPv4", "IP: 192.0.2.1, Mask: 255.255.255.255"},
    {"MatchSrcIPv4_masked", "IP: 192.0.2.1, Mask: 255.255.255.0"},
    {"MatchDstIPv4", "IP: 198.51.100.7, Mask: 255.255.255.255"},
    {"MatchDstIPv4_masked", "IP: 203.0.113.128, Mask: 255.255.255.128"},
    {"MatchInternalVlanId", "VLAN IDs: [ 10 20 ]"},
    {"MatchInternalVlanId_one", "VLAN IDs: [ 65535 ]"},
    {"MatchInternalVlanId_none", "VLAN IDs: [ ]"},
    {"MatchPcp", "PCP: 7"},
    {"MatchPcp_cut", "PCP: 1"},
    {"MatchInternalPcp", "PCP: 5"},
    {"MatchInternalPcp_cut", "PCP: 6"},
    {"MatchSrcIPv6", "IPv6: 2001:db8::1, Mask: ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff"},
    {"MatchDstIPv6", "IPv6: 2001:db8:0:1:2:3:4:5, Mask: ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff"},
    {"MatchDstIPv6_masked", "IPv6: 2001:db8:1::, Mask: ffff:ffff:ffff::"},
    {"MatchVlanUntagged", ""},
    {"MatchIpProtocol", "Ip Protocol: 6"},
    {"MatchIpProtocol_letter", "Ip Protocol: 65"},
    {"MatchPacketRes", "Pkt Resolution: 4"},
    {"MatchPacketRes_negative", "Pkt Resolution: -2"},
    {"MatchMplsTerm", "Mpls Terminated status: 1"},
    {"MatchMplsTerm_false", "Mpls Terminated status: 0"},
    {"MatchToS", "ToS: 41"},
    {"MatchDSCP", "ToS: 40"},
    {"MatchDSCP_cut", "ToS: 4"},
    {"MatchVirtualPort", "LIMID: vlan300"},
    {"MatchEgressPorts", R"(Number of ports: 2, LIMIDs: "lag772" "eth0/1")"},
    {"MatchEgressPorts_none", "Number of ports: 0, LIMIDs:"},
    {"MatchIngressStpState", "IngressStpState: 2"},
    {"MatchIngressStpState_negative", "IngressStpState: -3"},
    {"MatchVlanInfo", "SVC VLAN Type: 7"},
    {"MatchVlanInfo_large", "SVC VLAN Type: 4294967295"},
    {"MatchSrcPort", "LIMID: cpu1"},
    {"MatchSrcPort_unnamed", "LIMID: limid-ff008001"},
    {"MatchTTL", "TTL: 64"},
    {"MatchVrfId", "Match VRF ID: 5"},
    {"MatchVrfId_large", "Match VRF ID: 65535"},
    {"MatchDrop", "Match Drop: 1"},
    {"MatchDrop_false", "Match Drop: 0"},
    {"MatchCpuPort", ""},
    {"MatchForwardingType", "Forwarding Type: 1"},
    {"MatchForwardingType_negative", "Forwarding Type: -4"},
    {"MatchDestinationCpu", ""},

    {"ActionPermit", ""},
    {"ActionDeny", ""},
    {"ActionCopyToCpu", ""},
    {"ActionBlockEgressPorts", R"(Number of ports: 3, LIMIDs: "eth2/3" "lag772" "eth2/3")"},
    {"ActionBlockEgressPorts_none", "Number of ports: 0, LIMIDs:"},
    {"ActionCopyToCpuCancel", "Cp2CPU Cancel type: COPY_TO_CPU_CANCEL"},
    {"ActionCopyToCpuCancel_switch", "Cp2CPU Cancel type: SWITCH_TO_CPU_CANCEL"},
    {"ActionSetPcp", "PCP: 7"},
    {"ActionSetPcp_wide", "PCP: 200"},
    {"ActionSetPcpAndQueue", "PCP_AND_QUEUE: 66"},
    {"ActionSetInnerPcp", "Inner PCP: 3"},
    {"ActionSetDSCP", "DSCP: 46"},
    {"ActionMapToCosQueue", "CoS Queue: 0"},
    {"ActionMapToCpuCosQueue", "CPU CoS Queue: 255"},
    {"ActionRedirect", R"(LIMIDs: "lag772")"},
    {"ActionRedirect_several", R"(LIMIDs: "eth2/3" "lag772" "eth2/3")"},
    {"ActionRedirect_none", ""},
    {"ActionReplaceDstMac", "Replace MAC: 0:1a:2b:0:0:1"},
    {"ActionRedirectCancel", ""},
    {"ActionReplaceSrcMac", "Replace MAC: fe:dc:ba:98:76:54"},
    {"ActionL3Switch", "L3 Destination ID: 4000000000"},
    {"ActionBlackHole", ""},
};
// clang-format on

template <class Base>
void expectTexts(const std::vector<Sample<Base>>& samples)
{
    for (const Sample<Base>& sample : samples)
        EXPECT_EQ(textOf(fieldsOf(*sample.object)), TEXTS.at(sample.name)) << sample.name;
}

TEST(Fields, OfEveryFormOfEachClass)
{
    expectTexts(matchSamples());
    expectTexts(actionSamples());
    EXPECT_EQ(matchSamples().size() + actionSamples().size(), TEXTS.size());
}

TEST(Fields, HaveLabels)
{
    const Fields fields = fieldsOf(MatchSrcIPv4(ipv4("192.0.2.1"), ipv4("255.255.255.0")));
    ASSERT_EQ(fields.size(), 2u);
    EXPECT_EQ(fields[0].label, "IP");
    EXPECT_EQ(fields[0].value, "192.0.2.1");
    EXPECT_EQ(fields[1].label, "Mask");
    EXPECT_EQ(fields[1].value, "255.255.255.0");
}

TEST(Fields, OfCounters)
{
    EXPECT_EQ(textOf(fieldsOf(Counter(12, COUNTER_TYPE_OCTETS))), "ID: 12, Type: Octets");
    EXPECT_EQ(textOf(fieldsOf(Counter())), "ID: 0, Type: Invalid");
}

TEST(Fields, OfPolicers)
{
    EXPECT_EQ(textOf(fieldsOf(policerOf(policer::STAGE_INGRESS, policer::Mode::SR_TCM))),
              "Policer Id: 17, Stage: Ingress, "
              "Mode: SrTcm (CIR: 1000 kbits/s, CBS: 2000 bytes, EBS: 3000 bytes), "
              "Actions: Red Drop, Yellow Set PCP 3, Green Set DSCP 46");
    EXPECT_TRUE(fieldsOf(policer::Policer()).empty());
    const auto unnamed = static_cast<policer::Action::Type>(5);
    EXPECT_EQ(textOf(fieldsOf(policer::Policer(
                  policer::Policer::INVALID_ID, static_cast<policer::Stage>(5), policer::Mode(),
                  {policer::Action(static_cast<policer::Action::Color>(5), unnamed)}))),
              "Policer Id: Invalid, Stage:, Mode: None, Actions:");
}

TEST(Fields, NamesOfStagesAndTypes)
{
    EXPECT_EQ(nameOf(GROUP_STAGE_3), "GROUP_STAGE_3");
    EXPECT_EQ(nameOf(static_cast<filtersGroupStage_t>(4)), "4");
    EXPECT_EQ(nameOf(GROUP_TYPE_9), "GROUP_TYPE_9");
    EXPECT_EQ(nameOf(static_cast<filtersGroupType_t>(-1)), "-1");
}

} // namespace
