#include "filter_actions.h"

#include "kinds.h"
#include "wire/filter_actions_rows.h"
#include "wire/message_io.h"

namespace FiltersCommon {

void Action::convertToActionPB(ActionPB* pb) const
{
    MessageWriter<ActionPB>(pb).number(action_fields::type_(), toNumber(type_));
}

void Action::convertFromActionPB(const ActionPB* /*pb*/) {}

#define FILTERS_COMMON_DEFINE_CONVERSIONS(kind, Class, Values)                                     \
    static_assert(hasRowsOfItsOwn<ActionRows, Action, Class>,                                      \
                  #Class " has a row for each member");                                            \
    void Class::convertToActionPB(ActionPB* pb) const                                              \
    {                                                                                              \
        Action::convertToActionPB(pb);                                                             \
        MessageWriter<ActionPB> writer(pb);                                                        \
        ActionRows::of(this).write(writer, *this);                                                 \
    }                                                                                              \
    void Class::convertFromActionPB(const ActionPB* pb)                                            \
    {                                                                                              \
        MessageReader<ActionPB> reader(*pb);                                                       \
        ActionRows::of(this).read(reader, *this);                                                  \
    }
#define FILTERS_COMMON_AS_ITS_BASE(kind, Class, Values)

FILTERS_COMMON_ACTION_KINDS(FILTERS_COMMON_DEFINE_CONVERSIONS, FILTERS_COMMON_DEFINE_CONVERSIONS,
                            FILTERS_COMMON_AS_ITS_BASE)

#undef FILTERS_COMMON_AS_ITS_BASE
#undef FILTERS_COMMON_DEFINE_CONVERSIONS

} // namespace FiltersCommon
