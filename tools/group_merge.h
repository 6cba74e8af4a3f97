/**
 * One group of several.
 */
#ifndef FILTER_COMMON_TOOLS_GROUP_MERGE_H
#define FILTER_COMMON_TOOLS_GROUP_MERGE_H

#include "named_group.h"

#include <vector>

namespace filterctl {

/** Whose priorities are shifted, so that the first group wins over the others or loses. */
enum class Shift { NONE, ABOVE, BELOW };

struct MergeOptions {
    bool renumber = false; /**< whether entries get new identifiers, from 0 */
    Shift shift = Shift::NONE;
};

/**
 * The entries of all groups, in a group that is the first in everything else. Throws Refused if an
 * identifier is taken, a priority would not fit, or an entry is not admitted.
 */
FiltersCommon::FiltersGroup mergeGroups(std::vector<NamedGroup> groups,
                                        const MergeOptions& options);

} // namespace filterctl

#endif // FILTER_COMMON_TOOLS_GROUP_MERGE_H
