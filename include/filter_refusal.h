/**
 * One reason why something is refused: FiltersRefusal. Callers include filter_refusals.h.
 */
#ifndef FILTER_COMMON_FILTER_REFUSAL_H
#define FILTER_COMMON_FILTER_REFUSAL_H

#include "filter_code_set.h"
#include "filter_types.h"

#include <policer_common.h>

#include <cstdint>
#include <optional>
#include <string>

#pragma GCC visibility push(default)

namespace FiltersCommon {

/**
 * Why an element, an entry, a group stage or a group type is refused, or what is lost when bytes
 * are read. Members that do not apply to the reason are absent, or empty sets.
 */
struct FiltersRefusal {
    explicit constexpr FiltersRefusal(filtersRefusalReason_t why) : reason(why) {}

    /**
     * The result code of an operation that refuses for this reason; FILTERS_ERR_INVALID for what
     * only reading loses.
     */
    constexpr filtersErr_t code() const;

    /**
     * One line in English, without a newline. Codes appear as the names of their enumerators,
     * unknown codes as numbers.
     */
    std::string sentence() const;

    bool operator==(const FiltersRefusal& other) const;
    bool operator!=(const FiltersRefusal& other) const { return !(*this == other); }

    filtersRefusalReason_t reason;

    /** The entry that is refused, or that prevents a new stage or type of its group. */
    std::optional<filtersEntryId_t> entry;
    /** The part of the entry that is refused: at most one of these. */
    std::optional<filtersMatch_t> match;
    std::optional<filtersAction_t> action;
    std::optional<policer::Stage> policerStage;

    /** The group's stage and type, current or requested. */
    std::optional<filtersGroupStage_t> stage;
    std::optional<filtersGroupType_t> type;

    /** What would have been admitted instead. */
    CodeSet<filtersMatch_t> admittedMatches;
    CodeSet<filtersAction_t> admittedActions;
    CodeSet<policer::Stage> admittedPolicerStages;
    /** The stages that admit the type; if the stage is unknown, all stages that exist. */
    CodeSet<filtersGroupStage_t> admittedStages;
    /** The types that the stage admits; if the type is unknown, all types that exist. */
    CodeSet<filtersGroupType_t> admittedTypes;

    /** The matches that exclude the refused one. */
    CodeSet<filtersMatch_t> excludingMatches;

    /** Where in the bytes the reason is found, counted from 0, as far as that is known. */
    std::optional<std::uint64_t> offset;
    /** The part that has the field; entry, match and action say which part it is. */
    std::optional<filtersPart_t> part;
    /** The number of the field in the message of its part. */
    std::optional<std::uint32_t> field;
    /**
     * The number that the bytes hold, or the length in bytes of an address, and what became of it.
     * A negative number, which only a counter may have, is the 64-bit number of the same bits.
     */
    std::optional<std::uint64_t> was;
    std::optional<std::uint64_t> became;
};

constexpr filtersErr_t FiltersRefusal::code() const
{
    switch (reason) {
    case REFUSAL_MATCH_NOT_IN_TYPE:
        return FILTERS_ERR_MATCH_NOT_ALLOWED;
    case REFUSAL_UNKNOWN_STAGE:
        return FILTERS_ERR_UNKNOWN_STAGE;
    case REFUSAL_ACTION_NOT_AT_STAGE:
        return FILTERS_ERR_ACTION_NOT_ALLOWED;
    case REFUSAL_POLICER_NOT_AT_STAGE:
        return FILTERS_ERR_POLICER_STAGE;
    case REFUSAL_TYPE_NOT_AT_STAGE:
        return FILTERS_ERR_TYPE_NOT_ALLOWED;
    case REFUSAL_UNKNOWN_TYPE:
    case REFUSAL_UNKNOWN_MATCH_CLASS:
    case REFUSAL_UNKNOWN_ACTION_CLASS:
    case REFUSAL_IPV4_WITH_IPV6:
    case REFUSAL_MATCH_NOT_OF_ITS_KIND:
    case REFUSAL_ACTION_NOT_OF_ITS_KIND:
    case REFUSAL_UNKNOWN_MATCH_KIND:
    case REFUSAL_UNKNOWN_ACTION_KIND:
    case REFUSAL_MATCH_NOT_IN_C:
    case REFUSAL_NOT_PARSED:
    case REFUSAL_FIELD_MISSING:
    case REFUSAL_FIELD_UNKNOWN:
    case REFUSAL_FIELD_REPLACED:
    case REFUSAL_FIELD_NOT_OF_KIND:
    case REFUSAL_NUMBER_CUT:
    case REFUSAL_LENGTH_CHANGED:
    case REFUSAL_MATCH_REPLACED:
    case REFUSAL_ACTION_REPLACED:
    case REFUSAL_ENTRY_REPLACED:
    case REFUSAL_POLICER_NOT_PARSED:
    case REFUSAL_POLICER_CHANGED:
        break;
    }
    return FILTERS_ERR_INVALID;
}

} // namespace FiltersCommon

#pragma GCC visibility pop

#endif // FILTER_COMMON_FILTER_REFUSAL_H
