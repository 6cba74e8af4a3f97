/**
 * Rules for callers that cannot use the classes. C11 and C++17.
 *
 *  1. Handles. newFiltersEntry and copyFiltersEntry give an entry to the caller, who frees it with
 *     deleteFiltersEntry. Matches and actions (filter_matches_c.h, filter_actions_c.h) stay the
 *     caller's: an entry stores copies. Match* and Action* take the handles made there; C converts
 *     them by itself, C++ asks for a static_cast.
 *  2. Null handles, in two styles. filtersEntrySetMatch, filtersEntryGetMatch,
 * filtersEntrySetAction and filtersEntryGetAction answer FILTERS_ERR_BAD_PARAM (-5), for a null
 * entry and for a null match or action. All others but newFiltersEntry report a null entry as a
 * failed assertion
 *     ("e != nullptr") and end the process, in release builds too.
 *  3. Results. A refusal is a negative code and changes nothing, neither the entry nor the match or
 *     action handle.
 *  4. Kinds. A match or action is set or read as the class of its kind code, so a DSCP match is
 *     stored as a type-of-service match, which matchDSCPGet reads as well. Code 30
 *     (MATCH_FORWARDING_TYPE) is deliberately left out: FILTERS_ERR_INVALID (-4). So are codes
 *     beyond the known kinds.
 *  5. Memory. No function returns null. If memory runs out std::bad_alloc is raised, which ends the
 *     process unless a C++ caller further up catches it; then nothing is changed and nothing lost.
 *  6. Threads. An entry is used by one thread at a time; different entries by any.
 *
 * Deliberately not offered: the identifier's setter, the policer, the counter, serialization.
 */
#ifndef FILTER_COMMON_FILTER_ENTRIES_C_H
#define FILTER_COMMON_FILTER_ENTRIES_C_H

#include "filter_actions_c.h"
#include "filter_matches_c.h"
#include "filter_types.h"

#pragma GCC visibility push(default)

#ifdef __cplusplus
namespace FiltersCommon {
class Action;
class FiltersEntry;
class Match;
extern "C" {
#else
typedef struct Action Action;
typedef struct FiltersEntry FiltersEntry;
typedef struct Match Match;
#endif

/** An entry with that identifier, priority 0, and nothing in it. */
FiltersEntry* newFiltersEntry(filtersEntryId_t id);
/** An independent copy. A DSCP match that was set through the classes is copied as in (4). */
FiltersEntry* copyFiltersEntry(FiltersEntry* e);
void deleteFiltersEntry(FiltersEntry* e);

filtersEntryId_t filtersEntryGetId(FiltersEntry* e);
void filtersEntrySetPriority(FiltersEntry* e, filtersEntryPriority_t priority);
filtersEntryPriority_t filtersEntryGetPriority(FiltersEntry* e);

/**
 * Stores a copy of @p m in the place of a match of the same kind.
 * @return FILTERS_ERR_INVALID if IPv4 addresses would meet IPv6 addresses, or for its kind (4)
 */
filtersErr_t filtersEntrySetMatch(FiltersEntry* e, Match* m);

/**
 * Copies the values of the entry's match of the kind of @p m into @p m.
 * @return FILTERS_ERR_NOT_FOUND if there is none; FILTERS_ERR_INVALID for its kind (4)
 */
filtersErr_t filtersEntryGetMatch(FiltersEntry* e, Match* m);

/** @return FILTERS_ERR_NOT_FOUND if there is none */
filtersErr_t filtersEntryDeleteMatch(FiltersEntry* e, filtersMatch_t kind);

/**
 * Stores a copy of @p a in the place of an action of the same kind.
 * @return FILTERS_ERR_INVALID for its kind (4)
 */
filtersErr_t filtersEntrySetAction(FiltersEntry* e, Action* a);

/**
 * Copies the values of the entry's action of the kind of @p a into @p a.
 * @return FILTERS_ERR_NOT_FOUND if there is none; FILTERS_ERR_INVALID for its kind (4)
 */
filtersErr_t filtersEntryGetAction(FiltersEntry* e, Action* a);

/** @return FILTERS_ERR_NOT_FOUND if there is none */
filtersErr_t filtersEntryDeleteAction(FiltersEntry* e, filtersAction_t kind);

#ifdef __cplusplus
} // extern "C"
} // namespace FiltersCommon
#endif

#pragma GCC visibility pop

#endif /* FILTER_COMMON_FILTER_ENTRIES_C_H */
