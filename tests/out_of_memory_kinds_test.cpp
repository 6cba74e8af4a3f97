/**
 * Every class of match and action when memory runs out: alone, in an entry, and as a message.
 */
#include "entry_maps.h"
#include "out_of_memory.h"
#include "samples.h"

#include "filter_actions.pb.h"
#include "filter_matches.pb.h"

#include <gtest/gtest.h>

#include <list>
#include <memory>
#include <type_traits>
#include <typeinfo>
#include <utility>

namespace {

using namespace FiltersCommon;
using namespace FiltersCommon::test;

/** Whether an object of the class allocates. */
template <class T>
constexpr bool HOLDS_A_LIST =
    std::is_base_of_v<MatchPorts, T> || std::is_base_of_v<MatchVlanId, T> ||
    std::is_base_of_v<ActionPorts, T> || std::is_same_v<ActionRedirect, T>;

/** Whether an entry that holds nothing else allocates a block for it. */
template <class T>
constexpr bool NEEDS_A_BLOCK = sizeof(T) > sizeof(KindMap<Match>) - sizeof(CodeSet<filtersMatch_t>);

/** Whether its message allocates. */
template <class T>
constexpr bool WRITES_BYTES =
    std::is_base_of_v<MatchMac, T> || std::is_base_of_v<MatchIPv4, T> ||
    std::is_base_of_v<MatchIPv6, T> || std::is_same_v<ActionReplaceDstMac, T> ||
    std::is_same_v<ActionReplaceSrcMac, T>;

/** Expects std::bad_alloc if the operation @p allocates, and no allocation otherwise. */
template <class Operation>
void expectBadAllocIf(bool allocates, Operation operation)
{
    if (allocates)
        expectBadAlloc(operation);
    else
        expectNoAllocation(operation);
}

/** Like expectUnchanged, if the operation @p allocates. */
template <class Object, class Operation>
void expectUnchangedIf(bool allocates, const Object& before, Operation operation)
{
    if (allocates) {
        expectUnchanged(before, operation);
    } else {
        Object object(before);
        expectNoAllocation([&] { operation(object); });
    }
}

/** Calls @p function with two objects of each class that differ in their values. */
template <class Function>
void withEachClass(Function function)
{
    const auto call = [&](auto row) {
        using Class = typename decltype(row)::Class;
        SCOPED_TRACE(typeid(Class).name());
        const auto variants = row.variants();
        function(variants.front(), variants.back());
    };
    MatchClasses::forEach(call);
    ActionClasses::forEach(call);
}

// -------------------------------------------------------------------------- the object by itself

TEST(OutOfMemory, MakingAnObjectOfAnyClassRaisesBadAlloc)
{
    const auto make = [](auto row) {
        using Class = typename decltype(row)::Class;
        SCOPED_TRACE(typeid(Class).name());
        expectBadAllocIf(HOLDS_A_LIST<Class>, [&] { row.sample(); });
        expectBadAlloc([&] { std::make_unique<Class>(row.sample()); });
    };
    MatchClasses::forEach(make);
    ActionClasses::forEach(make);
    // Constructors that the rows do not use.
    expectBadAlloc([] { MatchIngressPorts(std::list<port_type_t>{PORT_TYPE_CPU}); });
    expectBadAlloc([] { MatchExternalVlanId(7); });
    expectBadAlloc([] { MatchInternalVlanId(7); });
}

TEST(OutOfMemory, CopyingAnObjectOfAnyClassRaisesBadAlloc)
{
    withEachClass([](const auto& sample, const auto& other) {
        using Class = std::decay_t<decltype(sample)>;
        expectBadAllocIf(HOLDS_A_LIST<Class>, [&] { Class copy(sample); });
        expectUnchangedIf(HOLDS_A_LIST<Class>, sample, [&](Class& object) { object = other; });
    });
}

TEST(OutOfMemory, MovingAndComparingNeedNone)
{
    withEachClass([](const auto& sample, const auto& other) {
        using Class = std::decay_t<decltype(sample)>;
        Class first(sample);
        Class second(other);
        expectNoAllocation([&] {
            Class third(std::move(first));
            first = std::move(second);
            second = std::move(third);
        });
        expectSame(first, other);
        expectSame(second, sample);
        expectNoAllocation([&] {
            EXPECT_TRUE(first == other);
            EXPECT_TRUE(second == sample);
        });
    });
}

TEST(OutOfMemory, GettingAListRaisesBadAlloc)
{
    const std::list<limid_t> ports = sampleValue<std::list<limid_t>>(0);
    const MatchIngressPorts ingress(ports);
    const MatchIngressPorts excluded(std::list<port_type_t>{PORT_TYPE_CPU});
    const MatchExternalVlanId ids({1, 2});
    const ActionBlockEgressPorts blocked(ports);
    const ActionRedirect redirect(ports.front());
    expectBadAlloc([&] { ingress.getPorts(); }, 2);
    expectBadAlloc([&] { excluded.getExcludedPortTypes(); });
    expectBadAlloc([&] { ids.getVlanIds(); }, 2);
    expectBadAlloc([&] { blocked.getPorts(); }, 2);
    expectBadAlloc([&] { redirect.getRedirectPorts(); });
}

TEST(OutOfMemory, SettingPortsLeavesTheOldOnes)
{
    const auto variants =
        Row<22, MATCH_EGRESS_PORTS, MatchEgressPorts, std::list<limid_t>>::variants();
    for (const MatchEgressPorts& other : variants)
        expectUnchangedIf(!other.getPortsRef().empty(), variants.front(), [&](auto& match) {
            EXPECT_EQ(match.setPorts(other.getPortsRef()), FILTERS_OK);
        });
    MatchIngressPorts excluded(std::list<port_type_t>{PORT_TYPE_CPU});
    expectNoAllocation([&] {
        EXPECT_EQ(excluded.setPorts(variants.front().getPortsRef()), FILTERS_ERR_BAD_PARAM);
    });
}

// --------------------------------------------------------------------------------------- messages

MatchPB written(const Match& match)
{
    MatchPB pb;
    match.convertToMatchPB(&pb);
    return pb;
}

ActionPB written(const Action& action)
{
    ActionPB pb;
    action.convertToActionPB(&pb);
    return pb;
}

void read(Match& match, const MatchPB& pb) { match.convertFromMatchPB(&pb); }
void read(Action& action, const ActionPB& pb) { action.convertFromActionPB(&pb); }

TEST(OutOfMemory, AMessageOfAnyClassRaisesBadAlloc)
{
    withEachClass([](const auto& sample, const auto&) {
        using Class = std::decay_t<decltype(sample)>;
        const Class before(sample);
        expectBadAllocIf(HOLDS_A_LIST<Class> || WRITES_BYTES<Class>, [&] { written(sample); });
        expectSame(sample, before);
    });
    expectBadAlloc([] { written(MatchIngressPorts(std::list<port_type_t>{PORT_TYPE_CPU})); });
}

TEST(OutOfMemory, ReadingAMessageLeavesTheObject)
{
    withEachClass([](const auto& sample, const auto& other) {
        using Class = std::decay_t<decltype(sample)>;
        const auto pb = written(sample);
        expectUnchangedIf(HOLDS_A_LIST<Class>, other, [&](Class& object) { read(object, pb); });
    });
}

TEST(OutOfMemory, ReadingAllListsOfAMessageLeavesTheOldOnes)
{
    MatchPB pb;
    pb.set_type_(0);
    for (const std::uint32_t number : {5u, 6u, 7u}) {
        pb.add_ports_(number);
        pb.add_excluded_port_types_(number);
        pb.add_vlan_id_(number);
    }
    const std::list<limid_t> ports = sampleValue<std::list<limid_t>>(0);
    const auto readAll = [&](auto& match) { read(match, pb); };
    expectUnchanged(MatchIngressPorts(ports), readAll, 6);
    expectUnchanged(MatchEgressPorts(ports), readAll, 3);
    expectUnchanged(MatchExternalVlanId({1, 2}), readAll, 3);
    expectUnchanged(MatchInternalVlanId(9), readAll, 3);
}

// ---------------------------------------------------------------------------------------- entries

filtersErr_t set(FiltersEntry& entry, const Matches& all) { return entry.setMatches(all); }
filtersErr_t set(FiltersEntry& entry, const Actions& all) { return entry.setActions(all); }
filtersErr_t copy(FiltersEntry& entry, const Matches& all) { return entry.copyMatches(all); }
filtersErr_t copy(FiltersEntry& entry, const Actions& all) { return entry.copyActions(all); }

template <class T>
filtersErr_t setFrom(FiltersEntry& entry, const FiltersEntry& other)
{
    return isMatchClass<T> ? entry.setMatchesFrom(other) : entry.setActionsFrom(other);
}

template <class T>
filtersErr_t copyFrom(FiltersEntry& entry, const FiltersEntry& other)
{
    return isMatchClass<T> ? entry.copyMatchesFrom(other) : entry.copyActionsFrom(other);
}

template <class T>
filtersErr_t set(FiltersEntry& entry, const T& object)
{
    if constexpr (isMatchClass<T>)
        return entry.setMatch(object);
    else
        return entry.setAction(object);
}

template <class T>
filtersErr_t get(const FiltersEntry& entry, T& object)
{
    if constexpr (isMatchClass<T>)
        return entry.getMatch(object);
    else
        return entry.getAction(object);
}

template <class T>
filtersErr_t erase(FiltersEntry& entry)
{
    if constexpr (isMatchClass<T>)
        return entry.deleteMatch(T::KIND);
    else
        return entry.deleteAction(T::KIND);
}

template <class T>
auto mapOf(const T& object)
{
    std::conditional_t<isMatchClass<T>, Matches, Actions> map;
    put(map, object.getType(), object);
    return map;
}

template <class T>
FiltersEntry entryWith(const T& object)
{
    FiltersEntry entry(7);
    EXPECT_EQ(set(entry, object), FILTERS_OK);
    return entry;
}

TEST(OutOfMemory, AnEntryTakesAnObjectOfAnyClassOrStaysAsItWas)
{
    withEachClass([](const auto& sample, const auto& other) {
        using Class = std::decay_t<decltype(sample)>;
        const auto map = mapOf(sample);
        const FiltersEntry source = entryWith(sample);
        FiltersEntry full = entryWith(sample); // of all kinds but this one
        fill(full);
        EXPECT_EQ(erase<Class>(full), FILTERS_OK);
        const struct {
            FiltersEntry entry;
            bool growsBySetting, growsByCopying;
        } cases[] = {{FiltersEntry(7), NEEDS_A_BLOCK<Class>, NEEDS_A_BLOCK<Class>},
                     {entryWith(other), false, NEEDS_A_BLOCK<Class>},
                     {full, true, true}};
        for (const auto& before : cases) {
            const auto expectTaken = [&](bool needsBlock, auto operation) {
                expectUnchangedIf(
                    HOLDS_A_LIST<Class> || needsBlock, before.entry,
                    [&](FiltersEntry& entry) { EXPECT_EQ(operation(entry), FILTERS_OK); });
            };
            expectTaken(before.growsBySetting, [&](auto& entry) { return set(entry, sample); });
            expectTaken(before.growsByCopying, [&](auto& entry) { return copy(entry, map); });
            expectTaken(before.growsByCopying,
                        [&](auto& entry) { return copyFrom<Class>(entry, source); });
            expectTaken(NEEDS_A_BLOCK<Class>, [&](auto& entry) { return set(entry, map); });
            expectTaken(NEEDS_A_BLOCK<Class>,
                        [&](auto& entry) { return setFrom<Class>(entry, source); });
        }
    });
}

TEST(OutOfMemory, AnEntryGivesAnObjectOfAnyClassOrLeavesIt)
{
    withEachClass([](const auto& sample, const auto& other) {
        using Class = std::decay_t<decltype(sample)>;
        const FiltersEntry entry = entryWith(sample);
        expectUnchangedIf(HOLDS_A_LIST<Class>, other,
                          [&](Class& object) { EXPECT_EQ(get(entry, object), FILTERS_OK); });
        expectSame(entry, entryWith(sample));
    });
}

TEST(OutOfMemory, AskingWhetherAMatchIsCompatibleCopiesIt)
{
    const FiltersEntry entry(7);
    MatchClasses::forEach([&](auto row) {
        using Class = typename decltype(row)::Class;
        SCOPED_TRACE(typeid(Class).name());
        const Class sample = row.sample();
        expectBadAllocIf(HOLDS_A_LIST<Class>, [&] { entry.isL3CompatibleMatch(sample); });
    });
}

TEST(OutOfMemory, AMapIsCopiedOrStaysAsItWas)
{
    withEachClass([](const auto& sample, const auto& other) {
        const auto expectCopied = [&](const auto& from) {
            for (const Failing failing : FAILINGS) {
                auto to = mapOf(other);
                const auto unchanged = [&] {
                    ASSERT_EQ(keysOf(to), keysOf(from));
                    EXPECT_TRUE(*to.begin()->second == *mapOf(other).begin()->second);
                };
                EXPECT_GE(failEachAllocation(
                              failing, [&] { copy_map(to, from); }, unchanged),
                          2u);
                EXPECT_TRUE(*to.begin()->second == *from.begin()->second);
            }
        };
        expectCopied(mapOf(sample));
        const FiltersEntry entry = entryWith(sample);
        if constexpr (isMatchClass<std::decay_t<decltype(sample)>>)
            expectCopied(entry.getMatchesRef());
        else
            expectCopied(entry.getActionsRef());
    });
}

} // namespace
