/**
 * The fields of a CounterPB, and the rows of a counter.
 */
#ifndef FILTER_COMMON_SRC_WIRE_FILTER_COUNTER_ROWS_H
#define FILTER_COMMON_SRC_WIRE_FILTER_COUNTER_ROWS_H

#include "filter_counter.h"
#include "message_fields.h"
#include "rows.h"

namespace FiltersCommon {

namespace counter_fields {
FILTERS_COMMON_DEFINE_FIELD(CounterPB, id, kIdFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(CounterPB, type, kTypeFieldNumber)
} // namespace counter_fields

struct CounterRows {
    // clang-format off
    static constexpr auto of(const Counter*) { return rows(
        at<counter_fields::id, &Counter::id_>(
            "ID: ", LINE_THAT_KEEPS_THE_WIDTH, Notation::NUMBER, "counter"),
        at<counter_fields::type, &Counter::type_>(
            "Type: ", NAMED_OR_UNKNOWN, Notation::COUNTED)); }
    // clang-format on
};

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_WIRE_FILTER_COUNTER_ROWS_H
