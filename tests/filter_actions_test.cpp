#include "class_equality.h"

#include "filter_actions.pb.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <initializer_list>
#include <list>
#include <set>
#include <type_traits>
#include <utility>

namespace FiltersCommon {
namespace {

using test::limId;
using test::mac;
using test::rawBytes;
using test::slotOf;

using Ports = std::list<limid_t>;

constexpr auto& equal = test::equalAs<Action>;

filtersAction_t kind(std::uint32_t code) { return static_cast<filtersAction_t>(code); }

const std::vector<std::uint32_t> CODES = test::knownAndUnknownCodes(test::ACTION_KINDS);
const std::set<std::uint32_t> WITHOUT_VALUES = test::codesWithoutValues<test::ActionClasses>();
const std::set<int> WITH_VIRTUAL_EQUALITY = {0, 9, 11, 12, 13, 14};

bool samePorts(const Ports& a, const Ports& b)
{
    const auto same = [](const limid_t& x, const limid_t& y) {
        return std::memcmp(&x, &y, 4) == 0;
    };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), same);
}

// ------------------------------------------------------------------------ what a caller may build

static_assert(!std::is_abstract_v<Action> && std::has_virtual_destructor_v<Action>);
static_assert(!std::is_default_constructible_v<Action>);

static_assert(std::is_base_of_v<ActionPorts, ActionBlockEgressPorts>);
static_assert(!std::is_base_of_v<ActionPorts, ActionRedirect>);
static_assert(std::is_constructible_v<ActionRedirect, const limid_t&>);
static_assert(!std::is_constructible_v<ActionRedirect, const Ports&>);
static_assert(!std::is_constructible_v<ActionBlockEgressPorts, std::list<port_type_t>>);
static_assert(!std::is_constructible_v<ActionCopyToCpuCancel, int>);

/** What a getter of a constant object returns. */
template <class T, class R>
R resultOf(R (T::*)() const);

static_assert(std::is_same_v<decltype(resultOf(&Action::getType)), filtersAction_t>);
static_assert(std::is_same_v<decltype(resultOf(&ActionPorts::getPorts)), Ports>);
static_assert(
    std::is_same_v<decltype(resultOf(&ActionCopyToCpuCancel::getCancelType)), cp2cpuCancelParam_t>);
static_assert(std::is_same_v<decltype(resultOf(&ActionSetPcp::getPcp)), unsigned char>);
static_assert(
    std::is_same_v<decltype(resultOf(&ActionSetPcpAndQueue::getPcpAndQueue)), unsigned char>);
static_assert(std::is_same_v<decltype(resultOf(&ActionSetInnerPcp::getInnerPcp)), unsigned char>);
static_assert(std::is_same_v<decltype(resultOf(&ActionSetDSCP::getDSCP)), unsigned char>);
static_assert(std::is_same_v<decltype(resultOf(&ActionMapToCosQueue::getCosQueue)), unsigned char>);
static_assert(
    std::is_same_v<decltype(resultOf(&ActionMapToCpuCosQueue::getCpuCosQueue)), unsigned char>);
static_assert(std::is_same_v<decltype(resultOf(&ActionRedirect::getRedirectPorts)), Ports>);
static_assert(
    std::is_same_v<decltype(resultOf(&ActionRedirect::getRedirectPortsRef)), const Ports&>);
static_assert(
    std::is_same_v<decltype(resultOf(&ActionReplaceDstMac::getReplaceDstMac)), ether_addr>);
static_assert(
    std::is_same_v<decltype(resultOf(&ActionReplaceSrcMac::getReplaceSrcMac)), ether_addr>);
static_assert(
    std::is_same_v<decltype(resultOf(&ActionL3Switch::getL3DestinationId)), unsigned int>);

// What the getters return. Each class with values needs a line.
std::string read(const Action&) = delete;
std::string read(const ActionPorts& a) { return rawBytes(a.getPorts()); }
std::string read(const ActionCopyToCpuCancel& a) { return rawBytes(a.getCancelType()); }
std::string read(const ActionSetPcp& a) { return rawBytes(a.getPcp()); }
std::string read(const ActionSetPcpAndQueue& a) { return rawBytes(a.getPcpAndQueue()); }
std::string read(const ActionSetInnerPcp& a) { return rawBytes(a.getInnerPcp()); }
std::string read(const ActionSetDSCP& a) { return rawBytes(a.getDSCP()); }
std::string read(const ActionMapToCosQueue& a) { return rawBytes(a.getCosQueue()); }
std::string read(const ActionMapToCpuCosQueue& a) { return rawBytes(a.getCpuCosQueue()); }
std::string read(const ActionRedirect& a) { return rawBytes(a.getRedirectPorts()); }
std::string read(const ActionReplaceDstMac& a) { return rawBytes(a.getReplaceDstMac()); }
std::string read(const ActionReplaceSrcMac& a) { return rawBytes(a.getReplaceSrcMac()); }
std::string read(const ActionL3Switch& a) { return rawBytes(a.getL3DestinationId()); }

// ------------------------------------------------------------------------------------ every class

template <class Row>
class EveryActionClass : public testing::Test {};

TYPED_TEST_SUITE(EveryActionClass, test::ActionClasses::Tests, );

TYPED_TEST(EveryActionClass, CarriesItsCode)
{
    EXPECT_EQ(static_cast<int>(TypeParam::sample().getType()), TypeParam::CODE);
}

TYPED_TEST(EveryActionClass, IsCopiedAssignedAndMoved)
{
    for (const auto& other : TypeParam::variants()) {
        const typename TypeParam::Class copy(other);
        EXPECT_TRUE(copy == other);
        auto action = TypeParam::sample();
        action = other;
        EXPECT_TRUE(action == other);
        const auto& itself = action;
        action = itself;
        EXPECT_TRUE(action == other);
        const typename TypeParam::Class moved(std::move(action));
        EXPECT_TRUE(moved == other);
    }
}

TYPED_TEST(EveryActionClass, DiffersWhenItsValueDiffers)
{
    test::expectDifferentWhenOneFieldDiffers<Action, TypeParam>();
}

TYPED_TEST(EveryActionClass, TellsItsValuesByItsGetters)
{
    if constexpr (TypeParam::HAS_VALUES)
        test::expectDifferentByItsGetters<TypeParam>([](const auto& a) { return read(a); });
}

TYPED_TEST(EveryActionClass, IsEqualToItsOwnKindOnly)
{
    test::expectEqualToItsOwnKindOnly<Action, TypeParam, test::ActionClasses>();
}

TYPED_TEST(EveryActionClass, WithValuesDiffersFromABareAction)
{
    test::expectDifferentFromABareObject<Action, TypeParam>();
}

TYPED_TEST(EveryActionClass, AsksADerivedClassOnlyWhereTheTypedEqualityIsVirtual)
{
    using T = typename TypeParam::Class;
    const bool isVirtual = WITH_VIRTUAL_EQUALITY.count(TypeParam::CODE) != 0;
    for (const auto& other : TypeParam::variants()) {
        const bool sameValues = other == TypeParam::sample();
        for (const bool answer : {false, true}) {
            const test::Answering<T> action(TypeParam::sample(), answer);
            const T& asItsBase = action;
            EXPECT_EQ(asItsBase == other, isVirtual ? answer : sameValues);
            EXPECT_EQ(equal(other, action), sameValues);
        }
    }
}

TYPED_TEST(EveryActionClass, HasItsEqualityInItsSlot)
{
    using T = typename TypeParam::Class;
    const int slot = slotOf(static_cast<bool (T::*)(const T&) const>(&T::operator==));
    EXPECT_EQ(slot, WITH_VIRTUAL_EQUALITY.count(TypeParam::CODE) != 0 ? 4 : -1);
}

TYPED_TEST(EveryActionClass, ConvertsByItselfWhereItHasValues)
{
    using T = typename TypeParam::Class;
    constexpr bool WRITES_AS_BASE =
        std::is_same_v<decltype(&T::convertToActionPB), decltype(&Action::convertToActionPB)>;
    constexpr bool READS_AS_BASE =
        std::is_same_v<decltype(&T::convertFromActionPB), decltype(&Action::convertFromActionPB)>;
    const bool hasNone = WITHOUT_VALUES.count(TypeParam::CODE) != 0;
    EXPECT_EQ(WRITES_AS_BASE, hasNone);
    EXPECT_EQ(READS_AS_BASE, hasNone);
}

TEST(ActionLayout, BaseHasItsVirtualFunctionsInTheirSlots)
{
    // The destructor takes the first two slots.
    EXPECT_EQ(slotOf(&Action::convertToActionPB), 2);
    EXPECT_EQ(slotOf(&Action::convertFromActionPB), 3);
    EXPECT_EQ(slotOf(&Action::operator==), -1);
    EXPECT_EQ(slotOf(&Action::getType), -1);
}

// --------------------------------------------------------------------------------- bare and lying

TEST(FilterActions, BareActionIsBuiltWithAnyCode)
{
    for (const std::uint32_t code : CODES)
        EXPECT_EQ(static_cast<std::uint32_t>(Action(kind(code)).getType()), code);
}

TEST(FilterActions, AssignmentNeverCopiesTheKind)
{
    Action bare(ACTION_DENY);
    bare = Action(ACTION_PERMIT);
    EXPECT_EQ(bare.getType(), ACTION_DENY);

    const Ports ports = {limId(1, 2, 3, 4)};
    ActionBlockEgressPorts block((Ports()));
    static_cast<ActionPorts&>(block) = ActionPorts(ACTION_REDIRECT, ports);
    EXPECT_EQ(block.getType(), ACTION_BLOCK_EGRESS_PORTS);
    EXPECT_TRUE(samePorts(block.getPorts(), ports));
}

TEST(FilterActions, BareActionsAreEqualWhereTheKindHasNoValuesOrIsUnknown)
{
    for (const std::uint32_t a : CODES)
        for (const std::uint32_t b : CODES) {
            const bool same = a == b && (a >= test::ACTION_KINDS || WITHOUT_VALUES.count(a) != 0);
            EXPECT_EQ(Action(kind(a)) == Action(kind(b)), same) << a << " " << b;
        }
}

TEST(FilterActions, UnknownKindsAreEqualUnlikeMatches)
{
    for (const std::uint32_t code : test::unknownCodes(test::MATCH_KINDS)) {
        EXPECT_TRUE(Action(kind(code)) == Action(kind(code))) << code;
        EXPECT_FALSE(Match(static_cast<filtersMatch_t>(code)) ==
                     Match(static_cast<filtersMatch_t>(code)))
            << code;
    }
}

TEST(FilterActions, CallersOwnClassIsComparedByItsCodeAlone)
{
    class Own : public Action {
    public:
        explicit Own(int code) : Action(static_cast<filtersAction_t>(code)) {}
    };
    test::ActionClasses::forEach([](auto row) {
        const auto action = row.sample();
        const Own own(row.CODE);
        EXPECT_EQ(equal(own, action), !row.HAS_VALUES) << row.CODE;
        EXPECT_EQ(equal(action, own), !row.HAS_VALUES) << row.CODE;
        EXPECT_EQ(equal(own, own), !row.HAS_VALUES) << row.CODE;
    });
}

// ------------------------------------------------------------------------------------------ ports

TEST(ActionPorts, KeepsPortsInOrderWithDuplicates)
{
    const Ports ports = {limId(9, 0, 0, 1), limId(1, 2, 3, 4), limId(9, 0, 0, 1)};
    for (const Ports& kept : {ports, Ports()}) {
        EXPECT_TRUE(samePorts(ActionPorts(ACTION_DENY, kept).getPorts(), kept));
        EXPECT_TRUE(samePorts(ActionBlockEgressPorts(kept).getPorts(), kept));
        EXPECT_TRUE(samePorts(ActionBlockEgressPorts(kept).getPortsRef(), kept));
    }
}

TEST(ActionPorts, ComparesPortsInOrderWhateverTheKinds)
{
    const limid_t a = limId(0, 1, 0, 1);
    const limid_t b = limId(0, 1, 0, 2);
    const auto of = [](const Ports& ports) { return ActionPorts(ACTION_DENY, ports); };
    EXPECT_TRUE(of({a, b}) == of({a, b}));
    EXPECT_FALSE(of({a, b}) == of({b, a}));
    EXPECT_FALSE(of({a}) == of({a, a}));
    EXPECT_FALSE(of({a, a}) == of({a}));
    EXPECT_TRUE(of({}) == of({}));
    EXPECT_TRUE(of({a}) == ActionPorts(ACTION_PERMIT, {a}));
    EXPECT_FALSE(equal(of({a}), ActionPorts(ACTION_PERMIT, {a})));
}

TEST(ActionPorts, IsComparedByItsPortsUnderTheCodeOfBlockEgressPortsAlone)
{
    const Ports ports = {limId(0, 1, 0, 1)};
    for (const std::uint32_t code : CODES) {
        const bool always = code >= test::ACTION_KINDS || WITHOUT_VALUES.count(code) != 0;
        const ActionPorts action(kind(code), ports);
        EXPECT_EQ(equal(action, ActionPorts(kind(code), ports)), always || code == 3) << code;
        EXPECT_EQ(equal(action, ActionPorts(kind(code), {})), always) << code;
    }
}

TEST(ActionPorts, IsEqualToABlockEgressPortsOfTheSamePorts)
{
    const Ports ports = {limId(0, 1, 0, 1)};
    const ActionPorts action(ACTION_BLOCK_EGRESS_PORTS, ports);
    EXPECT_TRUE(equal(action, ActionBlockEgressPorts(ports)));
    EXPECT_TRUE(equal(ActionBlockEgressPorts(ports), action));
    EXPECT_FALSE(equal(action, ActionBlockEgressPorts({})));
}

TEST(ActionPorts, OfTheCodeOfRedirectIsNoRedirect)
{
    const limid_t port = limId(0, 1, 0, 1);
    const ActionPorts action(ACTION_REDIRECT, {port});
    EXPECT_FALSE(equal(action, ActionRedirect(port)));
    EXPECT_FALSE(equal(ActionRedirect(port), action));
}

TEST(ActionPorts, ConvertsItsCodeAlone)
{
    const ActionPorts action(ACTION_BLOCK_EGRESS_PORTS, {limId(0, 1, 0, 1)});
    ActionPB pb;
    action.convertToActionPB(&pb);
    EXPECT_EQ(pb.type_(), 3u);
    EXPECT_EQ(pb.ports__size(), 0);
}

TEST(ActionBlockEgressPorts, OfAnEmptyListHasNoPortsAndEqualsAnother)
{
    const ActionBlockEgressPorts action((Ports()));
    EXPECT_TRUE(action.getPorts().empty());
    EXPECT_TRUE(action == ActionBlockEgressPorts(Ports()));
    EXPECT_TRUE(equal(action, ActionBlockEgressPorts(Ports())));
}

TEST(ActionRedirect, HoldsExactlyTheOnePort)
{
    const limid_t port = limId(0xFF, 0, 0x80, 1);
    const ActionRedirect action(port);
    EXPECT_TRUE(samePorts(action.getRedirectPorts(), {port}));
    EXPECT_TRUE(samePorts(action.getRedirectPortsRef(), {port}));
    EXPECT_LT(static_cast<const void*>(&action), &action.getRedirectPortsRef());
    EXPECT_LT(&action.getRedirectPortsRef(), static_cast<const void*>(&action + 1));
}

TEST(ActionRedirect, ComparesTheWholeListReadFromTheWire)
{
    const auto read = [](std::initializer_list<std::uint32_t> ports) {
        ActionPB pb;
        for (const std::uint32_t port : ports)
            pb.add_ports_(port);
        ActionRedirect action(limId(0, 0, 0, 9));
        action.convertFromActionPB(&pb);
        return action;
    };
    EXPECT_TRUE(read({1, 2}) == read({1, 2}));
    EXPECT_FALSE(read({1, 2}) == read({2, 1}));
    EXPECT_FALSE(read({1}) == read({1, 1}));
    EXPECT_FALSE(equal(read({1, 1}), read({1})));
    EXPECT_TRUE(equal(read({}), read({})));
}

// ----------------------------------------------------------------------------------------- values

template <class T, class Value>
void expectKeepsEveryByte(Value (T::*get)() const)
{
    for (int value = 0; value < 256; ++value) {
        const T action(static_cast<unsigned char>(value));
        EXPECT_EQ((action.*get)(), value);
    }
}

TEST(FilterActions, KeepEveryByteUnchanged)
{
    expectKeepsEveryByte(&ActionSetPcp::getPcp);
    expectKeepsEveryByte(&ActionSetPcpAndQueue::getPcpAndQueue);
    expectKeepsEveryByte(&ActionSetInnerPcp::getInnerPcp);
    expectKeepsEveryByte(&ActionSetDSCP::getDSCP);
    expectKeepsEveryByte(&ActionMapToCosQueue::getCosQueue);
    expectKeepsEveryByte(&ActionMapToCpuCosQueue::getCpuCosQueue);
}

TEST(FilterActions, CopyToCpuCancelKeepsAnyValue)
{
    for (const std::int32_t value : {0, 1, 2, 0x12345678, -1}) {
        const ActionCopyToCpuCancel action(static_cast<cp2cpuCancelParam_t>(value));
        EXPECT_EQ(static_cast<std::int32_t>(action.getCancelType()), value);
    }
}

TEST(FilterActions, L3SwitchKeeps32Bits)
{
    for (const unsigned int value : {0u, 0x12345678u, 0xFFFFFFFFu})
        EXPECT_EQ(ActionL3Switch(value).getL3DestinationId(), value);
}

TEST(FilterActions, MacKindsKeepTheSixBytes)
{
    const ether_addr address = mac("ff:10:20:30:40:05");
    const ether_addr destination = ActionReplaceDstMac(address).getReplaceDstMac();
    const ether_addr source = ActionReplaceSrcMac(address).getReplaceSrcMac();
    EXPECT_EQ(std::memcmp(&destination, &address, 6), 0);
    EXPECT_EQ(std::memcmp(&source, &address, 6), 0);
}

// ------------------------------------------------------------------------------------ known cases

TEST(FilterActions, SetPcpAndSetInnerPcpOfTheSameValueDiffer)
{
    EXPECT_FALSE(ActionSetPcp(5) == ActionSetInnerPcp(5));
    EXPECT_FALSE(equal(ActionSetPcp(5), ActionSetInnerPcp(5)));
    EXPECT_FALSE(ActionMapToCosQueue(3) == ActionMapToCpuCosQueue(3));
    EXPECT_FALSE(equal(ActionMapToCosQueue(3), ActionMapToCpuCosQueue(3)));
}

TEST(FilterActions, CopyAndSwitchToCpuCancelDifferUnderOneCode)
{
    const ActionCopyToCpuCancel copy(COPY_TO_CPU_CANCEL);
    const ActionCopyToCpuCancel switching(SWITCH_TO_CPU_CANCEL);
    EXPECT_FALSE(copy == switching);
    EXPECT_FALSE(equal(copy, switching));
    EXPECT_EQ(copy.getType(), ACTION_COPY_TO_CPU_CANCEL);
    EXPECT_EQ(switching.getType(), ACTION_COPY_TO_CPU_CANCEL);
}

TEST(FilterActions, BlackHolesAreEqualPermitAndDenyAreNot)
{
    EXPECT_TRUE(equal(ActionBlackHole(), ActionBlackHole()));
    EXPECT_FALSE(equal(ActionPermit(), ActionDeny()));
    EXPECT_FALSE(ActionPermit() == ActionDeny());
}

} // namespace
} // namespace FiltersCommon
