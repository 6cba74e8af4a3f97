/**
 * What commands read. If an input is refused, std::runtime_error is thrown with its name, the line
 * and the reason.
 */
#ifndef FILTER_COMMON_TOOLS_INPUTS_H
#define FILTER_COMMON_TOOLS_INPUTS_H

#include "access_list.h"

#include <filter_groups.h>

#include <stdexcept>
#include <string>
#include <utility>
#include <variant>

namespace filterctl {

/** Why bytes that should be a group are refused. */
constexpr char NO_GROUP[] = "holds no group";

/** "NAME:LINE:", or "NAME:" if no line is to blame. */
std::string placeOf(const std::string& name, const Refusal& refusal);

/** The place and the reason. */
std::string messageOf(const std::string& name, const Refusal& refusal);

/** Returns the result of a step, or throws its refusal as an error. */
template <class T>
T accepted(std::variant<T, Refusal>&& result, const std::string& name)
{
    if (const Refusal* refusal = std::get_if<Refusal>(&result))
        throw std::runtime_error(messageOf(name, *refusal));
    return std::get<T>(std::move(result));
}

/** Fills the message from the bytes. @return whether it then holds everything a group needs */
bool parseGroup(FiltersCommon::FiltersGroupPB& message, const std::string& bytes);

/** The group whose bytes are in the file. */
FiltersCommon::FiltersGroup readGroup(const std::string& name);

} // namespace filterctl

#endif // FILTER_COMMON_TOOLS_INPUTS_H
