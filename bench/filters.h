/**
 * The rules as the library holds them.
 */
#ifndef FILTER_COMMON_BENCH_FILTERS_H
#define FILTER_COMMON_BENCH_FILTERS_H

#include "rules.h"

#include <filter_groups.h>

#include <string>

namespace bench {

FiltersCommon::FiltersEntry entryOf(std::size_t id, const Rule& rule);
/** Gives each rule up to the group. */
FiltersCommon::FiltersGroup groupOf(const Rules& rules);
std::string bytesOf(const FiltersCommon::FiltersGroup& group);

} // namespace bench

#endif // FILTER_COMMON_BENCH_FILTERS_H
