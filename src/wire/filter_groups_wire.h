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
     * left out, and so is what EntryWire leaves out of an entry.
     * @return false, changing nothing, if the reader did not understand the bytes
     */
    template <class Reader>
    static bool read(Reader& reader, FiltersGroup& group)
    {
        FiltersGroup fresh(0);
        GroupRows::of(&fresh).read(reader, fresh);
        std::vector<ReadEntry> waiting;
        std::size_t place = 0;
        reader.elements(group_fields::entries_(), [&](auto& element) {
            ReadEntry entry = readEntry(element, place++);
            // A policer is made only when everything is known to be understood, and entries stay in
            // their order.
            if (Reader::MAY_GIVE_UP && !(waiting.empty() && isNoPolicer(entry.policer)))
                waiting.push_back(std::move(entry));
            else
                admit(reader, fresh, entry);
        });
        if (!reader.understood())
            return false;
        for (ReadEntry& entry : waiting)
            admit(reader, fresh, entry);

        // From here on nothing can fail.
        moveNodes(group.entries_, fresh.entries_);
        fresh.entries_.swap(group.entries_);
        group = std::move(fresh);
        return true;
    }

private:
    /** An entry, in the map node that will be moved into the group. */
    struct ReadEntry {
        FiltersGroup::EntryMap::node_type node;
        std::string_view policer; /**< the bytes of the policer that the entry does not have yet */
        std::size_t place;
    };

    template <class Reader>
    static ReadEntry readEntry(Reader& reader, std::size_t place)
    {
        FiltersGroup::EntryMap fresh;
        FiltersEntry& entry = fresh[0];
        EntryWire::Stages stages;
        report(reader, [&](Losses& losses) { losses.atEntry(place); });
        const std::string_view policer = EntryWire::readAllButPolicer(reader, entry, stages, {});
        EntryWire::take(entry, stages);
        return {fresh.extract(fresh.begin()), policer, place};
    }

    template <class Reader>
    static void admit(const Reader& reader, FiltersGroup& group, ReadEntry& read)
    {
        FiltersEntry& entry = read.node.mapped();
        report(reader, [&](Losses& losses) { losses.atAdmission(read.place); });
        EntryWire::setPolicer(reader, entry, read.policer);
        if (group.admits(entry, group.stage_, group.type_) == FILTERS_OK) {
            report(reader, [&](Losses& losses) { reportReplaced(losses, group.entries_, entry); });
            read.node.key() = entry.getId();
            moveNode(group.entries_, std::move(read.node));
        } else {
            report(reader, [&](Losses& losses) {
                losses.addNotAdmitted(entry, group.stage_, group.type_);
            });
        }
    }

    /** Reports the entry that @p entry is about to replace. */
    static void reportReplaced(Losses& losses, const FiltersGroup::EntryMap& entries,
                               const FiltersEntry& entry)
    {
        if (entries.empty() || entries.rbegin()->first < entry.getId())
            return;
        if (entries.count(entry.getId()) == 0)
            return;
        FiltersRefusal refusal(REFUSAL_ENTRY_REPLACED);
        refusal.entry = entry.getId();
        losses.add(refusal);
    }
};

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_WIRE_FILTER_GROUPS_WIRE_H
