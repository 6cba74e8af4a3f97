#include "kind_codes.h"
#include "named_entries.h"
#include "wire_support.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <string>
#include <typeinfo>
#include <vector>

namespace {

using namespace FiltersCommon;
using namespace FiltersCommon::test;

FiltersEntry readEntry(const FiltersEntryPB& pb)
{
    FiltersEntry entry;
    entry.convertFromFiltersEntryPB(&pb);
    return entry;
}

FiltersEntry readEntry(const std::string& text) { return readEntry(message<FiltersEntryPB>(text)); }

std::vector<int> matchKinds(const FiltersEntry& entry)
{
    std::vector<int> kinds;
    for (const auto& element : entry.getMatchesRef())
        kinds.push_back(element.first);
    return kinds;
}

std::vector<int> actionKinds(const FiltersEntry& entry)
{
    std::vector<int> kinds;
    for (const auto& element : entry.getActionsRef())
        kinds.push_back(element.first);
    return kinds;
}

using Kinds = std::vector<int>;

// ---------------------------------------------------------------------------------------- writing

TEST(EntryMessage, OfAnEmptyEntryHoldsTheFourScalarsAlone)
{
    FiltersEntryPB expected;
    expected.set_id_(0);
    expected.set_priority_(0);
    expected.set_policer_(policer::Policer().Serialize());
    expected.mutable_counter_()->set_id(0);
    expected.mutable_counter_()->set_type(0);
    EXPECT_TRUE(isMessage(written(FiltersEntry()), expected));
    EXPECT_TRUE(written(FiltersEntry()).IsInitialized());
}

TEST(EntryMessage, HoldsTheWholeWidthOfIdentifierAndPriority)
{
    FiltersEntry entry(65535);
    entry.setPriority(4294967295);
    EXPECT_EQ(written(entry).id_(), 65535u);
    EXPECT_EQ(written(entry).priority_(), 4294967295u);
}

TEST(EntryMessage, HoldsTheBytesOfThePolicerAndTheCounter)
{
    const policer::Policer policer = policerOf(policer::STAGE_EGRESS, policer::Mode::TR_TCM);
    FiltersEntry entry;
    entry.setPolicer(policer);
    entry.setCounter(Counter(12, COUNTER_TYPE_OCTETS));
    EXPECT_EQ(written(entry).policer_(), policer.Serialize());
    EXPECT_TRUE(isMessage(written(entry).counter_(), "id: 12 type: 2"));
}

TEST(EntryMessage, HoldsMatchesAndActionsInAscendingOrderOfTheirKinds)
{
    FiltersEntry entry;
    entry.setMatch(MatchDestinationCpu());
    entry.setMatch(MatchTTL(1));
    entry.setMatch(MatchIpProtocol(6));
    entry.setMatch(MatchAll());
    entry.setMatch(MatchDSCP(10));
    entry.setAction(ActionBlackHole());
    entry.setAction(ActionSetDSCP(1));
    entry.setAction(ActionPermit());

    FiltersEntryPB pb = written(entry);
    pb.clear_policer_();
    EXPECT_TRUE(isMessage(pb, R"(id_: 0 priority_: 0 counter_ { id: 0 type: 0 }
        matches_ { type_: 0 }
        matches_ { type_: 17 ipprotocol_: 6 }
        matches_ { type_: 20 tos_: 40 }
        matches_ { type_: 26 ttl_: 1 }
        matches_ { type_: 31 }
        actions_ { type_: 0 }
        actions_ { type_: 8 dscp_: 1 }
        actions_ { type_: 16 })"));
}

TEST(EntryMessage, IsAppendedTo)
{
    FiltersEntry entry;
    entry.setMatch(MatchAll());
    entry.setAction(ActionDeny());
    FiltersEntryPB pb;
    entry.convertToFiltersEntryPB(&pb);
    entry.convertToFiltersEntryPB(&pb);
    EXPECT_EQ(pb.matches__size(), 2);
    EXPECT_EQ(pb.actions__size(), 2);
}

TEST(EntryMessage, IsWhatSerializeWritesInThePlaceOfWhatTheStringHeld)
{
    for (const auto& sample : entrySamples()) {
        std::string bytes = "what was there before";
        sample.object->serialize(&bytes);
        EXPECT_EQ(bytes, bytesOf(written(*sample.object))) << sample.name;
    }
}

// ---------------------------------------------------------------------------------------- scalars

TEST(ReadingAnEntry, TakesTheScalars)
{
    FiltersEntryPB pb = message<FiltersEntryPB>("id_: 7 priority_: 4294967295"
                                                " counter_ { id: 12 type: 2 }");
    const policer::Policer policer = policerOf(policer::STAGE_INGRESS, policer::Mode::SR_TCM);
    pb.set_policer_(policer.Serialize());

    FiltersEntry expected(7);
    expected.setPriority(4294967295);
    expected.setPolicer(policer);
    expected.setCounter(Counter(12, COUNTER_TYPE_OCTETS));
    EXPECT_TRUE(readEntry(pb) == expected);
}

TEST(ReadingAnEntry, KeepsTheLow16BitsOfTheIdentifier)
{
    EXPECT_EQ(readEntry("id_: 65537").getId(), 1);
    EXPECT_EQ(readEntry("id_: 4294967295").getId(), 65535);
}

TEST(ReadingAnEntry, TakesMissingScalarsAsDefaultsAlsoOverWhatTheEntryHolds)
{
    FiltersEntry entry(7);
    entry.setPriority(8);
    entry.setPolicer(policerAt(policer::STAGE_INGRESS));
    entry.setCounter(Counter(12, COUNTER_TYPE_OCTETS));

    const FiltersEntryPB nothing;
    entry.convertFromFiltersEntryPB(&nothing);
    EXPECT_TRUE(entry == FiltersEntry());
}

TEST(ReadingAnEntry, TakesACounterOfInvalidTypeAsItComes)
{
    FiltersEntry entry;
    entry.setCounter(Counter(12, COUNTER_TYPE_OCTETS));
    const auto pb = message<FiltersEntryPB>("counter_ { id: 5 type: 0 }");
    entry.convertFromFiltersEntryPB(&pb);
    EXPECT_TRUE(entry.getCounter() == Counter(5, COUNTER_TYPE_INVALID));

    EXPECT_EQ(readEntry("counter_ { id: 5 type: 7 }").getCounter().GetType(), 7);
    EXPECT_EQ(readEntry("counter_ { id: 5 type: -1 }").getCounter().GetType(), -1);
}

TEST(ReadingAnEntry, TakesGarbageInThePlaceOfAPolicerAsNoPolicer)
{
    for (const std::string& garbage : {std::string(), std::string("\xff\xff\xff"),
                                       std::string("garbage"), std::string(1000, '\0')}) {
        FiltersEntry entry;
        entry.setPolicer(policerAt(policer::STAGE_INGRESS));
        FiltersEntryPB pb;
        pb.set_policer_(garbage);
        entry.convertFromFiltersEntryPB(&pb);
        EXPECT_EQ(entry.getPolicer().GetStage(), policer::STAGE_NONE);
        EXPECT_EQ(entry.getPolicer().GetId(), policer::Policer::INVALID_ID);
    }
}

// ---------------------------------------------------------------------------- matches and actions

TEST(ReadingAnEntry, SkipsUnknownMatchKinds)
{
    for (const std::uint32_t kind : unknownCodes(MATCH_KINDS)) {
        const FiltersEntry entry =
            readEntry("matches_ { type_: 26 ttl_: 1 } matches_ { type_: " + std::to_string(kind) +
                      " ttl_: 2 } matches_ { type_: 0 }");
        EXPECT_EQ(matchKinds(entry), (Kinds{MATCH_ALL, MATCH_TTL})) << kind;
    }
}

TEST(ReadingAnEntry, SkipsUnknownActionKinds)
{
    for (const std::uint32_t kind : unknownCodes(ACTION_KINDS)) {
        const FiltersEntry entry =
            readEntry("actions_ { type_: 5 pcp_: 1 } actions_ { type_: " + std::to_string(kind) +
                      " pcp_: 2 } actions_ { type_: 0 }");
        EXPECT_EQ(actionKinds(entry), (Kinds{ACTION_PERMIT, ACTION_SET_PCP})) << kind;
    }
}

TEST(ReadingAnEntry, TakesAMissingTypeAsKind0)
{
    const FiltersEntry entry = readEntry("matches_ { ttl_: 3 } actions_ { pcp_: 3 }");
    EXPECT_EQ(matchKinds(entry), Kinds{MATCH_ALL});
    EXPECT_EQ(actionKinds(entry), Kinds{ACTION_PERMIT});
}

TEST(ReadingAnEntry, DropsIPv6BehindIPv4AndIPv4BehindIPv6)
{
    const auto elements = [](const Kinds& kinds) {
        std::string text;
        for (const int kind : kinds)
            text += "matches_ { type_: " + std::to_string(kind) + " }";
        return text;
    };
    const int v4[] = {MATCH_SRC_IPV4, MATCH_DST_IPV4};
    const int v6[] = {MATCH_SRC_IPV6, MATCH_DST_IPV6};
    for (const int four : v4) {
        for (const int six : v6) {
            EXPECT_EQ(matchKinds(readEntry(elements({four, six}))), Kinds{four});
            EXPECT_EQ(matchKinds(readEntry(elements({six, four}))), Kinds{six});
        }
    }
    EXPECT_EQ(matchKinds(readEntry(elements({9, 15, 10, 14, 20, 17}))), (Kinds{9, 10, 17, 20}));
    EXPECT_EQ(matchKinds(readEntry(elements({15, 9, 14, 10, 0}))), (Kinds{0, 14, 15}));
}

TEST(ReadingAnEntry, LetsALaterElementReplaceAnEarlierOneOfItsKind)
{
    const FiltersEntry entry = readEntry(
        "matches_ { type_: 26 ttl_: 1 } matches_ { type_: 26 ttl_: 2 }"
        "actions_ { type_: 5 pcp_: 3 } actions_ { type_: 0 } actions_ { type_: 5 pcp_: 4 }");
    EXPECT_EQ(matchKinds(entry), Kinds{MATCH_TTL});
    EXPECT_TRUE(*entry.getMatchesRef().find(MATCH_TTL)->second == MatchTTL(2));
    EXPECT_EQ(actionKinds(entry), (Kinds{ACTION_PERMIT, ACTION_SET_PCP}));
    EXPECT_TRUE(*entry.getActionsRef().find(ACTION_SET_PCP)->second == ActionSetPcp(4));
}

TEST(ReadingAnEntry, NeverAddsThePortsOfOneElementToThoseOfAnother)
{
    const FiltersEntry entry = readEntry("matches_ { type_: 1 ports_: [1, 2] }"
                                         "matches_ { type_: 1 ports_: 3 }"
                                         "actions_ { type_: 3 ports_: [1, 2] }"
                                         "actions_ { type_: 3 ports_: 3 }");
    const std::list<limid_t> last = {limId(0, 0, 0, 3)};
    EXPECT_TRUE(*entry.getMatchesRef().find(MATCH_INGRESS_PORTS)->second ==
                MatchIngressPorts(last));
    EXPECT_TRUE(*entry.getActionsRef().find(ACTION_BLOCK_EGRESS_PORTS)->second ==
                ActionBlockEgressPorts(last));
}

TEST(ReadingAnEntry, KeepsAPcpOf9)
{
    const FiltersEntry entry = readEntry("matches_ { type_: 12 pcp_: 9 }");
    MatchPcp match(0);
    ASSERT_EQ(entry.getMatch(match), FILTERS_OK);
    EXPECT_EQ(match.getPcp(), 9);
}

// ------------------------------------------------------------------ into an entry that holds some

TEST(ReadingIntoAnEntry, AddsToWhatItHolds)
{
    FiltersEntry entry(1);
    entry.setMatch(MatchTTL(1));
    entry.setMatch(MatchIngressPorts(std::list<limid_t>{limId(0, 0, 0, 1)}));
    entry.setAction(ActionSetPcp(1));
    entry.setAction(ActionBlockEgressPorts({limId(0, 0, 0, 1)}));
    const auto pb =
        message<FiltersEntryPB>("id_: 2 matches_ { type_: 1 ports_: 2 }"
                                "matches_ { type_: 0 }"
                                "actions_ { type_: 3 ports_: 2 } actions_ { type_: 0 }");
    entry.convertFromFiltersEntryPB(&pb);

    FiltersEntry expected(2);
    expected.setMatch(MatchAll());
    expected.setMatch(MatchTTL(1));
    expected.setMatch(MatchIngressPorts(std::list<limid_t>{limId(0, 0, 0, 2)}));
    expected.setAction(ActionPermit());
    expected.setAction(ActionSetPcp(1));
    expected.setAction(ActionBlockEgressPorts({limId(0, 0, 0, 2)}));
    EXPECT_TRUE(entry == expected);
}

TEST(ReadingIntoAnEntry, DropsWhatTheHeldAddressesExclude)
{
    FiltersEntry four;
    four.setMatch(MatchSrcIPv4(ipv4("192.0.2.1")));
    const auto pb = message<FiltersEntryPB>("matches_ { type_: 15 } matches_ { type_: 10 }");
    four.convertFromFiltersEntryPB(&pb);
    EXPECT_EQ(matchKinds(four), (Kinds{MATCH_SRC_IPV4, MATCH_DST_IPV4}));

    FiltersEntry six;
    six.setMatch(MatchSrcIPv6(ipv6("2001:db8::1")));
    six.convertFromFiltersEntryPB(&pb);
    EXPECT_EQ(matchKinds(six), (Kinds{MATCH_SRC_IPV6, MATCH_DST_IPV6}));
}

// ------------------------------------------------------------------------------------ round trips

class EveryEntry : public testing::TestWithParam<Named<FiltersEntry>> {};

INSTANTIATE_TEST_SUITE_P(Samples, EveryEntry, testing::ValuesIn(entrySamples()), BY_NAME);

TEST_P(EveryEntry, IsRebuiltEqualFromItsBytes)
{
    EXPECT_TRUE(rebuilt(*GetParam().object) == *GetParam().object);
}

TEST_P(EveryEntry, IsRebuiltEqualFromItsEnvelope)
{
    FiltersSerialized envelope;
    GetParam().object->serialize(&envelope);
    EXPECT_TRUE(FiltersEntry(envelope) == *GetParam().object);
}

TEST_P(EveryEntry, WritesTheSameBytesWhenRebuilt)
{
    const std::string bytes = serialized(*GetParam().object);
    EXPECT_EQ(serialized(FiltersEntry(bytes)), bytes);
}

TEST(EntryBytes, GiveBackADscpAsAToS)
{
    FiltersEntry entry;
    entry.setMatch(MatchDSCP(10));
    const FiltersEntry copy = rebuilt(entry);
    const Match& match = *copy.getMatchesRef().find(MATCH_TOS)->second;
    EXPECT_EQ(typeid(match), typeid(MatchToS));
    EXPECT_TRUE(match == MatchToS(40));
}

// ---------------------------------------------------------------------------------- strange bytes

TEST(EntryBytes, ThatAreNoneGiveAnEmptyEntry)
{
    const QuietParser quiet;
    EXPECT_TRUE(FiltersEntry(std::string()) == FiltersEntry());
}

TEST(EntryBytes, WithoutACounterStillGiveTheRest)
{
    const QuietParser quiet;
    FiltersEntry entry(7);
    fillTypical(entry);
    FiltersEntryPB pb = written(entry);
    pb.clear_counter_();
    ASSERT_FALSE(pb.IsInitialized());
    EXPECT_TRUE(FiltersEntry(bytesOf(pb)) == entry);
}

/** The entry is what its conversion makes of what the parser left, whatever the bytes. */
void expectReadAsParsed(const std::string& bytes)
{
    EXPECT_TRUE(FiltersEntry(bytes) == readEntry(parsed<FiltersEntryPB>(bytes)));
    EXPECT_TRUE(FiltersEntry(FiltersSerialized(bytes)) ==
                readEntry(parsed<FiltersEntryPB>(bytes + '\0')));
}

TEST_P(EveryEntry, CutAnywhereGivesWhatTheParserLeft)
{
    const QuietParser quiet;
    const std::string bytes = serialized(*GetParam().object);
    for (std::size_t length = 0; length < bytes.size(); ++length) {
        SCOPED_TRACE(length);
        expectReadAsParsed(bytes.substr(0, length));
    }
}

TEST_P(EveryEntry, WithBytesChangedGivesWhatTheParserLeft)
{
    const QuietParser quiet;
    const std::string bytes = serialized(*GetParam().object);
    RandomBytes random;
    for (int i = 0; i < 500; ++i)
        expectReadAsParsed(random.mutated(bytes));
}

TEST(EntryBytes, OfAnyKindGiveWhatTheParserLeft)
{
    const QuietParser quiet;
    RandomBytes random;
    for (int i = 0; i < 5000; ++i)
        expectReadAsParsed(random.any(80));
}

TEST(EntryBytes, BehindAZeroAreNotRead)
{
    const QuietParser quiet;
    FiltersEntry entry(7);
    fillTypical(entry);
    const std::string more = bytesOf(message<FiltersEntryPB>("id_: 8 matches_ { type_: 0 }"));
    EXPECT_TRUE(FiltersEntry(serialized(entry) + '\0' + more) == entry);
    EXPECT_FALSE(FiltersEntry(serialized(entry) + more) == entry);
}

TEST(EntryBytes, MayHoldUnknownFields)
{
    FiltersEntry entry(7);
    fillTypical(entry);
    FiltersEntryPB pb = written(entry);
    pb.GetReflection()->MutableUnknownFields(&pb)->AddVarint(99, 5);
    MatchPB* match = pb.mutable_matches_(0);
    match->GetReflection()->MutableUnknownFields(match)->AddLengthDelimited(100, "new");
    ActionPB* action = pb.mutable_actions_(0);
    action->GetReflection()->MutableUnknownFields(action)->AddFixed64(101, 5);
    EXPECT_TRUE(FiltersEntry(bytesOf(pb)) == entry);
}

TEST(EntryBytes, MayHoldPackedRepeatedFields)
{
    const auto addPacked = [](auto* element, int field, const std::string& varints) {
        element->GetReflection()->MutableUnknownFields(element)->AddLengthDelimited(field, varints);
    };
    FiltersEntryPB pb = written(FiltersEntry());
    MatchPB* vlans = pb.add_matches_();
    vlans->set_type_(MATCH_EXTERNAL_VLAN_ID);
    addPacked(vlans, MatchPB::kVlanIdFieldNumber, "\x14\x0a");
    MatchPB* ports = pb.add_matches_();
    ports->set_type_(MATCH_INGRESS_PORTS);
    addPacked(ports, MatchPB::kPortsFieldNumber, "\x02\x01");
    ActionPB* redirect = pb.add_actions_();
    redirect->set_type_(ACTION_REDIRECT);
    addPacked(redirect, ActionPB::kPortsFieldNumber, "\x03\x04");

    FiltersEntry expected;
    expected.setMatch(MatchExternalVlanId({10, 20}));
    expected.setMatch(MatchIngressPorts(std::list<limid_t>{limId(0, 0, 0, 2), limId(0, 0, 0, 1)}));
    expected.setAction(redirectTo({limId(0, 0, 0, 3), limId(0, 0, 0, 4)}));
    EXPECT_TRUE(FiltersEntry(bytesOf(pb)) == expected);
}

TEST(EntryBytes, MayHoldTheirFieldsInAnyOrder)
{
    FiltersEntry entry(7);
    fillTypical(entry);
    entry.setCounter(Counter(12, COUNTER_TYPE_OCTETS));
    const FiltersEntryPB pb = written(entry);
    std::string reversed;
    for (int number = 6; number >= 1; --number) {
        FiltersEntryPB rest(pb);
        for (int other = 1; other <= 6; ++other)
            if (other != number)
                rest.GetReflection()->ClearField(&rest,
                                                 rest.GetDescriptor()->FindFieldByNumber(other));
        reversed += bytesOf(rest);
    }
    ASSERT_NE(reversed, bytesOf(pb));
    EXPECT_TRUE(FiltersEntry(reversed) == entry);
}

TEST(EntryBytes, OfTwoEntriesBehindEachOtherReadAsOne)
{
    FiltersEntry first(1);
    first.setMatch(MatchTTL(1));
    first.setMatch(MatchVrfId(1));
    FiltersEntry second(2);
    second.setMatch(MatchTTL(2));
    second.setAction(ActionDeny());

    FiltersEntry expected(2);
    expected.setMatch(MatchTTL(2));
    expected.setMatch(MatchVrfId(1));
    expected.setAction(ActionDeny());
    EXPECT_TRUE(FiltersEntry(serialized(first) + serialized(second)) == expected);
}

} // namespace
