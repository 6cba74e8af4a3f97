#include "filter_refusals.h"

#include "entry_additions.h"
#include "filter_refusals_internal.h"
#include "group_checks.h"
#include "kinds.h"

#include <algorithm>
#include <tuple>

namespace FiltersCommon {

bool FiltersRefusal::operator==(const FiltersRefusal& other) const
{
    const auto members = [](const FiltersRefusal& r) {
        return std::tie(r.reason, r.entry, r.match, r.action, r.policerStage, r.stage, r.type,
                        r.admittedMatches, r.admittedActions, r.admittedPolicerStages,
                        r.admittedStages, r.admittedTypes, r.excludingMatches, r.offset, r.part,
                        r.field, r.was, r.became);
    };
    return members(*this) == members(other);
}

// ----------------------------------------------------------------------------------------- groups

namespace {

/** Collects all refusals of a check, and adds the stage and type that were checked to each. */
class Listing {
public:
    Listing(filtersGroupStage_t stage, filtersGroupType_t type) : stage_(stage), type_(type) {}

    bool operator()(FiltersRefusal refusal)
    {
        refusal.stage = stage_;
        refusal.type = type_;
        if (!isSaid(refusal.reason))
            refusals_.push_back(refusal);
        return true;
    }

    std::vector<FiltersRefusal> take() { return std::move(refusals_); }

private:
    /** Whether an unknown stage or type, which every check reports again, is already listed. */
    bool isSaid(filtersRefusalReason_t reason) const
    {
        return (reason == REFUSAL_UNKNOWN_STAGE || reason == REFUSAL_UNKNOWN_TYPE) &&
               std::any_of(refusals_.begin(), refusals_.end(),
                           [reason](const FiltersRefusal& said) { return said.reason == reason; });
    }

    const filtersGroupStage_t stage_;
    const filtersGroupType_t type_;
    std::vector<FiltersRefusal> refusals_;
};

} // namespace

std::vector<FiltersRefusal> insertionRefusals(const FiltersEntry& entry, filtersGroupStage_t stage,
                                              filtersGroupType_t type)
{
    Listing listing(stage, type);
    checkInsertion(entry, stage, type, [&](FiltersRefusal refusal) {
        refusal.entry = entry.getId();
        return listing(refusal);
    });
    return listing.take();
}

std::vector<FiltersRefusal> insertEntryRefusals(const FiltersGroup& group,
                                                const FiltersEntry& entry)
{
    return insertionRefusals(entry, group.getStage(), group.getType());
}

std::vector<FiltersRefusal> setStageRefusals(const FiltersGroup& group, filtersGroupStage_t stage)
{
    Listing listing(stage, group.getType());
    checkStageChange(group.getEntriesRef(), stage, group.getType(), listing);
    return listing.take();
}

std::vector<FiltersRefusal> setTypeRefusals(const FiltersGroup& group, filtersGroupType_t type)
{
    Listing listing(group.getStage(), type);
    checkTypeChange(group.getEntriesRef(), group.getStage(), type, listing);
    return listing.take();
}

// ------------------------------------------------------------------------------- matches, actions

FiltersRefusal refusalOf(filtersEntryId_t entry, filtersMatch_t kind, filtersRefusalReason_t reason)
{
    FiltersRefusal refusal(reason);
    refusal.entry = entry;
    refusal.match = kind;
    if (reason == REFUSAL_UNKNOWN_MATCH_KIND || reason == REFUSAL_MATCH_NOT_IN_C)
        refusal.admittedMatches = MatchKinds::codes();
    return refusal;
}

FiltersRefusal refusalOf(filtersEntryId_t entry, filtersAction_t kind,
                         filtersRefusalReason_t reason)
{
    FiltersRefusal refusal(reason);
    refusal.entry = entry;
    refusal.action = kind;
    if (reason == REFUSAL_UNKNOWN_ACTION_KIND)
        refusal.admittedActions = ActionKinds::codes();
    return refusal;
}

void addExclusion(std::vector<FiltersRefusal>& refusals, filtersEntryId_t entry,
                  filtersMatch_t kind, CodeSet<filtersMatch_t> held)
{
    FiltersRefusal refusal = refusalOf(entry, kind, REFUSAL_IPV4_WITH_IPV6);
    refusal.admittedMatches = MatchKinds::codes();
    refusal.excludingMatches = excludedBy(kind) & held;
    for (const filtersMatch_t other : refusal.excludingMatches)
        refusal.admittedMatches = refusal.admittedMatches - excludedBy(other);
    if (!refusal.excludingMatches.empty())
        refusals.push_back(refusal);
}

// ---------------------------------------------------------------------------------------- entries

namespace {

/** The refusals of the matches in @p from if combined with matches of the kinds @p held. */
std::vector<FiltersRefusal> additionRefusals(const FiltersEntry& entry,
                                             const FiltersEntry::MatchMap& from,
                                             CodeSet<filtersMatch_t> held)
{
    std::vector<FiltersRefusal> refusals;
    joinEach<MatchKinds>(from, [&](auto kind, const Match& match) {
        const filtersMatch_t code = match.getType();
        const std::size_t before = refusals.size();
        addExclusion(refusals, entry.getId(), code, held);
        if (!isCopiedAs<ClassOf<decltype(kind)>>(match))
            refusals.push_back(refusalOf(entry.getId(), code, REFUSAL_MATCH_NOT_OF_ITS_KIND));
        if (refusals.size() == before)
            held.insert(code);
        return FILTERS_OK;
    });
    return refusals;
}

} // namespace

std::vector<FiltersRefusal> l3Refusals(const FiltersEntry& entry, filtersMatch_t kind)
{
    std::vector<FiltersRefusal> refusals;
    addExclusion(refusals, entry.getId(), kind, entry.getMatchesRef().kinds());
    return refusals;
}

std::vector<FiltersRefusal> copyMatchesRefusals(const FiltersEntry& entry,
                                                const FiltersEntry::MatchMap& from)
{
    return additionRefusals(entry, from, entry.getMatchesRef().kinds());
}

std::vector<FiltersRefusal> setMatchesRefusals(const FiltersEntry& entry,
                                               const FiltersEntry::MatchMap& from)
{
    return additionRefusals(entry, from, {});
}

std::vector<FiltersRefusal> copyActionsRefusals(const FiltersEntry& entry,
                                                const FiltersEntry::ActionMap& from)
{
    std::vector<FiltersRefusal> refusals;
    joinEach<ActionKinds>(from, [&](auto kind, const Action& action) {
        if (!isCopiedAs<ClassOf<decltype(kind)>>(action))
            refusals.push_back(
                refusalOf(entry.getId(), action.getType(), REFUSAL_ACTION_NOT_OF_ITS_KIND));
        return FILTERS_OK;
    });
    return refusals;
}

std::vector<FiltersRefusal> setActionsRefusals(const FiltersEntry& entry,
                                               const FiltersEntry::ActionMap& from)
{
    return copyActionsRefusals(entry, from);
}

} // namespace FiltersCommon
