/**
 * The one step from a kind code to its class.
 *
 * Copying by kind, equality, decoding, text dumps and the C interface of entries all go through
 * MatchKinds and ActionKinds; there is no other place that turns a code into a class.
 */
#ifndef FILTER_COMMON_SRC_KINDS_H
#define FILTER_COMMON_SRC_KINDS_H

#include "filter_actions.h"
#include "filter_code_set.h"
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

    static constexpr CodeSet<Code> codes() { return {Classes::KIND...}; }

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

    /** Calls @p function with the Kind of the class of @p code; not for a code beyond the list. */
    template <class Function>
    static void visit(Code code, Function&& function)
    {
        dispatch(code, nullptr, [&](auto kind) {
            function(kind);
            return nullptr;
        });
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
    static_assert(SIZE <= CodeSet<Code>::LIMIT, "a place in a set for each kind");
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

template <class Base, class... Classes>
constexpr int countWithoutValues(KindList<Base, Classes...>)
{
    return (int{hasNoValues<Classes>} + ...);
}

// A class with values must not be given a constructor without arguments.
static_assert(hasNoValues<MatchAll> && hasNoValues<MatchVlanUntagged> &&
              hasNoValues<MatchCpuPort> && hasNoValues<MatchDestinationCpu> &&
              countWithoutValues(MatchKinds()) == 4);
static_assert(hasNoValues<ActionPermit> && hasNoValues<ActionDeny> &&
              hasNoValues<ActionCopyToCpu> && hasNoValues<ActionRedirectCancel> &&
              hasNoValues<ActionBlackHole> && countWithoutValues(ActionKinds()) == 5);

/** The class that holds the values of a T: the first of the families it derives from, or T. */
template <class T, class... Families>
struct ValuesOf {
    using Class = T;
};

template <class T, class Family, class... Others>
struct ValuesOf<T, Family, Others...>
    : std::conditional_t<std::is_base_of_v<Family, T>, Kind<Family>, ValuesOf<T, Others...>> {};

/**
 * The object as a T, or null if it is none, whatever kind it claims to be. An object that is
 * exactly of the class Exact, as nearly every object is, is told without a search of its bases.
 */
template <class T, class Exact = T, class Base>
auto as(Base& object)
{
    static_assert(std::is_base_of_v<T, Exact>);
    using Wanted = std::conditional_t<std::is_const_v<Base>, const T, T>;
    if (typeid(object) == typeid(Exact))
        return static_cast<Wanted*>(&object);
    return dynamic_cast<Wanted*>(&object);
}

/** Whether there is a copy of the object as a T: a class without values takes any object. */
template <class T, class Base>
bool isCopiedAs(const Base& object)
{
    return hasNoValues<T> || as<T>(object) != nullptr;
}

/** A copy of the object as a T; null if T has values and the object is no T. */
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

/** A fresh T, to be filled from a message: a class with values is given empty or zero ones. */
template <class T>
std::unique_ptr<T> makeBlank()
{
    if constexpr (hasNoValues<T>)
        return std::make_unique<T>();
    else if constexpr (std::is_constructible_v<T, std::list<limid_t>>)
        return std::make_unique<T>(std::list<limid_t>());
    else if constexpr (std::is_constructible_v<T, std::set<unsigned short>>)
        return std::make_unique<T>(std::set<unsigned short>());
    else // a single value of any other type
        return std::unique_ptr<T>(new T({}));
}

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_KINDS_H
