/**
 * Matches and actions about to join an entry. They are collected in a map of their own, so that the
 * entry changes only when nothing can fail any more.
 */
#ifndef FILTER_COMMON_SRC_ENTRY_ADDITIONS_H
#define FILTER_COMMON_SRC_ENTRY_ADDITIONS_H

#include "filter_entries.h"

#include <memory>
#include <utility>

namespace FiltersCommon {

/** Whether a match of @p kind may stand beside those of @p held: IPv4 excludes IPv6. */
bool isL3Compatible(filtersMatch_t kind, const FiltersEntry::MatchMap& held);

/** Puts the object under its own kind, in the place of one that stands there. */
template <class Map, class T>
void storeByKind(Map& map, std::unique_ptr<T> object)
{
    const auto kind = object->getType();
    map.insert_or_assign(map.end(), kind, std::move(object));
}

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_ENTRY_ADDITIONS_H
