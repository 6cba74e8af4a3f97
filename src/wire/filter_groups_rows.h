/**
 * The fields of a FiltersGroupPB, and the rows of a group.
 */
#ifndef FILTER_COMMON_SRC_WIRE_FILTER_GROUPS_ROWS_H
#define FILTER_COMMON_SRC_WIRE_FILTER_GROUPS_ROWS_H

#include "filter_entries_rows.h"
#include "filter_groups.h"
#include "message_fields.h"
#include "rows.h"

#include <iterator>

namespace FiltersCommon {

// clang-format off
#define FILTERS_COMMON_GROUP_FIELDS(FIELD)                                                         \
    FIELD(FiltersGroupPB, id_, kIdFieldNumber, REQUIRED)                                           \
    FIELD(FiltersGroupPB, priority_, kPriorityFieldNumber, REQUIRED)                               \
    FIELD(FiltersGroupPB, stage_, kStageFieldNumber, REQUIRED)                                     \
    FIELD(FiltersGroupPB, type_, kTypeFieldNumber, REQUIRED)                                       \
    FIELD(FiltersGroupPB, entries_, kEntriesFieldNumber, REPEATED)
// clang-format on

namespace group_fields {
FILTERS_COMMON_DEFINE_FIELDS(FILTERS_COMMON_GROUP_FIELDS)
} // namespace group_fields
#undef FILTERS_COMMON_GROUP_FIELDS

template <>
inline constexpr MessageSchema SCHEMA_OF<FiltersGroupPB> = {
    PART_GROUP, std::begin(group_fields::FIELDS), std::end(group_fields::FIELDS)};

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
