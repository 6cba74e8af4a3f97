/**
 * Match criteria: the conditions of a packet-filter rule.
 *
 * Every criterion is an object of a class derived from Match and carries the code of its kind. The
 * value families hold the data; most kinds only fix the code of a family. Objects are plain values:
 * nothing is validated, and nothing is normalised (192.0.2.1/24 and 192.0.2.0/24 are different
 * matches). Numbers are in host byte order, addresses in the byte order of the network.
 *
 * Two objects are compared in one of two ways. Matches of the same class compare their values.
 * Everything else goes through Match::operator==, for which objects of different kinds differ.
 *
 * Assigning one match to another copies the values and never the kind.
 */
#ifndef FILTER_COMMON_FILTER_MATCHES_H
#define FILTER_COMMON_FILTER_MATCHES_H

#include "filter_match_families.h"
#include "filter_match_kinds.h"

#include <iosfwd>

#pragma GCC visibility push(default)

namespace FiltersCommon {

/**
 * The class of each kind code, in the order of the codes from 0. Everything that has to be said of
 * each class expands this list. MatchDSCP shares the code of MatchToS and is named beside the list
 * where it counts as a class of its own.
 */
// clang-format off
#define FILTERS_COMMON_MATCH_CLASSES(X) \
    X(MatchAll) X(MatchIngressPorts) X(MatchExternalVlanId) X(MatchTPID) X(MatchDstMac) \
    X(MatchDstL4Port) X(MatchSrcL4Port) X(MatchSrcMac) X(MatchL2SrcEntryType) X(MatchSrcIPv4) \
    X(MatchDstIPv4) X(MatchInternalVlanId) X(MatchPcp) X(MatchInternalPcp) X(MatchSrcIPv6) \
    X(MatchDstIPv6) X(MatchVlanUntagged) X(MatchIpProtocol) X(MatchPacketRes) X(MatchMplsTerm) \
    X(MatchToS) X(MatchVirtualPort) X(MatchEgressPorts) X(MatchIngressStpState) X(MatchVlanInfo) \
    X(MatchSrcPort) X(MatchTTL) X(MatchVrfId) X(MatchDrop) X(MatchCpuPort) \
    X(MatchForwardingType) X(MatchDestinationCpu)
// clang-format on

/** Whether entries know the class T, exactly that class. */
template <class T>
inline constexpr bool isMatchClass = false;

#define FILTERS_COMMON_KNOWN(Class)                                                                \
    template <>                                                                                    \
    inline constexpr bool isMatchClass<Class> = true;
FILTERS_COMMON_MATCH_CLASSES(FILTERS_COMMON_KNOWN)
FILTERS_COMMON_KNOWN(MatchDSCP)
#undef FILTERS_COMMON_KNOWN

} // namespace FiltersCommon

// ------------------------------------------------------------------------------------- text dumps
//
// At global scope, one operator for each class. A base class prints by the code of the object: what
// it prints for a MatchDSCP is the MatchToS form, and nothing for codes of 32 and above. A value
// family prints the value lines alone.

#define FILTERS_COMMON_PRINTED(Class)                                                              \
    std::ostream& operator<<(std::ostream& out, const FiltersCommon::Class& match);
FILTERS_COMMON_PRINTED(Match)
FILTERS_COMMON_PRINTED(MatchPorts)
FILTERS_COMMON_PRINTED(MatchLimId)
FILTERS_COMMON_PRINTED(MatchL4Port)
FILTERS_COMMON_PRINTED(MatchVlanId)
FILTERS_COMMON_PRINTED(MatchMac)
FILTERS_COMMON_PRINTED(MatchIPv4)
FILTERS_COMMON_PRINTED(MatchIPv6)
FILTERS_COMMON_MATCH_CLASSES(FILTERS_COMMON_PRINTED)
FILTERS_COMMON_PRINTED(MatchDSCP)
#undef FILTERS_COMMON_PRINTED

#pragma GCC visibility pop

#endif // FILTER_COMMON_FILTER_MATCHES_H
