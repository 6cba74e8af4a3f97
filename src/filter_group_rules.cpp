#include "filter_groups.h"

#include "group_rules.h"

#include <algorithm>
#include <cstddef>

namespace FiltersCommon {

// ----------------------------------------------------------------------------------------- tables

namespace {

/** A table as callers see it; the checks read the rows. */
template <class Key, class Code, std::size_t N>
std::map<Key, std::set<Code>> described(const RuleRow<Key, Code> (&table)[N])
{
    std::map<Key, std::set<Code>> description;
    for (const RuleRow<Key, Code>& row : table)
        description[row.key].insert(row.admitted.begin(), row.admitted.end());
    return description;
}

} // namespace

const std::map<filtersGroupType_t, std::set<filtersMatch_t>> FiltersGroup::TypeDescription_ =
    described(TYPE_MATCHES);
const std::map<filtersGroupStage_t, std::set<filtersGroupType_t>>
    FiltersGroup::StageTypesDescription_ = described(STAGE_TYPES);
const std::map<filtersGroupStage_t, std::set<filtersAction_t>>
    FiltersGroup::StageActionsDescription_ = described(STAGE_ACTIONS);

// ----------------------------------------------------------------------------------------- checks

namespace {

/** Whether a row admits the kind of every object of @p objects. */
template <class Key, class Code, class Map>
bool admitsAll(const RuleRow<Key, Code>& row, const Map& objects)
{
    return std::all_of(objects.begin(), objects.end(), [&](const auto& element) {
        return row.admitted.contains(element.second->getType());
    });
}

} // namespace

filtersErr_t FiltersGroup::groupMatchValidation(const FiltersEntry& entry,
                                                filtersGroupType_t type) const
{
    const auto* row = findRow(TYPE_MATCHES, type);
    if (row == nullptr)
        return FILTERS_ERR_INVALID;
    return admitsAll(*row, entry.getMatchesRef()) ? FILTERS_OK : FILTERS_ERR_MATCH_NOT_ALLOWED;
}

filtersErr_t FiltersGroup::groupActionValidation(const FiltersEntry& entry,
                                                 filtersGroupStage_t stage) const
{
    const auto* row = findRow(STAGE_ACTIONS, stage);
    if (row == nullptr)
        return FILTERS_ERR_UNKNOWN_STAGE;
    return admitsAll(*row, entry.getActionsRef()) ? FILTERS_OK : FILTERS_ERR_ACTION_NOT_ALLOWED;
}

filtersErr_t FiltersGroup::groupStageValidation(filtersGroupStage_t stage,
                                                filtersGroupType_t type) const
{
    const auto* row = findRow(STAGE_TYPES, stage);
    if (row == nullptr)
        return FILTERS_ERR_UNKNOWN_STAGE;
    return row->admitted.contains(type) ? FILTERS_OK : FILTERS_ERR_TYPE_NOT_ALLOWED;
}

filtersErr_t FiltersGroup::groupPolicerValidation(const policer::Policer& policer,
                                                  filtersGroupStage_t stage) const
{
    if (policer.GetStage() == policer::STAGE_NONE)
        return FILTERS_OK;
    const auto* row = findRow(STAGE_POLICERS, stage);
    if (row == nullptr)
        return FILTERS_ERR_UNKNOWN_STAGE;
    return policer.GetStage() == row->policerStage ? FILTERS_OK : FILTERS_ERR_POLICER_STAGE;
}

} // namespace FiltersCommon
