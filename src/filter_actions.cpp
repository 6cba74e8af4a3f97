#include "filter_actions.h"

#include "bytes.h"
#include "kinds.h"

namespace FiltersCommon {

namespace {

/** Equality looks at the class that holds the parameters. */
template <class T>
using ActionValuesOf = typename ValuesOf<T, ActionPorts>::Class;

} // namespace

bool Action::operator==(const Action& other) const
{
    if (type_ != other.type_)
        return false;
    // Unknown codes are equal, deliberately unlike matches.
    return ActionKinds::dispatch(type_, true, [&](auto kind) {
        using Class = ClassOf<decltype(kind)>;
        const auto* mine = as<ActionValuesOf<Class>, Class>(*this);
        const auto* theirs = as<ActionValuesOf<Class>, Class>(other);
        if (mine == nullptr || theirs == nullptr)
            return hasNoValues<Class>;
        return *mine == *theirs;
    });
}

ActionPorts& ActionPorts::operator=(const ActionPorts& other) { return *this = ActionPorts(other); }

bool ActionPorts::operator==(const ActionPorts& other) const
{
    return sameBytes(ports_, other.ports_);
}

ActionRedirect& ActionRedirect::operator=(const ActionRedirect& other)
{
    return *this = ActionRedirect(other);
}

bool ActionRedirect::operator==(const ActionRedirect& other) const
{
    return sameBytes(ports_, other.ports_);
}

bool ActionReplaceDstMac::operator==(const ActionReplaceDstMac& other) const
{
    return sameBytes(mac_, other.mac_);
}

bool ActionReplaceSrcMac::operator==(const ActionReplaceSrcMac& other) const
{
    return sameBytes(mac_, other.mac_);
}

} // namespace FiltersCommon
