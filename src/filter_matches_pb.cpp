#include "filter_matches.h"

#include "bytes.h"

#include "filter_matches.pb.h"

namespace FiltersCommon {

void Match::convertToMatchPB(MatchPB* pb) const
{
    pb->set_type_(static_cast<std::uint32_t>(type_));
}

void Match::convertFromMatchPB(const MatchPB* /*pb*/) {}

// -------------------------------------------------------------------------- kinds with one number

/** Where a number stands in the message: in which field the member of the class goes. */
#define FILTERS_COMMON_NUMBER(Class, member, field)                                                \
    void Class::convertToMatchPB(MatchPB* pb) const                                                \
    {                                                                                              \
        Match::convertToMatchPB(pb);                                                               \
        pb->set_##field(static_cast<decltype(pb->field())>(member));                               \
    }                                                                                              \
    void Class::convertFromMatchPB(const MatchPB* pb)                                              \
    {                                                                                              \
        member = static_cast<decltype(member)>(pb->field());                                       \
    }

FILTERS_COMMON_NUMBER(MatchTPID, tpid_, tpid_)
FILTERS_COMMON_NUMBER(MatchL2SrcEntryType, srcType_, l2_src_)
FILTERS_COMMON_NUMBER(MatchPcp, pcp_, pcp_) // reading deliberately keeps all eight bits
FILTERS_COMMON_NUMBER(MatchInternalPcp, pcp_, pcp_)
FILTERS_COMMON_NUMBER(MatchIpProtocol, protocol_, ipprotocol_)
FILTERS_COMMON_NUMBER(MatchPacketRes, resolution_, packet_resolution_)
FILTERS_COMMON_NUMBER(MatchMplsTerm, terminated_, mpls_terminated_)
FILTERS_COMMON_NUMBER(MatchToS, tos_, tos_)
FILTERS_COMMON_NUMBER(MatchIngressStpState, state_, ingress_stp_state_)
FILTERS_COMMON_NUMBER(MatchVlanInfo, vlanInfo_.svcVlanType, vlan_info_svc_vlan_type_)
FILTERS_COMMON_NUMBER(MatchTTL, ttl_, ttl_)
FILTERS_COMMON_NUMBER(MatchVrfId, vrfId_, vrf_id_)
FILTERS_COMMON_NUMBER(MatchDrop, drop_, drop_flag_)
FILTERS_COMMON_NUMBER(MatchForwardingType, forwardingType_, fwd_type_)

#undef FILTERS_COMMON_NUMBER

// --------------------------------------------------------------------------------- value families

void MatchPorts::convertToMatchPB(MatchPB* pb) const
{
    Match::convertToMatchPB(pb);
    for (const port_type_t type : excludedPortTypes_)
        pb->add_excluded_port_types_(static_cast<std::uint32_t>(type));
    appendPacked(pb->mutable_ports_(), ports_);
}

void MatchPorts::convertFromMatchPB(const MatchPB* pb)
{
    std::list<port_type_t> types;
    for (const std::uint32_t type : pb->excluded_port_types_())
        types.push_back(static_cast<port_type_t>(type));
    appendPorts(*pb);
    excludedPortTypes_.splice(excludedPortTypes_.end(), types);
}

void MatchPorts::appendPorts(const MatchPB& pb)
{
    std::list<limid_t> ports = unpackAll(pb.ports_());
    ports_.splice(ports_.end(), ports);
}

void MatchEgressPorts::convertFromMatchPB(const MatchPB* pb) { appendPorts(*pb); }

void MatchLimId::convertToMatchPB(MatchPB* pb) const
{
    Match::convertToMatchPB(pb);
    pb->set_limid_(packLimId(limId_));
}

void MatchLimId::convertFromMatchPB(const MatchPB* pb) { limId_ = unpackLimId(pb->limid_()); }

void MatchL4Port::convertToMatchPB(MatchPB* pb) const
{
    Match::convertToMatchPB(pb);
    pb->set_l4port_(port_);
    pb->set_l4port_mask_(mask_);
}

void MatchL4Port::convertFromMatchPB(const MatchPB* pb)
{
    port_ = static_cast<l4port_t>(pb->l4port_());
    mask_ = static_cast<l4port_t>(pb->l4port_mask_());
}

void MatchVlanId::convertToMatchPB(MatchPB* pb) const
{
    Match::convertToMatchPB(pb);
    pb->clear_vlan_id_();
    for (const unsigned short id : vlanIds_)
        pb->add_vlan_id_(id);
}

void MatchVlanId::convertFromMatchPB(const MatchPB* pb)
{
    std::set<unsigned short> ids;
    for (const std::uint32_t id : pb->vlan_id_())
        ids.insert(ids.end(), static_cast<unsigned short>(id));
    vlanIds_.swap(ids);
}

void MatchMac::convertToMatchPB(MatchPB* pb) const
{
    Match::convertToMatchPB(pb);
    pb->set_mac_(&mac_, sizeof mac_);
    pb->set_mac_mask_(&mask_, sizeof mask_);
}

void MatchMac::convertFromMatchPB(const MatchPB* pb)
{
    mac_ = fromBytes<ether_addr>(pb->mac_());
    mask_ = fromBytes<ether_addr>(pb->mac_mask_());
}

void MatchIPv4::convertToMatchPB(MatchPB* pb) const
{
    Match::convertToMatchPB(pb);
    pb->set_ipv4_(&address_, sizeof address_);
    pb->set_ipv4_mask_(&mask_, sizeof mask_);
}

void MatchIPv4::convertFromMatchPB(const MatchPB* pb)
{
    address_ = fromBytes<in_addr>(pb->ipv4_());
    mask_ = fromBytes<in_addr>(pb->ipv4_mask_());
}

void MatchIPv6::convertToMatchPB(MatchPB* pb) const
{
    Match::convertToMatchPB(pb);
    pb->set_ipv6_(&address_, sizeof address_);
    pb->set_ipv6_mask_(&mask_, sizeof mask_);
}

void MatchIPv6::convertFromMatchPB(const MatchPB* pb)
{
    address_ = fromBytes<in6_addr>(pb->ipv6_());
    mask_ = fromBytes<in6_addr>(pb->ipv6_mask_());
}

} // namespace FiltersCommon
