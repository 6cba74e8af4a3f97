/**
 * The checks of groups, in the order in which they run.
 *
 * A check passes every refusal to its last argument, a callable that returns whether the check
 * should go on; the check of a single rule returns the same. An operation stops at the first
 * refusal and keeps only its code; an explanation runs to the end and adds the stage and type that
 * were checked.
 */
#ifndef FILTER_COMMON_SRC_GROUP_CHECKS_H
#define FILTER_COMMON_SRC_GROUP_CHECKS_H

#include "filter_group_rules.h"
#include "filter_groups.h"
#include "filter_refusal.h"

namespace FiltersCommon {

/** The code of the first refusal that @p check reports to its argument; allocates nothing. */
template <class Check>
filtersErr_t firstRefusal(Check check)
{
    filtersErr_t code = FILTERS_OK;
    check([&code](const FiltersRefusal& refusal) {
        code = refusal.code();
        return false;
    });
    return code;
}

// --------------------------------------------------------------------- refusals of a whole group

constexpr FiltersRefusal unknownType()
{
    FiltersRefusal refusal(REFUSAL_UNKNOWN_TYPE);
    refusal.admittedTypes = keysOf(TYPE_MATCHES);
    return refusal;
}

constexpr FiltersRefusal unknownStage()
{
    FiltersRefusal refusal(REFUSAL_UNKNOWN_STAGE);
    refusal.admittedStages = keysOf(STAGE_TYPES);
    return refusal;
}

/** The stages that admit @p type. */
constexpr CodeSet<filtersGroupStage_t> stagesOf(filtersGroupType_t type)
{
    CodeSet<filtersGroupStage_t> stages;
    for (const auto& row : STAGE_TYPES)
        if (row.admitted.contains(type))
            stages.insert(row.key);
    return stages;
}

// ------------------------------------------------------------------------------------ single rules

template <class Refuse>
bool checkMatches(const FiltersEntry& entry, filtersGroupType_t type, Refuse&& refuse)
{
    const auto* row = findRow(TYPE_MATCHES, type);
    if (row == nullptr)
        return refuse(unknownType());
    for (const filtersMatch_t kind : entry.getMatchesRef().kinds() - row->admitted) {
        FiltersRefusal refusal(REFUSAL_MATCH_NOT_IN_TYPE);
        refusal.entry = entry.getId();
        refusal.match = kind;
        refusal.admittedMatches = row->admitted;
        if (!refuse(refusal))
            return false;
    }
    return true;
}

template <class Refuse>
bool checkActions(const FiltersEntry& entry, filtersGroupStage_t stage, Refuse&& refuse)
{
    const auto* row = findRow(STAGE_ACTIONS, stage);
    if (row == nullptr)
        return refuse(unknownStage());
    for (const filtersAction_t kind : entry.getActionsRef().kinds() - row->admitted) {
        FiltersRefusal refusal(REFUSAL_ACTION_NOT_AT_STAGE);
        refusal.entry = entry.getId();
        refusal.action = kind;
        refusal.admittedActions = row->admitted;
        if (!refuse(refusal))
            return false;
    }
    return true;
}

template <class Refuse>
bool checkPolicer(const policer::Policer& policer, filtersGroupStage_t stage, Refuse&& refuse)
{
    if (policer.GetStage() == policer::STAGE_NONE)
        return true;
    const auto* row = findRow(STAGE_POLICERS, stage);
    if (row == nullptr)
        return refuse(unknownStage());
    if (policer.GetStage() == row->policerStage)
        return true;
    FiltersRefusal refusal(REFUSAL_POLICER_NOT_AT_STAGE);
    refusal.policerStage = policer.GetStage();
    refusal.admittedPolicerStages = {row->policerStage, policer::STAGE_NONE};
    return refuse(refusal);
}

template <class Refuse>
bool checkTypeAtStage(filtersGroupStage_t stage, filtersGroupType_t type, Refuse&& refuse)
{
    const auto* row = findRow(STAGE_TYPES, stage);
    if (row == nullptr)
        return refuse(unknownStage());
    if (row->admitted.contains(type))
        return true;
    FiltersRefusal refusal(REFUSAL_TYPE_NOT_AT_STAGE);
    refusal.admittedStages = stagesOf(type);
    refusal.admittedTypes = row->admitted;
    return refuse(refusal);
}

// ------------------------------------------------------------------------------ whole operations

/** Checks an entry against the stage. */
template <class Refuse>
bool checkEntryAtStage(const FiltersEntry& entry, filtersGroupStage_t stage, Refuse&& refuse)
{
    return checkActions(entry, stage, refuse) &&
           checkPolicer(entry.getPolicer(), stage, [&](FiltersRefusal refusal) {
               refusal.entry = entry.getId();
               return refuse(refusal);
           });
}

template <class Refuse>
void checkInsertion(const FiltersEntry& entry, filtersGroupStage_t stage, filtersGroupType_t type,
                    Refuse&& refuse)
{
    if (checkMatches(entry, type, refuse))
        checkEntryAtStage(entry, stage, refuse);
}

/** Checks whether a group of @p type that holds the entries @p held may change to @p stage. */
template <class Refuse>
void checkStageChange(const FiltersGroup::EntryMap& held, filtersGroupStage_t stage,
                      filtersGroupType_t type, Refuse&& refuse)
{
    bool goesOn = checkTypeAtStage(stage, type, refuse);
    for (auto entry = held.begin(); goesOn && entry != held.end(); ++entry)
        goesOn = checkEntryAtStage(entry->second, stage, refuse);
}

/** Checks whether a group at @p stage that holds the entries @p held may change to @p type. */
template <class Refuse>
void checkTypeChange(const FiltersGroup::EntryMap& held, filtersGroupStage_t stage,
                     filtersGroupType_t type, Refuse&& refuse)
{
    bool goesOn = checkTypeAtStage(stage, type, refuse);
    for (auto entry = held.begin(); goesOn && entry != held.end(); ++entry)
        goesOn = checkMatches(entry->second, type, refuse);
}

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_GROUP_CHECKS_H
