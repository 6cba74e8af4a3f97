#ifndef FILTER_COMMON_BENCH_NFTNL_H
#define FILTER_COMMON_BENCH_NFTNL_H

#include "rules.h"

#include <cstddef>

namespace bench {

/** How many rules are read back unchanged from the messages that libnftnl writes. */
std::size_t nftnlRulesReadBack(const Rules& rules);

} // namespace bench

#endif // FILTER_COMMON_BENCH_NFTNL_H
