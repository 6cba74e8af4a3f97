/**
 * Groups of rules for callers that cannot use the classes. C11 and C++17.
 *
 *  1. Handles. The caller owns the group that newFiltersGroup returns and frees it with
 *     deleteFiltersGroup. Entries (filter_entries_c.h) remain the caller's: a group stores copies.
 *  2. Null handles. Every function but newFiltersGroup and filtersGroupRemoveEntry reports a null
 *     argument as a failed assertion ("g != nullptr", "g != nullptr && e != nullptr",
 *     "g != nullptr && entries != nullptr", "entries != nullptr") and ends the process, even in
 *     release builds. filtersGroupRemoveEntry returns FILTERS_ERR_BAD_PARAM (-5) for a null group.
 *  3. Results. A refusal is a negative code and changes nothing. filtersGroupSetStage deliberately
 *     has no result: read the stage back to learn whether the change was refused.
 *  4. Listing. filtersGroupGetEntries fills a record that belongs to the caller with arrays and
 *     entries that belong to the record; deleteFiltersEntriesStruct frees them all. To free one
 *     entry of a record early, use deleteFiltersEntry and put null in its place.
 *  5. Memory. No function returns null. If memory runs out, std::bad_alloc is thrown, which ends
 *     the process unless a C++ caller further up catches it; then nothing is changed or lost.
 *  6. Threads. Use a group from one thread at a time; different groups may be used concurrently.
 */
#ifndef FILTER_COMMON_FILTER_GROUPS_C_H
#define FILTER_COMMON_FILTER_GROUPS_C_H

#include "filter_entries_c.h"
#include "filter_types.h"

#include <stdint.h>

#pragma GCC visibility push(default)

#ifdef __cplusplus
namespace FiltersCommon {
class FiltersGroup;
extern "C" {
#else
typedef struct FiltersGroup FiltersGroup;
#endif

/** Copies of the entries of a group; they do not change with the group. */
typedef struct entriesStruct {
    int32_t count;          /**< number of entries */
    filtersEntryId_t* ids;  /**< their identifiers, ascending */
    FiltersEntry** entries; /**< the entries, in the order of their identifiers */
} entriesStruct;

/** A group with that identifier; priority, stage and type are 0, and there are no entries. */
FiltersGroup* newFiltersGroup(filtersGroupId_t id);
void deleteFiltersGroup(FiltersGroup* g);

filtersGroupId_t filtersGroupGetId(FiltersGroup* g);

void filtersGroupSetPriority(FiltersGroup* g, filtersGroupPriority_t priority);
filtersGroupPriority_t filtersGroupGetPriority(FiltersGroup* g);

/** Sets the stage if the group's type and entries fit it; otherwise does nothing. */
void filtersGroupSetStage(FiltersGroup* g, filtersGroupStage_t stage);
filtersGroupStage_t filtersGroupGetStage(FiltersGroup* g);

/**
 * @return FILTERS_ERR_UNKNOWN_STAGE or FILTERS_ERR_TYPE_NOT_ALLOWED if the group's stage does not
 * admit @p type; FILTERS_ERR_MATCH_NOT_ALLOWED if an entry of the group does not fit the type
 */
filtersErr_t filtersGroupSetType(FiltersGroup* g, filtersGroupType_t type);
filtersGroupType_t filtersGroupGetType(FiltersGroup* g);

/**
 * Stores a copy of @p e, replacing any entry with the same identifier.
 * @return FILTERS_ERR_INVALID for a group of unknown type, FILTERS_ERR_MATCH_NOT_ALLOWED,
 * FILTERS_ERR_UNKNOWN_STAGE, FILTERS_ERR_ACTION_NOT_ALLOWED or FILTERS_ERR_POLICER_STAGE if the
 * group's type and stage do not admit the entry
 */
filtersErr_t filtersGroupInsertEntry(FiltersGroup* g, FiltersEntry* e);

/** @return FILTERS_ERR_NOT_FOUND if there is no such entry */
filtersErr_t filtersGroupRemoveEntry(FiltersGroup* g, filtersEntryId_t id);

/**
 * Fills @p entries; what it pointed to before is not freed. For an empty group the count is 0 and
 * the arrays have no elements, but must still be freed with deleteFiltersEntriesStruct.
 */
void filtersGroupGetEntries(FiltersGroup* g, entriesStruct* entries);

/**
 * Frees both arrays and the first count entries, skipping nulls. The record itself is neither freed
 * nor reset: do not pass it twice, or before it has been filled.
 */
void deleteFiltersEntriesStruct(entriesStruct* entries);

#ifdef __cplusplus
} // extern "C"
} // namespace FiltersCommon
#endif

#pragma GCC visibility pop

#endif /* FILTER_COMMON_FILTER_GROUPS_C_H */
