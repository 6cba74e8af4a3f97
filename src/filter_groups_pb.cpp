#include "filter_groups.h"

#include "messages.h"
#include "ordered_maps.h"
#include "serialized_bytes.h"

#include "filter_groups.pb.h"

namespace FiltersCommon {

FiltersGroup::FiltersGroup(const std::string& bytes) : FiltersGroup(filtersGroupId_t{0})
{
    parseMessage<FiltersGroupPB>(
        bytes, [this](const FiltersGroupPB* pb) { convertFromFiltersGroupPB(pb); });
}

FiltersGroup::FiltersGroup(FiltersSerialized& s) : FiltersGroup(bytesOf(s)) {}

void FiltersGroup::fillMessage(FiltersGroupPB* pb) const
{
    pb->set_id_(id_);
    pb->set_priority_(priority_);
    pb->set_stage_(static_cast<std::uint32_t>(stage_));
    pb->set_type_(static_cast<std::uint32_t>(type_));
    reserveMore(pb->mutable_entries_(), entries_.size());
    for (const auto& element : entries_)
        element.second.convertToFiltersEntryPB(pb->add_entries_());
}

FiltersGroupPB FiltersGroup::convertToFiltersGroupPB() const
{
    FiltersGroupPB pb;
    fillMessage(&pb);
    return pb;
}

void FiltersGroup::convertFromFiltersGroupPB(const FiltersGroupPB* pb)
{
    const auto stage = static_cast<filtersGroupStage_t>(pb->stage_());
    const auto type = static_cast<filtersGroupType_t>(pb->type_());

    // Each entry is read into the node in which it will stand, and is not copied again.
    EntryMap admitted;
    for (const FiltersEntryPB& element : pb->entries_()) {
        const auto id = static_cast<filtersEntryId_t>(element.id_());
        EntryMap read;
        FiltersEntry& entry = read[id];
        entry.convertFromFiltersEntryPB(&element);
        if (admits(entry, stage, type) == FILTERS_OK)
            moveNodes(admitted, read);
    }

    // From here on nothing can fail.
    id_ = static_cast<filtersGroupId_t>(pb->id_());
    priority_ = static_cast<filtersGroupPriority_t>(pb->priority_());
    stage_ = stage;
    type_ = type;
    moveNodes(entries_, admitted);
}

void FiltersGroup::serialize(std::string* out) const
{
    serializeMessage<FiltersGroupPB>(out, [this](FiltersGroupPB* pb) { fillMessage(pb); });
}

void FiltersGroup::serialize(FiltersSerialized* out) const { serializeInto(out, *this); }

} // namespace FiltersCommon
