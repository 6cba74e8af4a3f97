/**
 * Match criteria: the conditions of a packet-filter rule.
 *
 * Every criterion is an object of a class derived from Match and carries the code of its kind. The
 * value families hold the data; most kinds only fix the code of a family. Objects are plain values:
 * nothing is validated, and nothing is normalised (192.0.2.1/24 and 192.0.2.0/24 are different
 * matches). Numbers are in host byte order, addresses in the byte order of the network.
 *
 * Matches of one class compare their values; so do a class and a class derived from it, in either
 * order, as objects of the base class. All others, and those compared through a Match, go through
 * Match::operator==, for which objects of different kinds differ.
 *
 * Assigning one match to another copies the values and never the kind.
 */
#ifndef FILTER_COMMON_FILTER_MATCHES_H
#define FILTER_COMMON_FILTER_MATCHES_H

#include "filter_match_families.h"
#include "filter_match_family_kinds.h"
#include "filter_match_kinds.h"

#include <iosfwd>

#pragma GCC visibility push(default)

namespace FiltersCommon {

/**
 * A row for each kind of match, in the order of the codes from 0: whether its class holds values of
 * its own, those of a family, or none; the kind; the class; and the class that holds the values.
 * Whatever has to be done for each kind or class expands these rows.
 *
 * MatchDSCP shares the kind of MatchToS and has no row. Where it counts as a class of its own, it
 * is named beside them.
 */
// clang-format off
#define FILTERS_COMMON_MATCH_KINDS(WITH_VALUES, OF_FAMILY, WITHOUT_VALUES)              \
    WITHOUT_VALUES(MATCH_ALL,               MatchAll,             NoValues)             \
    OF_FAMILY     (MATCH_INGRESS_PORTS,     MatchIngressPorts,    MatchPorts)           \
    OF_FAMILY     (MATCH_EXTERNAL_VLAN_ID,  MatchExternalVlanId,  MatchVlanId)          \
    WITH_VALUES   (MATCH_TPID,              MatchTPID,            MatchTPID)            \
    OF_FAMILY     (MATCH_DST_MAC,           MatchDstMac,          MatchMac)             \
    OF_FAMILY     (MATCH_DST_L4_PORT,       MatchDstL4Port,       MatchL4Port)          \
    OF_FAMILY     (MATCH_SRC_L4_PORT,       MatchSrcL4Port,       MatchL4Port)          \
    OF_FAMILY     (MATCH_SRC_MAC,           MatchSrcMac,          MatchMac)             \
    WITH_VALUES   (MATCH_L2_SRC_ENTRY_TYPE, MatchL2SrcEntryType,  MatchL2SrcEntryType)  \
    OF_FAMILY     (MATCH_SRC_IPV4,          MatchSrcIPv4,         MatchIPv4)            \
    OF_FAMILY     (MATCH_DST_IPV4,          MatchDstIPv4,         MatchIPv4)            \
    OF_FAMILY     (MATCH_INTERNAL_VLAN_ID,  MatchInternalVlanId,  MatchVlanId)          \
    WITH_VALUES   (MATCH_PCP,               MatchPcp,             MatchPcp)             \
    WITH_VALUES   (MATCH_INTERNAL_PCP,      MatchInternalPcp,     MatchInternalPcp)     \
    OF_FAMILY     (MATCH_SRC_IPV6,          MatchSrcIPv6,         MatchIPv6)            \
    OF_FAMILY     (MATCH_DST_IPV6,          MatchDstIPv6,         MatchIPv6)            \
    WITHOUT_VALUES(MATCH_VLAN_UNTAGGED,     MatchVlanUntagged,    NoValues)             \
    WITH_VALUES   (MATCH_IP_PROTOCOL,       MatchIpProtocol,      MatchIpProtocol)      \
    WITH_VALUES   (MATCH_PACKET_RES,        MatchPacketRes,       MatchPacketRes)       \
    WITH_VALUES   (MATCH_MPLS_TERM,         MatchMplsTerm,        MatchMplsTerm)        \
    WITH_VALUES   (MATCH_TOS,               MatchToS,             MatchToS)             \
    OF_FAMILY     (MATCH_VIRTUAL_PORT,      MatchVirtualPort,     MatchLimId)           \
    OF_FAMILY     (MATCH_EGRESS_PORTS,      MatchEgressPorts,     MatchPorts)           \
    WITH_VALUES   (MATCH_INGRESS_STP_STATE, MatchIngressStpState, MatchIngressStpState) \
    WITH_VALUES   (MATCH_VLAN_INFO,         MatchVlanInfo,        MatchVlanInfo)        \
    OF_FAMILY     (MATCH_SRC_PORT,          MatchSrcPort,         MatchLimId)           \
    WITH_VALUES   (MATCH_TTL,               MatchTTL,             MatchTTL)             \
    WITH_VALUES   (MATCH_VRF_ID,            MatchVrfId,           MatchVrfId)           \
    WITH_VALUES   (MATCH_DROP,              MatchDrop,            MatchDrop)            \
    WITHOUT_VALUES(MATCH_CPU_PORT,          MatchCpuPort,         NoValues)             \
    WITH_VALUES   (MATCH_FORWARDING_TYPE,   MatchForwardingType,  MatchForwardingType)  \
    WITHOUT_VALUES(MATCH_DESTINATION_CPU,   MatchDestinationCpu,  NoValues)
// clang-format on

/** X(kind, class, class of the values) for each row. */
#define FILTERS_COMMON_EACH_MATCH_KIND(X) FILTERS_COMMON_MATCH_KINDS(X, X, X)

/** Whether entries know the class T, exactly that class, const or not. */
template <class T>
inline constexpr bool isMatchClass = false;
template <class T>
inline constexpr bool isMatchClass<const T> = isMatchClass<T>;
template <class T>
inline constexpr bool isMatchClass<volatile T> = isMatchClass<T>;
template <class T>
inline constexpr bool isMatchClass<const volatile T> = isMatchClass<T>;

#define FILTERS_COMMON_DECLARE_KNOWN(kind, Class, Values)                                          \
    template <>                                                                                    \
    inline constexpr bool isMatchClass<Class> = true;
FILTERS_COMMON_EACH_MATCH_KIND(FILTERS_COMMON_DECLARE_KNOWN)
FILTERS_COMMON_DECLARE_KNOWN(MATCH_TOS, MatchDSCP, MatchToS)
#undef FILTERS_COMMON_DECLARE_KNOWN

} // namespace FiltersCommon

// ------------------------------------------------------------------------------------- text dumps
//
// At global scope, one operator for each class. A Match is printed by the code of the object: a
// MatchDSCP as a MatchToS, and an object of an unknown kind not at all. A value family prints the
// value lines alone.

#define FILTERS_COMMON_DECLARE_PRINTED(Class)                                                      \
    std::ostream& operator<<(std::ostream& out, const FiltersCommon::Class& match);
#define FILTERS_COMMON_DECLARE_KIND_PRINTED(kind, Class, Values)                                   \
    FILTERS_COMMON_DECLARE_PRINTED(Class)
FILTERS_COMMON_DECLARE_PRINTED(Match)
FILTERS_COMMON_MATCH_FAMILIES(FILTERS_COMMON_DECLARE_PRINTED)
FILTERS_COMMON_EACH_MATCH_KIND(FILTERS_COMMON_DECLARE_KIND_PRINTED)
FILTERS_COMMON_DECLARE_PRINTED(MatchDSCP)
#undef FILTERS_COMMON_DECLARE_KIND_PRINTED
#undef FILTERS_COMMON_DECLARE_PRINTED

#pragma GCC visibility pop

#endif // FILTER_COMMON_FILTER_MATCHES_H
