/**
 * Objects in places of a block of memory: Placed.
 */
#ifndef FILTER_COMMON_SRC_PLACED_H
#define FILTER_COMMON_SRC_PLACED_H

#include "kinds.h"

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <new>
#include <type_traits>
#include <typeinfo>
#include <utility>

namespace FiltersCommon {

/** Objects of the classes derived from Base, in memory that knows nothing of them. */
template <class Base>
class Placed {
public:
    using Code = decltype(std::declval<const Base&>().getType());

    static std::size_t sizeOf(Code kind) { return operationsOf(kind).size; }
    static std::size_t sizeOf(CodeSet<Code> kinds)
    {
        std::size_t size = 0;
        for (const Code kind : kinds)
            size += sizeOf(kind);
        return size;
    }

    /** The kinds whose objects are of at most that size. */
    static constexpr CodeSet<Code> kindsUpTo(std::size_t size)
    {
        CodeSet<Code> kinds;
        for (std::size_t i = 0; i < OPERATIONS.size(); ++i)
            if (OPERATIONS[i].size <= size)
                kinds.insert(static_cast<Code>(i));
        return kinds;
    }

    static Base& at(std::byte* place) { return *std::launder(reinterpret_cast<Base*>(place)); }
    static const Base& at(const std::byte* place)
    {
        return *std::launder(reinterpret_cast<const Base*>(place));
    }

    template <class Class, class... Arguments>
    static Class& make(std::byte* place, Arguments&&... arguments)
    {
        // Objects stand one after another, so that each begins where the one before it ends.
        static_assert(alignof(Class) == alignof(void*));
        static_assert(std::is_nothrow_move_constructible_v<Class>);
        auto* made = ::new (static_cast<void*>(place)) Class(std::forward<Arguments>(arguments)...);
        assert(static_cast<void*>(static_cast<Base*>(made)) == place);
        return *made;
    }

    /** Makes a copy of an object at @p to, as the class of its kind. */
    static void copy(Code kind, const std::byte* from, std::byte* to)
    {
        operationsOf(kind).copy(at(from), to);
    }

    /** Moves an object and ends it at @p from. The places must not overlap. */
    static void relocate(Code kind, std::byte* from, std::byte* to) noexcept
    {
        operationsOf(kind).relocate(at(from), to);
    }

    /** The same for places that are @p distance bytes apart and may overlap. */
    static void shift(Code kind, std::byte* from, std::byte* to, std::size_t distance) noexcept
    {
        if (distance >= sizeOf(kind))
            return relocate(kind, from, to);
        alignas(void*) std::byte between[LARGEST];
        relocate(kind, from, between);
        relocate(kind, between, to);
    }

    static bool areEqual(Code kind, const Base& a, const Base& b)
    {
        return operationsOf(kind).areEqual(a, b);
    }

    /** Ends the objects of the kinds, which stand one after another from @p place on. */
    static void end(CodeSet<Code> kinds, std::byte* place) noexcept
    {
        for (const Code kind : kinds) {
            at(place).~Base();
            place += sizeOf(kind);
        }
    }

private:
    struct Operations {
        std::size_t size;
        void (*copy)(const Base& from, std::byte* to);
        void (*relocate)(Base& from, std::byte* to) noexcept;
        bool (*areEqual)(const Base& a, const Base& b);
    };

    template <class Class>
    struct OperationsOf {
        static void copy(const Base& from, std::byte* to)
        {
            make<Class>(to, static_cast<const Class&>(from));
        }

        static void relocate(Base& from, std::byte* to) noexcept
        {
            // The one kind whose objects may be of another class than its own.
            if constexpr (std::is_same_v<Class, MatchToS>)
                if (typeid(from) == typeid(MatchDSCP))
                    return relocateAs<MatchDSCP>(from, to);
            assert(typeid(from) == typeid(Class));
            relocateAs<Class>(from, to);
        }

        template <class Exact>
        static void relocateAs(Base& from, std::byte* to) noexcept
        {
            static_assert(sizeof(Exact) == sizeof(Class));
            auto& object = static_cast<Exact&>(from);
            make<Exact>(to, std::move(object));
            object.Exact::~Exact();
        }

        static bool areEqual(const Base& a, const Base& b)
        {
            using Values = ValuesOf<Class>;
            if constexpr (hasNoValues<Class>)
                return true;
            else
                return static_cast<const Values&>(a) == static_cast<const Values&>(b);
        }

        static constexpr Operations value{sizeof(Class), copy, relocate, areEqual};
    };

    static constexpr auto OPERATIONS = KindsOf<Base>::template table<OperationsOf>();
    static constexpr std::size_t LARGEST = [] {
        std::size_t largest = 0;
        for (const Operations& each : OPERATIONS)
            largest = std::max(largest, each.size);
        return largest;
    }();

    static const Operations& operationsOf(Code kind)
    {
        return OPERATIONS[static_cast<std::uint32_t>(kind)];
    }
};

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_PLACED_H
