#include "kind_codes.h"
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

/** The dump of an action: the title, the line of the type, and the parameters. */
std::string dumpOf(const std::string& name, int type, const std::string& parameters)
{
    return eol("    =" + name + "=") + eol("      Action Type ID: " + std::to_string(type)) +
           parameters;
}

const std::string NONE = eol("      <no parameters>");

/** The dump of a sample by the operator of its own class. */
std::string expectedDump(const Sample<Action>& sample)
{
    return dumpOf(sample.className(), sample.expected.code, sample.expected.valueLines);
}

class EveryAction : public testing::TestWithParam<Sample<Action>> {};

INSTANTIATE_TEST_SUITE_P(Samples, EveryAction, testing::ValuesIn(actionSamples()), BY_NAME);

TEST_P(EveryAction, IsDumpedByItsOwnOperator)
{
    MarkedStream out;
    const std::ostream& returned = GetParam().print(out);
    EXPECT_EQ(out.text(), expectedDump(GetParam()));
    EXPECT_EQ(&returned, &out);
}

TEST_P(EveryAction, IsDumpedTheSameThroughTheBase)
{
    MarkedStream out;
    const std::ostream& returned = out << *GetParam().object;
    EXPECT_EQ(out.text(), expectedDump(GetParam()));
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
    EXPECT_EQ(markedDump(ActionPorts(UNKNOWN_ACTION, {})),
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
    for (const Sample<Action>& sample : actionSamples()) {
        const auto& [code, fields, valueLines, description] = sample.expected;
        EXPECT_EQ(markedDump(Action(static_cast<filtersAction_t>(code))),
                  dumpOf(sample.className(), code, valueLines == NONE ? NONE : ""));
    }
    for (const std::uint32_t code : unknownCodes(ACTION_KINDS))
        EXPECT_EQ(markedDump(Action(static_cast<filtersAction_t>(code))), "") << code;
}

TEST(BareActions, BeyondTheKindsStillGiveTheStreamBack)
{
    std::ostringstream out;
    out << Action(UNKNOWN_ACTION) << "behind";
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

/** The operator is in the counter's namespace, where callers find it by its argument. */
static_assert(std::is_same_v<
              decltype(FiltersCommon::operator<<(std::declval<std::ostream&>(),
                                                 std::declval<const FiltersCommon::Counter&>())),
              std::ostream&>);
