#include "c_constructors.h"
#include "c_support.h"
#include "kind_codes.h"

#include "filter_actions.h"

#include <gtest/gtest.h>

#include <typeinfo>

namespace FiltersCommon {
namespace {

using test::ANY_LINE;
using test::BrokenContract;
using test::Handle;
using test::limId;
using test::mac;
using test::made;
using test::same;

constexpr limid_t PORTS[] = {limId(0, 3, 0, 7), limId(1, 0, 0, 2), limId(0, 3, 0, 7),
                             limId(255, 254, 253, 252)};

const ether_addr MAC = mac("02:10:20:30:40:f5");

// ----------------------------------------------------------------------------------- constructors

class ActionConstructor : public testing::TestWithParam<test::Constructor> {};

TEST_P(ActionConstructor, MakesANewObjectOfItsClassAndKind)
{
    const Handle<Action> action(static_cast<Action*>(GetParam().create()));
    const Handle<Action> another(static_cast<Action*>(GetParam().create()));
    const Action& object = *action;
    EXPECT_STREQ(typeid(object).name(), GetParam().type.name());
    EXPECT_EQ(actionGetType(action.get()), GetParam().kind);
    EXPECT_NE(action.get(), another.get());
    EXPECT_TRUE(*action == *another);
}

INSTANTIATE_TEST_SUITE_P(All, ActionConstructor, testing::ValuesIn(test::ACTION_CONSTRUCTORS),
                         test::nameOf<test::Constructor>);

TEST(ActionsC, PortsAreTakenInTheOrderOfTheArrayAsFarAsTheCount)
{
    for (std::uint32_t count = 0; count <= 4; ++count) {
        const auto action = made<ActionBlockEgressPorts>(newActionBlockEgressPorts(PORTS, count));
        EXPECT_TRUE(same(action->getPorts(), PORTS, count)) << count;
    }
}

TEST(ActionsC, PortsAreCopied)
{
    limid_t ports[] = {PORTS[0], PORTS[1]};
    const auto block = made<ActionBlockEgressPorts>(newActionBlockEgressPorts(ports, 2));
    const auto redirect = made<ActionRedirect>(newActionRedirect(ports));
    ports[0] = ports[1] = PORTS[3];
    EXPECT_TRUE(same(block->getPorts(), PORTS, 2));
    EXPECT_TRUE(same(redirect->getRedirectPorts(), PORTS, 1));
}

TEST(ActionsC, ARedirectHoldsTheOnePort)
{
    const auto action = made<ActionRedirect>(newActionRedirect(&PORTS[3]));
    EXPECT_TRUE(same(action->getRedirectPorts(), &PORTS[3], 1));
}

TEST(ActionsC, MacAddressesAreCopied)
{
    ether_addr address = MAC;
    const auto destination = made<ActionReplaceDstMac>(newReplaceDstMac(&address));
    const auto source = made<ActionReplaceSrcMac>(newReplaceSrcMac(&address));
    address = mac("ff:ff:ff:ff:ff:ff");
    EXPECT_TRUE(same(destination->getReplaceDstMac(), MAC));
    EXPECT_TRUE(same(source->getReplaceSrcMac(), MAC));
}

TEST(ActionsC, TheTwoCancelsHaveOneKindAndTwoValues)
{
    const auto copy = made<ActionCopyToCpuCancel>(newActionCopyToCpuCancel());
    EXPECT_EQ(copy->getCancelType(), COPY_TO_CPU_CANCEL);
    EXPECT_EQ(actionCopyToCpuCancelGetTypeOfCancel(copy.get()), COPY_TO_CPU_CANCEL);
    const auto change = made<ActionCopyToCpuCancel>(newActionSwitchToCpuCancel());
    EXPECT_EQ(change->getCancelType(), SWITCH_TO_CPU_CANCEL);
    EXPECT_EQ(actionCopyToCpuCancelGetTypeOfCancel(change.get()), SWITCH_TO_CPU_CANCEL);
}

TEST(ActionsC, NumbersAreNeitherCheckedNorCut)
{
    for (int number = 0; number < 256; ++number) {
        const auto value = static_cast<unsigned char>(number);
        EXPECT_EQ(made<ActionSetPcp>(newActionSetPcp(value))->getPcp(), number);
        EXPECT_EQ(made<ActionSetPcpAndQueue>(newActionSetPcpAndQueue(value))->getPcpAndQueue(),
                  number);
        EXPECT_EQ(made<ActionSetDSCP>(newActionSetDSCP(value))->getDSCP(), number);
        EXPECT_EQ(made<ActionMapToCosQueue>(newActionMapToCosQueue(value))->getCosQueue(), number);
        EXPECT_EQ(made<ActionMapToCpuCosQueue>(newActionMapToCpuCosQueue(value))->getCpuCosQueue(),
                  number);
    }
    for (const unsigned id : {0u, 0x12345678u, 0xFFFFFFFFu})
        EXPECT_EQ(made<ActionL3Switch>(newActionL3Switch(id))->getL3DestinationId(), id);
}

// ------------------------------------------------------------------------------------- any action

TEST(ActionsC, TheTypeIsThatOfTheObjectWhateverItIs)
{
    for (const std::uint32_t code : test::knownAndUnknownCodes(test::ACTION_KINDS)) {
        Action bare(static_cast<filtersAction_t>(code));
        EXPECT_EQ(static_cast<unsigned>(actionGetType(&bare)), code);
    }
}

TEST(ActionsC, DeletionRunsTheDestructorOfTheClass)
{
    int destroyed = 0;
    deleteAction(static_cast<Action*>(new test::Witness<ActionSetPcp>(destroyed)));
    EXPECT_EQ(destroyed, 1);
}

// ---------------------------------------------------------------------------------------- getters

TEST(ActionsC, GettersGiveTheValue)
{
    ActionSetPcp pcp(200);
    EXPECT_EQ(actionSetPcpGetPcp(&pcp), 200);
    ActionSetPcpAndQueue pcpAndQueue(201);
    EXPECT_EQ(actionSetPcpAndQueueGetPcpAndQueue(&pcpAndQueue), 201);
    ActionSetDSCP dscp(202);
    EXPECT_EQ(actionSetDSCPGetDSCP(&dscp), 202);
    ActionMapToCosQueue queue(203);
    EXPECT_EQ(actionMapToCosQueueGetCosQueue(&queue), 203);
    ActionL3Switch l3Switch(0x89ABCDEF);
    EXPECT_EQ(actionL3SwitchGetL3DestinationId(&l3Switch), 0x89ABCDEF);
    ActionCopyToCpuCancel cancel(static_cast<cp2cpuCancelParam_t>(0x12345678));
    EXPECT_EQ(actionCopyToCpuCancelGetTypeOfCancel(&cancel), 0x12345678);
}

// ------------------------------------------------------------------------------------- edge cases

TEST(ActionsC, SwitchToCpuCancelIsACopyToCpuCancelThatCancelsTheSwitching)
{
    const auto action = made<ActionCopyToCpuCancel>(newActionSwitchToCpuCancel());
    EXPECT_EQ(actionGetType(action.get()), ACTION_COPY_TO_CPU_CANCEL);
    EXPECT_EQ(actionCopyToCpuCancelGetTypeOfCancel(action.get()), SWITCH_TO_CPU_CANCEL);
}

TEST(ActionsC, NoPortsMayComeFromANullArray)
{
    const auto action = made<ActionBlockEgressPorts>(newActionBlockEgressPorts(nullptr, 0));
    EXPECT_TRUE(action->getPorts().empty());
}

// ----------------------------------------------------------------------------------- null handles

class ActionsCDeathTest : public test::ContractDeathTest {};

TEST_P(ActionsCDeathTest, ANullHandleIsReported) { expectReport("filter_actions_c.cpp"); }

const BrokenContract BROKEN[] = {
    {"deleteAction", ANY_LINE, "a != nullptr", "void FiltersCommon::deleteAction(void*)",
     [] { deleteAction(nullptr); }},
    {"actionGetType", ANY_LINE, "a != nullptr",
     "FiltersCommon::filtersAction_t FiltersCommon::actionGetType(void*)",
     [] { actionGetType(nullptr); }},
};
INSTANTIATE_TEST_SUITE_P(Null, ActionsCDeathTest, testing::ValuesIn(BROKEN),
                         test::nameOf<BrokenContract>);

} // namespace
} // namespace FiltersCommon
