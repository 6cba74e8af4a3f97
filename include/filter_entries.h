/**
 * A packet-filter rule: FiltersEntry.
 */
#ifndef FILTER_COMMON_FILTER_ENTRIES_H
#define FILTER_COMMON_FILTER_ENTRIES_H

#include "filter_actions.h"
#include "filter_counter.h"
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

/**
 * One rule: an identifier, a priority, a policer, a counter, at most one match of each kind and at
 * most one action of each kind.
 *
 * The entry owns copies of the matches and actions it is given. It never holds IPv4 and IPv6
 * addresses at once, and never a match or action under another kind than its own. Matches and
 * actions are walked in ascending order of their kind codes everywhere.
 *
 * An operation that refuses answers with a code and changes nothing, but for copyMatches and
 * copyActions, which keep what they copied before the refusal. When memory runs out std::bad_alloc
 * is raised, and nothing is changed either.
 */
class FiltersEntry {
public:
    using MatchMap = std::map<filtersMatch_t, std::unique_ptr<Match>>;
    using ActionMap = std::map<filtersAction_t, std::unique_ptr<Action>>;

    /** Hashes (std::type_info::hash_code, low 32 bits) of the match classes that entries know. */
    static const std::set<std::uint32_t> validMatchTypes;
    /** Hashes of the action classes that entries know. */
    static const std::set<std::uint32_t> validActionTypes;
    /** Codes of the match kinds that only IPv4 packets meet. */
    static const std::set<std::uint32_t> ipv4OnlyMatchTypes;
    /** Codes of the match kinds that only IPv6 packets meet. */
    static const std::set<std::uint32_t> ipv6OnlyMatchTypes;

    /** Priority 0, no policer, no counter, no matches, no actions. */
    FiltersEntry() : FiltersEntry(0) {}
    explicit FiltersEntry(const filtersEntryId_t& id);
    /** Copies matches and actions by their kinds: a MatchDSCP is copied as a MatchToS. */
    FiltersEntry(const FiltersEntry& other);
    /**
     * Rebuilds an entry from the bytes that serialize() wrote. Any bytes are taken: those that do
     * not parse give what the parser read before it gave up, and of more than 2 GiB - 1 nothing is
     * read. @see convertFromFiltersEntryPB
     */
    explicit FiltersEntry(const std::string& bytes);
    /** Raises std::logic_error if @p s has a size but no data. */
    explicit FiltersEntry(const FiltersSerialized& s);

    /**
     * Takes over the matches and actions of @p other, which is left without any; identifier,
     * priority, policer and counter are copied. Assigned to itself, an entry loses its matches and
     * actions. There is deliberately no copy assignment.
     */
    FiltersEntry& operator=(FiltersEntry&& other);

    ~FiltersEntry() = default;

    void setId(filtersEntryId_t id) { id_ = id; }
    filtersEntryId_t getId() const { return id_; }

    void setPriority(const filtersEntryPriority_t& priority) { priority_ = priority; }
    filtersEntryPriority_t getPriority() const { return priority_; }

    /** Takes any policer; whether its stage fits is for the group to say. */
    filtersErr_t setPolicer(const policer::Policer& policer);
    const policer::Policer& getPolicer() const { return policer_; }

    /** @return FILTERS_ERR_INVALID for a counter of type COUNTER_TYPE_INVALID */
    filtersErr_t setCounter(const Counter& counter);
    const Counter& getCounter() const { return counter_; }
    /** Resets the counter to Counter(). */
    filtersErr_t deleteCounter();

    // Each template takes any class T. The library's match and action classes are known, exactly
    // those; any other class, a base class or a class of the caller's, is refused with
    // FILTERS_ERR_INVALID before an object is looked at.

    /**
     * Stores a copy of @p match, in the place of a match of the same kind.
     * @return FILTERS_ERR_INVALID if T is not known, or if IPv4 would meet IPv6
     */
    template <class T>
    filtersErr_t setMatch(const T& match);

    /**
     * Copies the values of the stored match of the same kind into @p match.
     * @return FILTERS_ERR_INVALID if T is not known or const, FILTERS_ERR_NOT_FOUND if there is none
     */
    template <class T>
    filtersErr_t getMatch(T& match) const;

    /**
     * The stored match of the class T itself, valid while the entry lives and its matches are not
     * changed; null if there is none, or if T is not known. A MatchDSCP is also found as a MatchToS.
     */
    template <class T>
    const T* findMatch() const;

    /** @return FILTERS_ERR_NOT_FOUND if there is none */
    filtersErr_t deleteMatch(filtersMatch_t kind);

    /** Whether @p match may join the stored matches: IPv4 addresses exclude IPv6 addresses. */
    template <class T>
    bool isL3CompatibleMatch(T match) const
    {
        return isL3CompatibleKind(match.getType());
    }

    /** As setMatch; actions of different kinds never exclude each other. */
    template <class T>
    filtersErr_t setAction(const T& action);

    /** As getMatch. */
    template <class T>
    filtersErr_t getAction(T& action) const;

    /** As findMatch. */
    template <class T>
    const T* findAction() const;

    /** @return FILTERS_ERR_NOT_FOUND if there is none */
    filtersErr_t deleteAction(filtersAction_t kind);

    /**
     * Adds a copy of every match of @p from, in ascending order of the keys. The kind is that of
     * the object, whatever the key; null pointers and unknown kinds are skipped.
     * @return FILTERS_ERR_INVALID at the first match that IPv4 and IPv6 exclude, or that has a
     * kind with values and is not of that kind's class; the matches before it stay
     */
    filtersErr_t copyMatches(const MatchMap& from);
    /** As copyMatches. */
    filtersErr_t copyActions(const ActionMap& from);

    /** Replaces all matches by copies of @p from, as copyMatches makes them; all or nothing. */
    filtersErr_t setMatches(const MatchMap& from);
    /** Replaces all actions by copies of @p from, as copyActions makes them; all or nothing. */
    filtersErr_t setActions(const ActionMap& from);

    /** The stored matches and actions, valid while the entry lives and is not changed. */
    const MatchMap& getMatchesRef() const { return matches_; }
    const ActionMap& getActionsRef() const { return actions_; }

    /** Compares everything, whatever the order in which matches and actions were added. */
    bool operator==(const FiltersEntry& other) const;

    /** Fills @p pb, an empty message. */
    void convertToFiltersEntryPB(FiltersEntryPB* pb) const;

    /**
     * Takes identifier, priority, policer and counter from @p pb and adds its matches and actions
     * to those that the entry holds. Numbers are cut to the width of the member. Unknown kinds are
     * skipped, matches that IPv4 and IPv6 exclude are dropped, a later element replaces an earlier
     * one of its kind, and a counter of type COUNTER_TYPE_INVALID is taken; all without notice.
     */
    void convertFromFiltersEntryPB(const FiltersEntryPB* pb);

    /** Replaces the contents of @p out by the bytes of the entry: none if they pass 2 GiB - 1. */
    void serialize(std::string* out) const;
    /** Hands the bytes of the entry to FiltersSerialized::setData. */
    void serialize(FiltersSerialized* out) const;

private:
    friend struct EntryRows;
    friend struct EntryWire;

    bool isL3CompatibleKind(filtersMatch_t kind) const;
    const Match* storedMatch(filtersMatch_t kind) const;
    const MatchDSCP* storedDSCP() const;
    const Action* storedAction(filtersAction_t kind) const;
    void storeMatch(std::unique_ptr<Match> match);
    void storeAction(std::unique_ptr<Action> action);

    filtersEntryId_t id_;
    filtersEntryPriority_t priority_ = 0;
    policer::Policer policer_;
    Counter counter_;
    MatchMap matches_;
    ActionMap actions_;
};

/**
 * Gives @p to a copy, made by its kind, of the object under each key of @p from, and frees what
 * @p to held under that key. Where there is no object, or one that cannot be copied by its kind,
 * @p to gets a null pointer. Provided for matches and for actions.
 */
template <class K, class V>
FILTERS_COMMON_PUBLIC void copy_map(std::map<K, std::unique_ptr<V>>& to,
                                    const std::map<K, std::unique_ptr<V>>& from);

// -------------------------------------------------------------------------------------- templates

template <class T>
filtersErr_t FiltersEntry::setMatch(const T& match)
{
    if constexpr (isMatchClass<T>) {
        using Class = std::remove_cv_t<T>;
        const auto& object = const_cast<const Class&>(match);
        if (!isL3CompatibleKind(object.getType()))
            return FILTERS_ERR_INVALID;
        storeMatch(std::make_unique<Class>(object));
        return FILTERS_OK;
    } else {
        return FILTERS_ERR_INVALID;
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
        // What is stored under MATCH_TOS may be of either class; both hold the byte of a MatchToS.
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
    if constexpr (isActionClass<T>) {
        using Class = std::remove_cv_t<T>;
        storeAction(std::make_unique<Class>(const_cast<const Class&>(action)));
        return FILTERS_OK;
    } else {
        return FILTERS_ERR_INVALID;
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

// Those for the library's own classes live in the library.
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

} // namespace FiltersCommon

/** Dumps the whole rule. At global scope. */
std::basic_ostream<char>& operator<<(std::basic_ostream<char>& out,
                                     const FiltersCommon::FiltersEntry& entry);

#pragma GCC visibility pop

#endif // FILTER_COMMON_FILTER_ENTRIES_H
