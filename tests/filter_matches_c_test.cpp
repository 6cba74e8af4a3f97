#include "c_constructors.h"
#include "c_support.h"
#include "kind_codes.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <limits>
#include <set>
#include <typeinfo>

namespace FiltersCommon {
namespace {

using test::ANY_LINE;
using test::BrokenContract;
using test::Handle;
using test::ipv4;
using test::ipv6;
using test::limId;
using test::mac;
using test::made;
using test::same;

constexpr limid_t PORTS[] = {limId(0, 3, 0, 7), limId(1, 0, 0, 2), limId(0, 3, 0, 7),
                             limId(255, 254, 253, 252)};
constexpr std::uint32_t PORTS_COUNT = 4;

const ether_addr MAC = mac("02:10:20:30:40:50");
const ether_addr MAC_MASK = mac("ff:ff:ff:00:00:0f");
const in_addr IPV4 = ipv4("192.0.2.129");
const in_addr IPV4_MASK = ipv4("255.255.240.0");
const in6_addr IPV6 = ipv6("2001:db8:1:2:3:4:5:6");
const in6_addr IPV6_MASK = ipv6("ffff:ffff:fff0::1");

// ----------------------------------------------------------------------------------- constructors

class MatchConstructor : public testing::TestWithParam<test::Constructor> {};

TEST_P(MatchConstructor, MakesANewObjectOfItsClassAndKind)
{
    const Handle<Match> match(static_cast<Match*>(GetParam().create()));
    const Handle<Match> another(static_cast<Match*>(GetParam().create()));
    const Match& object = *match;
    EXPECT_STREQ(typeid(object).name(), GetParam().type.name());
    EXPECT_EQ(matchGetType(match.get()), GetParam().kind);
    EXPECT_NE(match.get(), another.get());
    EXPECT_TRUE(*match == *another);
}

INSTANTIATE_TEST_SUITE_P(All, MatchConstructor, testing::ValuesIn(test::MATCH_CONSTRUCTORS),
                         test::nameOf<test::Constructor>);

template <class T>
void expectPorts(void* (*create)(const limid_t*, std::uint32_t))
{
    const auto all = made<T>(create(PORTS, PORTS_COUNT));
    EXPECT_TRUE(same(all->getPorts(), PORTS, PORTS_COUNT));
    EXPECT_TRUE(all->getExcludedPortTypes().empty());
    const auto first = made<T>(create(PORTS, 1));
    EXPECT_TRUE(same(first->getPorts(), PORTS, 1));
}

TEST(MatchesC, PortsAreTakenInTheOrderOfTheArrayAsFarAsTheCount)
{
    expectPorts<MatchIngressPorts>(newMatchIngressPorts);
    expectPorts<MatchEgressPorts>(newMatchEgressPorts);
}

TEST(MatchesC, PortsAreCopied)
{
    limid_t ports[] = {PORTS[0], PORTS[1]};
    const auto match = made<MatchIngressPorts>(newMatchIngressPorts(ports, 2));
    ports[0] = ports[1] = PORTS[3];
    EXPECT_TRUE(same(match->getPorts(), PORTS, 2));
}

TEST(MatchesC, NoPortsMakeAMatchWithAnEmptyList)
{
    EXPECT_TRUE(made<MatchIngressPorts>(newMatchIngressPorts(PORTS, 0))->getPorts().empty());
    EXPECT_TRUE(made<MatchIngressPorts>(newMatchIngressPorts(nullptr, 0))->getPorts().empty());
    EXPECT_TRUE(made<MatchEgressPorts>(newMatchEgressPorts(PORTS, 0))->getPorts().empty());
    EXPECT_TRUE(made<MatchEgressPorts>(newMatchEgressPorts(nullptr, 0))->getPorts().empty());
}

TEST(MatchesC, VlanMatchesHoldTheOneIdentifier)
{
    for (const auto id : std::initializer_list<unsigned short>{0, 1, 4094, 65535}) {
        const std::set<unsigned short> alone = {id};
        EXPECT_EQ(made<MatchExternalVlanId>(newMatchExternalVlanId(id))->getVlanIds(), alone);
        EXPECT_EQ(made<MatchInternalVlanId>(newMatchInternalVlanId(id))->getVlanIds(), alone);
    }
}

template <class T>
void expectL4Port(void* (*create)(l4port_t), void* (*createMasked)(l4port_t, l4port_t))
{
    const auto plain = made<T>(create(0x1234));
    EXPECT_EQ(plain->getPort(), 0x1234);
    EXPECT_EQ(plain->getMask(), 0xFFFF);
    const auto masked = made<T>(createMasked(0x1234, 0x0FF0));
    EXPECT_EQ(masked->getPort(), 0x1234);
    EXPECT_EQ(masked->getMask(), 0x0FF0);
}

TEST(MatchesC, L4PortsHaveAllBitsOfTheMaskUnlessOneIsGiven)
{
    expectL4Port<MatchDstL4Port>(newMatchDstL4Port, newMatchDstL4PortMask);
    expectL4Port<MatchSrcL4Port>(newMatchSrcL4Port, newMatchSrcL4PortMask);
}

template <class T>
void expectMac(void* (*create)(ether_addr), void* (*createMasked)(ether_addr, ether_addr))
{
    const auto plain = made<T>(create(MAC));
    EXPECT_TRUE(same(*plain->getMac(), MAC));
    EXPECT_TRUE(same(*plain->getMask(), mac("ff:ff:ff:ff:ff:ff")));
    const auto masked = made<T>(createMasked(MAC, MAC_MASK));
    EXPECT_TRUE(same(*masked->getMac(), MAC));
    EXPECT_TRUE(same(*masked->getMask(), MAC_MASK));
}

TEST(MatchesC, MacAddressesHaveAllBitsOfTheMaskUnlessOneIsGiven)
{
    expectMac<MatchDstMac>(newMatchDstMac, newMatchDstMacMask);
    expectMac<MatchSrcMac>(newMatchSrcMac, newMatchSrcMacMask);
}

template <class T>
void expectIPv4(void* (*create)(in_addr), void* (*createMasked)(in_addr, in_addr))
{
    const auto plain = made<T>(create(IPV4));
    EXPECT_TRUE(same(*plain->getIPv4(), IPV4));
    EXPECT_TRUE(same(*plain->getIPv4Mask(), ipv4("255.255.255.255")));
    const auto masked = made<T>(createMasked(IPV4, IPV4_MASK));
    EXPECT_TRUE(same(*masked->getIPv4(), IPV4));
    EXPECT_TRUE(same(*masked->getIPv4Mask(), IPV4_MASK));
}

TEST(MatchesC, IPv4AddressesHaveAllBitsOfTheMaskUnlessOneIsGiven)
{
    expectIPv4<MatchSrcIPv4>(newMatchSrcIPv4, newMatchSrcIPv4Mask);
    expectIPv4<MatchDstIPv4>(newMatchDstIPv4, newMatchDstIPv4Mask);
}

TEST(MatchesC, IPv6AddressesHaveAllBitsOfTheMaskUnlessOneIsGiven)
{
    const in6_addr allBits = ipv6("ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff");
    const auto source = made<MatchSrcIPv6>(newMatchSrcIPv6(IPV6));
    EXPECT_TRUE(same(*source->getIPv6(), IPV6));
    EXPECT_TRUE(same(*source->getIPv6Mask(), allBits));
    const auto plain = made<MatchDstIPv6>(newMatchDstIPv6(IPV6));
    EXPECT_TRUE(same(*plain->getIPv6(), IPV6));
    EXPECT_TRUE(same(*plain->getIPv6Mask(), allBits));
    const auto masked = made<MatchDstIPv6>(newMatchDstIPv6Mask(IPV6, IPV6_MASK));
    EXPECT_TRUE(same(*masked->getIPv6(), IPV6));
    EXPECT_TRUE(same(*masked->getIPv6Mask(), IPV6_MASK));
}

TEST(MatchesC, LogicalInterfacesAreKept)
{
    EXPECT_TRUE(same(made<MatchVirtualPort>(newMatchVirtualPort(PORTS[3]))->getLimId(), PORTS[3]));
    EXPECT_TRUE(same(made<MatchSrcPort>(newMatchSrcPort(PORTS[3]))->getLimId(), PORTS[3]));
}

/** The smallest and the greatest number of a type. */
template <class T>
constexpr std::initializer_list<T> EXTREMES = {std::numeric_limits<T>::min(),
                                               std::numeric_limits<T>::max()};

TEST(MatchesC, NumbersAreNeitherCheckedNorCut)
{
    for (const auto number : EXTREMES<std::uint8_t>) {
        EXPECT_EQ(made<MatchIpProtocol>(newMatchIpProtocol(number))->getIpProtocol(), number);
        EXPECT_EQ(made<MatchTTL>(newMatchTTL(number))->getTTL(), number);
    }
    for (const auto number : EXTREMES<std::uint16_t>) {
        EXPECT_EQ(made<MatchTPID>(newMatchTPID(number))->getTPID(), number);
        EXPECT_EQ(made<MatchVrfId>(newMatchVrfId(number))->getVrfId(), number);
    }
    for (const auto number : EXTREMES<std::uint32_t>)
        EXPECT_EQ(made<MatchVlanInfo>(newMatchVlanInfo({number}))->getVlanInfo().svcVlanType,
                  number);
    for (const auto number : EXTREMES<std::int32_t>) {
        const auto type = static_cast<l2SrcEntryType_t>(number);
        EXPECT_EQ(made<MatchL2SrcEntryType>(newMatchL2SrcEntryType(type))->getL2SrcEntryType(),
                  type);
        const auto resolution = static_cast<en_Resolution>(number);
        EXPECT_EQ(made<MatchPacketRes>(newMatchPacketRes(resolution))->getPktRes(), resolution);
        const auto state = static_cast<en_StpState>(number);
        EXPECT_EQ(made<MatchIngressStpState>(newMatchIngressStpState(state))->getIngressStpState(),
                  state);
    }
}

TEST(MatchesC, FlagsAreKept)
{
    for (const bool flag : {false, true}) {
        EXPECT_EQ(made<MatchMplsTerm>(newMatchMplsTerm(flag))->getMplsTerm(), flag);
        EXPECT_EQ(made<MatchDrop>(newMatchDrop(flag))->getDropFlag(), flag);
    }
}

TEST(MatchesC, PcpKeepsItsThreeLowBits)
{
    for (int pcp = 0; pcp < 256; ++pcp) {
        const auto value = static_cast<unsigned char>(pcp);
        EXPECT_EQ(made<MatchPcp>(newMatchPcp(value))->getPcp(), pcp % 8);
        EXPECT_EQ(made<MatchInternalPcp>(newMatchInternalPcp(value))->getPcp(), pcp % 8);
    }
}

TEST(MatchesC, DscpKeepsItsSixLowBits)
{
    for (int dscp = 0; dscp < 256; ++dscp) {
        const auto match = made<MatchDSCP>(newMatchDSCP(static_cast<unsigned char>(dscp)));
        EXPECT_EQ(match->getToS(), dscp % 64 * 4);
        EXPECT_EQ(match->getDSCP(), dscp % 64);
    }
}

// -------------------------------------------------------------------------------------- any match

TEST(MatchesC, TheTypeIsThatOfTheObjectWhateverItIs)
{
    for (const std::uint32_t code : test::knownAndUnknownCodes(test::MATCH_KINDS)) {
        Match bare(static_cast<filtersMatch_t>(code));
        EXPECT_EQ(static_cast<unsigned>(matchGetType(&bare)), code);
    }
}

TEST(MatchesC, DeletionRunsTheDestructorOfTheClass)
{
    int destroyed = 0;
    deleteMatch(static_cast<Match*>(new test::Witness<MatchPcp>(destroyed)));
    EXPECT_EQ(destroyed, 1);
}

// ---------------------------------------------------------------------------------------- getters

TEST(MatchesC, AddressGettersPointIntoTheMatch)
{
    MatchDstMac dstMac(mac("2:0:0:0:0:1"), mac("ff:0:0:0:0:0"));
    EXPECT_EQ(matchMacGetMac(&dstMac), dstMac.getMac());
    EXPECT_EQ(matchMacGetMask(&dstMac), dstMac.getMask());
    MatchSrcMac srcMac(mac("2:0:0:0:0:2"));
    EXPECT_EQ(matchMacGetMac(&srcMac), srcMac.getMac());
    EXPECT_EQ(matchMacGetMask(&srcMac), srcMac.getMask());

    MatchDstIPv4 dstIPv4(ipv4("192.0.2.1"), ipv4("255.0.0.0"));
    EXPECT_EQ(matchIPv4GetIPv4(&dstIPv4), dstIPv4.getIPv4());
    EXPECT_EQ(matchIPv4GetIPv4Mask(&dstIPv4), dstIPv4.getIPv4Mask());
    MatchSrcIPv4 srcIPv4(ipv4("192.0.2.2"));
    EXPECT_EQ(matchIPv4GetIPv4(&srcIPv4), srcIPv4.getIPv4());
    EXPECT_EQ(matchIPv4GetIPv4Mask(&srcIPv4), srcIPv4.getIPv4Mask());

    MatchDstIPv6 dstIPv6(ipv6("2001:db8::1"), ipv6("ffff::"));
    EXPECT_EQ(matchIPv6GetIPv6(&dstIPv6), dstIPv6.getIPv6());
    EXPECT_EQ(matchIPv6GetIPv6Mask(&dstIPv6), dstIPv6.getIPv6Mask());
    MatchSrcIPv6 srcIPv6(ipv6("2001:db8::2"));
    EXPECT_EQ(matchIPv6GetIPv6(&srcIPv6), srcIPv6.getIPv6());
    EXPECT_EQ(matchIPv6GetIPv6Mask(&srcIPv6), srcIPv6.getIPv6Mask());
}

TEST(MatchesC, AddressGettersGiveTheMaskOfAMaskedMatch)
{
    const auto masked =
        made<MatchDstIPv6>(newMatchDstIPv6Mask(ipv6("2001:db8::1"), ipv6("ffff:ff00::")));
    EXPECT_TRUE(same(*matchIPv6GetIPv6(masked.get()), ipv6("2001:db8::1")));
    EXPECT_TRUE(same(*matchIPv6GetIPv6Mask(masked.get()), ipv6("ffff:ff00::")));
}

TEST(MatchesC, GettersOfFamiliesServeEveryKindOfTheFamily)
{
    MatchVirtualPort virtualPort(PORTS[0]);
    EXPECT_TRUE(same(matchGetLimId(&virtualPort), PORTS[0]));
    MatchSrcPort srcPort(PORTS[3]);
    EXPECT_TRUE(same(matchGetLimId(&srcPort), PORTS[3]));

    MatchDstL4Port dstPort(0x1234, 0x0FF0);
    EXPECT_EQ(matchGetL4Port(&dstPort), 0x1234);
    EXPECT_EQ(matchGetL4PortMask(&dstPort), 0x0FF0);
    MatchSrcL4Port srcL4Port(0x4321);
    EXPECT_EQ(matchGetL4Port(&srcL4Port), 0x4321);
    EXPECT_EQ(matchGetL4PortMask(&srcL4Port), 0xFFFF);
}

TEST(MatchesC, GettersOfSingleKindsGiveTheValue)
{
    MatchTPID tpid(0x88A8);
    EXPECT_EQ(matchGetTPID(&tpid), 0x88A8);
    MatchL2SrcEntryType entryType(static_cast<l2SrcEntryType_t>(0x12345678));
    EXPECT_EQ(matchGetL2SrcEntryType(&entryType), 0x12345678);
    MatchPcp pcp(6);
    EXPECT_EQ(matchPcpGet(&pcp), 6);
    MatchInternalPcp internalPcp(5);
    EXPECT_EQ(matchInternalPcpGet(&internalPcp), 5);
    MatchIpProtocol protocol(253);
    EXPECT_EQ(matchIpProtocolGetIpProt(&protocol), 253);
    MatchPacketRes resolution(static_cast<en_Resolution>(-3));
    EXPECT_EQ(matchPacketResGet(&resolution), -3);
    MatchTTL ttl(254);
    EXPECT_EQ(matchTTLGet(&ttl), 254);
    MatchIngressStpState state(static_cast<en_StpState>(0x7FFFFFFF));
    EXPECT_EQ(matchIngressStpStateGet(&state), 0x7FFFFFFF);
    MatchVlanInfo info({0x89ABCDEF});
    EXPECT_EQ(matchVlanInfoGet(&info).svcVlanType, 0x89ABCDEF);
    MatchVrfId vrfId(65534);
    EXPECT_EQ(matchVrfIdGet(&vrfId), 65534);
    for (const bool flag : {false, true}) {
        MatchMplsTerm terminated(flag);
        EXPECT_EQ(matchMplsTermGet(&terminated), flag);
        MatchDrop drop(flag);
        EXPECT_EQ(matchDropGet(&drop), flag);
    }
}

TEST(MatchesC, TheDscpOfATypeOfServiceMatchIsItsUpperSixBits)
{
    for (int tos = 0; tos < 256; ++tos) {
        MatchToS match(static_cast<unsigned char>(tos));
        EXPECT_EQ(matchDSCPGet(&match), tos / 4);
        EXPECT_EQ(match.getToS(), tos);
    }
}

// ------------------------------------------------------------------------------------- edge cases

TEST(MatchesC, Dscp10HasType20AndReadsBackAs10)
{
    const auto match = made<MatchDSCP>(newMatchDSCP(10));
    EXPECT_EQ(matchGetType(match.get()), 20);
    EXPECT_EQ(matchDSCPGet(match.get()), 10);
}

TEST(MatchesC, Pcp9ReadsBackAs1)
{
    const auto match = made<MatchPcp>(newMatchPcp(9));
    EXPECT_EQ(matchPcpGet(match.get()), 1);
}

// ----------------------------------------------------------------------------------- null handles

class MatchesCDeathTest : public test::ContractDeathTest {};

TEST_P(MatchesCDeathTest, ANullHandleIsReported) { expectReport("filter_matches_c.cpp"); }

constexpr BrokenContract broken(const char* name, const char* function, void (*call)())
{
    return {name, ANY_LINE, "m != nullptr", function, call};
}

// clang-format off
const BrokenContract BROKEN[] = {
    broken("matchGetType", "FiltersCommon::filtersMatch_t FiltersCommon::matchGetType(void*)",
           [] { matchGetType(nullptr); }),
    broken("deleteMatch", "void FiltersCommon::deleteMatch(void*)",
           [] { deleteMatch(nullptr); }),
    broken("matchMacGetMac", "const ether_addr* FiltersCommon::matchMacGetMac(void*)",
           [] { matchMacGetMac(nullptr); }),
    broken("matchMacGetMask", "const ether_addr* FiltersCommon::matchMacGetMask(void*)",
           [] { matchMacGetMask(nullptr); }),
    broken("matchGetLimId", "limid_t FiltersCommon::matchGetLimId(void*)",
           [] { matchGetLimId(nullptr); }),
    broken("matchGetTPID", "FiltersCommon::tpid_t FiltersCommon::matchGetTPID(FiltersCommon::MatchTPID*)",
           [] { matchGetTPID(nullptr); }),
    broken("matchGetL4Port", "FiltersCommon::l4port_t FiltersCommon::matchGetL4Port(void*)",
           [] { matchGetL4Port(nullptr); }),
    broken("matchGetL4PortMask", "FiltersCommon::l4port_t FiltersCommon::matchGetL4PortMask(void*)",
           [] { matchGetL4PortMask(nullptr); }),
    broken("matchGetL2SrcEntryType", "FiltersCommon::l2SrcEntryType_t FiltersCommon::matchGetL2SrcEntryType(FiltersCommon::MatchL2SrcEntryType*)",
           [] { matchGetL2SrcEntryType(nullptr); }),
    broken("matchIPv4GetIPv4", "const in_addr* FiltersCommon::matchIPv4GetIPv4(void*)",
           [] { matchIPv4GetIPv4(nullptr); }),
    broken("matchIPv4GetIPv4Mask", "const in_addr* FiltersCommon::matchIPv4GetIPv4Mask(void*)",
           [] { matchIPv4GetIPv4Mask(nullptr); }),
    broken("matchIPv6GetIPv6", "const in6_addr* FiltersCommon::matchIPv6GetIPv6(void*)",
           [] { matchIPv6GetIPv6(nullptr); }),
    broken("matchIPv6GetIPv6Mask", "const in6_addr* FiltersCommon::matchIPv6GetIPv6Mask(void*)",
           [] { matchIPv6GetIPv6Mask(nullptr); }),
};
// clang-format on
INSTANTIATE_TEST_SUITE_P(Null, MatchesCDeathTest, testing::ValuesIn(BROKEN),
                         test::nameOf<BrokenContract>);

} // namespace
} // namespace FiltersCommon
