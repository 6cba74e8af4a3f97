#include "properties.h"
#include "target.h"

// An entry is built from the input, and must match its message.

namespace FiltersCommon::fuzz {
namespace {

/** The same entry, put together from the message's elements one by one. */
struct PutTogether {
    explicit PutTogether(const FiltersEntryPB& pb) : entry(static_cast<filtersEntryId_t>(pb.id_()))
    {
        entry.setPriority(pb.priority_());
        entry.setPolicer(policer::Policer(pb.policer_()));
        entry.setCounter(Counter(pb.counter_()));
        for (const MatchPB& element : pb.matches_())
            leftOut += !add(element);
        for (const ActionPB& element : pb.actions_())
            leftOut += !add(element);
    }

    bool add(const MatchPB& pb)
    {
        return MatchKinds::dispatch(static_cast<filtersMatch_t>(pb.type_()), false, [&](auto kind) {
            ClassOf<decltype(kind)> match;
            match.convertFromMatchPB(&pb);
            return entry.setMatch(match) == FILTERS_OK;
        });
    }

    bool add(const ActionPB& pb)
    {
        const auto code = static_cast<filtersAction_t>(pb.type_());
        return ActionKinds::dispatch(code, false, [&](auto kind) {
            ClassOf<decltype(kind)> action;
            action.convertFromActionPB(&pb);
            return entry.setAction(action) == FILTERS_OK;
        });
    }

    FiltersEntry entry;
    std::size_t leftOut = 0;
};

void checkAgainstMessage(FiltersEntry entry, const std::string& bytes)
{
    FiltersEntryPB pb;
    static_cast<void>(pb.ParsePartialFromString(bytes));
    const PutTogether expected(pb);
    require(entry.getCounter() == Counter(pb.counter_()), "any counter is read as it stands");
    // A counter without a type cannot be set, but may be read, and may have an identifier.
    if (entry.getCounter().GetType() == COUNTER_TYPE_INVALID)
        entry.deleteCounter();
    requireSame(entry, expected.entry, "an entry is read as if it was put together by hand");

    const Refusals losses = readEntryRefusals(bytes);
    checkHonesty<FiltersEntryPB>(bytes, FiltersEntry(bytes), losses);
    require(leftOut(losses).size() == expected.leftOut, "what reading leaves out is listed");
}

} // namespace
} // namespace FiltersCommon::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace FiltersCommon;
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const FiltersEntry entry(bytes);
    fuzz::checkEntry(entry);
    fuzz::checkAgainstMessage(entry, bytes);
    return 0;
}
