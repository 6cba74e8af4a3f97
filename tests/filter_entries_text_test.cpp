#include "named_entries.h"
#include "text_support.h"

#include "filter_groups.pb.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <iomanip>
#include <locale>
#include <sstream>
#include <string>

namespace {

using namespace FiltersCommon;
using namespace FiltersCommon::test;
using policer::Mode;
using policer::Policer;

/** The lines that every entry begins with. */
std::string head(const std::string& id, const std::string& priority)
{
    return eol("  =FiltersEntry=") + eol("    ID: " + id) + eol("    Priority: " + priority);
}

FiltersEntry withPolicer(const Policer& policer)
{
    FiltersEntry entry;
    entry.setPolicer(policer);
    return entry;
}

/** A policer block; each line of @p actions follows a line end. */
std::string policerBlock(const std::string& id, const std::string& stage, const std::string& mode,
                         const std::string& actions)
{
    return eol("  =Policer=") + nl("    Policer Id: " + id) + nl("    Stage: " + stage) +
           nl("    Mode: " + mode) + eol("    Actions:" + actions);
}

// --------------------------------------------------------------------------------- entry, counter

TEST(EntryDump, OfAnEmptyEntryIsThreeLines)
{
    EXPECT_EQ(markedDump(FiltersEntry()), head("0", "0"));
}

TEST(EntryDump, WritesIdentifierAndPriorityUnsigned)
{
    FiltersEntry entry(65535);
    entry.setPriority(4294967295);
    EXPECT_EQ(markedDump(entry), head("65535", "4294967295"));
}

TEST(EntryDump, GivesTheStreamBack)
{
    std::ostringstream out;
    EXPECT_EQ(&(out << FiltersEntry()), &out);
}

TEST(EntryDump, ShowsACounterUnlessItsTypeIsInvalid)
{
    FiltersEntry entry;
    entry.setCounter(Counter(12, COUNTER_TYPE_OCTETS));
    EXPECT_EQ(markedDump(entry),
              head("0", "0") + eol("  =Counter=") + nl("ID: 12") + eol("Type: Octets"));

    entry.setCounter(Counter(65535, static_cast<counter_type_t>(-1)));
    EXPECT_EQ(markedDump(entry),
              head("0", "0") + eol("  =Counter=") + nl("ID: 65535") + eol("Type: Unknown"));

    entry.deleteCounter();
    EXPECT_EQ(markedDump(entry), head("0", "0"));
}

TEST(EntryDump, LeavesACounterOfInvalidTypeOutWhateverItsIdentifier)
{
    FiltersEntryPB pb;
    pb.mutable_counter_()->set_id(5);
    FiltersEntry entry;
    entry.convertFromFiltersEntryPB(&pb);
    ASSERT_EQ(entry.getCounter().GetId(), 5);
    EXPECT_EQ(markedDump(entry), head("0", "0"));
}

// ---------------------------------------------------------------------------------------- policer

TEST(PolicerDump, IsLeftOutWhereTheStageIsNone)
{
    EXPECT_EQ(markedDump(withPolicer(policerOf(policer::STAGE_NONE, Mode::FLOW))), head("0", "0"));
    EXPECT_EQ(markedDump(withPolicer(Policer())), head("0", "0"));
}

constexpr char RED_DROP[] = "\n    + Red Drop";
constexpr char YELLOW_PCP[] = "\n    + Yellow Set PCP 3";
constexpr char GREEN_DSCP[] = "\n    + Green Set DSCP 46";
const std::string THREE_ACTIONS = std::string(RED_DROP) + YELLOW_PCP + GREEN_DSCP;

constexpr char FLOW_MODE[] = "Flow (CIR: 1000 kbits/s, CBS: 2000 bytes)";

TEST(PolicerDump, NamesTheStage)
{
    const auto stageOf = [](std::uint32_t stage) {
        return markedDump(withPolicer(policerOf(static_cast<policer::Stage>(stage), Mode::FLOW)));
    };
    const auto expected = [](const std::string& name) {
        return head("0", "0") + policerBlock("17", name, FLOW_MODE, THREE_ACTIONS);
    };
    EXPECT_EQ(stageOf(0), expected("Ingress"));
    EXPECT_EQ(stageOf(1), expected("Egress"));
    EXPECT_EQ(stageOf(3), expected(""));
    EXPECT_EQ(stageOf(4294967295), expected(""));
}

TEST(PolicerDump, WritesEachModeWithItsRates)
{
    const auto modeText = [](std::uint32_t type) {
        return markedDump(
            withPolicer(policerOf(policer::STAGE_INGRESS, static_cast<Mode::Type>(type))));
    };
    const auto expected = [](const std::string& text) {
        return head("0", "0") + policerBlock("17", "Ingress", text, THREE_ACTIONS);
    };
    EXPECT_EQ(modeText(0), expected("SrTcm (CIR: 1000 kbits/s, CBS: 2000 bytes, EBS: 3000 bytes)"));
    EXPECT_EQ(modeText(1), expected("TrTcm (CIR: 1000 kbits/s, CBS: 2000 bytes,"
                                    " PIR: 6000 kbits/s, PBS: 5000 bytes)"));
    EXPECT_EQ(modeText(2), expected("TrTcmDs (CIR: 1000 kbits/s, CBS: 2000 bytes,"
                                    " EIR: 4000 kbits/s, EBS: 3000 bytes)"));
    EXPECT_EQ(modeText(3), expected(FLOW_MODE));
    EXPECT_EQ(modeText(4), expected("None"));
    EXPECT_EQ(modeText(5), expected(""));
    EXPECT_EQ(modeText(4294967295), expected(""));
}

TEST(PolicerDump, WritesRatesUnsigned)
{
    Mode::Rates rates;
    rates.cir = 4294967295;
    rates.cbs = 2147483648;
    const Policer policer(1, policer::STAGE_EGRESS, Mode(Mode::FLOW, rates), {});
    EXPECT_EQ(markedDump(withPolicer(policer)),
              head("0", "0") + policerBlock("1", "Egress",
                                            "Flow (CIR: 4294967295 kbits/s, CBS: 2147483648 bytes)",
                                            ""));
}

TEST(PolicerDump, WritesAnIdentifierOfAllOnesAsInvalid)
{
    const auto withId = [](std::uint32_t id) {
        return markedDump(withPolicer(Policer(id, policer::STAGE_INGRESS, Mode(), {})));
    };
    const auto expected = [](const std::string& id) {
        return head("0", "0") + policerBlock(id, "Ingress", "None", "");
    };
    EXPECT_EQ(withId(4294967295), expected("Invalid"));
    EXPECT_EQ(withId(4294967294), expected("4294967294"));
    EXPECT_EQ(withId(0), expected("0"));
}

/** What an entry writes for the actions of its policer. */
std::string actionsDump(const std::set<policer::Action>& actions)
{
    const std::string dump =
        markedDump(withPolicer(Policer(1, policer::STAGE_INGRESS, Mode(), actions)));
    const std::string before = "    Actions:";
    return dump.substr(dump.find(before) + before.size());
}

TEST(PolicerDump, WritesColorAndTypeOfEachAction)
{
    using policer::Action;
    EXPECT_EQ(actionsDump({}), eol(""));
    EXPECT_EQ(actionsDump({{Action::RED, Action::DROP, 7}}), eol("\n    + Red Drop"));
    EXPECT_EQ(actionsDump({{Action::YELLOW, Action::SET_PCP, 255}}),
              eol("\n    + Yellow Set PCP 255"));
    EXPECT_EQ(actionsDump({{Action::GREEN, Action::SET_DSCP, 65}}),
              eol("\n    + Green Set DSCP 65"));
    EXPECT_EQ(actionsDump({{Action::GREEN, static_cast<Action::Type>(3), 1}}),
              eol("\n    + Green "));
    EXPECT_EQ(actionsDump({{static_cast<Action::Color>(3), Action::DROP}}), eol("\n    +  Drop"));
    EXPECT_EQ(actionsDump({{static_cast<Action::Color>(4294967295),
                            static_cast<Action::Type>(4294967295), 1}}),
              eol("\n    +  "));
}

TEST(PolicerDump, WritesTheActionsInTheOrderOfTheSet)
{
    using policer::Action;
    EXPECT_EQ(actionsDump({{Action::GREEN, Action::DROP},
                           {Action::RED, Action::SET_DSCP, 2},
                           {Action::RED, Action::SET_DSCP, 1},
                           {Action::RED, Action::DROP}}),
              eol("\n    + Red Drop\n    + Red Set DSCP 1\n    + Red Set DSCP 2"
                  "\n    + Green Drop"));
}

TEST(PolicerDump, IndentsWithTheFillCharacterOfTheStream)
{
    std::ostringstream out;
    out << std::setfill('*') << std::left << withPolicer(policerAt(policer::STAGE_INGRESS));
    EXPECT_EQ(out.str(), "  =FiltersEntry=\n"
                         "    ID: 0\n"
                         "    Priority: 0\n"
                         "  =Policer=\n"
                         "****Policer Id: 1\n"
                         "****Stage: Ingress\n"
                         "****Mode: Flow (CIR: 1000 kbits/s, CBS: 2000 bytes)\n"
                         "****Actions:\n"
                         "****+ Red Drop\n");
}

// ------------------------------------------------------------------------------------ whole entry

/** A match and an action with one line besides title and type. */
const std::string TTL_DUMP =
    eol("    =MatchTTL=") + eol("      Match Type ID: 26") + eol("      TTL: 64");
const std::string DENY_DUMP =
    eol("    =ActionDeny=") + eol("      Action Type ID: 1") + eol("      <no parameters>");

TEST(EntryDump, HoldsPolicerCounterMatchesAndActionsInThisOrder)
{
    FiltersEntry entry(7);
    entry.setPriority(100);
    entry.setAction(ActionDeny());
    entry.setMatch(MatchTTL(64));
    entry.setCounter(Counter(1, COUNTER_TYPE_PACKETS));
    entry.setPolicer(policerAt(policer::STAGE_EGRESS));
    EXPECT_EQ(markedDump(entry),
              head("7", "100") + policerBlock("1", "Egress", FLOW_MODE, RED_DROP) +
                  eol("  =Counter=") + nl("ID: 1") + eol("Type: Packets") + TTL_DUMP + DENY_DUMP);
}

TEST(EntryDump, HoldsMatchesAndActionsInAscendingOrderOfTheirKinds)
{
    FiltersEntry entry;
    entry.setMatch(MatchDestinationCpu());
    entry.setMatch(MatchTTL(64));
    entry.setMatch(MatchCpuPort());
    entry.setAction(ActionBlackHole());
    entry.setAction(ActionDeny());
    EXPECT_EQ(markedDump(entry),
              head("0", "0") + TTL_DUMP + eol("    =MatchCpuPort=") +
                  eol("      Match Type ID: 29") + eol("    =MatchDestinationCpu=") +
                  eol("      Match Type ID: 31") + DENY_DUMP + eol("    =ActionBlackHole=") +
                  eol("      Action Type ID: 16") + eol("      <no parameters>"));
}

TEST(EntryDump, ShowsADscpAsAToS)
{
    FiltersEntry entry;
    entry.setMatch(MatchDSCP(10));
    EXPECT_EQ(markedDump(entry), head("0", "0") + eol("    =MatchToS=") +
                                     eol("      Match Type ID: 20") + eol("      ToS: 40"));
}

// ----------------------------------------------------------------------- formatting of the stream

TEST(EntryDump, IsHexadecimalBehindATpidAndInTheNextEntry)
{
    FiltersEntry entry(42);
    entry.setMatch(MatchExternalVlanId(10));
    entry.setMatch(MatchTPID(0x8100));
    entry.setMatch(MatchIpProtocol(17));
    entry.setAction(ActionSetDSCP(46));
    FiltersEntry next(43);
    next.setPriority(255);
    next.setCounter(Counter(12, COUNTER_TYPE_OCTETS));

    MarkedStream out;
    out << entry << next;
    EXPECT_EQ(out.text(), head("42", "0") + eol("    =MatchExternalVlanId=") +
                              eol("      Match Type ID: 2") + eol("      VLAN IDs: [ 10 ]") +
                              eol("    =MatchTPID=") + eol("      Match Type ID: 3") +
                              eol("      TPID: 0x8100") + eol("    =MatchIpProtocol=") +
                              eol("      Match Type ID: 11") + eol("      Ip Protocol: 11") +
                              eol("    =ActionSetDSCP=") + eol("      Action Type ID: 8") +
                              eol("      DSCP: 2e") + head("2b", "ff") + eol("  =Counter=") +
                              nl("ID: c") + eol("Type: Octets"));
}

TEST(PolicerDump, WritesIdentifierAndCodePointsInDecimalAndRatesInTheBaseOfTheStream)
{
    MarkedStream out;
    out << std::hex << withPolicer(policerOf(policer::STAGE_INGRESS, Mode::TR_TCM_DS));
    EXPECT_EQ(out.text(), head("0", "0") + policerBlock("17", "Ingress",
                                                        "TrTcmDs (CIR: 3e8 kbits/s, CBS: 7d0 bytes,"
                                                        " EIR: fa0 kbits/s, EBS: bb8 bytes)",
                                                        THREE_ACTIONS));
}

/** Groups digits by two. */
class Grouping : public std::numpunct<char> {
    char do_thousands_sep() const override { return '_'; }
    std::string do_grouping() const override { return "\2"; }
};

TEST(PolicerDump, WritesIdentifierAndCodePointsWithoutTheLocaleOfTheStream)
{
    Mode::Rates rates;
    rates.cir = 123456;
    const Policer policer(123456, policer::STAGE_INGRESS, Mode(Mode::FLOW, rates),
                          {{policer::Action::RED, policer::Action::SET_PCP, 200}});
    FiltersEntry entry(12345);
    entry.setPolicer(policer);
    MarkedStream out;
    out.imbue(std::locale(std::locale::classic(), new Grouping));
    out << entry;
    EXPECT_EQ(out.text(),
              head("1_23_45", "0") + policerBlock("123456", "Ingress",
                                                  "Flow (CIR: 12_34_56 kbits/s, CBS: 0 bytes)",
                                                  "\n    + Red Set PCP 200"));
}

TEST(EntryDump, AppliesAWidthToItsTitleAlone)
{
    std::ostringstream out;
    out << std::setw(20) << std::setfill('.') << FiltersEntry(7);
    EXPECT_EQ(out.str(), "....  =FiltersEntry=\n"
                         "    ID: 7\n"
                         "    Priority: 0\n");
}

TEST(EntryDump, GivesTheLinesOfTheCounterNoIndentWhateverTheFillCharacter)
{
    FiltersEntry entry;
    entry.setCounter(Counter(5, COUNTER_TYPE_PACKETS));
    std::ostringstream out;
    out << std::setfill('*') << entry;
    EXPECT_EQ(out.str(), "  =FiltersEntry=\n"
                         "    ID: 0\n"
                         "    Priority: 0\n"
                         "  =Counter=\n"
                         "ID: 5\n"
                         "Type: Packets\n");
}

TEST(EntryDump, LeavesTheStreamsFormattingAsItWas)
{
    FiltersEntry entry = withPolicer(policerOf(policer::STAGE_INGRESS, Mode::SR_TCM));
    entry.setCounter(Counter(5, COUNTER_TYPE_PACKETS));
    entry.setMatch(MatchTTL(64));
    entry.setAction(ActionDeny());
    std::ostringstream out;
    out << std::oct << std::showbase << std::setfill('*') << std::left;
    const auto before = out.flags();
    out << entry;
    EXPECT_EQ(out.flags(), before);
    EXPECT_EQ(out.fill(), '*');
    EXPECT_EQ(out.width(), 0);
}

/** On a stream that has failed, nothing that is written uses the width up. */
TEST(EntryDump, LeavesTheWidthThatItSetOnAStreamThatHasFailed)
{
    const auto widthLeftBy = [](const FiltersEntry& entry) {
        std::ostringstream out;
        out.setstate(std::ios_base::badbit);
        out.width(7);
        out << entry;
        return out.width();
    };
    FiltersEntry entry;
    EXPECT_EQ(widthLeftBy(entry), 7);
    entry.setCounter(Counter(5, COUNTER_TYPE_PACKETS));
    EXPECT_EQ(widthLeftBy(entry), 4);
    EXPECT_EQ(widthLeftBy(withPolicer(policerOf(policer::STAGE_INGRESS, Mode::FLOW))), 4);
}

} // namespace
