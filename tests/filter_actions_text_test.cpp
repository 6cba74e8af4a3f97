#include "named_samples.h"
#include "text_support.h"

#include <gtest/gtest.h>

#include <iomanip>
#include <map>
#include <sstream>
#include <string>
#include <type_traits>
#include <utility>

namespace {

using namespace FiltersCommon;
using namespace FiltersCommon::test;

/** The dump of an action: title and type line, and behind them its parameter part. */
std::string dumpOf(const std::string& name, int type, const std::string& parameters)
{
    return eol("    =" + name + "=") + eol("      Action Type ID: " + std::to_string(type)) +
           parameters;
}

const std::string NONE = eol("      <no parameters>");

/** The dump of each sample by the operator of its own class. */
std::string expectedDump(const std::string& sample)
{
    const std::string noPorts = eol("      Number of ports: 0") + eol("      LIMIDs: ");
    const std::string threePorts =
        eol("      Number of ports: 3") + eol("      LIMIDs: \"eth2/3\" \"lag772\" \"eth2/3\" ");
    const std::map<std::string, std::string> dumps = {
        {"ActionPermit", dumpOf("ActionPermit", 0, NONE)},
        {"ActionDeny", dumpOf("ActionDeny", 1, NONE)},
        {"ActionCopyToCpu", dumpOf("ActionCopyToCpu", 2, NONE)},
        {"ActionBlockEgressPorts", dumpOf("ActionBlockEgressPorts", 3, threePorts + eol(""))},
        {"ActionBlockEgressPorts_none", dumpOf("ActionBlockEgressPorts", 3, noPorts + eol(""))},
        {"ActionCopyToCpuCancel",
         dumpOf("ActionCopyToCpuCancel", 4, eol("      Cp2CPU Cancel type: COPY_TO_CPU_CANCEL"))},
        {"ActionCopyToCpuCancel_switch",
         dumpOf("ActionCopyToCpuCancel", 4, eol("      Cp2CPU Cancel type: SWITCH_TO_CPU_CANCEL"))},
        {"ActionSetPcp", dumpOf("ActionSetPcp", 5, eol("      PCP: 7"))},
        {"ActionSetPcp_wide", dumpOf("ActionSetPcp", 5, eol("      PCP: 200"))},
        {"ActionSetPcpAndQueue", dumpOf("ActionSetPcpAndQueue", 6, eol("      PCP_AND_QUEUE: 66"))},
        {"ActionSetInnerPcp", dumpOf("ActionSetInnerPcp", 7, eol("      Inner PCP: 3"))},
        {"ActionSetDSCP", dumpOf("ActionSetDSCP", 8, eol("      DSCP: 46"))},
        {"ActionMapToCosQueue", dumpOf("ActionMapToCosQueue", 9, eol("      CoS Queue: 0"))},
        {"ActionMapToCpuCosQueue",
         dumpOf("ActionMapToCpuCosQueue", 10, eol("      CPU CoS Queue: 255"))},
        {"ActionRedirect", dumpOf("ActionRedirect", 11, eol("      \"lag772\" "))},
        {"ActionRedirect_several",
         dumpOf("ActionRedirect", 11, eol("      \"eth2/3\"       \"lag772\"       \"eth2/3\" "))},
        {"ActionRedirect_none", dumpOf("ActionRedirect", 11, eol(""))},
        {"ActionReplaceDstMac",
         dumpOf("ActionReplaceDstMac", 12, eol("      Replace MAC: 0:1a:2b:0:0:1"))},
        {"ActionRedirectCancel", dumpOf("ActionRedirectCancel", 13, NONE)},
        {"ActionReplaceSrcMac",
         dumpOf("ActionReplaceSrcMac", 14, eol("      Replace MAC: fe:dc:ba:98:76:54"))},
        {"ActionL3Switch",
         dumpOf("ActionL3Switch", 15, eol("      L3 Destination ID: 4000000000"))},
        {"ActionBlackHole", dumpOf("ActionBlackHole", 16, NONE)},
    };
    return dumps.at(sample);
}

class EveryAction : public testing::TestWithParam<Sample<Action>> {};

INSTANTIATE_TEST_SUITE_P(Samples, EveryAction, testing::ValuesIn(actionSamples()), BY_NAME);

TEST_P(EveryAction, IsDumpedByItsOwnOperator)
{
    MarkedStream out;
    const std::ostream& returned = GetParam().print(out);
    EXPECT_EQ(out.text(), expectedDump(GetParam().name));
    EXPECT_EQ(&returned, &out);
}

TEST_P(EveryAction, IsDumpedTheSameThroughTheBase)
{
    MarkedStream out;
    const std::ostream& returned = out << *GetParam().object;
    EXPECT_EQ(out.text(), expectedDump(GetParam().name));
    EXPECT_EQ(&returned, &out);
}

TEST_P(EveryAction, LeavesTheStreamsFormattingAsItWas)
{
    std::ostringstream out;
    out << std::hex << std::boolalpha << std::setfill('*');
    out.precision(3);
    const auto before = out.flags();
    GetParam().print(out);
    EXPECT_EQ(out.flags(), before);
    EXPECT_EQ(out.fill(), '*');
    EXPECT_EQ(out.precision(), 3);
    EXPECT_EQ(out.width(), 0);
}

TEST(PortLists, AreDumpedAsTheLinesOfTheirPortsAlone)
{
    EXPECT_EQ(markedDump(ActionPorts(ACTION_BLOCK_EGRESS_PORTS, {limId(3, 1, 0, 0)})),
              eol("      Number of ports: 1") + eol("      LIMIDs: \"cpu1\" "));
    EXPECT_EQ(markedDump(ActionPorts(static_cast<filtersAction_t>(99), {})),
              eol("      Number of ports: 0") + eol("      LIMIDs: "));

    const ActionBlockEgressPorts block({limId(3, 1, 0, 0)});
    EXPECT_EQ(markedDump(static_cast<const ActionPorts&>(block)),
              eol("      Number of ports: 1") + eol("      LIMIDs: \"cpu1\" "));
}

TEST(ActionDumps, LeaveACancelTypeOutsideTheTableWithoutAName)
{
    for (const int type : {2, 3, 1000, -1}) {
        const ActionCopyToCpuCancel action(static_cast<cp2cpuCancelParam_t>(type));
        EXPECT_EQ(markedDump(action),
                  dumpOf("ActionCopyToCpuCancel", 4, eol("      Cp2CPU Cancel type: ")));
    }
}

// ----------------------------------------------------------------------- formatting of the stream

TEST(ActionDumps, WriteTheirNumbersInTheBaseOfTheStream)
{
    const auto hexDump = [](const Action& action) {
        MarkedStream out;
        out << std::hex << action;
        return out.text();
    };
    EXPECT_EQ(hexDump(ActionMapToCpuCosQueue(31)), eol("    =ActionMapToCpuCosQueue=") +
                                                       eol("      Action Type ID: a") +
                                                       eol("      CPU CoS Queue: 1f"));
    EXPECT_EQ(hexDump(ActionL3Switch(4000000000)), eol("    =ActionL3Switch=") +
                                                       eol("      Action Type ID: f") +
                                                       eol("      L3 Destination ID: ee6b2800"));
    EXPECT_EQ(hexDump(ActionSetPcp(200)), dumpOf("ActionSetPcp", 5, eol("      PCP: c8")));
    EXPECT_NE(hexDump(ActionBlockEgressPorts(std::list<limid_t>(16, limId(3, 0, 0, 0))))
                  .find(eol("      Number of ports: 10")),
              std::string::npos);
}

TEST(ActionDumps, ApplyAWidthToTheirTitleAlone)
{
    std::ostringstream out;
    out << std::setw(20) << std::setfill('.') << ActionDeny();
    EXPECT_EQ(out.str(), "....    =ActionDeny=\n"
                         "      Action Type ID: 1\n"
                         "      <no parameters>\n");
}

// -------------------------------------------------------------- objects that lie about their kind

TEST(BareActions, AreDumpedWithoutParametersAndNotAtAllBeyondTheKinds)
{
#define NAME(kind, Class, Values) #Class,
    const char* const names[] = {FILTERS_COMMON_EACH_ACTION_KIND(NAME)};
#undef NAME
    for (int code = 0; code < 17; ++code) {
        const std::string dump = expectedDump(names[code]);
        const bool isWithoutParameters = dump.find(NONE) != std::string::npos;
        EXPECT_EQ(markedDump(Action(static_cast<filtersAction_t>(code))),
                  dumpOf(names[code], code, isWithoutParameters ? NONE : ""));
    }
    for (const std::uint32_t code : {17u, 31u, 32u, 33u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu})
        EXPECT_EQ(markedDump(Action(static_cast<filtersAction_t>(code))), "") << code;
}

TEST(BareActions, BeyondTheKindsStillGiveTheStreamBack)
{
    std::ostringstream out;
    out << Action(static_cast<filtersAction_t>(17)) << "behind";
    EXPECT_EQ(out.str(), "behind");
}

TEST(ActionsOfAnotherClass, AreDumpedWithoutParameters)
{
    class Custom : public Action {
    public:
        using Action::Action;
    };
    const Custom custom(ACTION_REDIRECT);
    const Action& action = custom;
    EXPECT_EQ(markedDump(action), dumpOf("ActionRedirect", 11, ""));

    const ActionPorts ports(ACTION_BLOCK_EGRESS_PORTS, {limId(0, 0, 0, 1)});
    const Action& bare = ports;
    EXPECT_EQ(markedDump(bare), dumpOf("ActionBlockEgressPorts", 3, ""));
}

// ---------------------------------------------------------------------------------------- counter

TEST(CounterDump, IsTwoLinesOfWhichTheLastHasNoEndAndNoneIsFlushed)
{
    EXPECT_EQ(markedDump(Counter(12, COUNTER_TYPE_OCTETS)), "ID: 12\nType: Octets");
    EXPECT_EQ(markedDump(Counter(65535, COUNTER_TYPE_PACKETS)), "ID: 65535\nType: Packets");
    EXPECT_EQ(markedDump(Counter()), "ID: 0\nType: Invalid");
}

TEST(CounterDump, NamesOtherTypesUnknown)
{
    for (const int type : {3, 7, 1000, -1})
        EXPECT_EQ(markedDump(Counter(1, static_cast<counter_type_t>(type))),
                  "ID: 1\nType: Unknown");
}

TEST(CounterDump, AppliesTheWidthOnEntryToBothLines)
{
    std::ostringstream right;
    right << std::setw(10) << std::setfill('.') << Counter(12, COUNTER_TYPE_OCTETS) << 5;
    EXPECT_EQ(right.str(), "......ID: 12\n....Type: Octets5");
    EXPECT_EQ(right.width(), 0);

    std::ostringstream left;
    left << std::left << std::setw(8) << std::setfill('.') << Counter(12, COUNTER_TYPE_OCTETS);
    EXPECT_EQ(left.str(), "ID: ....12\nType: ..Octets");
}

TEST(CounterDump, WritesTheIdentifierInTheBaseOfTheStream)
{
    std::ostringstream out;
    out << std::hex << Counter(255, COUNTER_TYPE_PACKETS);
    EXPECT_EQ(out.str(), "ID: ff\nType: Packets");
}

TEST(CounterDump, GivesTheStreamBack)
{
    std::ostringstream out;
    EXPECT_EQ(&(out << Counter()), &out);
}

} // namespace

/** The operator stands in the namespace of the counter, where a caller finds it by its argument. */
static_assert(std::is_same_v<
              decltype(FiltersCommon::operator<<(std::declval<std::ostream&>(),
                                                 std::declval<const FiltersCommon::Counter&>())),
              std::ostream&>);
