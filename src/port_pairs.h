/**
 * Ranges of ports as the pairs of value and mask that matches hold.
 */
#ifndef FILTER_COMMON_SRC_PORT_PAIRS_H
#define FILTER_COMMON_SRC_PORT_PAIRS_H

#include <cstdint>

namespace FiltersCommon {

struct PortPair {
    std::uint16_t value;
    std::uint16_t mask;
};

/**
 * Calls @p use with the fewest pairs that cover the ports from @p low to @p high, in ascending
 * order. There are 30 at most.
 */
template <class Use>
void coverPorts(std::uint16_t low, std::uint16_t high, Use use)
{
    for (std::uint32_t port = low; port <= high;) {
        // The largest block that can begin at this port, reduced to fit the rest of the range.
        std::uint32_t size = port == 0 ? 0x10000 : port & (~port + 1);
        while (port + size - 1 > high)
            size /= 2;
        use(PortPair{static_cast<std::uint16_t>(port), static_cast<std::uint16_t>(0 - size)});
        port += size;
    }
}

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_PORT_PAIRS_H
