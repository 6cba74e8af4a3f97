#include "filter_groups.h"

#include "ordered_maps.h"

#include <algorithm>
#include <utility>

namespace FiltersCommon {

FiltersGroup::FiltersGroup(const FiltersGroup& other)
    : id_(other.id_), priority_(other.priority_), stage_(other.stage_), type_(other.type_),
      entries_(other.getEntries())
{}

FiltersGroup& FiltersGroup::operator=(const FiltersGroup& other)
{
    return *this = FiltersGroup(other);
}

filtersErr_t FiltersGroup::setStage(const filtersGroupStage_t& stage)
{
    filtersErr_t result = groupStageValidation(stage, type_);
    for (auto entry = entries_.begin(); result == FILTERS_OK && entry != entries_.end(); ++entry)
        result = stageAdmits(entry->second, stage);
    if (result == FILTERS_OK)
        stage_ = stage;
    return result;
}

filtersErr_t FiltersGroup::setType(const filtersGroupType_t& type)
{
    filtersErr_t result = groupStageValidation(stage_, type);
    for (auto entry = entries_.begin(); result == FILTERS_OK && entry != entries_.end(); ++entry)
        result = groupMatchValidation(entry->second, type);
    if (result == FILTERS_OK)
        type_ = type;
    return result;
}

filtersErr_t FiltersGroup::stageAdmits(const FiltersEntry& entry, filtersGroupStage_t stage) const
{
    const filtersErr_t result = groupActionValidation(entry, stage);
    return result == FILTERS_OK ? groupPolicerValidation(entry.getPolicer(), stage) : result;
}

filtersErr_t FiltersGroup::admits(const FiltersEntry& entry, filtersGroupStage_t stage,
                                  filtersGroupType_t type) const
{
    const filtersErr_t result = groupMatchValidation(entry, type);
    return result == FILTERS_OK ? stageAdmits(entry, stage) : result;
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

filtersErr_t FiltersGroup::removeEntry(const filtersEntryId_t& id)
{
    return entries_.erase(id) == 0 ? FILTERS_ERR_NOT_FOUND : FILTERS_OK;
}

FiltersGroup::EntryMap FiltersGroup::getEntries() const
{
    // Made in ascending order, unlike the copy of a map: who walks the copy walks the memory.
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
