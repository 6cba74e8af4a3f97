#include <policer_common.h>

#include <google/protobuf/unknown_field_set.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <set>
#include <string>
#include <type_traits>
#include <vector>

namespace policer {
namespace {

// ------------------------------------------------------------------------------------- vocabulary

template <class E>
constexpr bool isUnsigned32()
{
    return std::is_enum_v<E> && std::is_convertible_v<E, std::uint32_t> &&
           std::is_same_v<std::underlying_type_t<E>, std::uint32_t>;
}

static_assert(isUnsigned32<Stage>() && isUnsigned32<Mode::Type>());
static_assert(isUnsigned32<Action::Type>() && isUnsigned32<Action::Color>());
static_assert(STAGE_INGRESS == 0 && STAGE_EGRESS == 1 && STAGE_NONE == 2);
static_assert(Mode::SR_TCM == 0 && Mode::TR_TCM == 1 && Mode::TR_TCM_DS == 2);
static_assert(Mode::FLOW == 3 && Mode::NONE == 4);
static_assert(Action::DROP == 0 && Action::SET_PCP == 1 && Action::SET_DSCP == 2);
static_assert(Action::RED == 0 && Action::YELLOW == 1 && Action::GREEN == 2);
static_assert(Policer::INVALID_ID == 0xFFFFFFFF);

static_assert(std::is_default_constructible_v<Mode> && std::is_default_constructible_v<Policer>);
static_assert(!std::is_default_constructible_v<Action>);
static_assert(!std::is_convertible_v<std::string, Policer>);
static_assert(std::is_copy_constructible_v<Policer> && std::is_copy_assignable_v<Policer>);

template <class T, class R>
R resultOf(R (T::*)() const);

static_assert(std::is_same_v<decltype(resultOf(&Mode::GetType)), Mode::Type>);
static_assert(std::is_same_v<decltype(resultOf(&Mode::GetCir)), std::uint32_t>);
static_assert(std::is_same_v<decltype(resultOf(&Action::GetType)), Action::Type>);
static_assert(std::is_same_v<decltype(resultOf(&Action::GetColor)), Action::Color>);
static_assert(std::is_same_v<decltype(resultOf(&Action::GetPcp)), std::uint8_t>);
static_assert(std::is_same_v<decltype(resultOf(&Action::GetDscp)), std::uint8_t>);
static_assert(std::is_same_v<decltype(resultOf(&Policer::GetId)), std::uint32_t>);
static_assert(std::is_same_v<decltype(resultOf(&Policer::GetStage)), Stage>);
static_assert(std::is_same_v<decltype(resultOf(&Policer::GetMode)), const Mode&>);
static_assert(std::is_same_v<decltype(resultOf(&Policer::GetActions)), const std::set<Action>&>);
static_assert(std::is_same_v<decltype(resultOf(&Policer::Serialize)), std::string>);

// ------------------------------------------------------------------------------------------- mode

Mode::Rates unlikeRates()
{
    Mode::Rates rates;
    rates.cir = 1;
    rates.cbs = 0x200;
    rates.ebs = 0x30000;
    rates.eir = 0x4000000;
    rates.pbs = 0xFFFFFFFF;
    rates.pir = 6;
    return rates;
}

std::vector<std::uint32_t> ratesOf(const Mode& mode)
{
    return {mode.GetCir(), mode.GetCbs(), mode.GetEbs(),
            mode.GetEir(), mode.GetPbs(), mode.GetPir()};
}

TEST(PolicerMode, DefaultIsNoneWithRatesOfZero)
{
    EXPECT_EQ(Mode().GetType(), Mode::NONE);
    EXPECT_EQ(ratesOf(Mode()), std::vector<std::uint32_t>(6, 0));
    EXPECT_TRUE(Mode() == Mode(Mode::NONE, Mode::Rates()));
}

TEST(PolicerMode, KeepsTypeAndRates)
{
    const Mode mode(Mode::TR_TCM_DS, unlikeRates());
    EXPECT_EQ(mode.GetType(), Mode::TR_TCM_DS);
    EXPECT_EQ(ratesOf(mode),
              (std::vector<std::uint32_t>{1, 0x200, 0x30000, 0x4000000, 0xFFFFFFFF, 6}));
}

TEST(PolicerMode, KeepsATypeOutsideTheEnumeration)
{
    const Mode mode(static_cast<Mode::Type>(0xFFFFFFFF), Mode::Rates());
    EXPECT_EQ(static_cast<std::uint32_t>(mode.GetType()), 0xFFFFFFFF);
}

TEST(PolicerMode, ComparesTypeAndEveryRate)
{
    const Mode mode(Mode::FLOW, unlikeRates());
    EXPECT_TRUE(mode == Mode(Mode::FLOW, unlikeRates()));
    EXPECT_FALSE(mode != Mode(Mode::FLOW, unlikeRates()));
    EXPECT_FALSE(mode == Mode(Mode::NONE, unlikeRates()));
    EXPECT_TRUE(mode != Mode(Mode::NONE, unlikeRates()));
    using Rates = Mode::Rates;
    for (std::uint32_t Rates::*rate :
         {&Rates::cir, &Rates::cbs, &Rates::ebs, &Rates::eir, &Rates::pbs, &Rates::pir}) {
        Rates changed = unlikeRates();
        changed.*rate ^= 0x10000;
        EXPECT_FALSE(mode == Mode(Mode::FLOW, changed));
        EXPECT_TRUE(mode != Mode(Mode::FLOW, changed));
    }
}

// ----------------------------------------------------------------------------------------- action

TEST(PolicerAction, KeepsColorAndType)
{
    for (const auto color : {Action::RED, Action::YELLOW, Action::GREEN})
        for (const auto type : {Action::DROP, Action::SET_PCP, Action::SET_DSCP}) {
            const Action action(color, type, 5);
            EXPECT_EQ(action.GetColor(), color);
            EXPECT_EQ(action.GetType(), type);
        }
}

TEST(PolicerAction, ValueIsThatOfItsTypeAlone)
{
    EXPECT_EQ(Action(Action::RED, Action::SET_PCP, 200).GetPcp(), 200);
    EXPECT_EQ(Action(Action::RED, Action::SET_PCP, 200).GetDscp(), 0);
    EXPECT_EQ(Action(Action::RED, Action::SET_DSCP, 63).GetDscp(), 63);
    EXPECT_EQ(Action(Action::RED, Action::SET_DSCP, 63).GetPcp(), 0);
    EXPECT_EQ(Action(Action::RED, Action::DROP, 9).GetPcp(), 0);
    EXPECT_EQ(Action(Action::RED, Action::DROP, 9).GetDscp(), 0);
    EXPECT_EQ(Action(Action::RED, Action::SET_PCP).GetPcp(), 0);
}

TEST(PolicerAction, IsOrderedByColorThenTypeThenValue)
{
    const Action ascending[] = {
        {Action::RED, Action::DROP, 0},       {Action::RED, Action::DROP, 9},
        {Action::RED, Action::SET_PCP, 1},    {Action::RED, Action::SET_PCP, 200},
        {Action::RED, Action::SET_DSCP, 0},   {Action::YELLOW, Action::DROP, 0},
        {Action::YELLOW, Action::SET_PCP, 0}, {Action::YELLOW, Action::SET_DSCP, 7},
        {Action::GREEN, Action::DROP, 0},     {Action::GREEN, Action::SET_DSCP, 63},
    };
    for (std::size_t a = 0; a < std::size(ascending); ++a)
        for (std::size_t b = 0; b < std::size(ascending); ++b) {
            EXPECT_EQ(ascending[a] < ascending[b], a < b) << a << " " << b;
            EXPECT_EQ(ascending[a] == ascending[b], a == b) << a << " " << b;
            EXPECT_EQ(ascending[a] != ascending[b], a != b) << a << " " << b;
        }
}

// ---------------------------------------------------------------------------------------- policer

bool same(const Policer& a, const Policer& b)
{
    return a.GetId() == b.GetId() && a.GetStage() == b.GetStage() && a.GetMode() == b.GetMode() &&
           a.GetActions() == b.GetActions();
}

Policer fullPolicer()
{
    return {0x12345678,
            STAGE_EGRESS,
            Mode(Mode::TR_TCM, unlikeRates()),
            {Action(Action::GREEN, Action::SET_DSCP, 63), Action(Action::RED, Action::DROP),
             Action(Action::YELLOW, Action::SET_PCP, 7), Action(Action::YELLOW, Action::DROP, 9)}};
}

TEST(Policer, DefaultIsInvalidAndHoldsNothing)
{
    const Policer policer;
    EXPECT_EQ(policer.GetId(), 0xFFFFFFFF);
    EXPECT_EQ(policer.GetStage(), STAGE_NONE);
    EXPECT_TRUE(policer.GetMode() == Mode());
    EXPECT_TRUE(policer.GetActions().empty());
}

TEST(Policer, KeepsWhatItIsGiven)
{
    const Policer policer = fullPolicer();
    EXPECT_EQ(policer.GetId(), 0x12345678u);
    EXPECT_EQ(policer.GetStage(), STAGE_EGRESS);
    EXPECT_TRUE(policer.GetMode() == Mode(Mode::TR_TCM, unlikeRates()));
    EXPECT_EQ(policer.GetActions().size(), 4u);
    EXPECT_EQ(policer.GetActions().count(Action(Action::YELLOW, Action::DROP, 9)), 1u);
}

TEST(Policer, CopiesAreIndependent)
{
    Policer policer = fullPolicer();
    const Policer copy(policer);
    policer = Policer();
    EXPECT_TRUE(same(copy, fullPolicer()));
    EXPECT_TRUE(same(policer, Policer()));
    policer = copy;
    EXPECT_TRUE(same(policer, fullPolicer()));
}

TEST(Policer, IsRebuiltFromItsBytes)
{
    EXPECT_TRUE(same(Policer(fullPolicer().Serialize()), fullPolicer()));
    EXPECT_TRUE(same(Policer(Policer().Serialize()), Policer()));
    EXPECT_TRUE(same(Policer(Policer(0, STAGE_INGRESS, Mode(), {}).Serialize()),
                     Policer(0, STAGE_INGRESS, Mode(), {})));
}

TEST(Policer, IsRebuiltWithValuesOutsideTheEnumerations)
{
    const Policer policer(
        1, static_cast<Stage>(0xFFFFFFFF), Mode(static_cast<Mode::Type>(77), Mode::Rates()),
        {Action(static_cast<Action::Color>(9), static_cast<Action::Type>(8), 255)});
    EXPECT_TRUE(same(Policer(policer.Serialize()), policer));
}

TEST(Policer, EqualPolicersGiveEqualBytes)
{
    const Policer policer = fullPolicer();
    std::set<Action> actions;
    for (auto action = policer.GetActions().rbegin(); action != policer.GetActions().rend();
         ++action)
        actions.insert(*action);
    const Policer same(policer.GetId(), policer.GetStage(), policer.GetMode(), actions);
    EXPECT_EQ(same.Serialize(), policer.Serialize());
    EXPECT_EQ(Policer(policer.Serialize()).Serialize(), policer.Serialize());
}

TEST(Policer, DifferentPolicersGiveDifferentBytes)
{
    const Policer full = fullPolicer();
    const std::set<Action> fewer(std::next(full.GetActions().begin()), full.GetActions().end());
    const std::set<std::string> bytes = {
        full.Serialize(),
        Policer(0, full.GetStage(), full.GetMode(), full.GetActions()).Serialize(),
        Policer(full.GetId(), STAGE_NONE, full.GetMode(), full.GetActions()).Serialize(),
        Policer(full.GetId(), full.GetStage(), Mode(), full.GetActions()).Serialize(),
        Policer(full.GetId(), full.GetStage(), full.GetMode(), fewer).Serialize(),
        Policer().Serialize(),
    };
    EXPECT_EQ(bytes.size(), 6u);
}

TEST(Policer, BytesThatDoNotParseGiveTheDefault)
{
    for (const std::string& bytes : {std::string(), std::string("no policer"),
                                     std::string("\xFF\xFF\xFF"), std::string(3, '\0')})
        EXPECT_TRUE(same(Policer(bytes), Policer()));
}

TEST(Policer, NoCutOfItsBytesGivesAnythingButTheDefault)
{
    // Without its actions, which stand at the end, nothing of a policer may be missing.
    const std::string bytes =
        Policer(1, STAGE_INGRESS, Mode(Mode::FLOW, unlikeRates()), {}).Serialize();
    for (std::size_t size = 0; size < bytes.size(); ++size)
        EXPECT_TRUE(same(Policer(bytes.substr(0, size)), Policer())) << size;
}

TEST(Policer, BytesAreAMessage)
{
    google::protobuf::UnknownFieldSet fields;
    EXPECT_TRUE(fields.ParseFromString(fullPolicer().Serialize()));
    EXPECT_FALSE(fields.empty());
}

} // namespace
} // namespace policer
