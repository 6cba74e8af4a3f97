/**
 * The words of rule text.
 */
#ifndef FILTER_COMMON_SRC_RULE_WORDS_H
#define FILTER_COMMON_SRC_RULE_WORDS_H

#include "code_rows.h"
#include "filter_actions.h"
#include "filter_matches.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <optional>
#include <string_view>

namespace FiltersCommon {

/** The name of an enumerator without its prefix, in lower case. */
class KindWord {
public:
    constexpr explicit KindWord(std::string_view enumerator)
    {
        enumerator.remove_prefix(enumerator.find('_') + 1);
        for (const char c : enumerator)
            text_[size_++] = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    }

    constexpr std::string_view text() const { return {text_.data(), size_}; }

private:
    std::array<char, 31> text_{};
    std::uint8_t size_ = 0;
};

#define FILTERS_COMMON_DEFINE_WORD(code, Class, Values) KindWord(#code),
inline constexpr KindWord MATCH_WORDS[] = {
    FILTERS_COMMON_EACH_MATCH_KIND(FILTERS_COMMON_DEFINE_WORD)};
inline constexpr KindWord ACTION_WORDS[] = {
    FILTERS_COMMON_EACH_ACTION_KIND(FILTERS_COMMON_DEFINE_WORD)};
#undef FILTERS_COMMON_DEFINE_WORD

constexpr std::string_view wordOf(filtersMatch_t kind)
{
    return MATCH_WORDS[static_cast<std::size_t>(kind)].text();
}
constexpr std::string_view wordOf(filtersAction_t kind)
{
    return ACTION_WORDS[static_cast<std::size_t>(kind)].text();
}

template <class Code, std::size_t N>
std::optional<Code> kindOf(const KindWord (&words)[N], std::string_view word)
{
    for (std::size_t i = 0; i < N; ++i)
        if (words[i].text() == word)
            return static_cast<Code>(i);
    return std::nullopt;
}

/** A code that is no kind, and its word. */
struct CodeWord {
    std::uint32_t code;
    std::string_view word;
};

inline constexpr CodeWord PROTOCOL_WORDS[] = {
    {1, "icmp"}, {2, "igmp"}, {6, "tcp"},     {17, "udp"},  {47, "gre"},
    {50, "esp"}, {51, "ah"},  {58, "icmpv6"}, {89, "ospf"}, {132, "sctp"},
};
inline constexpr CodeWord COUNTER_TYPE_WORDS[] = {
    {COUNTER_TYPE_INVALID, "invalid"},
    {COUNTER_TYPE_PACKETS, "packets"},
    {COUNTER_TYPE_OCTETS, "octets"},
};

/** The word of the code, or none. */
template <class Row, std::size_t N>
constexpr std::string_view wordOf(const Row (&rows)[N], std::uint32_t code)
{
    const Row* row = findRow(rows, code);
    return row == nullptr ? std::string_view() : row->word;
}

/** The code that has the word, if one has. */
template <class Row, std::size_t N>
constexpr std::optional<std::uint32_t> codeOf(const Row (&rows)[N], std::string_view word)
{
    for (const Row& row : rows)
        if (row.word == word)
            return row.code;
    return std::nullopt;
}

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_RULE_WORDS_H
