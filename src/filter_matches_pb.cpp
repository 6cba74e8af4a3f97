#include "filter_matches.h"

#include "filter_matches_fields.h"
#include "kinds.h"
#include "message_io.h"

namespace FiltersCommon {

template <class... Classes>
constexpr bool haveRows(KindList<Match, Classes...>)
{
    return ((hasNoValues<Classes> || !std::is_same_v<MatchFieldsOf<Classes>, Fields<>>)&&...);
}

static_assert(haveRows(MatchKinds()), "a class with values has a row in MatchFields");

void Match::convertToMatchPB(MatchPB* pb) const
{
    MessageWriter<MatchPB>(pb).number(match_fields::type_(), toNumber(type_));
}

void Match::convertFromMatchPB(const MatchPB* /*pb*/) {}

#define FILTERS_COMMON_CONVERTED(Class)                                                            \
    void Class::convertToMatchPB(MatchPB* pb) const                                                \
    {                                                                                              \
        Match::convertToMatchPB(pb);                                                               \
        MessageWriter<MatchPB> writer(pb);                                                         \
        MatchFieldsOf<Class>::write(writer, *this);                                                \
    }                                                                                              \
    void Class::convertFromMatchPB(const MatchPB* pb)                                              \
    {                                                                                              \
        MessageReader<MatchPB> reader(*pb);                                                        \
        MatchFieldsOf<Class>::read(reader, *this);                                                 \
    }

FILTERS_COMMON_CONVERTED(MatchPorts)
FILTERS_COMMON_CONVERTED(MatchLimId)
FILTERS_COMMON_CONVERTED(MatchL4Port)
FILTERS_COMMON_CONVERTED(MatchVlanId)
FILTERS_COMMON_CONVERTED(MatchMac)
FILTERS_COMMON_CONVERTED(MatchIPv4)
FILTERS_COMMON_CONVERTED(MatchIPv6)

FILTERS_COMMON_CONVERTED(MatchTPID)
FILTERS_COMMON_CONVERTED(MatchL2SrcEntryType)
FILTERS_COMMON_CONVERTED(MatchPcp)
FILTERS_COMMON_CONVERTED(MatchInternalPcp)
FILTERS_COMMON_CONVERTED(MatchIpProtocol)
FILTERS_COMMON_CONVERTED(MatchPacketRes)
FILTERS_COMMON_CONVERTED(MatchMplsTerm)
FILTERS_COMMON_CONVERTED(MatchToS)
FILTERS_COMMON_CONVERTED(MatchEgressPorts)
FILTERS_COMMON_CONVERTED(MatchIngressStpState)
FILTERS_COMMON_CONVERTED(MatchVlanInfo)
FILTERS_COMMON_CONVERTED(MatchTTL)
FILTERS_COMMON_CONVERTED(MatchVrfId)
FILTERS_COMMON_CONVERTED(MatchDrop)
FILTERS_COMMON_CONVERTED(MatchForwardingType)

#undef FILTERS_COMMON_CONVERTED

} // namespace FiltersCommon
