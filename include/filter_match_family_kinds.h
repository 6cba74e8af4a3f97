/**
 * The match kinds whose values are those of a family, grouped by family. Callers include
 * filter_matches.h.
 *
 * Constructors without a mask set all bits of the mask; default constructors set numbers and
 * addresses to 0, and leave lists and sets empty.
 */
#ifndef FILTER_COMMON_FILTER_MATCH_FAMILY_KINDS_H
#define FILTER_COMMON_FILTER_MATCH_FAMILY_KINDS_H

#include "filter_match_families.h"

#include <initializer_list>
#include <list>
#include <set>
#include <utility>

#pragma GCC visibility push(default)

namespace FiltersCommon {

/** The ports a packet came in on, or the types of port it did not come in on. */
class MatchIngressPorts : public MatchPorts {
public:
    static constexpr filtersMatch_t KIND = MATCH_INGRESS_PORTS;

    MatchIngressPorts() : MatchIngressPorts(std::list<limid_t>()) {}
    explicit MatchIngressPorts(std::list<limid_t> ports) : MatchPorts(KIND, std::move(ports)) {}
    explicit MatchIngressPorts(std::list<port_type_t> types) : MatchPorts(KIND, std::move(types)) {}

    FILTERS_COMMON_DECLARE_MATCH(MatchIngressPorts)
    bool operator==(const MatchIngressPorts& other) const { return MatchPorts::operator==(other); }
};

/** The ports a packet leaves through. Neither reads nor writes excluded port types. */
class MatchEgressPorts : public MatchPorts {
public:
    static constexpr filtersMatch_t KIND = MATCH_EGRESS_PORTS;

    MatchEgressPorts() : MatchEgressPorts(std::list<limid_t>()) {}
    explicit MatchEgressPorts(std::list<limid_t> ports) : MatchPorts(KIND, std::move(ports)) {}
    explicit MatchEgressPorts(std::initializer_list<NoValues>) : MatchEgressPorts() {}

    FILTERS_COMMON_DECLARE_MATCH_WITH_VALUES(MatchEgressPorts)
    bool operator==(const MatchEgressPorts& other) const { return MatchPorts::operator==(other); }
};

/** A virtual port. */
class MatchVirtualPort : public MatchLimId {
public:
    static constexpr filtersMatch_t KIND = MATCH_VIRTUAL_PORT;

    MatchVirtualPort() : MatchVirtualPort(limid_t{}) {}
    explicit MatchVirtualPort(limid_t port) : MatchLimId(KIND, port) {}
    explicit MatchVirtualPort(std::initializer_list<NoValues>) : MatchVirtualPort() {}

    FILTERS_COMMON_DECLARE_MATCH(MatchVirtualPort)
    bool operator==(const MatchVirtualPort& other) const { return MatchLimId::operator==(other); }
};

/** The port a packet came from. */
class MatchSrcPort : public MatchLimId {
public:
    static constexpr filtersMatch_t KIND = MATCH_SRC_PORT;

    MatchSrcPort() : MatchSrcPort(limid_t{}) {}
    explicit MatchSrcPort(limid_t port) : MatchLimId(KIND, port) {}
    explicit MatchSrcPort(std::initializer_list<NoValues>) : MatchSrcPort() {}

    void setSrcPort(limid_t port) { setLimId(port); }

    FILTERS_COMMON_DECLARE_MATCH(MatchSrcPort)
    bool operator==(const MatchSrcPort& other) const { return MatchLimId::operator==(other); }
};

/** The destination port of the transport layer. */
class MatchDstL4Port : public MatchL4Port {
public:
    static constexpr filtersMatch_t KIND = MATCH_DST_L4_PORT;

    MatchDstL4Port() : MatchDstL4Port(0) {}
    explicit MatchDstL4Port(unsigned short port) : MatchL4Port(KIND, port) {}
    MatchDstL4Port(unsigned short port, unsigned short mask) : MatchL4Port(KIND, port, mask) {}

    FILTERS_COMMON_DECLARE_MATCH(MatchDstL4Port)
    bool operator==(const MatchDstL4Port& other) const { return MatchL4Port::operator==(other); }
};

/** The source port of the transport layer. */
class MatchSrcL4Port : public MatchL4Port {
public:
    static constexpr filtersMatch_t KIND = MATCH_SRC_L4_PORT;

    MatchSrcL4Port() : MatchSrcL4Port(0) {}
    explicit MatchSrcL4Port(unsigned short port) : MatchL4Port(KIND, port) {}
    MatchSrcL4Port(unsigned short port, unsigned short mask) : MatchL4Port(KIND, port, mask) {}

    FILTERS_COMMON_DECLARE_MATCH(MatchSrcL4Port)
    bool operator==(const MatchSrcL4Port& other) const { return MatchL4Port::operator==(other); }
};

/** The VLAN identifiers that a packet carries on the wire. */
class MatchExternalVlanId : public MatchVlanId {
public:
    static constexpr filtersMatch_t KIND = MATCH_EXTERNAL_VLAN_ID;

    MatchExternalVlanId() : MatchExternalVlanId(std::set<unsigned short>()) {}
    explicit MatchExternalVlanId(std::set<unsigned short> ids) : MatchVlanId(KIND, std::move(ids))
    {}
    explicit MatchExternalVlanId(unsigned short id) : MatchVlanId(KIND, {id}) {}

    FILTERS_COMMON_DECLARE_MATCH(MatchExternalVlanId)
    bool operator==(const MatchExternalVlanId& other) const
    {
        return MatchVlanId::operator==(other);
    }
};

/** The VLAN identifiers inside the switch. */
class MatchInternalVlanId : public MatchVlanId {
public:
    static constexpr filtersMatch_t KIND = MATCH_INTERNAL_VLAN_ID;

    MatchInternalVlanId() : MatchInternalVlanId(std::set<unsigned short>()) {}
    explicit MatchInternalVlanId(std::set<unsigned short> ids) : MatchVlanId(KIND, std::move(ids))
    {}
    explicit MatchInternalVlanId(unsigned short id) : MatchVlanId(KIND, {id}) {}

    FILTERS_COMMON_DECLARE_MATCH(MatchInternalVlanId)
    bool operator==(const MatchInternalVlanId& other) const
    {
        return MatchVlanId::operator==(other);
    }
};

/** The destination MAC address. */
class MatchDstMac : public MatchMac {
public:
    static constexpr filtersMatch_t KIND = MATCH_DST_MAC;

    MatchDstMac() : MatchDstMac(ether_addr{}) {}
    explicit MatchDstMac(ether_addr mac) : MatchMac(KIND, mac) {}
    explicit MatchDstMac(std::initializer_list<NoValues>) : MatchDstMac() {}
    MatchDstMac(ether_addr mac, ether_addr mask) : MatchMac(KIND, mac, mask) {}

    FILTERS_COMMON_DECLARE_MATCH(MatchDstMac)
    bool operator==(const MatchDstMac& other) const { return MatchMac::operator==(other); }
};

/** The source MAC address. */
class MatchSrcMac : public MatchMac {
public:
    static constexpr filtersMatch_t KIND = MATCH_SRC_MAC;

    MatchSrcMac() : MatchSrcMac(ether_addr{}) {}
    explicit MatchSrcMac(ether_addr mac) : MatchMac(KIND, mac) {}
    explicit MatchSrcMac(std::initializer_list<NoValues>) : MatchSrcMac() {}
    MatchSrcMac(ether_addr mac, ether_addr mask) : MatchMac(KIND, mac, mask) {}

    FILTERS_COMMON_DECLARE_MATCH(MatchSrcMac)
    bool operator==(const MatchSrcMac& other) const { return MatchMac::operator==(other); }
};

/** The source IPv4 address. */
class MatchSrcIPv4 : public MatchIPv4 {
public:
    static constexpr filtersMatch_t KIND = MATCH_SRC_IPV4;

    MatchSrcIPv4() : MatchSrcIPv4(in_addr{}) {}
    explicit MatchSrcIPv4(in_addr address) : MatchIPv4(KIND, address) {}
    explicit MatchSrcIPv4(std::initializer_list<NoValues>) : MatchSrcIPv4() {}
    MatchSrcIPv4(in_addr address, in_addr mask) : MatchIPv4(KIND, address, mask) {}

    FILTERS_COMMON_DECLARE_MATCH(MatchSrcIPv4)
    bool operator==(const MatchSrcIPv4& other) const { return MatchIPv4::operator==(other); }
};

/** The destination IPv4 address. */
class MatchDstIPv4 : public MatchIPv4 {
public:
    static constexpr filtersMatch_t KIND = MATCH_DST_IPV4;

    MatchDstIPv4() : MatchDstIPv4(in_addr{}) {}
    explicit MatchDstIPv4(in_addr address) : MatchIPv4(KIND, address) {}
    explicit MatchDstIPv4(std::initializer_list<NoValues>) : MatchDstIPv4() {}
    MatchDstIPv4(in_addr address, in_addr mask) : MatchIPv4(KIND, address, mask) {}

    FILTERS_COMMON_DECLARE_MATCH(MatchDstIPv4)
    bool operator==(const MatchDstIPv4& other) const { return MatchIPv4::operator==(other); }
};

/** The source IPv6 address; deliberately without a mask of its own. */
class MatchSrcIPv6 : public MatchIPv6 {
public:
    static constexpr filtersMatch_t KIND = MATCH_SRC_IPV6;

    MatchSrcIPv6() : MatchSrcIPv6(in6_addr{}) {}
    explicit MatchSrcIPv6(in6_addr address) : MatchIPv6(KIND, address) {}
    explicit MatchSrcIPv6(std::initializer_list<NoValues>) : MatchSrcIPv6() {}

    FILTERS_COMMON_DECLARE_MATCH(MatchSrcIPv6)
    bool operator==(const MatchSrcIPv6& other) const { return MatchIPv6::operator==(other); }
};

/** The destination IPv6 address. */
class MatchDstIPv6 : public MatchIPv6 {
public:
    static constexpr filtersMatch_t KIND = MATCH_DST_IPV6;

    MatchDstIPv6() : MatchDstIPv6(in6_addr{}) {}
    explicit MatchDstIPv6(in6_addr address) : MatchIPv6(KIND, address) {}
    explicit MatchDstIPv6(std::initializer_list<NoValues>) : MatchDstIPv6() {}
    MatchDstIPv6(in6_addr address, in6_addr mask) : MatchIPv6(KIND, address, mask) {}

    FILTERS_COMMON_DECLARE_MATCH(MatchDstIPv6)
    bool operator==(const MatchDstIPv6& other) const { return MatchIPv6::operator==(other); }
};

} // namespace FiltersCommon

#pragma GCC visibility pop

#endif // FILTER_COMMON_FILTER_MATCH_FAMILY_KINDS_H
