/**
 * Refusals of single matches and actions, wherever they come from: a caller, a map, a message.
 */
#ifndef FILTER_COMMON_SRC_ENTRY_REFUSALS_H
#define FILTER_COMMON_SRC_ENTRY_REFUSALS_H

#include "filter_refusals.h"

#include <vector>

namespace FiltersCommon {

/** The refusal of an element of the entry; one of the kind as such brings the kinds there are. */
FiltersRefusal refusalOf(filtersEntryId_t entry, filtersMatch_t kind,
                         filtersRefusalReason_t reason);
FiltersRefusal refusalOf(filtersEntryId_t entry, filtersAction_t kind,
                         filtersRefusalReason_t reason);

/** Adds the refusal of a match that may not stand beside those of the kinds @p held, if so. */
void addExclusion(std::vector<FiltersRefusal>& refusals, filtersEntryId_t entry,
                  filtersMatch_t kind, CodeSet<filtersMatch_t> held);

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_ENTRY_REFUSALS_H
