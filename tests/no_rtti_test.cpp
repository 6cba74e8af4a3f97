// A caller that is compiled without type information. It may use every class, as the library asks
// for the type of an object: the virtual tables and the type information have to be the library's.

#include "filter_description.h"
#include "filter_groups.h"

#include <cstdio>
#include <cstdlib>
#include <initializer_list>
#include <memory>
#include <sstream>

using namespace FiltersCommon;

namespace {

void require(bool condition, const char* what)
{
    if (condition)
        return;
    std::fprintf(stderr, "no_rtti_test: does not hold: %s\n", what);
    std::exit(1);
}

template <class Base>
bool areEqual(const Base& a, const Base& b)
{
    return a == b;
}

using Copy = filtersErr_t (*)(FiltersEntry& to, const FiltersEntry& from);

/** All that the library does with an object of a kind. */
template <class Class, class Base, class Set>
void use(Set set, std::initializer_list<Copy> waysToCopy)
{
    const Class object;
    const std::unique_ptr<Base> onHeap = std::make_unique<Class>(object);
    require(areEqual<Base>(object, *onHeap), "an object equals its copy");
    static_cast<void>(describe(static_cast<const Base&>(object)));
    std::ostringstream dump;
    dump << static_cast<const Base&>(object);
    require(!dump.str().empty(), "an object is dumped");

    FiltersEntry entry(1);
    require(set(entry, object) == FILTERS_OK, "an entry takes an object");
    const FiltersEntry other(entry);
    require(other == entry, "an entry equals its copy");
    for (const Copy copy : waysToCopy) {
        FiltersEntry copied(1);
        require(copy(copied, entry) == FILTERS_OK && copied == other, "objects are copied");
    }
    std::string bytes;
    entry.serialize(&bytes);
    require(FiltersEntry(bytes) == entry, "an entry is read from its bytes");
    FiltersGroup group(7);
    group.insertEntry(entry);
    static_cast<void>(FiltersGroup(group) == group);
}

template <class Class>
void useMatch()
{
    use<Class, Match>(
        [](FiltersEntry& entry, const Class& match) {
            Class read;
            const filtersErr_t result = entry.setMatch(match);
            require(entry.getMatch(read) == result, "a match is read");
            const Match* found = entry.findMatch<Class>();
            require(found != nullptr, "a match is found");
            require(entry.getMatchesRef().begin()->second == found, "a match is visited");
            return result;
        },
        {[](FiltersEntry& to, const FiltersEntry& from) { return to.copyMatchesFrom(from); },
         [](FiltersEntry& to, const FiltersEntry& from) {
             FiltersEntry::MatchMap map;
             copy_map(map, from.getMatchesRef());
             return to.copyMatches(map);
         }});
}

template <class Class>
void useAction()
{
    use<Class, Action>(
        [](FiltersEntry& entry, const Class& action) {
            Class read;
            const filtersErr_t result = entry.setAction(action);
            require(entry.getAction(read) == result, "an action is read");
            const Action* found = entry.findAction<Class>();
            require(found != nullptr, "an action is found");
            require(entry.getActionsRef().begin()->second == found, "an action is visited");
            return result;
        },
        {[](FiltersEntry& to, const FiltersEntry& from) { return to.copyActionsFrom(from); },
         [](FiltersEntry& to, const FiltersEntry& from) {
             FiltersEntry::ActionMap map;
             copy_map(map, from.getActionsRef());
             return to.copyActions(map);
         }});
}

} // namespace

int main()
{
#define USE(kind, Class, Values) useMatch<Class>();
    FILTERS_COMMON_EACH_MATCH_KIND(USE)
    USE(MATCH_TOS, MatchDSCP, MatchToS)
#undef USE
#define USE(kind, Class, Values) useAction<Class>();
    FILTERS_COMMON_EACH_ACTION_KIND(USE)
#undef USE

    const Match bareMatch(MATCH_PCP);
    const Action bareAction(ACTION_SET_PCP);
    const MatchMac ofFamily(MATCH_DST_MAC, ether_addr{});
    const ActionPorts ports(ACTION_BLOCK_EGRESS_PORTS, {});
    require(!areEqual<Match>(bareMatch, MatchPcp()), "a bare match holds no value");
    require(!areEqual<Action>(bareAction, ActionSetPcp()), "a bare action holds no value");
    require(areEqual<Match>(ofFamily, MatchDstMac()), "a family holds the values of its kinds");
    require(areEqual<Action>(ports, ActionBlockEgressPorts()),
            "ports are the values of their kind");
    FiltersSerialized envelope("bytes");
    require(envelope.size() == 6, "an envelope holds bytes");
    return 0;
}
