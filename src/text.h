/**
 * Pieces of text dumps. Numbers are written with the formatting that the stream has.
 *
 * std::endl and "\n" are not interchangeable here: which lines flush the stream is part of the
 * format that readers of dumps see.
 */
#ifndef FILTER_COMMON_SRC_TEXT_H
#define FILTER_COMMON_SRC_TEXT_H

#include "filter_actions.h"
#include "filter_matches.h"

#include <list>
#include <ostream>
#include <type_traits>

namespace FiltersCommon {

/** The title of an object's dump. */
#define FILTERS_COMMON_TITLE(Class) "    =" #Class "="

template <class T>
inline constexpr const char* TITLE = nullptr;

#define FILTERS_COMMON_TITLED(Class)                                                               \
    template <>                                                                                    \
    inline constexpr const char* TITLE<Class> = FILTERS_COMMON_TITLE(Class);
FILTERS_COMMON_MATCH_CLASSES(FILTERS_COMMON_TITLED)
FILTERS_COMMON_TITLED(MatchDSCP)
FILTERS_COMMON_ACTION_CLASSES(FILTERS_COMMON_TITLED)
#undef FILTERS_COMMON_TITLED

/** An 8-bit value or an enumerator as a number rather than a character or a word. */
template <class T>
auto number(T value)
{
    if constexpr (std::is_enum_v<T>)
        return static_cast<std::underlying_type_t<T>>(value);
    else if constexpr (sizeof(T) == 1 && !std::is_same_v<T, bool>)
        return static_cast<unsigned>(value);
    else
        return value;
}

/** Writes @p label and @p value as one line that flushes the stream. */
template <class T>
void writeLine(std::ostream& out, const char* label, const T& value)
{
    out << label << number(value) << std::endl;
}

/** Writes @p text, or sets failbit where a conversion yielded none. */
void writeConverted(std::ostream& out, const char* text);

/** Writes the address as the C library writes it, without leading zeros. */
void writeMac(std::ostream& out, const ether_addr& mac);

/** Writes the name of the interface. */
void writeIntfName(std::ostream& out, limid_t limId);

/** Writes the line with the number of ports, and the line with their names. */
void writePorts(std::ostream& out, const std::list<limid_t>& ports);

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_TEXT_H
