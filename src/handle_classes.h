/**
 * Finds the class behind a match or action handle of the C interface by the object's kind.
 */
#ifndef FILTER_COMMON_SRC_HANDLE_CLASSES_H
#define FILTER_COMMON_SRC_HANDLE_CLASSES_H

#include "kinds.h"

#include <type_traits>

namespace FiltersCommon {

/** MATCH_FORWARDING_TYPE is deliberately not offered in C. */
template <class T>
inline constexpr bool isOfferedInC = !std::is_same_v<T, MatchForwardingType>;

/** The kinds of the classes that are offered in C. */
template <class Kinds>
CodeSet<typename Kinds::Code> codesOfferedInC()
{
    CodeSet<typename Kinds::Code> codes;
    Kinds::forEach([&](auto kind) {
        using Class = ClassOf<decltype(kind)>;
        if (isOfferedInC<Class>)
            codes.insert(Class::KIND);
    });
    return codes;
}

/**
 * Calls @p function with the object as its kind's class and returns its result. If there is no such
 * class, or the object is not of that class, returns the result of @p refused for the reason.
 */
template <class Kinds, class Base, class Refused, class Function>
auto withClass(Base& object, Refused refused, Function function)
{
    constexpr bool IS_MATCH = std::is_same_v<Kinds, MatchKinds>;
    using Result = std::invoke_result_t<Refused, filtersRefusalReason_t>;
    if (!Kinds::codes().contains(object.getType()))
        return refused(IS_MATCH ? REFUSAL_UNKNOWN_MATCH_KIND : REFUSAL_UNKNOWN_ACTION_KIND);
    return Kinds::dispatch(object.getType(), Result(), [&](auto kind) -> Result {
        using Class = ClassOf<decltype(kind)>;
        if constexpr (!isOfferedInC<Class>) {
            return refused(REFUSAL_MATCH_NOT_IN_C);
        } else if constexpr (hasNoValues<Class>) {
            Class instead;
            return function(instead);
        } else if (auto* exact = as<Class>(object)) {
            return function(*exact);
        } else {
            return refused(IS_MATCH ? REFUSAL_MATCH_NOT_OF_ITS_KIND
                                    : REFUSAL_ACTION_NOT_OF_ITS_KIND);
        }
    });
}

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_HANDLE_CLASSES_H
