/**
 * The fields of a FiltersGroupPB, and the rows of a group.
 */
#ifndef FILTER_COMMON_SRC_WIRE_FILTER_GROUPS_ROWS_H
#define FILTER_COMMON_SRC_WIRE_FILTER_GROUPS_ROWS_H

#include "filter_groups.h"
#include "message_fields.h"
#include "rows.h"

namespace FiltersCommon {

namespace group_fields {
FILTERS_COMMON_DEFINE_FIELD(FiltersGroupPB, id_, kIdFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(FiltersGroupPB, priority_, kPriorityFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(FiltersGroupPB, stage_, kStageFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(FiltersGroupPB, type_, kTypeFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(FiltersGroupPB, entries_, kEntriesFieldNumber)
} // namespace group_fields

/** The members of a group that are plain numbers. */
struct GroupRows {
    // clang-format off
    static constexpr auto of(const FiltersGroup*) { return rows(
        at<group_fields::id_, &FiltersGroup::id_>(
            "  ID: ", UNFLUSHED_LINE, Notation::NUMBER, "group"),
        at<group_fields::priority_, &FiltersGroup::priority_>(
            "  Priority: ", UNFLUSHED_LINE, Notation::NUMBER, "priority"),
        at<group_fields::stage_, &FiltersGroup::stage_>(
            "  Stage: ", UNFLUSHED_LINE, Notation::NUMBER, "stage"),
        at<group_fields::type_, &FiltersGroup::type_>(
            "  Type: ", UNFLUSHED_LINE, Notation::NUMBER, "type")); }
    // clang-format on
};

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_WIRE_FILTER_GROUPS_ROWS_H
