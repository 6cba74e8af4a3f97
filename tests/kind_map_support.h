/**
 * What the tests of KindMap and KindStage hold in them: a small hierarchy whose classes differ in
 * size and in what they own, and a map for each set of their kinds.
 */
#ifndef FILTER_COMMON_TESTS_KIND_MAP_SUPPORT_H
#define FILTER_COMMON_TESTS_KIND_MAP_SUPPORT_H

#include "kind_map.h"
#include "test_allocator.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iterator>
#include <list>
#include <map>
#include <type_traits>
#include <utility>
#include <vector>

namespace FiltersCommon {
namespace test {

// -------------------------------------------------------------------------------------- hierarchy

enum Code : std::int32_t { LARGE, BARE, LIST, EXACT, MIDDLE, OTHER_LIST };

class Item {
public:
    virtual ~Item() = default;
    virtual Code getType() const = 0;
    virtual int value() const = 0;
};

/** As small as an object can be. */
class Nothing : public Item {
public:
    explicit Nothing(int) {}
    int value() const override { return 0; }
};

/** Each of the bytes is the value. */
template <std::size_t SIZE>
class Bytes : public Item {
public:
    explicit Bytes(int value) { bytes_.fill(static_cast<unsigned char>(value)); }
    int value() const override
    {
        const auto isFirst = [&](unsigned char byte) { return byte == bytes_[0]; };
        return std::all_of(bytes_.begin(), bytes_.end(), isFirst) ? bytes_[0] : -1;
    }
    bool operator==(const Bytes& other) const { return bytes_ == other.bytes_; }

private:
    std::array<unsigned char, SIZE - sizeof(Item)> bytes_;
};

/** Points to itself, and allocates when it is copied. */
class Numbers : public Item {
public:
    static constexpr std::size_t NODES = 2;

    explicit Numbers(int value) : numbers_(NODES, value) {}
    int value() const override { return numbers_.size() == NODES ? numbers_.back() : -1; }
    bool operator==(const Numbers& other) const { return numbers_ == other.numbers_; }

private:
    std::list<int> numbers_;
};

/** Where there are objects; not a container, which would allocate. */
class Living {
public:
    static void enter(const Item* item)
    {
        EXPECT_FALSE(contains(item)) << "made over another";
        ASSERT_LT(size_, std::size(items_));
        items_[size_++] = item;
    }

    static void leave(const Item* item)
    {
        const Item** const found = std::find(items_, items_ + size_, item);
        ASSERT_NE(found, items_ + size_) << "destroyed where none was made";
        *found = items_[--size_];
    }

    static bool contains(const Item* item)
    {
        return std::find(items_, items_ + size_, item) != items_ + size_;
    }

    static std::size_t size() { return size_; }

private:
    static inline const Item* items_[64];
    static inline std::size_t size_ = 0;
};

struct Refused {};

/** How many objects can still be copied before one throws Refused. */
inline std::size_t copiesAdmitted = SIZE_MAX;

/** The class of a kind, with the values of @p Values. */
template <Code CODE, class Values>
class Leaf : public Values {
public:
    static constexpr Code KIND = CODE;

    explicit Leaf(int value) : Values(value) { Living::enter(this); }
    Leaf(const Leaf& other) : Values(other)
    {
        if (copiesAdmitted == 0)
            throw Refused();
        --copiesAdmitted;
        Living::enter(this);
    }
    Leaf(Leaf&& other) noexcept : Values(std::move(other)) { Living::enter(this); }
    Leaf& operator=(const Leaf&) = delete;
    ~Leaf() override { Living::leave(this); }

    Code getType() const override { return CODE; }
};

} // namespace test

template <test::Code KIND, class ClassOfValues>
struct KindRow<test::Leaf<KIND, ClassOfValues>> {
    static constexpr test::Code CODE = KIND;
    using Values =
        std::conditional_t<std::is_same_v<ClassOfValues, test::Nothing>, NoValues, ClassOfValues>;
};

template <>
struct KindsOf<test::Item>
    : KindList<test::Item, test::Leaf<test::LARGE, test::Bytes<64>>,
               test::Leaf<test::BARE, test::Nothing>, test::Leaf<test::LIST, test::Numbers>,
               test::Leaf<test::EXACT, test::Bytes<16>>, test::Leaf<test::MIDDLE, test::Bytes<24>>,
               test::Leaf<test::OTHER_LIST, test::Numbers>> {};

namespace test {

using Kinds = KindsOf<Item>;
using Codes = CodeSet<Code>;
using Map = KindMap<Item>;
using Stage = KindStage<Item>;
using Model = std::map<Code, int>;

constexpr Codes ALL = Kinds::codes();
/** The size of the largest object that stands in the map itself. */
constexpr std::size_t ROOM = 16;

/** The size of a block that grows to hold this many bytes. */
constexpr std::size_t grown(std::size_t size)
{
    constexpr std::size_t STEP = 96;
    return (size + STEP - 1) / STEP * STEP;
}

static_assert(sizeof(Map) == sizeof(Codes) + ROOM);
static_assert(Kinds::sizes()[BARE] == sizeof(void*) && Kinds::sizes()[EXACT] == ROOM);
static_assert(Kinds::sizes()[MIDDLE] == 24 && Kinds::sizes()[LARGE] == 64);

constexpr std::size_t sizeOf(Codes kinds)
{
    std::size_t size = 0;
    for (const Code kind : kinds)
        size += Kinds::sizes()[static_cast<std::size_t>(kind)];
    return size;
}

constexpr bool needBlock(Codes kinds) { return kinds.size() > 1 || sizeOf(kinds) > ROOM; }

/** How many nodes the objects of the kinds have. */
constexpr std::size_t nodesOf(Codes kinds)
{
    return Numbers::NODES * (kinds & Codes{LIST, OTHER_LIST}).size();
}

/** Calls @p use with each set of kinds. */
template <class Use>
void withSubsets(Use use)
{
    for (std::uint32_t bits = 0; bits < 1u << Kinds::SIZE; ++bits) {
        Codes kinds;
        for (const Code kind : ALL)
            if ((bits >> kind & 1) != 0)
                kinds.insert(kind);
        use(kinds);
    }
}

// ------------------------------------------------------------------------------------------ values

/** The value of the object of a kind. */
using ValueOf = int(Code);

constexpr int firstOf(Code kind) { return kind == BARE ? 0 : 10 + kind; }
/** Of the object that replaces the first one. */
constexpr int secondOf(Code kind) { return kind == BARE ? 0 : 20 + kind; }

inline Model modelOf(Codes kinds, ValueOf valueOf)
{
    Model model;
    for (const Code kind : kinds)
        model[kind] = valueOf(kind);
    return model;
}

/** Calls @p use with a new object of the kind. */
template <class Use>
void withItem(Code kind, ValueOf valueOf, Use use)
{
    Kinds::visit(kind, [&](auto type) { use(ClassOf<decltype(type)>(valueOf(kind))); });
}

inline void put(Map& map, Code kind, ValueOf valueOf)
{
    withItem(kind, valueOf, [&](const auto& item) { map.put(item); });
}

inline void make(Stage& stage, Codes kinds, ValueOf valueOf)
{
    for (const Code kind : kinds)
        Kinds::visit(kind, [&](auto type) { stage.make<ClassOf<decltype(type)>>(valueOf(kind)); });
}

// ------------------------------------------------------------------------------------ filled maps

/** Where the block of a map comes from, which decides how much of it is unused. */
enum class From { PUT, COPY, TAKE, ERASE };

/** A map with the first objects of the kinds. */
struct Filled {
    Filled(Codes kinds, From from) : origin(from), model(modelOf(kinds, firstOf))
    {
        if (from == From::TAKE) {
            Stage stage;
            make(stage, kinds, firstOf);
            map.take(stage);
            return;
        }
        for (const Code kind : from == From::ERASE ? ALL : kinds)
            put(map, kind, firstOf);
        for (const Code kind : ALL - kinds)
            map.erase(kind);
        if (from == From::COPY) {
            Map copy(map);
            map = std::move(copy);
        }
    }

    /** The size of its block. */
    std::size_t capacity() const
    {
        const Codes kinds = map.kinds();
        if (!needBlock(kinds))
            return 0;
        if (origin == From::COPY || origin == From::TAKE)
            return sizeOf(kinds);
        return grown(sizeOf(origin == From::ERASE ? ALL : kinds));
    }

    /** What becomes of it when an object of the kind is put into the map. */
    std::size_t capacityWith(Code kind) const
    {
        const Codes all = map.kinds() | Codes{kind};
        return needBlock(all) && sizeOf(all) > capacity() ? grown(sizeOf(all)) : capacity();
    }

    const From origin;
    Map map;
    Model model;
};

/** Calls @p use with a map of each origin with each set of kinds; it must leave nothing behind. */
template <class Use>
void withFilled(Use use)
{
    for (const From origin : {From::PUT, From::COPY, From::TAKE, From::ERASE}) {
        withSubsets([&](Codes kinds) {
            const std::size_t live = allocationTotals().live;
            {
                Filled filled(kinds, origin);
                use(filled);
            }
            ASSERT_EQ(Living::size(), 0u);
            ASSERT_EQ(allocationTotals().live, live);
            ASSERT_FALSE(testing::Test::HasFailure())
                << "kinds " << kinds.bits() << " of origin " << static_cast<int>(origin);
        });
    }
}

/** Calls @p use with each of these maps and each kind. */
template <class Use>
void withFilledAndKinds(Use use)
{
    for (const Code kind : ALL)
        withFilled([&](Filled& filled) { use(filled, kind); });
}

/** Calls @p use with each of these maps and each set of kinds. */
template <class Use>
void withFilledAndSubsets(Use use)
{
    withSubsets([&](Codes kinds) { withFilled([&](Filled& filled) { use(filled, kinds); }); });
}

// ------------------------------------------------------------------------------------------ checks

inline bool isWithin(const Item* item, const Map& map)
{
    const auto* const place = reinterpret_cast<const std::byte*>(item);
    const auto* const begin = reinterpret_cast<const std::byte*>(&map);
    return !std::less<>()(place, begin) && std::less<>()(place, begin + sizeof map);
}

/** The objects stand one after another, in ascending order. */
inline void expectWalks(const Map& map, const Model& model)
{
    std::vector<std::pair<const Code, int>> found;
    const std::byte* end = nullptr;
    for (const auto& [kind, item] : map) {
        ASSERT_TRUE(Living::contains(item));
        const auto* const place = reinterpret_cast<const std::byte*>(item);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(place) % alignof(void*), 0u);
        EXPECT_EQ(isWithin(item, map), !needBlock(map.kinds()));
        EXPECT_TRUE(end == nullptr || end == place);
        end = place + sizeOf({kind});
        EXPECT_EQ(item->getType(), kind);
        found.emplace_back(kind, item->value());
    }
    EXPECT_TRUE(std::equal(found.begin(), found.end(), model.begin(), model.end()));
}

inline void expectFinds(const Map& map, const Model& model, Code kind)
{
    const bool isThere = model.count(kind) != 0;
    EXPECT_EQ(map.kinds().contains(kind), isThere);
    EXPECT_EQ(map.count(kind), model.count(kind));
    const Map::const_iterator found = map.find(kind);
    EXPECT_EQ(found == map.end(), !isThere);
    ASSERT_EQ(found != map.end(), isThere);
    if (!isThere)
        return;
    EXPECT_EQ(found->first, kind);
    EXPECT_EQ((*found).second->value(), model.at(kind));

    auto at = map.begin();
    for (auto element = model.begin(); element->first != kind; ++element)
        EXPECT_EQ(&++at, &at);
    EXPECT_TRUE(at == found);
    EXPECT_TRUE(at++ == found);
    EXPECT_TRUE(at != found);
    const auto next = std::next(model.find(kind));
    EXPECT_TRUE(at == (next == model.end() ? map.end() : map.find(next->first)));
}

inline void expectHolds(const Map& map, const Model& model)
{
    EXPECT_EQ(map.size(), model.size());
    EXPECT_EQ(map.empty(), model.empty());
    expectWalks(map, model);
    for (int code = -1; code <= static_cast<int>(Codes::LIMIT); ++code)
        expectFinds(map, model, static_cast<Code>(code));
}

/** How many allocations there are, and how many blocks and bytes are kept. */
struct Allocations {
    std::size_t count;
    std::size_t blocks;
    std::size_t bytes;
};

template <class Operation>
Allocations allocationsOf(Operation operation)
{
    const AllocationTotals before = allocationTotals();
    operation();
    const AllocationTotals after = allocationTotals();
    return {after.count - before.count, after.live - before.live,
            after.liveBytes - before.liveBytes};
}

/** How many blocks and bytes an operation frees that allocates nothing. */
template <class Operation>
Allocations freedBy(Operation operation)
{
    const Allocations made = allocationsOf(operation);
    EXPECT_EQ(made.count, 0u);
    return {0, 0 - made.blocks, 0 - made.bytes};
}

/** The sizes of all nodes of the objects of the kinds. */
inline std::size_t nodeBytesOf(Codes kinds)
{
    std::list<int> nodes;
    return allocationsOf([&] { nodes.resize(nodesOf(kinds)); }).bytes;
}

} // namespace test
} // namespace FiltersCommon

#endif // FILTER_COMMON_TESTS_KIND_MAP_SUPPORT_H
