#include "operations_on_groups.h"
#include "target.h"

#include <array>
#include <cstddef>
#include <string_view>

// The input is a program: each step is an operation, with its arguments, on one of a few entries or
// groups. Each step must do its job and keep the invariants. At the end, all properties of all
// entries and groups are checked.

namespace FiltersCommon::fuzz {
namespace {

/** A longer program finds nothing that a short one cannot. */
constexpr int MOST_STEPS = 48;

class Program {
public:
    explicit Program(std::string_view bytes) : in_(bytes)
    {
        for (auto& entry : entries_)
            entry.reset(newFiltersEntry(in_.smallNumber<filtersEntryId_t>()));
        for (auto& group : groups_)
            group.reset(newFiltersGroup(in_.smallNumber<filtersGroupId_t>()));
    }

    void run()
    {
        for (int step = 0; step != MOST_STEPS && !in_.isEmpty(); ++step)
            (this->*STEPS[in_.below(STEPS.size())])();
        checkAll();
    }

private:
    using Step = void (Program::*)();

    test::Handle<FiltersEntry>& anyEntry() { return entries_[in_.below(entries_.size())]; }
    test::Handle<FiltersGroup>& anyGroup() { return groups_[in_.below(groups_.size())]; }

    template <void (*operation)(FiltersEntry&, ByteSource&)>
    void onEntry()
    {
        operation(*anyEntry(), in_);
    }

    template <void (*operation)(FiltersGroup&, ByteSource&)>
    void onGroup()
    {
        operation(*anyGroup(), in_);
    }

    void move()
    {
        FiltersEntry& entry = *anyEntry();
        moveFrom(entry, *anyEntry());
    }

    void takeObjects()
    {
        FiltersEntry& entry = *anyEntry();
        takeObjectsOf(entry, *anyEntry(), in_);
    }

    void readEntryMessage()
    {
        FiltersEntry& entry = *anyEntry();
        readMessage(entry, *anyEntry());
    }

    /** Replaces an entry by a copy, made through either interface or through the bytes. */
    void copyEntry()
    {
        auto& place = anyEntry();
        FiltersEntry& source = *anyEntry();
        switch (in_.below(3)) {
        case 0:
            place.reset(copyFiltersEntry(&source));
            break;
        case 1:
            place = test::Handle<FiltersEntry>(new FiltersEntry(source));
            break;
        default:
            place = test::Handle<FiltersEntry>(new FiltersEntry(serialized(source)));
        }
    }

    void insert()
    {
        FiltersGroup& group = *anyGroup();
        insertEntry(group, *anyEntry(), in_);
    }

    /** Most entries do not fit most groups. This makes one fit, except for its policer. */
    static void makeFit(FiltersEntry& entry, const FiltersGroup& group)
    {
        const auto& matches = FiltersGroup::TypeDescription_.at(group.getType());
        for (const filtersMatch_t kind : entry.getMatchesRef().kinds())
            if (matches.count(kind) == 0)
                entry.deleteMatch(kind);
        const auto& actions = FiltersGroup::StageActionsDescription_.at(group.getStage());
        for (const filtersAction_t kind : entry.getActionsRef().kinds())
            if (actions.count(kind) == 0)
                entry.deleteAction(kind);
    }

    void insertWhatFits()
    {
        FiltersGroup& group = *anyGroup();
        FiltersEntry entry(*anyEntry());
        makeFit(entry, group);
        entry.setId(in_.smallNumber<filtersEntryId_t>());
        insertEntry(group, entry, in_);
    }

    void take()
    {
        FiltersGroup& group = *anyGroup();
        FiltersEntry& entry = *anyEntry();
        if (in_.flip())
            makeFit(entry, group);
        takeEntry(group, entry);
    }

    void takeOut()
    {
        const FiltersGroup& group = *anyGroup();
        auto& place = anyEntry();
        if (!group.getEntriesRef().empty())
            place = test::Handle<FiltersEntry>(
                new FiltersEntry(group.getEntriesRef().rbegin()->second));
    }

    void assign()
    {
        FiltersGroup& group = *anyGroup();
        assignGroup(group, *anyGroup(), in_);
    }

    void rebuildGroup()
    {
        auto& place = anyGroup();
        FiltersSerialized envelope;
        place->serialize(&envelope);
        place = test::Handle<FiltersGroup>(new FiltersGroup(envelope));
    }

    void readGroupMessage()
    {
        const FiltersGroup& group = *anyGroup();
        readMessage(group, *anyGroup());
    }

    /** Checks all properties of each entry and group, and of each pair. */
    void checkAll()
    {
        for (const auto& a : entries_) {
            checkEntry(*a);
            for (const auto& b : entries_)
                checkPair(*a, *b);
        }
        for (const auto& a : groups_) {
            checkGroup(*a);
            for (const auto& b : groups_)
                checkPair(*a, *b);
        }
    }

    void newGroup()
    {
        const auto id = in_.number<filtersGroupId_t>();
        auto& place = anyGroup();
        place.reset(newFiltersGroup(id));
        require(filtersGroupGetId(place.get()) == id, "an identifier is kept");
        checkInvariants(*place);
    }

    // Add new steps at the end: the inputs in the corpus refer to steps by number.
    static constexpr std::array STEPS = {
        &Program::onEntry<setMatch>,
        &Program::onEntry<setAction>,
        &Program::onEntry<deleteMatch>,
        &Program::onEntry<deleteAction>,
        &Program::onEntry<setUnknownClass>,
        &Program::onEntry<takeMatches>,
        &Program::onEntry<takeActions>,
        &Program::onEntry<copyMaps>,
        &Program::onEntry<setMatchInC>,
        &Program::onEntry<setActionInC>,
        &Program::onEntry<deleteInC>,
        &Program::onEntry<setNumbers>,
        &Program::onEntry<setPolicer>,
        &Program::onEntry<setCounter>,
        &Program::move,
        &Program::readEntryMessage,
        &Program::copyEntry,
        &Program::insert,
        &Program::insertWhatFits,
        &Program::takeOut,
        &Program::onGroup<removeEntry>,
        &Program::onGroup<setStage>,
        &Program::onGroup<setType>,
        &Program::onGroup<setGroupPriority>,
        &Program::assign,
        &Program::rebuildGroup,
        &Program::readGroupMessage,
        &Program::newGroup,
        &Program::checkAll,
        &Program::onEntry<setWhatIsHeld>,
        &Program::takeObjects,
        &Program::take,
    };

    ByteSource in_;
    std::array<test::Handle<FiltersEntry>, 3> entries_;
    std::array<test::Handle<FiltersGroup>, 2> groups_;
};

} // namespace
} // namespace FiltersCommon::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    FiltersCommon::fuzz::Program({reinterpret_cast<const char*>(data), size}).run();
    return 0;
}
