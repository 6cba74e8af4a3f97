/**
 * The fields of a MatchPB, and the rows of the match classes: each member once.
 */
#ifndef FILTER_COMMON_SRC_WIRE_FILTER_MATCHES_ROWS_H
#define FILTER_COMMON_SRC_WIRE_FILTER_MATCHES_ROWS_H

#include "filter_matches.h"
#include "message_fields.h"
#include "rows.h"

namespace FiltersCommon {

namespace match_fields {
FILTERS_COMMON_DEFINE_FIELD(MatchPB, type_, kTypeFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(MatchPB, ports_, kPortsFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(MatchPB, vlan_id_, kVlanIdFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(MatchPB, tpid_, kTpidFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(MatchPB, mac_, kMacFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(MatchPB, l4port_, kL4PortFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(MatchPB, mac_mask_, kMacMaskFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(MatchPB, ipv4_, kIpv4FieldNumber)
FILTERS_COMMON_DEFINE_FIELD(MatchPB, pcp_, kPcpFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(MatchPB, ipv4_mask_, kIpv4MaskFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(MatchPB, ipv6_, kIpv6FieldNumber)
FILTERS_COMMON_DEFINE_FIELD(MatchPB, ipv6_mask_, kIpv6MaskFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(MatchPB, l2_src_, kL2SrcFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(MatchPB, ipprotocol_, kIpprotocolFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(MatchPB, packet_resolution_, kPacketResolutionFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(MatchPB, tos_, kTosFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(MatchPB, limid_, kLimidFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(MatchPB, l4port_mask_, kL4PortMaskFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(MatchPB, ingress_stp_state_, kIngressStpStateFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(MatchPB, excluded_port_types_, kExcludedPortTypesFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(MatchPB, vlan_info_svc_vlan_type_, kVlanInfoSvcVlanTypeFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(MatchPB, ttl_, kTtlFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(MatchPB, vrf_id_, kVrfIdFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(MatchPB, drop_flag_, kDropFlagFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(MatchPB, fwd_type_, kFwdTypeFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(MatchPB, mpls_terminated_, kMplsTerminatedFieldNumber)
} // namespace match_fields

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
