/**
 * Properties of every entry and every group, however it was made, shared by the targets.
 */
#ifndef FILTER_COMMON_FUZZ_PROPERTIES_H
#define FILTER_COMMON_FUZZ_PROPERTIES_H

#include "require.h"

#include "kinds.h"
#include "meaning.h"
#include "support.h"

#include "filter_groups.pb.h"
#include "filter_groups_c.h"
#include "filter_refusals.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <typeinfo>
#include <vector>

namespace FiltersCommon::fuzz {

// -------------------------------------------------------------------------- by way of the messages

/** How to fill and read the message of a class: the long way round, with the same results. */
template <class T>
struct Plain;

template <>
struct Plain<FiltersEntry> {
    using Message = FiltersEntryPB;

    static FiltersEntry blank() { return FiltersEntry(); }
    static void read(FiltersEntry& entry, const Message& pb)
    {
        entry.convertFromFiltersEntryPB(&pb);
    }
    static Message message(const FiltersEntry& entry)
    {
        Message pb;
        entry.convertToFiltersEntryPB(&pb);
        return pb;
    }
};

template <>
struct Plain<FiltersGroup> {
    using Message = FiltersGroupPB;

    static FiltersGroup blank() { return FiltersGroup(filtersGroupId_t{0}); }
    static void read(FiltersGroup& group, const Message& pb)
    {
        group.convertFromFiltersGroupPB(&pb);
    }
    static Message message(const FiltersGroup& group) { return group.convertToFiltersGroupPB(); }
};

template <class T>
std::string serialized(const T& object)
{
    std::string bytes = "what stood here before";
    object.serialize(&bytes);
    return bytes;
}

template <class T>
std::string plainlySerialized(const T& object)
{
    std::string bytes;
    require(Plain<T>::message(object).SerializeToString(&bytes), "the message is complete");
    return bytes;
}

// ---------------------------------------------------------------------------------------- equality

inline bool differ(const FiltersEntry& a, const FiltersEntry& b) { return !(a == b); }
inline bool differ(const FiltersGroup& a, const FiltersGroup& b) { return a != b; }

/** Checks any two objects, equal or not. */
template <class T>
void checkPair(const T& a, const T& b)
{
    const bool equal = a == b;
    require(equal == (b == a), "equality is symmetric");
    require(equal != differ(a, b), "!= is the negation of ==");
    require(equal == (serialized(a) == serialized(b)), "equal objects, and no others, have equal "
                                                       "bytes");
}

/** Requires that two objects differ only in their addresses. */
template <class T>
void requireSame(const T& a, const T& b, const std::string& stateOfA, const char* property)
{
    require(a == b && b == a && !differ(a, b) && !differ(b, a), property);
    require(stateOfA == test::stateOf(b), property);
}

template <class T>
void requireSame(const T& a, const T& b, const char* property)
{
    requireSame(a, b, test::stateOf(a), property);
}

// ----------------------------------------------------------------------------- bytes, dump, copies

/** Checks the object written and read in all forms, copied, and compared with itself. */
template <class T>
void checkForms(const T& object)
{
    const std::string state = test::stateOf(object);
    requireSame(object, object, state, "an object is equal to itself");
    requireSame(object, T(object), state, "a copy is equal to its source");

    const std::string bytes = serialized(object);
    require(bytes == plainlySerialized(object), "the bytes are those of the message");
    requireSame(object, T(bytes), state, "what was written reads back as an equal object");

    FiltersSerialized envelope;
    object.serialize(&envelope);
    require(envelope.size() == bytes.size() + 1 &&
                std::memcmp(envelope.data(), bytes.c_str(), envelope.size()) == 0,
            "the envelope holds the bytes and a zero");
    requireSame(object, T(envelope), state,
                "what is in the envelope reads back as an equal "
                "object");
}

/** Checks for any bytes that the constructor reads the same from them as the message. */
template <class T>
T checkReading(const std::string& bytes)
{
    const auto plainlyRead = [](const std::string& from) {
        typename Plain<T>::Message pb;
        static_cast<void>(pb.ParsePartialFromString(from));
        T object = Plain<T>::blank();
        Plain<T>::read(object, pb);
        return object;
    };
    T object(bytes);
    requireSame(object, plainlyRead(bytes), "bytes read like the message that they parse to");

    FiltersSerialized envelope(bytes);
    requireSame(T(envelope), plainlyRead(bytes + '\0'),
                "an envelope reads like its bytes and a "
                "zero");
    return object;
}

// ---------------------------------------------------------------------------------------- refusals

using Refusals = std::vector<FiltersRefusal>;

inline Refusals readRefusals(const FiltersEntry&, const std::string& bytes)
{
    return readEntryRefusals(bytes);
}
inline Refusals readRefusals(const FiltersGroup&, const std::string& bytes)
{
    return readGroupRefusals(bytes);
}

inline void checkSentences(const Refusals& refusals)
{
    for (const FiltersRefusal& refusal : refusals) {
        const std::string sentence = refusal.sentence();
        require(!sentence.empty() && sentence.find('\n') == std::string::npos,
                "a refusal is explained in one line");
    }
}

/** Without what is lost in other ways than by leaving out matches, actions and entries. */
inline Refusals leftOut(const Refusals& losses)
{
    Refusals kept;
    for (const FiltersRefusal& loss : losses)
        if (loss.reason < REFUSAL_NOT_PARSED)
            kept.push_back(loss);
    return kept;
}

/** Checks for any bytes that what reading them into the object loses is told. */
template <class Message, class T>
void checkHonesty(const std::string& bytes, const T& object, const Refusals& losses)
{
    checkSentences(losses);
    const auto tells = [&](filtersRefusalReason_t reason) {
        return std::any_of(losses.begin(), losses.end(),
                           [=](const FiltersRefusal& loss) { return loss.reason == reason; });
    };
    const std::string meaning = test::meaningOf<Message>(bytes);
    const bool isReadable = meaning != test::UNREADABLE;
    require(tells(REFUSAL_NOT_PARSED) != isReadable, "bytes that do not parse are told");
    require(!isReadable ||
                tells(REFUSAL_FIELD_UNKNOWN) == (meaning.find("unknown:") != std::string::npos),
            "fields that the schema does not have are told");
    require(!losses.empty() || test::meaningOf<Message>(serialized(object)) == meaning,
            "what is read without a loss says what the bytes say");
    require(readRefusals(object, serialized(object)).empty(), "what the library writes loses "
                                                              "nothing");
}

/** The result of an operation with these refusals. */
inline filtersErr_t codeOf(const Refusals& refusals)
{
    checkSentences(refusals);
    return refusals.empty() ? FILTERS_OK : refusals.front().code();
}

// ----------------------------------------------------------------------------------------- entries

/** Whether its class is exactly that of its kind. */
inline bool isOfItsClass(const Match& match)
{
    return MatchKinds::dispatch(match.getType(), false, [&](auto kind) {
        return typeid(match) == typeid(ClassOf<decltype(kind)>) ||
               typeid(match) == typeid(MatchDSCP); // has the kind of a MatchToS
    });
}

inline bool isOfItsClass(const Action& action)
{
    return ActionKinds::dispatch(action.getType(), false, [&](auto kind) {
        return typeid(action) == typeid(ClassOf<decltype(kind)>);
    });
}

template <class Map>
void checkMap(const Map& map)
{
    for (const auto& [key, object] : map) {
        require(object != nullptr, "there is an object under each key");
        require(object->getType() == key, "the key is the kind of the object");
        require(isOfItsClass(*object), "the object is of its kind's class");
        require(*object == *object, "a match or an action is equal to itself");
    }
}

inline filtersErr_t read(const FiltersEntry& entry, Match& match)
{
    return MatchKinds::dispatch(match.getType(), FILTERS_ERR_INVALID, [&](auto kind) {
        return entry.getMatch(static_cast<ClassOf<decltype(kind)>&>(match));
    });
}

inline filtersErr_t read(const FiltersEntry& entry, Action& action)
{
    return ActionKinds::dispatch(action.getType(), FILTERS_ERR_INVALID, [&](auto kind) {
        return entry.getAction(static_cast<ClassOf<decltype(kind)>&>(action));
    });
}

/** Gets each kind from the entry, held or not. */
template <class Kinds, class Base>
void checkGetters(const FiltersEntry& entry, const KindMap<Base>& map)
{
    Kinds::forEach([&](auto kind) {
        ClassOf<decltype(kind)> asked;
        const ClassOf<decltype(kind)> blank;
        const auto held = map.find(asked.getType());
        const filtersErr_t result = read(entry, asked);
        const Base& now = asked;
        if (held == map.end())
            require(result == FILTERS_ERR_NOT_FOUND && now == blank,
                    "asked for what is not held, an entry changes nothing");
        else
            require(result == FILTERS_OK && now == *held->second && *held->second == now,
                    "asked for what is held, an entry gives an equal object");
    });
}

/** Checks what must always be true of an entry. */
inline void checkInvariants(const FiltersEntry& entry)
{
    const auto& matches = entry.getMatchesRef();
    checkMap(matches);
    checkMap(entry.getActionsRef());
    const auto holds = [&](filtersMatch_t kind) { return matches.count(kind) != 0; };
    require(!((holds(MATCH_SRC_IPV4) || holds(MATCH_DST_IPV4)) &&
              (holds(MATCH_SRC_IPV6) || holds(MATCH_DST_IPV6))),
            "IPv4 never stands beside IPv6");
}

inline void checkEntry(const FiltersEntry& entry)
{
    checkInvariants(entry);
    checkForms(entry);
    checkGetters<MatchKinds>(entry, entry.getMatchesRef());
    checkGetters<ActionKinds>(entry, entry.getActionsRef());

    const FiltersEntry copy(entry);
    checkInvariants(copy);
    for (const auto& element : copy.getMatchesRef()) {
        const Match& match = *element.second;
        require(typeid(match) != typeid(MatchDSCP), "a copied MatchDSCP is a MatchToS");
    }
}

// ------------------------------------------------------------------------------------------ groups

/** The result of an insertion, according to the public tables. */
inline filtersErr_t refusalOf(const FiltersEntry& entry, filtersGroupStage_t stage,
                              filtersGroupType_t type)
{
    const auto kinds = FiltersGroup::TypeDescription_.find(type);
    if (kinds == FiltersGroup::TypeDescription_.end())
        return FILTERS_ERR_INVALID;
    for (const auto& match : entry.getMatchesRef())
        if (kinds->second.count(match.first) == 0)
            return FILTERS_ERR_MATCH_NOT_ALLOWED;

    const auto actions = FiltersGroup::StageActionsDescription_.find(stage);
    if (actions == FiltersGroup::StageActionsDescription_.end())
        return FILTERS_ERR_UNKNOWN_STAGE;
    for (const auto& action : entry.getActionsRef())
        if (actions->second.count(action.first) == 0)
            return FILTERS_ERR_ACTION_NOT_ALLOWED;

    const policer::Stage policerStage = entry.getPolicer().GetStage();
    const bool fits = policerStage == policer::STAGE_NONE ||
                      (policerStage == policer::STAGE_INGRESS && stage == GROUP_STAGE_2) ||
                      (policerStage == policer::STAGE_EGRESS && stage == GROUP_STAGE_3);
    return fits ? FILTERS_OK : FILTERS_ERR_POLICER_STAGE;
}

inline filtersErr_t refusalOf(filtersGroupStage_t stage, filtersGroupType_t type)
{
    const auto types = FiltersGroup::StageTypesDescription_.find(stage);
    if (types == FiltersGroup::StageTypesDescription_.end())
        return FILTERS_ERR_UNKNOWN_STAGE;
    return types->second.count(type) == 0 ? FILTERS_ERR_TYPE_NOT_ALLOWED : FILTERS_OK;
}

inline void checkAdmitted(const FiltersGroup& group, const FiltersEntry& entry)
{
    const filtersGroupStage_t stage = group.getStage();
    require(refusalOf(entry, stage, group.getType()) == FILTERS_OK,
            "the tables admit each entry of a group");
    require(group.groupMatchValidation(entry, group.getType()) == FILTERS_OK,
            "the type admits the matches of each entry of a group");
    require(group.groupActionValidation(entry, stage) == FILTERS_OK,
            "the stage admits the actions of each entry of a group");
    require(group.groupPolicerValidation(entry.getPolicer(), stage) == FILTERS_OK,
            "the stage admits the policer of each entry of a group");
}

/** Checks that the record for C callers holds the entries of the map, in the same order. */
inline void checkListing(FiltersGroup& group)
{
    entriesStruct listing;
    filtersGroupGetEntries(&group, &listing);
    const FiltersGroup::EntryMap& entries = group.getEntriesRef();
    require(static_cast<std::size_t>(listing.count) == entries.size(),
            "the C listing is as long as the map");
    std::size_t index = 0;
    for (const auto& [id, entry] : entries) {
        require(listing.ids[index] == id, "the C listing has the identifiers of the map");
        requireSame(*listing.entries[index], entry, "the C listing has the entries of the map");
        ++index;
    }
    deleteFiltersEntriesStruct(&listing);
}

/** Checks what must always be true of a group. */
inline void checkInvariants(const FiltersGroup& group)
{
    for (const auto& [id, entry] : group.getEntriesRef()) {
        require(entry.getId() == id, "the key is the identifier of the entry");
        require(entry.findMatch<MatchDSCP>() == nullptr, "a group holds no MatchDSCP");
        checkInvariants(entry);
        checkAdmitted(group, entry);
    }
}

inline void checkGroup(const FiltersGroup& group)
{
    checkInvariants(group);
    checkForms(group);
    require(group.getEntries() == group.getEntriesRef(), "getEntries copies every entry");
    FiltersGroup copy(group);
    checkListing(copy);
}

} // namespace FiltersCommon::fuzz

#endif // FILTER_COMMON_FUZZ_PROPERTIES_H
