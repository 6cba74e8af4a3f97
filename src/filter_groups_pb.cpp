#include "filter_groups.h"

#include "filter_entries_wire.h"
#include "messages.h"
#include "ordered_maps.h"
#include "serialized_bytes.h"

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

    template <class Reader>
    static bool read(Reader& reader, FiltersGroup& group);
};

/**
 * Adds what @p reader reads to the group, but for the entries that the new stage and type do not
 * admit.
 * @return false, and nothing is changed, if the reader did not understand the bytes
 */
template <class Reader>
bool GroupWire::read(Reader& reader, FiltersGroup& group)
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
        if (EntryWire::read(element, entry) && group.admits(entry, stage, type) == FILTERS_OK) {
            auto node = fresh.extract(fresh.begin());
            node.key() = entry.getId();
            moveNode(admitted, std::move(node));
        }
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

namespace {

void readGroup(std::string_view bytes, FiltersGroup& group)
{
    readMessage<FiltersGroupPB>(bytes,
                                [&](auto& reader) { return GroupWire::read(reader, group); });
}

} // namespace

FiltersGroup::FiltersGroup(const std::string& bytes) : FiltersGroup(filtersGroupId_t{0})
{
    readGroup(bytes, *this);
}

FiltersGroup::FiltersGroup(FiltersSerialized& s) : FiltersGroup(filtersGroupId_t{0})
{
    readGroup(bytesOf(s), *this);
}

FiltersGroupPB FiltersGroup::convertToFiltersGroupPB() const
{
    FiltersGroupPB pb;
    MessageWriter<FiltersGroupPB> writer(&pb);
    GroupWire::write(writer, *this);
    return pb;
}

void FiltersGroup::convertFromFiltersGroupPB(const FiltersGroupPB* pb)
{
    MessageReader<FiltersGroupPB> reader(*pb);
    GroupWire::read(reader, *this);
}

void FiltersGroup::serialize(std::string* out) const
{
    serializeMessage(out, [this](ByteWriter& writer) { GroupWire::write(writer, *this); });
}

void FiltersGroup::serialize(FiltersSerialized* out) const { serializeInto(out, *this); }

} // namespace FiltersCommon
