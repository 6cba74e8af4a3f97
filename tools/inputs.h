/**
 * What commands read. Inputs that are refused are raised as a std::runtime_error with their name,
 * the line, and the reason.
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

/** Why bytes are refused that are to be a group. */
constexpr char NO_GROUP[] = "holds no group";

/** "NAME:LINE:", or "NAME:" for what no line is to blame for. */
std::string placeOf(const std::string& name, const Refusal& refusal);

/** The place and the reason. */
std::string messageOf(const std::string& name, const Refusal& refusal);

/** What a step made, or the refusal raised as an error. */
template <class T>
T accepted(std::variant<T, Refusal>&& result, const std::string& name)
{
    if (const Refusal* refusal = std::get_if<Refusal>(&result))
        throw std::runtime_error(messageOf(name, *refusal));
    return std::get<T>(std::move(result));
}

/** Whether the message holds all that a group needs once it has been filled from the bytes. */
bool parseGroup(FiltersCommon::FiltersGroupPB& message, const std::string& bytes);

/** The group whose bytes the file holds. */
FiltersCommon::FiltersGroup readGroup(const std::string& name);

} // namespace filterctl

#endif // FILTER_COMMON_TOOLS_INPUTS_H
