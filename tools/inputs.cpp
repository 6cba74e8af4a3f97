#include "inputs.h"

#include "files.h"

#include "filter_groups.pb.h"

#include <climits>

namespace filterctl {

using namespace FiltersCommon;

std::string placeOf(const std::string& name, const Refusal& refusal)
{
    return name + (refusal.line == 0 ? "" : ":" + std::to_string(refusal.line)) + ":";
}

std::string messageOf(const std::string& name, const Refusal& refusal)
{
    return placeOf(name, refusal) + " " + refusal.reason;
}

bool parseGroup(FiltersGroupPB& message, const std::string& bytes)
{
    return bytes.size() <= INT_MAX && message.ParsePartialFromString(bytes) &&
           message.IsInitialized();
}

FiltersGroup readGroup(const std::string& name)
{
    FiltersGroupPB message;
    if (!parseGroup(message, readFile(name)))
        throw std::runtime_error(messageOf(name, {0, NO_GROUP}));
    FiltersGroup group(0);
    group.convertFromFiltersGroupPB(&message);
    return group;
}

} // namespace filterctl
