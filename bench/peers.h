/**
 * What the subjects besides the library make of the rules, for checkThatSubjectsAgree.
 */
#ifndef FILTER_COMMON_BENCH_PEERS_H
#define FILTER_COMMON_BENCH_PEERS_H

#include "rules.h"

#include <cstddef>
#include <string>

namespace bench {

/** The bytes of a group of the rules, written with messages only. */
std::string messageBytesOf(const Rules& rules);

/** The dump of a group of the rules, sent through a stream again piece by piece. */
std::string streamedTextOf(const Rules& rules);

/** How many rules are read back unchanged from the messages that libnftnl writes. */
std::size_t nftnlRulesReadBack(const Rules& rules);

} // namespace bench

#endif // FILTER_COMMON_BENCH_PEERS_H
