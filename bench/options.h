/**
 * The options that the programs of this folder share.
 */
#ifndef FILTER_COMMON_BENCH_OPTIONS_H
#define FILTER_COMMON_BENCH_OPTIONS_H

#include "operations.h"

#include <string>
#include <vector>

namespace bench {

/** A set of rules to measure on. */
struct Workload {
    std::size_t size;
    Rules rules;
};

/**
 * Takes --rules=FILE and --sizes=N,N,... out of the arguments. Sizes that the file is too short for
 * are replaced by the whole file. Raises std::runtime_error for what it cannot parse.
 */
std::vector<Workload> takeWorkloads(int& argc, char** argv);

/** Takes --NAME=VALUE out of the arguments. */
std::optional<std::string> takeOption(int& argc, char** argv, const std::string& name);

} // namespace bench

#endif // FILTER_COMMON_BENCH_OPTIONS_H
