/**
 * The number of kinds and codes that are unknown, taken from the lists of kinds.
 */
#ifndef FILTER_COMMON_TESTS_KIND_CODES_H
#define FILTER_COMMON_TESTS_KIND_CODES_H

#include "filter_actions.h"
#include "filter_matches.h"

#include <cstdint>
#include <vector>

namespace FiltersCommon::test {

#define FILTERS_COMMON_PLUS_ONE(kind, Class, Values) +1
/** Also the first unknown code. */
constexpr std::uint32_t MATCH_KINDS = 0 FILTERS_COMMON_EACH_MATCH_KIND(FILTERS_COMMON_PLUS_ONE);
constexpr std::uint32_t ACTION_KINDS = 0 FILTERS_COMMON_EACH_ACTION_KIND(FILTERS_COMMON_PLUS_ONE);
#undef FILTERS_COMMON_PLUS_ONE

constexpr filtersMatch_t UNKNOWN_MATCH = static_cast<filtersMatch_t>(MATCH_KINDS);
constexpr filtersAction_t UNKNOWN_ACTION = static_cast<filtersAction_t>(ACTION_KINDS);

/** The next codes after those of @p kinds, and codes at the limits of the numbers. */
inline std::vector<std::uint32_t> unknownCodes(std::uint32_t kinds)
{
    return {kinds, kinds + 1, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};
}

/** The codes of @p kinds, and codes that are unknown. */
inline std::vector<std::uint32_t> knownAndUnknownCodes(std::uint32_t kinds)
{
    std::vector<std::uint32_t> codes = unknownCodes(kinds);
    for (std::uint32_t code = 0; code < kinds; ++code)
        codes.push_back(code);
    return codes;
}

} // namespace FiltersCommon::test

#endif // FILTER_COMMON_TESTS_KIND_CODES_H
