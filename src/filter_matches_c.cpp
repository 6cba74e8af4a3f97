#include "filter_matches_c.h"

#include "contract.h"
#include "filter_matches.h"

#include <list>

/** Reports give the C++ signature of the function. */
#define REQUIRE_MATCH(function)                                                                    \
    FILTERS_COMMON_REQUIRE(m != nullptr, "filter_matches_c.cpp", __LINE__, function)

namespace FiltersCommon {

namespace {

/** A new T as a handle: the address of its Match. */
template <class T, class... Values>
void* make(const Values&... values)
{
    return static_cast<Match*>(new T(values...));
}

/** The match behind a handle, assumed without a check to be a T. */
template <class T>
T& match(void* m)
{
    return static_cast<T&>(*static_cast<Match*>(m));
}

} // namespace

// ----------------------------------------------------------------------------------- constructors

void* newMatchAll() { return make<MatchAll>(); }

void* newMatchIngressPorts(const limid_t* ports, uint32_t count)
{
    return make<MatchIngressPorts>(std::list<limid_t>(ports, ports + count));
}

void* newMatchEgressPorts(const limid_t* ports, uint32_t count)
{
    return make<MatchEgressPorts>(std::list<limid_t>(ports, ports + count));
}

void* newMatchExternalVlanId(unsigned short vlanId) { return make<MatchExternalVlanId>(vlanId); }
void* newMatchInternalVlanId(unsigned short vlanId) { return make<MatchInternalVlanId>(vlanId); }

void* newMatchTPID(tpid_t tpid) { return make<MatchTPID>(tpid); }

void* newMatchDstL4Port(l4port_t port) { return make<MatchDstL4Port>(port); }
void* newMatchDstL4PortMask(l4port_t port, l4port_t mask)
{
    return make<MatchDstL4Port>(port, mask);
}
void* newMatchSrcL4Port(l4port_t port) { return make<MatchSrcL4Port>(port); }
void* newMatchSrcL4PortMask(l4port_t port, l4port_t mask)
{
    return make<MatchSrcL4Port>(port, mask);
}

void* newMatchDstMac(ether_addr mac) { return make<MatchDstMac>(mac); }
void* newMatchDstMacMask(ether_addr mac, ether_addr mask) { return make<MatchDstMac>(mac, mask); }
void* newMatchSrcMac(ether_addr mac) { return make<MatchSrcMac>(mac); }
void* newMatchSrcMacMask(ether_addr mac, ether_addr mask) { return make<MatchSrcMac>(mac, mask); }

void* newMatchL2SrcEntryType(l2SrcEntryType_t type) { return make<MatchL2SrcEntryType>(type); }

void* newMatchSrcIPv4(in_addr address) { return make<MatchSrcIPv4>(address); }
void* newMatchSrcIPv4Mask(in_addr address, in_addr mask)
{
    return make<MatchSrcIPv4>(address, mask);
}
void* newMatchDstIPv4(in_addr address) { return make<MatchDstIPv4>(address); }
void* newMatchDstIPv4Mask(in_addr address, in_addr mask)
{
    return make<MatchDstIPv4>(address, mask);
}

void* newMatchPcp(unsigned char pcp) { return make<MatchPcp>(pcp); }
void* newMatchInternalPcp(unsigned char pcp) { return make<MatchInternalPcp>(pcp); }

void* newMatchSrcIPv6(in6_addr address) { return make<MatchSrcIPv6>(address); }
void* newMatchDstIPv6(in6_addr address) { return make<MatchDstIPv6>(address); }
void* newMatchDstIPv6Mask(in6_addr address, in6_addr mask)
{
    return make<MatchDstIPv6>(address, mask);
}

void* newMatchVlanUntagged() { return make<MatchVlanUntagged>(); }
void* newMatchIpProtocol(unsigned char protocol) { return make<MatchIpProtocol>(protocol); }
void* newMatchPacketRes(en_Resolution resolution) { return make<MatchPacketRes>(resolution); }
void* newMatchMplsTerm(bool terminated) { return make<MatchMplsTerm>(terminated); }
void* newMatchDSCP(unsigned char dscp) { return make<MatchDSCP>(dscp); }
void* newMatchTTL(unsigned char ttl) { return make<MatchTTL>(ttl); }
void* newMatchVirtualPort(limid_t port) { return make<MatchVirtualPort>(port); }
void* newMatchIngressStpState(en_StpState state) { return make<MatchIngressStpState>(state); }
void* newMatchVlanInfo(vlan_info_t vlanInfo) { return make<MatchVlanInfo>(vlanInfo); }
void* newMatchSrcPort(limid_t port) { return make<MatchSrcPort>(port); }
void* newMatchVrfId(unsigned short vrfId) { return make<MatchVrfId>(vrfId); }
void* newMatchDrop(bool drop) { return make<MatchDrop>(drop); }
void* newMatchCpuPort() { return make<MatchCpuPort>(); }

// -------------------------------------------------------------------------------------- any match

filtersMatch_t matchGetType(void* m)
{
    REQUIRE_MATCH("FiltersCommon::filtersMatch_t FiltersCommon::matchGetType(void*)");
    return match<Match>(m).getType();
}

void deleteMatch(void* m)
{
    REQUIRE_MATCH("void FiltersCommon::deleteMatch(void*)");
    delete static_cast<Match*>(m);
}

// -------------------------------------------------------------------- getters that check for null

const ether_addr* matchMacGetMac(void* m)
{
    REQUIRE_MATCH("const ether_addr* FiltersCommon::matchMacGetMac(void*)");
    return match<MatchMac>(m).getMac();
}

const ether_addr* matchMacGetMask(void* m)
{
    REQUIRE_MATCH("const ether_addr* FiltersCommon::matchMacGetMask(void*)");
    return match<MatchMac>(m).getMask();
}

limid_t matchGetLimId(void* m)
{
    REQUIRE_MATCH("limid_t FiltersCommon::matchGetLimId(void*)");
    return match<MatchLimId>(m).getLimId();
}

tpid_t matchGetTPID(MatchTPID* m)
{
    REQUIRE_MATCH("FiltersCommon::tpid_t FiltersCommon::matchGetTPID(FiltersCommon::MatchTPID*)");
    return m->getTPID();
}

l4port_t matchGetL4Port(void* m)
{
    REQUIRE_MATCH("FiltersCommon::l4port_t FiltersCommon::matchGetL4Port(void*)");
    return match<MatchL4Port>(m).getPort();
}

l4port_t matchGetL4PortMask(void* m)
{
    REQUIRE_MATCH("FiltersCommon::l4port_t FiltersCommon::matchGetL4PortMask(void*)");
    return match<MatchL4Port>(m).getMask();
}

l2SrcEntryType_t matchGetL2SrcEntryType(MatchL2SrcEntryType* m)
{
    REQUIRE_MATCH("FiltersCommon::l2SrcEntryType_t FiltersCommon::matchGetL2SrcEntryType("
                  "FiltersCommon::MatchL2SrcEntryType*)");
    return m->getL2SrcEntryType();
}

const in_addr* matchIPv4GetIPv4(void* m)
{
    REQUIRE_MATCH("const in_addr* FiltersCommon::matchIPv4GetIPv4(void*)");
    return match<MatchIPv4>(m).getIPv4();
}

const in_addr* matchIPv4GetIPv4Mask(void* m)
{
    REQUIRE_MATCH("const in_addr* FiltersCommon::matchIPv4GetIPv4Mask(void*)");
    return match<MatchIPv4>(m).getIPv4Mask();
}

const in6_addr* matchIPv6GetIPv6(void* m)
{
    REQUIRE_MATCH("const in6_addr* FiltersCommon::matchIPv6GetIPv6(void*)");
    return match<MatchIPv6>(m).getIPv6();
}

const in6_addr* matchIPv6GetIPv6Mask(void* m)
{
    REQUIRE_MATCH("const in6_addr* FiltersCommon::matchIPv6GetIPv6Mask(void*)");
    return match<MatchIPv6>(m).getIPv6Mask();
}

// ---------------------------------------------------------------------------------- other getters

unsigned char matchPcpGet(void* m) { return match<MatchPcp>(m).getPcp(); }
unsigned char matchInternalPcpGet(void* m) { return match<MatchInternalPcp>(m).getPcp(); }
unsigned char matchIpProtocolGetIpProt(void* m)
{
    return match<MatchIpProtocol>(m).getIpProtocol();
}
en_Resolution matchPacketResGet(void* m) { return match<MatchPacketRes>(m).getPktRes(); }
bool matchMplsTermGet(void* m) { return match<MatchMplsTerm>(m).getMplsTerm(); }

unsigned char matchDSCPGet(void* m)
{
    // The handle may also be that of a MatchToS, so its byte is read through a MatchDSCP.
    MatchDSCP dscp(0);
    static_cast<MatchToS&>(dscp) = match<MatchToS>(m);
    return dscp.getDSCP();
}

unsigned char matchTTLGet(void* m) { return match<MatchTTL>(m).getTTL(); }
en_StpState matchIngressStpStateGet(void* m)
{
    return match<MatchIngressStpState>(m).getIngressStpState();
}
vlan_info_t matchVlanInfoGet(void* m) { return match<MatchVlanInfo>(m).getVlanInfo(); }
unsigned short matchVrfIdGet(void* m) { return match<MatchVrfId>(m).getVrfId(); }
bool matchDropGet(void* m) { return match<MatchDrop>(m).getDropFlag(); }

} // namespace FiltersCommon
