#include "filter_refusals.h"

#include "entry_refusals.h"
#include "filter_groups_wire.h"
#include "messages.h"

#include <vector>

namespace FiltersCommon {

namespace {

/** Lists what reading leaves out. */
struct Listing {
    std::vector<FiltersRefusal>* refusals;

    void operator()(filtersEntryId_t id, filtersMatch_t kind, filtersRefusalReason_t reason,
                    const FiltersEntry::MatchMap& read) const
    {
        if (reason == REFUSAL_IPV4_WITH_IPV6)
            addExclusion(*refusals, id, kind, kindsOf(read));
        else
            refusals->push_back(refusalOf(id, kind, reason));
    }

    void operator()(filtersEntryId_t id, filtersAction_t kind, filtersRefusalReason_t reason,
                    const FiltersEntry::MatchMap&) const
    {
        refusals->push_back(refusalOf(id, kind, reason));
    }

    void operator()(const FiltersEntry& entry, filtersGroupStage_t stage,
                    filtersGroupType_t type) const
    {
        const auto reasons = insertionRefusals(entry, stage, type);
        refusals->insert(refusals->end(), reasons.begin(), reasons.end());
    }
};

/** Reads the bytes into @p object and lists what is left out. */
template <class Message, class Wire, class Object>
std::vector<FiltersRefusal> readingRefusals(const std::string& bytes, Object object)
{
    std::vector<FiltersRefusal> refusals;
    readMessage<Message>(bytes, [&](auto& reader) {
        refusals.clear(); // of a reader that did not understand the bytes
        return Wire::read(reader, object, Listing{&refusals});
    });
    return refusals;
}

} // namespace

std::vector<FiltersRefusal> readEntryRefusals(const std::string& bytes)
{
    return readingRefusals<FiltersEntryPB, EntryWire>(bytes, FiltersEntry());
}

std::vector<FiltersRefusal> readGroupRefusals(const std::string& bytes)
{
    return readingRefusals<FiltersGroupPB, GroupWire>(bytes, FiltersGroup(0));
}

} // namespace FiltersCommon
