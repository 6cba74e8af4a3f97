/**
 * Rule text for people: in colour, and with the same words below each other.
 */
#ifndef FILTER_COMMON_TOOLS_RULE_TABLE_H
#define FILTER_COMMON_TOOLS_RULE_TABLE_H

#include "terminal.h"

#include <filter_groups.h>

#include <cstddef>
#include <string>

namespace filterctl {

/**
 * Still rule text, but for the colours. The words stand in columns unless these are wider than
 * @p width.
 */
std::string ruleTableOf(const FiltersCommon::FiltersGroup& group, std::size_t width,
                        const Painter& painter);

} // namespace filterctl

#endif // FILTER_COMMON_TOOLS_RULE_TABLE_H
