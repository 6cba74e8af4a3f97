/**
 * Refusals that explain themselves, for callers that cannot use the classes. C11 and C++17.
 *
 * For each operation there is a function of the same name with Refusals at the end. It takes the
 * same arguments, changes nothing, and lists every reason for a refusal, in the order of the
 * operation's checks. If the list is empty the operation would succeed; otherwise the code of
 * reason 0 is the one the operation would return.
 *
 * For bytes, from which anything can be read, there are functions that list what reading loses. An
 * empty list means that nothing is lost.
 *
 *  1. Handles. A list belongs to the caller, who frees it with deleteFiltersRefusals. It holds
 *     copies: the group, entry, match, action or bytes may be changed or freed before it.
 *  2. Null handles. Every function reports one as a failed assertion ("g != nullptr",
 *     "g != nullptr && e != nullptr", "e != nullptr && m != nullptr",
 *     "e != nullptr && a != nullptr", "r != nullptr") and ends the process, even in release builds.
 *     So do the functions for bytes, unless there are none ("bytes != nullptr || size == 0").
 *     So do the getters for an index that is not below the count
 *     ("r != nullptr && index < count"), and for a null place ("place != nullptr").
 *  3. Presence. A getter with a place returns false, and leaves the place alone, if what was asked
 *     for does not apply to the reason.
 *  4. Sets. What would have been admitted instead is a 64-bit number: bit n, of value
 *     UINT64_C(1) << n, is code n. It is 0 if such codes do not apply to the reason, or if nothing
 *     is admitted. A set may be stored and compared with that of a later version: codes never
 *     change their meaning, but new ones may be added. Programs should ignore unknown bits.
 *  5. Pointers. A sentence belongs to the list and is freed with it.
 *  6. Memory. No function returns null. If memory runs out, std::bad_alloc is thrown, which ends
 *     the process unless a C++ caller further up catches it; then nothing is changed or lost.
 *  7. Threads. Use a list from one thread at a time; different lists may be used concurrently.
 */
#ifndef FILTER_COMMON_FILTER_REFUSALS_C_H
#define FILTER_COMMON_FILTER_REFUSALS_C_H

#include "filter_entries_c.h"
#include "filter_groups_c.h"
#include "filter_names.h"
#include "filter_types.h"

#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>

#pragma GCC visibility push(default)

#ifdef __cplusplus
namespace FiltersCommon {
class FiltersRefusals;
extern "C" {
#else
typedef struct FiltersRefusals FiltersRefusals;
#endif

/* --------------------------------------------------------------------------------------- lists */

/** Every reason names the entry. */
FiltersRefusals* filtersGroupInsertEntryRefusals(FiltersGroup* g, FiltersEntry* e);
/** The reasons that filtersGroupSetStage itself does not return. */
FiltersRefusals* filtersGroupSetStageRefusals(FiltersGroup* g, filtersGroupStage_t stage);
FiltersRefusals* filtersGroupSetTypeRefusals(FiltersGroup* g, filtersGroupType_t type);

FiltersRefusals* filtersEntrySetMatchRefusals(FiltersEntry* e, Match* m);
FiltersRefusals* filtersEntrySetActionRefusals(FiltersEntry* e, Action* a);

/** What is lost when an entry, or a group, is read from @p size bytes. */
FiltersRefusals* filtersEntryReadRefusals(const void* bytes, size_t size);
FiltersRefusals* filtersGroupReadRefusals(const void* bytes, size_t size);

/**
 * The group that is read from the bytes, which the caller frees with deleteFiltersGroup, and in
 * @p losses, unless it is null, the list that filtersGroupReadRefusals returns.
 */
FiltersGroup* newFiltersGroupFromBytes(const void* bytes, size_t size, FiltersRefusals** losses);

void deleteFiltersRefusals(FiltersRefusals* r);

uint32_t filtersRefusalsGetCount(FiltersRefusals* r);

/* --------------------------------------------------------------------- reasons, counted from 0 */

/**
 * The result code of an operation that refuses for this reason; FILTERS_ERR_INVALID for what only
 * reading loses.
 */
filtersErr_t filtersRefusalsGetCode(FiltersRefusals* r, uint32_t index);
filtersRefusalReason_t filtersRefusalsGetReason(FiltersRefusals* r, uint32_t index);
/** One line in English, without a newline. */
const char* filtersRefusalsGetSentence(FiltersRefusals* r, uint32_t index);

/** The entry that is refused, or that prevents a new stage or type of its group. */
bool filtersRefusalsGetEntry(FiltersRefusals* r, uint32_t index, filtersEntryId_t* place);
/** The part of the entry that is refused: at most one of these three. */
bool filtersRefusalsGetMatch(FiltersRefusals* r, uint32_t index, filtersMatch_t* place);
bool filtersRefusalsGetAction(FiltersRefusals* r, uint32_t index, filtersAction_t* place);
/** The number of a policer stage, as for filtersPolicerStageName. */
bool filtersRefusalsGetPolicerStage(FiltersRefusals* r, uint32_t index, uint32_t* place);
/** The group's stage and type, current or requested. */
bool filtersRefusalsGetStage(FiltersRefusals* r, uint32_t index, filtersGroupStage_t* place);
bool filtersRefusalsGetType(FiltersRefusals* r, uint32_t index, filtersGroupType_t* place);

uint64_t filtersRefusalsGetAdmittedMatches(FiltersRefusals* r, uint32_t index);
uint64_t filtersRefusalsGetAdmittedActions(FiltersRefusals* r, uint32_t index);
uint64_t filtersRefusalsGetAdmittedPolicerStages(FiltersRefusals* r, uint32_t index);
/** The stages that admit the type; if the stage is unknown, all stages that exist. */
uint64_t filtersRefusalsGetAdmittedStages(FiltersRefusals* r, uint32_t index);
/** The types that the stage admits; if the type is unknown, all types that exist. */
uint64_t filtersRefusalsGetAdmittedTypes(FiltersRefusals* r, uint32_t index);
/** The matches of the entry that exclude the refused one. */
uint64_t filtersRefusalsGetExcludingMatches(FiltersRefusals* r, uint32_t index);

/** Where in the bytes the reason is found, counted from 0, as far as that is known. */
bool filtersRefusalsGetOffset(FiltersRefusals* r, uint32_t index, uint64_t* place);
/** The part that has the field; entry, match and action say which part it is. */
bool filtersRefusalsGetPart(FiltersRefusals* r, uint32_t index, filtersPart_t* place);
/** The number of the field in the message of its part. */
bool filtersRefusalsGetField(FiltersRefusals* r, uint32_t index, uint32_t* place);
/**
 * The number that the bytes hold, or the length in bytes of an address, and what became of it. A
 * negative number, which only a counter may have, is the 64-bit number of the same bits.
 */
bool filtersRefusalsGetWas(FiltersRefusals* r, uint32_t index, uint64_t* place);
bool filtersRefusalsGetBecame(FiltersRefusals* r, uint32_t index, uint64_t* place);

#ifdef __cplusplus
} // extern "C"
} // namespace FiltersCommon
#endif

#pragma GCC visibility pop

#endif /* FILTER_COMMON_FILTER_REFUSALS_C_H */
