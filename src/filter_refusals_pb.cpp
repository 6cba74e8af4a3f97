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
class ReadingRefusals final : public LeftOut {
public:
    void match(std::size_t place, filtersEntryId_t entry, filtersMatch_t kind,
               filtersRefusalReason_t reason, CodeSet<filtersMatch_t> read) override
    {
        std::vector<FiltersRefusal> refusals;
        if (reason == REFUSAL_IPV4_WITH_IPV6)
            addExclusion(refusals, entry, kind, read);
        else
            refusals.push_back(refusalOf(entry, kind, reason));
        add(ofElements_, place, refusals);
    }

    void action(std::size_t place, filtersEntryId_t entry, filtersAction_t kind,
                filtersRefusalReason_t reason) override
    {
        add(ofElements_, place, {refusalOf(entry, kind, reason)});
    }

    void entry(std::size_t place, const FiltersEntry& entry, filtersGroupStage_t stage,
               filtersGroupType_t type) override
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

/** What is left out of the bytes when @p object is read from them. */
template <class Message, class Wire, class Object>
std::vector<FiltersRefusal> readingRefusals(const std::string& bytes, Object object)
{
    ReadingRefusals leftOut;
    readMessage<Message>(bytes, [&](auto& reader) {
        leftOut.clear(); // drops reports of a reader that did not understand the bytes
        return Wire::read(reader, object, &leftOut);
    });
    return leftOut.take();
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
