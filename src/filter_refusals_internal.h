/**
 * Refusals of matches, actions and entries, whether from a caller, a map or a message.
 */
#ifndef FILTER_COMMON_SRC_FILTER_REFUSALS_INTERNAL_H
#define FILTER_COMMON_SRC_FILTER_REFUSALS_INTERNAL_H

#include "filter_refusals.h"

#include <vector>

namespace FiltersCommon {

/** The refusal of an element of the entry; if the kind itself is refused, lists all kinds. */
FiltersRefusal refusalOf(filtersEntryId_t entry, filtersMatch_t kind,
                         filtersRefusalReason_t reason);
FiltersRefusal refusalOf(filtersEntryId_t entry, filtersAction_t kind,
                         filtersRefusalReason_t reason);

/** Adds a refusal if a match of @p kind may not be combined with matches of the kinds @p held. */
void addExclusion(std::vector<FiltersRefusal>& refusals, filtersEntryId_t entry,
                  filtersMatch_t kind, CodeSet<filtersMatch_t> held);

/** Every reason why a group of this stage and type does not admit the entry. */
std::vector<FiltersRefusal> insertionRefusals(const FiltersEntry& entry, filtersGroupStage_t stage,
                                              filtersGroupType_t type);

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_FILTER_REFUSALS_INTERNAL_H
