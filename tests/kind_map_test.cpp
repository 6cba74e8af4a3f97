#include "kind_map_support.h"

#include "filter_entries.h"
#include "kind_map.h"
#include "test_allocator.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

// Every set of kinds and every order of them is tried: there are 64 and 720.

namespace FiltersCommon::test {
namespace {

static_assert(std::is_same_v<Map::const_iterator::iterator_category, std::input_iterator_tag>);
static_assert(std::is_const_v<std::remove_reference_t<decltype(*std::declval<Map&>().begin())>>);

// ------------------------------------------------------------------------------------ expectations

/** How many allocations it takes to copy an object of the kind into the map. */
std::size_t allocationsFor(const Filled& filled, Code kind)
{
    return nodesOf({kind}) + (filled.capacityWith(kind) == filled.capacity() ? 0 : 1);
}

/** Has each of the @p count allocations of an operation fail, which must change nothing. */
template <class Operation>
void expectUnchanged(std::size_t count, const Filled& filled, Operation operation)
{
    const std::size_t objects = Living::size();
    const auto check = [&] {
        EXPECT_EQ(Living::size(), objects);
        expectHolds(filled.map, filled.model);
    };
    EXPECT_EQ(failEachAllocation(operation, check), count);
}

// ---------------------------------------------------------------------- putting, erasing, clearing

TEST(KindMap, HoldsWhatWasPutInWhateverOrder)
{
    std::vector<Code> order(ALL.begin(), ALL.end());
    do {
        Map map;
        Model model;
        for (ValueOf* const valueOf : {firstOf, secondOf}) {
            for (const Code kind : order) {
                put(map, kind, valueOf);
                model[kind] = valueOf(kind);
                expectHolds(map, model);
            }
        }
        for (const Code kind : order) {
            EXPECT_EQ(map.erase(kind), 1u);
            model.erase(kind);
            expectHolds(map, model);
        }
        ASSERT_EQ(Living::size(), 0u);
        ASSERT_FALSE(HasFailure());
    } while (std::next_permutation(order.begin(), order.end()));
}

TEST(KindMap, HoldsEachObjectOnceAndFreesAllWhenCleared)
{
    withFilled([](Filled& filled) {
        expectHolds(filled.map, filled.model);
        EXPECT_EQ(Living::size(), filled.model.size());

        const Codes kinds = filled.map.kinds();
        const std::size_t capacity = filled.capacity();
        const Allocations freed = freedBy([&] {
            filled.map.clear();
            filled.map.clear();
        });
        EXPECT_EQ(freed.blocks, nodesOf(kinds) + (capacity == 0 ? 0 : 1));
        EXPECT_EQ(freed.bytes, nodeBytesOf(kinds) + capacity);
        EXPECT_EQ(Living::size(), 0u);
        expectHolds(filled.map, {});
    });
}

TEST(KindMap, TakesAnObjectOfEachKindAndAllocatesOnlyWhatItMust)
{
    withFilledAndKinds([](Filled& filled, Code kind) {
        const std::size_t count = allocationsFor(filled, kind);
        const std::size_t capacity = filled.capacityWith(kind);
        withItem(kind, secondOf, [&](const auto& item) {
            EXPECT_EQ(allocationsOf([&] { filled.map.put(item); }).count, count);
        });
        filled.model[kind] = secondOf(kind);
        EXPECT_EQ(Living::size(), filled.model.size());
        expectHolds(filled.map, filled.model);
        const Codes kinds = filled.map.kinds();
        EXPECT_EQ(freedBy([&] { filled.map.clear(); }).bytes, nodeBytesOf(kinds) + capacity);
    });
}

TEST(KindMap, IsUnchangedIfAnObjectCannotBeTaken)
{
    withFilledAndKinds([](Filled& filled, Code kind) {
        withItem(kind, secondOf, [&](const auto& item) {
            copiesAdmitted = 0;
            EXPECT_THROW(filled.map.put(item), Refused);
            copiesAdmitted = SIZE_MAX;
            expectHolds(filled.map, filled.model);
            expectUnchanged(allocationsFor(filled, kind), filled, [&] { filled.map.put(item); });
        });
    });
}

TEST(KindMap, TakesACopyOfItsOwnObject)
{
    withFilledAndKinds([](Filled& filled, Code kind) {
        Kinds::visit(kind, [&](auto type) {
            const auto own = filled.map.find(kind);
            if (own != filled.map.end())
                filled.map.put(static_cast<const ClassOf<decltype(type)>&>(*own->second));
        });
        expectHolds(filled.map, filled.model);
    });
}

TEST(KindMap, GivesUpAnObjectOfEachKind)
{
    withFilledAndKinds([](Filled& filled, Code kind) {
        const Codes kinds = filled.map.kinds();
        const Codes left = kinds - Codes{kind};
        const bool freesBlock = needBlock(kinds) && !needBlock(left);
        for (const std::size_t expected : {filled.model.erase(kind), std::size_t{0}}) {
            std::size_t erased = 0;
            const Allocations freed = freedBy([&] { erased = filled.map.erase(kind); });
            EXPECT_EQ(erased, expected);
            EXPECT_EQ(freed.blocks, expected * (nodesOf({kind}) + (freesBlock ? 1 : 0)));
            EXPECT_EQ(Living::size(), filled.model.size());
            expectHolds(filled.map, filled.model);
        }
    });
}

TEST(KindMap, UsesTheRoomOfAnErasedObjectAgain)
{
    withFilledAndKinds([](Filled& filled, Code kind) {
        if (filled.map.erase(kind) == 0 || !needBlock(filled.map.kinds()))
            return;
        withItem(kind, firstOf, [&](const auto& item) {
            EXPECT_EQ(allocationsOf([&] { filled.map.put(item); }).count, nodesOf({kind}));
        });
        expectHolds(filled.map, filled.model);
    });
}

// --------------------------------------------------------------------------------- copying, moving

TEST(KindMap, IsCopiedIntoABlockAsLargeAsItsObjects)
{
    withFilled([](Filled& filled) {
        const Codes kinds = filled.map.kinds();
        const std::size_t blocks = needBlock(kinds) ? 1 : 0;
        std::unique_ptr<Map> copy;
        const Allocations made = allocationsOf([&] { copy.reset(new Map(filled.map)); });
        EXPECT_EQ(made.count, 1 + nodesOf(kinds) + blocks);
        EXPECT_EQ(made.bytes, sizeof(Map) + nodeBytesOf(kinds) + blocks * sizeOf(kinds));
        EXPECT_EQ(Living::size(), 2 * kinds.size());
        expectHolds(filled.map, filled.model);
        filled.map.clear();
        expectHolds(*copy, filled.model);
    });
}

TEST(KindMap, IsCopiedAsAWholeOrNotAtAll)
{
    withFilled([](Filled& filled) {
        const Codes kinds = filled.map.kinds();
        const auto copy = [&] { const Map made(filled.map); };
        expectUnchanged(nodesOf(kinds) + (needBlock(kinds) ? 1 : 0), filled, copy);
        const std::size_t live = allocationTotals().live;
        for (std::size_t admitted = 0; admitted < kinds.size(); ++admitted) {
            copiesAdmitted = admitted;
            EXPECT_THROW(copy(), Refused);
            EXPECT_EQ(Living::size(), kinds.size());
            EXPECT_EQ(allocationTotals().live, live);
        }
        copiesAdmitted = SIZE_MAX;
        expectHolds(filled.map, filled.model);
    });
}

TEST(KindMap, IsMovedOverEachOtherWithoutAllocating)
{
    withFilledAndSubsets([](Filled& filled, Codes kinds) {
        Filled other(kinds, From::PUT);
        EXPECT_EQ(allocationsOf([&] { other.map = std::move(filled.map); }).count, 0u);
        EXPECT_EQ(Living::size(), filled.model.size());
        expectHolds(other.map, filled.model);
        expectHolds(filled.map, {});
        put(filled.map, MIDDLE, firstOf);
        expectHolds(filled.map, modelOf({MIDDLE}, firstOf));
    });
}

TEST(KindMap, KeepsTheRoomInItsBlockWhenItIsMoved)
{
    withFilledAndKinds([](Filled& filled, Code kind) {
        const std::size_t count = allocationsFor(filled, kind);
        Map moved;
        moved = std::move(filled.map);
        withItem(kind, secondOf, [&](const auto& item) {
            EXPECT_EQ(allocationsOf([&] { moved.put(item); }).count, count);
        });
        filled.model[kind] = secondOf(kind);
        expectHolds(moved, filled.model);
    });
}

TEST(KindMap, IsEmptyAfterAMoveToItself)
{
    withFilled([](Filled& filled) {
        Map& same = filled.map;
        filled.map = std::move(same);
        EXPECT_EQ(Living::size(), 0u);
        expectHolds(filled.map, {});
    });
}

TEST(KindMap, EqualsMapsOfEqualObjectsOfTheSameKinds)
{
    withFilledAndSubsets([](Filled& filled, Codes kinds) {
        const Filled other(kinds, From::PUT);
        EXPECT_EQ(filled.map == other.map, filled.map.kinds() == kinds);
    });
    withFilledAndKinds([](Filled& filled, Code kind) {
        const Map before(filled.map);
        put(filled.map, kind, secondOf);
        EXPECT_EQ(filled.map == before, kind == BARE && before.count(kind) != 0);
    });
}

// ----------------------------------------------------------------------------------------- stages

TEST(KindStage, KeepsTheLastObjectOfEachKind)
{
    withSubsets([](Codes kinds) {
        {
            Stage stage;
            EXPECT_EQ(stage.kinds(), Codes());
            make(stage, ALL, firstOf);
            EXPECT_EQ(stage.kinds(), ALL);
            make(stage, kinds, secondOf);
            EXPECT_EQ(stage.kinds(), ALL);
            EXPECT_EQ(Living::size(), ALL.size());
            Map map;
            map.take(stage);
            Model model = modelOf(kinds, secondOf);
            model.merge(modelOf(ALL, firstOf));
            expectHolds(map, model);
        }
        EXPECT_EQ(Living::size(), 0u);
    });
}

TEST(KindStage, DestroysWhatIsLeft)
{
    withSubsets([](Codes kinds) {
        const std::size_t live = allocationTotals().live;
        {
            Stage stage;
            make(stage, kinds, firstOf);
            EXPECT_EQ(stage.kinds(), kinds);
            EXPECT_EQ(Living::size(), kinds.size());
        }
        EXPECT_EQ(Living::size(), 0u);
        EXPECT_EQ(allocationTotals().live, live);
    });
}

TEST(KindStage, LosesTheObjectOfAKindIfAnotherCannotBeMade)
{
    Stage stage;
    make(stage, ALL, firstOf);
    Codes left = ALL;
    for (const Code kind : ALL) {
        withItem(kind, firstOf, [&](const auto& item) {
            using Class = std::decay_t<decltype(item)>;
            copiesAdmitted = 0;
            EXPECT_THROW(stage.make<Class>(item), Refused);
            copiesAdmitted = SIZE_MAX;
        });
        left.erase(kind);
        EXPECT_EQ(stage.kinds(), left);
        EXPECT_EQ(Living::size(), left.size());
    }
}

TEST(KindStage, IsTakenIntoAMapWithOneAllocationAtMost)
{
    for (const bool isInTwoSteps : {false, true}) {
        withFilledAndSubsets([=](Filled& filled, Codes kinds) {
            const Codes all = filled.map.kinds() | kinds;
            std::size_t capacity = needBlock(all) ? sizeOf(all) : 0;
            std::size_t blocks = needBlock(all) ? 1 : 0;
            if (kinds.empty()) {
                capacity = filled.capacity();
                blocks = 0;
            }
            Model model = modelOf(kinds, secondOf);
            model.merge(Model(filled.model));

            Stage stage;
            make(stage, kinds, secondOf);
            Map::Memory memory;
            const auto prepare = [&] { memory = std::as_const(filled.map).memoryFor(stage); };
            if (isInTwoSteps) {
                EXPECT_EQ(allocationsOf(prepare).count, blocks);
                blocks = 0;
            }
            const Allocations made = allocationsOf([&] {
                isInTwoSteps ? filled.map.take(stage, std::move(memory)) : filled.map.take(stage);
            });
            EXPECT_EQ(made.count, blocks);
            EXPECT_EQ(stage.kinds(), Codes());
            EXPECT_EQ(Living::size(), model.size());
            expectHolds(filled.map, model);
            EXPECT_EQ(freedBy([&] { filled.map.clear(); }).bytes, nodeBytesOf(all) + capacity);
        });
    }
}

TEST(KindStage, IsUnchangedIfItCannotBeTaken)
{
    withFilledAndSubsets([](Filled& filled, Codes kinds) {
        const bool needsBlock = !kinds.empty() && needBlock(filled.map.kinds() | kinds);
        Stage stage;
        make(stage, kinds, secondOf);
        expectUnchanged(needsBlock ? 1 : 0, filled, [&] {
            EXPECT_EQ(stage.kinds(), kinds);
            filled.map.take(stage);
        });
    });
}

// ---------------------------------------------------------------------------- MatchDSCP in entries

/** A MatchDSCP stands in the place of the MatchToS that it becomes in a copy. */
void expectDSCP(const FiltersEntry& entry)
{
    const auto* const match = entry.findMatch<MatchDSCP>();
    ASSERT_NE(match, nullptr);
    EXPECT_EQ(match->getDSCP(), 10);
    EXPECT_EQ(entry.getMatchesRef().find(MATCH_TOS)->second, match);

    const FiltersEntry copy(entry);
    EXPECT_EQ(copy.findMatch<MatchDSCP>(), nullptr);
    ASSERT_NE(copy.findMatch<MatchToS>(), nullptr);
    EXPECT_EQ(copy.findMatch<MatchToS>()->getToS(), 10 << 2);
}

void setMatchOf(FiltersEntry& entry, filtersMatch_t kind)
{
    MatchKinds::visit(kind, [&](auto type) {
        using Class = ClassOf<decltype(type)>;
        if constexpr (std::is_same_v<Class, MatchToS>)
            entry.setMatch(MatchDSCP(10));
        else
            entry.setMatch(Class());
    });
}

TEST(DSCPInAnEntry, RemainsWhateverIsSetDeletedAndMoved)
{
    std::vector<filtersMatch_t> order = {MATCH_INGRESS_PORTS, MATCH_SRC_IPV6, MATCH_TOS,
                                         MATCH_EGRESS_PORTS, MATCH_TTL};
    ASSERT_TRUE(std::is_sorted(order.begin(), order.end()));
    do {
        FiltersEntry entry;
        for (int times = 0; times < 2; ++times) {
            for (const filtersMatch_t kind : order) {
                setMatchOf(entry, kind);
                if (entry.findMatch<MatchToS>() != nullptr)
                    expectDSCP(entry);
            }
        }
        for (const filtersMatch_t kind : order) {
            if (kind != MATCH_TOS) {
                EXPECT_EQ(entry.deleteMatch(kind), FILTERS_OK);
            }
            FiltersEntry other;
            setMatchOf(other, kind);
            other = std::move(entry);
            expectDSCP(other);
            entry = std::move(other);
            expectDSCP(entry);
        }
        ASSERT_FALSE(HasFailure());
    } while (std::next_permutation(order.begin(), order.end()));
}

TEST(DSCPInAnEntry, RemainsUntilAnotherIsCopiedOrSet)
{
    FiltersEntry entry;
    FiltersEntry others;
    for (const filtersMatch_t kind : {MATCH_TOS, MATCH_EGRESS_PORTS, MATCH_INGRESS_PORTS}) {
        setMatchOf(kind == MATCH_TOS ? entry : others, kind);
        EXPECT_EQ(entry.copyMatchesFrom(others), FILTERS_OK);
        expectDSCP(entry);
    }
    entry.setMatch(MatchToS(1));
    EXPECT_EQ(entry.findMatch<MatchDSCP>(), nullptr);
    EXPECT_EQ(entry.findMatch<MatchToS>()->getToS(), 1);
    setMatchOf(entry, MATCH_TOS);
    expectDSCP(entry);
    setMatchOf(others, MATCH_TOS);
    EXPECT_EQ(entry.copyMatchesFrom(others), FILTERS_OK);
    EXPECT_EQ(entry.findMatch<MatchDSCP>(), nullptr);
    EXPECT_EQ(entry.findMatch<MatchToS>()->getToS(), 10 << 2);
}

} // namespace
} // namespace FiltersCommon::test
