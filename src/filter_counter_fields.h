#ifndef FILTER_COMMON_SRC_FILTER_COUNTER_FIELDS_H
#define FILTER_COMMON_SRC_FILTER_COUNTER_FIELDS_H

#include "field_rows.h"
#include "filter_counter.h"
#include "message_fields.h"

namespace FiltersCommon {

template <class Writer>
void writeCounter(Writer& writer, const Counter& counter)
{
    writer.number(counter_fields::id(), toNumber(counter.GetId()));
    writer.number(counter_fields::type(), toNumber(counter.GetType()));
}

template <class Reader>
Counter readCounter(Reader& reader)
{
    const auto id = fromNumber<unsigned short>(reader.number(counter_fields::id()));
    const auto type = fromNumber<counter_type_t>(reader.number(counter_fields::type()));
    return Counter(id, type);
}

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_FILTER_COUNTER_FIELDS_H
