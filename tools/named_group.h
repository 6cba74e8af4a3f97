/**
 * A group, and what the user calls it.
 */
#ifndef FILTER_COMMON_TOOLS_NAMED_GROUP_H
#define FILTER_COMMON_TOOLS_NAMED_GROUP_H

#include <filter_groups.h>

#include <string>

namespace filterctl {

struct NamedGroup {
    std::string name;
    FiltersCommon::FiltersGroup group;
};

} // namespace filterctl

#endif // FILTER_COMMON_TOOLS_NAMED_GROUP_H
