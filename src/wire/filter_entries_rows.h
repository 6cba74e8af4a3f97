/**
 * The fields of a FiltersEntryPB, and the rows of an entry.
 */
#ifndef FILTER_COMMON_SRC_WIRE_FILTER_ENTRIES_ROWS_H
#define FILTER_COMMON_SRC_WIRE_FILTER_ENTRIES_ROWS_H

#include "filter_actions_rows.h"
#include "filter_counter_rows.h"
#include "filter_entries.h"
#include "filter_matches_rows.h"
#include "message_fields.h"
#include "rows.h"

#include <iterator>

namespace FiltersCommon {

// clang-format off
#define FILTERS_COMMON_ENTRY_FIELDS(FIELD)                                                         \
    FIELD(FiltersEntryPB, id_, kIdFieldNumber, REQUIRED)                                           \
    FIELD(FiltersEntryPB, priority_, kPriorityFieldNumber, REQUIRED)                               \
    FIELD(FiltersEntryPB, policer_, kPolicerFieldNumber, REQUIRED)                                 \
    FIELD(FiltersEntryPB, matches_, kMatchesFieldNumber, REPEATED)                                 \
    FIELD(FiltersEntryPB, actions_, kActionsFieldNumber, REPEATED)                                 \
    FIELD(FiltersEntryPB, counter_, kCounterFieldNumber, REQUIRED)
// clang-format on

namespace entry_fields {
FILTERS_COMMON_DEFINE_FIELDS(FILTERS_COMMON_ENTRY_FIELDS)
} // namespace entry_fields
#undef FILTERS_COMMON_ENTRY_FIELDS

template <>
inline constexpr MessageSchema SCHEMA_OF<FiltersEntryPB> = {
    PART_ENTRY, std::begin(entry_fields::FIELDS), std::end(entry_fields::FIELDS)};

/** The members of an entry that are plain numbers. */
struct EntryRows {
    // clang-format off
    static constexpr auto of(const FiltersEntry*) { return rows(
        at<entry_fields::id_, &FiltersEntry::id_>(
            "    ID: ", LINE, Notation::NUMBER),
        at<entry_fields::priority_, &FiltersEntry::priority_>(
            "    Priority: ", LINE, Notation::NUMBER, "priority")); }
    // clang-format on

    /** Unlike FiltersEntry::setCounter, refuses nothing. */
    static void setCounter(FiltersEntry& entry, const Counter& counter)
    {
        entry.counter_ = counter;
    }
};

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_WIRE_FILTER_ENTRIES_ROWS_H
