/**
 * How a fuzz target reports that a property does not hold.
 */
#ifndef FILTER_COMMON_FUZZ_REQUIRE_H
#define FILTER_COMMON_FUZZ_REQUIRE_H

#include <cstdio>
#include <cstdlib>

namespace FiltersCommon::fuzz {

/** Names the property and aborts, unless it holds. */
inline void require(bool holds, const char* property)
{
    if (holds)
        return;
    std::fprintf(stderr, "This does not hold: %s\n", property);
    std::abort();
}

} // namespace FiltersCommon::fuzz

#endif // FILTER_COMMON_FUZZ_REQUIRE_H
