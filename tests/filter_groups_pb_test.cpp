#include "named_entries.h"
#include "wire_support.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using namespace FiltersCommon;
using namespace FiltersCommon::test;

FiltersGroup readGroup(const FiltersGroupPB& pb)
{
    FiltersGroup group(0);
    group.convertFromFiltersGroupPB(&pb);
    return group;
}

FiltersGroup readGroup(const std::string& text) { return readGroup(message<FiltersGroupPB>(text)); }

std::vector<int> idsOf(const FiltersGroup& group)
{
    std::vector<int> ids;
    for (const auto& element : group.getEntriesRef())
        ids.push_back(element.first);
    return ids;
}

using Ids = std::vector<int>;

// ---------------------------------------------------------------------------------------- writing

TEST(GroupMessage, OfAnEmptyGroupHoldsTheFourScalars)
{
    EXPECT_TRUE(isMessage(written(FiltersGroup(0)), "id_: 0 priority_: 0 stage_: 0 type_: 0"));
    EXPECT_TRUE(written(FiltersGroup(0)).IsInitialized());
    EXPECT_EQ(serialized(FiltersGroup(0)), std::string("\x08\x00\x10\x00\x18\x00\x20\x00", 8));
}

TEST(GroupMessage, HoldsTheScalars)
{
    FiltersGroup group(65535);
    group.setPriority(65534);
    group.setStage(GROUP_STAGE_3);
    group.setType(GROUP_TYPE_5);
    EXPECT_TRUE(isMessage(written(group), "id_: 65535 priority_: 65534 stage_: 3 type_: 5"));
}

TEST(GroupMessage, HoldsTheEntriesInAscendingOrderOfTheirIdentifiers)
{
    FiltersGroup group(1);
    for (const int id : {300, 2, 65535, 0, 11})
        group.insertEntry(FiltersEntry(static_cast<filtersEntryId_t>(id)));
    const FiltersGroupPB pb = written(group);
    std::vector<unsigned> ids;
    for (const FiltersEntryPB& entry : pb.entries_())
        ids.push_back(entry.id_());
    EXPECT_EQ(ids, (std::vector<unsigned>{0, 2, 11, 300, 65535}));
}

TEST(GroupMessage, HoldsWhatEachEntryWrites)
{
    FiltersGroup group(1);
    group.setType(GROUP_TYPE_3);
    fillAccessList(group);
    const FiltersGroupPB pb = written(group);
    ASSERT_EQ(pb.entries__size(), 3);
    int position = 0;
    for (const auto& element : group.getEntriesRef())
        EXPECT_TRUE(isMessage(pb.entries_(position++), written(element.second)));
}

TEST(GroupMessage, IsWhatSerializeWritesInThePlaceOfWhatTheStringHeld)
{
    for (const auto& sample : groupSamples()) {
        std::string bytes = "what was there before";
        sample.object->serialize(&bytes);
        EXPECT_EQ(bytes, bytesOf(written(*sample.object))) << sample.name;
    }
}

// ---------------------------------------------------------------------------------------- scalars

TEST(ReadingAGroup, KeepsTheLow16BitsOfIdentifierAndPriority)
{
    EXPECT_EQ(readGroup("id_: 65537").getId(), 1);
    EXPECT_EQ(readGroup("priority_: 65535").getPriority(), 65535);
    EXPECT_EQ(readGroup("priority_: 65536").getPriority(), 0);
    EXPECT_EQ(readGroup("priority_: 4294967295").getPriority(), 65535);
}

TEST(ReadingAGroup, TakesStageAndTypeAsTheyStand)
{
    const FiltersGroup unknown = readGroup("stage_: 0xffffffff type_: 0x7fffffff");
    EXPECT_EQ(unknown.getStage(), -1);
    EXPECT_EQ(unknown.getType(), 0x7FFFFFFF);
    EXPECT_TRUE(
        isMessage(written(unknown), "id_: 0 priority_: 0 stage_: 0xffffffff type_: 0x7fffffff"));

    const FiltersGroup unfitting = readGroup("stage_: 1 type_: 1");
    EXPECT_EQ(unfitting.getStage(), GROUP_STAGE_1);
    EXPECT_EQ(unfitting.getType(), GROUP_TYPE_1);
}

TEST(ReadingAGroup, TakesMissingScalarsAsZeroAlsoOverWhatTheGroupHolds)
{
    FiltersGroup group(7);
    group.setPriority(8);
    group.setStage(GROUP_STAGE_2);
    group.setType(GROUP_TYPE_3);
    const FiltersGroupPB nothing;
    group.convertFromFiltersGroupPB(&nothing);
    EXPECT_TRUE(group == FiltersGroup(0));
}

// ---------------------------------------------------------------------------------------- entries

TEST(ReadingAGroup, DropsEntriesWithAMatchThatTheTypeDoesNotAdmit)
{
    EXPECT_EQ(idsOf(readGroup("type_: 3 entries_ { id_: 1 matches_ { type_: 26 } }"
                              "entries_ { id_: 2 matches_ { type_: 26 } matches_ { type_: 12 } }"
                              "entries_ { id_: 3 matches_ { type_: 16 } }"
                              "entries_ { id_: 4 }")),
              (Ids{1, 4}));
}

TEST(ReadingAGroup, DropsEntriesWithAnActionThatTheStageDoesNotAdmit)
{
    EXPECT_EQ(idsOf(readGroup("stage_: 1 entries_ { id_: 1 actions_ { type_: 7 } }"
                              "entries_ { id_: 2 actions_ { type_: 5 } }"
                              "entries_ { id_: 3 actions_ { type_: 0 } actions_ { type_: 16 } }"
                              "entries_ { id_: 4 }")),
              (Ids{1, 4}));
}

TEST(ReadingAGroup, DropsEntriesWithAPolicerThatTheStageDoesNotAdmit)
{
    const auto read = [](std::uint32_t groupStage) {
        FiltersGroupPB pb;
        pb.set_stage_(groupStage);
        const policer::Stage stages[] = {policer::STAGE_INGRESS, policer::STAGE_EGRESS,
                                         policer::STAGE_NONE};
        for (const policer::Stage stage : stages) {
            FiltersEntryPB* entry = pb.add_entries_();
            entry->set_id_(stage);
            entry->set_policer_(policerAt(stage).Serialize());
        }
        return idsOf(readGroup(pb));
    };
    EXPECT_EQ(read(0), Ids{policer::STAGE_NONE});
    EXPECT_EQ(read(1), Ids{policer::STAGE_NONE});
    EXPECT_EQ(read(2), (Ids{policer::STAGE_INGRESS, policer::STAGE_NONE}));
    EXPECT_EQ(read(3), (Ids{policer::STAGE_EGRESS, policer::STAGE_NONE}));
}

TEST(ReadingAGroup, DropsEveryEntryWhereStageOrTypeIsUnknown)
{
    EXPECT_EQ(idsOf(readGroup("entries_ { id_: 1 }")), Ids{1});
    EXPECT_EQ(idsOf(readGroup("type_: 10 entries_ { id_: 1 }")), Ids{});
    EXPECT_EQ(idsOf(readGroup("stage_: 4 entries_ { id_: 1 }")), Ids{});
}

TEST(ReadingAGroup, ChecksEntriesAgainstAPairThatDoesNotFitItself)
{
    EXPECT_EQ(idsOf(readGroup("stage_: 1 type_: 1 entries_ { id_: 1 matches_ { type_: 28 } }"
                              "entries_ { id_: 2 matches_ { type_: 9 } }"
                              "entries_ { id_: 3 actions_ { type_: 5 } }")),
              Ids{1});
}

TEST(ReadingAGroup, ChecksEntriesAgainstTheStageAndTypeThatWereRead)
{
    FiltersGroup group(0);
    group.setType(GROUP_TYPE_8);
    const auto pb = message<FiltersGroupPB>("type_: 3 entries_ { id_: 1 matches_ { type_: 26 } }"
                                            "entries_ { id_: 2 matches_ { type_: 27 } }");
    group.convertFromFiltersGroupPB(&pb);
    EXPECT_EQ(idsOf(group), Ids{1});
}

TEST(ReadingAGroup, LetsALaterEntryReplaceAnEarlierOneOfItsIdentifier)
{
    const FiltersGroup group = readGroup("entries_ { id_: 1 priority_: 10 }"
                                         "entries_ { id_: 2 priority_: 20 }"
                                         "entries_ { id_: 1 priority_: 30 }");
    EXPECT_EQ(idsOf(group), (Ids{1, 2}));
    EXPECT_EQ(group.getEntriesRef().at(1).getPriority(), 30u);
}

TEST(ReadingAGroup, NeverLetsARefusedEntryReplaceOne)
{
    const FiltersGroup group = readGroup("entries_ { id_: 1 priority_: 10 }"
                                         "entries_ { id_: 1 priority_: 20 matches_ { type_: 0 } }"
                                         "entries_ { id_: 2 priority_: 30 matches_ { type_: 0 } }"
                                         "entries_ { id_: 2 priority_: 40 }");
    EXPECT_EQ(group.getEntriesRef().at(1).getPriority(), 10u);
    EXPECT_EQ(group.getEntriesRef().at(2).getPriority(), 40u);
}

TEST(ReadingAGroup, CutsTheIdentifiersOfEntriesBeforeTheyAreCompared)
{
    const FiltersGroup group = readGroup("entries_ { id_: 1 priority_: 10 }"
                                         "entries_ { id_: 65537 priority_: 20 }");
    EXPECT_EQ(idsOf(group), Ids{1});
    EXPECT_EQ(group.getEntriesRef().at(1).getId(), 1);
    EXPECT_EQ(group.getEntriesRef().at(1).getPriority(), 20u);
}

TEST(ReadingAGroup, TakesEntriesInAnyOrder)
{
    const FiltersGroup group =
        readGroup("entries_ { id_: 9 } entries_ { id_: 3 } entries_ { id_: 65535 }"
                  "entries_ { id_: 0 } entries_ { id_: 4 }");
    EXPECT_EQ(idsOf(group), (Ids{0, 3, 4, 9, 65535}));
    for (const auto& element : group.getEntriesRef())
        EXPECT_EQ(element.second.getId(), element.first);
}

TEST(ReadingIntoAGroup, AddsToTheEntriesItHolds)
{
    FiltersGroup group(1);
    for (const int id : {2, 4, 6})
        group.insertEntry(FiltersEntry(static_cast<filtersEntryId_t>(id)));
    const auto pb = message<FiltersGroupPB>("entries_ { id_: 4 priority_: 40 } entries_ { id_: 1 }"
                                            "entries_ { id_: 9 }");
    group.convertFromFiltersGroupPB(&pb);
    EXPECT_EQ(idsOf(group), (Ids{1, 2, 4, 6, 9}));
    EXPECT_EQ(group.getEntriesRef().at(4).getPriority(), 40u);
}

TEST(ReadingIntoAGroup, ReplacesAHeldEntryAsAWhole)
{
    FiltersGroup group(1);
    group.setType(GROUP_TYPE_3);
    FiltersEntry held(4);
    held.setMatch(MatchTTL(1));
    held.setAction(ActionDeny());
    group.insertEntry(held);
    const auto pb = message<FiltersGroupPB>("type_: 3 entries_ { id_: 4 matches_ { type_: 17 } }");
    group.convertFromFiltersGroupPB(&pb);
    const FiltersEntry& entry = group.getEntriesRef().at(4);
    EXPECT_EQ(entry.getMatchesRef().count(MATCH_TTL), 0u);
    EXPECT_EQ(entry.getMatchesRef().count(MATCH_IP_PROTOCOL), 1u);
    EXPECT_TRUE(entry.getActionsRef().empty());
}

TEST(ReadingIntoAGroup, LeavesHeldEntriesThatTheNewStageAndTypeDoNotAdmit)
{
    FiltersGroup group(1);
    group.setType(GROUP_TYPE_3);
    FiltersEntry held(4);
    held.setMatch(MatchTTL(1));
    held.setAction(ActionSetPcp(1));
    ASSERT_EQ(group.insertEntry(held), FILTERS_OK);
    const auto pb = message<FiltersGroupPB>("id_: 2 stage_: 3 type_: 5 entries_ { id_: 5 }");
    group.convertFromFiltersGroupPB(&pb);
    EXPECT_EQ(idsOf(group), (Ids{4, 5}));
    EXPECT_TRUE(group.getEntriesRef().at(4) == held);
    EXPECT_EQ(group.getStage(), GROUP_STAGE_3);
}

// ------------------------------------------------------------------------------------ round trips

class EveryGroup : public testing::TestWithParam<Named<FiltersGroup>> {};

INSTANTIATE_TEST_SUITE_P(Samples, EveryGroup, testing::ValuesIn(groupSamples()), BY_NAME);

TEST_P(EveryGroup, IsRebuiltEqualFromItsBytes)
{
    EXPECT_TRUE(rebuilt(*GetParam().object) == *GetParam().object);
}

TEST_P(EveryGroup, IsRebuiltEqualFromItsEnvelope)
{
    FiltersSerialized envelope;
    GetParam().object->serialize(&envelope);
    EXPECT_TRUE(FiltersGroup(envelope) == *GetParam().object);
}

TEST_P(EveryGroup, WritesTheSameBytesWhenRebuilt)
{
    const std::string bytes = serialized(*GetParam().object);
    EXPECT_EQ(serialized(FiltersGroup(bytes)), bytes);
}

TEST(GroupBytes, GiveBackAllIdentifiersThatThereAre)
{
    FiltersGroup group(1);
    group.setType(GROUP_TYPE_3);
    for (unsigned id = 65536; id-- != 0;) {
        FiltersEntry entry(static_cast<filtersEntryId_t>(id));
        entry.setPriority(id * 3);
        entry.setMatch(MatchTTL(static_cast<unsigned char>(id)));
        group.insertEntry(entry);
    }
    const FiltersGroup copy = rebuilt(group);
    EXPECT_EQ(copy.getEntriesRef().size(), 65536u);
    EXPECT_TRUE(copy == group);
}

// ---------------------------------------------------------------------------------- strange bytes

TEST(GroupBytes, ThatAreNoneGiveAnEmptyGroup)
{
    const QuietParser quiet;
    EXPECT_TRUE(FiltersGroup(std::string()) == FiltersGroup(0));
}

TEST(GroupBytes, WithoutRequiredFieldsStillGiveTheRest)
{
    const QuietParser quiet;
    const FiltersGroup group(bytesOf(message<FiltersGroupPB>("priority_: 5 entries_ { id_: 1 }")));
    EXPECT_EQ(group.getPriority(), 5);
    EXPECT_EQ(idsOf(group), Ids{1});
}

/** Whatever the bytes: the group is what its conversion makes of what the parser left. */
void expectReadAsParsed(const std::string& bytes)
{
    EXPECT_TRUE(FiltersGroup(bytes) == readGroup(parsed<FiltersGroupPB>(bytes)));
    FiltersSerialized envelope(bytes);
    EXPECT_TRUE(FiltersGroup(envelope) == readGroup(parsed<FiltersGroupPB>(bytes + '\0')));
}

TEST_P(EveryGroup, CutAnywhereGivesWhatTheParserLeft)
{
    const QuietParser quiet;
    const std::string bytes = serialized(*GetParam().object);
    for (std::size_t length = 0; length < bytes.size(); ++length) {
        SCOPED_TRACE(length);
        expectReadAsParsed(bytes.substr(0, length));
    }
}

TEST_P(EveryGroup, WithBytesChangedGivesWhatTheParserLeft)
{
    const QuietParser quiet;
    const std::string bytes = serialized(*GetParam().object);
    RandomBytes random;
    for (int i = 0; i < 500; ++i)
        expectReadAsParsed(random.mutated(bytes));
}

TEST(GroupBytes, OfAnyKindGiveWhatTheParserLeft)
{
    const QuietParser quiet;
    RandomBytes random;
    for (int i = 0; i < 5000; ++i)
        expectReadAsParsed(random.any(80));
}

TEST(GroupBytes, CutBehindAnEntryGiveTheEntriesBefore)
{
    const QuietParser quiet;
    FiltersGroup group(1);
    group.insertEntry(FiltersEntry(5));
    const std::string one = serialized(group);
    group.insertEntry(FiltersEntry(6));
    const std::string two = serialized(group);
    ASSERT_EQ(two.substr(0, one.size()), one);
    EXPECT_EQ(idsOf(FiltersGroup(two.substr(0, one.size()))), Ids{5});
}

TEST(GroupBytes, BehindAZeroAreNotRead)
{
    const QuietParser quiet;
    const FiltersGroup group(7);
    const std::string more = bytesOf(message<FiltersGroupPB>("id_: 8 entries_ { id_: 1 }"));
    EXPECT_TRUE(FiltersGroup(serialized(group) + '\0' + more) == group);
    EXPECT_FALSE(FiltersGroup(serialized(group) + more) == group);
}

TEST(GroupBytes, MayHoldUnknownFields)
{
    FiltersGroup group(7);
    group.insertEntry(FiltersEntry(5));
    FiltersGroupPB pb = written(group);
    pb.GetReflection()->MutableUnknownFields(&pb)->AddVarint(99, 5);
    FiltersEntryPB* entry = pb.mutable_entries_(0);
    entry->GetReflection()->MutableUnknownFields(entry)->AddLengthDelimited(100, "new");
    EXPECT_TRUE(FiltersGroup(bytesOf(pb)) == group);
}

TEST(GroupBytes, OfTwoGroupsBehindEachOtherReadAsTheSecondWithTheEntriesOfBoth)
{
    FiltersGroup first(1);
    first.setPriority(10);
    first.setType(GROUP_TYPE_8);
    insert(first, 1, fillIPv6);
    insert(first, 5, [](FiltersEntry&) {});
    FiltersGroup second(2);
    second.setPriority(20);
    second.setType(GROUP_TYPE_3);
    insert(second, 2, fillTypical);

    // The IPv6 addresses of the first do not fit the type of the second.
    const FiltersGroup both(serialized(first) + serialized(second));
    EXPECT_EQ(both.getId(), 2);
    EXPECT_EQ(both.getPriority(), 20);
    EXPECT_EQ(both.getType(), GROUP_TYPE_3);
    EXPECT_EQ(idsOf(both), (Ids{2, 5}));
}

TEST(GroupBytes, ThatAreIncompleteAreReadInSilence)
{
    testing::internal::CaptureStderr();
    const FiltersGroup group((std::string()));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(group.getId(), 0);
}

} // namespace
