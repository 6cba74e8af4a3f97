/**
 * How two groups differ, as text. Each line begins with '-' for what only the first group holds,
 * with '+' for what only the second group holds, or with a blank.
 */
#ifndef FILTER_COMMON_TOOLS_GROUP_DIFF_H
#define FILTER_COMMON_TOOLS_GROUP_DIFF_H

#include "named_group.h"
#include "terminal.h"

#include <string>

namespace filterctl {

struct DiffOptions {
    /**
     * Whether entries count as the same if they match and do the same, whatever their identifiers
     * and priorities; otherwise entries with the same identifier are compared.
     */
    bool byContent = false;
    /** Whether to print only the last line, which gives the counts. */
    bool brief = false;
    Painter painter = Painter(false);
};

/** Empty if the groups do not differ. The time taken grows with the number of entries. */
std::string diffGroups(const NamedGroup& a, const NamedGroup& b, const DiffOptions& options);

} // namespace filterctl

#endif // FILTER_COMMON_TOOLS_GROUP_DIFF_H
