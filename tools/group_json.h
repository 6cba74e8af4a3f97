/**
 * Groups as JSON, in the form defined by group_json.proto.
 */
#ifndef FILTER_COMMON_TOOLS_GROUP_JSON_H
#define FILTER_COMMON_TOOLS_GROUP_JSON_H

#include <filter_groups.h>

#include <string>

namespace google::protobuf {
class Descriptor;
}

namespace filterctl {

/**
 * The same text for equal groups, ending with a newline; on one line if @p compact. Throws
 * std::runtime_error if there is more than a message can hold.
 */
std::string jsonOf(const FiltersCommon::FiltersGroup& group, bool compact);

/**
 * The JSON form of a message, given its bytes and its compiled-in type. Throws std::runtime_error
 * if it has none.
 */
std::string jsonOf(const google::protobuf::Descriptor& type, const std::string& bytes,
                   bool compact);

} // namespace filterctl

#endif // FILTER_COMMON_TOOLS_GROUP_JSON_H
