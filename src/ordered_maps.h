/**
 * Operations on ordered maps that cannot fail: new elements are first built in a separate map and
 * then moved over node by node.
 */
#ifndef FILTER_COMMON_SRC_ORDERED_MAPS_H
#define FILTER_COMMON_SRC_ORDERED_MAPS_H

#include <utility>

namespace FiltersCommon {

/** Moves an element into @p to, replacing any element with the same key. */
template <class Map>
void moveNode(Map& to, typename Map::node_type node) noexcept
{
    // Keys mostly ascend, so the element usually belongs at the end, which one comparison shows.
    const auto place = to.insert(to.end(), std::move(node));
    if (!node.empty())
        to.insert(to.erase(place), std::move(node));
}

/** Moves all elements of @p from into @p to, replacing elements with the same keys. */
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
