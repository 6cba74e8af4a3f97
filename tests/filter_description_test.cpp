#include "filter_description.h"

#include "kind_codes.h"
#include "named_entries.h"

#include "filter_matches.pb.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace FiltersCommon::test {
namespace {

// ------------------------------------------------------------------------------------ as one line

std::string lineOf(const FiltersDescription& fields);

/** Puts texts into quotes, to tell them from numbers and truth values. */
struct Line {
    std::string operator()(std::int64_t number) const { return std::to_string(number); }
    std::string operator()(bool truth) const { return truth ? "true" : "false"; }
    std::string operator()(const std::string& text) const { return "'" + text + "'"; }
    std::string operator()(const std::vector<FiltersValue>& list) const
    {
        std::string line;
        for (const FiltersValue& element : list)
            line += (line.empty() ? "" : ", ") + std::visit(*this, element.value);
        return "[" + line + "]";
    }
    std::string operator()(const FiltersDescription& fields) const
    {
        return "{" + lineOf(fields) + "}";
    }
};

std::string lineOf(const FiltersDescription& fields)
{
    std::string line;
    for (const FiltersField& field : fields)
        line +=
            (line.empty() ? "" : ", ") + field.label + ": " + std::visit(Line(), field.value.value);
    return line;
}

// ------------------------------------------------------------------------------ matches, actions

template <class Base>
void expectDescriptions(const std::vector<Sample<Base>>& samples)
{
    for (const Sample<Base>& sample : samples)
        EXPECT_EQ(lineOf(describe(*sample.object)), sample.expected.description) << sample.name;
}

TEST(Descriptions, OfEveryFormOfEachClass)
{
    expectDescriptions(matchSamples());
    expectDescriptions(actionSamples());
}

TEST(Descriptions, OfPortsBesideExcludedTypes)
{
    MatchPB pb; // a message may hold both
    pb.add_ports_(0x01020304);
    pb.add_excluded_port_types_(6);
    MatchIngressPorts match;
    match.convertFromMatchPB(&pb);
    EXPECT_EQ(lineOf(describe(match)), "LIMIDs: ['lag772'], Excluded Port Types: [6]");
}

TEST(Descriptions, OfUnnamedEnumerators)
{
    EXPECT_EQ(lineOf(describe(ActionCopyToCpuCancel(static_cast<cp2cpuCancelParam_t>(-7)))),
              "Cp2CPU Cancel type: -7");
}

TEST(Descriptions, OfObjectsThatLieAboutTheirKind)
{
    for (std::uint32_t code = 0; code < MATCH_KINDS; ++code)
        EXPECT_TRUE(describe(Match(static_cast<filtersMatch_t>(code))).empty()) << code;
    for (const std::uint32_t code : unknownCodes(MATCH_KINDS))
        EXPECT_TRUE(describe(Match(static_cast<filtersMatch_t>(code))).empty()) << code;
    for (std::uint32_t code = 0; code < ACTION_KINDS; ++code)
        EXPECT_TRUE(describe(Action(static_cast<filtersAction_t>(code))).empty()) << code;
    for (const std::uint32_t code : unknownCodes(ACTION_KINDS))
        EXPECT_TRUE(describe(Action(static_cast<filtersAction_t>(code))).empty()) << code;
    // These kinds take their values from the family.
    EXPECT_EQ(lineOf(describe(static_cast<const Match&>(MatchL4Port(MATCH_DST_L4_PORT, 7)))),
              "Port: 7, Mask: 65535");
    EXPECT_EQ(lineOf(describe(static_cast<const Action&>(
                  ActionPorts(ACTION_BLOCK_EGRESS_PORTS, {limId(1, 2, 3, 4)})))),
              "LIMIDs: ['lag772']");
}

// ----------------------------------------------------------------------------- counters, policers

TEST(Descriptions, OfCounters)
{
    EXPECT_EQ(lineOf(describe(Counter(12, COUNTER_TYPE_OCTETS))), "ID: 12, Type: 'Octets'");
    EXPECT_EQ(lineOf(describe(Counter(3, COUNTER_TYPE_PACKETS))), "ID: 3, Type: 'Packets'");
    EXPECT_EQ(lineOf(describe(Counter())), "ID: 0, Type: 'Invalid'");
    EXPECT_EQ(lineOf(describe(Counter(65535, static_cast<counter_type_t>(-1)))),
              "ID: 65535, Type: -1");
}

TEST(Descriptions, OfPolicers)
{
    EXPECT_EQ(lineOf(describe(policer::Policer())),
              "Policer Id: 'Invalid', Stage: 'None', Mode: 'None', Actions: []");
    const auto unnamed = static_cast<policer::Action::Type>(5);
    EXPECT_EQ(
        lineOf(describe(policer::Policer(
            4294967294, static_cast<policer::Stage>(5),
            policer::Mode(static_cast<policer::Mode::Type>(7), {0, 0, 0, 4, 0, 0}),
            {policer::Action(static_cast<policer::Action::Color>(4), unnamed, 9)}))),
        "Policer Id: 4294967294, Stage: 5, Mode: 7, EIR: 4, Actions: [{Color: 4, Action: 5}]");
}

TEST(Descriptions, OfPolicersOfEachMode)
{
    const std::string actions = "Actions: [{Color: 'Red', Action: 'Drop'}, "
                                "{Color: 'Yellow', Action: 'Set PCP', PCP: 3}, "
                                "{Color: 'Green', Action: 'Set DSCP', DSCP: 46}]";
    const std::map<policer::Mode::Type, std::string> modes = {
        {policer::Mode::SR_TCM, "'SrTcm', CIR: 0, CBS: 0, EBS: 0"},
        {policer::Mode::TR_TCM, "'TrTcm', CIR: 0, CBS: 0, PBS: 0, PIR: 0"},
        {policer::Mode::TR_TCM_DS, "'TrTcmDs', CIR: 0, CBS: 0, EBS: 0, EIR: 0"},
        {policer::Mode::FLOW, "'Flow', CIR: 0, CBS: 0"},
        {policer::Mode::NONE, "'None'"},
    };
    for (const auto& [type, mode] : modes)
        EXPECT_EQ(lineOf(describe(policer::Policer(17, policer::STAGE_EGRESS, {type, {}}, {}))),
                  "Policer Id: 17, Stage: 'Egress', Mode: " + mode + ", Actions: []");
    // Rates that the mode does not use are listed if they are not 0.
    EXPECT_EQ(lineOf(describe(policerOf(policer::STAGE_INGRESS, policer::Mode::FLOW))),
              "Policer Id: 17, Stage: 'Ingress', Mode: 'Flow', CIR: 1000, CBS: 2000, EBS: 3000, "
              "EIR: 4000, PBS: 5000, PIR: 6000, " +
                  actions);
}

} // namespace
} // namespace FiltersCommon::test
