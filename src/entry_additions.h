/**
 * Which matches and actions may be added to an entry.
 */
#ifndef FILTER_COMMON_SRC_ENTRY_ADDITIONS_H
#define FILTER_COMMON_SRC_ENTRY_ADDITIONS_H

#include "filter_code_set.h"
#include "filter_entries.h"

namespace FiltersCommon {

// ------------------------------------------------------------------------------ IPv4 against IPv6

inline constexpr CodeSet<filtersMatch_t> IPV4_ONLY = {MATCH_SRC_IPV4, MATCH_DST_IPV4};
inline constexpr CodeSet<filtersMatch_t> IPV6_ONLY = {MATCH_SRC_IPV6, MATCH_DST_IPV6};

/** The kinds that a match of @p kind may not be combined with. */
constexpr CodeSet<filtersMatch_t> excludedBy(filtersMatch_t kind)
{
    if (IPV4_ONLY.contains(kind))
        return IPV6_ONLY;
    return IPV6_ONLY.contains(kind) ? IPV4_ONLY : CodeSet<filtersMatch_t>();
}

/** Whether a match of @p kind may be combined with those of the kinds @p held. */
constexpr bool isL3Compatible(filtersMatch_t kind, CodeSet<filtersMatch_t> held)
{
    return (excludedBy(kind) & held).empty();
}

// ---------------------------------------------------------------------------------------- objects

/**
 * Visits the objects of a map that are to be added to an entry, in key order. Null pointers and
 * unknown kinds are skipped; @p join is called with the Kind and the object of each other element,
 * and any result but FILTERS_OK ends the iteration.
 */
template <class Kinds, class Map, class Join>
filtersErr_t joinEach(const Map& from, Join join)
{
    for (const auto& element : from) {
        if (element.second == nullptr)
            continue;
        const auto& object = *element.second;
        const filtersErr_t result = Kinds::dispatch(object.getType(), FILTERS_OK,
                                                    [&](auto kind) { return join(kind, object); });
        if (result != FILTERS_OK)
            return result;
    }
    return FILTERS_OK;
}

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_ENTRY_ADDITIONS_H
