#ifndef FILTER_COMMON_SRC_FILTER_GROUPS_WIRE_H
#define FILTER_COMMON_SRC_FILTER_GROUPS_WIRE_H

#include "filter_entries_wire.h"
#include "filter_groups.h"
#include "ordered_maps.h"

#include <utility>

namespace FiltersCommon {

/** A group as a writer writes it and a reader reads it, like EntryWire. */
struct GroupWire {
    template <class Writer>
    static void write(Writer& writer, const FiltersGroup& group)
    {
        writer.number(group_fields::id_(), group.id_);
        writer.number(group_fields::priority_(), group.priority_);
        writer.number(group_fields::stage_(), toNumber(group.stage_));
        writer.number(group_fields::type_(), toNumber(group.type_));
        writer.elements(
            group_fields::entries_(), group.entries_,
            [](auto& element, const auto& entry) { EntryWire::write(element, entry.second); });
    }

    template <class Reader, class LeaveOut = InSilence>
    static bool read(Reader& reader, FiltersGroup& group, LeaveOut leaveOut = LeaveOut());
};

/**
 * Adds what @p reader reads to the group. Entries that the new stage and type do not admit are left
 * out: @p leaveOut is given the entry, the stage and the type, and what EntryWire::read leaves out.
 * @return false, and nothing is changed, if the reader did not understand the bytes
 */
template <class Reader, class LeaveOut>
bool GroupWire::read(Reader& reader, FiltersGroup& group, LeaveOut leaveOut)
{
    const auto id = fromNumber<filtersGroupId_t>(reader.number(group_fields::id_()));
    const auto priority =
        fromNumber<filtersGroupPriority_t>(reader.number(group_fields::priority_()));
    const auto stage = fromNumber<filtersGroupStage_t>(reader.number(group_fields::stage_()));
    const auto type = fromNumber<filtersGroupType_t>(reader.number(group_fields::type_()));

    // Each entry is read into the node in which it will stand, and is not copied again.
    FiltersGroup::EntryMap admitted;
    reader.elements(group_fields::entries_(), [&](auto& element) {
        FiltersGroup::EntryMap fresh;
        FiltersEntry& entry = fresh[0];
        if (!EntryWire::read(element, entry, leaveOut))
            return;
        if (group.admits(entry, stage, type) != FILTERS_OK) {
            leaveOut(entry, stage, type);
            return;
        }
        auto node = fresh.extract(fresh.begin());
        node.key() = entry.getId();
        moveNode(admitted, std::move(node));
    });
    if (!reader.understood())
        return false;

    // From here on nothing can fail.
    group.id_ = id;
    group.priority_ = priority;
    group.stage_ = stage;
    group.type_ = type;
    moveNodes(group.entries_, admitted);
    return true;
}

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_FILTER_GROUPS_WIRE_H
