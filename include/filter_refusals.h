/**
 * Refusals that explain themselves: all reasons why an operation on an entry or a group would
 * refuse, as data and as a sentence.
 *
 * Beside an operation that answers with a code stands a function here that takes what the operation
 * takes, changes nothing, and answers every reason for its refusal, in the order in which the
 * operation's checks run. No reasons mean that the operation would succeed; otherwise the first
 * reason's code is the code that the operation returns.
 *
 * A fact that all checks of a walk meet again, such as an unknown group stage, is one reason.
 *
 * When memory runs out std::bad_alloc is raised.
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

/** Why FiltersEntry::setMatch refuses. Any class T is taken; of an object only the kind is read. */
template <class T>
std::vector<FiltersRefusal> setMatchRefusals(const FiltersEntry& entry, const T& match);

/** Why FiltersEntry::setAction refuses. Any class T is taken. */
template <class T>
std::vector<FiltersRefusal> setActionRefusals(const FiltersEntry& entry, const T& action);

/** Why FiltersEntry::isL3CompatibleMatch is false for a match of @p kind. */
std::vector<FiltersRefusal> l3Refusals(const FiltersEntry& entry, filtersMatch_t kind);

/**
 * Why FiltersEntry::copyMatches refuses. The walk goes on behind a match that is refused, as if it
 * were not there.
 */
std::vector<FiltersRefusal> copyMatchesRefusals(const FiltersEntry& entry,
                                                const FiltersEntry::MatchMap& from);
std::vector<FiltersRefusal> copyActionsRefusals(const FiltersEntry& entry,
                                                const FiltersEntry::ActionMap& from);

/** As copyMatchesRefusals, for FiltersEntry::setMatches. */
std::vector<FiltersRefusal> setMatchesRefusals(const FiltersEntry& entry,
                                               const FiltersEntry::MatchMap& from);
std::vector<FiltersRefusal> setActionsRefusals(const FiltersEntry& entry,
                                               const FiltersEntry::ActionMap& from);

// ---------------------------------------------------------------------------------------- reading

/**
 * What the constructor of FiltersEntry leaves out of the bytes, in their order: matches and actions
 * of unknown kinds, and matches that the ones before them exclude. An element that a later one of
 * its kind replaces is not left out.
 */
std::vector<FiltersRefusal> readEntryRefusals(const std::string& bytes);

/**
 * What the constructor of FiltersGroup leaves out of the bytes, in their order: of each entry what
 * readEntryRefusals names, and then, if the group does not take the entry, every reason why. An
 * entry that a later one of its identifier replaces is not left out.
 */
std::vector<FiltersRefusal> readGroupRefusals(const std::string& bytes);

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
    if constexpr (std::is_convertible_v<const T*, const Match*>)
        for (const FiltersRefusal& refusal : l3Refusals(entry, match.getType()))
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
