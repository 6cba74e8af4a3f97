#include "filter_refusals.h"

#include "filter_refusals_internal.h"
#include "wire/filter_groups_wire.h"
#include "wire/messages.h"

#include <cstddef>
#include <limits>
#include <vector>

namespace FiltersCommon {

namespace {

/** Collects what reading leaves out, in the order of the bytes. */
class LeftOut {
public:
    /** For an element of an entry; may come before earlier entries are reported. */
    void operator()(std::size_t place, filtersEntryId_t id, filtersMatch_t kind,
                    filtersRefusalReason_t reason, const FiltersEntry::MatchMap& read)
    {
        std::vector<FiltersRefusal> refusals;
        if (reason == REFUSAL_IPV4_WITH_IPV6)
            addExclusion(refusals, id, kind, kindsOf(read));
        else
            refusals.push_back(refusalOf(id, kind, reason));
        add(ofElements_, place, refusals);
    }

    void operator()(std::size_t place, filtersEntryId_t id, filtersAction_t kind,
                    filtersRefusalReason_t reason, const FiltersEntry::MatchMap&)
    {
        add(ofElements_, place, {refusalOf(id, kind, reason)});
    }

    void operator()(std::size_t place, const FiltersEntry& entry, filtersGroupStage_t stage,
                    filtersGroupType_t type)
    {
        add(ofEntries_, place, insertionRefusals(entry, stage, type));
    }

    void clear()
    {
        ofElements_.clear();
        ofEntries_.clear();
    }

    std::vector<FiltersRefusal> take() const
    {
        std::vector<FiltersRefusal> refusals;
        auto element = ofElements_.begin();
        const auto addElementsUpTo = [&](std::size_t place) {
            for (; element != ofElements_.end() && element->place <= place; ++element)
                refusals.push_back(element->refusal);
        };
        for (const Placed& entry : ofEntries_) {
            addElementsUpTo(entry.place);
            refusals.push_back(entry.refusal);
        }
        addElementsUpTo(std::numeric_limits<std::size_t>::max());
        return refusals;
    }

private:
    struct Placed {
        std::size_t place; /**< of the entry, in the order of the bytes */
        FiltersRefusal refusal;
    };

    static void add(std::vector<Placed>& list, std::size_t place,
                    const std::vector<FiltersRefusal>& refusals)
    {
        for (const FiltersRefusal& refusal : refusals)
            list.push_back({place, refusal});
    }

    std::vector<Placed> ofElements_;
    std::vector<Placed> ofEntries_;
};

/** What @p read leaves out of the bytes; it is given a reader and a LeftOut to report to. */
template <class Message, class Read>
std::vector<FiltersRefusal> readingRefusals(const std::string& bytes, Read read)
{
    LeftOut leftOut;
    readMessage<Message>(bytes, [&](auto& reader) {
        leftOut.clear(); // drops reports of a reader that did not understand the bytes
        return read(reader, leftOut);
    });
    return leftOut.take();
}

} // namespace

std::vector<FiltersRefusal> readEntryRefusals(const std::string& bytes)
{
    return readingRefusals<FiltersEntryPB>(bytes, [](auto& reader, LeftOut& leftOut) {
        FiltersEntry entry;
        return EntryWire::read(reader, entry, [&](const auto&... what) { leftOut(0, what...); });
    });
}

std::vector<FiltersRefusal> readGroupRefusals(const std::string& bytes)
{
    return readingRefusals<FiltersGroupPB>(bytes, [](auto& reader, LeftOut& leftOut) {
        FiltersGroup group(0);
        return GroupWire::read(reader, group, [&](const auto&... what) { leftOut(what...); });
    });
}

} // namespace FiltersCommon
