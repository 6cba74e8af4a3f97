#include "filter_actions.h"

#include "filter_actions_fields.h"
#include "kinds.h"
#include "message_io.h"

namespace FiltersCommon {

template <class... Classes>
constexpr bool haveRows(KindList<Action, Classes...>)
{
    return ((hasNoValues<Classes> || !std::is_same_v<ActionFieldsOf<Classes>, Fields<>>)&&...);
}

static_assert(haveRows(ActionKinds()), "a class with values has a row in ActionFields");

void Action::convertToActionPB(ActionPB* pb) const
{
    MessageWriter<ActionPB>(pb).number(action_fields::type_(), toNumber(type_));
}

void Action::convertFromActionPB(const ActionPB* /*pb*/) {}

#define FILTERS_COMMON_CONVERTED(Class)                                                            \
    void Class::convertToActionPB(ActionPB* pb) const                                              \
    {                                                                                              \
        Action::convertToActionPB(pb);                                                             \
        MessageWriter<ActionPB> writer(pb);                                                        \
        ActionFieldsOf<Class>::write(writer, *this);                                               \
    }                                                                                              \
    void Class::convertFromActionPB(const ActionPB* pb)                                            \
    {                                                                                              \
        MessageReader<ActionPB> reader(*pb);                                                       \
        ActionFieldsOf<Class>::read(reader, *this);                                                \
    }

FILTERS_COMMON_CONVERTED(ActionBlockEgressPorts)
FILTERS_COMMON_CONVERTED(ActionCopyToCpuCancel)
FILTERS_COMMON_CONVERTED(ActionSetPcp)
FILTERS_COMMON_CONVERTED(ActionSetPcpAndQueue)
FILTERS_COMMON_CONVERTED(ActionSetInnerPcp)
FILTERS_COMMON_CONVERTED(ActionSetDSCP)
FILTERS_COMMON_CONVERTED(ActionMapToCosQueue)
FILTERS_COMMON_CONVERTED(ActionMapToCpuCosQueue)
FILTERS_COMMON_CONVERTED(ActionRedirect)
FILTERS_COMMON_CONVERTED(ActionReplaceDstMac)
FILTERS_COMMON_CONVERTED(ActionReplaceSrcMac)
FILTERS_COMMON_CONVERTED(ActionL3Switch)

#undef FILTERS_COMMON_CONVERTED

} // namespace FiltersCommon
