/**
 * Reports of what reading leaves out.
 */
#ifndef FILTER_COMMON_SRC_WIRE_LEFT_OUT_H
#define FILTER_COMMON_SRC_WIRE_LEFT_OUT_H

#include "filter_code_set.h"
#include "filter_entries.h"

#include <cstddef>

namespace FiltersCommon {

/**
 * Is told what reading leaves out. The place is that of the entry in its group, counted from 0 in
 * the order of the bytes. Elements of an entry may be reported before earlier entries are.
 */
class LeftOut {
public:
    /** @p read are the kinds of the entry's matches that were read before. */
    virtual void match(std::size_t place, filtersEntryId_t entry, filtersMatch_t kind,
                       filtersRefusalReason_t reason, CodeSet<filtersMatch_t> read) = 0;
    virtual void action(std::size_t place, filtersEntryId_t entry, filtersAction_t kind,
                        filtersRefusalReason_t reason) = 0;
    /** A group of this stage and type does not admit the entry. */
    virtual void entry(std::size_t place, const FiltersEntry& entry, filtersGroupStage_t stage,
                       filtersGroupType_t type) = 0;

protected:
    ~LeftOut() = default;
};

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_WIRE_LEFT_OUT_H
