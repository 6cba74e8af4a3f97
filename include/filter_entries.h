/**
 * A packet-filter rule: FiltersEntry.
 */
#ifndef FILTER_COMMON_FILTER_ENTRIES_H
#define FILTER_COMMON_FILTER_ENTRIES_H

#include "filter_actions.h"
#include "filter_counter.h"
#include "filter_kind_map.h"
#include "filter_matches.h"
#include "filter_serialized.h"

#include <policer_common.h>

#include <cstdint>
#include <iosfwd>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <type_traits>

#pragma GCC visibility push(default)

namespace FiltersCommon {

class FiltersEntryPB;
struct FILTERS_COMMON_INTERNAL EntryRows; // describes the members
struct FILTERS_COMMON_INTERNAL EntryWire; // writes and reads them

extern template class KindMap<Match>;
extern template class KindMap<Action>;

/**
 * One rule: an identifier, a priority, a policer, a counter, at most one match of each kind and at
 * most one action of each kind.
 *
 * The entry owns copies of the matches and actions it is given, in a block of memory for the
 * matches and one for the actions. It never holds both IPv4 and IPv6 addresses, and every match or
 * action is stored under its own kind. Matches and actions are always visited in ascending order of
 * their kind codes.
 *
 * An operation that refuses returns a code and changes nothing, except that copyMatches and
 * copyActions keep what they copied before the refusal. If memory runs out, std::bad_alloc is
 * thrown and nothing is changed.
 */
class FiltersEntry {
public:
    /** Matches and actions as callers may own them, to be copied into entries. */
    using MatchMap = std::map<filtersMatch_t, std::unique_ptr<Match>>;
    using ActionMap = std::map<filtersAction_t, std::unique_ptr<Action>>;

    /** Hashes (std::type_info::hash_code, low 32 bits) of the match classes that entries know. */
    static const std::set<std::uint32_t> validMatchTypes;
    /** Hashes of the action classes that entries know. */
    static const std::set<std::uint32_t> validActionTypes;
    /** Codes of the kinds that can only match IPv4 packets. */
    static const std::set<std::uint32_t> ipv4OnlyMatchTypes;
    /** Codes of the kinds that can only match IPv6 packets. */
    static const std::set<std::uint32_t> ipv6OnlyMatchTypes;

    /** Priority 0, no policer, no counter, no matches, no actions. */
    FiltersEntry() : FiltersEntry(0) {}
    explicit FiltersEntry(const filtersEntryId_t& id);
    /** Copies matches and actions by kind: a MatchDSCP is copied as a MatchToS. */
    FiltersEntry(const FiltersEntry& other);
    /**
     * Rebuilds an entry from the bytes written by serialize(). Any bytes are accepted: if they do
     * not parse, the entry holds what the parser read before it gave up; if there are more than
     * 2 GiB - 1 of them, nothing is read. @see convertFromFiltersEntryPB
     */
    explicit FiltersEntry(const std::string& bytes);
    /** Throws std::logic_error if @p s has a size but no data. */
    explicit FiltersEntry(const FiltersSerialized& s);

    /** Shows that a group takes an entry over; nobody else can make one. */
    class Taken {
        friend class FiltersGroup;
        explicit Taken() {}
    };
    /** Like move assignment to an empty entry. */
    FILTERS_COMMON_INTERNAL FiltersEntry(Taken, FiltersEntry& other);

    /**
     * Moves the matches and actions out of @p other, which is left without any; identifier,
     * priority, policer and counter are copied. Self-assignment loses the matches and actions.
     * There is deliberately no copy assignment.
     */
    FiltersEntry& operator=(FiltersEntry&& other);

    ~FiltersEntry();

    void setId(filtersEntryId_t id) { id_ = id; }
    filtersEntryId_t getId() const { return id_; }

    void setPriority(const filtersEntryPriority_t& priority) { priority_ = priority; }
    filtersEntryPriority_t getPriority() const { return priority_; }

    /** Accepts any policer; the group checks whether its stage fits. */
    filtersErr_t setPolicer(const policer::Policer& policer);
    const policer::Policer& getPolicer() const { return policer_; }

    /** @return FILTERS_ERR_INVALID for a counter of type COUNTER_TYPE_INVALID */
    filtersErr_t setCounter(const Counter& counter);
    const Counter& getCounter() const { return counter_; }
    /** Resets the counter to Counter(). */
    filtersErr_t deleteCounter();

    // These templates accept any class T, but only the library's own match and action classes are
    // known. Any other class, such as a base class or one of the caller's, is refused with
    // FILTERS_ERR_INVALID before any object is examined.

    /**
     * Stores a copy of @p match, replacing any match of the same kind.
     * @return FILTERS_ERR_INVALID if T is unknown, or if IPv4 and IPv6 would be combined
     */
    template <class T>
    filtersErr_t setMatch(const T& match);

    /**
     * Copies the values of the stored match of the same kind into @p match.
     * @return FILTERS_ERR_INVALID if T is unknown or const, FILTERS_ERR_NOT_FOUND if there is none
     */
    template <class T>
    filtersErr_t getMatch(T& match) const;

    /**
     * The stored match of class T itself, valid until the entry is destroyed or its matches are
     * changed; null if there is none or T is unknown. A MatchDSCP is also found as a MatchToS.
     */
    template <class T>
    const T* findMatch() const;

    /** @return FILTERS_ERR_NOT_FOUND if there is none */
    filtersErr_t deleteMatch(filtersMatch_t kind);

    /** Whether @p match may be added to the stored matches: IPv4 addresses exclude IPv6 ones. */
    template <class T>
    bool isL3CompatibleMatch(T match) const
    {
        return isL3CompatibleKind(match.getType());
    }

    /** Like setMatch; actions of different kinds never exclude each other. */
    template <class T>
    filtersErr_t setAction(const T& action);

    /** Like getMatch. */
    template <class T>
    filtersErr_t getAction(T& action) const;

    /** Like findMatch. */
    template <class T>
    const T* findAction() const;

    /** @return FILTERS_ERR_NOT_FOUND if there is none */
    filtersErr_t deleteAction(filtersAction_t kind);

    /**
     * Adds a copy of every match in @p from, in ascending key order. The kind is taken from the
     * object, not from the key; null pointers and unknown kinds are skipped.
     * @return FILTERS_ERR_INVALID at the first match that would combine IPv4 and IPv6, or whose
     * kind has values but which is not of that kind's class; the matches before it are kept
     */
    filtersErr_t copyMatches(const MatchMap& from);
    /** Like copyMatches. */
    filtersErr_t copyActions(const ActionMap& from);
    /** Like copyMatches, from the matches of another entry, or of this one. */
    filtersErr_t copyMatchesFrom(const FiltersEntry& other);
    /** Like copyActions, from the actions of another entry, or of this one. */
    filtersErr_t copyActionsFrom(const FiltersEntry& other);

    /** Replaces all matches with copies of @p from, made as by copyMatches; all or nothing. */
    filtersErr_t setMatches(const MatchMap& from);
    /** Replaces all actions with copies of @p from, made as by copyActions; all or nothing. */
    filtersErr_t setActions(const ActionMap& from);
    /** Like setMatches, with the matches of another entry, or of this one. */
    filtersErr_t setMatchesFrom(const FiltersEntry& other);
    /** Like setActions, with the actions of another entry, or of this one. */
    filtersErr_t setActionsFrom(const FiltersEntry& other);

    /**
     * The stored matches and actions, to be read like maps from a kind to a pointer; valid until
     * the entry is changed or destroyed.
     */
    const KindMap<Match>& getMatchesRef() const { return matches_; }
    const KindMap<Action>& getActionsRef() const { return actions_; }

    /** Compares everything; the order in which matches and actions were added does not matter. */
    bool operator==(const FiltersEntry& other) const;

    /** Fills @p pb, an empty message. */
    void convertToFiltersEntryPB(FiltersEntryPB* pb) const;

    /**
     * Reads identifier, priority, policer and counter from @p pb and adds its matches and actions
     * to those the entry holds. Numbers are truncated to the width of the member. Silently, unknown
     * kinds are skipped, matches that would combine IPv4 and IPv6 are dropped, a later element
     * replaces an earlier one of its kind, and a counter of type COUNTER_TYPE_INVALID is accepted.
     */
    void convertFromFiltersEntryPB(const FiltersEntryPB* pb);

    /** Replaces the contents of @p out with the entry's bytes, or none if they exceed 2 GiB - 1. */
    void serialize(std::string* out) const;
    /** Passes the entry's bytes to FiltersSerialized::setData. */
    void serialize(FiltersSerialized* out) const;

private:
    friend struct EntryRows;
    friend struct EntryWire;

    bool isL3CompatibleKind(filtersMatch_t kind) const;
    const Match* storedMatch(filtersMatch_t kind) const;
    const MatchDSCP* storedDSCP() const;
    const Action* storedAction(filtersAction_t kind) const;

    filtersEntryId_t id_;
    filtersEntryPriority_t priority_ = 0;
    policer::Policer policer_;
    Counter counter_;
    KindMap<Match> matches_;
    KindMap<Action> actions_;
};

/**
 * Copies the object under each key of @p from by its kind and stores the copy in @p to, freeing
 * what @p to held under that key. If there is no object, or it cannot be copied by its kind, @p to
 * gets a null pointer. Provided for matches and actions.
 */
template <class K, class V>
FILTERS_COMMON_PUBLIC void copy_map(std::map<K, std::unique_ptr<V>>& to,
                                    const std::map<K, std::unique_ptr<V>>& from);

/** Does the same with the matches or actions of an entry. */
template <class V>
FILTERS_COMMON_PUBLIC void copy_map(std::map<typename KindMap<V>::Code, std::unique_ptr<V>>& to,
                                    const KindMap<V>& from);

// -------------------------------------------------------------------------------------- templates

template <class T>
filtersErr_t FiltersEntry::setMatch(const T& match)
{
    using Class = std::remove_cv_t<T>;
    if constexpr (!isMatchClass<T>) {
        return FILTERS_ERR_INVALID;
    } else if constexpr (!std::is_same_v<T, Class>) {
        return setMatch<Class>(const_cast<const Class&>(match));
    } else {
        if (!isL3CompatibleKind(T::KIND))
            return FILTERS_ERR_INVALID;
        matches_.put(match);
        return FILTERS_OK;
    }
}

template <class T>
filtersErr_t FiltersEntry::getMatch(T& match) const
{
    if constexpr (isMatchClass<T> && !std::is_const_v<T>) {
        using Class = std::remove_cv_t<T>;
        auto& object = const_cast<Class&>(match);
        const Match* stored = storedMatch(object.getType());
        if (stored == nullptr)
            return FILTERS_ERR_NOT_FOUND;
        // An object stored under MATCH_TOS may be of either class; both hold a MatchToS's byte.
        using Values = std::conditional_t<std::is_same_v<Class, MatchDSCP>, MatchToS, Class>;
        static_cast<Values&>(object) = static_cast<const Values&>(*stored);
        return FILTERS_OK;
    } else {
        return FILTERS_ERR_INVALID;
    }
}

template <class T>
const T* FiltersEntry::findMatch() const
{
    if constexpr (std::is_same_v<std::remove_cv_t<T>, MatchDSCP>)
        return storedDSCP();
    else if constexpr (isMatchClass<T>)
        return static_cast<const T*>(storedMatch(T::KIND));
    else
        return nullptr;
}

template <class T>
filtersErr_t FiltersEntry::setAction(const T& action)
{
    using Class = std::remove_cv_t<T>;
    if constexpr (!isActionClass<T>) {
        return FILTERS_ERR_INVALID;
    } else if constexpr (!std::is_same_v<T, Class>) {
        return setAction<Class>(const_cast<const Class&>(action));
    } else {
        actions_.put(action);
        return FILTERS_OK;
    }
}

template <class T>
filtersErr_t FiltersEntry::getAction(T& action) const
{
    if constexpr (isActionClass<T> && !std::is_const_v<T>) {
        using Class = std::remove_cv_t<T>;
        auto& object = const_cast<Class&>(action);
        const Action* stored = storedAction(object.getType());
        if (stored == nullptr)
            return FILTERS_ERR_NOT_FOUND;
        object = static_cast<const Class&>(*stored);
        return FILTERS_OK;
    } else {
        return FILTERS_ERR_INVALID;
    }
}

template <class T>
const T* FiltersEntry::findAction() const
{
    if constexpr (isActionClass<T>)
        return static_cast<const T*>(storedAction(T::KIND));
    else
        return nullptr;
}

// The library itself instantiates the templates for its own classes.
#define FILTERS_COMMON_DECLARE_INSTANTIATED(kind, Class, Values)                                   \
    extern template filtersErr_t FiltersEntry::setMatch(const Class&);                             \
    extern template filtersErr_t FiltersEntry::getMatch(Class&) const;                             \
    extern template bool FiltersEntry::isL3CompatibleMatch(Class) const;
FILTERS_COMMON_EACH_MATCH_KIND(FILTERS_COMMON_DECLARE_INSTANTIATED)
FILTERS_COMMON_DECLARE_INSTANTIATED(MATCH_TOS, MatchDSCP, MatchToS)
#undef FILTERS_COMMON_DECLARE_INSTANTIATED

#define FILTERS_COMMON_DECLARE_INSTANTIATED(kind, Class, Values)                                   \
    extern template filtersErr_t FiltersEntry::setAction(const Class&);                            \
    extern template filtersErr_t FiltersEntry::getAction(Class&) const;
FILTERS_COMMON_EACH_ACTION_KIND(FILTERS_COMMON_DECLARE_INSTANTIATED)
#undef FILTERS_COMMON_DECLARE_INSTANTIATED

extern template void copy_map(FiltersEntry::MatchMap&, const FiltersEntry::MatchMap&);
extern template void copy_map(FiltersEntry::ActionMap&, const FiltersEntry::ActionMap&);
extern template void copy_map(FiltersEntry::MatchMap&, const KindMap<Match>&);
extern template void copy_map(FiltersEntry::ActionMap&, const KindMap<Action>&);

} // namespace FiltersCommon

/** Dumps the whole rule. Declared at global scope. */
std::basic_ostream<char>& operator<<(std::basic_ostream<char>& out,
                                     const FiltersCommon::FiltersEntry& entry);

#pragma GCC visibility pop

#endif // FILTER_COMMON_FILTER_ENTRIES_H
