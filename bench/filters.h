/**
 * The rules as the library holds them.
 */
#ifndef FILTER_COMMON_BENCH_FILTERS_H
#define FILTER_COMMON_BENCH_FILTERS_H

#include "rules.h"

#include <filter_groups.h>

#include <memory>
#include <string>

namespace bench {

/** A group whose stage and type admit five-tuples. */
FiltersCommon::FiltersGroup emptyGroup();

FiltersCommon::FiltersEntry entryOf(std::size_t id, const Rule& rule);
FiltersCommon::FiltersGroup groupOf(const Rules& rules);
std::string bytesOf(const FiltersCommon::FiltersGroup& group);

} // namespace bench

#endif // FILTER_COMMON_BENCH_FILTERS_H
