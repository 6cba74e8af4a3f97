/**
 * What is sent of an object, on one line: more than its dump shows, and less readable.
 */
#ifndef FILTER_COMMON_TOOLS_WIRE_TEXT_H
#define FILTER_COMMON_TOOLS_WIRE_TEXT_H

#include <filter_groups.h>

#include <string>

namespace filterctl {

std::string wireTextOf(const FiltersCommon::Match& match);
std::string wireTextOf(const FiltersCommon::Action& action);
/** The bytes, whose form belongs to another library. */
std::string wireTextOf(const policer::Policer& policer);

} // namespace filterctl

#endif // FILTER_COMMON_TOOLS_WIRE_TEXT_H
