#include "filter_groups.h"

#include "group_checks.h"
#include "ordered_maps.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace FiltersCommon {

FiltersGroup::FiltersGroup(const FiltersGroup& other)
    : id_(other.id_), priority_(other.priority_), stage_(other.stage_), type_(other.type_),
      entries_(other.getEntries())
{}

// Here, where the compiler sees through the destructors of entries.
FiltersGroup::~FiltersGroup() = default;

FiltersGroup& FiltersGroup::operator=(const FiltersGroup& other)
{
    return *this = FiltersGroup(other);
}

filtersErr_t FiltersGroup::setStage(const filtersGroupStage_t& stage)
{
    const filtersErr_t result =
        firstRefusal([&](auto refuse) { checkStageChange(entries_, stage, type_, refuse); });
    if (result == FILTERS_OK)
        stage_ = stage;
    return result;
}

filtersErr_t FiltersGroup::setType(const filtersGroupType_t& type)
{
    const filtersErr_t result =
        firstRefusal([&](auto refuse) { checkTypeChange(entries_, stage_, type, refuse); });
    if (result == FILTERS_OK)
        type_ = type;
    return result;
}

filtersErr_t FiltersGroup::admits(const FiltersEntry& entry, filtersGroupStage_t stage,
                                  filtersGroupType_t type) const
{
    return firstRefusal([&](auto refuse) { checkInsertion(entry, stage, type, refuse); });
}

filtersErr_t FiltersGroup::insertEntry(const FiltersEntry& entry)
{
    const filtersErr_t result = admits(entry, stage_, type_);
    if (result == FILTERS_OK) {
        EntryMap copy;
        copy.emplace(entry.getId(), entry);
        moveNodes(entries_, copy);
    }
    return result;
}

filtersErr_t FiltersGroup::takeEntry(FiltersEntry&& entry)
{
    const filtersErr_t result = admits(entry, stage_, type_);
    if (result == FILTERS_OK) {
        const std::size_t before = entries_.size();
        const auto place =
            entries_.try_emplace(entries_.end(), entry.getId(), FiltersEntry::Taken(), entry);
        if (entries_.size() == before) // an entry had the identifier, and still has it
            place->second = std::move(entry);
        MatchToS tos;
        if (place->second.getMatch(tos) == FILTERS_OK) // may be a MatchDSCP, which no copy is
            place->second.setMatch(tos);
    }
    return result;
}

filtersErr_t FiltersGroup::removeEntry(const filtersEntryId_t& id)
{
    return entries_.erase(id) == 0 ? FILTERS_ERR_NOT_FOUND : FILTERS_OK;
}

FiltersGroup::EntryMap FiltersGroup::getEntries() const
{
    // Nodes are allocated in ascending order, unlike when a map is copied, so iterating over the
    // result goes through memory in order.
    EntryMap copies;
    for (const auto& [id, entry] : entries_)
        copies.emplace_hint(copies.end(), id, entry);
    return copies;
}

bool FiltersGroup::operator==(const FiltersGroup& other) const
{
    return id_ == other.id_ && priority_ == other.priority_ && stage_ == other.stage_ &&
           type_ == other.type_ && entries_.size() == other.entries_.size() &&
           std::equal(entries_.begin(), entries_.end(), other.entries_.begin(),
                      [](const auto& mine, const auto& theirs) {
                          return mine.first == theirs.first && mine.second == theirs.second;
                      });
}

} // namespace FiltersCommon
