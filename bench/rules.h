/**
 * The rules on which everything is measured, independent of any data model: each subject builds its
 * own objects from them.
 */
#ifndef FILTER_COMMON_BENCH_RULES_H
#define FILTER_COMMON_BENCH_RULES_H

#include "filter_types.h"

#include <netinet/in.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace bench {

/** In network byte order. A mask of 0 asks for nothing. */
struct Address {
    in_addr value;
    in_addr mask;
};

/** In host byte order. A mask of 0 asks for nothing. */
struct Port {
    std::uint16_t value;
    std::uint16_t mask;
};

/** A five-tuple. Its identifier is its place in the list. */
struct Rule {
    FiltersCommon::filtersEntryPriority_t priority;
    Address source;
    Address destination;
    Port sourcePort;
    Port destinationPort;
    std::optional<std::uint8_t> protocol;
    bool deny;
};

using Rules = std::vector<Rule>;

/** Always the same rules, each with all five conditions. */
Rules generateRules(std::size_t count);

/** The entries of an access list. Raises std::runtime_error if there are none. */
Rules readRules(const std::string& path);

} // namespace bench

#endif // FILTER_COMMON_BENCH_RULES_H
