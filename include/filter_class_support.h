/**
 * Shared by the declarations of the match and action classes. Callers include filter_matches.h or
 * filter_actions.h.
 */
#ifndef FILTER_COMMON_FILTER_CLASS_SUPPORT_H
#define FILTER_COMMON_FILTER_CLASS_SUPPORT_H

#include <type_traits>

#pragma GCC visibility push(default)

namespace FiltersCommon {

/**
 * A class that cannot be instantiated. Class({}) calls the constructor that takes a list of these;
 * it does the same as construction from an empty or zero value. Without it, the compiler could not
 * choose between that and copying a default-constructed object. In the lists of kinds it marks the
 * kinds without values.
 */
class NoValues {
    class Nothing;
    explicit NoValues(Nothing&);
};

/** The class as which a T and a U are compared: the one the other derives from, or else Base. */
template <class Base, class T, class U>
using ComparedAs = std::conditional_t<std::is_base_of_v<T, U>, T,
                                      std::conditional_t<std::is_base_of_v<U, T>, U, Base>>;

/** An int if T and U are different classes that both derive from Base. */
template <class Base, class T, class U>
using EnableIfDifferent = std::enable_if_t<
    std::is_base_of_v<Base, T> && std::is_base_of_v<Base, U> && !std::is_same_v<T, U>, int>;

} // namespace FiltersCommon

/**
 * Declares copying, moving and the destructor. The destructor is defined in the library so that the
 * compiler emits the class's virtual table and type information there and not in callers, which may
 * be compiled without type information.
 */
#define FILTERS_COMMON_DECLARE_COPYABLE(Class)                                                     \
    Class(const Class&) = default;                                                                 \
    Class(Class&&) noexcept = default;                                                             \
    Class& operator=(const Class&) = default;                                                      \
    Class& operator=(Class&&) noexcept = default;                                                  \
    ~Class() override;

#pragma GCC visibility pop

#endif // FILTER_COMMON_FILTER_CLASS_SUPPORT_H
