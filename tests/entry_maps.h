/**
 * Short ways to build the maps of matches and actions that entries take.
 */
#ifndef FILTER_COMMON_TESTS_ENTRY_MAPS_H
#define FILTER_COMMON_TESTS_ENTRY_MAPS_H

#include "filter_entries.h"

#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <typeinfo>

namespace FiltersCommon::test {

using Matches = std::map<filtersMatch_t, std::unique_ptr<Match>>;
using Actions = std::map<filtersAction_t, std::unique_ptr<Action>>;

inline filtersMatch_t matchKind(std::uint32_t code) { return static_cast<filtersMatch_t>(code); }
inline filtersAction_t actionKind(std::uint32_t code) { return static_cast<filtersAction_t>(code); }

template <class T>
void put(Matches& map, int key, const T& match)
{
    map[static_cast<filtersMatch_t>(key)] = std::make_unique<T>(match);
}

template <class T>
void put(Actions& map, int key, const T& action)
{
    map[static_cast<filtersAction_t>(key)] = std::make_unique<T>(action);
}

/** A map with each object under its own kind. */
template <class... T>
Matches matchesOf(const T&... matches)
{
    Matches map;
    (put(map, matches.getType(), matches), ...);
    return map;
}

template <class... T>
Actions actionsOf(const T&... actions)
{
    Actions map;
    (put(map, actions.getType(), actions), ...);
    return map;
}

template <class Map>
std::set<int> keysOf(const Map& map)
{
    std::set<int> keys;
    for (const auto& element : map)
        keys.insert(element.first);
    return keys;
}

template <class T, class Base>
bool isExactly(const Base& object)
{
    return typeid(object) == typeid(T);
}

} // namespace FiltersCommon::test

#endif // FILTER_COMMON_TESTS_ENTRY_MAPS_H
