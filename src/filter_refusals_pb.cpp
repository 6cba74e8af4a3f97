#include "filter_refusals.h"

#include "wire/filter_groups_wire.h"
#include "wire/messages.h"
#include "wire/scan.h"

namespace FiltersCommon {

namespace {

/** Adds what the bytes say to the object. @return what is lost of it */
template <class Message, class Wire, class Object>
std::vector<FiltersRefusal> readHonestly(const std::string& bytes, Object& object)
{
    Losses losses;
    const Understanding understanding = readMessage<Message>(
        bytes, [&](auto& reader) { return Wire::read(reader, object); }, Reporting(losses));
    if (!understanding.direct)
        scan(SCHEMA_OF<Message>, bytes, understanding.toTheEnd, losses);
    return losses.take();
}

} // namespace

std::vector<FiltersRefusal> readEntryRefusals(const std::string& bytes)
{
    FiltersEntry entry;
    return readHonestly<FiltersEntryPB, EntryWire>(bytes, entry);
}

std::vector<FiltersRefusal> readGroupRefusals(const std::string& bytes)
{
    FiltersGroup group(0);
    return readHonestly<FiltersGroupPB, GroupWire>(bytes, group);
}

FiltersGroup groupFromBytes(const std::string& bytes, std::vector<FiltersRefusal>* losses)
{
    if (losses == nullptr)
        return FiltersGroup(bytes);
    FiltersGroup group(0);
    *losses = readHonestly<FiltersGroupPB, GroupWire>(bytes, group);
    return group;
}

} // namespace FiltersCommon
