/**
 * All reasons at once why an access list gives no group, or why reading a group leaves something
 * out, as sentences. What concerns the group as a whole comes first, once and without a line.
 */
#ifndef FILTER_COMMON_TOOLS_CHECKS_H
#define FILTER_COMMON_TOOLS_CHECKS_H

#include "group_import.h"

#include <string>
#include <string_view>
#include <vector>

namespace filterctl {

/**
 * Why readAccessList and importGroup refuse: every malformed line, and every other line with each
 * reason why the group would not take its entries.
 */
std::vector<Refusal> checkAccessList(std::string_view text, const ImportOptions& options);

/**
 * What a group leaves out that is read from the bytes, or would leave out at that stage and of that
 * type; and whether stage and type fit each other, which reading does not ask.
 */
std::vector<Refusal> checkGroup(const std::string& bytes, FiltersCommon::filtersGroupStage_t stage,
                                FiltersCommon::filtersGroupType_t type);

} // namespace filterctl

#endif // FILTER_COMMON_TOOLS_CHECKS_H
