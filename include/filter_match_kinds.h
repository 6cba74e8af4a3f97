/**
 * The kinds of match, in the order of their codes. A caller includes filter_matches.h.
 * A constructor without a mask sets all its bits. Only classes without values have a constructor
 * without arguments.
 */
#ifndef FILTER_COMMON_FILTER_MATCH_KINDS_H
#define FILTER_COMMON_FILTER_MATCH_KINDS_H

#include "filter_match_families.h"

#pragma GCC visibility push(default)
namespace FiltersCommon {

/** Every packet. */
class MatchAll : public Match {
public:
    static constexpr filtersMatch_t KIND = MATCH_ALL;
    MatchAll() : Match(KIND) {}
    using Match::operator==;
    bool operator==(const MatchAll&) const { return true; }
};

/** The ports a packet came in on, or the types of port it did not come in on. */
class MatchIngressPorts : public MatchPorts {
public:
    static constexpr filtersMatch_t KIND = MATCH_INGRESS_PORTS;

    explicit MatchIngressPorts(std::list<limid_t> ports) : MatchPorts(KIND, std::move(ports)) {}
    explicit MatchIngressPorts(std::list<port_type_t> types) : MatchPorts(KIND, std::move(types)) {}
    using Match::operator==;
    bool operator==(const MatchIngressPorts& other) const { return MatchPorts::operator==(other); }
};

/** The VLAN identifiers that a packet carries on the wire. */
class MatchExternalVlanId : public MatchVlanId {
public:
    static constexpr filtersMatch_t KIND = MATCH_EXTERNAL_VLAN_ID;

    explicit MatchExternalVlanId(std::set<unsigned short> ids) : MatchVlanId(KIND, std::move(ids))
    {}
    explicit MatchExternalVlanId(unsigned short id) : MatchVlanId(KIND, {id}) {}
    using Match::operator==;
    bool operator==(const MatchExternalVlanId& other) const
    {
        return MatchVlanId::operator==(other);
    }
};

/** The VLAN tag protocol identifier. */
class MatchTPID : public Match {
public:
    static constexpr filtersMatch_t KIND = MATCH_TPID;

    explicit MatchTPID(unsigned short tpid) : Match(KIND), tpid_(tpid) {}

    tpid_t getTPID() const { return tpid_; }
    void convertToMatchPB(MatchPB* pb) const override;
    void convertFromMatchPB(const MatchPB* pb) override;
    using Match::operator==;
    bool operator==(const MatchTPID& other) const { return tpid_ == other.tpid_; }

private:
    friend struct MatchFields;
    tpid_t tpid_;
};

/** The destination MAC address. */
class MatchDstMac : public MatchMac {
public:
    static constexpr filtersMatch_t KIND = MATCH_DST_MAC;

    explicit MatchDstMac(ether_addr mac) : MatchMac(KIND, mac) {}
    MatchDstMac(ether_addr mac, ether_addr mask) : MatchMac(KIND, mac, mask) {}
    using Match::operator==;
    bool operator==(const MatchDstMac& other) const { return MatchMac::operator==(other); }
};

/** The destination port of the transport layer. */
class MatchDstL4Port : public MatchL4Port {
public:
    static constexpr filtersMatch_t KIND = MATCH_DST_L4_PORT;

    explicit MatchDstL4Port(unsigned short port) : MatchL4Port(KIND, port) {}
    MatchDstL4Port(unsigned short port, unsigned short mask) : MatchL4Port(KIND, port, mask) {}
    using Match::operator==;
    bool operator==(const MatchDstL4Port& other) const { return MatchL4Port::operator==(other); }
};

/** The source port of the transport layer. */
class MatchSrcL4Port : public MatchL4Port {
public:
    static constexpr filtersMatch_t KIND = MATCH_SRC_L4_PORT;

    explicit MatchSrcL4Port(unsigned short port) : MatchL4Port(KIND, port) {}
    MatchSrcL4Port(unsigned short port, unsigned short mask) : MatchL4Port(KIND, port, mask) {}
    using Match::operator==;
    bool operator==(const MatchSrcL4Port& other) const { return MatchL4Port::operator==(other); }
};

/** The source MAC address. */
class MatchSrcMac : public MatchMac {
public:
    static constexpr filtersMatch_t KIND = MATCH_SRC_MAC;

    explicit MatchSrcMac(ether_addr mac) : MatchMac(KIND, mac) {}
    MatchSrcMac(ether_addr mac, ether_addr mask) : MatchMac(KIND, mac, mask) {}
    using Match::operator==;
    bool operator==(const MatchSrcMac& other) const { return MatchMac::operator==(other); }
};

/** The kind of layer-2 source entry. */
class MatchL2SrcEntryType : public Match {
public:
    static constexpr filtersMatch_t KIND = MATCH_L2_SRC_ENTRY_TYPE;

    explicit MatchL2SrcEntryType(l2SrcEntryType_t type) : Match(KIND), srcType_(type) {}

    l2SrcEntryType_t getL2SrcEntryType() const { return srcType_; }
    void convertToMatchPB(MatchPB* pb) const override;
    void convertFromMatchPB(const MatchPB* pb) override;
    using Match::operator==;
    bool operator==(const MatchL2SrcEntryType& other) const { return srcType_ == other.srcType_; }

private:
    friend struct MatchFields;
    l2SrcEntryType_t srcType_;
};

/** The source IPv4 address. */
class MatchSrcIPv4 : public MatchIPv4 {
public:
    static constexpr filtersMatch_t KIND = MATCH_SRC_IPV4;

    explicit MatchSrcIPv4(in_addr address) : MatchIPv4(KIND, address) {}
    MatchSrcIPv4(in_addr address, in_addr mask) : MatchIPv4(KIND, address, mask) {}
    using Match::operator==;
    bool operator==(const MatchSrcIPv4& other) const { return MatchIPv4::operator==(other); }
};

/** The destination IPv4 address. */
class MatchDstIPv4 : public MatchIPv4 {
public:
    static constexpr filtersMatch_t KIND = MATCH_DST_IPV4;

    explicit MatchDstIPv4(in_addr address) : MatchIPv4(KIND, address) {}
    MatchDstIPv4(in_addr address, in_addr mask) : MatchIPv4(KIND, address, mask) {}
    using Match::operator==;
    bool operator==(const MatchDstIPv4& other) const { return MatchIPv4::operator==(other); }
};

/** The VLAN identifiers inside the switch. */
class MatchInternalVlanId : public MatchVlanId {
public:
    static constexpr filtersMatch_t KIND = MATCH_INTERNAL_VLAN_ID;

    explicit MatchInternalVlanId(std::set<unsigned short> ids) : MatchVlanId(KIND, std::move(ids))
    {}
    explicit MatchInternalVlanId(unsigned short id) : MatchVlanId(KIND, {id}) {}
    using Match::operator==;
    bool operator==(const MatchInternalVlanId& other) const
    {
        return MatchVlanId::operator==(other);
    }
};

/** The priority code point; only the three low bits of the argument are kept. */
class MatchPcp : public Match {
public:
    static constexpr filtersMatch_t KIND = MATCH_PCP;

    explicit MatchPcp(unsigned char pcp) : Match(KIND), pcp_(pcp & 7) {}

    unsigned char getPcp() const { return pcp_; }
    void convertToMatchPB(MatchPB* pb) const override;
    void convertFromMatchPB(const MatchPB* pb) override;
    using Match::operator==;
    bool operator==(const MatchPcp& other) const { return pcp_ == other.pcp_; }

private:
    friend struct MatchFields;
    unsigned char pcp_;
};

/** The priority code point inside the switch; only the three low bits of the argument are kept. */
class MatchInternalPcp : public Match {
public:
    static constexpr filtersMatch_t KIND = MATCH_INTERNAL_PCP;

    explicit MatchInternalPcp(unsigned char pcp) : Match(KIND), pcp_(pcp & 7) {}

    unsigned char getPcp() const { return pcp_; }
    void convertToMatchPB(MatchPB* pb) const override;
    void convertFromMatchPB(const MatchPB* pb) override;
    using Match::operator==;
    bool operator==(const MatchInternalPcp& other) const { return pcp_ == other.pcp_; }

private:
    friend struct MatchFields;
    unsigned char pcp_;
};

/** The source IPv6 address; deliberately without a mask of its own. */
class MatchSrcIPv6 : public MatchIPv6 {
public:
    static constexpr filtersMatch_t KIND = MATCH_SRC_IPV6;

    explicit MatchSrcIPv6(in6_addr address) : MatchIPv6(KIND, address) {}
    using Match::operator==;
    bool operator==(const MatchSrcIPv6& other) const { return MatchIPv6::operator==(other); }
};

/** The destination IPv6 address. */
class MatchDstIPv6 : public MatchIPv6 {
public:
    static constexpr filtersMatch_t KIND = MATCH_DST_IPV6;

    explicit MatchDstIPv6(in6_addr address) : MatchIPv6(KIND, address) {}
    MatchDstIPv6(in6_addr address, in6_addr mask) : MatchIPv6(KIND, address, mask) {}
    using Match::operator==;
    bool operator==(const MatchDstIPv6& other) const { return MatchIPv6::operator==(other); }
};

/** A packet without a VLAN tag. */
class MatchVlanUntagged : public Match {
public:
    static constexpr filtersMatch_t KIND = MATCH_VLAN_UNTAGGED;

    MatchVlanUntagged() : Match(KIND) {}
    using Match::operator==;
    bool operator==(const MatchVlanUntagged&) const { return true; }
};

/** The IP protocol number. */
class MatchIpProtocol : public Match {
public:
    static constexpr filtersMatch_t KIND = MATCH_IP_PROTOCOL;

    explicit MatchIpProtocol(unsigned char protocol) : Match(KIND), protocol_(protocol) {}

    unsigned char getIpProtocol() const { return protocol_; }
    void convertToMatchPB(MatchPB* pb) const override;
    void convertFromMatchPB(const MatchPB* pb) override;
    using Match::operator==;
    bool operator==(const MatchIpProtocol& other) const { return protocol_ == other.protocol_; }

private:
    friend struct MatchFields;
    unsigned char protocol_;
};

/** The packet resolution. */
class MatchPacketRes : public Match {
public:
    static constexpr filtersMatch_t KIND = MATCH_PACKET_RES;

    explicit MatchPacketRes(en_Resolution resolution) : Match(KIND), resolution_(resolution) {}

    en_Resolution getPktRes() const { return resolution_; }
    void convertToMatchPB(MatchPB* pb) const override;
    void convertFromMatchPB(const MatchPB* pb) override;
    using Match::operator==;
    bool operator==(const MatchPacketRes& other) const { return resolution_ == other.resolution_; }

private:
    friend struct MatchFields;
    en_Resolution resolution_;
};

/** Whether an MPLS label was terminated. */
class MatchMplsTerm : public Match {
public:
    static constexpr filtersMatch_t KIND = MATCH_MPLS_TERM;

    explicit MatchMplsTerm(bool terminated) : Match(KIND), terminated_(terminated) {}

    bool getMplsTerm() const { return terminated_; }
    void convertToMatchPB(MatchPB* pb) const override;
    void convertFromMatchPB(const MatchPB* pb) override;
    using Match::operator==;
    bool operator==(const MatchMplsTerm& other) const { return terminated_ == other.terminated_; }

private:
    friend struct MatchFields;
    bool terminated_;
};

/** The type-of-service byte. */
class MatchToS : public Match {
public:
    static constexpr filtersMatch_t KIND = MATCH_TOS;

    explicit MatchToS(unsigned char tos) : Match(KIND), tos_(tos) {}

    unsigned char getToS() const { return tos_; }
    void convertToMatchPB(MatchPB* pb) const override;
    void convertFromMatchPB(const MatchPB* pb) override;
    using Match::operator==;
    bool operator==(const MatchToS& other) const { return tos_ == other.tos_; }

private:
    friend struct MatchFields;
    unsigned char tos_;
};

/**
 * A type-of-service match built from a DSCP. Deliberately not a kind of its own: it carries the
 * code of MatchToS, fills the same slot of an entry, is equal to the MatchToS of the same byte, and
 * becomes a MatchToS wherever it is copied by kind or read from the wire.
 */
class MatchDSCP : public MatchToS {
public:
    /** Keeps the six low bits of @p dscp, as the upper six bits of the type-of-service byte. */
    explicit MatchDSCP(unsigned char dscp)
        : MatchToS(static_cast<unsigned char>((dscp << 2) & 0xFC))
    {}

    unsigned char getDSCP() const { return static_cast<unsigned char>(getToS() >> 2); }
    using Match::operator==;
    bool operator==(const MatchToS& other) const { return MatchToS::operator==(other); }
    bool operator==(const MatchDSCP& other) const { return getDSCP() == other.getDSCP(); }
};

/** A virtual port. */
class MatchVirtualPort : public MatchLimId {
public:
    static constexpr filtersMatch_t KIND = MATCH_VIRTUAL_PORT;

    explicit MatchVirtualPort(limid_t port) : MatchLimId(KIND, port) {}
    using Match::operator==;
    bool operator==(const MatchVirtualPort& other) const { return MatchLimId::operator==(other); }
};

/** The ports a packet leaves by; never holds excluded port types. */
class MatchEgressPorts : public MatchPorts {
public:
    static constexpr filtersMatch_t KIND = MATCH_EGRESS_PORTS;

    explicit MatchEgressPorts(std::list<limid_t> ports) : MatchPorts(KIND, std::move(ports)) {}

    void convertToMatchPB(MatchPB* pb) const override;
    /** Appends the ports and ignores the excluded port types of the message. */
    void convertFromMatchPB(const MatchPB* pb) override;
    using Match::operator==;
    bool operator==(const MatchEgressPorts& other) const { return MatchPorts::operator==(other); }
};

/** The spanning-tree state of the ingress port. */
class MatchIngressStpState : public Match {
public:
    static constexpr filtersMatch_t KIND = MATCH_INGRESS_STP_STATE;

    explicit MatchIngressStpState(en_StpState state) : Match(KIND), state_(state) {}

    en_StpState getIngressStpState() const { return state_; }
    void convertToMatchPB(MatchPB* pb) const override;
    void convertFromMatchPB(const MatchPB* pb) override;
    using Match::operator==;
    virtual bool operator==(const MatchIngressStpState& other) const
    {
        return state_ == other.state_;
    }

private:
    friend struct MatchFields;
    en_StpState state_;
};

/** VLAN information. */
class MatchVlanInfo : public Match {
public:
    static constexpr filtersMatch_t KIND = MATCH_VLAN_INFO;

    explicit MatchVlanInfo(vlan_info_t vlanInfo) : Match(KIND), vlanInfo_(vlanInfo) {}

    vlan_info_t getVlanInfo() const { return vlanInfo_; }
    void convertToMatchPB(MatchPB* pb) const override;
    void convertFromMatchPB(const MatchPB* pb) override;
    using Match::operator==;
    virtual bool operator==(const MatchVlanInfo& other) const
    {
        return vlanInfo_.svcVlanType == other.vlanInfo_.svcVlanType;
    }

private:
    friend struct MatchFields;
    vlan_info_t vlanInfo_;
};

/** The port a packet came from. */
class MatchSrcPort : public MatchLimId {
public:
    static constexpr filtersMatch_t KIND = MATCH_SRC_PORT;

    explicit MatchSrcPort(limid_t port) : MatchLimId(KIND, port) {}

    void setSrcPort(limid_t port) { setLimId(port); }
    using Match::operator==;
    bool operator==(const MatchSrcPort& other) const { return MatchLimId::operator==(other); }
};

/** The time to live. */
class MatchTTL : public Match {
public:
    static constexpr filtersMatch_t KIND = MATCH_TTL;

    explicit MatchTTL(unsigned char ttl) : Match(KIND), ttl_(ttl) {}

    unsigned char getTTL() const { return ttl_; }
    void convertToMatchPB(MatchPB* pb) const override;
    void convertFromMatchPB(const MatchPB* pb) override;
    using Match::operator==;
    bool operator==(const MatchTTL& other) const { return ttl_ == other.ttl_; }

private:
    friend struct MatchFields;
    unsigned char ttl_;
};

/** The virtual routing and forwarding instance. */
class MatchVrfId : public Match {
public:
    static constexpr filtersMatch_t KIND = MATCH_VRF_ID;

    explicit MatchVrfId(unsigned short vrfId) : Match(KIND), vrfId_(vrfId) {}

    unsigned short getVrfId() const { return vrfId_; }
    void setVrfId(unsigned short vrfId) { vrfId_ = vrfId; }
    void convertToMatchPB(MatchPB* pb) const override;
    void convertFromMatchPB(const MatchPB* pb) override;
    using Match::operator==;
    virtual bool operator==(const MatchVrfId& other) const { return vrfId_ == other.vrfId_; }

private:
    friend struct MatchFields;
    unsigned short vrfId_;
};

/** Whether the packet is to be dropped. */
class MatchDrop : public Match {
public:
    static constexpr filtersMatch_t KIND = MATCH_DROP;

    explicit MatchDrop(bool drop) : Match(KIND), drop_(drop) {}

    bool getDropFlag() const { return drop_; }
    void convertToMatchPB(MatchPB* pb) const override;
    void convertFromMatchPB(const MatchPB* pb) override;
    using Match::operator==;
    virtual bool operator==(const MatchDrop& other) const { return drop_ == other.drop_; }

private:
    friend struct MatchFields;
    bool drop_;
};

/** A packet from the CPU port. */
class MatchCpuPort : public Match {
public:
    static constexpr filtersMatch_t KIND = MATCH_CPU_PORT;

    MatchCpuPort() : Match(KIND) {}
    using Match::operator==;
    virtual bool operator==(const MatchCpuPort&) const { return true; }
};

/** The forwarding type. */
class MatchForwardingType : public Match {
public:
    static constexpr filtersMatch_t KIND = MATCH_FORWARDING_TYPE;

    explicit MatchForwardingType(en_ForwardingType type) : Match(KIND), forwardingType_(type) {}

    en_ForwardingType getForwardingType() const { return forwardingType_; }
    void convertToMatchPB(MatchPB* pb) const override;
    void convertFromMatchPB(const MatchPB* pb) override;
    using Match::operator==;
    virtual bool operator==(const MatchForwardingType& other) const
    {
        return forwardingType_ == other.forwardingType_;
    }

private:
    friend struct MatchFields;
    en_ForwardingType forwardingType_;
};

/** A packet for the CPU. */
class MatchDestinationCpu : public Match {
public:
    static constexpr filtersMatch_t KIND = MATCH_DESTINATION_CPU;

    MatchDestinationCpu() : Match(KIND) {}
    using Match::operator==;
    bool operator==(const MatchDestinationCpu&) const { return true; }
};

} // namespace FiltersCommon
#pragma GCC visibility pop

#endif // FILTER_COMMON_FILTER_MATCH_KINDS_H
