#include "filter_matches.h"

#include "kinds.h"
#include "wire/filter_matches_rows.h"
#include "wire/message_io.h"

namespace FiltersCommon {

void Match::convertToMatchPB(MatchPB* pb) const
{
    MessageWriter<MatchPB>(pb).number(match_fields::type_(), toNumber(type_));
}

void Match::convertFromMatchPB(const MatchPB* /*pb*/) {}

#define FILTERS_COMMON_DEFINE_CONVERSIONS(Class)                                                   \
    void Class::convertToMatchPB(MatchPB* pb) const                                                \
    {                                                                                              \
        Match::convertToMatchPB(pb);                                                               \
        MessageWriter<MatchPB> writer(pb);                                                         \
        MatchRows::of(this).write(writer, *this);                                                  \
    }                                                                                              \
    void Class::convertFromMatchPB(const MatchPB* pb)                                              \
    {                                                                                              \
        MessageReader<MatchPB> reader(*pb);                                                        \
        MatchRows::of(this).read(reader, *this);                                                   \
    }
#define FILTERS_COMMON_DEFINE_WITH_VALUES(kind, Class, Values)                                     \
    static_assert(hasRowsOfItsOwn<MatchRows, Match, Class>, #Class " has a row for each member");  \
    FILTERS_COMMON_DEFINE_CONVERSIONS(Class)
#define FILTERS_COMMON_AS_ITS_BASE(kind, Class, Values)

FILTERS_COMMON_MATCH_FAMILIES(FILTERS_COMMON_DEFINE_CONVERSIONS)
FILTERS_COMMON_MATCH_KINDS(FILTERS_COMMON_DEFINE_WITH_VALUES, FILTERS_COMMON_AS_ITS_BASE,
                           FILTERS_COMMON_AS_ITS_BASE)
// The only kind that does not convert everything its family does.
FILTERS_COMMON_DEFINE_CONVERSIONS(MatchEgressPorts)

#undef FILTERS_COMMON_AS_ITS_BASE
#undef FILTERS_COMMON_DEFINE_WITH_VALUES
#undef FILTERS_COMMON_DEFINE_CONVERSIONS

} // namespace FiltersCommon
