#ifndef FILTER_COMMON_BENCH_MESSAGES_H
#define FILTER_COMMON_BENCH_MESSAGES_H

#include "rules.h"

#include <string>

namespace bench {

/** The bytes of a group of the rules, written with messages only. */
std::string messageBytesOf(const Rules& rules);

} // namespace bench

#endif // FILTER_COMMON_BENCH_MESSAGES_H
