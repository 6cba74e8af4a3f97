/**
 * The definitions of KindMap, and KindStage, where objects are collected for one.
 */
#ifndef FILTER_COMMON_SRC_KIND_MAP_H
#define FILTER_COMMON_SRC_KIND_MAP_H

#include "filter_kind_map.h"
#include "kinds.h"
#include "placed.h"

#include <array>
#include <cassert>
#include <cstddef>
#include <memory>
#include <new>
#include <utility>

namespace FiltersCommon {

// ------------------------------------------------------------------------------------------ stage

/**
 * Where objects are collected on their way into a map, with room for one of each kind. It stands on
 * the stack and allocates nothing.
 */
template <class Base>
class KindStage {
public:
    using Code = typename Placed<Base>::Code;

    KindStage() noexcept {}
    KindStage(const KindStage&) = delete;
    KindStage& operator=(const KindStage&) = delete;
    ~KindStage()
    {
        for (const Code kind : kinds_)
            end(kind);
    }

    CodeSet<Code> kinds() const { return kinds_; }

    /**
     * Makes an object of a class that has a kind, in the place of any of that kind, which is ended
     * first.
     */
    template <class Class, class... Arguments>
    Class& make(Arguments&&... arguments)
    {
        if (kinds_.contains(Class::KIND))
            end(Class::KIND);
        kinds_.erase(Class::KIND);
        Class& made = Placed<Base>::template make<Class>(placeOf(Class::KIND),
                                                         std::forward<Arguments>(arguments)...);
        kinds_.insert(Class::KIND);
        return made;
    }

    /** Moves the object of the kind, which must be there, to @p place. */
    void giveUp(Code kind, std::byte* place) noexcept
    {
        Placed<Base>::relocate(kind, placeOf(kind), place);
        kinds_.erase(kind);
    }

private:
    static constexpr auto SIZES = KindsOf<Base>::sizes();

    /** Where the object of each kind begins, and last where all of them end. */
    static constexpr auto PLACES = [] {
        std::array<std::size_t, SIZES.size() + 1> places{};
        for (std::size_t i = 0; i < SIZES.size(); ++i)
            places[i + 1] = places[i] + SIZES[i];
        return places;
    }();

    std::byte* placeOf(Code kind) { return room_ + PLACES[static_cast<std::uint32_t>(kind)]; }
    void end(Code kind) { Placed<Base>::at(placeOf(kind)).~Base(); }

    CodeSet<Code> kinds_;
    alignas(void*) std::byte room_[PLACES.back()];
};

// --------------------------------------------------------------------------------------- iterator

template <class Base>
KindMap<Base>::Iterator::Iterator(CodeSet<Code> kinds, const std::byte* place)
    : kinds_(kinds), place_(place)
{
    if (!kinds_.empty())
        element_ = {*kinds_.begin(), &Placed<Base>::at(place_)};
}

template <class Base>
typename KindMap<Base>::Iterator& KindMap<Base>::Iterator::operator++()
{
    kinds_.erase(element_.first);
    place_ += Placed<Base>::sizeOf(element_.first);
    return *this = Iterator(kinds_, place_);
}

/** The objects of a map as a range that the compiler sees through, unlike the map's own. */
template <class Base>
class Objects {
public:
    using Code = typename KindMap<Base>::Code;

    class Iterator {
    public:
        Iterator(CodeSet<Code> kinds, const std::byte* place) : kinds_(kinds), place_(place) {}

        const Base& operator*() const { return Placed<Base>::at(place_); }
        Iterator& operator++()
        {
            const Code kind = *kinds_.begin();
            place_ += Placed<Base>::sizeOf(kind);
            kinds_.erase(kind);
            return *this;
        }
        bool operator!=(const Iterator& other) const { return kinds_ != other.kinds_; }

    private:
        CodeSet<Code> kinds_; /**< the one pointed to and those behind it */
        const std::byte* place_;
    };

    explicit Objects(const KindMap<Base>& map) : kinds_(map.kinds()), first_(map.objects()) {}

    Iterator begin() const { return Iterator(kinds_, first_); }
    Iterator end() const { return Iterator({}, nullptr); }
    std::size_t size() const { return kinds_.size(); }

private:
    CodeSet<Code> kinds_;
    const std::byte* first_;
};

// ------------------------------------------------------------------------------------------- room

/** The last code of a set that is not empty. */
template <class Code>
Code lastOf(CodeSet<Code> codes)
{
    return static_cast<Code>(63 - __builtin_clzll(codes.bits()));
}

template <class Base>
bool KindMap<Base>::needBlock(CodeSet<Code> kinds)
{
    static constexpr CodeSet<Code> SMALL = Placed<Base>::kindsUpTo(sizeof room_);
    const bool areSeveral = (kinds.bits() & (kinds.bits() - 1)) != 0;
    return areSeveral || !(kinds - SMALL).empty();
}

template <class Base>
bool KindMap<Base>::hasBlock() const
{
    return needBlock(kinds_);
}

template <class Base>
const typename KindMap<Base>::Block& KindMap<Base>::block() const
{
    return *std::launder(reinterpret_cast<const Block*>(room_));
}

template <class Base>
void KindMap<Base>::setBlock(const Block& block) noexcept
{
    ::new (static_cast<void*>(room_)) Block(block);
}

/** Memory of the given capacity if objects of the kinds cannot stand in room_. */
template <class Base>
typename KindMap<Base>::Memory KindMap<Base>::memoryFor(CodeSet<Code> kinds, std::size_t capacity)
{
    if (!needBlock(kinds))
        return {};
    return {std::unique_ptr<std::byte[]>(new std::byte[capacity]), capacity};
}

template <class Base>
const std::byte* KindMap<Base>::objects() const
{
    return hasBlock() ? block().objects : room_;
}

template <class Base>
std::byte* KindMap<Base>::objects()
{
    return hasBlock() ? block().objects : room_;
}

template <class Base>
std::byte* KindMap<Base>::placeOf(Code kind)
{
    return objects() + Placed<Base>::sizeOf(kinds_.below(kind));
}

// ---------------------------------------------------------------------------------------- reading

template <class Base>
typename KindMap<Base>::Iterator KindMap<Base>::begin() const
{
    return Iterator(kinds_, objects());
}

template <class Base>
typename KindMap<Base>::Iterator KindMap<Base>::find(Code kind) const
{
    if (!kinds_.contains(kind))
        return end();
    const CodeSet<Code> before = kinds_.below(kind);
    return Iterator(kinds_ - before, objects() + Placed<Base>::sizeOf(before));
}

template <class Base>
bool KindMap<Base>::operator==(const KindMap& other) const
{
    if (kinds_ != other.kinds_)
        return false;
    const std::byte* mine = objects();
    const std::byte* theirs = other.objects();
    for (const Code kind : kinds_) {
        if (!Placed<Base>::areEqual(kind, Placed<Base>::at(mine), Placed<Base>::at(theirs)))
            return false;
        const std::size_t size = Placed<Base>::sizeOf(kind);
        mine += size;
        theirs += size;
    }
    return true;
}

// ----------------------------------------------------------------------------- copying and moving

template <class Base>
KindMap<Base>::KindMap(const KindMap& other)
{
    Memory memory = memoryFor(other.kinds_, Placed<Base>::sizeOf(other.kinds_));
    std::byte* const first = memory.objects ? memory.objects.get() : room_;
    const std::byte* from = other.objects();
    std::byte* to = first;
    CodeSet<Code> copied;
    try {
        for (const Code kind : other.kinds_) {
            Placed<Base>::copy(kind, from, to);
            copied.insert(kind);
            const std::size_t size = Placed<Base>::sizeOf(kind);
            from += size;
            to += size;
        }
    } catch (...) {
        Placed<Base>::end(copied, first);
        throw;
    }
    kinds_ = copied;
    if (memory.objects)
        setBlock({memory.objects.release(), memory.capacity});
}

template <class Base>
KindMap<Base>& KindMap<Base>::operator=(KindMap&& other) noexcept
{
    clear();
    kinds_ = other.kinds_;
    if (other.hasBlock())
        setBlock(other.block());
    else if (!other.empty())
        Placed<Base>::relocate(*kinds_.begin(), other.room_, room_);
    other.kinds_ = {};
    return *this;
}

template <class Base>
KindMap<Base>::~KindMap()
{
    clear();
}

// ----------------------------------------------------------------------------------------- adding

template <class Base>
template <class Class>
void KindMap<Base>::put(const Class& object)
{
    Class copy(object);
    Placed<Base>::template make<Class>(makeRoom(Class::KIND), std::move(copy));
}

template <class Base>
void KindMap<Base>::take(KindStage<Base>& stage)
{
    take(stage, memoryFor(stage));
}

template <class Base>
typename KindMap<Base>::Memory KindMap<Base>::memoryFor(const KindStage<Base>& stage) const
{
    if (stage.kinds().empty())
        return {};
    const CodeSet<Code> all = kinds_ | stage.kinds();
    return memoryFor(all, Placed<Base>::sizeOf(all));
}

template <class Base>
void KindMap<Base>::take(KindStage<Base>& stage, Memory memory) noexcept
{
    if (!stage.kinds().empty())
        rearrange(stage.kinds(), std::move(memory),
                  [&](Code kind, std::byte* place) { stage.giveUp(kind, place); });
}

/**
 * Makes room for an object of the kind, ending any that is there. The map counts it as held, so it
 * must be made at once.
 */
template <class Base>
std::byte* KindMap<Base>::makeRoom(Code kind)
{
    if (kinds_.contains(kind)) {
        std::byte* const place = placeOf(kind);
        Placed<Base>::at(place).~Base();
        return place;
    }
    const std::size_t used = Placed<Base>::sizeOf(kinds_);
    const std::size_t gap = Placed<Base>::sizeOf(kind);
    if (!hasBlock() || used + gap > block().capacity)
        return makeRoomInNewBlock(kind, used + gap);
    std::byte* room = block().objects + used;
    for (CodeSet<Code> behind = kinds_ - kinds_.below(kind); !behind.empty();) {
        const Code last = lastOf(behind);
        room -= Placed<Base>::sizeOf(last);
        Placed<Base>::shift(last, room, room + gap, gap);
        behind.erase(last);
    }
    kinds_.insert(kind);
    return room;
}

/** The same with all objects in other memory than before; there is none of the kind yet. */
template <class Base>
std::byte* KindMap<Base>::makeRoomInNewBlock(Code kind, std::size_t size)
{
    constexpr std::size_t STEP = 96; // by which blocks grow: the matches of a five-tuple
    const CodeSet<Code> added{kind};
    std::byte* room = nullptr;
    rearrange(added, memoryFor(kinds_ | added, (size + STEP - 1) / STEP * STEP),
              [&](Code, std::byte* place) { room = place; });
    return room;
}

/**
 * Moves the objects to where they belong in new memory, or in room_ if there is none. Objects of
 * the kinds @p added are ended; @p make is called with each of these kinds and its place.
 */
template <class Base>
template <class Make>
void KindMap<Base>::rearrange(CodeSet<Code> added, Memory memory, Make make) noexcept
{
    std::byte* from = objects();
    std::byte* to = memory.objects ? memory.objects.get() : room_;
    const std::unique_ptr<std::byte[]> oldBlock(hasBlock() ? from : nullptr);
    const CodeSet<Code> all = kinds_ | added;
    assert(needBlock(all) == (memory.objects != nullptr));
    assert(!memory.objects || memory.capacity >= Placed<Base>::sizeOf(all));
    for (const Code kind : all) {
        const std::size_t size = Placed<Base>::sizeOf(kind);
        const bool isAdded = added.contains(kind);
        if (kinds_.contains(kind)) {
            if (isAdded)
                Placed<Base>::at(from).~Base();
            else
                Placed<Base>::relocate(kind, from, to);
            from += size;
        }
        if (isAdded)
            make(kind, to);
        to += size;
    }
    kinds_ = all;
    if (memory.objects)
        setBlock({memory.objects.release(), memory.capacity});
}

// ---------------------------------------------------------------------------------------- erasing

template <class Base>
typename KindMap<Base>::size_type KindMap<Base>::erase(Code kind) noexcept
{
    if (!kinds_.contains(kind))
        return 0;
    std::byte* place = placeOf(kind);
    Placed<Base>::at(place).~Base();
    CodeSet<Code> left = kinds_;
    left.erase(kind);
    if (needBlock(left)) {
        const std::size_t gap = Placed<Base>::sizeOf(kind);
        for (const Code next : left - left.below(kind)) {
            Placed<Base>::shift(next, place + gap, place, gap);
            place += Placed<Base>::sizeOf(next);
        }
    } else if (hasBlock()) {
        const std::unique_ptr<std::byte[]> oldBlock(objects());
        if (!left.empty())
            Placed<Base>::relocate(*left.begin(), placeOf(*left.begin()), room_);
    }
    kinds_ = left;
    return 1;
}

template <class Base>
void KindMap<Base>::clear() noexcept
{
    const bool isInBlock = hasBlock();
    std::byte* const first = isInBlock ? block().objects : room_;
    Placed<Base>::end(kinds_, first);
    kinds_ = {};
    if (isInBlock)
        delete[] first;
}

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_KIND_MAP_H
