#include "filter_entries.h"

#include "entry_additions.h"
#include "kind_map.h"
#include "ordered_maps.h"
#include "policers.h"

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
    : id_(other.id_), priority_(other.priority_), policer_(other.policer_),
      counter_(other.counter_), matches_(other.matches_), actions_(other.actions_)
{}

FiltersEntry::FiltersEntry(Taken, FiltersEntry& other)
    : id_(other.id_), priority_(other.priority_), policer_(other.policer_), counter_(other.counter_)
{
    matches_ = std::move(other.matches_);
    actions_ = std::move(other.actions_);
}

FiltersEntry& FiltersEntry::operator=(FiltersEntry&& other)
{
    setPolicer(other.policer_);
    id_ = other.id_;
    priority_ = other.priority_;
    counter_ = other.counter_;
    matches_ = std::move(other.matches_);
    actions_ = std::move(other.actions_);
    return *this;
}

FiltersEntry::~FiltersEntry() = default;

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

template <class Base>
const Base* findByKind(const KindMap<Base>& map, typename KindMap<Base>::Code kind)
{
    const auto found = map.find(kind);
    return found == map.end() ? nullptr : found->second;
}

template <class Base>
filtersErr_t deleteByKind(KindMap<Base>& map, typename KindMap<Base>::Code kind)
{
    return map.erase(kind) == 0 ? FILTERS_ERR_NOT_FOUND : FILTERS_OK;
}

/**
 * Stages copies of the objects in @p from, each made by its kind, up to the first one that is not
 * of its kind's class or that @p admits refuses.
 */
template <class Base, class Map, class Admits>
filtersErr_t stageCopies(KindStage<Base>& copies, const Map& from, Admits admits)
{
    return joinEach<KindsOf<Base>>(from, [&](auto kind, const auto& object) {
        if (!admits(object.getType()))
            return FILTERS_ERR_INVALID;
        using Class = ClassOf<decltype(kind)>;
        auto copy = copyAs<Class>(object);
        if (!copy)
            return FILTERS_ERR_INVALID;
        copies.template make<Class>(std::move(*copy));
        return FILTERS_OK;
    });
}

/** Stages copies of matches that are to be combined with those of the kinds @p held. */
template <class Map>
filtersErr_t stageMatches(KindStage<Match>& copies, const Map& from, CodeSet<filtersMatch_t> held)
{
    return stageCopies(copies, from, [&](filtersMatch_t kind) {
        return isL3Compatible(kind, held | copies.kinds());
    });
}

template <class Map>
filtersErr_t stageActions(KindStage<Action>& copies, const Map& from)
{
    return stageCopies(copies, from, [](filtersAction_t) { return true; });
}

template <class Map>
filtersErr_t addMatches(KindMap<Match>& matches, const Map& from)
{
    KindStage<Match> copies;
    const filtersErr_t result = stageMatches(copies, from, matches.kinds());
    matches.take(copies);
    return result;
}

template <class Map>
filtersErr_t addActions(KindMap<Action>& actions, const Map& from)
{
    KindStage<Action> copies;
    const filtersErr_t result = stageActions(copies, from);
    actions.take(copies);
    return result;
}

/** Replaces the contents of @p map by those of the stage if @p result is FILTERS_OK. */
template <class Base>
filtersErr_t replaceIf(filtersErr_t result, KindMap<Base>& map, KindStage<Base>& stage)
{
    if (result == FILTERS_OK) {
        KindMap<Base> fresh;
        fresh.take(stage);
        map = std::move(fresh);
    }
    return result;
}

template <class Map>
filtersErr_t replaceMatches(KindMap<Match>& matches, const Map& from)
{
    KindStage<Match> copies;
    return replaceIf(stageMatches(copies, from, {}), matches, copies);
}

template <class Map>
filtersErr_t replaceActions(KindMap<Action>& actions, const Map& from)
{
    KindStage<Action> copies;
    return replaceIf(stageActions(copies, from), actions, copies);
}

} // namespace

bool FiltersEntry::isL3CompatibleKind(filtersMatch_t kind) const
{
    return isL3Compatible(kind, matches_.kinds());
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

filtersErr_t FiltersEntry::deleteMatch(filtersMatch_t kind) { return deleteByKind(matches_, kind); }

filtersErr_t FiltersEntry::deleteAction(filtersAction_t kind)
{
    return deleteByKind(actions_, kind);
}

filtersErr_t FiltersEntry::copyMatches(const MatchMap& from) { return addMatches(matches_, from); }

filtersErr_t FiltersEntry::copyActions(const ActionMap& from) { return addActions(actions_, from); }

filtersErr_t FiltersEntry::copyMatchesFrom(const FiltersEntry& other)
{
    return addMatches(matches_, other.matches_);
}

filtersErr_t FiltersEntry::copyActionsFrom(const FiltersEntry& other)
{
    return addActions(actions_, other.actions_);
}

filtersErr_t FiltersEntry::setMatches(const MatchMap& from)
{
    return replaceMatches(matches_, from);
}

filtersErr_t FiltersEntry::setActions(const ActionMap& from)
{
    return replaceActions(actions_, from);
}

filtersErr_t FiltersEntry::setMatchesFrom(const FiltersEntry& other)
{
    return replaceMatches(matches_, other.matches_);
}

filtersErr_t FiltersEntry::setActionsFrom(const FiltersEntry& other)
{
    return replaceActions(actions_, other.actions_);
}

// --------------------------------------------------------------------------------------- equality

bool FiltersEntry::operator==(const FiltersEntry& other) const
{
    return id_ == other.id_ && priority_ == other.priority_ &&
           samePolicer(policer_, other.policer_) && counter_ == other.counter_ &&
           matches_ == other.matches_ && actions_ == other.actions_;
}

// --------------------------------------------------------------------------------------- copy_map

namespace {

template <class Base>
std::unique_ptr<Base> copyByKind(const Base& object)
{
    using Pointer = std::unique_ptr<Base>;
    return KindsOf<Base>::dispatch(object.getType(), Pointer(), [&](auto kind) {
        using Class = ClassOf<decltype(kind)>;
        auto copy = copyAs<Class>(object);
        return copy ? Pointer(new Class(std::move(*copy))) : Pointer();
    });
}

template <class K, class V, class Map>
void copyObjects(std::map<K, std::unique_ptr<V>>& to, const Map& from)
{
    std::map<K, std::unique_ptr<V>> copies;
    for (const auto& [key, object] : from)
        copies.emplace_hint(copies.end(), key,
                            object == nullptr ? nullptr : copyByKind<V>(*object));
    moveNodes(to, copies);
}

} // namespace

template <class K, class V>
void copy_map(std::map<K, std::unique_ptr<V>>& to, const std::map<K, std::unique_ptr<V>>& from)
{
    copyObjects(to, from);
}

template <class V>
void copy_map(std::map<typename KindMap<V>::Code, std::unique_ptr<V>>& to, const KindMap<V>& from)
{
    copyObjects(to, from);
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
template void copy_map(FiltersEntry::MatchMap&, const KindMap<Match>&);
template void copy_map(FiltersEntry::ActionMap&, const KindMap<Action>&);

template class KindMap<Match>;
template class KindMap<Action>;

} // namespace FiltersCommon
