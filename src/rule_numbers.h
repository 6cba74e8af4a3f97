/**
 * How rule text writes and reads numbers, and the small steps that reading consists of.
 */
#ifndef FILTER_COMMON_SRC_RULE_NUMBERS_H
#define FILTER_COMMON_SRC_RULE_NUMBERS_H

#include "rule_words.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

namespace FiltersCommon {

template <class Number>
void putNumber(std::string& out, Number number)
{
    std::array<char, 20> digits;
    const auto end = std::to_chars(digits.begin(), digits.end(), number).ptr;
    out.append(digits.begin(), end);
}

/** Exactly @p count hexadecimal digits. */
inline void putHexadecimal(std::string& out, std::uint32_t number, int count)
{
    for (int shift = 4 * (count - 1); shift >= 0; shift -= 4)
        out += "0123456789abcdef"[number >> shift & 0xF];
}

/** The word of the number, or the number itself. */
template <class Row, std::size_t N>
void putNamed(std::string& out, const Row (&rows)[N], std::uint32_t code)
{
    if (const std::string_view word = wordOf(rows, code); !word.empty())
        out += word;
    else
        putNumber(out, code);
}

/** Separates the elements of a list, the first of which stands behind a "=". */
inline void putSeparator(std::string& out)
{
    if (out.back() != '=')
        out += ',';
}

/** The value of a hexadecimal digit; 16 for anything else. */
constexpr unsigned digitOf(char c)
{
    if (c >= '0' && c <= '9')
        return static_cast<unsigned>(c - '0');
    if (c >= 'a' && c <= 'f')
        return static_cast<unsigned>(c - 'a') + 10;
    return c >= 'A' && c <= 'F' ? static_cast<unsigned>(c - 'A') + 10 : 16;
}

/** Takes @p prefix from the front of @p text. */
inline bool take(std::string_view& text, std::string_view prefix)
{
    if (text.substr(0, prefix.size()) != prefix)
        return false;
    text.remove_prefix(prefix.size());
    return true;
}

/** Takes what comes before the first of the @p ends, or all. */
inline std::string_view takeUntil(std::string_view& text, std::string_view ends)
{
    // The standard library's search for one of several characters calls a function for each byte.
    const auto isEnd = [&](char c) { return std::find(ends.begin(), ends.end(), c) != ends.end(); };
    const std::size_t size =
        ends.size() == 1 ? std::min(text.find(ends[0]), text.size())
                         : static_cast<std::size_t>(std::find_if(text.begin(), text.end(), isEnd) -
                                                    text.begin());
    const std::string_view front = text.substr(0, size);
    text.remove_prefix(front.size());
    return front;
}

/** Reads all of @p digits as one number that is no greater than @p most. */
inline bool readDigits(std::string_view digits, unsigned base, std::uint64_t most,
                       std::uint64_t& number)
{
    number = 0;
    for (const char c : digits) {
        const unsigned digit = digitOf(c);
        if (digit >= base)
            return false;
        number = number * base + digit;
        if (number > most)
            return false;
    }
    return !digits.empty();
}

/** Reads all of @p text, decimal or hexadecimal with 0x. */
template <class Number>
bool readNumber(std::string_view text, Number& number,
                std::uint64_t most = std::numeric_limits<Number>::max())
{
    std::uint64_t wide = 0;
    if (!(take(text, "0x") ? readDigits(text, 16, most, wide) : readDigits(text, 10, most, wide)))
        return false;
    number = static_cast<Number>(wide);
    return true;
}

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_RULE_NUMBERS_H
