#include "properties.h"
#include "target.h"

// A group is built from the input, and must match its message.

namespace FiltersCommon::fuzz {
namespace {

void checkAgainstMessage(const FiltersGroup& group, const std::string& bytes)
{
    FiltersGroupPB pb;
    static_cast<void>(pb.ParsePartialFromString(bytes));
    require(group.getId() == static_cast<filtersGroupId_t>(pb.id_()) &&
                group.getPriority() == static_cast<filtersGroupPriority_t>(pb.priority_()) &&
                group.getStage() == static_cast<filtersGroupStage_t>(pb.stage_()) &&
                group.getType() == static_cast<filtersGroupType_t>(pb.type_()),
            "the numbers of a group are read as they stand");

    FiltersGroup::EntryMap admitted;
    Refusals expected;
    for (const FiltersEntryPB& element : pb.entries_()) {
        FiltersEntry entry;
        entry.convertFromFiltersEntryPB(&element);
        if (refusalOf(entry, group.getStage(), group.getType()) == FILTERS_OK)
            admitted[entry.getId()] = FiltersEntry(entry);
        for (const Refusals& refusals :
             {leftOut(readEntryRefusals(element.SerializePartialAsString())),
              insertEntryRefusals(group, entry)})
            expected.insert(expected.end(), refusals.begin(), refusals.end());
    }
    require(admitted == group.getEntriesRef(), "a group holds the entries that the tables admit, "
                                               "the last of each identifier");
    Refusals losses;
    const FiltersGroup again = groupFromBytes(bytes, &losses);
    requireSame(again, group, "a group is the same if one asks for its losses");
    checkHonesty<FiltersGroupPB>(bytes, group, losses);
    require(leftOut(losses) == expected, "what reading leaves out is listed");
}

/** Reading a message into a group keeps what the message does not replace. */
void checkReadingTwice(const FiltersGroup& group)
{
    FiltersGroup twice(group);
    const FiltersGroupPB pb = group.convertToFiltersGroupPB();
    twice.convertFromFiltersGroupPB(&pb);
    requireSame(twice, group, "a group that reads its own message stays as it is");
}

} // namespace
} // namespace FiltersCommon::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace FiltersCommon;
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const FiltersGroup group(bytes);
    fuzz::checkGroup(group);
    fuzz::checkAgainstMessage(group, bytes);
    fuzz::checkReadingTwice(group);
    return 0;
}
