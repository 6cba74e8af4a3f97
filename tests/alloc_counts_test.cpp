#include "filter_rule_text.h"
#include "named_entries.h"
#include "nowhere.h"
#include "test_allocator.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <ostream>
#include <string>
#include <utility>

namespace {

using namespace FiltersCommon;
using namespace FiltersCommon::test;

struct Allocations {
    std::size_t count = 0;
    std::size_t bytes = 0;
};

bool operator==(const Allocations& a, const Allocations& b)
{
    return a.count == b.count && a.bytes == b.bytes;
}

void PrintTo(const Allocations& allocations, std::ostream* out)
{
    *out << allocations.count << " allocations of " << allocations.bytes << " bytes";
}

/** What the operation allocates. */
template <class Operation>
Allocations allocationsOf(Operation operation)
{
    const AllocationTotals before = allocationTotals();
    operation();
    const AllocationTotals after = allocationTotals();
    return {after.count - before.count, after.bytes - before.bytes};
}

constexpr Allocations NOTHING{};

/** A rule of an access list, with all that can take memory. */
FiltersEntry ruleOf(filtersEntryId_t id)
{
    FiltersEntry entry(id);
    entry.setPriority(id);
    entry.setPolicer(policerOf(policer::STAGE_INGRESS, policer::Mode::TR_TCM_DS));
    entry.setCounter(Counter(id, COUNTER_TYPE_PACKETS));
    entry.setMatch(MatchIngressPorts(std::list<limid_t>{limId(0, 0, 0, 1), limId(0, 0, 0, 2)}));
    entry.setMatch(MatchExternalVlanId({10, 20, 30}));
    entry.setMatch(MatchSrcIPv4(ipv4("192.0.2.0"), ipv4("255.255.255.0")));
    entry.setMatch(MatchDstL4Port(443));
    entry.setMatch(MatchIpProtocol(6));
    entry.setAction(ActionDeny());
    entry.setAction(ActionRedirect(limId(0, 0, 0, 3)));
    return entry;
}

FiltersGroup groupOf(std::size_t size)
{
    FiltersGroup group(1);
    group.setStage(GROUP_STAGE_2);
    group.setType(GROUP_TYPE_3);
    for (std::size_t id = 0; id < size; ++id)
        group.insertEntry(ruleOf(static_cast<filtersEntryId_t>(id)));
    return group;
}

/** What an operation on a group allocates for each entry: constant parts cancel out. */
template <class Operation>
double perEntry(Operation operation)
{
    constexpr std::size_t FEW = 1000;
    constexpr std::size_t MANY = 3000;
    const FiltersGroup few = groupOf(FEW);
    const FiltersGroup many = groupOf(MANY);
    const auto countOf = [&](const FiltersGroup& group) {
        return static_cast<double>(allocationsOf([&] { operation(group); }).count);
    };
    return (countOf(many) - countOf(few)) / (MANY - FEW);
}

class AllocationCounts : public testing::Test {
protected:
    AllocationCounts()
    {
        // What is built once, whoever comes first.
        FiltersGroup first = groupOf(1);
        std::string bytes;
        first.serialize(&bytes);
        FiltersGroup second(bytes);
        EXPECT_TRUE(first == second);
    }
};

TEST_F(AllocationCounts, AreTakenOfTheLibraryToo)
{
    FiltersGroup group(1);
    EXPECT_GT(allocationsOf([&] { group.insertEntry(FiltersEntry(1)); }).count, 0u);
}

// ------------------------------------------------------------------------- operations without any

TEST_F(AllocationCounts, OfEqualityAreNone)
{
    const FiltersGroup group = groupOf(10);
    const FiltersGroup same = groupOf(10);
    bool equal = false;
    EXPECT_EQ(allocationsOf([&] { equal = group == same; }), NOTHING);
    EXPECT_TRUE(equal);
    EXPECT_EQ(allocationsOf([&] { equal = group != same; }), NOTHING);
    EXPECT_EQ(
        allocationsOf([&] { equal = group.getEntriesRef().at(1) == same.getEntriesRef().at(1); }),
        NOTHING);
    EXPECT_TRUE(equal);
}

TEST_F(AllocationCounts, OfANewStageOrTypeAreNone)
{
    FiltersGroup group = groupOf(10);
    const FiltersEntry plain(1);
    EXPECT_EQ(allocationsOf([&] { group.setType(GROUP_TYPE_1); }), NOTHING) << "refused";
    EXPECT_EQ(allocationsOf([&] { group.setType(GROUP_TYPE_3); }), NOTHING);
    EXPECT_EQ(allocationsOf([&] { group.setStage(GROUP_STAGE_0); }), NOTHING) << "refused";
    EXPECT_EQ(allocationsOf([&] { group.setStage(GROUP_STAGE_2); }), NOTHING);
    EXPECT_EQ(group.getStage(), GROUP_STAGE_2);
    EXPECT_EQ(group.getType(), GROUP_TYPE_3);
}

TEST_F(AllocationCounts, OfARefusedEntryAreNone)
{
    FiltersGroup group(1);
    const FiltersEntry rule = ruleOf(1);
    filtersErr_t result = FILTERS_OK;
    EXPECT_EQ(allocationsOf([&] { result = group.insertEntry(rule); }), NOTHING);
    EXPECT_EQ(result, FILTERS_ERR_MATCH_NOT_ALLOWED);
    FiltersEntry offered = ruleOf(1);
    EXPECT_EQ(allocationsOf([&] { result = group.takeEntry(std::move(offered)); }), NOTHING);
    EXPECT_EQ(result, FILTERS_ERR_MATCH_NOT_ALLOWED);
}

TEST_F(AllocationCounts, OfARemovedEntryAreNone)
{
    FiltersGroup group = groupOf(10);
    EXPECT_EQ(allocationsOf([&] { group.removeEntry(5); }), NOTHING);
    EXPECT_EQ(group.getEntriesRef().count(5), 0u);
    EXPECT_EQ(allocationsOf([&] { group.removeEntry(5); }), NOTHING) << "refused";
}

TEST_F(AllocationCounts, OfTheDumpOf10000EntriesAreNone)
{
    const FiltersGroup group = groupOf(10000);
    Nowhere nowhere;
    std::ostream out(&nowhere);
    EXPECT_EQ(allocationsOf([&] { out << group; }), NOTHING);
    EXPECT_GT(nowhere.length(), 10000u * 500);
}

// --------------------------------------------------------------------------- one copy of an entry

TEST_F(AllocationCounts, OfAnInsertedEntryAreThoseOfOneCopyInOneNode)
{
    const FiltersEntry rule = ruleOf(1);
    FiltersGroup::EntryMap map;
    const Allocations ofOneCopy = allocationsOf([&] { map.emplace(rule.getId(), rule); });
    const Allocations ofTheEntry = allocationsOf([&] { FiltersEntry copy(rule); });
    ASSERT_EQ(ofOneCopy.count, ofTheEntry.count + 1);

    FiltersGroup group = groupOf(0);
    EXPECT_EQ(allocationsOf([&] { group.insertEntry(rule); }), ofOneCopy);
    EXPECT_EQ(allocationsOf([&] { group.insertEntry(rule); }), ofOneCopy) << "as a replacement";
    EXPECT_EQ(group.getEntriesRef().size(), 1u);
}

TEST_F(AllocationCounts, OfATakenEntryAreThoseOfANodeAndItsPolicer)
{
    FiltersEntry bare(1);
    bare.setPolicer(ruleOf(1).getPolicer());
    FiltersGroup::EntryMap map;
    const Allocations ofTheNode = allocationsOf([&] { map.emplace(bare.getId(), bare); });
    const Allocations ofThePolicer =
        allocationsOf([&] { policer::Policer copy(bare.getPolicer()); });
    ASSERT_EQ(ofTheNode.count, ofThePolicer.count + 1);

    FiltersGroup group = groupOf(0);
    for (const Allocations& expected : {ofTheNode, ofThePolicer}) { // the second is a replacement
        FiltersEntry rule = ruleOf(1);
        EXPECT_EQ(allocationsOf([&] { group.takeEntry(std::move(rule)); }), expected);
        EXPECT_TRUE(group.getEntriesRef().at(1) == ruleOf(1));
    }
}

TEST_F(AllocationCounts, OfTheCopyOfAGroupAreThoseOfOneCopyOfEachEntry)
{
    const FiltersGroup group = groupOf(100);
    FiltersGroup::EntryMap map;
    const Allocations ofTheEntries = allocationsOf([&] {
        for (const auto& element : group.getEntriesRef())
            map.emplace(element.first, element.second);
    });
    EXPECT_EQ(allocationsOf([&] { FiltersGroup copy(group); }), ofTheEntries);
}

// -------------------------------------------------------------------------------------- rule text

TEST_F(AllocationCounts, OfRuleTextAreThoseOfTheEntriesAndOfOneGrowingString)
{
    std::string text = "group 1 priority=0 stage=2 type=3\n";
    for (int i = 0; i < 1000; ++i)
        text += std::to_string(i) +
                " priority=7 dst_l4_port=1024/0xfc00 src_ipv4=10.0.0.0/8 "
                "dst_ipv4=10.1.0.1 ip_protocol=tcp then permit counter=4:packets\n";
    const FiltersGroup group = groupFromRuleText(text).value();
    constexpr std::size_t GROWTH = 32;

    const Allocations ofCopy = allocationsOf([&] { FiltersGroup copy(group); });
    EXPECT_LE(allocationsOf([&] { groupFromRuleText(text); }).count, ofCopy.count + GROWTH);
    EXPECT_LE(allocationsOf([&] { toRuleText(group); }).count, GROWTH);
    EXPECT_EQ(toRuleText(group), text);
}

// ------------------------------------------------------------------------------------------ bytes

/** What the policer library allocates for the policer of a rule. */
Allocations ofPolicerFromBytes()
{
    const std::string bytes = ruleOf(1).getPolicer().Serialize();
    return allocationsOf([&] { policer::Policer policer{std::string(bytes)}; });
}

Allocations ofPolicerToBytes()
{
    const FiltersEntry rule = ruleOf(1);
    return allocationsOf([&] { rule.getPolicer().Serialize(); });
}

TEST_F(AllocationCounts, OfWritingAGroupAreThoseOfThePolicers)
{
    const double writing = perEntry([](const FiltersGroup& group) {
        std::string bytes;
        group.serialize(&bytes);
    });
    // The string grows by doubling.
    EXPECT_NEAR(writing, static_cast<double>(ofPolicerToBytes().count), 0.01);
}

TEST_F(AllocationCounts, OfWritingAnEntryAreThoseOfItsBytes)
{
    FiltersEntry entry(1);
    entry.setMatch(MatchSrcIPv4(ipv4("192.0.2.0"), ipv4("255.255.255.0")));
    entry.setMatch(MatchDstIPv4(ipv4("192.0.2.0"), ipv4("255.255.255.0")));
    entry.setMatch(MatchDstL4Port(443));
    entry.setAction(ActionDeny());
    std::string bytes;
    EXPECT_EQ(allocationsOf([&] { entry.serialize(&bytes); }).count, 1u);
}

TEST_F(AllocationCounts, OfReadingAGroupAreThoseOfItsCopyAndThePolicers)
{
    const double copying = perEntry([](const FiltersGroup& group) { FiltersGroup copy(group); });
    std::string bytes;
    const double writing = perEntry([&](const FiltersGroup& group) { group.serialize(&bytes); });
    const double readingAndWriting = perEntry([&](const FiltersGroup& group) {
        group.serialize(&bytes);
        FiltersGroup read(bytes);
    });

    // A copy copies the three actions of the policer, a policer from bytes makes them.
    const double expected = copying - 3 + static_cast<double>(ofPolicerFromBytes().count);
    // Besides, the entries wait in a vector that grows as they are read.
    EXPECT_NEAR(readingAndWriting - writing, expected, 0.02);
}

/** No message is made on the way: that would show. */
TEST_F(AllocationCounts, OfReadingAnEntryOfAnyKindAreThoseOfItsCopy)
{
    for (const Named<FiltersEntry>& sample : entriesOfEachKind()) {
        std::string bytes;
        sample.object->serialize(&bytes);
        const Allocations copying = allocationsOf([&] { FiltersEntry copy(*sample.object); });
        const Allocations reading = allocationsOf([&] { FiltersEntry read(bytes); });
        EXPECT_EQ(reading.count, copying.count) << sample.name;
    }
}

TEST_F(AllocationCounts, OfReadingAnEnvelopeAreThoseOfReadingItsBytes)
{
    std::string bytes;
    groupOf(100).serialize(&bytes);
    FiltersSerialized envelope(bytes);
    EXPECT_EQ(allocationsOf([&] { FiltersGroup read(envelope); }),
              allocationsOf([&] { FiltersGroup read(bytes); }));
}

} // namespace
