/**
 * The class interface when memory runs out: every allocation of every operation fails once, and
 * once together with all later ones. What comes out is std::bad_alloc, nothing is left allocated,
 * and every object is what it was.
 */
#include "support.h"
#include "test_allocator.h"

#include "filter_groups.pb.h"

#include <gtest/gtest.h>

#include <functional>
#include <initializer_list>

namespace FiltersCommon {
namespace {

using namespace test;

/**
 * Fails each allocation of @p operation, which is given a fresh copy of @p before each time, and
 * expects the copy to equal @p before after each failure.
 */
template <class Object, class Operation>
void expectUnchanged(const Object& before, Operation operation, std::size_t allocationsAtLeast = 1)
{
    for (const Failing failing : {Failing::ONE, Failing::ONE_AND_ALL_LATER}) {
        Object object(before);
        operation(object); // what the runtimes build once, and the memory they keep
        Object target(before);
        EXPECT_GE(failEachAllocation(
                      failing, [&] { operation(target); }, [&] { EXPECT_TRUE(target == before); }),
                  allocationsAtLeast);
    }
}

const std::list<limid_t> PORTS = {limId(0, 0, 0, 1), limId(0, 0, 0, 2), limId(1, 0, 0, 3)};
const std::list<limid_t> OTHER_PORTS = {limId(9, 0, 0, 1), limId(9, 0, 0, 2)};

FiltersEntry fullEntry(filtersEntryId_t id)
{
    FiltersEntry entry(id);
    entry.setPolicer(policerAt(policer::STAGE_NONE));
    entry.setCounter(Counter(1, COUNTER_TYPE_OCTETS));
    entry.setMatch(MatchIngressPorts(PORTS));
    entry.setMatch(MatchExternalVlanId({10, 20}));
    entry.setMatch(MatchSrcIPv4(ipv4("192.0.2.1")));
    entry.setAction(ActionBlockEgressPorts(PORTS));
    entry.setAction(ActionReplaceDstMac(mac("0:1:2:3:4:5")));
    return entry;
}

FiltersEntry otherEntry(filtersEntryId_t id)
{
    FiltersEntry entry(id);
    entry.setPriority(99);
    entry.setPolicer(policerAt(policer::STAGE_NONE, 2));
    entry.setMatch(MatchIngressPorts(OTHER_PORTS));
    entry.setMatch(MatchTPID(0x8100));
    entry.setMatch(MatchDstIPv4(ipv4("192.0.2.2")));
    entry.setAction(ActionRedirect(limId(0, 0, 0, 9)));
    return entry;
}

FiltersGroup fullGroup()
{
    FiltersGroup group(1);
    group.setType(GROUP_TYPE_3);
    for (const filtersEntryId_t id : std::initializer_list<filtersEntryId_t>{2, 5, 9})
        EXPECT_EQ(group.insertEntry(fullEntry(id)), FILTERS_OK);
    return group;
}

template <class Object>
std::string bytesOf(const Object& object)
{
    std::string bytes;
    object.serialize(&bytes);
    return bytes;
}

// ---------------------------------------------------------------------------- matches and actions

TEST(OutOfMemory, AssigningAListLeavesTheOldOne)
{
    expectUnchanged(MatchIngressPorts(PORTS),
                    [](auto& match) { match = MatchIngressPorts(OTHER_PORTS); });
    const MatchIngressPorts ports(OTHER_PORTS);
    expectUnchanged(MatchIngressPorts(PORTS), [&](auto& match) { match = ports; });
    const MatchExternalVlanId ids({1, 2, 3});
    expectUnchanged(MatchExternalVlanId(7), [&](auto& match) { match = ids; });
    const ActionBlockEgressPorts blocked(OTHER_PORTS);
    expectUnchanged(ActionBlockEgressPorts(PORTS), [&](auto& action) { action = blocked; });
    const ActionRedirect redirect(limId(9, 9, 9, 9));
    expectUnchanged(ActionRedirect(limId(1, 1, 1, 1)), [&](auto& action) { action = redirect; });
}

TEST(OutOfMemory, SettingPortsLeavesTheOldOnes)
{
    expectUnchanged(MatchEgressPorts(PORTS), [](auto& match) { match.setPorts(OTHER_PORTS); });
}

TEST(OutOfMemory, ReadingAListLeavesTheOldOne)
{
    MatchPB match;
    match.set_type_(0);
    for (const std::uint32_t number : {5u, 6u, 7u}) {
        match.add_ports_(number);
        match.add_excluded_port_types_(number);
        match.add_vlan_id_(number);
    }
    const auto read = [&](auto& object) { object.convertFromMatchPB(&match); };
    expectUnchanged(MatchIngressPorts(PORTS), read, 6);
    expectUnchanged(MatchEgressPorts(PORTS), read, 3);
    expectUnchanged(MatchExternalVlanId({1, 2}), read, 3);

    ActionPB action;
    action.set_type_(0);
    action.add_ports_(5);
    action.add_ports_(6);
    expectUnchanged(
        ActionBlockEgressPorts(PORTS), [&](auto& object) { object.convertFromActionPB(&action); },
        2);
    expectUnchanged(
        ActionRedirect(limId(1, 1, 1, 1)),
        [&](auto& object) { object.convertFromActionPB(&action); }, 2);
}

// ---------------------------------------------------------------------------------------- entries

TEST(OutOfMemory, AnEntryIsNotHalfFilled)
{
    const FiltersEntry entries[] = {FiltersEntry(7), fullEntry(7)};
    const FiltersEntry other = otherEntry(8);
    FiltersEntryPB message;
    other.convertToFiltersEntryPB(&message);
    const policer::Policer policer = policerAt(policer::STAGE_EGRESS, 3);
    const MatchIngressPorts ports(OTHER_PORTS);
    const ActionBlockEgressPorts blocked(OTHER_PORTS);
    for (const FiltersEntry& before : entries) {
        expectUnchanged(
            before, [&](auto& entry) { entry.setMatch(ports); }, 2);
        expectUnchanged(
            before, [&](auto& entry) { entry.setAction(blocked); }, 2);
        expectUnchanged(
            before, [&](auto& entry) { entry.copyMatches(other.getMatchesRef()); }, 5);
        expectUnchanged(
            before, [&](auto& entry) { entry.setMatches(other.getMatchesRef()); }, 5);
        expectUnchanged(
            before, [&](auto& entry) { entry.copyActions(other.getActionsRef()); }, 2);
        expectUnchanged(
            before, [&](auto& entry) { entry.setActions(other.getActionsRef()); }, 2);
        expectUnchanged(before, [&](auto& entry) { entry.setPolicer(policer); });
        expectUnchanged(
            before, [&](auto& entry) { entry.convertFromFiltersEntryPB(&message); }, 8);
    }
}

TEST(OutOfMemory, AMoveLeavesBothEntries)
{
    const FiltersEntry before = fullEntry(7);
    FiltersEntry source = otherEntry(8);
    FiltersEntry target(before);
    EXPECT_GE(failEachAllocation([&] { target = std::move(source); },
                                 [&] {
                                     EXPECT_TRUE(target == before);
                                     EXPECT_TRUE(source == otherEntry(8));
                                 }),
              1u);
}

TEST(OutOfMemory, GettingLeavesWhatItWasToFill)
{
    const FiltersEntry entry = fullEntry(7);
    expectUnchanged(
        MatchIngressPorts(OTHER_PORTS), [&](auto& match) { entry.getMatch(match); }, 3);
    expectUnchanged(
        ActionBlockEgressPorts(OTHER_PORTS), [&](auto& action) { entry.getAction(action); }, 3);
}

TEST(OutOfMemory, CopyMapLeavesTheOldMap)
{
    const FiltersEntry from = otherEntry(1);
    const FiltersEntry held = fullEntry(1);
    FiltersEntry::MatchMap to;
    copy_map(to, held.getMatchesRef());
    const std::size_t allocations = failEachAllocation(
        [&] { copy_map(to, from.getMatchesRef()); },
        [&] {
            FiltersEntry entry(1);
            EXPECT_EQ(entry.copyMatches(to), FILTERS_OK);
            EXPECT_EQ(entry.getMatchesRef().size(), 3u);
            EXPECT_TRUE(*entry.getMatchesRef().at(MATCH_INGRESS_PORTS) == MatchIngressPorts(PORTS));
        });
    EXPECT_GE(allocations, 5u);
}

// ----------------------------------------------------------------------------------------- groups

TEST(OutOfMemory, AGroupIsNotHalfFilled)
{
    const FiltersGroup before = fullGroup();
    const FiltersEntry another = otherEntry(6);
    const FiltersEntry replacement = otherEntry(5);
    FiltersGroup other(4);
    other.setPriority(3);
    other.setType(GROUP_TYPE_3);
    other.insertEntry(another);
    other.insertEntry(replacement);
    const FiltersGroupPB message = other.convertToFiltersGroupPB();

    expectUnchanged(
        before, [&](auto& group) { group.insertEntry(another); }, 8);
    expectUnchanged(
        before, [&](auto& group) { group.insertEntry(replacement); }, 8);
    expectUnchanged(
        before, [&](auto& group) { group = other; }, 16);
    expectUnchanged(
        before, [&](auto& group) { group.convertFromFiltersGroupPB(&message); }, 16);
}

TEST(OutOfMemory, ARefusedInsertionAllocatesNothing)
{
    FiltersGroup group = fullGroup();
    FiltersEntry refused = fullEntry(3);
    refused.setMatch(MatchVlanUntagged());
    EXPECT_EQ(
        failEachAllocation(
            [&] { EXPECT_EQ(group.insertEntry(refused), FILTERS_ERR_MATCH_NOT_ALLOWED); }, [] {}),
        0u);
}

// ------------------------------------------------------------------- construction, reading, bytes

TEST(OutOfMemory, AnObjectThatIsNotMadeLeavesNothing)
{
    const FiltersEntry entry = fullEntry(7);
    const FiltersGroup group = fullGroup();
    const std::string entryBytes = bytesOf(entry);
    const std::string groupBytes = bytesOf(group);
    const FiltersSerialized entryEnvelope(entryBytes);
    FiltersSerialized groupEnvelope(groupBytes);
    const std::function<void()> operations[] = {
        [&] { FiltersEntry copy(entry); },
        [&] { FiltersGroup copy(group); },
        [&] { const auto entries = group.getEntries(); },
        [&] { FiltersEntry rebuilt(entryBytes); },
        [&] { FiltersEntry rebuilt(entryEnvelope); },
        [&] { FiltersGroup rebuilt(groupBytes); },
        [&] { FiltersGroup rebuilt(groupEnvelope); },
        [&] { FiltersEntry empty((std::string())); },
        [&] { FiltersGroup cut(groupBytes.substr(0, groupBytes.size() / 2)); },
        [&] { FiltersSerialized copy(groupEnvelope); },
    };
    for (const auto& operation : operations) {
        operation();
        for (const Failing failing : {Failing::ONE, Failing::ONE_AND_ALL_LATER})
            EXPECT_GE(failEachAllocation(failing, operation, [] {}), 1u);
    }
    EXPECT_TRUE(entry == fullEntry(7));
    EXPECT_TRUE(group == fullGroup());
}

TEST(OutOfMemory, WritingLeavesWhatWasToHoldTheBytes)
{
    const FiltersEntry entry = fullEntry(7);
    const FiltersGroup group = fullGroup();
    const std::string before = "what was there before, longer than a string holds in itself";
    expectUnchanged(
        before, [&](std::string& out) { entry.serialize(&out); }, 2);
    expectUnchanged(
        before, [&](std::string& out) { group.serialize(&out); }, 2);

    FiltersSerialized envelope;
    EXPECT_GE(failEachAllocation([&] { group.serialize(&envelope); },
                                 [&] {
                                     EXPECT_EQ(envelope.size(), 0u);
                                     EXPECT_EQ(envelope.data(), nullptr);
                                 }),
              2u);
    EXPECT_GT(envelope.size(), 0u);
    const std::string held(envelope.data(), envelope.size());
    EXPECT_GE(
        failEachAllocation([&] { envelope.copyData(before); },
                           [&] { EXPECT_EQ(std::string(envelope.data(), envelope.size()), held); }),
        1u);
}

} // namespace
} // namespace FiltersCommon
