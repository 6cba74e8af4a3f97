#ifndef FILTER_COMMON_SRC_FILTER_MATCHES_FIELDS_H
#define FILTER_COMMON_SRC_FILTER_MATCHES_FIELDS_H

#include "field_rows.h"
#include "filter_matches.h"
#include "message_fields.h"

namespace FiltersCommon {

/** Where the values of each class stand in a MatchPB. A class without a row is as its base. */
struct MatchFields {
    // clang-format off
    static Fields<> of(const Match*);

    static Fields<Appended<match_fields::ports_, &MatchPorts::ports_>,
                  Appended<match_fields::excluded_port_types_, &MatchPorts::excludedPortTypes_>>
        of(const MatchPorts*);
    // Deliberately no port types.
    static Fields<Appended<match_fields::ports_, &MatchPorts::ports_>>
        of(const MatchEgressPorts*);
    static Fields<At<match_fields::limid_, &MatchLimId::limId_>>
        of(const MatchLimId*);
    static Fields<At<match_fields::l4port_, &MatchL4Port::port_>,
                  At<match_fields::l4port_mask_, &MatchL4Port::mask_>>
        of(const MatchL4Port*);
    static Fields<At<match_fields::vlan_id_, &MatchVlanId::vlanIds_>>
        of(const MatchVlanId*);
    static Fields<At<match_fields::mac_, &MatchMac::mac_>,
                  At<match_fields::mac_mask_, &MatchMac::mask_>>
        of(const MatchMac*);
    static Fields<At<match_fields::ipv4_, &MatchIPv4::address_>,
                  At<match_fields::ipv4_mask_, &MatchIPv4::mask_>>
        of(const MatchIPv4*);
    static Fields<At<match_fields::ipv6_, &MatchIPv6::address_>,
                  At<match_fields::ipv6_mask_, &MatchIPv6::mask_>>
        of(const MatchIPv6*);

    static Fields<At<match_fields::tpid_, &MatchTPID::tpid_>>
        of(const MatchTPID*);
    static Fields<At<match_fields::l2_src_, &MatchL2SrcEntryType::srcType_>>
        of(const MatchL2SrcEntryType*);
    static Fields<At<match_fields::pcp_, &MatchPcp::pcp_>> // all eight bits are read, deliberately
        of(const MatchPcp*);
    static Fields<At<match_fields::pcp_, &MatchInternalPcp::pcp_>>
        of(const MatchInternalPcp*);
    static Fields<At<match_fields::ipprotocol_, &MatchIpProtocol::protocol_>>
        of(const MatchIpProtocol*);
    static Fields<At<match_fields::packet_resolution_, &MatchPacketRes::resolution_>>
        of(const MatchPacketRes*);
    static Fields<At<match_fields::mpls_terminated_, &MatchMplsTerm::terminated_>>
        of(const MatchMplsTerm*);
    static Fields<At<match_fields::tos_, &MatchToS::tos_>>
        of(const MatchToS*);
    static Fields<At<match_fields::ingress_stp_state_, &MatchIngressStpState::state_>>
        of(const MatchIngressStpState*);
    static Fields<At<match_fields::vlan_info_svc_vlan_type_, &MatchVlanInfo::vlanInfo_>>
        of(const MatchVlanInfo*);
    static Fields<At<match_fields::ttl_, &MatchTTL::ttl_>>
        of(const MatchTTL*);
    static Fields<At<match_fields::vrf_id_, &MatchVrfId::vrfId_>>
        of(const MatchVrfId*);
    static Fields<At<match_fields::drop_flag_, &MatchDrop::drop_>>
        of(const MatchDrop*);
    static Fields<At<match_fields::fwd_type_, &MatchForwardingType::forwardingType_>>
        of(const MatchForwardingType*);
    // clang-format on
};

template <class T>
using MatchFieldsOf = decltype(MatchFields::of(static_cast<const T*>(nullptr)));

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_FILTER_MATCHES_FIELDS_H
