/**
 * The names of codes, for people: each enumerator by its own name, "MATCH_SRC_IPV4".
 *
 * Plain C11 and C++17, and the same functions for both. In C++ they stand in the namespace
 * FiltersCommon.
 *
 * Every function takes any code. It never returns null: the name of a code that has no enumerator
 * is "unknown", which is no enumerator's name. Names are constant and never freed. The functions
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

/** Policers come from another library, whose policer::Stage has these names and numbers. */
const char* filtersPolicerStageName(uint32_t stage);

#ifdef __cplusplus
} // extern "C"
} // namespace FiltersCommon
#endif

#pragma GCC visibility pop

#endif // FILTER_COMMON_FILTER_NAMES_H
