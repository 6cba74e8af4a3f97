/**
 * How a group is written and read, by any writer or reader.
 */
#ifndef FILTER_COMMON_SRC_WIRE_FILTER_GROUPS_WIRE_H
#define FILTER_COMMON_SRC_WIRE_FILTER_GROUPS_WIRE_H

#include "filter_entries_wire.h"
#include "filter_groups.h"
#include "filter_groups_rows.h"
#include "ordered_maps.h"

#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>

namespace FiltersCommon {

/** Writes and reads groups, like EntryWire for entries. */
struct GroupWire {
    template <class Writer>
    static void write(Writer& writer, const FiltersGroup& group)
    {
        GroupRows::of(&group).write(writer, group);
        writer.elements(
            group_fields::entries_(), group.entries_,
            [](auto& element, const auto& entry) { EntryWire::write(element, entry.second); });
    }

    /**
     * Adds what @p reader reads to the group. Entries that the new stage and type do not admit are
     * left out, and so is what EntryWire leaves out of an entry; unless it is null, all of that is
     * reported to @p leftOut.
     * @return false, changing nothing, if the reader did not understand the bytes
     */
    template <class Reader>
    static bool read(Reader& reader, FiltersGroup& group, LeftOut* leftOut = nullptr)
    {
        FiltersGroup fresh(0);
        GroupRows::of(&fresh).read(reader, fresh);
        // All entries, also those that will not stay, until everything is known to be understood.
        std::vector<ReadEntry> waiting;
        std::size_t place = 0;
        reader.elements(group_fields::entries_(), [&](auto& element) {
            ReadEntry entry = readEntry(element, place, leftOut);
            if constexpr (Reader::MAY_GIVE_UP)
                waiting.push_back(std::move(entry));
            else
                admit(fresh, std::move(entry), place, leftOut);
            ++place;
        });
        if (!reader.understood())
            return false;
        for (place = 0; place < waiting.size(); ++place)
            admit(fresh, std::move(waiting[place]), place, leftOut);

        // From here on nothing can fail.
        moveNodes(group.entries_, fresh.entries_);
        fresh.entries_.swap(group.entries_);
        group = std::move(fresh);
        return true;
    }

private:
    /** An entry, still without its policer, in the map node that will be moved into the group. */
    struct ReadEntry {
        FiltersGroup::EntryMap::node_type node;
        std::string_view policer;
    };

    template <class Reader>
    static ReadEntry readEntry(Reader& reader, std::size_t place, LeftOut* leftOut)
    {
        FiltersGroup::EntryMap fresh;
        const std::string_view policer =
            EntryWire::readAllButPolicer(reader, fresh[0], {}, leftOut, place);
        return {fresh.extract(fresh.begin()), policer};
    }

    static void admit(FiltersGroup& group, ReadEntry read, std::size_t place, LeftOut* leftOut)
    {
        FiltersEntry& entry = read.node.mapped();
        EntryWire::setPolicer(entry, read.policer);
        if (group.admits(entry, group.stage_, group.type_) == FILTERS_OK) {
            read.node.key() = entry.getId();
            moveNode(group.entries_, std::move(read.node));
        } else if (leftOut != nullptr) {
            leftOut->entry(place, entry, group.stage_, group.type_);
        }
    }
};

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_WIRE_FILTER_GROUPS_WIRE_H
