/**
 * Groups at any stage and of any type, and what they do not admit, as problems without a line.
 */
#ifndef FILTER_COMMON_TOOLS_CHECKS_H
#define FILTER_COMMON_TOOLS_CHECKS_H

#include "problems.h"

#include <filter_groups.h>

#include <vector>

namespace filterctl {

/** A group without entries, even where the stage and the type do not fit each other. */
FiltersCommon::FiltersGroup emptyGroup(FiltersCommon::filtersGroupId_t id,
                                       FiltersCommon::filtersGroupStage_t stage,
                                       FiltersCommon::filtersGroupType_t type);

/** Why the stage and the type are no place for a group; reading bytes does not ask that. */
std::vector<Problem> checkPlace(FiltersCommon::filtersGroupStage_t stage,
                                FiltersCommon::filtersGroupType_t type);

/** The same, and what the place would not admit of the entries of the group. */
std::vector<Problem> checkGroupAt(const FiltersCommon::FiltersGroup& group,
                                  FiltersCommon::filtersGroupStage_t stage,
                                  FiltersCommon::filtersGroupType_t type);

} // namespace filterctl

#endif // FILTER_COMMON_TOOLS_CHECKS_H
