/**
 * Steps on ordered maps that cannot fail: what is new is built in a map of its own first, and then
 * moved over node by node.
 */
#ifndef FILTER_COMMON_SRC_ORDERED_MAPS_H
#define FILTER_COMMON_SRC_ORDERED_MAPS_H

#include <utility>

namespace FiltersCommon {

/** Moves all elements of @p from into @p to, in the place of elements with the same keys. */
template <class Map>
void moveNodes(Map& to, Map& from) noexcept
{
    if (to.empty())
        to.swap(from);
    while (!from.empty()) {
        auto node = from.extract(from.begin());
        // Keys mostly ascend: then the end is the place, and one comparison tells.
        const auto place = to.insert(to.end(), std::move(node));
        if (!node.empty())
            to.insert(to.erase(place), std::move(node));
    }
}

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_ORDERED_MAPS_H
