/**
 * All the reasons, as sentences, why an access list cannot become a group, or why reading a group
 * leaves something out. What concerns the group as a whole comes first, once and without a line.
 */
#ifndef FILTER_COMMON_TOOLS_CHECKS_H
#define FILTER_COMMON_TOOLS_CHECKS_H

#include "group_import.h"

#include <string>
#include <string_view>
#include <vector>

namespace filterctl {

/**
 * Why readAccessList and importGroup refuse: every malformed line, and for every other line each
 * reason why the group would not admit its entries.
 */
std::vector<Refusal> checkAccessList(std::string_view text, const ImportOptions& options);

/**
 * What a group read from the bytes leaves out, or would leave out with that stage and type; and
 * whether stage and type fit each other, which reading does not check.
 */
std::vector<Refusal> checkGroup(const std::string& bytes, FiltersCommon::filtersGroupStage_t stage,
                                FiltersCommon::filtersGroupType_t type);

} // namespace filterctl

#endif // FILTER_COMMON_TOOLS_CHECKS_H
