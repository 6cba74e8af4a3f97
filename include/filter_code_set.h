/**
 * Sets of codes: CodeSet. Callers include filter_entries.h or filter_refusals.h.
 */
#ifndef FILTER_COMMON_FILTER_CODE_SET_H
#define FILTER_COMMON_FILTER_CODE_SET_H

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iterator>

#pragma GCC visibility push(default)

namespace FiltersCommon {

/**
 * A set of match kinds, action kinds, group stages, group types or policer stages, iterated in
 * ascending order. It is a plain number: copying it allocates nothing.
 */
template <class Code>
class CodeSet {
public:
    /** Codes are treated as unsigned; those of LIMIT and above are never in a set. */
    static constexpr std::uint32_t LIMIT = 64;

    class Iterator {
    public:
        using iterator_category = std::input_iterator_tag;
        using value_type = Code;
        using difference_type = std::ptrdiff_t;
        using pointer = const Code*;
        using reference = Code;

        explicit constexpr Iterator(std::uint64_t bits) : bits_(bits) {}

        constexpr Code operator*() const { return static_cast<Code>(__builtin_ctzll(bits_)); }
        constexpr Iterator& operator++()
        {
            bits_ &= bits_ - 1;
            return *this;
        }
        constexpr Iterator operator++(int)
        {
            const Iterator before(*this);
            ++*this;
            return before;
        }
        constexpr bool operator==(Iterator other) const { return bits_ == other.bits_; }
        constexpr bool operator!=(Iterator other) const { return bits_ != other.bits_; }

    private:
        std::uint64_t bits_;
    };

    constexpr CodeSet() = default;
    constexpr CodeSet(std::initializer_list<Code> codes)
    {
        for (const Code code : codes)
            insert(code);
    }

    constexpr void insert(Code code) { bits_ |= bitOf(code); }
    constexpr void erase(Code code) { bits_ &= ~bitOf(code); }

    constexpr bool contains(Code code) const { return (bits_ & bitOf(code)) != 0; }
    constexpr bool empty() const { return bits_ == 0; }
    constexpr std::size_t size() const
    {
        std::size_t size = 0;
        for (Iterator code = begin(); code != end(); ++code)
            ++size;
        return size;
    }

    constexpr Iterator begin() const { return Iterator(bits_); }
    constexpr Iterator end() const { return Iterator(0); }

    /** The codes of this set that are less than @p code. */
    constexpr CodeSet below(Code code) const
    {
        const std::uint64_t bit = bitOf(code);
        return bit == 0 ? *this : CodeSet(bits_ & (bit - 1));
    }

    /** The codes in either set. */
    constexpr CodeSet operator|(CodeSet other) const { return CodeSet(bits_ | other.bits_); }
    /** The codes in both sets. */
    constexpr CodeSet operator&(CodeSet other) const { return CodeSet(bits_ & other.bits_); }
    /** The codes in this set but not in @p other. */
    constexpr CodeSet operator-(CodeSet other) const { return CodeSet(bits_ & ~other.bits_); }

    /**
     * Bit n, of value 1 << n, is code n. The number may be stored and compared with that of a later
     * version, as codes never change their meaning. A later version may admit more, so a program
     * should ignore bits that it does not know, not reject them.
     */
    constexpr std::uint64_t bits() const { return bits_; }

    constexpr bool operator==(CodeSet other) const { return bits_ == other.bits_; }
    constexpr bool operator!=(CodeSet other) const { return bits_ != other.bits_; }

private:
    explicit constexpr CodeSet(std::uint64_t bits) : bits_(bits) {}

    static constexpr std::uint64_t bitOf(Code code)
    {
        const auto number = static_cast<std::uint32_t>(code);
        return number < LIMIT ? std::uint64_t{1} << number : 0;
    }

    std::uint64_t bits_ = 0;
};

} // namespace FiltersCommon

#pragma GCC visibility pop

#endif // FILTER_COMMON_FILTER_CODE_SET_H
