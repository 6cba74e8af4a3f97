/**
 * A C++ caller outside the tree: classes, templates, text, bytes and messages, and the two
 * neighbouring libraries. Classes of the library are recognised on both sides of its boundary.
 */
#include <filter_groups.h>
#include <filter_groups.pb.h>

#include <cstdlib>
#include <iostream>
#include <sstream>
#include <typeinfo>
#include <utility>

using namespace FiltersCommon;

namespace {

void require(bool condition, const char* what)
{
    if (!condition) {
        std::cerr << "caller.cpp: " << what << "\n";
        std::exit(EXIT_FAILURE);
    }
}

class OwnMatch : public MatchTTL {
public:
    OwnMatch() : MatchTTL(64) {}
};

template <class T>
std::string dump(const T& object)
{
    std::ostringstream out;
    out << object;
    return out.str();
}

} // namespace

int main()
{
    FiltersEntry entry(7);
    require(entry.setMatch(MatchTTL(64)) == FILTERS_OK, "a match is set");
    require(entry.setMatch(MatchSrcPort(limid_t{{0, 1, 0, 2}})) == FILTERS_OK, "a port is set");
    require(entry.setMatch(OwnMatch()) == FILTERS_ERR_INVALID, "a class of ours is refused");
    require(entry.setAction(ActionDeny()) == FILTERS_OK, "an action is set");
    entry.setPolicer(policer::Policer(3, policer::STAGE_NONE, policer::Mode(), {}));
    require(entry.setCounter(Counter(9, COUNTER_TYPE_OCTETS)) == FILTERS_OK, "a counter is set");

    // What the library made is of the classes that are known here, and the other way round.
    const FiltersEntry copy(entry);
    const Match& ttl = *copy.getMatchesRef().find(MATCH_TTL)->second;
    require(typeid(ttl) == typeid(MatchTTL), "typeid");
    require(dynamic_cast<const MatchTTL*>(&ttl) != nullptr, "dynamic_cast");
    require(FiltersEntry::validMatchTypes.count(
                static_cast<std::uint32_t>(typeid(MatchTTL).hash_code())) == 1,
            "the hash of a class");
    require(ttl == OwnMatch(), "an object of ours is compared");
    for (const auto& [kind, match] : copy.getMatchesRef())
        require(match->getType() == kind, "matches are visited");
    FiltersEntry::MatchMap ours;
    copy_map(ours, copy.getMatchesRef());
    require(ours.size() == 2, "matches are copied into a map of ours");
    FiltersEntry another(8);
    require(another.setMatches(ours) == FILTERS_OK && another.copyActionsFrom(copy) == FILTERS_OK,
            "an entry copies from a map of ours and from an entry");
    require(dump(ttl).find("64") != std::string::npos, "a match is printed");
    require(dump(copy.getCounter()).find("9") != std::string::npos, "a counter is printed");

    FiltersGroup group(1);
    group.setPriority(5);
    require(group.insertEntry(entry) == FILTERS_ERR_MATCH_NOT_ALLOWED, "type 0 admits no match");
    require(another.setMatches({}) == FILTERS_OK &&
                group.takeEntry(std::move(another)) == FILTERS_OK,
            "a group takes an entry over");
    require(another.getActionsRef().empty() && group.removeEntry(8) == FILTERS_OK,
            "an entry that was taken over");
    require(FiltersGroup::TypeDescription_.size() == 10, "the table of the types");
    try {
        FiltersSerialized none;
        none.copyData(std::string(3, 'x'));
        const FiltersGroup other(none);
        require(other.getEntriesRef().empty(), "bytes that are no group");
    } catch (const std::exception& error) {
        require(false, error.what());
    }

    // The message classes, written by the library and read here.
    std::string bytes;
    entry.serialize(&bytes);
    FiltersEntryPB message;
    require(message.ParseFromString(bytes), "bytes are a message");
    require(message.matches__size() == 2, "its matches");
    FiltersGroupPB groupMessage = group.convertToFiltersGroupPB();
    *groupMessage.add_entries_() = message;
    require(groupMessage.DebugString().find("ttl_: 64") != std::string::npos, "reflection");

    std::cout << dump(group);
    return EXIT_SUCCESS;
}
