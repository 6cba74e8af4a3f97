#include "filter_entries.h"

#include "filter_serialized_internal.h"
#include "wire/filter_entries_wire.h"
#include "wire/messages.h"

namespace FiltersCommon {

namespace {

void readEntry(std::string_view bytes, FiltersEntry& entry)
{
    readMessage<FiltersEntryPB>(bytes,
                                [&](auto& reader) { return EntryWire::read(reader, entry); });
}

} // namespace

FiltersEntry::FiltersEntry(const std::string& bytes) : FiltersEntry() { readEntry(bytes, *this); }

FiltersEntry::FiltersEntry(const FiltersSerialized& s) : FiltersEntry()
{
    readEntry(bytesOf(s), *this);
}

void FiltersEntry::convertToFiltersEntryPB(FiltersEntryPB* pb) const
{
    MessageWriter<FiltersEntryPB> writer(pb);
    EntryWire::write(writer, *this);
}

void FiltersEntry::convertFromFiltersEntryPB(const FiltersEntryPB* pb)
{
    MessageReader<FiltersEntryPB> reader(*pb);
    EntryWire::read(reader, *this);
}

void FiltersEntry::serialize(std::string* out) const
{
    serializeMessage(out, [this](ByteWriter& writer) { EntryWire::write(writer, *this); });
}

void FiltersEntry::serialize(FiltersSerialized* out) const { serializeInto(out, *this); }

} // namespace FiltersCommon
