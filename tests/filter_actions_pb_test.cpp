#include "kind_codes.h"
#include "named_samples.h"
#include "wire_support.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <typeinfo>

namespace {

using namespace FiltersCommon;
using namespace FiltersCommon::test;

class EveryAction : public testing::TestWithParam<Sample<Action>> {};

INSTANTIATE_TEST_SUITE_P(Samples, EveryAction, testing::ValuesIn(actionSamples()), BY_NAME);

TEST_P(EveryAction, WritesExactlyItsFields)
{
    EXPECT_TRUE(isMessage(written(*GetParam().object), GetParam().message()));
}

TEST_P(EveryAction, IsRebuiltByTheEntryAsTheClassOfItsKind)
{
    const Action& action = *GetParam().object;
    FiltersEntryPB pb;
    action.convertToActionPB(pb.add_actions_());
    FiltersEntry entry;
    entry.convertFromFiltersEntryPB(&pb);

    ASSERT_EQ(entry.getActionsRef().size(), 1u);
    const Action& rebuilt = *entry.getActionsRef().find(action.getType())->second;
    EXPECT_TRUE(rebuilt == action);
    EXPECT_EQ(typeid(rebuilt), typeid(action));
}

TEST(ActionSamples, NameEveryClass)
{
    const std::set<std::string> named = classesOf(actionSamples());
    for (const std::string& className : actionClasses())
        EXPECT_EQ(named.count(className), 1u) << "named_samples.cpp lacks " << className;
    EXPECT_EQ(named.size(), actionClasses().size());
}

void expectReadings(const std::vector<Reading>& readings)
{
    test::expectReadings(actionSamples(), readings);
}

TEST(ActionMessages, ReadAMissingFieldAsZero)
{
    expectReadings({
        {"ActionCopyToCpuCancel_switch", "type_: 4", "type_: 4 cp2cpu_cancel_type_: 0"},
        {"ActionSetPcp", "type_: 5", "type_: 5 pcp_: 0"},
        {"ActionSetPcpAndQueue", "type_: 6", "type_: 6 pcp_and_queue_: 0"},
        {"ActionSetInnerPcp", "type_: 7", "type_: 7 pcp_: 0"},
        {"ActionSetDSCP", "type_: 8", "type_: 8 dscp_: 0"},
        {"ActionMapToCosQueue", "type_: 9", "type_: 9 cosq_: 0"},
        {"ActionMapToCpuCosQueue", "type_: 10", "type_: 10 cosq_: 0"},
        {"ActionRedirect", "type_: 11", "type_: 11"},
        {"ActionReplaceDstMac", "type_: 12", R"(type_: 12 mac_: "\0\0\0\0\0\0")"},
        {"ActionReplaceSrcMac", "type_: 14", R"(type_: 14 mac_: "\0\0\0\0\0\0")"},
        {"ActionL3Switch", "type_: 15", "type_: 15 l3_dest_id_: 0"},
    });
}

TEST(ActionMessages, CutNumbersToTheWidthOfTheMember)
{
    expectReadings({
        {"ActionSetPcp", "pcp_: 260", "type_: 5 pcp_: 4"},
        {"ActionSetPcpAndQueue", "pcp_and_queue_: 0x1ff", "type_: 6 pcp_and_queue_: 0xff"},
        {"ActionSetInnerPcp", "pcp_: 0xffffff00", "type_: 7 pcp_: 0"},
        {"ActionSetDSCP", "dscp_: 0x12345", "type_: 8 dscp_: 0x45"},
        {"ActionMapToCosQueue", "cosq_: 257", "type_: 9 cosq_: 1"},
        {"ActionMapToCpuCosQueue", "cosq_: 511", "type_: 10 cosq_: 255"},
    });
}

TEST(ActionMessages, KeepAll32BitsOfTheCancelTypeAndOfTheDestination)
{
    expectReadings({
        {"ActionCopyToCpuCancel", "cp2cpu_cancel_type_: 0xfedcba98",
         "type_: 4 cp2cpu_cancel_type_: 0xfedcba98"},
        {"ActionL3Switch", "l3_dest_id_: 0xfedcba98", "type_: 15 l3_dest_id_: 0xfedcba98"},
    });
}

TEST(ActionMessages, FillAShortMacUpWithZerosAndCutALongOne)
{
    expectReadings({
        {"ActionReplaceDstMac", R"(mac_: "\x01\x02\x03\x04\x05")",
         R"(type_: 12 mac_: "\x01\x02\x03\x04\x05\0")"},
        {"ActionReplaceSrcMac", R"(mac_: "\x01")", R"(type_: 14 mac_: "\x01\0\0\0\0\0")"},
        {"ActionReplaceDstMac", R"(mac_: "1234567")", R"(type_: 12 mac_: "123456")"},
        {"ActionReplaceSrcMac", R"(mac_: "12345678901234567890")", R"(type_: 14 mac_: "123456")"},
    });
}

TEST(ActionMessages, WriteAMacOfExactlySixBytes)
{
    EXPECT_EQ(written(ActionReplaceSrcMac(mac("0:0:0:0:0:0"))).mac_().size(), 6u);
    EXPECT_EQ(written(ActionReplaceDstMac(mac("0:0:0:0:0:0"))).mac_().size(), 6u);
}

TEST(ActionMessages, NeverChangeTheKindByReading)
{
    for (const Sample<Action>& sample : actionSamples()) {
        const std::unique_ptr<Action> action = sample.copy();
        const ActionPB other = message<ActionPB>("type_: 77");
        action->convertFromActionPB(&other);
        EXPECT_EQ(action->getType(), sample.object->getType()) << sample.name;
    }
}

TEST(ActionMessages, OverwriteTheParametersOfAKindThatHoldsNoPortList)
{
    expectOverwritten(actionSamples(), {"ActionBlockEgressPorts"});
}

TEST(ActionMessages, OfPcpAndInnerPcpDifferInTheirTypeAlone)
{
    ActionPB inner = written(ActionSetInnerPcp(3));
    inner.set_type_(ACTION_SET_PCP);
    EXPECT_EQ(bytesOf(inner), bytesOf(written(ActionSetPcp(3))));
}

TEST(ActionMessages, OfCosQueueAndCpuCosQueueDifferInTheirTypeAlone)
{
    ActionPB cpu = written(ActionMapToCpuCosQueue(3));
    cpu.set_type_(ACTION_MAP_TO_COS_QUEUE);
    EXPECT_EQ(bytesOf(cpu), bytesOf(written(ActionMapToCosQueue(3))));
}

// ------------------------------------------------------------------------------------------ ports

TEST(ActionMessages, PackAPortWithItsFirstByteMostSignificant)
{
    const ActionPB pb = written(ActionRedirect(limId(1, 2, 3, 4)));
    ASSERT_EQ(pb.ports__size(), 1);
    EXPECT_EQ(pb.ports_(0), 16909060u);

    ActionRedirect copy(limId(9, 9, 9, 9));
    copy.convertFromActionPB(&pb);
    EXPECT_TRUE(copy == ActionRedirect(limId(1, 2, 3, 4)));
}

TEST(ActionMessages, AppendPortsToThoseOfTheMessage)
{
    ActionPB pb = message<ActionPB>("ports_: 9");
    ActionBlockEgressPorts({limId(0, 0, 0, 1), limId(0, 0, 0, 2)}).convertToActionPB(&pb);
    EXPECT_TRUE(isMessage(pb, "type_: 3 ports_: [9, 1, 2]"));
    ActionRedirect(limId(0, 0, 0, 3)).convertToActionPB(&pb);
    EXPECT_TRUE(isMessage(pb, "type_: 11 ports_: [9, 1, 2, 3]"));
}

TEST(ActionMessages, AppendThePortsOfABlockAndReplaceThoseOfARedirect)
{
    const ActionPB pb = message<ActionPB>("ports_: [10, 11]");
    ActionBlockEgressPorts block({limId(0, 0, 0, 12)});
    block.convertFromActionPB(&pb);
    EXPECT_TRUE(isMessage(written(block), "type_: 3 ports_: [12, 10, 11]"));

    ActionRedirect redirect(limId(0, 0, 0, 12));
    redirect.convertFromActionPB(&pb);
    EXPECT_TRUE(isMessage(written(redirect), "type_: 11 ports_: [10, 11]"));
}

TEST(ActionMessages, EncodeNoPortsFieldForAnEmptyList)
{
    EXPECT_EQ(bytesOf(written(ActionBlockEgressPorts({}))), "\x08\x03");
    EXPECT_EQ(bytesOf(written(redirectTo({}))), "\x08\x0b");
}

// ----------------------------------------------------------------------------------- base classes

TEST(ActionMessages, OfAnActionWithoutParametersAreItsTypeAlone)
{
    EXPECT_EQ(bytesOf(written(ActionBlackHole())), "\x08\x10");
    EXPECT_TRUE(written(ActionPermit()).IsInitialized());
    EXPECT_EQ(bytesOf(written(ActionPermit())), std::string("\x08\x00", 2));
}

TEST(ActionMessages, OfABareActionHoldItsTypeAlone)
{
    for (const std::uint32_t code : knownAndUnknownCodes(ACTION_KINDS)) {
        const Action action(static_cast<filtersAction_t>(code));
        EXPECT_TRUE(isMessage(written(action), "type_: " + std::to_string(code)));
    }
}

TEST(ActionMessages, LeaveABareActionAsItIs)
{
    const ActionPB pb = message<ActionPB>("type_: 5 pcp_: 7");
    Action action(ACTION_SET_PCP);
    action.convertFromActionPB(&pb);
    EXPECT_TRUE(isMessage(written(action), "type_: 5"));
}

TEST(ActionMessages, OfABarePortListHoldItsTypeAlone)
{
    ActionPorts action(ACTION_BLOCK_EGRESS_PORTS, {limId(0, 0, 0, 1)});
    EXPECT_TRUE(isMessage(written(action), "type_: 3"));

    const ActionPB pb = message<ActionPB>("type_: 3 ports_: 7");
    action.convertFromActionPB(&pb);
    EXPECT_EQ(action.getPorts().size(), 1u);
}

// ---------------------------------------------------------------------------------------- counter

Counter readCounter(const std::string& text) { return Counter(message<CounterPB>(text)); }

TEST(CounterMessages, HoldBothFieldsAlsoOfADefaultCounter)
{
    EXPECT_TRUE(isMessage(written(Counter()), "id: 0 type: 0"));
    EXPECT_TRUE(isMessage(written(Counter(12, COUNTER_TYPE_PACKETS)), "id: 12 type: 1"));
    EXPECT_TRUE(isMessage(written(Counter(65535, COUNTER_TYPE_OCTETS)), "id: 65535 type: 2"));
    EXPECT_TRUE(isMessage(written(Counter(1, static_cast<counter_type_t>(-7))), "id: 1 type: -7"));
}

TEST(CounterMessages, OverwriteTheFieldsOfTheMessage)
{
    CounterPB pb = message<CounterPB>("id: 3 type: 2");
    Counter().Serialize(&pb);
    EXPECT_TRUE(isMessage(pb, "id: 0 type: 0"));
}

TEST(CounterMessages, GiveBackTheLargestIdentifier)
{
    const Counter counter(65535, COUNTER_TYPE_OCTETS);
    EXPECT_TRUE(Counter(written(counter)) == counter);
}

TEST(CounterMessages, KeepTheLow16BitsOfTheIdentifier)
{
    EXPECT_EQ(readCounter("id: 65536 type: 1").GetId(), 0);
    EXPECT_EQ(readCounter("id: 70000 type: 1").GetId(), 4464);
    EXPECT_EQ(readCounter("id: -1 type: 1").GetId(), 65535);
    EXPECT_EQ(readCounter("id: -2147483648 type: 1").GetId(), 0);
}

TEST(CounterMessages, KeepTheTypeAsItStands)
{
    for (const int type : {0, 1, 2, 3, 7, 65536, -1, 2147483647, -2147483647})
        EXPECT_EQ(readCounter("id: 1 type: " + std::to_string(type)).GetType(), type);
}

TEST(CounterMessages, ReadMissingFieldsAsADefaultCounter)
{
    EXPECT_TRUE(readCounter("") == Counter());
    EXPECT_TRUE(readCounter("type: 2") == Counter(0, COUNTER_TYPE_OCTETS));
}

} // namespace
