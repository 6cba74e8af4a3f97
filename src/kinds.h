/**
 * The kinds as lists of types, and the step from a kind code to its class.
 *
 * Copying by kind, equality, decoding, text dumps and the C interface of entries all go through
 * MatchKinds and ActionKinds; a code is turned into a class nowhere else.
 */
#ifndef FILTER_COMMON_SRC_KINDS_H
#define FILTER_COMMON_SRC_KINDS_H

#include "filter_actions.h"
#include "filter_code_set.h"
#include "filter_matches.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <type_traits>
#include <typeinfo>
#include <utility>

namespace FiltersCommon {

// ------------------------------------------------------------------------------------------- rows

/** A class as described by the row of its kind; a class without a row has values of its own. */
template <class T>
struct KindRow {
    using Values = T;
};

#define FILTERS_COMMON_DEFINE_ROW(code, Class, ClassOfValues)                                      \
    template <>                                                                                    \
    struct KindRow<Class> {                                                                        \
        static constexpr auto CODE = code;                                                         \
        using Values = ClassOfValues;                                                              \
    };
FILTERS_COMMON_EACH_MATCH_KIND(FILTERS_COMMON_DEFINE_ROW)
FILTERS_COMMON_EACH_ACTION_KIND(FILTERS_COMMON_DEFINE_ROW)
#undef FILTERS_COMMON_DEFINE_ROW

// The two columns of a row that are about values must agree with each other and with the class.
#define FILTERS_COMMON_CHECK_WITH_VALUES(code, Class, Values)                                      \
    static_assert(std::is_same_v<Values, Class>, #Class " holds values of its own");
#define FILTERS_COMMON_CHECK_OF_FAMILY(code, Class, Family)                                        \
    static_assert(std::is_base_of_v<Family, Class> && !std::is_same_v<Family, Class>,              \
                  #Class " derives from " #Family);
#define FILTERS_COMMON_CHECK_WITHOUT_VALUES(code, Class, Values)                                   \
    static_assert(std::is_same_v<Values, NoValues>, #Class " holds no values");
FILTERS_COMMON_MATCH_KINDS(FILTERS_COMMON_CHECK_WITH_VALUES, FILTERS_COMMON_CHECK_OF_FAMILY,
                           FILTERS_COMMON_CHECK_WITHOUT_VALUES)
FILTERS_COMMON_ACTION_KINDS(FILTERS_COMMON_CHECK_WITH_VALUES, FILTERS_COMMON_CHECK_OF_FAMILY,
                            FILTERS_COMMON_CHECK_WITHOUT_VALUES)
#undef FILTERS_COMMON_CHECK_WITHOUT_VALUES
#undef FILTERS_COMMON_CHECK_OF_FAMILY
#undef FILTERS_COMMON_CHECK_WITH_VALUES

/** The class that holds the values of a T: T itself, its family, or NoValues. */
template <class T>
using ValuesOf = typename KindRow<T>::Values;

template <class T>
inline constexpr bool hasNoValues = std::is_same_v<ValuesOf<T>, NoValues>;

// ------------------------------------------------------------------------------------------ lists

/** Passes a class to a generic callable; see ClassOf. */
template <class T>
struct Kind {
    using Class = T;
};

template <class Kind>
using ClassOf = typename Kind::Class;

/** The classes derived from Base, in the order of their kind codes, from 0 without a gap. */
template <class Base, class... Classes>
class KindList {
public:
    using Code = decltype(std::declval<const Base&>().getType());

    static constexpr std::size_t SIZE = sizeof...(Classes);

    static constexpr CodeSet<Code> codes() { return {KindRow<Classes>::CODE...}; }

    /** Row<Class>::value of each class. */
    template <template <class> class Row>
    static constexpr auto table()
    {
        return std::array{Row<Classes>::value...};
    }

    /** The sizes of the classes in bytes. */
    static constexpr std::array<std::size_t, SIZE> sizes() { return {sizeof(Classes)...}; }

    /**
     * Calls @p function with the Kind of the class of @p code and returns its result, or returns
     * @p unknown for a code beyond the list. Codes are treated as unsigned.
     */
    template <class Result, class Function>
    static Result dispatch(Code code, Result unknown, Function&& function)
    {
        static constexpr Result (*calls[])(Function&) = {&call<Classes, Result, Function>...};
        const auto index = static_cast<std::uint32_t>(code);
        if (index < SIZE)
            return calls[index](function);
        return unknown;
    }

    /** Calls @p function with the Kind of the class of @p code, unless it is beyond the list. */
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
    static constexpr bool areAtTheirCodes(std::index_sequence<Index...>)
    {
        return ((static_cast<std::size_t>(KindRow<Classes>::CODE) == Index) && ...);
    }

    static_assert((std::is_base_of_v<Base, Classes> && ...));
    static_assert(SIZE <= CodeSet<Code>::LIMIT, "a CodeSet must have room for every kind");
    static_assert(areAtTheirCodes(std::make_index_sequence<SIZE>()), "rows must be in code order");
    static_assert(((Classes::KIND == KindRow<Classes>::CODE) && ...), "class and row must agree");
};

#define FILTERS_COMMON_NEXT_CLASS(code, Class, Values) , Class
using MatchKinds = KindList<Match FILTERS_COMMON_EACH_MATCH_KIND(FILTERS_COMMON_NEXT_CLASS)>;
using ActionKinds = KindList<Action FILTERS_COMMON_EACH_ACTION_KIND(FILTERS_COMMON_NEXT_CLASS)>;
#undef FILTERS_COMMON_NEXT_CLASS

/** The list of the classes derived from Base. */
template <class Base>
struct KindsOf;
template <>
struct KindsOf<Match> : MatchKinds {};
template <>
struct KindsOf<Action> : ActionKinds {};

// The compiler warns here about an enumerator without a row.
#define FILTERS_COMMON_CASE(code, Class, Values) case code:
constexpr bool hasRow(filtersMatch_t kind)
{
    switch (kind) {
        FILTERS_COMMON_EACH_MATCH_KIND(FILTERS_COMMON_CASE)
        return true;
    }
    return false;
}
constexpr bool hasRow(filtersAction_t kind)
{
    switch (kind) {
        FILTERS_COMMON_EACH_ACTION_KIND(FILTERS_COMMON_CASE)
        return true;
    }
    return false;
}
#undef FILTERS_COMMON_CASE
static_assert(hasRow(MATCH_ALL) && hasRow(ACTION_PERMIT));

// ---------------------------------------------------------------------------------------- objects

/**
 * The object as a T, or null if it is not a T, whatever kind it claims to be. An object of exactly
 * the class Exact, which nearly every object is, is recognised without searching its bases.
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

/**
 * Whether two objects of Class's kind are equal, as compared by the class that holds their values.
 * If Class has no values, objects of other classes count as equal too.
 */
template <class Class, class Base>
bool areEqualAs(const Base& a, const Base& b)
{
    using Compared = std::conditional_t<hasNoValues<Class>, Class, ValuesOf<Class>>;
    const auto* mine = as<Compared, Class>(a);
    const auto* theirs = as<Compared, Class>(b);
    if (mine == nullptr || theirs == nullptr)
        return hasNoValues<Class>;
    return *mine == *theirs;
}

/** Whether the object can be copied as a T: any object can if T has no values. */
template <class T, class Base>
bool isCopiedAs(const Base& object)
{
    return hasNoValues<T> || as<T>(object) != nullptr;
}

/** A copy of the object as a T, or nothing if T has values and the object is not a T. */
template <class T, class Base>
std::optional<T> copyAs(const Base& object)
{
    if constexpr (hasNoValues<T>) {
        return T();
    } else {
        const T* exact = as<T>(object);
        return exact == nullptr ? std::nullopt : std::optional<T>(*exact);
    }
}

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_KINDS_H
