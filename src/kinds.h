/**
 * The one step from a kind code to its class.
 *
 * Copying by kind, equality, decoding and text dumps all go through MatchKinds and ActionKinds;
 * there is no other place that turns a code into a class.
 */
#ifndef FILTER_COMMON_SRC_KINDS_H
#define FILTER_COMMON_SRC_KINDS_H

#include "filter_actions.h"
#include "filter_matches.h"

#include <cstddef>
#include <cstdint>
#include <list>
#include <memory>
#include <set>
#include <type_traits>
#include <typeinfo>
#include <utility>

namespace FiltersCommon {

/** Hands a class to a generic callable: kind.Class is the type. */
template <class T>
struct Kind {
    using Class = T;
};

template <class Kind>
using ClassOf = typename Kind::Class;

/** The classes derived from Base in the order of their kind codes, from 0 without a gap. */
template <class Base, class... Classes>
class KindList {
public:
    using Code = decltype(std::declval<const Base&>().getType());

    static constexpr std::size_t SIZE = sizeof...(Classes);

    /**
     * Calls @p function with the Kind of the class of @p code and returns what it returns, or
     * returns @p unknown for a code beyond the list. Codes count as unsigned numbers.
     */
    template <class Result, class Function>
    static Result dispatch(Code code, Result unknown, Function&& function)
    {
        constexpr Result (*calls[])(Function&) = {&call<Classes, Result, Function>...};
        const auto index = static_cast<std::uint32_t>(code);
        if (index < SIZE)
            return calls[index](function);
        return unknown;
    }

    /** Calls @p function with the Kind of each class in turn. */
    template <class Function>
    static void forEach(Function&& function)
    {
        (function(Kind<Classes>{}), ...);
    }

private:
    template <class Class, class Result, class Function>
    static Result call(std::remove_reference_t<Function>& function)
    {
        return function(Kind<Class>{});
    }

    template <std::size_t... Index>
    static constexpr bool standAtTheirCodes(std::index_sequence<Index...>)
    {
        return ((static_cast<std::size_t>(Classes::KIND) == Index) && ...);
    }

    static_assert((std::is_base_of_v<Base, Classes> && ...));
    static_assert(standAtTheirCodes(std::make_index_sequence<SIZE>()));
};

#define FILTERS_COMMON_NEXT(Class) , Class
using MatchKinds = KindList<Match FILTERS_COMMON_MATCH_CLASSES(FILTERS_COMMON_NEXT)>;
using ActionKinds = KindList<Action FILTERS_COMMON_ACTION_CLASSES(FILTERS_COMMON_NEXT)>;
#undef FILTERS_COMMON_NEXT

static_assert(MatchKinds::SIZE == MATCH_DESTINATION_CPU + 1, "a class for each match kind");
static_assert(ActionKinds::SIZE == ACTION_BLACK_HOLE + 1, "a class for each action kind");

/** Whether a class holds nothing but its kind; these alone are built without arguments. */
template <class T>
inline constexpr bool hasNoValues = std::is_default_constructible_v<T>;

/** The class that holds the values of a T: the first of the families it derives from, or T. */
template <class T, class... Families>
struct ValuesOf {
    using Class = T;
};

template <class T, class Family, class... Others>
struct ValuesOf<T, Family, Others...>
    : std::conditional_t<std::is_base_of_v<Family, T>, Kind<Family>, ValuesOf<T, Others...>> {};

/** The object as a T, or null if it is none, whatever kind it claims to be. */
template <class T, class Base>
auto as(Base& object)
{
    using Wanted = std::conditional_t<std::is_const_v<Base>, const T, T>;
    // Nearly every object is exactly of the class asked for, and that is quick to tell.
    if (typeid(object) == typeid(T))
        return static_cast<Wanted*>(&object);
    return dynamic_cast<Wanted*>(&object);
}

/** A copy of the object as a T; null if it is not of the class that holds the values of a T. */
template <class T, class Base>
std::unique_ptr<T> copyAs(const Base& object)
{
    if constexpr (hasNoValues<T>) {
        return std::make_unique<T>();
    } else {
        const T* exact = as<T>(object);
        return exact == nullptr ? nullptr : std::make_unique<T>(*exact);
    }
}

/** A fresh T, to be filled from a message. */
template <class T>
std::unique_ptr<T> makeBlank()
{
    if constexpr (hasNoValues<T>)
        return std::make_unique<T>();
    else if constexpr (std::is_constructible_v<T, std::list<limid_t>>)
        return std::make_unique<T>(std::list<limid_t>());
    else if constexpr (std::is_constructible_v<T, std::set<unsigned short>>)
        return std::make_unique<T>(std::set<unsigned short>());
    else
        return std::unique_ptr<T>(new T({}));
}

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_KINDS_H
