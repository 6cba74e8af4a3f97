/**
 * The constructors of matches and of actions that the C interface offers.
 */
#ifndef FILTER_COMMON_TESTS_C_CONSTRUCTORS_H
#define FILTER_COMMON_TESTS_C_CONSTRUCTORS_H

#include "c_support.h"

#include <typeinfo>

namespace FiltersCommon::test {

constexpr limid_t SOME_PORTS[] = {limId(0, 3, 0, 7), limId(1, 0, 0, 2)};
inline const ether_addr SOME_MAC = mac("02:10:20:30:40:50");
inline const ether_addr SOME_MAC_MASK = mac("ff:ff:ff:00:00:0f");
inline const in_addr SOME_IPV4 = ipv4("192.0.2.129");
inline const in_addr SOME_IPV4_MASK = ipv4("255.255.240.0");
inline const in6_addr SOME_IPV6 = ipv6("2001:db8:1:2:3:4:5:6");
inline const in6_addr SOME_IPV6_MASK = ipv6("ffff:ffff:fff0::1");

// clang-format off
inline const Constructor MATCH_CONSTRUCTORS[] = {
    {"newMatchAll",               0, typeid(MatchAll),
     [] { return newMatchAll(); }},
    {"newMatchIngressPorts",      1, typeid(MatchIngressPorts),
     [] { return newMatchIngressPorts(SOME_PORTS, 2); }},
    {"newMatchEgressPorts",      22, typeid(MatchEgressPorts),
     [] { return newMatchEgressPorts(SOME_PORTS, 2); }},
    {"newMatchExternalVlanId",    2, typeid(MatchExternalVlanId),
     [] { return newMatchExternalVlanId(100); }},
    {"newMatchInternalVlanId",   11, typeid(MatchInternalVlanId),
     [] { return newMatchInternalVlanId(100); }},
    {"newMatchTPID",              3, typeid(MatchTPID),
     [] { return newMatchTPID(0x8100); }},
    {"newMatchDstL4Port",         5, typeid(MatchDstL4Port),
     [] { return newMatchDstL4Port(80); }},
    {"newMatchDstL4PortMask",     5, typeid(MatchDstL4Port),
     [] { return newMatchDstL4PortMask(80, 0xFFF0); }},
    {"newMatchSrcL4Port",         6, typeid(MatchSrcL4Port),
     [] { return newMatchSrcL4Port(80); }},
    {"newMatchSrcL4PortMask",     6, typeid(MatchSrcL4Port),
     [] { return newMatchSrcL4PortMask(80, 0xFFF0); }},
    {"newMatchDstMac",            4, typeid(MatchDstMac),
     [] { return newMatchDstMac(SOME_MAC); }},
    {"newMatchDstMacMask",        4, typeid(MatchDstMac),
     [] { return newMatchDstMacMask(SOME_MAC, SOME_MAC_MASK); }},
    {"newMatchSrcMac",            7, typeid(MatchSrcMac),
     [] { return newMatchSrcMac(SOME_MAC); }},
    {"newMatchSrcMacMask",        7, typeid(MatchSrcMac),
     [] { return newMatchSrcMacMask(SOME_MAC, SOME_MAC_MASK); }},
    {"newMatchL2SrcEntryType",    8, typeid(MatchL2SrcEntryType),
     [] { return newMatchL2SrcEntryType(L2_SRC_ENTRY_TYPE_0); }},
    {"newMatchSrcIPv4",           9, typeid(MatchSrcIPv4),
     [] { return newMatchSrcIPv4(SOME_IPV4); }},
    {"newMatchSrcIPv4Mask",       9, typeid(MatchSrcIPv4),
     [] { return newMatchSrcIPv4Mask(SOME_IPV4, SOME_IPV4_MASK); }},
    {"newMatchDstIPv4",          10, typeid(MatchDstIPv4),
     [] { return newMatchDstIPv4(SOME_IPV4); }},
    {"newMatchDstIPv4Mask",      10, typeid(MatchDstIPv4),
     [] { return newMatchDstIPv4Mask(SOME_IPV4, SOME_IPV4_MASK); }},
    {"newMatchPcp",              12, typeid(MatchPcp),
     [] { return newMatchPcp(5); }},
    {"newMatchInternalPcp",      13, typeid(MatchInternalPcp),
     [] { return newMatchInternalPcp(5); }},
    {"newMatchSrcIPv6",          14, typeid(MatchSrcIPv6),
     [] { return newMatchSrcIPv6(SOME_IPV6); }},
    {"newMatchDstIPv6",          15, typeid(MatchDstIPv6),
     [] { return newMatchDstIPv6(SOME_IPV6); }},
    {"newMatchDstIPv6Mask",      15, typeid(MatchDstIPv6),
     [] { return newMatchDstIPv6Mask(SOME_IPV6, SOME_IPV6_MASK); }},
    {"newMatchVlanUntagged",     16, typeid(MatchVlanUntagged),
     [] { return newMatchVlanUntagged(); }},
    {"newMatchIpProtocol",       17, typeid(MatchIpProtocol),
     [] { return newMatchIpProtocol(6); }},
    {"newMatchPacketRes",        18, typeid(MatchPacketRes),
     [] { return newMatchPacketRes(RESOLUTION_0); }},
    {"newMatchMplsTerm",         19, typeid(MatchMplsTerm),
     [] { return newMatchMplsTerm(true); }},
    {"newMatchDSCP",             20, typeid(MatchDSCP),
     [] { return newMatchDSCP(10); }},
    {"newMatchTTL",              26, typeid(MatchTTL),
     [] { return newMatchTTL(64); }},
    {"newMatchVirtualPort",      21, typeid(MatchVirtualPort),
     [] { return newMatchVirtualPort(SOME_PORTS[0]); }},
    {"newMatchIngressStpState",  23, typeid(MatchIngressStpState),
     [] { return newMatchIngressStpState(STP_STATE_0); }},
    {"newMatchVlanInfo",         24, typeid(MatchVlanInfo),
     [] { return newMatchVlanInfo({7}); }},
    {"newMatchSrcPort",          25, typeid(MatchSrcPort),
     [] { return newMatchSrcPort(SOME_PORTS[0]); }},
    {"newMatchVrfId",            27, typeid(MatchVrfId),
     [] { return newMatchVrfId(5); }},
    {"newMatchDrop",             28, typeid(MatchDrop),
     [] { return newMatchDrop(true); }},
    {"newMatchCpuPort",          29, typeid(MatchCpuPort),
     [] { return newMatchCpuPort(); }},
};
// clang-format on

// clang-format off
inline const Constructor ACTION_CONSTRUCTORS[] = {
    {"newActionPermit",            0, typeid(ActionPermit),
     [] { return newActionPermit(); }},
    {"newActionDeny",              1, typeid(ActionDeny),
     [] { return newActionDeny(); }},
    {"newActionCopyToCpu",         2, typeid(ActionCopyToCpu),
     [] { return newActionCopyToCpu(); }},
    {"newActionBlockEgressPorts",  3, typeid(ActionBlockEgressPorts),
     [] { return newActionBlockEgressPorts(SOME_PORTS, 2); }},
    {"newActionCopyToCpuCancel",   4, typeid(ActionCopyToCpuCancel),
     [] { return newActionCopyToCpuCancel(); }},
    {"newActionSwitchToCpuCancel", 4, typeid(ActionCopyToCpuCancel),
     [] { return newActionSwitchToCpuCancel(); }},
    {"newActionSetPcp",            5, typeid(ActionSetPcp),
     [] { return newActionSetPcp(1); }},
    {"newActionSetPcpAndQueue",    6, typeid(ActionSetPcpAndQueue),
     [] { return newActionSetPcpAndQueue(1); }},
    {"newActionSetDSCP",           8, typeid(ActionSetDSCP),
     [] { return newActionSetDSCP(1); }},
    {"newActionMapToCosQueue",     9, typeid(ActionMapToCosQueue),
     [] { return newActionMapToCosQueue(1); }},
    {"newActionMapToCpuCosQueue", 10, typeid(ActionMapToCpuCosQueue),
     [] { return newActionMapToCpuCosQueue(1); }},
    {"newReplaceDstMac",          12, typeid(ActionReplaceDstMac),
     [] { return newReplaceDstMac(&SOME_MAC); }},
    {"newActionRedirect",         11, typeid(ActionRedirect),
     [] { return newActionRedirect(SOME_PORTS); }},
    {"newActionRedirectCancel",   13, typeid(ActionRedirectCancel),
     [] { return newActionRedirectCancel(); }},
    {"newReplaceSrcMac",          14, typeid(ActionReplaceSrcMac),
     [] { return newReplaceSrcMac(&SOME_MAC); }},
    {"newActionL3Switch",         15, typeid(ActionL3Switch),
     [] { return newActionL3Switch(1); }},
};
// clang-format on

} // namespace FiltersCommon::test

#endif // FILTER_COMMON_TESTS_C_CONSTRUCTORS_H
