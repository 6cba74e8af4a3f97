/**
 * Steps on ordered maps that cannot fail: what is new is built in a map of its own first, and then
 * moved over node by node.
 */
#ifndef FILTER_COMMON_SRC_ORDERED_MAPS_H
#define FILTER_COMMON_SRC_ORDERED_MAPS_H

#include <utility>

namespace FiltersCommon {

/** Moves an element into @p to, in the place of one with the same key. */
template <class Map>
void moveNode(Map& to, typename Map::node_type node) noexcept
{
    // Keys mostly ascend: then the end is the place, and one comparison tells.
    const auto place = to.insert(to.end(), std::move(node));
    if (!node.empty())
        to.insert(to.erase(place), std::move(node));
}

/** Moves all elements of @p from into @p to, in the place of elements with the same keys. */
template <class Map>
void moveNodes(Map& to, Map& from) noexcept
{
    if (to.empty())
        to.swap(from);
    while (!from.empty())
        moveNode(to, from.extract(from.begin()));
}

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_ORDERED_MAPS_H
