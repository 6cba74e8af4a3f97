/**
 * An object as it is sent, on one line: less readable than its dump, but more complete.
 */
#ifndef FILTER_COMMON_TOOLS_WIRE_TEXT_H
#define FILTER_COMMON_TOOLS_WIRE_TEXT_H

#include <filter_groups.h>

#include <string>

namespace filterctl {

std::string wireTextOf(const FiltersCommon::Match& match);
std::string wireTextOf(const FiltersCommon::Action& action);
/** The bytes in hexadecimal; their format belongs to another library. */
std::string wireTextOf(const policer::Policer& policer);

} // namespace filterctl

#endif // FILTER_COMMON_TOOLS_WIRE_TEXT_H
