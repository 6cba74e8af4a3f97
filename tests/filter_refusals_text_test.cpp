#include "entry_maps.h"
#include "refusals_support.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace FiltersCommon {
namespace {

using namespace test;

std::vector<std::string> sentencesOf(const Refusals& refusals)
{
    std::vector<std::string> sentences;
    for (const FiltersRefusal& refusal : refusals)
        sentences.push_back(refusal.sentence());
    return sentences;
}

using Sentences = std::vector<std::string>;

constexpr char KNOWN_TYPES[] =
    "GROUP_TYPE_0, GROUP_TYPE_1, GROUP_TYPE_2, GROUP_TYPE_3, GROUP_TYPE_4, GROUP_TYPE_5, "
    "GROUP_TYPE_6, GROUP_TYPE_7, GROUP_TYPE_8 and GROUP_TYPE_9";
constexpr char KNOWN_STAGES[] = "GROUP_STAGE_0, GROUP_STAGE_1, GROUP_STAGE_2 and GROUP_STAGE_3";
FiltersGroup groupAt(std::uint32_t stageCode, std::uint32_t typeCode)
{
    FiltersGroup group(1);
    place(group, stage(stageCode), type(typeCode));
    return group;
}

FiltersEntry troubledEntry()
{
    FiltersEntry entry(12);
    entry.setMatch(MatchAll());
    entry.setMatch(MatchTTL(1));
    entry.setMatch(MatchVlanUntagged());
    entry.setAction(ActionPermit());
    entry.setAction(ActionSetPcp(1));
    entry.setPolicer(policerAt(policer::STAGE_INGRESS));
    return entry;
}

// ----------------------------------------------------------------------------------------- groups

TEST(RefusalSentences, OfAnInsertion)
{
    EXPECT_EQ(sentencesOf(insertEntryRefusals(groupAt(3, 4), troubledEntry())),
              (Sentences{
                  "entry 12: match kind MATCH_VLAN_UNTAGGED is not admitted in a group of type "
                  "GROUP_TYPE_4; admitted are MATCH_ALL, MATCH_INGRESS_PORTS, "
                  "MATCH_EXTERNAL_VLAN_ID, MATCH_TPID, MATCH_DST_L4_PORT, MATCH_SRC_IPV4, "
                  "MATCH_DST_IPV4, MATCH_INTERNAL_VLAN_ID, MATCH_PCP, MATCH_INTERNAL_PCP, "
                  "MATCH_IP_PROTOCOL and MATCH_TOS",
                  "entry 12: match kind MATCH_TTL is not admitted in a group of type "
                  "GROUP_TYPE_4; admitted are MATCH_ALL, MATCH_INGRESS_PORTS, "
                  "MATCH_EXTERNAL_VLAN_ID, MATCH_TPID, MATCH_DST_L4_PORT, MATCH_SRC_IPV4, "
                  "MATCH_DST_IPV4, MATCH_INTERNAL_VLAN_ID, MATCH_PCP, MATCH_INTERNAL_PCP, "
                  "MATCH_IP_PROTOCOL and MATCH_TOS",
                  "entry 12: action kind ACTION_SET_PCP is not admitted at group stage "
                  "GROUP_STAGE_3; admitted are ACTION_PERMIT and ACTION_DENY",
                  "entry 12: a policer of stage STAGE_INGRESS is not admitted at group stage "
                  "GROUP_STAGE_3; admitted are STAGE_EGRESS and STAGE_NONE",
              }));
}

TEST(RefusalSentences, WhereNothingOrOneThingIsAdmitted)
{
    FiltersEntry entry(0);
    entry.setMatch(MatchAll());
    entry.setPolicer(policerAt(static_cast<policer::Stage>(4294967295)));
    EXPECT_EQ(sentencesOf(insertEntryRefusals(groupAt(1, 0), entry)),
              (Sentences{
                  "entry 0: match kind MATCH_ALL is not admitted in a group of type GROUP_TYPE_0; "
                  "none is admitted",
                  "entry 0: a policer of stage 4294967295 is not admitted at group stage "
                  "GROUP_STAGE_1; admitted is STAGE_NONE",
              }));
}

TEST(RefusalSentences, OfUnknownStagesAndTypes)
{
    EXPECT_EQ(sentencesOf(insertEntryRefusals(groupAt(4, 0xFFFFFFFF), FiltersEntry(65535))),
              (Sentences{
                  std::string("entry 65535: group type -1 is unknown; known are ") + KNOWN_TYPES,
                  std::string("entry 65535: group stage 4 is unknown; known are ") + KNOWN_STAGES,
              }));
    EXPECT_EQ(sentencesOf(setStageRefusals(FiltersGroup(1), stage(7))),
              Sentences{std::string("group stage 7 is unknown; known are ") + KNOWN_STAGES});
}

TEST(RefusalSentences, OfTypesThatTheirStageDoesNotAdmit)
{
    EXPECT_EQ(sentencesOf(setStageRefusals(groupAt(0, 4), GROUP_STAGE_3)),
              Sentences{"group type GROUP_TYPE_4 is not admitted at group stage GROUP_STAGE_3; "
                        "admitted are GROUP_TYPE_0 and GROUP_TYPE_5; the type is admitted at "
                        "GROUP_STAGE_0 and GROUP_STAGE_1"});
    EXPECT_EQ(sentencesOf(setTypeRefusals(groupAt(3, 0), type(10))),
              Sentences{"group type 10 is not admitted at group stage GROUP_STAGE_3; admitted are "
                        "GROUP_TYPE_0 and GROUP_TYPE_5; the type is admitted at no stage"});
}

TEST(RefusalSentences, OfEntriesInTheWay)
{
    FiltersGroup group = groupAt(0, 8);
    for (const filtersEntryId_t id : {filtersEntryId_t{300}, filtersEntryId_t{7}}) {
        FiltersEntry entry(id);
        entry.setMatch(MatchVrfId(1));
        ASSERT_EQ(group.insertEntry(entry), FILTERS_OK);
    }
    const std::string admitted =
        ": match kind MATCH_VRF_ID is not admitted in a group of type GROUP_TYPE_0; "
        "none is admitted";
    EXPECT_EQ(sentencesOf(setTypeRefusals(group, GROUP_TYPE_0)),
              (Sentences{"entry 7" + admitted, "entry 300" + admitted}));
}

// ---------------------------------------------------------------------------------------- entries

class OwnMatch : public Match {
public:
    OwnMatch() : Match(static_cast<filtersMatch_t>(77)) {}
};
struct NoMatch {};

TEST(RefusalSentences, OfUnknownClasses)
{
    const FiltersEntry entry(12);
    const std::string unknown = " is of a class that entries do not know";
    EXPECT_EQ(sentencesOf(setMatchRefusals(entry, Match(MATCH_PCP))),
              Sentences{"entry 12: the match of kind MATCH_PCP" + unknown});
    EXPECT_EQ(sentencesOf(setMatchRefusals(entry, OwnMatch())),
              Sentences{"entry 12: the match of kind 77" + unknown});
    EXPECT_EQ(sentencesOf(setMatchRefusals(entry, NoMatch())),
              Sentences{"entry 12: the match" + unknown});
    EXPECT_EQ(sentencesOf(setActionRefusals(entry, Action(ACTION_DENY))),
              Sentences{"entry 12: the action of kind ACTION_DENY" + unknown});
    EXPECT_EQ(sentencesOf(setActionRefusals(entry, NoMatch())),
              Sentences{"entry 12: the action" + unknown});
}

TEST(RefusalSentences, OfAddressesOfBothVersions)
{
    FiltersEntry entry(12);
    entry.setMatch(MatchSrcIPv4(ipv4("192.0.2.1")));
    const std::string never = "; an entry holds IPv4 addresses or IPv6 addresses, never both";
    EXPECT_EQ(sentencesOf(l3Refusals(entry, MATCH_DST_IPV6)),
              Sentences{"entry 12: match kind MATCH_DST_IPV6 is not admitted beside "
                        "MATCH_SRC_IPV4" +
                        never});
    entry.setMatch(MatchDstIPv4(ipv4("192.0.2.1")));
    EXPECT_EQ(sentencesOf(l3Refusals(entry, MATCH_SRC_IPV6)),
              Sentences{"entry 12: match kind MATCH_SRC_IPV6 is not admitted beside "
                        "MATCH_SRC_IPV4 and MATCH_DST_IPV4" +
                        never});
}

TEST(RefusalSentences, OfObjectsThatAreNotOfTheirKind)
{
    EXPECT_EQ(sentencesOf(copyMatchesRefusals(FiltersEntry(12), matchesOf(Match(MATCH_PCP)))),
              Sentences{"entry 12: the match of kind MATCH_PCP is not of that kind's class"});
    EXPECT_EQ(sentencesOf(copyActionsRefusals(FiltersEntry(12), actionsOf(Action(ACTION_SET_PCP)))),
              Sentences{"entry 12: the action of kind ACTION_SET_PCP is not of that kind's class"});
}

// -------------------------------------------------------------------- what others put together

TEST(RefusalSentences, OfUnknownKinds)
{
    const FiltersRefusal match = refusal(REFUSAL_UNKNOWN_MATCH_KIND, [](FiltersRefusal& r) {
        r.entry = filtersEntryId_t{12};
        r.match = static_cast<filtersMatch_t>(-2);
        r.admittedMatches = {MATCH_TTL, MATCH_ALL};
    });
    EXPECT_EQ(match.sentence(),
              "entry 12: match kind -2 is unknown; known are MATCH_ALL and MATCH_TTL");
    const FiltersRefusal action = refusal(REFUSAL_UNKNOWN_ACTION_KIND, [](FiltersRefusal& r) {
        r.action = static_cast<filtersAction_t>(1000);
        r.admittedActions = {ACTION_PERMIT, ACTION_SET_DSCP, ACTION_BLACK_HOLE};
    });
    EXPECT_EQ(action.sentence(), "action kind 1000 is unknown; known are ACTION_PERMIT, "
                                 "ACTION_SET_DSCP and ACTION_BLACK_HOLE");
}

TEST(RefusalSentences, OfMatchesThatTheCInterfaceDoesNotOffer)
{
    const FiltersRefusal match = refusal(REFUSAL_MATCH_NOT_IN_C, [](FiltersRefusal& r) {
        r.entry = filtersEntryId_t{12};
        r.match = MATCH_FORWARDING_TYPE;
        r.admittedMatches = {MATCH_TTL, MATCH_ALL};
    });
    EXPECT_EQ(match.sentence(), "entry 12: match kind MATCH_FORWARDING_TYPE is not offered in the "
                                "C interface; offered are MATCH_ALL and MATCH_TTL");
}

TEST(RefusalSentences, OfCodesThatAreNotThere)
{
    EXPECT_EQ(FiltersRefusal(REFUSAL_MATCH_NOT_IN_TYPE).sentence(),
              "match kind unknown is not admitted in a group of type unknown; none is admitted");
}

TEST(RefusalSentences, AreOneLineForEveryReasonWhateverElseIsThere)
{
    for (int reason = -1; reason <= 27; ++reason) {
        const FiltersRefusal bare(static_cast<filtersRefusalReason_t>(reason));
        const std::string sentence = bare.sentence();
        EXPECT_FALSE(sentence.empty());
        EXPECT_EQ(sentence.find('\n'), std::string::npos);
        EXPECT_NE(bare.code(), FILTERS_OK);
    }
    EXPECT_EQ(FiltersRefusal(static_cast<filtersRefusalReason_t>(26)).sentence(),
              "the reason is unknown");
}

// ---------------------------------------------------------------------------------- what is lost

/** A loss in a field, of entry 12 unless it is in the group itself. */
template <class Fill>
std::string lossIn(filtersRefusalReason_t reason, filtersPart_t part, std::uint32_t field,
                   Fill fill)
{
    return refusal(reason,
                   [&](FiltersRefusal& r) {
                       if (part != PART_GROUP)
                           r.entry = filtersEntryId_t{12};
                       r.part = part;
                       r.field = field;
                       fill(r);
                   })
        .sentence();
}

std::string lossIn(filtersRefusalReason_t reason, filtersPart_t part, std::uint32_t field)
{
    return lossIn(reason, part, field, [](FiltersRefusal&) {});
}

TEST(RefusalSentences, OfBytesThatCannotBeRead)
{
    FiltersRefusal loss(REFUSAL_NOT_PARSED);
    EXPECT_EQ(loss.sentence(), "the bytes cannot be read to their end");
    loss.offset = 5000000000;
    EXPECT_EQ(loss.sentence(), "the bytes cannot be read from offset 5000000000 on");
}

TEST(RefusalSentences, OfFieldsOfEachPart)
{
    EXPECT_EQ(lossIn(REFUSAL_FIELD_MISSING, PART_GROUP, 4),
              "the required field type_ of the group is missing");
    EXPECT_EQ(lossIn(REFUSAL_FIELD_MISSING, PART_ENTRY, 3),
              "entry 12: the required field policer_ of the entry is missing");
    EXPECT_EQ(lossIn(REFUSAL_FIELD_MISSING, PART_COUNTER, 2),
              "entry 12: the required field type of the counter is missing");
    EXPECT_EQ(lossIn(REFUSAL_FIELD_MISSING, PART_MATCH, 1),
              "entry 12: the required field type_ of a match is missing");
    EXPECT_EQ(lossIn(REFUSAL_FIELD_MISSING, PART_ACTION, 1),
              "entry 12: the required field type_ of an action is missing");
}

TEST(RefusalSentences, OfFieldsThatAreSkipped)
{
    EXPECT_EQ(lossIn(REFUSAL_FIELD_UNKNOWN, PART_ENTRY, 31),
              "entry 12: field 31 of the entry is unknown and is skipped");
    EXPECT_EQ(lossIn(REFUSAL_FIELD_UNKNOWN, PART_GROUP, 5),
              "field entries_ of the group does not have the form of its type and is skipped");
    EXPECT_EQ(lossIn(REFUSAL_FIELD_NOT_OF_KIND, PART_MATCH, 5,
                     [](FiltersRefusal& r) { r.match = MATCH_TTL; }),
              "entry 12: field mac_ of match kind MATCH_TTL is not a field of that kind and is "
              "skipped");
    EXPECT_EQ(lossIn(REFUSAL_FIELD_NOT_OF_KIND, PART_ACTION, 3,
                     [](FiltersRefusal& r) { r.action = ACTION_DENY; }),
              "entry 12: field pcp_ of action kind ACTION_DENY is not a field of that kind and is "
              "skipped");
}

TEST(RefusalSentences, OfValuesThatAreChanged)
{
    const auto change = [](std::uint64_t was, std::uint64_t became) {
        return [=](FiltersRefusal& r) {
            r.was = was;
            r.became = became;
        };
    };
    EXPECT_EQ(lossIn(REFUSAL_NUMBER_CUT, PART_GROUP, 1, change(65537, 1)),
              "field id_ of the group holds 65537, which does not fit and becomes 1");
    EXPECT_EQ(lossIn(REFUSAL_NUMBER_CUT, PART_COUNTER, 1, change(~std::uint64_t{0}, 65535)),
              "entry 12: field id of the counter holds -1, which does not fit and becomes 65535");
    EXPECT_EQ(lossIn(REFUSAL_NUMBER_CUT, PART_ENTRY, 2, change(~std::uint64_t{0}, 4294967295)),
              "entry 12: field priority_ of the entry holds 18446744073709551615, which does not "
              "fit and becomes 4294967295");
    const auto mac = [&](std::uint64_t was) {
        return lossIn(REFUSAL_LENGTH_CHANGED, PART_ACTION, 8, [=](FiltersRefusal& r) {
            r.action = ACTION_REPLACE_SRC_MAC;
            change(was, 6)(r);
        });
    };
    const std::string ofAMac = "entry 12: field mac_ of action kind ACTION_REPLACE_SRC_MAC has ";
    EXPECT_EQ(mac(5), ofAMac + "5 bytes and is padded with zeros to 6");
    EXPECT_EQ(mac(7), ofAMac + "7 bytes and is cut to 6");
    EXPECT_EQ(lossIn(REFUSAL_FIELD_REPLACED, PART_ENTRY, 2, change(5, 7)),
              "entry 12: field priority_ of the entry is there more than once; 5 is replaced by 7");
    EXPECT_EQ(lossIn(REFUSAL_FIELD_REPLACED, PART_ENTRY, 3),
              "entry 12: field policer_ of the entry is there more than once; only the last value "
              "counts");
}

TEST(RefusalSentences, OfWhatIsReplaced)
{
    const auto sentence = [](filtersRefusalReason_t reason) {
        return refusal(reason,
                       [&](FiltersRefusal& r) {
                           r.entry = filtersEntryId_t{12};
                           if (reason == REFUSAL_MATCH_REPLACED)
                               r.match = MATCH_TTL;
                           if (reason == REFUSAL_ACTION_REPLACED)
                               r.action = ACTION_SET_PCP;
                       })
            .sentence();
    };
    EXPECT_EQ(sentence(REFUSAL_MATCH_REPLACED),
              "entry 12: the match of kind MATCH_TTL is replaced by a later one of its kind");
    EXPECT_EQ(sentence(REFUSAL_ACTION_REPLACED),
              "entry 12: the action of kind ACTION_SET_PCP is replaced by a later one of its kind");
    EXPECT_EQ(sentence(REFUSAL_ENTRY_REPLACED),
              "entry 12: the entry is replaced by a later one with its identifier");
    EXPECT_EQ(sentence(REFUSAL_POLICER_NOT_PARSED),
              "entry 12: the bytes of the policer do not parse; the entry has no policer");
    EXPECT_EQ(sentence(REFUSAL_POLICER_CHANGED),
              "entry 12: the policer does not hold everything that its bytes say");
}

// --------------------------------------------------------------------------- codes of the reasons

TEST(RefusalReasons, HaveTheirCodes)
{
    constexpr int CODES[] = {-4, -6, -8, -9, -10, -7, -4, -4, -4, -4, -4, -4, -4,
                             -4, -4, -4, -4, -4,  -4, -4, -4, -4, -4, -4, -4, -4};
    for (int reason = 0; reason < 26; ++reason)
        EXPECT_EQ(FiltersRefusal(static_cast<filtersRefusalReason_t>(reason)).code(),
                  CODES[reason]);
    static_assert(FiltersRefusal(REFUSAL_TYPE_NOT_AT_STAGE).code() == FILTERS_ERR_TYPE_NOT_ALLOWED);
}

} // namespace
} // namespace FiltersCommon
