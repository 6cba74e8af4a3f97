#include "class_equality.h"

#include "filter_matches.pb.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <list>
#include <set>
#include <type_traits>

namespace FiltersCommon {
namespace {

using test::ipv4;
using test::limId;
using test::mac;
using test::rawBytes;
using test::slotOf;

constexpr auto& equal = test::equalAs<Match>;

filtersMatch_t kind(std::uint32_t code) { return static_cast<filtersMatch_t>(code); }

const std::vector<std::uint32_t> CODES = test::knownAndUnknownCodes(test::MATCH_KINDS);
const std::set<std::uint32_t> WITHOUT_VALUES = test::codesWithoutValues<test::MatchClasses>();
const std::set<int> WITH_VIRTUAL_EQUALITY = {23, 24, 27, 28, 29, 30};

// What the getters return. Each class with values needs a line.
std::string read(const Match&) = delete;
std::string read(const MatchPorts& m) { return rawBytes(m.getPorts()); }
std::string read(const MatchLimId& m) { return rawBytes(m.getLimId()); }
std::string read(const MatchL4Port& m) { return rawBytes(m.getPort()) + rawBytes(m.getMask()); }
std::string read(const MatchVlanId& m) { return testing::PrintToString(m.getVlanIds()); }
std::string read(const MatchMac& m) { return rawBytes(*m.getMac()) + rawBytes(*m.getMask()); }
std::string read(const MatchIPv4& m) { return rawBytes(*m.getIPv4()) + rawBytes(*m.getIPv4Mask()); }
std::string read(const MatchIPv6& m) { return rawBytes(*m.getIPv6()) + rawBytes(*m.getIPv6Mask()); }
std::string read(const MatchTPID& m) { return rawBytes(m.getTPID()); }
std::string read(const MatchL2SrcEntryType& m) { return rawBytes(m.getL2SrcEntryType()); }
std::string read(const MatchPcp& m) { return rawBytes(m.getPcp()); }
std::string read(const MatchInternalPcp& m) { return rawBytes(m.getPcp()); }
std::string read(const MatchIpProtocol& m) { return rawBytes(m.getIpProtocol()); }
std::string read(const MatchPacketRes& m) { return rawBytes(m.getPktRes()); }
std::string read(const MatchMplsTerm& m) { return rawBytes(m.getMplsTerm()); }
std::string read(const MatchToS& m) { return rawBytes(m.getToS()); }
std::string read(const MatchDSCP& m) { return rawBytes(m.getDSCP()); }
std::string read(const MatchIngressStpState& m) { return rawBytes(m.getIngressStpState()); }
std::string read(const MatchVlanInfo& m) { return rawBytes(m.getVlanInfo()); }
std::string read(const MatchTTL& m) { return rawBytes(m.getTTL()); }
std::string read(const MatchVrfId& m) { return rawBytes(m.getVrfId()); }
std::string read(const MatchDrop& m) { return rawBytes(m.getDropFlag()); }
std::string read(const MatchForwardingType& m) { return rawBytes(m.getForwardingType()); }

// ------------------------------------------------------------------------------------ every class

template <class Row>
class EveryMatchClass : public testing::Test {};

TYPED_TEST_SUITE(EveryMatchClass, test::MatchClasses::Tests, );

TYPED_TEST(EveryMatchClass, DiffersWhenOneFieldDiffers)
{
    test::expectDifferentWhenOneFieldDiffers<Match, TypeParam>();
}

TYPED_TEST(EveryMatchClass, TellsItsValuesByItsGetters)
{
    if constexpr (TypeParam::HAS_VALUES)
        test::expectDifferentByItsGetters<TypeParam>([](const auto& m) { return read(m); });
}

TYPED_TEST(EveryMatchClass, IsEqualToItsOwnKindOnly)
{
    test::expectEqualToItsOwnKindOnly<Match, TypeParam, test::MatchClasses>();
}

TYPED_TEST(EveryMatchClass, WithValuesDiffersFromABareMatch)
{
    test::expectDifferentFromABareObject<Match, TypeParam>();
}

TYPED_TEST(EveryMatchClass, AsksADerivedClassOnlyWhereTheTypedEqualityIsVirtual)
{
    using T = typename TypeParam::Class;
    const bool isVirtual = WITH_VIRTUAL_EQUALITY.count(TypeParam::CODE) != 0;
    for (const auto& other : TypeParam::variants()) {
        const bool sameValues = other == TypeParam::sample();
        for (const bool answer : {false, true}) {
            const test::Answering<T> match(TypeParam::sample(), answer);
            const T& asItsBase = match;
            EXPECT_EQ(equal(match, other), isVirtual ? answer : sameValues);
            EXPECT_EQ(asItsBase == other, isVirtual ? answer : sameValues);
            EXPECT_EQ(equal(other, match), sameValues);
        }
    }
}

/** The class that declares the function called for a comparison through the base. */
template <class T>
T declares(bool (T::*)(const Match&) const);

TYPED_TEST(EveryMatchClass, HasItsEqualitiesInTheirSlots)
{
    using T = typename TypeParam::Class;
    static_assert(std::is_same_v<decltype(declares(&T::operator==)), Match>);
    const int slot = slotOf(static_cast<bool (T::*)(const T&) const>(&T::operator==));
    EXPECT_EQ(slot, WITH_VIRTUAL_EQUALITY.count(TypeParam::CODE) != 0 ? 5 : -1);
}

TEST(MatchEquality, BaseHasItsVirtualFunctionsInTheirSlots)
{
    // The destructor takes the first two slots.
    EXPECT_EQ(slotOf(&Match::convertToMatchPB), 2);
    EXPECT_EQ(slotOf(&Match::convertFromMatchPB), 3);
    EXPECT_EQ(slotOf(&Match::operator==), 4);
    EXPECT_EQ(slotOf(&Match::getType), -1);
}

// --------------------------------------------------------------------------------- bare and lying

TEST(MatchEquality, BareMatchesAreEqualWhereTheKindHasNoValues)
{
    for (const std::uint32_t a : CODES)
        for (const std::uint32_t b : CODES)
            EXPECT_EQ(Match(kind(a)) == Match(kind(b)), a == b && WITHOUT_VALUES.count(a) != 0)
                << a << " " << b;
}

TEST(MatchEquality, UnknownKindDiffersFromItself)
{
    for (const std::uint32_t code : test::unknownCodes(test::MATCH_KINDS)) {
        const Match match(kind(code));
        EXPECT_FALSE(match == match) << code;
    }
}

class Own : public Match {
public:
    explicit Own(std::uint32_t code) : Match(kind(code)) {}
};

TEST(MatchEquality, CallersOwnClassIsComparedByItsCodeAlone)
{
    test::MatchClasses::forEach([](auto row) {
        const auto match = row.sample();
        const Own own(row.CODE);
        EXPECT_EQ(equal(own, match), !row.HAS_VALUES) << row.CODE;
        EXPECT_EQ(equal(match, own), !row.HAS_VALUES) << row.CODE;
        EXPECT_EQ(equal(own, own), !row.HAS_VALUES) << row.CODE;
    });
}

TEST(MatchEquality, CallersOwnSubclassOfAKindIsComparedByTheValuesOfTheKind)
{
    class OwnPcp : public MatchPcp {
    public:
        using MatchPcp::MatchPcp;
    };
    EXPECT_TRUE(equal(OwnPcp(3), MatchPcp(3)));
    EXPECT_TRUE(equal(MatchPcp(3), OwnPcp(3)));
    EXPECT_FALSE(equal(OwnPcp(3), MatchPcp(4)));
    EXPECT_FALSE(equal(MatchPcp(4), OwnPcp(3)));
}

// --------------------------------------------------------------------------------- value families

/** A family, the codes of its two kinds, and their classes. */
template <class Family_, int FIRST, int SECOND, class First_, class Second_>
struct FamilyRow {
    using Family = Family_;
    using First = First_;
    using Second = Second_;
    static constexpr std::array<std::uint32_t, 2> CODES = {FIRST, SECOND};
};

template <class Row>
class EveryFamily : public testing::Test {
protected:
    using Family = typename Row::Family;

    /** Two objects of the code with different values. */
    static std::array<Family, 2> objects(std::uint32_t code)
    {
        const filtersMatch_t type = kind(code);
        if constexpr (std::is_same_v<Family, MatchPorts>)
            return {Family(type, ports()), Family(type, std::list<limid_t>())};
        else if constexpr (std::is_same_v<Family, MatchLimId>)
            return {Family(type, limId(1, 2, 3, 4)), Family(type, limId(1, 2, 3, 5))};
        else if constexpr (std::is_same_v<Family, MatchL4Port>)
            return {Family(type, 80), Family(type, 80, 0)};
        else if constexpr (std::is_same_v<Family, MatchVlanId>)
            return {Family(type, {1, 2}), Family(type, {1, 3})};
        else
            return {Family(type, {}), Family(type, {}, {})};
    }

    /** A leaf with the first of the two values. */
    template <class Leaf>
    static Leaf leaf()
    {
        if constexpr (std::is_same_v<Family, MatchPorts>)
            return Leaf(ports());
        else if constexpr (std::is_same_v<Family, MatchLimId>)
            return Leaf(limId(1, 2, 3, 4));
        else if constexpr (std::is_same_v<Family, MatchL4Port>)
            return Leaf(80);
        else if constexpr (std::is_same_v<Family, MatchVlanId>)
            return Leaf(std::set<unsigned short>{1, 2});
        else
            return Leaf({});
    }

private:
    static std::list<limid_t> ports() { return {limId(1, 2, 3, 4), limId(5, 6, 7, 8)}; }
};

// clang-format off
using Families = testing::Types<
    FamilyRow<MatchPorts,   1, 22, MatchIngressPorts,   MatchEgressPorts>,
    FamilyRow<MatchLimId,  21, 25, MatchVirtualPort,    MatchSrcPort>,
    FamilyRow<MatchL4Port,  5,  6, MatchDstL4Port,      MatchSrcL4Port>,
    FamilyRow<MatchVlanId,  2, 11, MatchExternalVlanId, MatchInternalVlanId>,
    FamilyRow<MatchMac,     4,  7, MatchDstMac,         MatchSrcMac>,
    FamilyRow<MatchIPv4,    9, 10, MatchSrcIPv4,        MatchDstIPv4>,
    FamilyRow<MatchIPv6,   14, 15, MatchSrcIPv6,        MatchDstIPv6>>;
// clang-format on
TYPED_TEST_SUITE(EveryFamily, Families, );

TYPED_TEST(EveryFamily, IsComparedByItsValuesUnderItsOwnCodesAlone)
{
    for (const std::uint32_t code : CODES) {
        const auto objects = TestFixture::objects(code);
        const auto same = TestFixture::objects(code);
        const auto& own = TypeParam::CODES;
        const bool holdsValues = std::find(own.begin(), own.end(), code) != own.end();
        const bool hasNone = WITHOUT_VALUES.count(code) != 0;
        EXPECT_EQ(equal(objects[0], same[0]), holdsValues || hasNone) << code;
        EXPECT_EQ(equal(objects[0], same[1]), hasNone) << code;
        EXPECT_EQ(equal(objects[1], same[0]), hasNone) << code;
    }
}

TYPED_TEST(EveryFamily, ComparesValuesWhateverTheKindsWithItsOwnEquality)
{
    const auto first = TestFixture::objects(TypeParam::CODES[0]);
    const auto second = TestFixture::objects(TypeParam::CODES[1]);
    EXPECT_TRUE(first[0] == second[0]);
    EXPECT_FALSE(first[0] == second[1]);
    EXPECT_FALSE(first[1] == second[0]);
    EXPECT_FALSE(equal(first[0], second[0]));
}

TYPED_TEST(EveryFamily, IsEqualToALeafOfTheSameCodeAndValues)
{
    const auto first = TestFixture::objects(TypeParam::CODES[0]);
    const auto second = TestFixture::objects(TypeParam::CODES[1]);
    const auto firstLeaf = TestFixture::template leaf<typename TypeParam::First>();
    const auto secondLeaf = TestFixture::template leaf<typename TypeParam::Second>();
    EXPECT_TRUE(equal(first[0], firstLeaf) && equal(firstLeaf, first[0]));
    EXPECT_TRUE(equal(second[0], secondLeaf) && equal(secondLeaf, second[0]));
    EXPECT_FALSE(equal(first[1], firstLeaf) || equal(firstLeaf, first[1]));
    EXPECT_FALSE(equal(first[0], secondLeaf) || equal(secondLeaf, first[0]));
    EXPECT_FALSE(firstLeaf == secondLeaf || secondLeaf == firstLeaf);
}

TYPED_TEST(EveryFamily, HasAnOrdinaryEqualityAndLeavesThatOfTheBase)
{
    using T = typename TypeParam::Family;
    static_assert(std::is_same_v<decltype(declares(&T::operator==)), Match>);
    EXPECT_EQ(slotOf(static_cast<bool (T::*)(const T&) const>(&T::operator==)), -1);
}

TEST(MatchEquality, ExcludedPortTypesTakePartInOrder)
{
    const auto other = static_cast<port_type_t>(3);
    const auto of = [](std::list<port_type_t> types) { return MatchIngressPorts(types); };
    EXPECT_TRUE(of({PORT_TYPE_CPU, other}) == of({PORT_TYPE_CPU, other}));
    EXPECT_FALSE(of({PORT_TYPE_CPU, other}) == of({other, PORT_TYPE_CPU}));
    EXPECT_FALSE(of({PORT_TYPE_CPU}) == of({PORT_TYPE_CPU, PORT_TYPE_CPU}));
    EXPECT_FALSE(of({PORT_TYPE_CPU}) == of({other}));
    EXPECT_FALSE(of({PORT_TYPE_CPU}) == MatchIngressPorts(std::list<limid_t>()));
    EXPECT_FALSE(equal(of({PORT_TYPE_CPU}), MatchIngressPorts(std::list<limid_t>())));
    EXPECT_TRUE(of({}) == MatchIngressPorts(std::list<limid_t>()));
}

// ------------------------------------------------------------------------------------ known cases

TEST(MatchEquality, SamePortsInAnotherOrderDiffer)
{
    const limid_t a = limId(0, 1, 0, 1);
    const limid_t b = limId(0, 1, 0, 2);
    using Ports = std::list<limid_t>;
    EXPECT_FALSE(MatchIngressPorts(Ports{a, b}) == MatchIngressPorts(Ports{b, a}));
    EXPECT_TRUE(MatchIngressPorts(Ports{a, b}) == MatchIngressPorts(Ports{a, b}));
}

TEST(MatchEquality, ExternalAndInternalVlanIdsDiffer)
{
    const MatchExternalVlanId external(100);
    const MatchInternalVlanId internal(100);
    EXPECT_FALSE(external == internal);
    EXPECT_FALSE(equal(external, internal));
}

TEST(MatchEquality, DestinationAndSourceMacDiffer)
{
    const MatchDstMac destination(mac("02:00:00:00:00:01"));
    const MatchSrcMac source(mac("02:00:00:00:00:01"));
    EXPECT_FALSE(destination == source);
    EXPECT_FALSE(equal(destination, source));
}

TEST(MatchEquality, MasksTakePartAndNothingIsNormalised)
{
    const in_addr mask = ipv4("255.255.255.0");
    EXPECT_FALSE(
        equal(MatchSrcIPv4(ipv4("192.0.2.1"), mask), MatchSrcIPv4(ipv4("192.0.2.0"), mask)));
    EXPECT_FALSE(equal(MatchSrcIPv4(ipv4("192.0.2.1"), mask), MatchSrcIPv4(ipv4("192.0.2.1"))));
    EXPECT_FALSE(equal(MatchDstL4Port(0x1234, 0xFF00), MatchDstL4Port(0x1200, 0xFF00)));
}

TEST(MatchEquality, CpuPortsAreAlwaysEqualAndNeverADestinationCpu)
{
    EXPECT_TRUE(MatchCpuPort() == MatchCpuPort());
    EXPECT_TRUE(equal(MatchCpuPort(), MatchCpuPort()));
    EXPECT_FALSE(MatchCpuPort() == MatchDestinationCpu());
    EXPECT_FALSE(equal(MatchDestinationCpu(), MatchCpuPort()));
}

TEST(MatchEquality, DscpIsEqualToTheToSOfItsByte)
{
    for (int dscp = 0; dscp < 64; ++dscp)
        for (int tos = 0; tos < 256; ++tos) {
            const MatchDSCP a(static_cast<unsigned char>(dscp));
            const MatchToS b(static_cast<unsigned char>(tos));
            EXPECT_EQ(equal(a, b), tos == dscp * 4);
            EXPECT_EQ(equal(b, a), tos == dscp * 4);
            EXPECT_EQ(a == b, tos == dscp * 4);
            EXPECT_EQ(b == a, tos == dscp * 4);
        }
}

TEST(MatchEquality, DscpOwnEqualityLeavesOutTheTwoLowBitsOfTheByte)
{
    MatchPB pb;
    pb.set_tos_(43);
    MatchDSCP read(0);
    read.convertFromMatchPB(&pb);
    ASSERT_EQ(read.getToS(), 43);
    EXPECT_EQ(read.getDSCP(), 10);
    EXPECT_TRUE(read == MatchDSCP(10));
    EXPECT_FALSE(equal(read, MatchDSCP(10)));
    EXPECT_FALSE(read == MatchDSCP(11));
}

} // namespace
} // namespace FiltersCommon
