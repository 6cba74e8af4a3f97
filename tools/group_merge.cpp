#include "group_merge.h"

#include "checks.h"
#include "problems.h"

#include <filter_refusals.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <utility>

namespace filterctl {

using namespace FiltersCommon;

namespace {

using Priority = std::uint64_t; // has room for what does not fit

constexpr Priority GREATEST_PRIORITY = std::numeric_limits<filtersEntryPriority_t>::max();
constexpr std::uint32_t GREATEST_ID = std::numeric_limits<filtersEntryId_t>::max();

struct Range {
    Priority least = std::numeric_limits<Priority>::max();
    Priority greatest = 0;

    void widen(const FiltersGroup& group)
    {
        for (const auto& [id, entry] : group.getEntriesRef()) {
            least = std::min<Priority>(least, entry.getPriority());
            greatest = std::max<Priority>(greatest, entry.getPriority());
        }
    }
    bool isEmpty() const { return least > greatest; }
};

/** By how much the upper range has to be shifted to be above the lower one. */
Priority shiftOf(const Range& upper, const Range& lower)
{
    if (upper.isEmpty() || lower.isEmpty() || upper.least > lower.greatest)
        return 0;
    return lower.greatest - upper.least + 1;
}

FiltersGroup emptyLike(const FiltersGroup& group)
{
    FiltersGroup empty = emptyGroup(group.getId(), group.getStage(), group.getType());
    empty.setPriority(group.getPriority());
    return empty;
}

class Merge {
public:
    Merge(std::vector<NamedGroup> groups, const MergeOptions& options)
        : groups_(std::move(groups)), options_(options), merged_(emptyLike(groups_.front().group))
    {}

    FiltersGroup merge()
    {
        findShifts();
        for (NamedGroup& each : groups_) {
            const bool isFirst = &each == &groups_.front();
            add(each, isFirst == (options_.shift == Shift::ABOVE) ? shift_ : 0);
        }
        return std::move(merged_);
    }

private:
    void findShifts()
    {
        Range first;
        Range others;
        for (const NamedGroup& each : groups_)
            (&each == &groups_.front() ? first : others).widen(each.group);
        if (options_.shift == Shift::NONE)
            return;
        const bool isAbove = options_.shift == Shift::ABOVE;
        const Range& upper = isAbove ? first : others;
        shift_ = shiftOf(upper, isAbove ? others : first);
        if (shift_ != 0 && upper.greatest + shift_ > GREATEST_PRIORITY)
            throw Refused(groups_[isAbove ? 0 : 1].name,
                          {{0, 0,
                            "the priorities would have to be shifted up to " +
                                std::to_string(upper.greatest + shift_) + ", and the greatest is " +
                                std::to_string(GREATEST_PRIORITY)}});
    }

    void add(NamedGroup& from, Priority shift)
    {
        std::vector<Problem> problems;
        std::size_t taken = 0;
        filtersEntryId_t firstTaken = 0;
        for (const auto& [id, original] : from.group.getEntriesRef()) {
            FiltersEntry entry(original);
            entry.setPriority(static_cast<filtersEntryPriority_t>(original.getPriority() + shift));
            if (options_.renumber) {
                if (nextId_ > GREATEST_ID)
                    throw Refused(from.name, {{0, 0, "a group holds at most 65536 entries"}});
                entry.setId(static_cast<filtersEntryId_t>(nextId_++));
            } else if (merged_.getEntriesRef().count(id) != 0) {
                firstTaken = taken++ == 0 ? id : firstTaken;
                continue;
            }
            if (merged_.takeEntry(std::move(entry)) != FILTERS_OK)
                for (const FiltersRefusal& refusal : insertEntryRefusals(merged_, original))
                    problems.push_back({0, 0, refusal.sentence()});
        }
        if (taken != 0)
            problems.push_back({0, 0, takenSentence(firstTaken, taken)});
        if (!problems.empty())
            throw Refused(from.name, std::move(problems));
    }

    static std::string takenSentence(filtersEntryId_t first, std::size_t count)
    {
        const std::string id = "identifier " + std::to_string(first);
        return (count == 1 ? id + " is" : id + " and " + std::to_string(count - 1) + " more are") +
               " taken by a file in front of this one; --renumber gives new ones";
    }

    std::vector<NamedGroup> groups_;
    const MergeOptions options_;
    FiltersGroup merged_;
    Priority shift_ = 0;
    std::uint32_t nextId_ = 0;
};

} // namespace

FiltersGroup mergeGroups(std::vector<NamedGroup> groups, const MergeOptions& options)
{
    return Merge(std::move(groups), options).merge();
}

} // namespace filterctl
