#include "checks.h"

#include <filter_groups.pb.h>
#include <filter_refusals.h>

#include <algorithm>
#include <cstdint>

namespace filterctl {

using namespace FiltersCommon;

namespace {

/** A group without entries; it is read from a message, as that checks neither stage nor type. */
FiltersGroup groupAt(filtersGroupStage_t stage, filtersGroupType_t type)
{
    FiltersGroupPB message;
    message.set_stage_(static_cast<std::uint32_t>(stage));
    message.set_type_(static_cast<std::uint32_t>(type));
    FiltersGroup group(0);
    group.convertFromFiltersGroupPB(&message);
    return group;
}

/** Whether the refusal applies to every entry of the group. */
bool concernsGroup(const FiltersRefusal& refusal)
{
    return refusal.reason == REFUSAL_UNKNOWN_STAGE || refusal.reason == REFUSAL_UNKNOWN_TYPE;
}

/** What concerns the group as a whole. */
std::vector<Refusal> checkStageAndType(const FiltersGroup& group)
{
    // An empty entry is refused only for an unknown stage or an unknown type.
    std::vector<FiltersRefusal> unknown = insertEntryRefusals(group, FiltersEntry());
    if (unknown.empty())
        unknown = setTypeRefusals(group, group.getType());
    std::vector<Refusal> refusals;
    for (FiltersRefusal& refusal : unknown) {
        refusal.entry.reset();
        refusals.push_back({0, refusal.sentence()});
    }
    return refusals;
}

} // namespace

std::vector<Refusal> checkAccessList(std::string_view text, const ImportOptions& options)
{
    const FiltersGroup group = groupAt(options.stage, options.type);
    std::vector<Refusal> refusals = checkStageAndType(group);

    AccessList rules;
    const std::vector<Refusal> malformed = readAccessList(text, rules);
    refusals.insert(refusals.end(), malformed.begin(), malformed.end());

    std::uint64_t entries = 0;
    for (const AccessRule& rule : rules) {
        for (FiltersRefusal& refusal : insertEntryRefusals(group, firstEntry(rule, options)))
            if (!concernsGroup(refusal)) {
                refusal.entry.reset();
                refusals.push_back({rule.line, refusal.sentence()});
            }
        const bool fitted = entries <= MOST_ENTRIES;
        entries += countEntries(rule);
        if (fitted && entries > MOST_ENTRIES)
            refusals.push_back({rule.line, tooManyEntries()});
    }
    std::stable_sort(refusals.begin(), refusals.end(),
                     [](const Refusal& a, const Refusal& b) { return a.line < b.line; });
    return refusals;
}

std::vector<Refusal> checkGroup(const std::string& bytes, filtersGroupStage_t stage,
                                filtersGroupType_t type)
{
    std::vector<Refusal> refusals = checkStageAndType(groupAt(stage, type));
    for (const FiltersRefusal& refusal : readGroupRefusals(bytes))
        if (!concernsGroup(refusal))
            refusals.push_back({0, refusal.sentence()});
    return refusals;
}

} // namespace filterctl
