/**
 * Human-readable names of codes: those of the enumerators themselves, such as "MATCH_SRC_IPV4".
 *
 * The same functions serve C11 and C++17; in C++ they are in the namespace FiltersCommon.
 *
 * Every function accepts any code and never returns null: a code without an enumerator is named
 * "unknown", which no enumerator is called. Names are constant and never freed. The functions
 * allocate nothing and may be called from any thread.
 */
#ifndef FILTER_COMMON_FILTER_NAMES_H
#define FILTER_COMMON_FILTER_NAMES_H

#include "filter_types.h"

#include <stdint.h>

#pragma GCC visibility push(default)

#ifdef __cplusplus
namespace FiltersCommon {
extern "C" {
#endif

const char* filtersErrName(filtersErr_t code);
const char* filtersMatchName(filtersMatch_t kind);
const char* filtersActionName(filtersAction_t kind);
const char* filtersGroupStageName(filtersGroupStage_t stage);
const char* filtersGroupTypeName(filtersGroupType_t type);
const char* filtersRefusalReasonName(filtersRefusalReason_t reason);
const char* filtersPartName(filtersPart_t part);

/** Policers come from another library; names and numbers are those of its policer::Stage. */
const char* filtersPolicerStageName(uint32_t stage);

#ifdef __cplusplus
} // extern "C"
} // namespace FiltersCommon
#endif

#pragma GCC visibility pop

#endif // FILTER_COMMON_FILTER_NAMES_H
