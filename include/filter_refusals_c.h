/**
 * Refusals that explain themselves, for callers that cannot use the classes. C11 and C++17.
 *
 * Beside an operation stands a function of its name that ends in Refusals. It takes what the
 * operation takes, changes nothing, and makes a list of every reason for its refusal, in the order
 * in which the operation's checks run. An empty list means that the operation would succeed;
 * otherwise the code of reason 0 is the code that the operation returns.
 *
 *  1. Handles. A list belongs to the caller, who frees it with deleteFiltersRefusals. It holds
 *     copies: the group, the entry, the match or the action may change or be freed before it.
 *  2. Null handles. Every function reports one as a failed assertion ("g != nullptr",
 *     "g != nullptr && e != nullptr", "e != nullptr && m != nullptr", "e != nullptr && a !=
 *     nullptr", "r != nullptr") and ends the process, in release builds too. So do the getters for
 *     an index that is not below the count ("r != nullptr && index < count"), and for a null
 *     place ("place != nullptr").
 *  3. Presence. A getter with a place answers false, and leaves the place alone, where the reason
 *     does not concern what was asked for.
 *  4. Sets. What would have been admitted in the place of what is refused is a number of 64 bits:
 *     bit n, of the value UINT64_C(1) << n, is code n. It is 0 where the reason does not concern
 *     such codes, and where nothing is admitted. A set may be kept and compared with that of a
 *     later version: codes are never given a new meaning, but there may be more of them. A program
 *     ignores the bits that it does not know.
 *  5. Pointers. A sentence belongs to the list and is freed with it.
 *  6. Memory. No function returns null. If memory runs out std::bad_alloc is raised, which ends the
 *     process unless a C++ caller further up catches it; then nothing is changed and nothing lost.
 *  7. Threads. A list is used by one thread at a time; different lists by any.
 */
#ifndef FILTER_COMMON_FILTER_REFUSALS_C_H
#define FILTER_COMMON_FILTER_REFUSALS_C_H

#include "filter_entries_c.h"
#include "filter_groups_c.h"
#include "filter_names.h"
#include "filter_types.h"

#include <stdbool.h>
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
/** What filtersGroupSetStage itself keeps to itself. */
FiltersRefusals* filtersGroupSetStageRefusals(FiltersGroup* g, filtersGroupStage_t stage);
FiltersRefusals* filtersGroupSetTypeRefusals(FiltersGroup* g, filtersGroupType_t type);

FiltersRefusals* filtersEntrySetMatchRefusals(FiltersEntry* e, Match* m);
FiltersRefusals* filtersEntrySetActionRefusals(FiltersEntry* e, Action* a);

void deleteFiltersRefusals(FiltersRefusals* r);

uint32_t filtersRefusalsGetCount(FiltersRefusals* r);

/* ------------------------------------------------------------------------- reasons, from 0 on */

/** The result code of an operation that refuses for this reason. */
filtersErr_t filtersRefusalsGetCode(FiltersRefusals* r, uint32_t index);
filtersRefusalReason_t filtersRefusalsGetReason(FiltersRefusals* r, uint32_t index);
/** One line in English, without an end of line. */
const char* filtersRefusalsGetSentence(FiltersRefusals* r, uint32_t index);

/** The entry that is refused, or that is in the way of a new stage or type of its group. */
bool filtersRefusalsGetEntry(FiltersRefusals* r, uint32_t index, filtersEntryId_t* place);
/** What is refused of the entry: at most one of these three. */
bool filtersRefusalsGetMatch(FiltersRefusals* r, uint32_t index, filtersMatch_t* place);
bool filtersRefusalsGetAction(FiltersRefusals* r, uint32_t index, filtersAction_t* place);
/** The number of a stage as filtersPolicerStageName takes it. */
bool filtersRefusalsGetPolicerStage(FiltersRefusals* r, uint32_t index, uint32_t* place);
/** The stage and the type of the group, as they are or as they were asked for. */
bool filtersRefusalsGetStage(FiltersRefusals* r, uint32_t index, filtersGroupStage_t* place);
bool filtersRefusalsGetType(FiltersRefusals* r, uint32_t index, filtersGroupType_t* place);

uint64_t filtersRefusalsGetAdmittedMatches(FiltersRefusals* r, uint32_t index);
uint64_t filtersRefusalsGetAdmittedActions(FiltersRefusals* r, uint32_t index);
uint64_t filtersRefusalsGetAdmittedPolicerStages(FiltersRefusals* r, uint32_t index);
/** The stages that admit the type; of an unknown stage, those that there are. */
uint64_t filtersRefusalsGetAdmittedStages(FiltersRefusals* r, uint32_t index);
/** The types that the stage admits; of an unknown type, those that there are. */
uint64_t filtersRefusalsGetAdmittedTypes(FiltersRefusals* r, uint32_t index);
/** The matches of the entry that exclude the one that is refused. */
uint64_t filtersRefusalsGetExcludingMatches(FiltersRefusals* r, uint32_t index);

#ifdef __cplusplus
} // extern "C"
} // namespace FiltersCommon
#endif

#pragma GCC visibility pop

#endif /* FILTER_COMMON_FILTER_REFUSALS_C_H */
