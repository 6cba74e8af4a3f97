#include "filter_matches.h"

#include "bytes.h"
#include "kinds.h"

namespace FiltersCommon {

namespace {

/** Equality looks at the class that holds the values, which for most kinds is a family. */
template <class T>
using MatchValuesOf = typename ValuesOf<T, MatchPorts, MatchLimId, MatchL4Port, MatchVlanId,
                                        MatchMac, MatchIPv4, MatchIPv6>::Class;

} // namespace

bool Match::operator==(const Match& other) const
{
    if (type_ != other.type_)
        return false;
    return MatchKinds::dispatch(type_, false, [&](auto kind) {
        using Class = ClassOf<decltype(kind)>;
        const auto* mine = as<MatchValuesOf<Class>, Class>(*this);
        const auto* theirs = as<MatchValuesOf<Class>, Class>(other);
        if (mine == nullptr || theirs == nullptr)
            return hasNoValues<Class>;
        return *mine == *theirs;
    });
}

// --------------------------------------------------------------------------------- value families

MatchPorts& MatchPorts::operator=(const MatchPorts& other) { return *this = MatchPorts(other); }

filtersErr_t MatchPorts::setPorts(const std::list<limid_t>& ports)
{
    if (!excludedPortTypes_.empty())
        return FILTERS_ERR_BAD_PARAM;
    std::list<limid_t> copy(ports);
    ports_.swap(copy);
    return FILTERS_OK;
}

bool MatchPorts::operator==(const MatchPorts& other) const
{
    return sameBytes(ports_, other.ports_) && excludedPortTypes_ == other.excludedPortTypes_;
}

bool MatchLimId::operator==(const MatchLimId& other) const
{
    return sameBytes(limId_, other.limId_);
}

MatchVlanId& MatchVlanId::operator=(const MatchVlanId& other) { return *this = MatchVlanId(other); }

MatchMac::MatchMac(filtersMatch_t type, ether_addr mac) : MatchMac(type, mac, allOnes<ether_addr>())
{}

bool MatchMac::operator==(const MatchMac& other) const
{
    return sameBytes(mac_, other.mac_) && sameBytes(mask_, other.mask_);
}

MatchIPv4::MatchIPv4(filtersMatch_t type, in_addr address)
    : MatchIPv4(type, address, allOnes<in_addr>())
{}

bool MatchIPv4::operator==(const MatchIPv4& other) const
{
    return sameBytes(address_, other.address_) && sameBytes(mask_, other.mask_);
}

MatchIPv6::MatchIPv6(filtersMatch_t type, in6_addr address)
    : MatchIPv6(type, address, allOnes<in6_addr>())
{}

bool MatchIPv6::operator==(const MatchIPv6& other) const
{
    return sameBytes(address_, other.address_) && sameBytes(mask_, other.mask_);
}

} // namespace FiltersCommon
