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

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <variant>

namespace filterctl {

struct ImportOptions {
    FiltersCommon::filtersGroupId_t group = 0;
    FiltersCommon::filtersGroupPriority_t priority = 0;
    FiltersCommon::filtersGroupStage_t stage = FiltersCommon::GROUP_STAGE_0;
    FiltersCommon::filtersGroupType_t type = FiltersCommon::GROUP_TYPE_3;
    /** Whether the action of every entry is a deny instead of a permit. */
    bool deny = false;
};

/**
 * Refuses what the group refuses, giving the name of the result code: stage and type without a
 * line, an entry with the line of its rule. More entries than a group can hold are refused with the
 * line of the rule that exceeds the limit.
 */
std::variant<FiltersCommon::FiltersGroup, Refusal> importGroup(const AccessList& rules,
                                                               const ImportOptions& options);

/** The first entry of a rule, with identifier and priority 0. The others differ in their ports. */
FiltersCommon::FiltersEntry firstEntry(const AccessRule& rule, const ImportOptions& options);

/** How many entries a rule becomes. */
std::size_t countEntries(const AccessRule& rule);

constexpr std::uint32_t MOST_ENTRIES =
    std::uint32_t{std::numeric_limits<FiltersCommon::filtersEntryId_t>::max()} + 1;

/** The reason for refusing the rule that exceeds MOST_ENTRIES. */
std::string tooManyEntries();

} // namespace filterctl

#endif // FILTER_COMMON_TOOLS_GROUP_IMPORT_H
