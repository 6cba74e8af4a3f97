/**
 * The names of codes, or null for codes without one. The public functions are in filter_names.h.
 */
#ifndef FILTER_COMMON_SRC_FILTER_NAMES_INTERNAL_H
#define FILTER_COMMON_SRC_FILTER_NAMES_INTERNAL_H

#include "filter_types.h"

#include <policer_common.h>

namespace FiltersCommon {

const char* findName(filtersErr_t code);
const char* findName(filtersMatch_t kind);
const char* findName(filtersAction_t kind);
const char* findName(filtersGroupStage_t stage);
const char* findName(filtersGroupType_t type);
const char* findName(filtersRefusalReason_t reason);
const char* findName(filtersPart_t part);
const char* findName(policer::Stage stage);

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_FILTER_NAMES_INTERNAL_H
