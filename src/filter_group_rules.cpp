#include "filter_groups.h"

#include "filter_group_rules.h"
#include "group_checks.h"

#include <cstddef>

namespace FiltersCommon {

// ----------------------------------------------------------------------------------------- tables

namespace {

/** A table in the form that callers see; the checks read the rows directly. */
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

filtersErr_t FiltersGroup::groupMatchValidation(const FiltersEntry& entry,
                                                filtersGroupType_t type) const
{
    return firstRefusal([&](auto refuse) { checkMatches(entry, type, refuse); });
}

filtersErr_t FiltersGroup::groupActionValidation(const FiltersEntry& entry,
                                                 filtersGroupStage_t stage) const
{
    return firstRefusal([&](auto refuse) { checkActions(entry, stage, refuse); });
}

filtersErr_t FiltersGroup::groupStageValidation(filtersGroupStage_t stage,
                                                filtersGroupType_t type) const
{
    return firstRefusal([&](auto refuse) { checkTypeAtStage(stage, type, refuse); });
}

filtersErr_t FiltersGroup::groupPolicerValidation(const policer::Policer& policer,
                                                  filtersGroupStage_t stage) const
{
    return firstRefusal([&](auto refuse) { checkPolicer(policer, stage, refuse); });
}

} // namespace FiltersCommon
