/**
 * Match criteria for callers that cannot use the classes. C11 and C++17.
 *
 *  1. Handles. A handle is an untyped pointer to a match. The caller owns the handle that a
 *     constructor (newMatch...) returns and frees it with deleteMatch. Passing a handle to an entry
 *     (filter_entries_c.h) does not change its owner: the entry stores a copy. A function that
 *     names a class (MatchTPID*, Match*) takes the same handle; C converts it implicitly, C++ needs
 *     a static_cast.
 *  2. Null handles. matchGetType, deleteMatch and the getters for MAC addresses, interfaces, TPID,
 *     L4 ports, source entry types, IPv4 and IPv6 addresses report one as a failed assertion
 *     ("m != nullptr") and end the process, even in release builds. The getters at the end of this
 *     file must not be given one. No function here returns a result code.
 *  3. Kinds. No getter checks the kind of its handle. Call matchGetType first: what a getter reads
 *     from a match of another kind is meaningless.
 *  4. The address getters return pointers into the match. They are valid until it is freed, and
 *     show the new values after filtersEntryGetMatch has filled it.
 *  5. Values are taken as they are, except that the PCP constructors keep the low three bits and
 *     newMatchDSCP the low six. Numbers are in host byte order, addresses in network byte order.
 *     Constructors without a mask set all bits of the mask.
 *  6. Memory. A constructor never returns null. If memory runs out it throws std::bad_alloc, which
 *     ends the process unless a C++ caller further up catches it.
 *  7. Threads. Use a match from one thread at a time; different matches may be used concurrently.
 *
 * Deliberately not provided: constructors for MatchToS, MatchForwardingType, MatchDestinationCpu,
 * excluded port types and a masked IPv6 source; getters for port lists, VLAN identifiers, the
 * type-of-service byte and the forwarding type.
 */
#ifndef FILTER_COMMON_FILTER_MATCHES_C_H
#define FILTER_COMMON_FILTER_MATCHES_C_H

#include "filter_types.h"

#include <net/ethernet.h>
#include <netinet/in.h>
#include <stdbool.h>
#include <stdint.h>

#pragma GCC visibility push(default)

#ifdef __cplusplus
namespace FiltersCommon {
class MatchL2SrcEntryType;
class MatchTPID;
extern "C" {
#else
typedef struct MatchL2SrcEntryType MatchL2SrcEntryType;
typedef struct MatchTPID MatchTPID;
#endif

/* -------------------------------------------------------------------------------- constructors */

void* newMatchAll(void);

/** Holds the @p count ports in array order; the array may be null if @p count is 0. */
void* newMatchIngressPorts(const limid_t* ports, uint32_t count);
void* newMatchEgressPorts(const limid_t* ports, uint32_t count);

/** One VLAN identifier. */
void* newMatchExternalVlanId(unsigned short vlanId);
void* newMatchInternalVlanId(unsigned short vlanId);

void* newMatchTPID(tpid_t tpid);

void* newMatchDstL4Port(l4port_t port);
void* newMatchDstL4PortMask(l4port_t port, l4port_t mask);
void* newMatchSrcL4Port(l4port_t port);
void* newMatchSrcL4PortMask(l4port_t port, l4port_t mask);

void* newMatchDstMac(struct ether_addr mac);
void* newMatchDstMacMask(struct ether_addr mac, struct ether_addr mask);
void* newMatchSrcMac(struct ether_addr mac);
void* newMatchSrcMacMask(struct ether_addr mac, struct ether_addr mask);

void* newMatchL2SrcEntryType(l2SrcEntryType_t type);

void* newMatchSrcIPv4(struct in_addr address);
void* newMatchSrcIPv4Mask(struct in_addr address, struct in_addr mask);
void* newMatchDstIPv4(struct in_addr address);
void* newMatchDstIPv4Mask(struct in_addr address, struct in_addr mask);

void* newMatchPcp(unsigned char pcp);
void* newMatchInternalPcp(unsigned char pcp);

void* newMatchSrcIPv6(struct in6_addr address);
void* newMatchDstIPv6(struct in6_addr address);
void* newMatchDstIPv6Mask(struct in6_addr address, struct in6_addr mask);

void* newMatchVlanUntagged(void);
void* newMatchIpProtocol(unsigned char protocol);
void* newMatchPacketRes(en_Resolution resolution);
void* newMatchMplsTerm(bool terminated);

/** A match of kind MATCH_TOS; keeps the low six bits of @p dscp. */
void* newMatchDSCP(unsigned char dscp);

void* newMatchTTL(unsigned char ttl);
void* newMatchVirtualPort(limid_t port);
void* newMatchIngressStpState(en_StpState state);
void* newMatchVlanInfo(vlan_info_t vlanInfo);
void* newMatchSrcPort(limid_t port);
void* newMatchVrfId(unsigned short vrfId);
void* newMatchDrop(bool drop);
void* newMatchCpuPort(void);

/* ------------------------------------------------------------------- any match; ABORTS ON NULL */

filtersMatch_t matchGetType(void* m);
void deleteMatch(void* m);

/* --------------------------------------------------------------------- getters; ABORTS ON NULL */

/** For a destination or source MAC match. */
const struct ether_addr* matchMacGetMac(void* m);
const struct ether_addr* matchMacGetMask(void* m);

/** For a virtual-port or source-port match. */
limid_t matchGetLimId(void* m);

tpid_t matchGetTPID(MatchTPID* m);

/** For a destination or source L4-port match. */
l4port_t matchGetL4Port(void* m);
l4port_t matchGetL4PortMask(void* m);

l2SrcEntryType_t matchGetL2SrcEntryType(MatchL2SrcEntryType* m);

/** For a destination or source IPv4 match. */
const struct in_addr* matchIPv4GetIPv4(void* m);
const struct in_addr* matchIPv4GetIPv4Mask(void* m);

/** For a destination or source IPv6 match. */
const struct in6_addr* matchIPv6GetIPv6(void* m);
const struct in6_addr* matchIPv6GetIPv6Mask(void* m);

/* -------------------------------------------------------------- getters; must not be given null */

unsigned char matchPcpGet(void* m);
unsigned char matchInternalPcpGet(void* m);
unsigned char matchIpProtocolGetIpProt(void* m);
en_Resolution matchPacketResGet(void* m);
bool matchMplsTermGet(void* m);
/** The upper six bits of the type-of-service byte, also for a type-of-service match. */
unsigned char matchDSCPGet(void* m);
unsigned char matchTTLGet(void* m);
en_StpState matchIngressStpStateGet(void* m);
vlan_info_t matchVlanInfoGet(void* m);
unsigned short matchVrfIdGet(void* m);
bool matchDropGet(void* m);

#ifdef __cplusplus
} // extern "C"
} // namespace FiltersCommon
#endif

#pragma GCC visibility pop

#endif /* FILTER_COMMON_FILTER_MATCHES_C_H */
