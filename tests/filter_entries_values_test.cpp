#include "samples.h"

#include "filter_entries.pb.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <typeinfo>
#include <utility>
#include <vector>

namespace FiltersCommon {
namespace {

using test::ipv4;
using test::policerAt;
using test::positionIn;
using test::stateOf;

bool samePolicer(const policer::Policer& a, const policer::Policer& b)
{
    return a.Serialize() == b.Serialize();
}

/** An entry with something in every member. */
FiltersEntry fullEntry()
{
    FiltersEntry entry(7);
    entry.setPriority(100);
    entry.setPolicer(policerAt(policer::STAGE_INGRESS));
    entry.setCounter(Counter(5, COUNTER_TYPE_PACKETS));
    entry.setMatch(MatchDstIPv4(ipv4("192.0.2.1")));
    entry.setMatch(MatchPcp(3));
    entry.setAction(ActionDeny());
    entry.setAction(ActionSetPcp(4));
    return entry;
}

// ------------------------------------------------------------------------ construction, accessors

TEST(FilterEntries, NewEntryHasItsDefaults)
{
    for (const FiltersEntry& entry : {FiltersEntry(), FiltersEntry(0)}) {
        EXPECT_EQ(entry.getId(), 0);
        EXPECT_EQ(entry.getPriority(), 0u);
        EXPECT_TRUE(samePolicer(entry.getPolicer(), policer::Policer()));
        EXPECT_TRUE(entry.getCounter() == Counter());
        EXPECT_TRUE(entry.getMatchesRef().empty());
        EXPECT_TRUE(entry.getActionsRef().empty());
    }
}

TEST(FilterEntries, IdentifierGivenLeavesTheOtherMembersAtTheirDefaults)
{
    FiltersEntry entry(65535);
    EXPECT_EQ(entry.getId(), 65535);
    entry.setId(0);
    EXPECT_EQ(stateOf(entry), stateOf(FiltersEntry()));
}

TEST(FilterEntries, KeepsIdentifierAndPriority)
{
    FiltersEntry entry(1);
    entry.setId(65535);
    entry.setPriority(0xFFFFFFFF);
    EXPECT_EQ(entry.getId(), 65535);
    EXPECT_EQ(entry.getPriority(), 0xFFFFFFFF);
}

TEST(FilterEntries, TakesAnyPolicer)
{
    FiltersEntry entry;
    for (const std::uint32_t stage : {0u, 1u, 2u, 3u, 0xFFFFFFFFu}) {
        const auto policer = policerAt(static_cast<policer::Stage>(stage), stage + 9);
        EXPECT_EQ(entry.setPolicer(policer), FILTERS_OK);
        EXPECT_TRUE(samePolicer(entry.getPolicer(), policer));
    }
    EXPECT_EQ(entry.setPolicer(policer::Policer()), FILTERS_OK);
    EXPECT_TRUE(samePolicer(entry.getPolicer(), policer::Policer()));
}

TEST(FilterEntries, TakesItsOwnPolicer)
{
    FiltersEntry entry = fullEntry();
    EXPECT_EQ(entry.setPolicer(entry.getPolicer()), FILTERS_OK);
    EXPECT_EQ(stateOf(entry), stateOf(fullEntry()));
}

TEST(FilterEntries, RefusesACounterOfTypeInvalidAndKeepsThePreviousOne)
{
    FiltersEntry entry = fullEntry();
    EXPECT_EQ(entry.setCounter(Counter(9, COUNTER_TYPE_INVALID)), FILTERS_ERR_INVALID);
    EXPECT_TRUE(entry.getCounter() == Counter(5, COUNTER_TYPE_PACKETS));
    EXPECT_EQ(stateOf(entry), stateOf(fullEntry()));
}

TEST(FilterEntries, TakesACounterOfAnyOtherType)
{
    FiltersEntry entry;
    for (const std::int32_t type : {1, 2, 3, 7, -1}) {
        const Counter counter(65535, static_cast<counter_type_t>(type));
        EXPECT_EQ(entry.setCounter(counter), FILTERS_OK);
        EXPECT_TRUE(entry.getCounter() == counter);
    }
}

TEST(FilterEntries, DeletesItsCounter)
{
    FiltersEntry entry = fullEntry();
    EXPECT_EQ(entry.deleteCounter(), FILTERS_OK);
    EXPECT_TRUE(entry.getCounter() == Counter());
    EXPECT_EQ(entry.deleteCounter(), FILTERS_OK);
    EXPECT_TRUE(entry.getCounter() == Counter());
}

TEST(FilterEntries, MembersStandInTheirOrder)
{
    FiltersEntry entry(0xA5B6);
    entry.setPriority(0xC7D8E9FA);
    const auto offsetOf = [&](const auto& member) {
        return static_cast<std::size_t>(reinterpret_cast<const char*>(&member) -
                                        reinterpret_cast<const char*>(&entry));
    };
    const std::vector<std::size_t> offsets = {positionIn(entry, std::uint16_t{0xA5B6}),
                                              positionIn(entry, std::uint32_t{0xC7D8E9FA}),
                                              offsetOf(entry.getPolicer()),
                                              offsetOf(entry.getCounter()),
                                              offsetOf(entry.getMatchesRef()),
                                              offsetOf(entry.getActionsRef()),
                                              sizeof entry};
    EXPECT_EQ(offsets.front(), 0u);
    for (std::size_t i = 1; i < offsets.size(); ++i)
        EXPECT_LT(offsets[i - 1], offsets[i]) << i;
}

// ------------------------------------------------------------------------------------------- copy

TEST(FilterEntries, CopyHoldsEverything)
{
    const FiltersEntry entry = fullEntry();
    const FiltersEntry copy(entry);
    EXPECT_TRUE(copy == entry);
    EXPECT_EQ(stateOf(copy), stateOf(entry));
    EXPECT_EQ(copy.getId(), 7);
    EXPECT_EQ(copy.getPriority(), 100u);
    EXPECT_TRUE(samePolicer(copy.getPolicer(), policerAt(policer::STAGE_INGRESS)));
    EXPECT_TRUE(copy.getCounter() == Counter(5, COUNTER_TYPE_PACKETS));
}

TEST(FilterEntries, CopyHoldsACounterThatOnlyTheWireCanGive)
{
    FiltersEntryPB pb;
    pb.mutable_counter_()->set_id(5);
    FiltersEntry entry;
    entry.convertFromFiltersEntryPB(&pb);
    ASSERT_TRUE(entry.getCounter() == Counter(5, COUNTER_TYPE_INVALID));
    EXPECT_TRUE(FiltersEntry(entry).getCounter() == Counter(5, COUNTER_TYPE_INVALID));
}

TEST(FilterEntries, CopyIsIndependentOfItsSource)
{
    FiltersEntry entry = fullEntry();
    const FiltersEntry copy(entry);
    entry.setId(8);
    entry.setPriority(1);
    entry.setPolicer(policer::Policer());
    entry.deleteCounter();
    entry.setMatch(MatchPcp(6));
    entry.deleteMatch(MATCH_DST_IPV4);
    entry.deleteAction(ACTION_DENY);
    entry.setAction(ActionSetPcp(7));
    EXPECT_EQ(stateOf(copy), stateOf(fullEntry()));
    EXPECT_TRUE(copy == fullEntry());
}

TEST(FilterEntries, CopyHoldsOneOfEveryKind)
{
    FiltersEntry entry;
    test::fill(entry);
    ASSERT_EQ(entry.getMatchesRef().size(), test::MATCH_KINDS - 2); // IPv4 is there, IPv6 is not
    ASSERT_EQ(entry.getActionsRef().size(), test::ACTION_KINDS);
    const FiltersEntry copy(entry);
    EXPECT_TRUE(copy == entry);
    EXPECT_EQ(stateOf(copy), stateOf(entry));
}

// -------------------------------------------------------------------------------- move assignment

TEST(FilterEntries, MoveAssignmentTakesEverything)
{
    FiltersEntry source = fullEntry();
    FiltersEntry target(1);
    target.setPriority(3);
    target.setPolicer(policerAt(policer::STAGE_EGRESS, 77));
    target.setCounter(Counter(1, COUNTER_TYPE_OCTETS));
    target.setMatch(MatchTTL(1));
    target.setMatch(MatchPcp(1));
    target.setAction(ActionPermit());
    EXPECT_EQ(&(target = std::move(source)), &target);
    EXPECT_TRUE(target == fullEntry());
    EXPECT_EQ(stateOf(target), stateOf(fullEntry()));
}

TEST(FilterEntries, MoveAssignmentLeavesTheSourceWithoutMatchesAndActionsOnly)
{
    FiltersEntry source = fullEntry();
    FiltersEntry target;
    target.setMatch(MatchTTL(1));
    target.setAction(ActionPermit());
    target = std::move(source);
    EXPECT_EQ(source.getId(), 7);
    EXPECT_EQ(source.getPriority(), 100u);
    EXPECT_TRUE(samePolicer(source.getPolicer(), policerAt(policer::STAGE_INGRESS)));
    EXPECT_TRUE(source.getCounter() == Counter(5, COUNTER_TYPE_PACKETS));
    EXPECT_TRUE(source.getMatchesRef().empty());
    EXPECT_TRUE(source.getActionsRef().empty());
}

TEST(FilterEntries, MoveAssignmentTakesOverTheObjectsThemselves)
{
    FiltersEntry source = fullEntry();
    const Match* match = source.getMatchesRef().find(MATCH_PCP)->second;
    const Action* action = source.getActionsRef().find(ACTION_DENY)->second;
    FiltersEntry target;
    target = std::move(source);
    EXPECT_EQ(target.getMatchesRef().find(MATCH_PCP)->second, match);
    EXPECT_EQ(target.getActionsRef().find(ACTION_DENY)->second, action);
}

TEST(FilterEntries, MoveAssignmentMovesASingleSmallObjectAndTakesOverALargeOne)
{
    FiltersEntry source;
    source.setMatch(MatchPcp(3));
    source.setAction(ActionRedirect(test::limId(0, 0, 0, 3)));
    const auto* redirect = source.findAction<ActionRedirect>();
    FiltersEntry target;
    target = std::move(source);
    const auto address = [](const void* object) {
        return reinterpret_cast<std::uintptr_t>(object);
    };
    ASSERT_NE(target.findMatch<MatchPcp>(), nullptr);
    EXPECT_EQ(target.findMatch<MatchPcp>()->getPcp(), 3);
    EXPECT_GT(address(target.findMatch<MatchPcp>()), address(&target));
    EXPECT_LT(address(target.findMatch<MatchPcp>()), address(&target + 1));
    EXPECT_EQ(target.findAction<ActionRedirect>(), redirect);
    EXPECT_EQ(source.findMatch<MatchPcp>(), nullptr);
    EXPECT_EQ(source.findAction<ActionRedirect>(), nullptr);
}

TEST(FilterEntries, MoveAssignmentKeepsADscp)
{
    FiltersEntry source;
    source.setMatch(MatchDSCP(10));
    FiltersEntry target;
    target = std::move(source);
    const Match& stored = *target.getMatchesRef().find(MATCH_TOS)->second;
    EXPECT_TRUE(typeid(stored) == typeid(MatchDSCP));
}

TEST(FilterEntries, SourceOfAMoveAssignmentIsUsedOn)
{
    FiltersEntry source = fullEntry();
    FiltersEntry target;
    target = std::move(source);
    EXPECT_EQ(source.setMatch(MatchPcp(3)), FILTERS_OK);
    EXPECT_EQ(source.setMatch(MatchDstIPv4(ipv4("192.0.2.1"))), FILTERS_OK);
    EXPECT_EQ(source.setAction(ActionDeny()), FILTERS_OK);
    EXPECT_EQ(source.setAction(ActionSetPcp(4)), FILTERS_OK);
    EXPECT_TRUE(source == target);
}

TEST(FilterEntries, MoveAssignmentToItselfLeavesTheEntryWithoutMatchesAndActions)
{
    // Both maps are emptied first, so nothing is left to take over.
    FiltersEntry entry = fullEntry();
    FiltersEntry& same = entry;
    EXPECT_EQ(&(entry = std::move(same)), &entry);
    FiltersEntry expected = fullEntry();
    expected.setMatches({});
    expected.setActions({});
    EXPECT_TRUE(entry == expected);
    EXPECT_EQ(stateOf(entry), stateOf(expected));
    EXPECT_EQ(entry.setMatch(MatchPcp(1)), FILTERS_OK);
    EXPECT_EQ(entry.getMatchesRef().size(), 1u);
}

// --------------------------------------------------------------------------------------- equality

struct Change {
    const char* name;
    std::function<void(FiltersEntry&)> apply;
};

policer::Policer changedPolicer(const std::function<void(policer::Mode::Rates&)>& change,
                                policer::Mode::Type type = policer::Mode::FLOW)
{
    policer::Mode::Rates rates;
    rates.cir = 1000;
    rates.cbs = 2000;
    change(rates);
    return {1, policer::STAGE_INGRESS, policer::Mode(type, rates),
            policerAt(policer::STAGE_INGRESS).GetActions()};
}

policer::Policer policerWith(const std::set<policer::Action>& actions)
{
    const policer::Policer original = policerAt(policer::STAGE_INGRESS);
    return {original.GetId(), original.GetStage(), original.GetMode(), actions};
}

using Pa = policer::Action;
using Rates = policer::Mode::Rates;

const Change CHANGES[] = {
    {"identifier", [](auto& entry) { entry.setId(8); }},
    {"priority", [](auto& entry) { entry.setPriority(0x10064); }},
    {"policer's identifier",
     [](auto& entry) { entry.setPolicer(policerAt(policer::STAGE_INGRESS, 2)); }},
    {"policer's stage", [](auto& entry) { entry.setPolicer(policerAt(policer::STAGE_EGRESS)); }},
    {"type of the policer's mode",
     [](auto& entry) { entry.setPolicer(changedPolicer([](Rates&) {}, policer::Mode::SR_TCM)); }},
    {"cir", [](auto& entry) { entry.setPolicer(changedPolicer([](Rates& r) { r.cir = 1; })); }},
    {"cbs", [](auto& entry) { entry.setPolicer(changedPolicer([](Rates& r) { r.cbs = 1; })); }},
    {"ebs", [](auto& entry) { entry.setPolicer(changedPolicer([](Rates& r) { r.ebs = 1; })); }},
    {"eir", [](auto& entry) { entry.setPolicer(changedPolicer([](Rates& r) { r.eir = 1; })); }},
    {"pbs", [](auto& entry) { entry.setPolicer(changedPolicer([](Rates& r) { r.pbs = 1; })); }},
    {"pir", [](auto& entry) { entry.setPolicer(changedPolicer([](Rates& r) { r.pir = 1; })); }},
    {"no policer action", [](auto& entry) { entry.setPolicer(policerWith({})); }},
    {"another policer action",
     [](auto& entry) { entry.setPolicer(policerWith({Pa(Pa::YELLOW, Pa::DROP)})); }},
    {"one policer action more",
     [](auto& entry) {
         entry.setPolicer(policerWith({Pa(Pa::RED, Pa::DROP), Pa(Pa::RED, Pa::SET_PCP, 1)}));
     }},
    {"counter's identifier",
     [](auto& entry) { entry.setCounter(Counter(6, COUNTER_TYPE_PACKETS)); }},
    {"counter's type", [](auto& entry) { entry.setCounter(Counter(5, COUNTER_TYPE_OCTETS)); }},
    {"no counter", [](auto& entry) { entry.deleteCounter(); }},
    {"a match's value", [](auto& entry) { entry.setMatch(MatchPcp(4)); }},
    {"one match more", [](auto& entry) { entry.setMatch(MatchVlanUntagged()); }},
    {"one match less", [](auto& entry) { entry.deleteMatch(MATCH_PCP); }},
    {"a match of another kind",
     [](auto& entry) {
         entry.deleteMatch(MATCH_PCP);
         entry.setMatch(MatchInternalPcp(3));
     }},
    {"an action's value", [](auto& entry) { entry.setAction(ActionSetPcp(5)); }},
    {"one action more", [](auto& entry) { entry.setAction(ActionBlackHole()); }},
    {"one action less", [](auto& entry) { entry.deleteAction(ACTION_DENY); }},
    {"an action of another kind",
     [](auto& entry) {
         entry.deleteAction(ACTION_DENY);
         entry.setAction(ActionPermit());
     }},
    {"an action in the place of a match",
     [](auto& entry) {
         entry.deleteMatch(MATCH_PCP);
         entry.setAction(ActionBlackHole());
     }},
};

TEST(FilterEntryEquality, FullEntriesAreEqual)
{
    EXPECT_TRUE(fullEntry() == fullEntry());
    EXPECT_TRUE(FiltersEntry() == FiltersEntry());
    const FiltersEntry entry = fullEntry();
    EXPECT_TRUE(entry == entry);
    FiltersEntry samePolicerInOtherHands = fullEntry();
    samePolicerInOtherHands.setPolicer(changedPolicer([](Rates&) {}));
    EXPECT_TRUE(entry == samePolicerInOtherHands);
}

TEST(FilterEntryEquality, EachSingleDifferenceMakesEntriesDiffer)
{
    for (const Change& change : CHANGES) {
        FiltersEntry changed = fullEntry();
        change.apply(changed);
        EXPECT_FALSE(changed == fullEntry()) << change.name;
        EXPECT_FALSE(fullEntry() == changed) << change.name;
    }
}

TEST(FilterEntryEquality, OrderOfAdditionMakesNoDifference)
{
    FiltersEntry entry = fullEntry();
    entry.deleteMatch(MATCH_DST_IPV4);
    entry.setMatch(MatchDstIPv4(ipv4("192.0.2.1")));
    entry.deleteAction(ACTION_DENY);
    entry.setAction(ActionDeny());
    EXPECT_TRUE(entry == fullEntry());
    EXPECT_TRUE(fullEntry() == entry);
}

TEST(FilterEntryEquality, DscpIsEqualToTheToSOfItsByte)
{
    FiltersEntry dscp;
    dscp.setMatch(MatchDSCP(10));
    FiltersEntry tos;
    tos.setMatch(MatchToS(40));
    EXPECT_TRUE(dscp == tos);
    EXPECT_TRUE(tos == dscp);
    tos.setMatch(MatchToS(41));
    EXPECT_FALSE(dscp == tos);
    EXPECT_FALSE(tos == dscp);
}

} // namespace
} // namespace FiltersCommon
