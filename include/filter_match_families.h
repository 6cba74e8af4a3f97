/**
 * The base of all match classes, and the value families that most of them derive from. Callers
 * include filter_matches.h.
 */
#ifndef FILTER_COMMON_FILTER_MATCH_FAMILIES_H
#define FILTER_COMMON_FILTER_MATCH_FAMILIES_H

#include "filter_class_support.h"
#include "filter_types.h"

#include <net/ethernet.h>
#include <netinet/in.h>

#include <list>
#include <set>
#include <type_traits>
#include <utility>

#pragma GCC visibility push(default)

namespace FiltersCommon {

class MatchPB;
struct FILTERS_COMMON_INTERNAL MatchRows; // describes the members of each class

/** A match criterion. A bare Match can be built with any code and holds nothing else. */
class Match {
public:
    explicit Match(filtersMatch_t type) : type_(type) {}
    Match(const Match&) = default;
    /** Does nothing: assignment never changes the kind. */
    Match& operator=(const Match&) noexcept { return *this; }
    virtual ~Match();

    /** Writes the kind's code and values; a bare Match writes the code only. */
    virtual void convertToMatchPB(MatchPB* pb) const;

    /**
     * Reads the kind's values from @p pb, whose type is neither read nor checked. Numbers are
     * truncated to the width of the member; an absent field reads as 0. A byte field that is too
     * short is padded with zeros, one that is too long is truncated. A bare Match reads nothing.
     */
    virtual void convertFromMatchPB(const MatchPB* pb);

    /**
     * True if both objects have the same kind and the same values, masks included. False for
     * unknown kinds, and for an object that is not of the class that holds its kind's values.
     */
    virtual bool operator==(const Match& other) const;

    filtersMatch_t getType() const { return type_; }

private:
    const filtersMatch_t type_;
};

/**
 * Compares matches of two different classes, with the same result in either order: as the base
 * class if one class derives from the other, otherwise by kind, with Match::operator==.
 */
template <class T, class U, EnableIfDifferent<Match, T, U> = 0>
bool operator==(const T& a, const U& b)
{
    using Class = ComparedAs<Match, T, U>;
    return static_cast<const Class&>(a) == static_cast<const Class&>(b);
}

/** What every match class declares. */
#define FILTERS_COMMON_DECLARE_MATCH(Class)                                                        \
    FILTERS_COMMON_DECLARE_COPYABLE(Class)                                                         \
    using Match::operator==;

/** What a match class declares if its members have a message format of their own. */
#define FILTERS_COMMON_DECLARE_MATCH_VALUES                                                        \
    friend struct MatchRows;                                                                       \
    void convertToMatchPB(MatchPB* pb) const override;                                             \
    void convertFromMatchPB(const MatchPB* pb) override;

#define FILTERS_COMMON_DECLARE_MATCH_WITH_VALUES(Class)                                            \
    FILTERS_COMMON_DECLARE_MATCH(Class)                                                            \
    FILTERS_COMMON_DECLARE_MATCH_VALUES

// --------------------------------------------------------------------------------- value families
//
// Each typed operator== below compares only the values: two objects of different kinds may be equal
// when compared as members of a family.

/** A list of ports or a list of excluded port types, never both. */
class MatchPorts : public Match {
public:
    MatchPorts(filtersMatch_t type, std::list<limid_t> ports)
        : Match(type), ports_(std::move(ports))
    {}
    MatchPorts(filtersMatch_t type, std::list<port_type_t> excludedPortTypes)
        : Match(type), excludedPortTypes_(std::move(excludedPortTypes))
    {}

    MatchPorts(const MatchPorts&) = default;
    MatchPorts(MatchPorts&&) noexcept = default;
    MatchPorts& operator=(const MatchPorts& other);
    MatchPorts& operator=(MatchPorts&& other) noexcept = default;
    ~MatchPorts() override;

    std::list<limid_t> getPorts() const { return ports_; }
    std::list<port_type_t> getExcludedPortTypes() const { return excludedPortTypes_; }
    /** The lists themselves, valid until the match is changed or destroyed. */
    const std::list<limid_t>& getPortsRef() const { return ports_; }
    const std::list<port_type_t>& getExcludedPortTypesRef() const { return excludedPortTypes_; }

    /**
     * Replaces the ports.
     * @return FILTERS_ERR_BAD_PARAM, changing nothing, if there are excluded port types
     */
    filtersErr_t setPorts(const std::list<limid_t>& ports);

    /** Reading from a message appends to the lists the match already holds. */
    FILTERS_COMMON_DECLARE_MATCH_VALUES

    using Match::operator==;
    /** Compares the ports and port types in order. */
    bool operator==(const MatchPorts& other) const;

private:
    std::list<limid_t> ports_;
    std::list<port_type_t> excludedPortTypes_;
};

/** One logical interface. */
class MatchLimId : public Match {
public:
    MatchLimId(filtersMatch_t type, limid_t limId) : Match(type), limId_(limId) {}

    limid_t getLimId() const { return limId_; }

    FILTERS_COMMON_DECLARE_MATCH_WITH_VALUES(MatchLimId)
    bool operator==(const MatchLimId& other) const;

protected:
    void setLimId(limid_t limId) { limId_ = limId; }

private:
    limid_t limId_;
};

/** A transport-layer port with a mask. */
class MatchL4Port : public Match {
public:
    /** The mask is 0xFFFF. */
    MatchL4Port(filtersMatch_t type, unsigned short port) : MatchL4Port(type, port, 0xFFFF) {}
    MatchL4Port(filtersMatch_t type, unsigned short port, unsigned short mask)
        : Match(type), port_(port), mask_(mask)
    {}

    l4port_t getPort() const { return port_; }
    l4port_t getMask() const { return mask_; }

    FILTERS_COMMON_DECLARE_MATCH_WITH_VALUES(MatchL4Port)
    bool operator==(const MatchL4Port& other) const
    {
        return port_ == other.port_ && mask_ == other.mask_;
    }

private:
    l4port_t port_;
    l4port_t mask_;
};

/** A set of VLAN identifiers. */
class MatchVlanId : public Match {
public:
    MatchVlanId(filtersMatch_t type, std::set<unsigned short> vlanIds)
        : Match(type), vlanIds_(std::move(vlanIds))
    {}

    MatchVlanId(const MatchVlanId&) = default;
    MatchVlanId(MatchVlanId&&) noexcept = default;
    MatchVlanId& operator=(const MatchVlanId& other);
    MatchVlanId& operator=(MatchVlanId&& other) noexcept = default;
    ~MatchVlanId() override;

    std::set<unsigned short> getVlanIds() const { return vlanIds_; }
    /** The set itself, valid until the match is changed or destroyed. */
    const std::set<unsigned short>& getVlanIdsRef() const { return vlanIds_; }

    /** Writing to a message clears its field first; reading from one replaces the set. */
    FILTERS_COMMON_DECLARE_MATCH_VALUES

    using Match::operator==;
    bool operator==(const MatchVlanId& other) const { return vlanIds_ == other.vlanIds_; }

private:
    std::set<unsigned short> vlanIds_;
};

/** A MAC address with a mask. */
class MatchMac : public Match {
public:
    /** The mask is ff:ff:ff:ff:ff:ff. */
    MatchMac(filtersMatch_t type, ether_addr mac);
    MatchMac(filtersMatch_t type, ether_addr mac, ether_addr mask)
        : Match(type), mac_(mac), mask_(mask)
    {}

    /** Pointers into the match, valid while it lives. */
    const ether_addr* getMac() const { return &mac_; }
    const ether_addr* getMask() const { return &mask_; }

    FILTERS_COMMON_DECLARE_MATCH_WITH_VALUES(MatchMac)
    bool operator==(const MatchMac& other) const;

private:
    ether_addr mac_;
    ether_addr mask_;
};

/** An IPv4 address with a mask, both in network byte order. */
class MatchIPv4 : public Match {
public:
    /** The mask is 255.255.255.255. */
    MatchIPv4(filtersMatch_t type, in_addr address);
    MatchIPv4(filtersMatch_t type, in_addr address, in_addr mask)
        : Match(type), address_(address), mask_(mask)
    {}

    /** Pointers into the match, valid while it lives. */
    const in_addr* getIPv4() const { return &address_; }
    const in_addr* getIPv4Mask() const { return &mask_; }

    FILTERS_COMMON_DECLARE_MATCH_WITH_VALUES(MatchIPv4)
    bool operator==(const MatchIPv4& other) const;

private:
    in_addr address_;
    in_addr mask_;
};

/** An IPv6 address with a mask. */
class MatchIPv6 : public Match {
public:
    /** The mask is all ones. */
    MatchIPv6(filtersMatch_t type, in6_addr address);
    MatchIPv6(filtersMatch_t type, in6_addr address, in6_addr mask)
        : Match(type), address_(address), mask_(mask)
    {}

    /** Pointers into the match, valid while it lives. */
    const in6_addr* getIPv6() const { return &address_; }
    const in6_addr* getIPv6Mask() const { return &mask_; }

    FILTERS_COMMON_DECLARE_MATCH_WITH_VALUES(MatchIPv6)
    bool operator==(const MatchIPv6& other) const;

private:
    in6_addr address_;
    in6_addr mask_;
};

/** The value families. */
#define FILTERS_COMMON_MATCH_FAMILIES(X)                                                           \
    X(MatchPorts) X(MatchLimId) X(MatchL4Port) X(MatchVlanId) X(MatchMac) X(MatchIPv4) X(MatchIPv6)

} // namespace FiltersCommon

#pragma GCC visibility pop

#endif // FILTER_COMMON_FILTER_MATCH_FAMILIES_H
