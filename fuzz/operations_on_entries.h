/**
 * The operations on an entry, each with arguments from the input and with checks of its result.
 * Entries are accessed through both interfaces: a C handle is a FiltersEntry.
 */
#ifndef FILTER_COMMON_FUZZ_OPERATIONS_ON_ENTRIES_H
#define FILTER_COMMON_FUZZ_OPERATIONS_ON_ENTRIES_H

#include "any_objects.h"
#include "c_handles.h"
#include "properties.h"

#include <set>
#include <string>
#include <type_traits>
#include <utility>

namespace FiltersCommon::fuzz {

/** Changes the object and checks it. A refused change must have no effect. */
template <class T, class Change>
filtersErr_t attempt(T& object, Change change)
{
    const std::string before = test::stateOf(object);
    const filtersErr_t result = change(object);
    require(result == FILTERS_OK || test::stateOf(object) == before,
            "a refused call changes nothing");
    checkInvariants(object);
    return result;
}

// --------------------------------------------------------------------------------------- one kind

/** An entry without the match or action of that kind. */
inline FiltersEntry without(const FiltersEntry& entry, filtersMatch_t kind)
{
    FiltersEntry copy(entry);
    copy.deleteMatch(kind);
    return copy;
}

inline FiltersEntry without(const FiltersEntry& entry, filtersAction_t kind)
{
    FiltersEntry copy(entry);
    copy.deleteAction(kind);
    return copy;
}

inline const Match* held(const FiltersEntry& entry, filtersMatch_t kind)
{
    const auto found = entry.getMatchesRef().find(kind);
    return found == entry.getMatchesRef().end() ? nullptr : found->second;
}

inline const Action* held(const FiltersEntry& entry, filtersAction_t kind)
{
    const auto found = entry.getActionsRef().find(kind);
    return found == entry.getActionsRef().end() ? nullptr : found->second;
}

inline bool mayJoin(const FiltersEntry& entry, const Match& match)
{
    const auto holds = [&](filtersMatch_t a, filtersMatch_t b) {
        return held(entry, a) != nullptr || held(entry, b) != nullptr;
    };
    const filtersMatch_t kind = match.getType();
    if (kind == MATCH_SRC_IPV4 || kind == MATCH_DST_IPV4)
        return !holds(MATCH_SRC_IPV6, MATCH_DST_IPV6);
    if (kind == MATCH_SRC_IPV6 || kind == MATCH_DST_IPV6)
        return !holds(MATCH_SRC_IPV4, MATCH_DST_IPV4);
    return true;
}

inline bool mayJoin(const FiltersEntry&, const Action&) { return true; }

/** Stores the object through @p set, which uses one of the interfaces. */
template <class Base, class Set>
void checkSet(FiltersEntry& entry, const Base& object, Set set)
{
    const auto kind = object.getType();
    const bool expected = mayJoin(entry, object);
    const FiltersEntry others = without(entry, kind);
    const filtersErr_t result = attempt(entry, set);
    require((result == FILTERS_OK) == expected, "all but IPv4 beside IPv6 is stored");
    requireSame(without(entry, kind), others, "what is stored replaces its kind alone");
    if (result == FILTERS_OK)
        require(held(entry, kind) != nullptr && *held(entry, kind) == object,
                "what is stored is equal to what was given");
}

template <class Code, class Delete>
void checkDelete(FiltersEntry& entry, Code kind, Delete remove)
{
    const bool expected = held(entry, kind) != nullptr;
    const FiltersEntry others = without(entry, kind);
    const filtersErr_t result = attempt(entry, remove);
    require(result == (expected ? FILTERS_OK : FILTERS_ERR_NOT_FOUND),
            "what is held can be deleted, and nothing else");
    requireSame(entry, others, "what is deleted is one kind alone");
}

// -------------------------------------------------------------------------- through the classes

inline void setMatch(FiltersEntry& entry, ByteSource& in)
{
    withAnyMatch(in, [&](const auto& match) {
        require(entry.isL3CompatibleMatch(match) == mayJoin(entry, match),
                "an entry says which matches may join");
        require((codeOf(setMatchRefusals(entry, match)) == FILTERS_OK) == mayJoin(entry, match),
                "a refusal is explained");
        const Match& base = match;
        checkSet(entry, base, [&](FiltersEntry& e) { return e.setMatch(match); });
    });
}

inline void setAction(FiltersEntry& entry, ByteSource& in)
{
    withAnyAction(in, [&](const auto& action) {
        require(setActionRefusals(entry, action).empty(), "a refusal is explained");
        const Action& base = action;
        checkSet(entry, base, [&](FiltersEntry& e) { return e.setAction(action); });
    });
}

/** Stores what the entry holds once more, out of the entry itself. */
inline void setWhatIsHeld(FiltersEntry& entry, ByteSource& in)
{
    MatchKinds::visit(anyCode<filtersMatch_t>(in), [&](auto kind) {
        using Class = ClassOf<decltype(kind)>;
        if (const Class* match = entry.findMatch<Class>())
            checkSet<Match>(entry, Class(*match),
                            [match](FiltersEntry& e) { return e.setMatch(*match); });
    });
    ActionKinds::visit(anyCode<filtersAction_t>(in), [&](auto kind) {
        using Class = ClassOf<decltype(kind)>;
        if (const Class* action = entry.findAction<Class>())
            checkSet<Action>(entry, Class(*action),
                             [action](FiltersEntry& e) { return e.setAction(*action); });
    });
}

inline void deleteMatch(FiltersEntry& entry, ByteSource& in)
{
    const auto kind = anyCode<filtersMatch_t>(in);
    checkDelete(entry, kind, [kind](FiltersEntry& e) { return e.deleteMatch(kind); });
}

inline void deleteAction(FiltersEntry& entry, ByteSource& in)
{
    const auto kind = anyCode<filtersAction_t>(in);
    checkDelete(entry, kind, [kind](FiltersEntry& e) { return e.deleteAction(kind); });
}

/** Base classes and families cannot be stored in an entry. */
inline void setUnknownClass(FiltersEntry& entry, ByteSource& in)
{
    const Match match(anyCode<filtersMatch_t>(in));
    const Action action(anyCode<filtersAction_t>(in));
    const MatchL4Port family(anyCode<filtersMatch_t>(in), in.number<l4port_t>());
    const auto refuse = [&](const Refusals& refusals, auto set) {
        require(attempt(entry, set) == FILTERS_ERR_INVALID, "unknown classes are refused");
        require(codeOf(refusals) == FILTERS_ERR_INVALID, "a refusal is explained");
    };
    refuse(setMatchRefusals(entry, match), [&](FiltersEntry& e) { return e.setMatch(match); });
    refuse(setMatchRefusals(entry, family), [&](FiltersEntry& e) { return e.setMatch(family); });
    refuse(setActionRefusals(entry, action), [&](FiltersEntry& e) { return e.setAction(action); });
}

// ------------------------------------------------------------------------------------- whole maps

/** Copies the objects of the map into the entry one by one, up to the first refusal. */
template <class Map>
filtersErr_t addOneByOne(FiltersEntry& entry, const Map& from)
{
    constexpr bool ARE_MATCHES = std::is_same_v<typename Map::key_type, filtersMatch_t>;
    using Kinds = std::conditional_t<ARE_MATCHES, MatchKinds, ActionKinds>;
    for (const auto& element : from) {
        if (element.second == nullptr)
            continue;
        const auto& object = *element.second;
        const filtersErr_t result = Kinds::dispatch(object.getType(), FILTERS_OK, [&](auto kind) {
            const auto copy = copyAs<ClassOf<decltype(kind)>>(object);
            if (!copy)
                return FILTERS_ERR_INVALID;
            if constexpr (ARE_MATCHES)
                return entry.setMatch(*copy);
            else
                return entry.setAction(*copy);
        });
        if (result != FILTERS_OK)
            return result;
    }
    return FILTERS_OK;
}

/** An operation that takes a map, and the function that explains its refusals. */
template <class Map>
struct MapOperation {
    filtersErr_t (FiltersEntry::*call)(const Map&);
    Refusals (*explain)(const FiltersEntry&, const Map&);
};

/** Adds the objects in the map to the entry, or replaces the entry's objects with them. */
template <class Map>
void takeMap(FiltersEntry& entry, const Map& from, MapOperation<Map> copy, MapOperation<Map> set,
             bool replace)
{
    FiltersEntry expected(entry);
    if (replace)
        require((expected.*set.call)({}) == FILTERS_OK, "an empty map is taken");
    const filtersErr_t result = addOneByOne(expected, from);
    const auto explain = replace ? set.explain : copy.explain;
    require(codeOf(explain(entry, from)) == result, "a refusal is explained");
    if (replace) {
        require(attempt(entry, [&](FiltersEntry& e) { return (e.*set.call)(from); }) == result,
                "a whole map is refused where one of its objects is");
        if (result == FILTERS_OK)
            requireSame(entry, expected, "a whole map replaces what was held");
    } else {
        require((entry.*copy.call)(from) == result, "copying stops at the first refusal");
        requireSame(entry, expected, "what was copied before a refusal stays");
        checkInvariants(entry);
    }
}

inline void takeMatches(FiltersEntry& entry, ByteSource& in)
{
    const bool replace = in.flip();
    takeMap(entry, anyMatches(in), {&FiltersEntry::copyMatches, &copyMatchesRefusals},
            {&FiltersEntry::setMatches, &setMatchesRefusals}, replace);
}

inline void takeActions(FiltersEntry& entry, ByteSource& in)
{
    const bool replace = in.flip();
    takeMap(entry, anyActions(in), {&FiltersEntry::copyActions, &copyActionsRefusals},
            {&FiltersEntry::setActions, &setActionsRefusals}, replace);
}

/** Takes the objects of another entry, or of the same one, as if they were in a map. */
inline void takeObjectsOf(FiltersEntry& entry, const FiltersEntry& other, ByteSource& in)
{
    FiltersEntry::MatchMap matches;
    FiltersEntry::ActionMap actions;
    copy_map(matches, other.getMatchesRef());
    copy_map(actions, other.getActionsRef());
    const auto check = [&](auto takeFrom, auto take, const auto& map) {
        FiltersEntry expected(entry);
        const filtersErr_t result = (expected.*take)(map);
        require((entry.*takeFrom)(other) == result, "an entry is taken from like a map");
        requireSame(entry, expected, "an entry is taken from like a map");
        checkInvariants(entry);
    };
    switch (in.below(4)) {
    case 0:
        check(&FiltersEntry::copyMatchesFrom, &FiltersEntry::copyMatches, matches);
        break;
    case 1:
        check(&FiltersEntry::setMatchesFrom, &FiltersEntry::setMatches, matches);
        require(entry.findMatch<MatchDSCP>() == nullptr, "a copied MatchDSCP is a MatchToS");
        break;
    case 2:
        check(&FiltersEntry::copyActionsFrom, &FiltersEntry::copyActions, actions);
        break;
    default:
        check(&FiltersEntry::setActionsFrom, &FiltersEntry::setActions, actions);
    }
}

/** Copying goes by the keys of the maps, not by the kinds of the objects. */
template <class Map, class From>
void checkCopyMap(Map to, const From& from)
{
    std::set<typename Map::key_type> keys;
    for (const auto& element : to)
        keys.insert(element.first);
    for (const auto& element : from)
        keys.insert(element.first);
    copy_map(to, from);
    require(to.size() == keys.size(), "copy_map joins the keys");
    for (const auto& [key, object] : from) {
        const auto& copy = to.at(key);
        const bool canBeCopied = object != nullptr && isOfItsClass(*object);
        require(!canBeCopied || (copy != nullptr && *copy == *object && &*copy != &*object),
                "copy_map makes equal objects");
        require(copy == nullptr || object != nullptr, "copy_map makes nothing of nothing");
    }
}

inline void copyMaps(FiltersEntry& entry, ByteSource& in)
{
    checkCopyMap(anyMatches(in), entry.getMatchesRef());
    checkCopyMap(anyActions(in), entry.getActionsRef());
    const FiltersEntry::MatchMap matches = anyMatches(in);
    checkCopyMap(anyMatches(in), matches);
    const FiltersEntry::ActionMap actions = anyActions(in);
    checkCopyMap(anyActions(in), actions);
}

// ---------------------------------------------------------------------------------- in C handles

template <class Base>
using FunctionInC = filtersErr_t (*)(FiltersEntry*, Base*);

/** Stores @p given, and reads into @p asked, which may be of another kind. */
template <class Base>
void checkInC(FiltersEntry& entry, Base& given, Base& asked, FunctionInC<Base> set,
              FunctionInC<Base> get)
{
    checkGettersInC(given);
    checkSet(entry, given, [&](FiltersEntry& e) { return set(&e, &given); });
    for (Base* into : {&given, &asked}) {
        const Base* const stored = held(entry, into->getType());
        require(get(&entry, into) == (stored == nullptr ? FILTERS_ERR_NOT_FOUND : FILTERS_OK),
                "C gets what is held, and nothing else");
        require(stored == nullptr || *stored == *into, "C gets what is held, and nothing else");
        checkGettersInC(*into);
    }
    for (const auto function : {set, get}) {
        const auto call = [&](FiltersEntry& e) { return function(&e, nullptr); };
        require(attempt(entry, call) == FILTERS_ERR_BAD_PARAM &&
                    function(nullptr, &given) == FILTERS_ERR_BAD_PARAM,
                "C refuses a missing handle");
    }
}

inline void setMatchInC(FiltersEntry& entry, ByteSource& in)
{
    const auto given = anyMatchInC(in);
    checkInC(entry, *given, *anyMatchInC(in), &filtersEntrySetMatch, &filtersEntryGetMatch);
}

inline void setActionInC(FiltersEntry& entry, ByteSource& in)
{
    const auto given = anyActionInC(in);
    checkInC(entry, *given, *anyActionInC(in), &filtersEntrySetAction, &filtersEntryGetAction);
}

inline void deleteInC(FiltersEntry& entry, ByteSource& in)
{
    const auto match = anyCode<filtersMatch_t>(in);
    checkDelete(entry, match, [=](FiltersEntry& e) { return filtersEntryDeleteMatch(&e, match); });
    const auto action = anyCode<filtersAction_t>(in);
    checkDelete(entry, action,
                [=](FiltersEntry& e) { return filtersEntryDeleteAction(&e, action); });
}

// -------------------------------------------------------------------------- everything but these

inline void setNumbers(FiltersEntry& entry, ByteSource& in)
{
    const auto id = in.smallNumber<filtersEntryId_t>();
    const auto priority = in.smallNumber<filtersEntryPriority_t>();
    entry.setId(id);
    if (in.flip())
        entry.setPriority(priority);
    else
        filtersEntrySetPriority(&entry, priority);
    require(entry.getId() == id && filtersEntryGetId(&entry) == id, "an identifier is kept");
    require(entry.getPriority() == priority && filtersEntryGetPriority(&entry) == priority,
            "a priority is kept");
    checkInvariants(entry);
}

inline void setPolicer(FiltersEntry& entry, ByteSource& in)
{
    const policer::Policer policer = anyPolicer(in);
    attempt(entry, [&](FiltersEntry& e) { return e.setPolicer(policer); });
    require(entry.getPolicer().Serialize() == policer.Serialize(), "any policer is kept");
}

inline void setCounter(FiltersEntry& entry, ByteSource& in)
{
    const Counter counter = anyCounter(in);
    const filtersErr_t result =
        attempt(entry, [&](FiltersEntry& e) { return e.setCounter(counter); });
    const bool isNone = counter.GetType() == COUNTER_TYPE_INVALID;
    require(result == (isNone ? FILTERS_ERR_INVALID : FILTERS_OK), "a counter of no type is "
                                                                   "refused");
    require(isNone || entry.getCounter() == counter, "a counter is kept");
    if (in.below(8) == 0) {
        attempt(entry, [](FiltersEntry& e) { return e.deleteCounter(); });
        require(entry.getCounter() == Counter(), "a deleted counter is none");
    }
}

/** Reads a message into an entry that is not empty. */
inline void readMessage(FiltersEntry& entry, const FiltersEntry& other)
{
    FiltersEntry expected(entry);
    const Counter counter = other.getCounter();
    expected.setId(other.getId());
    expected.setPriority(other.getPriority());
    expected.setPolicer(other.getPolicer());
    expected.deleteCounter();
    expected.setCounter(counter);
    for (const auto& element : other.getMatchesRef()) // a match that does not fit is left out
        MatchKinds::visit(element.first, [&](auto kind) {
            expected.setMatch(static_cast<const ClassOf<decltype(kind)>&>(*element.second));
        });
    require(addOneByOne(expected, other.getActionsRef()) == FILTERS_OK, "actions always join");

    const FiltersEntryPB pb = Plain<FiltersEntry>::message(other);
    entry.convertFromFiltersEntryPB(&pb);
    checkInvariants(entry);
    if (counter.GetType() != COUNTER_TYPE_INVALID || counter == Counter())
        requireSame(entry, expected, "a message is read on top of what an entry holds");
}

/** An entry without any matches and actions. */
inline FiltersEntry emptied(const FiltersEntry& entry)
{
    FiltersEntry copy(entry);
    copy.setMatches({});
    copy.setActions({});
    return copy;
}

/** Moves from another entry, or from the entry itself, which empties it. */
inline void moveFrom(FiltersEntry& entry, FiltersEntry& other)
{
    const bool isSame = &entry == &other;
    const FiltersEntry expected(other);
    entry = std::move(other);
    requireSame(entry, isSame ? emptied(expected) : expected, "a move takes everything over");
    requireSame(other, emptied(expected), "a move leaves no matches and no actions");
    checkInvariants(entry);
    checkInvariants(other);
}

} // namespace FiltersCommon::fuzz

#endif // FILTER_COMMON_FUZZ_OPERATIONS_ON_ENTRIES_H
