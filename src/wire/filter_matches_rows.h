/**
 * The fields of a MatchPB, and the rows of the match classes: each member once.
 */
#ifndef FILTER_COMMON_SRC_WIRE_FILTER_MATCHES_ROWS_H
#define FILTER_COMMON_SRC_WIRE_FILTER_MATCHES_ROWS_H

#include "filter_matches.h"
#include "message_fields.h"
#include "rows.h"

#include <iterator>

namespace FiltersCommon {

// clang-format off
#define FILTERS_COMMON_MATCH_FIELDS(FIELD)                                                         \
    FIELD(MatchPB, type_, kTypeFieldNumber, REQUIRED)                                              \
    FIELD(MatchPB, ports_, kPortsFieldNumber, REPEATED)                                            \
    FIELD(MatchPB, vlan_id_, kVlanIdFieldNumber, REPEATED)                                         \
    FIELD(MatchPB, tpid_, kTpidFieldNumber, OPTIONAL)                                              \
    FIELD(MatchPB, mac_, kMacFieldNumber, OPTIONAL)                                                \
    FIELD(MatchPB, l4port_, kL4PortFieldNumber, OPTIONAL)                                          \
    FIELD(MatchPB, mac_mask_, kMacMaskFieldNumber, OPTIONAL)                                       \
    FIELD(MatchPB, ipv4_, kIpv4FieldNumber, OPTIONAL)                                              \
    FIELD(MatchPB, pcp_, kPcpFieldNumber, OPTIONAL)                                                \
    FIELD(MatchPB, ipv4_mask_, kIpv4MaskFieldNumber, OPTIONAL)                                     \
    FIELD(MatchPB, ipv6_, kIpv6FieldNumber, OPTIONAL)                                              \
    FIELD(MatchPB, ipv6_mask_, kIpv6MaskFieldNumber, OPTIONAL)                                     \
    FIELD(MatchPB, l2_src_, kL2SrcFieldNumber, OPTIONAL)                                           \
    FIELD(MatchPB, ipprotocol_, kIpprotocolFieldNumber, OPTIONAL)                                  \
    FIELD(MatchPB, packet_resolution_, kPacketResolutionFieldNumber, OPTIONAL)                     \
    FIELD(MatchPB, tos_, kTosFieldNumber, OPTIONAL)                                                \
    FIELD(MatchPB, limid_, kLimidFieldNumber, OPTIONAL)                                            \
    FIELD(MatchPB, l4port_mask_, kL4PortMaskFieldNumber, OPTIONAL)                                 \
    FIELD(MatchPB, ingress_stp_state_, kIngressStpStateFieldNumber, OPTIONAL)                      \
    FIELD(MatchPB, excluded_port_types_, kExcludedPortTypesFieldNumber, REPEATED)                  \
    FIELD(MatchPB, vlan_info_svc_vlan_type_, kVlanInfoSvcVlanTypeFieldNumber, OPTIONAL)            \
    FIELD(MatchPB, ttl_, kTtlFieldNumber, OPTIONAL)                                                \
    FIELD(MatchPB, vrf_id_, kVrfIdFieldNumber, OPTIONAL)                                           \
    FIELD(MatchPB, drop_flag_, kDropFlagFieldNumber, OPTIONAL)                                     \
    FIELD(MatchPB, fwd_type_, kFwdTypeFieldNumber, OPTIONAL)                                       \
    FIELD(MatchPB, mpls_terminated_, kMplsTerminatedFieldNumber, OPTIONAL)
// clang-format on

namespace match_fields {
FILTERS_COMMON_DEFINE_FIELDS(FILTERS_COMMON_MATCH_FIELDS)
} // namespace match_fields
#undef FILTERS_COMMON_MATCH_FIELDS

template <>
inline constexpr MessageSchema SCHEMA_OF<MatchPB> = {PART_MATCH, std::begin(match_fields::FIELDS),
                                                     std::end(match_fields::FIELDS)};

/** The members of each class, their fields in a MatchPB, and how they are shown to people. */
struct MatchRows {
    // clang-format off
    static constexpr auto of(const Match*) { return rows(); }
    static constexpr auto of(const MatchAll*) { return rows(Head::NO_PARAMETERS); }
    static constexpr auto of(const MatchVlanUntagged*) { return rows(Head::NO_PARAMETERS); }

    static constexpr auto ports() { return
        appended<match_fields::ports_, &MatchPorts::ports_>(
            "      LIMIDs: ", NUMBERED_PORTS_UNLESS_EXCLUDED, Notation::PORTS); }
    static constexpr auto of(const MatchPorts*) { return rows(
        ports(),
        appended<match_fields::excluded_port_types_, &MatchPorts::excludedPortTypes_>(
            "      Excluded Port Types: ", EXCLUDED_PORT_TYPES, Notation::EXCEPTED_TYPES)); }
    // Deliberately neither reads nor writes excluded port types. Dumped as a MatchPorts.
    static constexpr auto of(const MatchEgressPorts*) { return rows(ports()); }
    static constexpr auto of(const MatchLimId*) { return rows(
        at<match_fields::limid_, &MatchLimId::limId_>(
            "      LIMID: ", TEXT_LINE, Notation::PORT)); }
    static constexpr auto of(const MatchL4Port*) { return rows(
        at<match_fields::l4port_, &MatchL4Port::port_>(
            "      Port: ", LINE, Notation::NUMBER),
        at<match_fields::l4port_mask_, &MatchL4Port::mask_>(
            "      Mask: ", LINE, Notation::HEXADECIMAL_MASK)); }
    static constexpr auto of(const MatchVlanId*) { return rows(
        at<match_fields::vlan_id_, &MatchVlanId::vlanIds_>(
            "      VLAN IDs: [ ", BRACKETED_LINE, Notation::VLAN_IDS)); }
    static constexpr auto of(const MatchMac*) { return rows(
        at<match_fields::mac_, &MatchMac::mac_>(
            "      MAC: ", TEXT_LINE, Notation::ADDRESS),
        at<match_fields::mac_mask_, &MatchMac::mask_>(
            "      Mask: ", TEXT_LINE, Notation::MASK)); }
    static constexpr auto of(const MatchIPv4*) { return rows(
        at<match_fields::ipv4_, &MatchIPv4::address_>(
            "      IP: ", TEXT_LINE, Notation::ADDRESS),
        at<match_fields::ipv4_mask_, &MatchIPv4::mask_>(
            "      Mask: ", TEXT_LINE, Notation::LENGTH_OR_MASK)); }
    static constexpr auto of(const MatchIPv6*) { return rows(
        at<match_fields::ipv6_, &MatchIPv6::address_>(
            "      IPv6: ", UNFLUSHED_TEXT_LINE, Notation::ADDRESS),
        at<match_fields::ipv6_mask_, &MatchIPv6::mask_>(
            "      Mask: ", UNFLUSHED_TEXT_LINE, Notation::LENGTH_OR_MASK)); }

    static constexpr auto of(const MatchTPID*) { return rows(
        at<match_fields::tpid_, &MatchTPID::tpid_>(
            "      TPID: 0x", HEXADECIMAL_EVER_AFTER, Notation::TPID)); }
    static constexpr auto of(const MatchL2SrcEntryType*) { return rows(
        at<match_fields::l2_src_, &MatchL2SrcEntryType::srcType_>(
            "      L2 Src Entry Type: ", LINE, Notation::NUMBER)); }
    static constexpr auto of(const MatchPcp*) { return rows(
        at<match_fields::pcp_, &MatchPcp::pcp_>( // deliberately reads all eight bits
            "      PCP: ", LINE, Notation::NUMBER)); }
    static constexpr auto of(const MatchInternalPcp*) { return rows(
        at<match_fields::pcp_, &MatchInternalPcp::pcp_>(
            "      PCP: ", LINE, Notation::NUMBER)); }
    static constexpr auto of(const MatchIpProtocol*) { return rows(
        at<match_fields::ipprotocol_, &MatchIpProtocol::protocol_>(
            "      Ip Protocol: ", LINE, Notation::PROTOCOL)); }
    static constexpr auto of(const MatchPacketRes*) { return rows(
        at<match_fields::packet_resolution_, &MatchPacketRes::resolution_>(
            "      Pkt Resolution: ", LINE, Notation::NUMBER)); }
    static constexpr auto of(const MatchMplsTerm*) { return rows(
        at<match_fields::mpls_terminated_, &MatchMplsTerm::terminated_>(
            "      Mpls Terminated status: ", LINE, Notation::TRUTH)); }
    static constexpr auto of(const MatchToS*) { return rows(
        at<match_fields::tos_, &MatchToS::tos_>(
            "      ToS: ", LINE, Notation::NUMBER)); }
    // Used only for dumps by its own class: everywhere else it is a MatchToS.
    static constexpr auto of(const MatchDSCP*) { return rows(
        shown<&MatchDSCP::getDSCP>("      DSCP: ", LINE)); }
    static constexpr auto of(const MatchIngressStpState*) { return rows(
        at<match_fields::ingress_stp_state_, &MatchIngressStpState::state_>(
            "      IngressStpState: ", LINE, Notation::NUMBER)); }
    static constexpr auto of(const MatchVlanInfo*) { return rows(
        at<match_fields::vlan_info_svc_vlan_type_, &MatchVlanInfo::vlanInfo_>(
            "      SVC VLAN Type: ", LINE, Notation::NUMBER)); }
    static constexpr auto of(const MatchTTL*) { return rows(
        at<match_fields::ttl_, &MatchTTL::ttl_>(
            "      TTL: ", LINE, Notation::NUMBER)); }
    static constexpr auto of(const MatchVrfId*) { return rows(Head::UNFLUSHED,
        at<match_fields::vrf_id_, &MatchVrfId::vrfId_>(
            "      Match VRF ID: ", UNFLUSHED_LINE, Notation::NUMBER)); }
    static constexpr auto of(const MatchDrop*) { return rows(Head::UNFLUSHED_TYPE,
        at<match_fields::drop_flag_, &MatchDrop::drop_>(
            "      Match Drop: ", UNFLUSHED_LINE, Notation::TRUTH)); }
    static constexpr auto of(const MatchForwardingType*) { return rows(
        at<match_fields::fwd_type_, &MatchForwardingType::forwardingType_>(
            "      Forwarding Type: ", LINE, Notation::NUMBER)); }
    // clang-format on
};

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_WIRE_FILTER_MATCHES_ROWS_H
