/**
 * The fields of a CounterPB, and the rows of a counter.
 */
#ifndef FILTER_COMMON_SRC_WIRE_FILTER_COUNTER_ROWS_H
#define FILTER_COMMON_SRC_WIRE_FILTER_COUNTER_ROWS_H

#include "filter_counter.h"
#include "message_fields.h"
#include "rows.h"

#include <iterator>

namespace FiltersCommon {

// clang-format off
#define FILTERS_COMMON_COUNTER_FIELDS(FIELD)                                                       \
    FIELD(CounterPB, id, kIdFieldNumber, REQUIRED)                                                 \
    FIELD(CounterPB, type, kTypeFieldNumber, REQUIRED)
// clang-format on

namespace counter_fields {
FILTERS_COMMON_DEFINE_FIELDS(FILTERS_COMMON_COUNTER_FIELDS)
} // namespace counter_fields
#undef FILTERS_COMMON_COUNTER_FIELDS

template <>
inline constexpr MessageSchema SCHEMA_OF<CounterPB> = {
    PART_COUNTER, std::begin(counter_fields::FIELDS), std::end(counter_fields::FIELDS)};

struct CounterRows {
    // clang-format off
    static constexpr auto of(const Counter*) { return rows(
        at<counter_fields::id, &Counter::id_>(
            "ID: ", LINE_THAT_KEEPS_THE_WIDTH, Notation::COUNTER, "counter"),
        at<counter_fields::type, &Counter::type_>(
            "Type: ", NAMED_OR_UNKNOWN, Notation::COUNTED)); }
    // clang-format on
};

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_WIRE_FILTER_COUNTER_ROWS_H
