/**
 * Refusals that explain themselves: all reasons why an operation on an entry or a group would
 * refuse, as data and as a sentence.
 *
 * For each operation that returns a code there is a function here that takes the same arguments,
 * changes nothing, and returns every reason for a refusal, in the order of the operation's checks.
 * If there are no reasons the operation would succeed; otherwise the first reason's code is the one
 * the operation would return.
 *
 * A problem that several checks run into, such as an unknown group stage, is reported once.
 *
 * If memory runs out, std::bad_alloc is thrown.
 */
#ifndef FILTER_COMMON_FILTER_REFUSALS_H
#define FILTER_COMMON_FILTER_REFUSALS_H

#include "filter_groups.h"
#include "filter_names.h"
#include "filter_refusal.h"

#include <string>
#include <type_traits>
#include <vector>

#pragma GCC visibility push(default)

namespace FiltersCommon {

// ----------------------------------------------------------------------------------------- groups

/** Why FiltersGroup::insertEntry refuses; every reason names the entry. */
std::vector<FiltersRefusal> insertEntryRefusals(const FiltersGroup& group,
                                                const FiltersEntry& entry);

/** Why FiltersGroup::setStage refuses. */
std::vector<FiltersRefusal> setStageRefusals(const FiltersGroup& group, filtersGroupStage_t stage);

/** Why FiltersGroup::setType refuses. */
std::vector<FiltersRefusal> setTypeRefusals(const FiltersGroup& group, filtersGroupType_t type);

// ---------------------------------------------------------------------------------------- entries

/** Why FiltersEntry::setMatch refuses. Accepts any class T; only the object's kind is read. */
template <class T>
std::vector<FiltersRefusal> setMatchRefusals(const FiltersEntry& entry, const T& match);

/** Why FiltersEntry::setAction refuses. Accepts any class T. */
template <class T>
std::vector<FiltersRefusal> setActionRefusals(const FiltersEntry& entry, const T& action);

/** Why FiltersEntry::isL3CompatibleMatch is false for a match of @p kind. */
std::vector<FiltersRefusal> l3Refusals(const FiltersEntry& entry, filtersMatch_t kind);

/**
 * Why FiltersEntry::copyMatches refuses. A refused match is skipped, and the checks go on.
 */
std::vector<FiltersRefusal> copyMatchesRefusals(const FiltersEntry& entry,
                                                const FiltersEntry::MatchMap& from);
std::vector<FiltersRefusal> copyActionsRefusals(const FiltersEntry& entry,
                                                const FiltersEntry::ActionMap& from);

/** Like copyMatchesRefusals, for FiltersEntry::setMatches. */
std::vector<FiltersRefusal> setMatchesRefusals(const FiltersEntry& entry,
                                               const FiltersEntry::MatchMap& from);
std::vector<FiltersRefusal> setActionsRefusals(const FiltersEntry& entry,
                                               const FiltersEntry::ActionMap& from);

// ---------------------------------------------------------------------------------------- reading

/*
 * The constructors from bytes accept any bytes and say nothing. These functions say everything in
 * which the object that is read differs from what the bytes say; if they return nothing, nothing
 * was lost: written again, the object says the same.
 *
 * These are no losses: any order; an optional number, truth or address that is missing and reads as
 * 0; empty bytes for no policer; a VLAN identifier that is given twice; a field that is there again
 * with the same value; and the zero that ends an envelope.
 */

/**
 * What reading an entry loses, in the order of its fields and elements: first that the bytes could
 * not be read to their end, then matches and actions that the entry does not hold, or holds with
 * other values than the bytes give, then what the parser skipped.
 */
std::vector<FiltersRefusal> readEntryRefusals(const std::string& bytes);

/**
 * What reading a group loses: first that the bytes could not be read to their end, then what
 * concerns the group itself, then for each entry, in the order of the bytes, what readEntryRefusals
 * would report, and every reason why the group does not admit the entry, or that it replaces
 * another.
 */
std::vector<FiltersRefusal> readGroupRefusals(const std::string& bytes);

/**
 * The group that FiltersGroup(bytes) is, and in @p losses, unless it is null, what
 * readGroupRefusals returns, from one reading of the bytes. What @p losses held is replaced.
 */
FiltersGroup groupFromBytes(const std::string& bytes, std::vector<FiltersRefusal>* losses);

// -------------------------------------------------------------------------------------- templates

template <class T>
std::vector<FiltersRefusal> setMatchRefusals(const FiltersEntry& entry,
                                             [[maybe_unused]] const T& match)
{
    std::vector<FiltersRefusal> refusals;
    if constexpr (!isMatchClass<T>) {
        FiltersRefusal& refusal = refusals.emplace_back(REFUSAL_UNKNOWN_MATCH_CLASS);
        refusal.entry = entry.getId();
        if constexpr (std::is_convertible_v<const T*, const Match*>)
            refusal.match = match.getType();
    }
    if constexpr (std::is_convertible_v<const std::remove_cv_t<T>*, const Match*>)
        for (const FiltersRefusal& refusal :
             l3Refusals(entry, const_cast<const std::remove_cv_t<T>&>(match).getType()))
            refusals.push_back(refusal);
    return refusals;
}

template <class T>
std::vector<FiltersRefusal> setActionRefusals([[maybe_unused]] const FiltersEntry& entry,
                                              [[maybe_unused]] const T& action)
{
    std::vector<FiltersRefusal> refusals;
    if constexpr (!isActionClass<T>) {
        FiltersRefusal& refusal = refusals.emplace_back(REFUSAL_UNKNOWN_ACTION_CLASS);
        refusal.entry = entry.getId();
        if constexpr (std::is_convertible_v<const T*, const Action*>)
            refusal.action = action.getType();
    }
    return refusals;
}

} // namespace FiltersCommon

#pragma GCC visibility pop

#endif // FILTER_COMMON_FILTER_REFUSALS_H
