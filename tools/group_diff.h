/**
 * How two groups differ, as text. Each line begins with '-' for what only the first group holds,
 * with '+' for what only the second holds, or with a blank.
 */
#ifndef FILTER_COMMON_TOOLS_GROUP_DIFF_H
#define FILTER_COMMON_TOOLS_GROUP_DIFF_H

#include "terminal.h"

#include <filter_groups.h>

#include <string>

namespace filterctl {

struct DiffOptions {
    /**
     * Entries are the same if they match and do the same, whatever their identifiers and
     * priorities; otherwise those of one identifier are compared.
     */
    bool byContent = false;
    /** Only the last line, which counts. */
    bool brief = false;
    Painter painter = Painter(false);
};

struct NamedGroup {
    std::string name;
    FiltersCommon::FiltersGroup group;
};

/** No text if the groups do not differ. Takes a time that grows with the number of entries. */
std::string diffGroups(const NamedGroup& a, const NamedGroup& b, const DiffOptions& options);

} // namespace filterctl

#endif // FILTER_COMMON_TOOLS_GROUP_DIFF_H
