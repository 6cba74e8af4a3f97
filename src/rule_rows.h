/**
 * The rows that rule text interprets, and the words that belong to no kind.
 */
#ifndef FILTER_COMMON_SRC_RULE_ROWS_H
#define FILTER_COMMON_SRC_RULE_ROWS_H

#include "kinds.h"
#include "wire/filter_actions_rows.h"
#include "wire/filter_counter_rows.h"
#include "wire/filter_entries_rows.h"
#include "wire/filter_groups_rows.h"
#include "wire/filter_matches_rows.h"

#include <string_view>
#include <type_traits>

namespace FiltersCommon {

inline constexpr std::string_view GROUP = "group";
inline constexpr std::string_view PRIORITY = "priority";
inline constexpr std::string_view THEN = "then";
inline constexpr std::string_view COUNTER = "counter";
inline constexpr std::string_view POLICER = "policer";
/** Only read: a MatchDSCP is stored, and written, as the MatchToS that it becomes. */
inline constexpr std::string_view DSCP = "dscp";

/** The rows of the values by which objects of the class are compared. */
template <class Class>
constexpr auto rowsOfValues()
{
    using Values = ValuesOf<Class>;
    if constexpr (std::is_base_of_v<Match, Values>)
        return MatchRows::of(static_cast<const Values*>(nullptr));
    else
        return ActionRows::of(static_cast<const Values*>(nullptr));
}

/** Calls @p use with each row of a group; the identifier comes first. */
template <class Use>
void eachOfHeader(Use use)
{
    GroupRows::of(static_cast<const FiltersGroup*>(nullptr)).each(use);
}

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_RULE_ROWS_H
