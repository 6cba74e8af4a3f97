#include "samples.h"

#include <gtest/gtest.h>

#include <list>
#include <set>
#include <string>
#include <type_traits>
#include <utility>

namespace FiltersCommon {
namespace {

using test::ipv4;
using test::ipv6;
using test::limId;
using test::mac;
using test::positionIn;
using test::rawBytes;

using Ports = std::list<limid_t>;
using PortTypes = std::list<port_type_t>;
using VlanIds = std::set<unsigned short>;

const Ports PORTS = {limId(0, 1, 0, 2), limId(1, 0, 0, 7), limId(0, 1, 0, 2)};
const PortTypes PORT_TYPES = {PORT_TYPE_CPU, static_cast<port_type_t>(-1), PORT_TYPE_CPU};

// ------------------------------------------------------------------------ what a caller may build

static_assert(!std::is_abstract_v<Match> && std::has_virtual_destructor_v<Match>);
static_assert(!std::is_default_constructible_v<Match>);

static_assert(std::is_base_of_v<MatchToS, MatchDSCP>);
static_assert(!std::is_constructible_v<MatchSrcIPv6, in6_addr, in6_addr>);
static_assert(!std::is_constructible_v<MatchEgressPorts, PortTypes>);
static_assert(std::is_constructible_v<MatchIngressPorts, const PortTypes&>);
static_assert(!std::is_constructible_v<MatchVirtualPort, limid_t, limid_t>);
static_assert(!std::is_constructible_v<MatchPacketRes, int>);
static_assert(!std::is_constructible_v<MatchIngressStpState, en_Resolution>);

template <class Family, class... Leaves>
constexpr bool areOfFamily()
{
    return std::is_base_of_v<Match, Family> && (std::is_base_of_v<Family, Leaves> && ...);
}

static_assert(areOfFamily<MatchPorts, MatchIngressPorts, MatchEgressPorts>());
static_assert(areOfFamily<MatchLimId, MatchVirtualPort, MatchSrcPort>());
static_assert(areOfFamily<MatchL4Port, MatchDstL4Port, MatchSrcL4Port>());
static_assert(areOfFamily<MatchVlanId, MatchExternalVlanId, MatchInternalVlanId>());
static_assert(areOfFamily<MatchMac, MatchDstMac, MatchSrcMac>());
static_assert(areOfFamily<MatchIPv4, MatchSrcIPv4, MatchDstIPv4>());
static_assert(areOfFamily<MatchIPv6, MatchSrcIPv6, MatchDstIPv6>());

/** What a getter of a constant object returns. */
template <class T, class R>
R resultOf(R (T::*)() const);

static_assert(std::is_same_v<decltype(resultOf(&Match::getType)), filtersMatch_t>);
static_assert(std::is_same_v<decltype(resultOf(&MatchPorts::getPorts)), Ports>);
static_assert(std::is_same_v<decltype(resultOf(&MatchPorts::getExcludedPortTypes)), PortTypes>);
static_assert(std::is_same_v<decltype(resultOf(&MatchLimId::getLimId)), limid_t>);
static_assert(std::is_same_v<decltype(resultOf(&MatchL4Port::getPort)), l4port_t>);
static_assert(std::is_same_v<decltype(resultOf(&MatchL4Port::getMask)), l4port_t>);
static_assert(std::is_same_v<decltype(resultOf(&MatchVlanId::getVlanIds)), VlanIds>);
static_assert(std::is_same_v<decltype(resultOf(&MatchMac::getMac)), const ether_addr*>);
static_assert(std::is_same_v<decltype(resultOf(&MatchMac::getMask)), const ether_addr*>);
static_assert(std::is_same_v<decltype(resultOf(&MatchIPv4::getIPv4)), const in_addr*>);
static_assert(std::is_same_v<decltype(resultOf(&MatchIPv4::getIPv4Mask)), const in_addr*>);
static_assert(std::is_same_v<decltype(resultOf(&MatchIPv6::getIPv6)), const in6_addr*>);
static_assert(std::is_same_v<decltype(resultOf(&MatchIPv6::getIPv6Mask)), const in6_addr*>);
static_assert(std::is_same_v<decltype(resultOf(&MatchTPID::getTPID)), tpid_t>);
static_assert(std::is_same_v<decltype(resultOf(&MatchPcp::getPcp)), unsigned char>);
static_assert(std::is_same_v<decltype(resultOf(&MatchInternalPcp::getPcp)), unsigned char>);
static_assert(std::is_same_v<decltype(resultOf(&MatchIpProtocol::getIpProtocol)), unsigned char>);
static_assert(std::is_same_v<decltype(resultOf(&MatchMplsTerm::getMplsTerm)), bool>);
static_assert(std::is_same_v<decltype(resultOf(&MatchToS::getToS)), unsigned char>);
static_assert(std::is_same_v<decltype(resultOf(&MatchDSCP::getDSCP)), unsigned char>);
static_assert(std::is_same_v<decltype(resultOf(&MatchVlanInfo::getVlanInfo)), vlan_info_t>);
static_assert(std::is_same_v<decltype(resultOf(&MatchTTL::getTTL)), unsigned char>);
static_assert(std::is_same_v<decltype(resultOf(&MatchVrfId::getVrfId)), unsigned short>);
static_assert(std::is_same_v<decltype(resultOf(&MatchDrop::getDropFlag)), bool>);

// ------------------------------------------------------------------------------------ every class

template <class Row>
class EveryMatchClass : public testing::Test {};

TYPED_TEST_SUITE(EveryMatchClass, test::MatchClasses::Tests, );

TYPED_TEST(EveryMatchClass, CarriesItsCode)
{
    EXPECT_EQ(static_cast<int>(TypeParam::sample().getType()), TypeParam::CODE);
}

TYPED_TEST(EveryMatchClass, IsCopiedMemberByMember)
{
    for (const auto& original : TypeParam::variants()) {
        const typename TypeParam::Class copy(original);
        EXPECT_TRUE(copy == original);
        EXPECT_EQ(copy.getType(), original.getType());
    }
}

TYPED_TEST(EveryMatchClass, IsAssignedAndMoved)
{
    for (const auto& other : TypeParam::variants()) {
        auto match = TypeParam::sample();
        match = other;
        EXPECT_TRUE(match == other);
        const auto& itself = match;
        match = itself;
        EXPECT_TRUE(match == other);
        const typename TypeParam::Class moved(std::move(match));
        EXPECT_TRUE(moved == other);
    }
}

TEST(FilterMatches, AssignmentCopiesTheValuesAndNeverTheKind)
{
    Match bare(MATCH_TTL);
    bare = Match(MATCH_PCP);
    EXPECT_EQ(bare.getType(), MATCH_TTL);

    MatchDstMac destination(mac("02:00:00:00:00:01"));
    const MatchSrcMac source(mac("02:00:00:00:00:02"));
    static_cast<MatchMac&>(destination) = source;
    EXPECT_EQ(destination.getType(), MATCH_DST_MAC);
    EXPECT_TRUE(destination == MatchDstMac(mac("02:00:00:00:00:02")));
}

TEST(FilterMatches, BareMatchIsBuiltWithAnyCode)
{
    for (const std::uint32_t code : test::knownAndUnknownCodes(test::MATCH_KINDS)) {
        const Match match(static_cast<filtersMatch_t>(code));
        EXPECT_EQ(static_cast<std::uint32_t>(match.getType()), code);
    }
}

TEST(FilterMatches, FamiliesAreBuiltWithAnyCode)
{
    const auto code = test::UNKNOWN_MATCH;
    EXPECT_EQ(MatchPorts(code, PORTS).getType(), code);
    EXPECT_EQ(MatchPorts(code, PORT_TYPES).getType(), code);
    EXPECT_EQ(MatchLimId(code, limId(0, 0, 0, 0)).getType(), code);
    EXPECT_EQ(MatchL4Port(code, 1).getType(), code);
    EXPECT_EQ(MatchL4Port(code, 1, 2).getType(), code);
    EXPECT_EQ(MatchVlanId(code, {}).getType(), code);
    EXPECT_EQ(MatchMac(code, ether_addr()).getType(), code);
    EXPECT_EQ(MatchMac(code, ether_addr(), ether_addr()).getType(), code);
    EXPECT_EQ(MatchIPv4(code, in_addr()).getType(), code);
    EXPECT_EQ(MatchIPv4(code, in_addr(), in_addr()).getType(), code);
    EXPECT_EQ(MatchIPv6(code, in6_addr()).getType(), code);
    EXPECT_EQ(MatchIPv6(code, in6_addr(), in6_addr()).getType(), code);
}

// ------------------------------------------------------------------------------------------ ports

TEST(MatchPorts, KeepsPortsInOrderWithDuplicates)
{
    for (const Ports& ports : {PORTS, Ports()}) {
        EXPECT_EQ(rawBytes(MatchIngressPorts(ports).getPorts()), rawBytes(ports));
        EXPECT_EQ(rawBytes(MatchEgressPorts(ports).getPorts()), rawBytes(ports));
        EXPECT_EQ(rawBytes(MatchIngressPorts(ports).getPortsRef()), rawBytes(ports));
        EXPECT_TRUE(MatchIngressPorts(ports).getExcludedPortTypes().empty());
    }
}

TEST(MatchPorts, KeepsExcludedPortTypesInOrderWithDuplicates)
{
    const MatchIngressPorts match(PORT_TYPES);
    EXPECT_EQ(match.getExcludedPortTypes(), PORT_TYPES);
    EXPECT_EQ(match.getExcludedPortTypesRef(), PORT_TYPES);
    EXPECT_TRUE(match.getPorts().empty());
    EXPECT_EQ(MatchPorts(MATCH_INGRESS_PORTS, PORT_TYPES).getExcludedPortTypes(), PORT_TYPES);
}

TEST(MatchPorts, ExcludedListOfEgressPortsIsAlwaysEmpty)
{
    MatchEgressPorts match(PORTS);
    EXPECT_TRUE(match.getExcludedPortTypes().empty());
    EXPECT_EQ(match.setPorts({}), FILTERS_OK);
    EXPECT_TRUE(match.getExcludedPortTypes().empty());
}

TEST(MatchPorts, SetPortsReplacesThePorts)
{
    MatchEgressPorts match(PORTS);
    const Ports other = {limId(9, 9, 9, 9)};
    EXPECT_EQ(match.setPorts(other), FILTERS_OK);
    EXPECT_EQ(rawBytes(match.getPorts()), rawBytes(other));
}

TEST(MatchPorts, SetPortsIsRefusedBesideExcludedPortTypes)
{
    MatchIngressPorts match(PORT_TYPES);
    EXPECT_EQ(match.setPorts(PORTS), FILTERS_ERR_BAD_PARAM);
    EXPECT_TRUE(match.getPorts().empty());
    EXPECT_EQ(match.getExcludedPortTypes(), PORT_TYPES);
    EXPECT_EQ(match.setPorts({}), FILTERS_ERR_BAD_PARAM);
}

TEST(MatchPorts, SetPortsWithAnEmptyListEmptiesTheList)
{
    MatchIngressPorts match(PORTS);
    EXPECT_EQ(match.setPorts({}), FILTERS_OK);
    EXPECT_TRUE(match.getPorts().empty());
}

TEST(MatchPorts, SetPortsIsAcceptedBesideAnEmptyListOfPortTypes)
{
    MatchIngressPorts match{PortTypes()};
    EXPECT_EQ(match.setPorts(PORTS), FILTERS_OK);
    EXPECT_EQ(rawBytes(match.getPorts()), rawBytes(PORTS));
}

TEST(MatchPorts, SetPortsTakesTheMatchsOwnList)
{
    MatchIngressPorts match(PORTS);
    EXPECT_EQ(match.setPorts(match.getPortsRef()), FILTERS_OK);
    EXPECT_EQ(rawBytes(match.getPorts()), rawBytes(PORTS));
}

TEST(MatchPorts, CopiesOwnTheirLists)
{
    MatchIngressPorts original(PORTS);
    const MatchIngressPorts copy(original);
    original.setPorts({});
    EXPECT_EQ(rawBytes(copy.getPorts()), rawBytes(PORTS));
}

// ----------------------------------------------------------------------- the rest of the families

TEST(MatchLimId, KeepsTheFourBytes)
{
    const limid_t port = limId(0xFF, 0, 0x80, 1);
    EXPECT_EQ(rawBytes(MatchVirtualPort(port).getLimId()), rawBytes(port));
    EXPECT_EQ(rawBytes(MatchSrcPort(port).getLimId()), rawBytes(port));
}

TEST(MatchLimId, SetSrcPortReplacesThePort)
{
    MatchSrcPort match(limId(1, 2, 3, 4));
    match.setSrcPort(limId(5, 6, 7, 8));
    EXPECT_TRUE(match == MatchSrcPort(limId(5, 6, 7, 8)));
}

template <class T>
void expectL4Port(const T& match, int port, int mask)
{
    EXPECT_EQ(match.getPort(), port);
    EXPECT_EQ(match.getMask(), mask);
}

TEST(MatchL4Port, KeepsPortAndMask)
{
    expectL4Port(MatchDstL4Port(0x1234, 0x5678), 0x1234, 0x5678);
    expectL4Port(MatchSrcL4Port(0x1234, 0x5678), 0x1234, 0x5678);
    expectL4Port(MatchSrcL4Port(65535, 0), 65535, 0);
}

TEST(MatchL4Port, HasAllBitsOfTheMaskWithoutOne)
{
    expectL4Port(MatchDstL4Port(80), 80, 0xFFFF);
    expectL4Port(MatchSrcL4Port(80), 80, 0xFFFF);
    expectL4Port(MatchL4Port(MATCH_SRC_L4_PORT, 80), 80, 0xFFFF);
}

TEST(MatchVlanId, KeepsTheIdentifiersInAscendingOrderWithoutDuplicates)
{
    const VlanIds ids = {4095, 0, 100, 65535, 100};
    EXPECT_EQ(MatchExternalVlanId(ids).getVlanIds(), (VlanIds{0, 100, 4095, 65535}));
    EXPECT_EQ(MatchInternalVlanId(ids).getVlanIds(), ids);
    EXPECT_EQ(MatchInternalVlanId(ids).getVlanIdsRef(), ids);
    EXPECT_TRUE(MatchExternalVlanId(VlanIds()).getVlanIds().empty());
}

TEST(MatchVlanId, SingleIdentifierIsTheSetOfIt)
{
    EXPECT_EQ(MatchExternalVlanId(100).getVlanIds(), VlanIds{100});
    EXPECT_EQ(MatchInternalVlanId(100).getVlanIds(), VlanIds{100});
    EXPECT_TRUE(MatchExternalVlanId(100) == MatchExternalVlanId(VlanIds{100}));
    EXPECT_TRUE(MatchInternalVlanId(100) == MatchInternalVlanId(VlanIds{100}));
}

template <class T>
void expectMac(const T& match, const char* address, const char* mask)
{
    EXPECT_EQ(rawBytes(*match.getMac()), rawBytes(mac(address)));
    EXPECT_EQ(rawBytes(*match.getMask()), rawBytes(mac(mask)));
}

TEST(MatchMac, KeepsAddressAndMask)
{
    const ether_addr address = mac("02:10:20:30:40:50");
    const ether_addr mask = mac("ff:ff:ff:00:00:01");
    expectMac(MatchDstMac(address, mask), "02:10:20:30:40:50", "ff:ff:ff:00:00:01");
    expectMac(MatchSrcMac(address, mask), "02:10:20:30:40:50", "ff:ff:ff:00:00:01");
}

TEST(MatchMac, AddressAloneIsTheAddressUnderAllOnes)
{
    const ether_addr address = mac("02:10:20:30:40:50");
    expectMac(MatchDstMac(address), "02:10:20:30:40:50", "ff:ff:ff:ff:ff:ff");
    expectMac(MatchSrcMac(address), "02:10:20:30:40:50", "ff:ff:ff:ff:ff:ff");
    EXPECT_TRUE(MatchDstMac(address) == MatchDstMac(address, mac("ff:ff:ff:ff:ff:ff")));
}

TEST(MatchMac, GettersPointIntoTheMatch)
{
    const MatchDstMac match(mac("02:10:20:30:40:50"));
    EXPECT_EQ(match.getMac(), match.getMac());
    EXPECT_LT(match.getMac(), match.getMask());
    EXPECT_LT(static_cast<const void*>(&match), match.getMac());
    EXPECT_LT(static_cast<const void*>(match.getMask()), static_cast<const void*>(&match + 1));
}

template <class T>
void expectIPv4(const T& match, const char* address, const std::string& mask)
{
    EXPECT_EQ(rawBytes(*match.getIPv4()), rawBytes(ipv4(address)));
    EXPECT_EQ(rawBytes(*match.getIPv4Mask()), mask);
}

TEST(MatchIPv4, KeepsAddressAndMaskAndNormalisesNothing)
{
    const in_addr address = ipv4("192.0.2.1");
    const in_addr mask = ipv4("255.255.255.0");
    expectIPv4(MatchSrcIPv4(address, mask), "192.0.2.1", std::string("\xFF\xFF\xFF\0", 4));
    expectIPv4(MatchDstIPv4(address, mask), "192.0.2.1", std::string("\xFF\xFF\xFF\0", 4));
    EXPECT_FALSE(MatchSrcIPv4(address, mask) == MatchSrcIPv4(ipv4("192.0.2.0"), mask));
}

TEST(MatchIPv4, AddressAloneHasMaskBytesFfFfFfFf)
{
    const in_addr address = ipv4("192.0.2.1");
    expectIPv4(MatchSrcIPv4(address), "192.0.2.1", "\xFF\xFF\xFF\xFF");
    expectIPv4(MatchDstIPv4(address), "192.0.2.1", "\xFF\xFF\xFF\xFF");
    EXPECT_FALSE(MatchSrcIPv4(address) == MatchSrcIPv4(address, ipv4("255.255.255.0")));
}

template <class T>
void expectIPv6(const T& match, const char* address, const char* mask)
{
    EXPECT_EQ(rawBytes(*match.getIPv6()), rawBytes(ipv6(address)));
    EXPECT_EQ(rawBytes(*match.getIPv6Mask()), rawBytes(ipv6(mask)));
}

TEST(MatchIPv6, DestinationHasAnyMask)
{
    const MatchDstIPv6 match(ipv6("2001:db8::1"), ipv6("ffff::1"));
    expectIPv6(match, "2001:db8::1", "ffff::1");
}

TEST(MatchIPv6, AddressAloneAlwaysHasTheMaskOfAllOnes)
{
    constexpr char ALL_ONES[] = "ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff";
    expectIPv6(MatchSrcIPv6(ipv6("2001:db8::1")), "2001:db8::1", ALL_ONES);
    expectIPv6(MatchDstIPv6(ipv6("2001:db8::1")), "2001:db8::1", ALL_ONES);
}

// --------------------------------------------------------------------------- kinds with one value

template <class T, class Value>
void expectKeepsEveryByte(Value (T::*get)() const)
{
    for (int value = 0; value < 256; ++value) {
        const T match(static_cast<unsigned char>(value));
        EXPECT_EQ((match.*get)(), value);
    }
}

TEST(OneValueMatches, KeepEveryByteUnchanged)
{
    expectKeepsEveryByte(&MatchIpProtocol::getIpProtocol);
    expectKeepsEveryByte(&MatchToS::getToS);
    expectKeepsEveryByte(&MatchTTL::getTTL);
}

TEST(OneValueMatches, PcpKeepsTheThreeLowBits)
{
    for (int pcp = 0; pcp < 256; ++pcp) {
        EXPECT_EQ(MatchPcp(static_cast<unsigned char>(pcp)).getPcp(), pcp & 7);
        EXPECT_EQ(MatchInternalPcp(static_cast<unsigned char>(pcp)).getPcp(), pcp & 7);
    }
    EXPECT_EQ(MatchPcp(9).getPcp(), 1);
    EXPECT_TRUE(MatchPcp(7) == MatchPcp(15));
    EXPECT_TRUE(MatchInternalPcp(7) == MatchInternalPcp(15));
}

TEST(OneValueMatches, KeepSixteenBits)
{
    constexpr unsigned short VALUES[] = {0, 0x8100, 0xFFFF};
    for (const unsigned short value : VALUES) {
        EXPECT_EQ(MatchTPID(value).getTPID(), value);
        EXPECT_EQ(MatchVrfId(value).getVrfId(), value);
    }
}

TEST(OneValueMatches, SetVrfIdReplacesTheIdentifier)
{
    MatchVrfId match(1);
    match.setVrfId(0xABCD);
    EXPECT_EQ(match.getVrfId(), 0xABCD);
}

TEST(OneValueMatches, KeepValuesOutsideTheirEnumerations)
{
    for (const std::int32_t value : {0, 1, 0x12345678, -1}) {
        const auto as = [&](auto zero) { return static_cast<decltype(zero)>(value); };
        EXPECT_EQ(MatchL2SrcEntryType(as(L2_SRC_ENTRY_TYPE_0)).getL2SrcEntryType(), value);
        EXPECT_EQ(MatchPacketRes(as(RESOLUTION_0)).getPktRes(), value);
        EXPECT_EQ(MatchIngressStpState(as(STP_STATE_0)).getIngressStpState(), value);
        EXPECT_EQ(MatchForwardingType(as(FORWARDING_TYPE_0)).getForwardingType(), value);
    }
}

TEST(OneValueMatches, KeepFlags)
{
    for (const bool flag : {false, true}) {
        EXPECT_EQ(MatchMplsTerm(flag).getMplsTerm(), flag);
        EXPECT_EQ(MatchDrop(flag).getDropFlag(), flag);
    }
}

TEST(OneValueMatches, VlanInfoIsCopied)
{
    vlan_info_t info = {0xFFFFFFFE};
    const MatchVlanInfo match(info);
    info.svcVlanType = 0;
    EXPECT_EQ(match.getVlanInfo().svcVlanType, 0xFFFFFFFE);
}

// ------------------------------------------------------------------------------------------- DSCP

TEST(MatchDSCP, ShiftsItsSixLowBitsIntoTheUpperBitsOfTheToS)
{
    for (int dscp = 0; dscp < 256; ++dscp) {
        const MatchDSCP match(static_cast<unsigned char>(dscp));
        EXPECT_EQ(match.getToS(), dscp * 4 % 256);
        EXPECT_EQ(match.getDSCP(), dscp % 64);
    }
}

TEST(MatchDSCP, HasTheValuesOfKnownExamples)
{
    EXPECT_EQ(MatchDSCP(10).getToS(), 40);
    EXPECT_EQ(MatchDSCP(10).getDSCP(), 10);
    EXPECT_EQ(MatchDSCP(65).getDSCP(), 1);
    EXPECT_EQ(MatchDSCP(63).getToS(), 252);
    EXPECT_EQ(MatchDSCP(63).getDSCP(), 63);
    EXPECT_EQ(MatchDSCP(64).getToS(), 0);
}

TEST(MatchDSCP, IsPrintedAsAToSThroughItsBase)
{
    const MatchDSCP match(10);
    EXPECT_EQ(test::dump<Match>(match), test::dump(MatchToS(40)));
    EXPECT_NE(test::dump<MatchDSCP>(match), test::dump(MatchToS(40)));
}

// ----------------------------------------------------------------------------------------- layout

TEST(MatchLayout, MembersStandInTheirOrder)
{
    const MatchPorts ports(MATCH_INGRESS_PORTS, PORTS);
    EXPECT_LT(static_cast<const void*>(&ports.getPortsRef()), &ports.getExcludedPortTypesRef());
    const MatchL4Port l4Port(MATCH_DST_L4_PORT, 0xA5B6, 0xC7D8);
    EXPECT_LT(positionIn(l4Port, l4port_t{0xA5B6}), positionIn(l4Port, l4port_t{0xC7D8}));
    const MatchIPv4 address4(MATCH_SRC_IPV4, in_addr(), in_addr());
    EXPECT_LT(address4.getIPv4(), address4.getIPv4Mask());
    const MatchIPv6 address6(MATCH_DST_IPV6, in6_addr(), in6_addr());
    EXPECT_LT(address6.getIPv6(), address6.getIPv6Mask());
}

} // namespace
} // namespace FiltersCommon
