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
    for (int reason = -1; reason <= 15; ++reason) {
        const FiltersRefusal bare(static_cast<filtersRefusalReason_t>(reason));
        const std::string sentence = bare.sentence();
        EXPECT_FALSE(sentence.empty());
        EXPECT_EQ(sentence.find('\n'), std::string::npos);
        EXPECT_NE(bare.code(), FILTERS_OK);
    }
    EXPECT_EQ(FiltersRefusal(static_cast<filtersRefusalReason_t>(14)).sentence(),
              "the reason is unknown");
}

// --------------------------------------------------------------------------- codes of the reasons

TEST(RefusalReasons, HaveTheirCodes)
{
    constexpr int CODES[] = {-4, -6, -8, -9, -10, -7, -4, -4, -4, -4, -4, -4, -4, -4};
    for (int reason = 0; reason < 14; ++reason)
        EXPECT_EQ(FiltersRefusal(static_cast<filtersRefusalReason_t>(reason)).code(),
                  CODES[reason]);
    static_assert(FiltersRefusal(REFUSAL_TYPE_NOT_AT_STAGE).code() == FILTERS_ERR_TYPE_NOT_ALLOWED);
}

} // namespace
} // namespace FiltersCommon
