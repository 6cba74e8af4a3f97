/**
 * A group from an access list.
 *
 * Each rule becomes MatchSrcIPv4, MatchDstIPv4, MatchSrcL4Port, MatchDstL4Port, MatchIpProtocol and
 * one action; what a rule leaves open gives no match, and a rule that leaves everything open holds
 * a MatchAll. A rule becomes an entry for each pair of its source port range and each pair of its
 * destination port range. Entry identifiers count up from 0. The first of R rules has priority R,
 * the last 1; all entries of a rule share its priority.
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
    /** The action of every entry is a deny instead of a permit. */
    bool deny = false;
};

/**
 * Refuses what the group refuses, by the name of the refusal: the stage and the type without a
 * line, an entry with the line of its rule. More entries than a group can hold are refused with the
 * line of the rule that is too much.
 */
std::variant<FiltersCommon::FiltersGroup, Refusal> importGroup(const AccessList& rules,
                                                               const ImportOptions& options);

/** The first entry of a rule, as the others but for the values of its ports; identifier 0. */
FiltersCommon::FiltersEntry firstEntry(const AccessRule& rule, const ImportOptions& options);

/** How many entries a rule becomes. */
std::size_t countEntries(const AccessRule& rule);

constexpr std::uint32_t MOST_ENTRIES =
    std::uint32_t{std::numeric_limits<FiltersCommon::filtersEntryId_t>::max()} + 1;

/** The reason of the refusal of a rule with which there are more than MOST_ENTRIES. */
std::string tooManyEntries();

} // namespace filterctl

#endif // FILTER_COMMON_TOOLS_GROUP_IMPORT_H
