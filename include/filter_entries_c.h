/**
 * Rules for callers that cannot use the classes. C11 and C++17.
 *
 *  1. Handles. The caller owns the entry that newFiltersEntry or copyFiltersEntry returns and frees
 *     it with deleteFiltersEntry. Matches and actions (filter_matches_c.h, filter_actions_c.h)
 *     remain the caller's: an entry stores copies. Match* and Action* take the handles made there;
 *     C converts them implicitly, C++ needs a static_cast.
 *  2. Null handles are treated in two ways. filtersEntrySetMatch, filtersEntryGetMatch,
 *     filtersEntrySetAction and filtersEntryGetAction return FILTERS_ERR_BAD_PARAM (-5) for a null
 *     entry, match or action. All other functions but newFiltersEntry report a null entry as a
 *     failed assertion ("e != nullptr") and end the process, even in release builds.
 *  3. Results. A refusal is a negative code; it changes neither the entry nor the match or action.
 *  4. Kinds. A match or action is set or read as the class of its kind code, so a DSCP match is
 *     stored as a type-of-service match, which matchDSCPGet can read too. Code 30
 *     (MATCH_FORWARDING_TYPE) is deliberately refused with FILTERS_ERR_INVALID (-4), and so are
 *     codes beyond the known kinds.
 *  5. Memory. No function returns null. If memory runs out, std::bad_alloc is thrown, which ends
 *     the process unless a C++ caller further up catches it; then nothing is changed or lost.
 *  6. Threads. Use an entry from one thread at a time; different entries may be used concurrently.
 *
 * Deliberately not provided: a setter for the identifier, the policer, the counter, serialization.
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

/** An entry with that identifier and priority 0, otherwise empty. */
FiltersEntry* newFiltersEntry(filtersEntryId_t id);
/** An independent copy. A DSCP match set through the classes is copied as described in (4). */
FiltersEntry* copyFiltersEntry(FiltersEntry* e);
void deleteFiltersEntry(FiltersEntry* e);

filtersEntryId_t filtersEntryGetId(FiltersEntry* e);
void filtersEntrySetPriority(FiltersEntry* e, filtersEntryPriority_t priority);
filtersEntryPriority_t filtersEntryGetPriority(FiltersEntry* e);

/**
 * Stores a copy of @p m, replacing any match of the same kind.
 * @return FILTERS_ERR_INVALID if IPv4 and IPv6 addresses would be combined, or for its kind (4)
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
 * Stores a copy of @p a, replacing any action of the same kind.
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
