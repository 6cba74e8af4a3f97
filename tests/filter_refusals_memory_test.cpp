/**
 * Refusals and memory: every allocation of every question fails once, and once together with all
 * later ones. Names, the checks themselves, and questions without reasons allocate nothing.
 */
#include "entry_maps.h"
#include "filter_refusals_c.h"
#include "out_of_memory.h"
#include "refusals_support.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

namespace FiltersCommon {
namespace {

using namespace test;

FiltersEntry refusedEntry(filtersEntryId_t id)
{
    FiltersEntry entry(id);
    entry.setMatch(MatchTTL(1));
    entry.setMatch(MatchVlanUntagged());
    entry.setMatch(MatchDstIPv4(ipv4("192.0.2.1")));
    entry.setAction(ActionMapToCpuCosQueue(1));
    entry.setPolicer(policerAt(policer::STAGE_EGRESS));
    return entry;
}

FiltersGroup heldGroup()
{
    FiltersGroup group(1);
    group.setType(GROUP_TYPE_3);
    for (const filtersEntryId_t id : {filtersEntryId_t{3}, filtersEntryId_t{4}}) {
        FiltersEntry entry(id);
        entry.setMatch(MatchTTL(1));
        entry.setAction(ActionBlackHole());
        EXPECT_EQ(group.insertEntry(entry), FILTERS_OK);
    }
    return group;
}

/** Bytes of which reading loses something of every sort, in a form that needs a message. */
std::string lossyBytes()
{
    FiltersGroupPB pb = heldGroup().convertToFiltersGroupPB();
    pb.set_id_(65537);
    FiltersEntryPB& replacing = *pb.add_entries_();
    replacing.set_id_(3);
    replacing.set_policer_("no policer");
    replacing.add_matches_()->set_type_(MATCH_DST_MAC);
    replacing.mutable_matches_(0)->set_mac_("short");
    replacing.mutable_matches_(0)->add_ports_(7);
    replacing.add_matches_()->set_type_(99);
    refusedEntry(12).convertToFiltersEntryPB(pb.add_entries_());
    return pb.SerializePartialAsString() + "\xF8\x07\x01\x07";
}

/** Bytes of the form that the library writes, of which reading loses something all the same. */
std::string regularLossyBytes()
{
    FiltersGroupPB pb = heldGroup().convertToFiltersGroupPB();
    pb.set_id_(65537);
    refusedEntry(12).convertToFiltersEntryPB(pb.add_entries_());
    FiltersEntryPB again = pb.entries_(0);
    again.set_priority_(9);
    *pb.add_entries_() = again;
    return pb.SerializeAsString();
}

/** What is asked about, and what it must be afterwards. */
struct Asked {
    FiltersGroup group = heldGroup();
    FiltersEntry entry = refusedEntry(12);
    MatchSrcIPv6 excluded{ipv6("2001:db8::1")};
    Match lying{MATCH_SRC_IPV6};
    Action lyingAction{ACTION_SET_PCP};
    Matches matches = matchesOf(Match(MATCH_PCP), MatchSrcIPv6(ipv6("::1")));
    Actions actions = actionsOf(Action(ACTION_SET_PCP));
    std::string bytes = lossyBytes();
    std::string regularBytes = regularLossyBytes();
    std::string entryBytes = lossyBytes().substr(2);

    std::string state() const { return stateOf(group) + stateOf(entry); }
};

using Question = std::function<void(Asked&)>;

/** Each answers at least one reason. */
const Question QUESTIONS[] = {
    [](Asked& asked) { insertEntryRefusals(asked.group, asked.entry); },
    [](Asked& asked) { setStageRefusals(asked.group, GROUP_STAGE_1); },
    [](Asked& asked) { setStageRefusals(asked.group, stage(4)); },
    [](Asked& asked) { setTypeRefusals(asked.group, GROUP_TYPE_1); },
    [](Asked& asked) { setTypeRefusals(asked.group, type(10)); },
    [](Asked& asked) { setMatchRefusals(asked.entry, asked.excluded); },
    [](Asked& asked) { setMatchRefusals(asked.entry, asked.lying); },
    [](Asked& asked) { setActionRefusals(asked.entry, asked.lyingAction); },
    [](Asked& asked) { l3Refusals(asked.entry, MATCH_DST_IPV6); },
    [](Asked& asked) { copyMatchesRefusals(asked.entry, asked.matches); },
    [](Asked& asked) { setMatchesRefusals(asked.entry, asked.matches); },
    [](Asked& asked) { copyActionsRefusals(asked.entry, asked.actions); },
    [](Asked& asked) { setActionsRefusals(asked.entry, asked.actions); },
    [](Asked& asked) { readEntryRefusals(asked.entryBytes); },
    [](Asked& asked) { readGroupRefusals(asked.bytes); },
    [](Asked& asked) { readGroupRefusals(asked.regularBytes); },
    [](Asked& asked) {
        Refusals losses;
        groupFromBytes(asked.bytes, &losses);
    },
    [](Asked& asked) {
        FiltersRefusals* losses = nullptr;
        deleteFiltersGroup(
            newFiltersGroupFromBytes(asked.bytes.data(), asked.bytes.size(), &losses));
        deleteFiltersRefusals(losses);
    },
    [](Asked& asked) {
        deleteFiltersRefusals(filtersGroupReadRefusals(asked.bytes.data(), asked.bytes.size()));
    },
    [](Asked& asked) {
        deleteFiltersRefusals(
            filtersEntryReadRefusals(asked.entryBytes.data(), asked.entryBytes.size()));
    },
    [](Asked& asked) {
        deleteFiltersRefusals(filtersGroupInsertEntryRefusals(&asked.group, &asked.entry));
    },
    [](Asked& asked) {
        deleteFiltersRefusals(filtersGroupSetStageRefusals(&asked.group, GROUP_STAGE_3));
    },
    [](Asked& asked) {
        deleteFiltersRefusals(filtersGroupSetTypeRefusals(&asked.group, GROUP_TYPE_1));
    },
    [](Asked& asked) {
        deleteFiltersRefusals(filtersEntrySetMatchRefusals(&asked.entry, &asked.lying));
    },
    [](Asked& asked) {
        deleteFiltersRefusals(filtersEntrySetActionRefusals(&asked.entry, &asked.lyingAction));
    },
};

TEST(RefusalsOutOfMemory, AQuestionChangesAndLeavesNothing)
{
    Asked asked;
    const std::string before = asked.state();
    for (const Question& question : QUESTIONS)
        expectBadAlloc([&] { question(asked); }, 1, [&] { EXPECT_EQ(asked.state(), before); });
}

TEST(RefusalsOutOfMemory, ASentenceThatIsNotMadeCanBeAskedForAgain)
{
    Asked asked;
    const Refusals refusals = insertEntryRefusals(asked.group, asked.entry);
    ASSERT_GE(refusals.size(), 3u);
    for (std::uint32_t i = 0; i < refusals.size(); ++i) {
        expectBadAlloc([&] { refusals[i].sentence(); });

        FiltersRefusals* list = filtersGroupInsertEntryRefusals(&asked.group, &asked.entry);
        const char* sentence = nullptr;
        EXPECT_GE(failEachAllocation(
                      [&] { sentence = filtersRefusalsGetSentence(list, i); },
                      [&] { EXPECT_EQ(filtersRefusalsGetCode(list, i), refusals[i].code()); }),
                  1u);
        EXPECT_EQ(sentence, refusals[i].sentence());
        expectNoAllocation([&] { EXPECT_EQ(filtersRefusalsGetSentence(list, i), sentence); });
        deleteFiltersRefusals(list);
    }
}

/** A caller's list keeps what it held. */
TEST(RefusalsOutOfMemory, AGroupThatIsNotReadChangesNoList)
{
    const std::string bytes = lossyBytes();
    Refusals losses = {FiltersRefusal(REFUSAL_UNKNOWN_STAGE)};
    const Refusals before = losses;
    EXPECT_GE(failEachAllocation([&] { groupFromBytes(bytes, &losses); },
                                 [&] { EXPECT_EQ(losses, before); }),
              1u);
    EXPECT_EQ(losses, readGroupRefusals(bytes));

    FiltersRefusals* list = nullptr;
    FiltersGroup* group = nullptr;
    EXPECT_GE(failEachAllocation(
                  [&] { group = newFiltersGroupFromBytes(bytes.data(), bytes.size(), &list); },
                  [&] { EXPECT_EQ(list, nullptr); }),
              1u);
    deleteFiltersGroup(group);
    deleteFiltersRefusals(list);
}

TEST(RefusalsOutOfMemory, SentencesOfLosses)
{
    for (const FiltersRefusal& loss : readGroupRefusals(lossyBytes()))
        expectBadAlloc([&] { loss.sentence(); });
}

TEST(RefusalsAllocateNothing, WhereThereIsNoReason)
{
    Asked asked;
    const FiltersEntry admitted(12);
    expectNoAllocation([&] {
        EXPECT_TRUE(insertEntryRefusals(asked.group, admitted).empty());
        EXPECT_TRUE(setStageRefusals(asked.group, GROUP_STAGE_2).empty());
        EXPECT_TRUE(setTypeRefusals(asked.group, GROUP_TYPE_3).empty());
        EXPECT_TRUE(setMatchRefusals(asked.entry, MatchAll()).empty());
        EXPECT_TRUE(setActionRefusals(asked.entry, ActionDeny()).empty());
    });
}

TEST(RefusalsAllocateNothing, InTheOperationsThatRefuse)
{
    Asked asked;
    expectNoAllocation([&] {
        EXPECT_NE(asked.group.insertEntry(asked.entry), FILTERS_OK);
        EXPECT_NE(asked.group.setStage(GROUP_STAGE_1), FILTERS_OK);
        EXPECT_NE(asked.group.setStage(GROUP_STAGE_3), FILTERS_OK);
        EXPECT_NE(asked.group.setType(GROUP_TYPE_1), FILTERS_OK);
        EXPECT_EQ(asked.group.setStage(GROUP_STAGE_2), FILTERS_OK);
        EXPECT_NE(asked.entry.setMatch(asked.excluded), FILTERS_OK);
        EXPECT_NE(filtersEntrySetMatch(&asked.entry, &asked.lying), FILTERS_OK);
    });
}

TEST(RefusalsAllocateNothing, InNames)
{
    expectNoAllocation([] {
        EXPECT_NE(filtersErrName(FILTERS_ERR_INVALID), nullptr);
        EXPECT_NE(filtersMatchName(static_cast<filtersMatch_t>(-1)), nullptr);
        EXPECT_NE(filtersActionName(ACTION_DENY), nullptr);
        EXPECT_NE(filtersPolicerStageName(9), nullptr);
    });
}

} // namespace
} // namespace FiltersCommon
