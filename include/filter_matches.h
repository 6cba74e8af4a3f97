/**
 * Match criteria: the conditions of a packet-filter rule.
 *
 * Every criterion is an object of a class derived from Match and carries the code of its kind. The
 * value families hold the data; most kinds only fix the code of a family. Objects are plain values:
 * nothing is validated or normalised (192.0.2.1/24 and 192.0.2.0/24 are different matches). Numbers
 * are in host byte order, addresses in network byte order.
 *
 * Two matches of the same class are compared by their values; a match of a class and one of a class
 * derived from it are compared as the base class, in either order. Any other comparison, and any
 * through Match, uses Match::operator==, where objects of different kinds differ.
 *
 * Assigning one match to another copies the values, never the kind.
 */
#ifndef FILTER_COMMON_FILTER_MATCHES_H
#define FILTER_COMMON_FILTER_MATCHES_H

#include "filter_match_kinds.h"

#include <iosfwd>

#pragma GCC visibility push(default)

namespace FiltersCommon {

/** Whether T is exactly one of the classes that entries know, ignoring const and volatile. */
template <class T>
inline constexpr bool isMatchClass = false;
template <class T>
inline constexpr bool isMatchClass<const T> = isMatchClass<T>;
template <class T>
inline constexpr bool isMatchClass<volatile T> = isMatchClass<T>;
template <class T>
inline constexpr bool isMatchClass<const volatile T> = isMatchClass<T>;

#define FILTERS_COMMON_DECLARE_KNOWN(kind, Class, Values)                                          \
    template <>                                                                                    \
    inline constexpr bool isMatchClass<Class> = true;
FILTERS_COMMON_EACH_MATCH_KIND(FILTERS_COMMON_DECLARE_KNOWN)
FILTERS_COMMON_DECLARE_KNOWN(MATCH_TOS, MatchDSCP, MatchToS)
#undef FILTERS_COMMON_DECLARE_KNOWN

} // namespace FiltersCommon

// ------------------------------------------------------------------------------------- text dumps
//
// One operator per class, at global scope. A Match is printed according to its code: a MatchDSCP as
// a MatchToS, and an object of an unknown kind not at all. A value family prints only the lines of
// its values.

#define FILTERS_COMMON_DECLARE_PRINTED(Class)                                                      \
    std::ostream& operator<<(std::ostream& out, const FiltersCommon::Class& match);
#define FILTERS_COMMON_DECLARE_KIND_PRINTED(kind, Class, Values)                                   \
    FILTERS_COMMON_DECLARE_PRINTED(Class)
FILTERS_COMMON_DECLARE_PRINTED(Match)
FILTERS_COMMON_MATCH_FAMILIES(FILTERS_COMMON_DECLARE_PRINTED)
FILTERS_COMMON_EACH_MATCH_KIND(FILTERS_COMMON_DECLARE_KIND_PRINTED)
FILTERS_COMMON_DECLARE_PRINTED(MatchDSCP)
#undef FILTERS_COMMON_DECLARE_KIND_PRINTED
#undef FILTERS_COMMON_DECLARE_PRINTED

#pragma GCC visibility pop

#endif // FILTER_COMMON_FILTER_MATCHES_H
