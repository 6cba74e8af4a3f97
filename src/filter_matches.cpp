#include "filter_matches.h"

#include "kinds.h"
#include "wire/bytes.h"

namespace FiltersCommon {

bool Match::operator==(const Match& other) const
{
    if (type_ != other.type_)
        return false;
    return MatchKinds::dispatch(
        type_, false, [&](auto kind) { return areEqualAs<ClassOf<decltype(kind)>>(*this, other); });
}

// ------------------------------------------------------------------------------------ destructors

Match::~Match() = default;

#define FILTERS_COMMON_DEFINE_DESTRUCTOR(Class) Class::~Class() = default;
#define FILTERS_COMMON_DEFINE_KIND_DESTRUCTOR(kind, Class, Values)                                 \
    FILTERS_COMMON_DEFINE_DESTRUCTOR(Class)
FILTERS_COMMON_MATCH_FAMILIES(FILTERS_COMMON_DEFINE_DESTRUCTOR)
FILTERS_COMMON_EACH_MATCH_KIND(FILTERS_COMMON_DEFINE_KIND_DESTRUCTOR)
FILTERS_COMMON_DEFINE_DESTRUCTOR(MatchDSCP)
#undef FILTERS_COMMON_DEFINE_KIND_DESTRUCTOR
#undef FILTERS_COMMON_DEFINE_DESTRUCTOR

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
