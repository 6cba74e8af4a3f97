#ifndef FILTER_COMMON_SRC_WIRE_FILTER_ENTRIES_ROWS_H
#define FILTER_COMMON_SRC_WIRE_FILTER_ENTRIES_ROWS_H

#include "filter_entries.h"
#include "message_fields.h"
#include "rows.h"

namespace FiltersCommon {

/** The members of an entry that are plain numbers. */
struct EntryRows {
    // clang-format off
    static constexpr auto of(const FiltersEntry*) { return rows(
        at<entry_fields::id_, &FiltersEntry::id_>(
            "    ID: ", LINE, Notation::NUMBER),
        at<entry_fields::priority_, &FiltersEntry::priority_>(
            "    Priority: ", LINE, Notation::NUMBER)); }
    // clang-format on
};

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_WIRE_FILTER_ENTRIES_ROWS_H
