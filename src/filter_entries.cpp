#include "filter_entries.h"

#include "entry_additions.h"
#include "kinds.h"
#include "ordered_maps.h"
#include "policers.h"

#include <algorithm>
#include <typeinfo>
#include <utility>

namespace FiltersCommon {

// ------------------------------------------------------------------------------------- registries

namespace {

template <class T>
std::uint32_t hashOf()
{
    return static_cast<std::uint32_t>(typeid(T).hash_code());
}

template <class Kinds>
std::set<std::uint32_t> hashesOf(std::set<std::uint32_t> hashes = {})
{
    Kinds::forEach([&](auto kind) { hashes.insert(hashOf<ClassOf<decltype(kind)>>()); });
    return hashes;
}

} // namespace

// These sets are for callers; the library itself uses the lists they are made from. MatchDSCP has
// no kind of its own, but it is a class of its own.
const std::set<std::uint32_t> FiltersEntry::validMatchTypes =
    hashesOf<MatchKinds>({hashOf<MatchDSCP>()});
const std::set<std::uint32_t> FiltersEntry::validActionTypes = hashesOf<ActionKinds>();
const std::set<std::uint32_t> FiltersEntry::ipv4OnlyMatchTypes(IPV4_ONLY.begin(), IPV4_ONLY.end());
const std::set<std::uint32_t> FiltersEntry::ipv6OnlyMatchTypes(IPV6_ONLY.begin(), IPV6_ONLY.end());

// ----------------------------------------------------------------------- construction, assignment

FiltersEntry::FiltersEntry(const filtersEntryId_t& id) : id_(id) {}

FiltersEntry::FiltersEntry(const FiltersEntry& other)
    : id_(other.id_), priority_(other.priority_), policer_(other.policer_), counter_(other.counter_)
{
    copyMatches(other.matches_);
    copyActions(other.actions_);
}

FiltersEntry& FiltersEntry::operator=(FiltersEntry&& other)
{
    setPolicer(other.policer_);
    id_ = other.id_;
    priority_ = other.priority_;
    counter_ = other.counter_;
    matches_.clear();
    matches_.swap(other.matches_);
    actions_.clear();
    actions_.swap(other.actions_);
    return *this;
}

// ---------------------------------------------------------------------------- policer and counter

filtersErr_t FiltersEntry::setPolicer(const policer::Policer& policer)
{
    policer::Policer copy(policer);
    policer_ = std::move(copy);
    return FILTERS_OK;
}

filtersErr_t FiltersEntry::setCounter(const Counter& counter)
{
    if (counter.GetType() == COUNTER_TYPE_INVALID)
        return FILTERS_ERR_INVALID;
    counter_ = counter;
    return FILTERS_OK;
}

filtersErr_t FiltersEntry::deleteCounter()
{
    counter_ = Counter();
    return FILTERS_OK;
}

// ---------------------------------------------------------------------------- matches and actions

namespace {

template <class Map>
auto findByKind(const Map& map, typename Map::key_type kind)
{
    const auto found = map.find(kind);
    return found == map.end() ? nullptr : found->second.get();
}

template <class Map>
filtersErr_t deleteByKind(Map& map, typename Map::key_type kind)
{
    return map.erase(kind) == 0 ? FILTERS_ERR_NOT_FOUND : FILTERS_OK;
}

/**
 * Adds copies of the objects in @p from to @p copies, each made by its kind, up to the first one
 * that is not of its kind's class or that @p admits refuses.
 */
template <class Kinds, class Map, class Admits>
filtersErr_t addCopies(Map& copies, const Map& from, Admits admits)
{
    return joinEach<Kinds>(from, [&](auto kind, const auto& object) {
        auto copy = admits(object.getType()) ? copyAs<ClassOf<decltype(kind)>>(object) : nullptr;
        if (copy == nullptr)
            return FILTERS_ERR_INVALID;
        storeByKind(copies, std::move(copy));
        return FILTERS_OK;
    });
}

/** Adds copies of matches that are to be combined with those in @p held. */
filtersErr_t addMatchCopies(FiltersEntry::MatchMap& copies, const FiltersEntry::MatchMap& from,
                            const FiltersEntry::MatchMap& held)
{
    return addCopies<MatchKinds>(copies, from, [&](filtersMatch_t kind) {
        return isL3Compatible(kind, held) && isL3Compatible(kind, copies);
    });
}

filtersErr_t addActionCopies(FiltersEntry::ActionMap& copies, const FiltersEntry::ActionMap& from)
{
    return addCopies<ActionKinds>(copies, from, [](filtersAction_t) { return true; });
}

} // namespace

bool FiltersEntry::isL3CompatibleKind(filtersMatch_t kind) const
{
    return isL3Compatible(kind, matches_);
}

const Match* FiltersEntry::storedMatch(filtersMatch_t kind) const
{
    return findByKind(matches_, kind);
}

const MatchDSCP* FiltersEntry::storedDSCP() const
{
    const Match* stored = storedMatch(MATCH_TOS);
    return stored == nullptr ? nullptr : as<MatchDSCP>(*stored);
}

const Action* FiltersEntry::storedAction(filtersAction_t kind) const
{
    return findByKind(actions_, kind);
}

void FiltersEntry::storeMatch(std::unique_ptr<Match> match)
{
    storeByKind(matches_, std::move(match));
}

void FiltersEntry::storeAction(std::unique_ptr<Action> action)
{
    storeByKind(actions_, std::move(action));
}

filtersErr_t FiltersEntry::deleteMatch(filtersMatch_t kind) { return deleteByKind(matches_, kind); }

filtersErr_t FiltersEntry::deleteAction(filtersAction_t kind)
{
    return deleteByKind(actions_, kind);
}

filtersErr_t FiltersEntry::copyMatches(const MatchMap& from)
{
    MatchMap copies;
    const filtersErr_t result = addMatchCopies(copies, from, matches_);
    moveNodes(matches_, copies);
    return result;
}

filtersErr_t FiltersEntry::copyActions(const ActionMap& from)
{
    ActionMap copies;
    const filtersErr_t result = addActionCopies(copies, from);
    moveNodes(actions_, copies);
    return result;
}

filtersErr_t FiltersEntry::setMatches(const MatchMap& from)
{
    MatchMap copies;
    const filtersErr_t result = addMatchCopies(copies, from, {});
    if (result == FILTERS_OK)
        matches_.swap(copies);
    return result;
}

filtersErr_t FiltersEntry::setActions(const ActionMap& from)
{
    ActionMap copies;
    const filtersErr_t result = addActionCopies(copies, from);
    if (result == FILTERS_OK)
        actions_.swap(copies);
    return result;
}

// --------------------------------------------------------------------------------------- equality

namespace {

/** Whether both maps, which are ordered by kind, hold equal objects under the same kinds. */
template <class Map>
bool sameByKind(const Map& mine, const Map& theirs)
{
    return std::equal(mine.begin(), mine.end(), theirs.begin(), [](const auto& a, const auto& b) {
        return a.first == b.first && *b.second == *a.second;
    });
}

} // namespace

bool FiltersEntry::operator==(const FiltersEntry& other) const
{
    return id_ == other.id_ && priority_ == other.priority_ &&
           samePolicer(policer_, other.policer_) && counter_ == other.counter_ &&
           matches_.size() == other.matches_.size() && actions_.size() == other.actions_.size() &&
           sameByKind(matches_, other.matches_) && sameByKind(actions_, other.actions_);
}

// --------------------------------------------------------------------------------------- copy_map

namespace {

template <class Kinds, class Base>
std::unique_ptr<Base> copyByKind(const Base& object)
{
    return Kinds::dispatch(object.getType(), std::unique_ptr<Base>(), [&](auto kind) {
        return std::unique_ptr<Base>(copyAs<ClassOf<decltype(kind)>>(object));
    });
}

template <class V>
using KindsOf = std::conditional_t<std::is_same_v<V, Match>, MatchKinds, ActionKinds>;

} // namespace

template <class K, class V>
void copy_map(std::map<K, std::unique_ptr<V>>& to, const std::map<K, std::unique_ptr<V>>& from)
{
    std::map<K, std::unique_ptr<V>> copies;
    for (const auto& [key, object] : from)
        copies.emplace_hint(copies.end(), key,
                            object == nullptr ? nullptr : copyByKind<KindsOf<V>>(*object));
    moveNodes(to, copies);
}

// --------------------------------------------------------------------------------- instantiations

#define FILTERS_COMMON_INSTANTIATE(kind, Class, Values)                                            \
    template filtersErr_t FiltersEntry::setMatch(const Class&);                                    \
    template filtersErr_t FiltersEntry::getMatch(Class&) const;                                    \
    template bool FiltersEntry::isL3CompatibleMatch(Class) const;
FILTERS_COMMON_EACH_MATCH_KIND(FILTERS_COMMON_INSTANTIATE)
FILTERS_COMMON_INSTANTIATE(MATCH_TOS, MatchDSCP, MatchToS)
#undef FILTERS_COMMON_INSTANTIATE

#define FILTERS_COMMON_INSTANTIATE(kind, Class, Values)                                            \
    template filtersErr_t FiltersEntry::setAction(const Class&);                                   \
    template filtersErr_t FiltersEntry::getAction(Class&) const;
FILTERS_COMMON_EACH_ACTION_KIND(FILTERS_COMMON_INSTANTIATE)
#undef FILTERS_COMMON_INSTANTIATE

template void copy_map(FiltersEntry::MatchMap&, const FiltersEntry::MatchMap&);
template void copy_map(FiltersEntry::ActionMap&, const FiltersEntry::ActionMap&);

} // namespace FiltersCommon
