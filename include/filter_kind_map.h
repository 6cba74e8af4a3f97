/**
 * The matches or the actions of an entry: KindMap. Callers include filter_entries.h.
 */
#ifndef FILTER_COMMON_FILTER_KIND_MAP_H
#define FILTER_COMMON_FILTER_KIND_MAP_H

#include "filter_code_set.h"
#include "filter_types.h"

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <utility>

#pragma GCC visibility push(default)

namespace FiltersCommon {

template <class Base>
class KindStage;

/**
 * An ordered map from a kind to the object of that kind, which the map alone owns. Base is Match or
 * Action. The objects stand one after another, without gaps, in ascending order of their kinds:
 *
 *     kinds_   {MATCH_DST_L4_PORT, MATCH_SRC_IPV4, MATCH_IP_PROTOCOL}
 *     room_    objects ----> [MatchDstL4Port][MatchSrcIPv4][MatchIpProtocol][unused ]
 *              capacity      <----------------------------------------------------->
 *
 * A single object that fits into room_ stands there itself, and there is no block; an empty map has
 * no block either. So kinds_ alone tells where the objects are, and the sizes of their classes tell
 * where each of them begins. Each object is of exactly the class of its kind, except that a
 * MatchDSCP may stand in the place of a MatchToS until it is copied.
 *
 * A function that makes something makes it before it changes anything: if memory runs out,
 * std::bad_alloc is thrown and nothing is changed. Moving objects from place to place cannot fail.
 *
 * Entries return their maps as constants, to be read like a std::map. Pointers and iterators are
 * valid until the entry is changed or destroyed.
 */
template <class Base>
class KindMap {
public:
    using Code = decltype(std::declval<const Base&>().getType());

    using key_type = Code;
    using mapped_type = const Base*;
    /** A kind and the object of that kind, which is never null. */
    using value_type = std::pair<Code, const Base*>;
    using size_type = std::size_t;

    /**
     * Yields its elements by value, so that one may be kept when the iterator is gone. What -> leads
     * to is gone with it.
     */
    class Iterator {
    public:
        using iterator_category = std::input_iterator_tag;
        using value_type = KindMap::value_type;
        using difference_type = std::ptrdiff_t;
        using pointer = const value_type*;
        using reference = const value_type;

        Iterator() = default;
        reference operator*() const { return element_; }
        pointer operator->() const { return &element_; }
        Iterator& operator++();
        Iterator operator++(int)
        {
            const Iterator before(*this);
            ++*this;
            return before;
        }
        bool operator==(const Iterator& other) const { return element_ == other.element_; }
        bool operator!=(const Iterator& other) const { return !(*this == other); }

    private:
        friend class KindMap;

        /** @p place is that of the first of @p kinds. */
        FILTERS_COMMON_INTERNAL Iterator(CodeSet<Code> kinds, const std::byte* place);

        CodeSet<Code> kinds_; /**< the one pointed to and those behind it */
        const std::byte* place_ = nullptr;
        value_type element_{};
    };
    using iterator = Iterator;
    using const_iterator = Iterator;

    Iterator begin() const;
    Iterator end() const { return Iterator(); }
    /** end() if there is no object of the kind. */
    Iterator find(Code kind) const;

    size_type count(Code kind) const { return kinds_.contains(kind) ? 1 : 0; }
    size_type size() const { return kinds_.size(); }
    bool empty() const { return kinds_.empty(); }
    /** The kinds of all objects. */
    CodeSet<Code> kinds() const { return kinds_; }

    /** Whether both maps hold equal objects of the same kinds. */
    bool operator==(const KindMap& other) const;
    bool operator!=(const KindMap& other) const { return !(*this == other); }

    // What follows is for the library; callers cannot link to it.

    /** A block that is not in use yet, or none. */
    struct Memory {
        std::unique_ptr<std::byte[]> objects;
        std::size_t capacity = 0; /**< in bytes */
    };

    FILTERS_COMMON_INTERNAL KindMap() noexcept {}
    /** Copies each object as the class of its kind, into a block as large as they are. */
    FILTERS_COMMON_INTERNAL explicit KindMap(const KindMap& other);
    KindMap& operator=(const KindMap&) = delete;
    KindMap(KindMap&&) = delete;
    /** Destroys what the map holds, then leaves @p other empty, also if it is the map itself. */
    FILTERS_COMMON_INTERNAL KindMap& operator=(KindMap&& other) noexcept;
    FILTERS_COMMON_INTERNAL ~KindMap();

    /** Where the first object stands. */
    FILTERS_COMMON_INTERNAL const std::byte* objects() const;
    /** Copies the object, which may be one of the map's, and replaces any of its kind. */
    template <class Class>
    FILTERS_COMMON_INTERNAL void put(const Class& object);
    /** Moves all objects of the stage into the map; allocates one block at most. */
    FILTERS_COMMON_INTERNAL void take(KindStage<Base>& stage);
    /** Does the same in two steps, without a change between them; only the first can fail. */
    FILTERS_COMMON_INTERNAL Memory memoryFor(const KindStage<Base>& stage) const;
    FILTERS_COMMON_INTERNAL void take(KindStage<Base>& stage, Memory memory) noexcept;
    /** @return how many objects were destroyed: 1 or 0 */
    FILTERS_COMMON_INTERNAL size_type erase(Code kind) noexcept;
    FILTERS_COMMON_INTERNAL void clear() noexcept;

private:
    struct Block {
        std::byte* objects;
        std::size_t capacity; /**< in bytes */
    };

    FILTERS_COMMON_INTERNAL static bool needBlock(CodeSet<Code> kinds);
    FILTERS_COMMON_INTERNAL static Memory memoryFor(CodeSet<Code> kinds, std::size_t capacity);
    FILTERS_COMMON_INTERNAL bool hasBlock() const;
    FILTERS_COMMON_INTERNAL const Block& block() const;
    FILTERS_COMMON_INTERNAL void setBlock(const Block& block) noexcept;
    FILTERS_COMMON_INTERNAL std::byte* objects();
    /** Where the object of the kind stands, or would stand. */
    FILTERS_COMMON_INTERNAL std::byte* placeOf(Code kind);

    FILTERS_COMMON_INTERNAL std::byte* makeRoom(Code kind);
    FILTERS_COMMON_INTERNAL std::byte* makeRoomInNewBlock(Code kind, std::size_t size);
    template <class Make>
    FILTERS_COMMON_INTERNAL void rearrange(CodeSet<Code> added, Memory memory, Make make) noexcept;

    CodeSet<Code> kinds_;
    alignas(Block) std::byte room_[16]; /**< the Block, or a single object */
};

} // namespace FiltersCommon

#pragma GCC visibility pop

#endif // FILTER_COMMON_FILTER_KIND_MAP_H
