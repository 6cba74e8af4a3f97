#include "filter_groups.h"

#include "filter_serialized_internal.h"
#include "wire/filter_groups_wire.h"
#include "wire/messages.h"

namespace FiltersCommon {

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
