/**
 * Building a group from an access list.
 *
 * Each rule becomes MatchSrcIPv4, MatchDstIPv4, MatchSrcL4Port, MatchDstL4Port, MatchIpProtocol and
 * one action; what a rule leaves open yields no match, and a rule that leaves everything open
 * yields a MatchAll. A rule becomes one entry for each combination of a pair from its source port
 * range and a pair from its destination port range. Entry identifiers count up from 0. The first of
 * R rules has priority R, the last has 1; all entries of a rule share its priority.
 */
#ifndef FILTER_COMMON_TOOLS_GROUP_IMPORT_H
#define FILTER_COMMON_TOOLS_GROUP_IMPORT_H

#include "access_list.h"

#include <filter_groups.h>

#include <optional>
#include <string_view>
#include <vector>

namespace filterctl {

struct ImportOptions {
    FiltersCommon::filtersGroupId_t group = 0;
    FiltersCommon::filtersGroupPriority_t priority = 0;
    FiltersCommon::filtersGroupStage_t stage = FiltersCommon::GROUP_STAGE_0;
    FiltersCommon::filtersGroupType_t type = FiltersCommon::GROUP_TYPE_3;
    /** Of the rules that do not say. */
    AccessAction action = AccessAction::PERMIT;
};

/**
 * None if anything is wrong: a stage and a type that do not fit each other, which has no line, rules
 * that the group does not admit, and more entries than it can hold. All of it is added to
 * @p problems.
 */
std::optional<FiltersCommon::FiltersGroup>
importGroup(const AccessList& rules, const ImportOptions& options, std::vector<Problem>& problems);

/** Reads the list and imports it; the problems of both are in the order of the lines. */
std::optional<FiltersCommon::FiltersGroup> groupFromAccessList(std::string_view text,
                                                               const ImportOptions& options,
                                                               std::vector<Problem>& problems);

} // namespace filterctl

#endif // FILTER_COMMON_TOOLS_GROUP_IMPORT_H
