#include "named_samples.h"

#include "filter_actions.pb.h"

namespace FiltersCommon::test {

namespace {

template <class Base, class T>
Sample<Base> sample(const char* name, const T& object)
{
    return {name, std::make_shared<const T>(object),
            [object] { return std::make_unique<T>(object); },
            [object](std::ostream& out) -> std::ostream& {
                using ::operator<<;
                return out << object;
            }};
}

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
    const auto named = [](const char* name, const auto& match) {
        return sample<Match>(name, match);
    };
    const std::list<limid_t> twoPorts = {limId(1, 2, 3, 4), limId(0, 0, 0, 1)};
    const std::list<limid_t> noPorts;
    using PortTypes = std::list<port_type_t>;
    using Ids = std::set<unsigned short>;

    return {
        named("MatchAll", MatchAll()),
        named("MatchIngressPorts", MatchIngressPorts(twoPorts)),
        named("MatchIngressPorts_none", MatchIngressPorts(noPorts)),
        named("MatchIngressPorts_excluded", MatchIngressPorts(PortTypes{PORT_TYPE_CPU})),
        named("MatchIngressPorts_excludedUnnamed",
              MatchIngressPorts(PortTypes{static_cast<port_type_t>(5), PORT_TYPE_CPU})),
        named("MatchExternalVlanId", MatchExternalVlanId(Ids{300, 5})),
        named("MatchExternalVlanId_one", MatchExternalVlanId(4094)),
        named("MatchExternalVlanId_none", MatchExternalVlanId(Ids{})),
        named("MatchTPID", MatchTPID(0x8100)),
        named("MatchTPID_small", MatchTPID(0x00AB)),
        named("MatchDstMac", MatchDstMac(mac("00:1a:2b:00:00:01"))),
        named("MatchDstMac_masked",
              MatchDstMac(mac("01:80:c2:00:00:00"), mac("ff:ff:ff:00:00:0f"))),
        named("MatchDstL4Port", MatchDstL4Port(80)),
        named("MatchDstL4Port_masked", MatchDstL4Port(1024, 0xFC00)),
        named("MatchSrcL4Port", MatchSrcL4Port(65535)),
        named("MatchSrcL4Port_masked", MatchSrcL4Port(0x8000, 0xC000)),
        named("MatchSrcMac", MatchSrcMac(mac("aa:bb:cc:dd:ee:0f"))),
        named("MatchSrcMac_masked",
              MatchSrcMac(mac("02:00:00:00:00:00"), mac("03:00:00:00:00:00"))),
        named("MatchL2SrcEntryType", MatchL2SrcEntryType(static_cast<l2SrcEntryType_t>(3))),
        named("MatchL2SrcEntryType_negative",
              MatchL2SrcEntryType(static_cast<l2SrcEntryType_t>(-1))),
        named("MatchSrcIPv4", MatchSrcIPv4(ipv4("192.0.2.1"))),
        named("MatchSrcIPv4_masked", MatchSrcIPv4(ipv4("192.0.2.1"), ipv4("255.255.255.0"))),
        named("MatchDstIPv4", MatchDstIPv4(ipv4("198.51.100.7"))),
        named("MatchDstIPv4_masked", MatchDstIPv4(ipv4("203.0.113.128"), ipv4("255.255.255.128"))),
        named("MatchInternalVlanId", MatchInternalVlanId(Ids{10, 20})),
        named("MatchInternalVlanId_one", MatchInternalVlanId(65535)),
        named("MatchInternalVlanId_none", MatchInternalVlanId(Ids{})),
        named("MatchPcp", MatchPcp(7)),
        named("MatchPcp_cut", MatchPcp(9)),
        named("MatchInternalPcp", MatchInternalPcp(5)),
        named("MatchInternalPcp_cut", MatchInternalPcp(14)),
        named("MatchSrcIPv6", MatchSrcIPv6(ipv6("2001:db8::1"))),
        named("MatchDstIPv6", MatchDstIPv6(ipv6("2001:db8:0:1:2:3:4:5"))),
        named("MatchDstIPv6_masked", MatchDstIPv6(ipv6("2001:db8:1::"), ipv6("ffff:ffff:ffff::"))),
        named("MatchVlanUntagged", MatchVlanUntagged()),
        named("MatchIpProtocol", MatchIpProtocol(6)),
        named("MatchIpProtocol_letter", MatchIpProtocol('A')),
        named("MatchPacketRes", MatchPacketRes(static_cast<en_Resolution>(4))),
        named("MatchPacketRes_negative", MatchPacketRes(static_cast<en_Resolution>(-2))),
        named("MatchMplsTerm", MatchMplsTerm(true)),
        named("MatchMplsTerm_false", MatchMplsTerm(false)),
        named("MatchToS", MatchToS(41)),
        named("MatchDSCP", MatchDSCP(10)),
        named("MatchDSCP_cut", MatchDSCP(65)),
        named("MatchVirtualPort", MatchVirtualPort(limId(2, 0, 1, 0x2C))),
        named("MatchEgressPorts", MatchEgressPorts(twoPorts)),
        named("MatchEgressPorts_none", MatchEgressPorts(noPorts)),
        named("MatchIngressStpState", MatchIngressStpState(static_cast<en_StpState>(2))),
        named("MatchIngressStpState_negative", MatchIngressStpState(static_cast<en_StpState>(-3))),
        named("MatchVlanInfo", MatchVlanInfo({7})),
        named("MatchVlanInfo_large", MatchVlanInfo({0xFFFFFFFF})),
        named("MatchSrcPort", MatchSrcPort(limId(3, 1, 0, 0))),
        named("MatchSrcPort_unnamed", MatchSrcPort(limId(0xFF, 0, 0x80, 1))),
        named("MatchTTL", MatchTTL(64)),
        named("MatchVrfId", MatchVrfId(5)),
        named("MatchVrfId_large", MatchVrfId(65535)),
        named("MatchDrop", MatchDrop(true)),
        named("MatchDrop_false", MatchDrop(false)),
        named("MatchCpuPort", MatchCpuPort()),
        named("MatchForwardingType", MatchForwardingType(static_cast<en_ForwardingType>(1))),
        named("MatchForwardingType_negative",
              MatchForwardingType(static_cast<en_ForwardingType>(-4))),
        named("MatchDestinationCpu", MatchDestinationCpu()),
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
    const auto named = [](const char* name, const auto& action) {
        return sample<Action>(name, action);
    };
    const std::list<limid_t> threePorts = {limId(0, 2, 0, 3), limId(1, 2, 3, 4), limId(0, 2, 0, 3)};
    const std::list<limid_t> noPorts;

    return {
        named("ActionPermit", ActionPermit()),
        named("ActionDeny", ActionDeny()),
        named("ActionCopyToCpu", ActionCopyToCpu()),
        named("ActionBlockEgressPorts", ActionBlockEgressPorts(threePorts)),
        named("ActionBlockEgressPorts_none", ActionBlockEgressPorts(noPorts)),
        named("ActionCopyToCpuCancel", ActionCopyToCpuCancel(COPY_TO_CPU_CANCEL)),
        named("ActionCopyToCpuCancel_switch", ActionCopyToCpuCancel(SWITCH_TO_CPU_CANCEL)),
        named("ActionSetPcp", ActionSetPcp(7)),
        named("ActionSetPcp_wide", ActionSetPcp(200)),
        named("ActionSetPcpAndQueue", ActionSetPcpAndQueue('B')),
        named("ActionSetInnerPcp", ActionSetInnerPcp(3)),
        named("ActionSetDSCP", ActionSetDSCP(46)),
        named("ActionMapToCosQueue", ActionMapToCosQueue(0)),
        named("ActionMapToCpuCosQueue", ActionMapToCpuCosQueue(255)),
        named("ActionRedirect", ActionRedirect(limId(1, 2, 3, 4))),
        named("ActionRedirect_several", redirectTo(threePorts)),
        named("ActionRedirect_none", redirectTo(noPorts)),
        named("ActionReplaceDstMac", ActionReplaceDstMac(mac("00:1a:2b:00:00:01"))),
        named("ActionRedirectCancel", ActionRedirectCancel()),
        named("ActionReplaceSrcMac", ActionReplaceSrcMac(mac("fe:dc:ba:98:76:54"))),
        named("ActionL3Switch", ActionL3Switch(4000000000)),
        named("ActionBlackHole", ActionBlackHole()),
    };
}

} // namespace FiltersCommon::test
