/**
 * What the stand-in for the policer library was asked for. It has the interface of the bundled
 * library and bytes of its own, and it refuses malformed bytes.
 */
#ifndef POLICER_STAND_IN_H
#define POLICER_STAND_IN_H

#include <string>
#include <vector>

namespace policer {

/** The bytes from which policers were constructed since the last call, in that order. */
std::vector<std::string> takeRequests();

/** How many of all requests were refused as malformed. */
std::size_t refusals();

} // namespace policer

#endif // POLICER_STAND_IN_H
