#include "filter_actions.h"

#include "kinds.h"
#include "text.h"
#include "wire/filter_actions_rows.h"

#include <ostream>

using namespace FiltersCommon;

namespace {

/** Dumps @p action as a T; @p values is the action as a T, or null to omit the parameters. */
template <class T>
std::ostream& writeAction(std::ostream& out, const Action& action, const T* values)
{
    constexpr auto ROWS = ActionRows::of(static_cast<const T*>(nullptr));
    return writeObject(out, "      Action Type ID: ", action, values, ROWS);
}

} // namespace

std::ostream& operator<<(std::ostream& out, const Action& action)
{
    ActionKinds::visit(action.getType(), [&](auto kind) {
        writeAction(out, action, as<ClassOf<decltype(kind)>>(action));
    });
    return out;
}

#define FILTERS_COMMON_DEFINE_PRINTED(kind, Class, Values)                                         \
    std::ostream& operator<<(std::ostream& out, const Class& action)                               \
    {                                                                                              \
        return writeAction(out, action, &action);                                                  \
    }
FILTERS_COMMON_EACH_ACTION_KIND(FILTERS_COMMON_DEFINE_PRINTED)
#undef FILTERS_COMMON_DEFINE_PRINTED

std::ostream& operator<<(std::ostream& out, const ActionPorts& action)
{
    ActionRows::of(&action).dump(out, action);
    return out;
}
