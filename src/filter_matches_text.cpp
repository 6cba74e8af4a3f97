#include "filter_matches.h"

#include "kinds.h"
#include "text.h"
#include "wire/filter_matches_rows.h"

#include <ostream>

using namespace FiltersCommon;

namespace {

/** Dumps @p match as a T; @p values is the match as a T, or null to omit the values. */
template <class T>
std::ostream& writeMatch(std::ostream& out, const Match& match, const T* values)
{
    using Described = std::conditional_t<hasNoValues<T>, T, ValuesOf<T>>;
    constexpr auto ROWS = MatchRows::of(static_cast<const Described*>(nullptr));
    return writeObject(out, "      Match Type ID: ", match, values, ROWS);
}

} // namespace

std::ostream& operator<<(std::ostream& out, const Match& match)
{
    MatchKinds::visit(match.getType(), [&](auto kind) {
        writeMatch(out, match, as<ClassOf<decltype(kind)>>(match));
    });
    return out;
}

#define FILTERS_COMMON_DEFINE_PRINTED(kind, Class, Values)                                         \
    std::ostream& operator<<(std::ostream& out, const Class& match)                                \
    {                                                                                              \
        return writeMatch(out, match, &match);                                                     \
    }
FILTERS_COMMON_EACH_MATCH_KIND(FILTERS_COMMON_DEFINE_PRINTED)
FILTERS_COMMON_DEFINE_PRINTED(MATCH_TOS, MatchDSCP, MatchToS)
#undef FILTERS_COMMON_DEFINE_PRINTED

#define FILTERS_COMMON_DEFINE_PRINTED(Family)                                                      \
    std::ostream& operator<<(std::ostream& out, const Family& match)                               \
    {                                                                                              \
        MatchRows::of(&match).dump(out, match);                                                    \
        return out;                                                                                \
    }
FILTERS_COMMON_MATCH_FAMILIES(FILTERS_COMMON_DEFINE_PRINTED)
#undef FILTERS_COMMON_DEFINE_PRINTED
