/**
 * Groups as JSON; group_json.proto says what stands where.
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
 * The same text for equal groups, with a line end behind it; on one line if it is @p compact.
 * Raises std::runtime_error if there is more than a message can hold.
 */
std::string jsonOf(const FiltersCommon::FiltersGroup& group, bool compact);

/**
 * The JSON of the bytes of a message of a type that was compiled in. Raises std::runtime_error if
 * it has none.
 */
std::string jsonOf(const google::protobuf::Descriptor& type, const std::string& bytes,
                   bool compact);

} // namespace filterctl

#endif // FILTER_COMMON_TOOLS_GROUP_JSON_H
