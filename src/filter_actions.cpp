#include "filter_actions.h"

#include "kinds.h"
#include "wire/bytes.h"

namespace FiltersCommon {

bool Action::operator==(const Action& other) const
{
    if (type_ != other.type_)
        return false;
    // Deliberately unlike matches, actions with the same unknown code are equal.
    return ActionKinds::dispatch(
        type_, true, [&](auto kind) { return areEqualAs<ClassOf<decltype(kind)>>(*this, other); });
}

// ------------------------------------------------------------------------------------ destructors

Action::~Action() = default;
ActionPorts::~ActionPorts() = default;

#define FILTERS_COMMON_DEFINE_DESTRUCTOR(kind, Class, Values) Class::~Class() = default;
FILTERS_COMMON_EACH_ACTION_KIND(FILTERS_COMMON_DEFINE_DESTRUCTOR)
#undef FILTERS_COMMON_DEFINE_DESTRUCTOR

// ------------------------------------------------------------------------------------------- ports

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

// ---------------------------------------------------------------------------------- MAC addresses

bool ActionReplaceDstMac::operator==(const ActionReplaceDstMac& other) const
{
    return sameBytes(mac_, other.mac_);
}

bool ActionReplaceSrcMac::operator==(const ActionReplaceSrcMac& other) const
{
    return sameBytes(mac_, other.mac_);
}

} // namespace FiltersCommon
