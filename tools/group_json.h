/**
 * Groups as JSON: an object with two members. "group" is the group's message in the JSON form of
 * Protocol Buffers, from which any program that knows the messages can rebuild it. "readable" is
 * the same for people and scripts.
 */
#ifndef FILTER_COMMON_TOOLS_GROUP_JSON_H
#define FILTER_COMMON_TOOLS_GROUP_JSON_H

#include "files.h"
#include "problems.h"

#include <filter_groups.h>

#include <optional>
#include <string>
#include <string_view>

namespace filterctl {

/**
 * Passes the text to @p sink in pieces. It is the same for equal groups, and ends with a newline; it
 * is one line if @p compact. Throws std::runtime_error if the group has more bytes than a message
 * may have.
 */
void writeJson(const FiltersCommon::FiltersGroup& group, bool compact, const Sink& sink);

/** The same text as a whole. */
std::string jsonOf(const FiltersCommon::FiltersGroup& group, bool compact);

/**
 * The group that "group" holds. Takes any text; refuses, with the reason in @p why, all that would
 * be lost, and a "readable" that is not what is written for the group. It may be left out, for it
 * adds nothing.
 */
std::optional<FiltersCommon::FiltersGroup> groupFromJson(std::string_view text, Problem& why);

} // namespace filterctl

#endif // FILTER_COMMON_TOOLS_GROUP_JSON_H
