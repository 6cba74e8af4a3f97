#include "losses.h"

#include "filter_refusals_internal.h"
#include "policers.h"

#include <algorithm>
#include <tuple>

namespace FiltersCommon {

std::vector<FiltersRefusal> Losses::take()
{
    std::sort(losses_.begin(), losses_.end(), [](const Placed& a, const Placed& b) {
        return std::tie(a.place, a.report) < std::tie(b.place, b.report);
    });
    std::vector<FiltersRefusal> refusals;
    refusals.reserve(losses_.size());
    for (const Placed& loss : losses_)
        refusals.push_back(loss.refusal);
    return refusals;
}

// ----------------------------------------------------------------------------------------- places

Losses::Mark Losses::begin(filtersPart_t part)
{
    const Mark mark = {part_, losses_.size()};
    part_ = part;
    return mark;
}

void Losses::end(Mark mark, filtersEntryId_t entry)
{
    part_ = mark.part;
    for (std::size_t i = mark.first; i < losses_.size(); ++i)
        losses_[i].refusal.entry = entry;
}

void Losses::end(Mark mark, filtersMatch_t kind)
{
    part_ = mark.part;
    for (std::size_t i = mark.first; i < losses_.size(); ++i)
        losses_[i].refusal.match = kind;
}

void Losses::end(Mark mark, filtersAction_t kind)
{
    part_ = mark.part;
    for (std::size_t i = mark.first; i < losses_.size(); ++i)
        losses_[i].refusal.action = kind;
}

// ----------------------------------------------------------------------------------------- losses

FiltersRefusal& Losses::addInField(filtersRefusalReason_t reason, std::uint32_t field)
{
    FiltersRefusal refusal(reason);
    refusal.part = part_;
    refusal.field = field;
    add(refusal);
    return losses_.back().refusal;
}

void Losses::addChange(filtersRefusalReason_t reason, std::uint32_t field, std::uint64_t was,
                       std::uint64_t became, std::optional<std::uint64_t> offset)
{
    FiltersRefusal& refusal = addInField(reason, field);
    refusal.was = was;
    refusal.became = became;
    refusal.offset = offset;
}

void Losses::addNotParsed(std::optional<std::uint64_t> offset)
{
    FiltersRefusal refusal(REFUSAL_NOT_PARSED);
    refusal.offset = offset;
    addAt(NOT_PARSED, refusal);
}

void Losses::addExcluded(filtersMatch_t kind, CodeSet<filtersMatch_t> read)
{
    std::vector<FiltersRefusal> refusals;
    addExclusion(refusals, {}, kind, read);
    for (const FiltersRefusal& refusal : refusals)
        add(refusal);
}

void Losses::addUnknown(filtersMatch_t kind)
{
    add(refusalOf({}, kind, REFUSAL_UNKNOWN_MATCH_KIND));
}

void Losses::addUnknown(filtersAction_t kind)
{
    add(refusalOf({}, kind, REFUSAL_UNKNOWN_ACTION_KIND));
}

void Losses::addOfPolicer(const FiltersEntry& entry, std::string_view bytes)
{
    // No bytes are a short way to say that there is no policer.
    const policer::Policer& policer = entry.getPolicer();
    if (bytes.empty() || isNoPolicer(bytes) || policer.Serialize() == bytes)
        return;
    FiltersRefusal refusal(samePolicer(policer, NoPolicer::get().policer)
                               ? REFUSAL_POLICER_NOT_PARSED
                               : REFUSAL_POLICER_CHANGED);
    refusal.entry = entry.getId();
    add(refusal);
}

void Losses::addNotAdmitted(const FiltersEntry& entry, filtersGroupStage_t stage,
                            filtersGroupType_t type)
{
    for (const FiltersRefusal& refusal : insertionRefusals(entry, stage, type))
        add(refusal);
}

} // namespace FiltersCommon
