/**
 * The match kinds with values of their own or without values, in code order, and the list of all
 * kinds. Callers include filter_matches.h.
 *
 * Default constructors set numbers to 0 and booleans to false.
 */
#ifndef FILTER_COMMON_FILTER_MATCH_KINDS_H
#define FILTER_COMMON_FILTER_MATCH_KINDS_H

#include "filter_match_families.h"
#include "filter_match_family_kinds.h"

#include <initializer_list>

#pragma GCC visibility push(default)

namespace FiltersCommon {

/** Every packet. */
class MatchAll : public Match {
public:
    static constexpr filtersMatch_t KIND = MATCH_ALL;

    MatchAll() : Match(KIND) {}

    FILTERS_COMMON_DECLARE_MATCH(MatchAll)
    bool operator==(const MatchAll&) const { return true; }
};

/** The VLAN tag protocol identifier. */
class MatchTPID : public Match {
public:
    static constexpr filtersMatch_t KIND = MATCH_TPID;

    MatchTPID() : MatchTPID(0) {}
    explicit MatchTPID(unsigned short tpid) : Match(KIND), tpid_(tpid) {}

    tpid_t getTPID() const { return tpid_; }

    FILTERS_COMMON_DECLARE_MATCH_WITH_VALUES(MatchTPID)
    bool operator==(const MatchTPID& other) const { return tpid_ == other.tpid_; }

private:
    tpid_t tpid_;
};

/** The kind of layer-2 source entry. */
class MatchL2SrcEntryType : public Match {
public:
    static constexpr filtersMatch_t KIND = MATCH_L2_SRC_ENTRY_TYPE;

    MatchL2SrcEntryType() : MatchL2SrcEntryType(l2SrcEntryType_t{}) {}
    explicit MatchL2SrcEntryType(l2SrcEntryType_t type) : Match(KIND), srcType_(type) {}

    l2SrcEntryType_t getL2SrcEntryType() const { return srcType_; }

    FILTERS_COMMON_DECLARE_MATCH_WITH_VALUES(MatchL2SrcEntryType)
    bool operator==(const MatchL2SrcEntryType& other) const { return srcType_ == other.srcType_; }

private:
    l2SrcEntryType_t srcType_;
};

/** The priority code point; only the low three bits of the argument are kept. */
class MatchPcp : public Match {
public:
    static constexpr filtersMatch_t KIND = MATCH_PCP;

    MatchPcp() : MatchPcp(0) {}
    explicit MatchPcp(unsigned char pcp) : Match(KIND), pcp_(pcp & 7) {}

    unsigned char getPcp() const { return pcp_; }

    FILTERS_COMMON_DECLARE_MATCH_WITH_VALUES(MatchPcp)
    bool operator==(const MatchPcp& other) const { return pcp_ == other.pcp_; }

private:
    unsigned char pcp_;
};

/** The priority code point inside the switch; only the low three bits of the argument are kept. */
class MatchInternalPcp : public Match {
public:
    static constexpr filtersMatch_t KIND = MATCH_INTERNAL_PCP;

    MatchInternalPcp() : MatchInternalPcp(0) {}
    explicit MatchInternalPcp(unsigned char pcp) : Match(KIND), pcp_(pcp & 7) {}

    unsigned char getPcp() const { return pcp_; }

    FILTERS_COMMON_DECLARE_MATCH_WITH_VALUES(MatchInternalPcp)
    bool operator==(const MatchInternalPcp& other) const { return pcp_ == other.pcp_; }

private:
    unsigned char pcp_;
};

/** A packet without a VLAN tag. */
class MatchVlanUntagged : public Match {
public:
    static constexpr filtersMatch_t KIND = MATCH_VLAN_UNTAGGED;

    MatchVlanUntagged() : Match(KIND) {}

    FILTERS_COMMON_DECLARE_MATCH(MatchVlanUntagged)
    bool operator==(const MatchVlanUntagged&) const { return true; }
};

/** The IP protocol number. */
class MatchIpProtocol : public Match {
public:
    static constexpr filtersMatch_t KIND = MATCH_IP_PROTOCOL;

    MatchIpProtocol() : MatchIpProtocol(0) {}
    explicit MatchIpProtocol(unsigned char protocol) : Match(KIND), protocol_(protocol) {}

    unsigned char getIpProtocol() const { return protocol_; }

    FILTERS_COMMON_DECLARE_MATCH_WITH_VALUES(MatchIpProtocol)
    bool operator==(const MatchIpProtocol& other) const { return protocol_ == other.protocol_; }

private:
    unsigned char protocol_;
};

/** The packet resolution. */
class MatchPacketRes : public Match {
public:
    static constexpr filtersMatch_t KIND = MATCH_PACKET_RES;

    MatchPacketRes() : MatchPacketRes(en_Resolution{}) {}
    explicit MatchPacketRes(en_Resolution resolution) : Match(KIND), resolution_(resolution) {}

    en_Resolution getPktRes() const { return resolution_; }

    FILTERS_COMMON_DECLARE_MATCH_WITH_VALUES(MatchPacketRes)
    bool operator==(const MatchPacketRes& other) const { return resolution_ == other.resolution_; }

private:
    en_Resolution resolution_;
};

/** Whether an MPLS label was terminated. */
class MatchMplsTerm : public Match {
public:
    static constexpr filtersMatch_t KIND = MATCH_MPLS_TERM;

    MatchMplsTerm() : MatchMplsTerm(false) {}
    explicit MatchMplsTerm(bool terminated) : Match(KIND), terminated_(terminated) {}

    bool getMplsTerm() const { return terminated_; }

    FILTERS_COMMON_DECLARE_MATCH_WITH_VALUES(MatchMplsTerm)
    bool operator==(const MatchMplsTerm& other) const { return terminated_ == other.terminated_; }

private:
    bool terminated_;
};

/** The type-of-service byte. */
class MatchToS : public Match {
public:
    static constexpr filtersMatch_t KIND = MATCH_TOS;

    MatchToS() : MatchToS(0) {}
    explicit MatchToS(unsigned char tos) : Match(KIND), tos_(tos) {}

    unsigned char getToS() const { return tos_; }

    FILTERS_COMMON_DECLARE_MATCH_WITH_VALUES(MatchToS)
    bool operator==(const MatchToS& other) const { return tos_ == other.tos_; }

private:
    unsigned char tos_;
};

/**
 * A type-of-service match built from a DSCP. Deliberately not a kind of its own: it carries the
 * code of MatchToS, takes the same slot of an entry, equals the MatchToS with the same byte, and
 * becomes a MatchToS wherever it is copied by kind or read from the wire.
 */
class MatchDSCP : public MatchToS {
public:
    /** Keeps the low six bits of @p dscp, as the upper six bits of the type-of-service byte. */
    MatchDSCP() : MatchDSCP(0) {}
    explicit MatchDSCP(unsigned char dscp)
        : MatchToS(static_cast<unsigned char>((dscp << 2) & 0xFC))
    {}

    unsigned char getDSCP() const { return static_cast<unsigned char>(getToS() >> 2); }

    FILTERS_COMMON_DECLARE_MATCH(MatchDSCP)
    bool operator==(const MatchDSCP& other) const { return getDSCP() == other.getDSCP(); }
};

/** The spanning-tree state of the ingress port. */
class MatchIngressStpState : public Match {
public:
    static constexpr filtersMatch_t KIND = MATCH_INGRESS_STP_STATE;

    MatchIngressStpState() : MatchIngressStpState(en_StpState{}) {}
    explicit MatchIngressStpState(en_StpState state) : Match(KIND), state_(state) {}

    en_StpState getIngressStpState() const { return state_; }

    FILTERS_COMMON_DECLARE_MATCH_WITH_VALUES(MatchIngressStpState)
    virtual bool operator==(const MatchIngressStpState& other) const
    {
        return state_ == other.state_;
    }

private:
    en_StpState state_;
};

/** VLAN information. */
class MatchVlanInfo : public Match {
public:
    static constexpr filtersMatch_t KIND = MATCH_VLAN_INFO;

    MatchVlanInfo() : MatchVlanInfo(vlan_info_t{}) {}
    explicit MatchVlanInfo(vlan_info_t vlanInfo) : Match(KIND), vlanInfo_(vlanInfo) {}
    explicit MatchVlanInfo(std::initializer_list<NoValues>) : MatchVlanInfo() {}

    vlan_info_t getVlanInfo() const { return vlanInfo_; }

    FILTERS_COMMON_DECLARE_MATCH_WITH_VALUES(MatchVlanInfo)
    virtual bool operator==(const MatchVlanInfo& other) const
    {
        return vlanInfo_.svcVlanType == other.vlanInfo_.svcVlanType;
    }

private:
    vlan_info_t vlanInfo_;
};

/** The time to live. */
class MatchTTL : public Match {
public:
    static constexpr filtersMatch_t KIND = MATCH_TTL;

    MatchTTL() : MatchTTL(0) {}
    explicit MatchTTL(unsigned char ttl) : Match(KIND), ttl_(ttl) {}

    unsigned char getTTL() const { return ttl_; }

    FILTERS_COMMON_DECLARE_MATCH_WITH_VALUES(MatchTTL)
    bool operator==(const MatchTTL& other) const { return ttl_ == other.ttl_; }

private:
    unsigned char ttl_;
};

/** The virtual routing and forwarding instance. */
class MatchVrfId : public Match {
public:
    static constexpr filtersMatch_t KIND = MATCH_VRF_ID;

    MatchVrfId() : MatchVrfId(0) {}
    explicit MatchVrfId(unsigned short vrfId) : Match(KIND), vrfId_(vrfId) {}

    unsigned short getVrfId() const { return vrfId_; }
    void setVrfId(unsigned short vrfId) { vrfId_ = vrfId; }

    FILTERS_COMMON_DECLARE_MATCH_WITH_VALUES(MatchVrfId)
    virtual bool operator==(const MatchVrfId& other) const { return vrfId_ == other.vrfId_; }

private:
    unsigned short vrfId_;
};

/** Whether the packet is to be dropped. */
class MatchDrop : public Match {
public:
    static constexpr filtersMatch_t KIND = MATCH_DROP;

    MatchDrop() : MatchDrop(false) {}
    explicit MatchDrop(bool drop) : Match(KIND), drop_(drop) {}

    bool getDropFlag() const { return drop_; }

    FILTERS_COMMON_DECLARE_MATCH_WITH_VALUES(MatchDrop)
    virtual bool operator==(const MatchDrop& other) const { return drop_ == other.drop_; }

private:
    bool drop_;
};

/** A packet from the CPU port. */
class MatchCpuPort : public Match {
public:
    static constexpr filtersMatch_t KIND = MATCH_CPU_PORT;

    MatchCpuPort() : Match(KIND) {}

    FILTERS_COMMON_DECLARE_MATCH(MatchCpuPort)
    virtual bool operator==(const MatchCpuPort&) const { return true; }
};

/** The forwarding type. */
class MatchForwardingType : public Match {
public:
    static constexpr filtersMatch_t KIND = MATCH_FORWARDING_TYPE;

    MatchForwardingType() : MatchForwardingType(en_ForwardingType{}) {}
    explicit MatchForwardingType(en_ForwardingType type) : Match(KIND), forwardingType_(type) {}

    en_ForwardingType getForwardingType() const { return forwardingType_; }

    FILTERS_COMMON_DECLARE_MATCH_WITH_VALUES(MatchForwardingType)
    virtual bool operator==(const MatchForwardingType& other) const
    {
        return forwardingType_ == other.forwardingType_;
    }

private:
    en_ForwardingType forwardingType_;
};

/** A packet for the CPU. */
class MatchDestinationCpu : public Match {
public:
    static constexpr filtersMatch_t KIND = MATCH_DESTINATION_CPU;

    MatchDestinationCpu() : Match(KIND) {}

    FILTERS_COMMON_DECLARE_MATCH(MatchDestinationCpu)
    bool operator==(const MatchDestinationCpu&) const { return true; }
};

/**
 * One row per kind of match, in code order from 0: whether its class has values of its own, those
 * of a family, or none; the kind; the class; and the class that holds the values. Code for every
 * kind or class is generated by expanding these rows.
 *
 * MatchDSCP shares the kind of MatchToS and has no row. Where it counts as a class of its own, it
 * is listed separately.
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

/** Expands X(kind, class, class that holds the values) for each row. */
#define FILTERS_COMMON_EACH_MATCH_KIND(X) FILTERS_COMMON_MATCH_KINDS(X, X, X)

} // namespace FiltersCommon

#pragma GCC visibility pop

#endif // FILTER_COMMON_FILTER_MATCH_KINDS_H
