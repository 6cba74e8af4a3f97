#include "named_entries.h"
#include "text_support.h"

#include "filter_groups.pb.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace {

using namespace FiltersCommon;
using namespace FiltersCommon::test;

/** The lines of the group itself, none of which is flushed. */
std::string head(const std::string& id, const std::string& priority, const std::string& stage,
                 const std::string& type)
{
    return nl("=FiltersGroup=") + nl("  ID: " + id) + nl("  Priority: " + priority) +
           nl("  Stage: " + stage) + nl("  Type: " + type);
}

TEST(GroupDump, OfAnEmptyGroupIsFiveLines)
{
    EXPECT_EQ(markedDump(FiltersGroup(7)), head("7", "0", "0", "0"));
}

TEST(GroupDump, WritesTheScalarsAsDecimalNumbers)
{
    FiltersGroup group(65535);
    group.setPriority(65534);
    group.setStage(GROUP_STAGE_3);
    group.setType(GROUP_TYPE_5);
    EXPECT_EQ(markedDump(group), head("65535", "65534", "3", "5"));
}

TEST(GroupDump, WritesStageAndTypeOutsideTheTablesAsSignedNumbers)
{
    FiltersGroupPB pb;
    pb.set_stage_(0xFFFFFFFF);
    pb.set_type_(0x7FFFFFFF);
    FiltersGroup group(0);
    group.convertFromFiltersGroupPB(&pb);
    EXPECT_EQ(markedDump(group), head("0", "0", "-1", "2147483647"));
}

TEST(GroupDump, GivesTheStreamBack)
{
    std::ostringstream out;
    EXPECT_EQ(&(out << FiltersGroup(7)), &out);
}

TEST(GroupDump, HoldsTheEntriesInAscendingOrderWithNothingBetweenThem)
{
    FiltersGroup group(1);
    group.setType(GROUP_TYPE_3);
    fillAccessList(group);
    std::string expected = head("1", "500", "0", "3");
    for (const filtersEntryId_t id :
         {filtersEntryId_t{2}, filtersEntryId_t{11}, filtersEntryId_t{300}})
        expected += markedDump(group.getEntriesRef().at(id));
    EXPECT_EQ(markedDump(group), expected);
}

TEST(GroupDump, IsWrittenInTheBaseOfTheStreamWhichATpidMakesHexadecimal)
{
    FiltersGroup group(20);
    group.setPriority(30);
    group.setType(GROUP_TYPE_1);
    insert(group, 10, [](FiltersEntry& entry) { entry.setMatch(MatchTPID(0x9100)); });
    insert(group, 11, [](FiltersEntry& entry) { entry.setPriority(255); });

    const auto entryHead = [](const std::string& id, const std::string& priority) {
        return eol("  =FiltersEntry=") + eol("    ID: " + id) + eol("    Priority: " + priority);
    };
    const std::string tpid =
        eol("    =MatchTPID=") + eol("      Match Type ID: 3") + eol("      TPID: 0x9100");
    MarkedStream out;
    out << group << group;
    EXPECT_EQ(out.text(), head("20", "30", "0", "1") + entryHead("10", "0") + tpid +
                              entryHead("b", "ff") + head("14", "1e", "0", "1") +
                              entryHead("a", "0") + tpid + entryHead("b", "ff"));
}

TEST(GroupDump, AWidthOnEntryAppliesToTheTitleWithoutItsNewline)
{
    std::ostringstream out;
    out.width(20);
    out.fill('.');
    out << FiltersGroup(7);
    EXPECT_EQ(out.str().substr(0, 28), "......=FiltersGroup=\n  ID: 7");
}

TEST(GroupDump, LeavesTheStreamsFormattingAsItWasWithoutATpid)
{
    FiltersGroup group(1);
    group.setType(GROUP_TYPE_3);
    fillAccessList(group);
    std::ostringstream out;
    out << std::hex << std::boolalpha;
    const auto before = out.flags();
    out << group;
    EXPECT_EQ(out.flags(), before);
}

} // namespace
