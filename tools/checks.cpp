#include "checks.h"

#include <filter_groups.pb.h>
#include <filter_refusals.h>

#include <cstdint>

namespace filterctl {

using namespace FiltersCommon;

namespace {

/** Whether the refusal applies to every entry of the group. */
bool concernsGroup(const FiltersRefusal& refusal)
{
    return refusal.reason == REFUSAL_UNKNOWN_STAGE || refusal.reason == REFUSAL_UNKNOWN_TYPE;
}

} // namespace

FiltersGroup emptyGroup(filtersGroupId_t id, filtersGroupStage_t stage, filtersGroupType_t type)
{
    FiltersGroupPB message; // reading it checks neither stage nor type
    message.set_id_(id);
    message.set_stage_(static_cast<std::uint32_t>(stage));
    message.set_type_(static_cast<std::uint32_t>(type));
    FiltersGroup group(0);
    group.convertFromFiltersGroupPB(&message);
    return group;
}

std::vector<Problem> checkPlace(filtersGroupStage_t stage, filtersGroupType_t type)
{
    const FiltersGroup group = emptyGroup(0, stage, type);
    // An empty entry is refused only for an unknown stage or an unknown type.
    std::vector<FiltersRefusal> refusals = insertEntryRefusals(group, FiltersEntry());
    if (refusals.empty())
        refusals = setTypeRefusals(group, type);
    std::vector<Problem> problems;
    for (FiltersRefusal& refusal : refusals) {
        refusal.entry.reset();
        problems.push_back({0, 0, refusal.sentence()});
    }
    return problems;
}

std::vector<Problem> checkGroupAt(const FiltersGroup& group, filtersGroupStage_t stage,
                                  filtersGroupType_t type)
{
    std::vector<Problem> problems = checkPlace(stage, type);
    const FiltersGroup place = emptyGroup(0, stage, type);
    for (const auto& [id, entry] : group.getEntriesRef())
        for (const FiltersRefusal& refusal : insertEntryRefusals(place, entry))
            if (!concernsGroup(refusal))
                problems.push_back({0, 0, refusal.sentence()});
    return problems;
}

} // namespace filterctl
