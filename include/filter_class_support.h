/**
 * What the declarations of the match and action classes have in common. A caller includes
 * filter_matches.h or filter_actions.h.
 */
#ifndef FILTER_COMMON_FILTER_CLASS_SUPPORT_H
#define FILTER_COMMON_FILTER_CLASS_SUPPORT_H

#include <type_traits>

#pragma GCC visibility push(default)

namespace FiltersCommon {

/**
 * No object of this class can be made. A constructor that takes a list of them is the one that
 * Class({}) calls, and does what the constructor from an empty or zero value does: the compiler
 * could not choose between that and the copy of a default-constructed object.
 */
class NoValues {
    class Nothing;
    explicit NoValues(Nothing&);
};

/** The class that compares a T with a U: the base class of the two if one is that, or Base. */
template <class Base, class T, class U>
using ComparedAs = std::conditional_t<std::is_base_of_v<T, U>, T,
                                      std::conditional_t<std::is_base_of_v<U, T>, U, Base>>;

/** An int, for two different classes that derive from Base. */
template <class Base, class T, class U>
using EnableIfDifferent = std::enable_if_t<
    std::is_base_of_v<Base, T> && std::is_base_of_v<Base, U> && !std::is_same_v<T, U>, int>;

} // namespace FiltersCommon

/**
 * Declares copies, moves and the destructor. The destructor is defined in the library: there the
 * compiler then puts the class's virtual table and type information, and not into callers, which
 * may be compiled without the latter.
 */
#define FILTERS_COMMON_DECLARE_COPYABLE(Class)                                                     \
    Class(const Class&) = default;                                                                 \
    Class(Class&&) noexcept = default;                                                             \
    Class& operator=(const Class&) = default;                                                      \
    Class& operator=(Class&&) noexcept = default;                                                  \
    ~Class() override;

#pragma GCC visibility pop

#endif // FILTER_COMMON_FILTER_CLASS_SUPPORT_H
