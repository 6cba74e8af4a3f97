/**
 * The fields of a FiltersEntryPB, and the rows of an entry.
 */
#ifndef FILTER_COMMON_SRC_WIRE_FILTER_ENTRIES_ROWS_H
#define FILTER_COMMON_SRC_WIRE_FILTER_ENTRIES_ROWS_H

#include "filter_entries.h"
#include "message_fields.h"
#include "rows.h"

namespace FiltersCommon {

namespace entry_fields {
FILTERS_COMMON_DEFINE_FIELD(FiltersEntryPB, id_, kIdFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(FiltersEntryPB, priority_, kPriorityFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(FiltersEntryPB, policer_, kPolicerFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(FiltersEntryPB, matches_, kMatchesFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(FiltersEntryPB, actions_, kActionsFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(FiltersEntryPB, counter_, kCounterFieldNumber)
} // namespace entry_fields

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
