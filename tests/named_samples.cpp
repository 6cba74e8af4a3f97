#include "named_samples.h"

#include "text_support.h"

#include "filter_actions.pb.h"

namespace FiltersCommon::test {

namespace {

template <class Base, class T>
Sample<Base> sample(const char* name, const T& object, const Expected& expected)
{
    return {name, expected, std::make_shared<const T>(object),
            [object] { return std::make_unique<T>(object); },
            [object](std::ostream& out) -> std::ostream& {
                using ::operator<<;
                return out << object;
            }};
}

// Lines of dumps.
std::string line(const std::string& text) { return eol("      " + text); }
std::string unflushed(const std::string& text) { return nl("      " + text); }
std::string noParameters() { return line("<no parameters>"); }

} // namespace

#define FILTERS_COMMON_NAME(kind, Class, Values) #Class,

std::set<std::string> matchClasses()
{
    return {FILTERS_COMMON_EACH_MATCH_KIND(FILTERS_COMMON_NAME) "MatchDSCP"};
}

std::set<std::string> actionClasses()
{
    return {FILTERS_COMMON_EACH_ACTION_KIND(FILTERS_COMMON_NAME)};
}

#undef FILTERS_COMMON_NAME

std::vector<Sample<Match>> matchSamples()
{
    const auto named = [](const char* name, const auto& match, const Expected& expected) {
        return sample<Match>(name, match, expected);
    };
    const std::list<limid_t> twoPorts = {limId(1, 2, 3, 4), limId(0, 0, 0, 1)};
    const std::list<limid_t> noPorts;
    using PortTypes = std::list<port_type_t>;
    using Ids = std::set<unsigned short>;

    return {
        named("MatchAll", MatchAll(), {0, "", noParameters(), ""}),
        named("MatchIngressPorts", MatchIngressPorts(twoPorts),
              {1, "ports_: [0x01020304, 1]",
               line("Number of ports: 2") + line("LIMIDs: \"lag772\" \"eth0/1\" "),
               "LIMIDs: ['lag772', 'eth0/1']"}),
        named("MatchIngressPorts_none", MatchIngressPorts(noPorts),
              {1, "", line("Number of ports: 0") + line("LIMIDs: "), "LIMIDs: []"}),
        named("MatchIngressPorts_excluded", MatchIngressPorts(PortTypes{PORT_TYPE_CPU}),
              {1, "excluded_port_types_: 0", line("Excluded Port Types: \"CPU_PORT\" "),
               "Excluded Port Types: ['CPU_PORT']"}),
        named("MatchIngressPorts_excludedUnnamed",
              MatchIngressPorts(PortTypes{static_cast<port_type_t>(5), PORT_TYPE_CPU}),
              {1, "excluded_port_types_: [5, 0]", line("Excluded Port Types: \"\" \"CPU_PORT\" "),
               "Excluded Port Types: [5, 'CPU_PORT']"}),
        named("MatchExternalVlanId", MatchExternalVlanId(Ids{300, 5}),
              {2, "vlan_id_: [5, 300]", line("VLAN IDs: [ 5 300 ]"), "VLAN IDs: [5, 300]"}),
        named("MatchExternalVlanId_one", MatchExternalVlanId(4094),
              {2, "vlan_id_: 4094", line("VLAN IDs: [ 4094 ]"), "VLAN IDs: [4094]"}),
        named("MatchExternalVlanId_none", MatchExternalVlanId(Ids{}),
              {2, "", line("VLAN IDs: [ ]"), "VLAN IDs: []"}),
        named("MatchTPID", MatchTPID(0x8100),
              {3, "tpid_: 0x8100", line("TPID: 0x8100"), "TPID: 33024"}),
        named("MatchTPID_small", MatchTPID(0x00AB),
              {3, "tpid_: 0xab", line("TPID: 0xab"), "TPID: 171"}),
        named("MatchDstMac", MatchDstMac(mac("00:1a:2b:00:00:01")),
              {4, R"(mac_: "\x00\x1a\x2b\x00\x00\x01" mac_mask_: "\xff\xff\xff\xff\xff\xff")",
               line("MAC: 0:1a:2b:0:0:1") + line("Mask: ff:ff:ff:ff:ff:ff"),
               "MAC: '0:1a:2b:0:0:1', Mask: 'ff:ff:ff:ff:ff:ff'"}),
        named("MatchDstMac_masked", MatchDstMac(mac("01:80:c2:00:00:00"), mac("ff:ff:ff:00:00:0f")),
              {4, R"(mac_: "\x01\x80\xc2\x00\x00\x00" mac_mask_: "\xff\xff\xff\x00\x00\x0f")",
               line("MAC: 1:80:c2:0:0:0") + line("Mask: ff:ff:ff:0:0:f"),
               "MAC: '1:80:c2:0:0:0', Mask: 'ff:ff:ff:0:0:f'"}),
        named("MatchDstL4Port", MatchDstL4Port(80),
              {5, "l4port_: 80 l4port_mask_: 0xffff", line("Port: 80") + line("Mask: 65535"),
               "Port: 80, Mask: 65535"}),
        named("MatchDstL4Port_masked", MatchDstL4Port(1024, 0xFC00),
              {5, "l4port_: 1024 l4port_mask_: 0xfc00", line("Port: 1024") + line("Mask: 64512"),
               "Port: 1024, Mask: 64512"}),
        named("MatchSrcL4Port", MatchSrcL4Port(65535),
              {6, "l4port_: 65535 l4port_mask_: 0xffff", line("Port: 65535") + line("Mask: 65535"),
               "Port: 65535, Mask: 65535"}),
        named("MatchSrcL4Port_masked", MatchSrcL4Port(0x8000, 0xC000),
              {6, "l4port_: 0x8000 l4port_mask_: 0xc000", line("Port: 32768") + line("Mask: 49152"),
               "Port: 32768, Mask: 49152"}),
        named("MatchSrcMac", MatchSrcMac(mac("aa:bb:cc:dd:ee:0f")),
              {7, R"(mac_: "\xaa\xbb\xcc\xdd\xee\x0f" mac_mask_: "\xff\xff\xff\xff\xff\xff")",
               line("MAC: aa:bb:cc:dd:ee:f") + line("Mask: ff:ff:ff:ff:ff:ff"),
               "MAC: 'aa:bb:cc:dd:ee:f', Mask: 'ff:ff:ff:ff:ff:ff'"}),
        named("MatchSrcMac_masked", MatchSrcMac(mac("02:00:00:00:00:00"), mac("03:00:00:00:00:00")),
              {7, R"(mac_: "\x02\x00\x00\x00\x00\x00" mac_mask_: "\x03\x00\x00\x00\x00\x00")",
               line("MAC: 2:0:0:0:0:0") + line("Mask: 3:0:0:0:0:0"),
               "MAC: '2:0:0:0:0:0', Mask: '3:0:0:0:0:0'"}),
        named("MatchL2SrcEntryType", MatchL2SrcEntryType(static_cast<l2SrcEntryType_t>(3)),
              {8, "l2_src_: 3", line("L2 Src Entry Type: 3"), "L2 Src Entry Type: 3"}),
        named("MatchL2SrcEntryType_negative",
              MatchL2SrcEntryType(static_cast<l2SrcEntryType_t>(-1)),
              {8, "l2_src_: 0xffffffff", line("L2 Src Entry Type: -1"), "L2 Src Entry Type: -1"}),
        named("MatchSrcIPv4", MatchSrcIPv4(ipv4("192.0.2.1")),
              {9, R"(ipv4_: "\xc0\x00\x02\x01" ipv4_mask_: "\xff\xff\xff\xff")",
               line("IP: 192.0.2.1") + line("Mask: 255.255.255.255"),
               "IP: '192.0.2.1', Mask: '255.255.255.255'"}),
        named("MatchSrcIPv4_masked", MatchSrcIPv4(ipv4("192.0.2.1"), ipv4("255.255.255.0")),
              {9, R"(ipv4_: "\xc0\x00\x02\x01" ipv4_mask_: "\xff\xff\xff\x00")",
               line("IP: 192.0.2.1") + line("Mask: 255.255.255.0"),
               "IP: '192.0.2.1', Mask: '255.255.255.0'"}),
        named("MatchDstIPv4", MatchDstIPv4(ipv4("198.51.100.7")),
              {10, R"(ipv4_: "\xc6\x33\x64\x07" ipv4_mask_: "\xff\xff\xff\xff")",
               line("IP: 198.51.100.7") + line("Mask: 255.255.255.255"),
               "IP: '198.51.100.7', Mask: '255.255.255.255'"}),
        named("MatchDstIPv4_masked", MatchDstIPv4(ipv4("203.0.113.128"), ipv4("255.255.255.128")),
              {10, R"(ipv4_: "\xcb\x00\x71\x80" ipv4_mask_: "\xff\xff\xff\x80")",
               line("IP: 203.0.113.128") + line("Mask: 255.255.255.128"),
               "IP: '203.0.113.128', Mask: '255.255.255.128'"}),
        named("MatchInternalVlanId", MatchInternalVlanId(Ids{10, 20}),
              {11, "vlan_id_: [10, 20]", line("VLAN IDs: [ 10 20 ]"), "VLAN IDs: [10, 20]"}),
        named("MatchInternalVlanId_one", MatchInternalVlanId(65535),
              {11, "vlan_id_: 65535", line("VLAN IDs: [ 65535 ]"), "VLAN IDs: [65535]"}),
        named("MatchInternalVlanId_none", MatchInternalVlanId(Ids{}),
              {11, "", line("VLAN IDs: [ ]"), "VLAN IDs: []"}),
        named("MatchPcp", MatchPcp(7), {12, "pcp_: 7", line("PCP: 7"), "PCP: 7"}),
        named("MatchPcp_cut", MatchPcp(9), {12, "pcp_: 1", line("PCP: 1"), "PCP: 1"}),
        named("MatchInternalPcp", MatchInternalPcp(5), {13, "pcp_: 5", line("PCP: 5"), "PCP: 5"}),
        named("MatchInternalPcp_cut", MatchInternalPcp(14),
              {13, "pcp_: 6", line("PCP: 6"), "PCP: 6"}),
        named("MatchSrcIPv6", MatchSrcIPv6(ipv6("2001:db8::1")),
              {14,
               R"(ipv6_: "\x20\x01\x0d\xb8\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x01" )"
               R"(ipv6_mask_: "\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff")",
               unflushed("IPv6: 2001:db8::1") +
                   unflushed("Mask: ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff"),
               "IPv6: '2001:db8::1', Mask: 'ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff'"}),
        named("MatchDstIPv6", MatchDstIPv6(ipv6("2001:db8:0:1:2:3:4:5")),
              {15,
               R"(ipv6_: "\x20\x01\x0d\xb8\x00\x00\x00\x01\x00\x02\x00\x03\x00\x04\x00\x05" )"
               R"(ipv6_mask_: "\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff")",
               unflushed("IPv6: 2001:db8:0:1:2:3:4:5") +
                   unflushed("Mask: ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff"),
               "IPv6: '2001:db8:0:1:2:3:4:5', Mask: 'ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff'"}),
        named("MatchDstIPv6_masked", MatchDstIPv6(ipv6("2001:db8:1::"), ipv6("ffff:ffff:ffff::")),
              {15,
               R"(ipv6_: "\x20\x01\x0d\xb8\x00\x01\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00" )"
               R"(ipv6_mask_: "\xff\xff\xff\xff\xff\xff\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00")",
               unflushed("IPv6: 2001:db8:1::") + unflushed("Mask: ffff:ffff:ffff::"),
               "IPv6: '2001:db8:1::', Mask: 'ffff:ffff:ffff::'"}),
        named("MatchVlanUntagged", MatchVlanUntagged(), {16, "", noParameters(), ""}),
        named("MatchIpProtocol", MatchIpProtocol(6),
              {17, "ipprotocol_: 6", line("Ip Protocol: 6"), "Ip Protocol: 6"}),
        named("MatchIpProtocol_letter", MatchIpProtocol('A'),
              {17, "ipprotocol_: 65", line("Ip Protocol: 65"), "Ip Protocol: 65"}),
        named("MatchPacketRes", MatchPacketRes(static_cast<en_Resolution>(4)),
              {18, "packet_resolution_: 4", line("Pkt Resolution: 4"), "Pkt Resolution: 4"}),
        named("MatchPacketRes_negative", MatchPacketRes(static_cast<en_Resolution>(-2)),
              {18, "packet_resolution_: 0xfffffffe", line("Pkt Resolution: -2"),
               "Pkt Resolution: -2"}),
        named("MatchMplsTerm", MatchMplsTerm(true),
              {19, "mpls_terminated_: true", line("Mpls Terminated status: 1"),
               "Mpls Terminated status: true"}),
        named("MatchMplsTerm_false", MatchMplsTerm(false),
              {19, "mpls_terminated_: false", line("Mpls Terminated status: 0"),
               "Mpls Terminated status: false"}),
        named("MatchToS", MatchToS(41), {20, "tos_: 41", line("ToS: 41"), "ToS: 41"}),
        named("MatchDSCP", MatchDSCP(10), {20, "tos_: 40", line("DSCP: 10"), "ToS: 40"}),
        named("MatchDSCP_cut", MatchDSCP(65), {20, "tos_: 4", line("DSCP: 1"), "ToS: 4"}),
        named("MatchVirtualPort", MatchVirtualPort(limId(2, 0, 1, 0x2C)),
              {21, "limid_: 0x0200012c", line("LIMID: vlan300"), "LIMID: 'vlan300'"}),
        named("MatchEgressPorts", MatchEgressPorts(twoPorts),
              {22, "ports_: [0x01020304, 1]",
               line("Number of ports: 2") + line("LIMIDs: \"lag772\" \"eth0/1\" "),
               "LIMIDs: ['lag772', 'eth0/1']"}),
        named("MatchEgressPorts_none", MatchEgressPorts(noPorts),
              {22, "", line("Number of ports: 0") + line("LIMIDs: "), "LIMIDs: []"}),
        named("MatchIngressStpState", MatchIngressStpState(static_cast<en_StpState>(2)),
              {23, "ingress_stp_state_: 2", line("IngressStpState: 2"), "IngressStpState: 2"}),
        named("MatchIngressStpState_negative", MatchIngressStpState(static_cast<en_StpState>(-3)),
              {23, "ingress_stp_state_: 0xfffffffd", line("IngressStpState: -3"),
               "IngressStpState: -3"}),
        named("MatchVlanInfo", MatchVlanInfo({7}),
              {24, "vlan_info_svc_vlan_type_: 7", line("SVC VLAN Type: 7"), "SVC VLAN Type: 7"}),
        named("MatchVlanInfo_large", MatchVlanInfo({0xFFFFFFFF}),
              {24, "vlan_info_svc_vlan_type_: 0xffffffff", line("SVC VLAN Type: 4294967295"),
               "SVC VLAN Type: 4294967295"}),
        named("MatchSrcPort", MatchSrcPort(limId(3, 1, 0, 0)),
              {25, "limid_: 0x03010000", line("LIMID: cpu1"), "LIMID: 'cpu1'"}),
        named("MatchSrcPort_unnamed", MatchSrcPort(limId(0xFF, 0, 0x80, 1)),
              {25, "limid_: 0xff008001", line("LIMID: limid-ff008001"), "LIMID: 'limid-ff008001'"}),
        named("MatchTTL", MatchTTL(64), {26, "ttl_: 64", line("TTL: 64"), "TTL: 64"}),
        named("MatchVrfId", MatchVrfId(5),
              {27, "vrf_id_: 5", unflushed("Match VRF ID: 5"), "Match VRF ID: 5"}),
        named("MatchVrfId_large", MatchVrfId(65535),
              {27, "vrf_id_: 65535", unflushed("Match VRF ID: 65535"), "Match VRF ID: 65535"}),
        named("MatchDrop", MatchDrop(true),
              {28, "drop_flag_: true", unflushed("Match Drop: 1"), "Match Drop: true"}),
        named("MatchDrop_false", MatchDrop(false),
              {28, "drop_flag_: false", unflushed("Match Drop: 0"), "Match Drop: false"}),
        named("MatchCpuPort", MatchCpuPort(), {29, "", "", ""}),
        named("MatchForwardingType", MatchForwardingType(static_cast<en_ForwardingType>(1)),
              {30, "fwd_type_: 1", line("Forwarding Type: 1"), "Forwarding Type: 1"}),
        named("MatchForwardingType_negative",
              MatchForwardingType(static_cast<en_ForwardingType>(-4)),
              {30, "fwd_type_: 0xfffffffc", line("Forwarding Type: -4"), "Forwarding Type: -4"}),
        named("MatchDestinationCpu", MatchDestinationCpu(), {31, "", "", ""}),
    };
}

ActionRedirect redirectTo(const std::list<limid_t>& ports)
{
    ActionPB pb;
    ActionBlockEgressPorts(ports).convertToActionPB(&pb);
    ActionRedirect action(limId(0, 0, 0, 0));
    action.convertFromActionPB(&pb);
    return action;
}

std::vector<Sample<Action>> actionSamples()
{
    const auto named = [](const char* name, const auto& action, const Expected& expected) {
        return sample<Action>(name, action, expected);
    };
    const std::list<limid_t> threePorts = {limId(0, 2, 0, 3), limId(1, 2, 3, 4), limId(0, 2, 0, 3)};
    const std::list<limid_t> noPorts;

    return {
        named("ActionPermit", ActionPermit(), {0, "", noParameters(), ""}),
        named("ActionDeny", ActionDeny(), {1, "", noParameters(), ""}),
        named("ActionCopyToCpu", ActionCopyToCpu(), {2, "", noParameters(), ""}),
        named("ActionBlockEgressPorts", ActionBlockEgressPorts(threePorts),
              {3, "ports_: [0x00020003, 0x01020304, 0x00020003]",
               line("Number of ports: 3") + line("LIMIDs: \"eth2/3\" \"lag772\" \"eth2/3\" ") +
                   eol(""),
               "LIMIDs: ['eth2/3', 'lag772', 'eth2/3']"}),
        named("ActionBlockEgressPorts_none", ActionBlockEgressPorts(noPorts),
              {3, "", line("Number of ports: 0") + line("LIMIDs: ") + eol(""), "LIMIDs: []"}),
        named("ActionCopyToCpuCancel", ActionCopyToCpuCancel(COPY_TO_CPU_CANCEL),
              {4, "cp2cpu_cancel_type_: 0", line("Cp2CPU Cancel type: COPY_TO_CPU_CANCEL"),
               "Cp2CPU Cancel type: 'COPY_TO_CPU_CANCEL'"}),
        named("ActionCopyToCpuCancel_switch", ActionCopyToCpuCancel(SWITCH_TO_CPU_CANCEL),
              {4, "cp2cpu_cancel_type_: 1", line("Cp2CPU Cancel type: SWITCH_TO_CPU_CANCEL"),
               "Cp2CPU Cancel type: 'SWITCH_TO_CPU_CANCEL'"}),
        named("ActionSetPcp", ActionSetPcp(7), {5, "pcp_: 7", line("PCP: 7"), "PCP: 7"}),
        named("ActionSetPcp_wide", ActionSetPcp(200),
              {5, "pcp_: 200", line("PCP: 200"), "PCP: 200"}),
        named("ActionSetPcpAndQueue", ActionSetPcpAndQueue('B'),
              {6, "pcp_and_queue_: 66", line("PCP_AND_QUEUE: 66"), "PCP_AND_QUEUE: 66"}),
        named("ActionSetInnerPcp", ActionSetInnerPcp(3),
              {7, "pcp_: 3", line("Inner PCP: 3"), "Inner PCP: 3"}),
        named("ActionSetDSCP", ActionSetDSCP(46), {8, "dscp_: 46", line("DSCP: 46"), "DSCP: 46"}),
        named("ActionMapToCosQueue", ActionMapToCosQueue(0),
              {9, "cosq_: 0", line("CoS Queue: 0"), "CoS Queue: 0"}),
        named("ActionMapToCpuCosQueue", ActionMapToCpuCosQueue(255),
              {10, "cosq_: 255", line("CPU CoS Queue: 255"), "CPU CoS Queue: 255"}),
        named("ActionRedirect", ActionRedirect(limId(1, 2, 3, 4)),
              {11, "ports_: 0x01020304", line("\"lag772\" "), "LIMIDs: ['lag772']"}),
        named("ActionRedirect_several", redirectTo(threePorts),
              {11, "ports_: [0x00020003, 0x01020304, 0x00020003]",
               line("\"eth2/3\"       \"lag772\"       \"eth2/3\" "),
               "LIMIDs: ['eth2/3', 'lag772', 'eth2/3']"}),
        named("ActionRedirect_none", redirectTo(noPorts), {11, "", eol(""), "LIMIDs: []"}),
        named("ActionReplaceDstMac", ActionReplaceDstMac(mac("00:1a:2b:00:00:01")),
              {12, R"(mac_: "\x00\x1a\x2b\x00\x00\x01")", line("Replace MAC: 0:1a:2b:0:0:1"),
               "Replace MAC: '0:1a:2b:0:0:1'"}),
        named("ActionRedirectCancel", ActionRedirectCancel(), {13, "", noParameters(), ""}),
        named("ActionReplaceSrcMac", ActionReplaceSrcMac(mac("fe:dc:ba:98:76:54")),
              {14, R"(mac_: "\xfe\xdc\xba\x98\x76\x54")", line("Replace MAC: fe:dc:ba:98:76:54"),
               "Replace MAC: 'fe:dc:ba:98:76:54'"}),
        named("ActionL3Switch", ActionL3Switch(4000000000),
              {15, "l3_dest_id_: 4000000000", line("L3 Destination ID: 4000000000"),
               "L3 Destination ID: 4000000000"}),
        named("ActionBlackHole", ActionBlackHole(), {16, "", noParameters(), ""}),
    };
}

} // namespace FiltersCommon::test
