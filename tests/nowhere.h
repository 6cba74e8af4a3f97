/**
 * A stream's buffer that takes any text, keeps nothing and counts the characters.
 */
#ifndef FILTER_COMMON_TESTS_NOWHERE_H
#define FILTER_COMMON_TESTS_NOWHERE_H

#include <cstddef>
#include <ios>
#include <streambuf>

namespace FiltersCommon::test {

class Nowhere : public std::streambuf {
public:
    std::size_t length() const { return length_; }

private:
    int_type overflow(int_type c) override
    {
        ++length_;
        return traits_type::not_eof(c);
    }

    std::streamsize xsputn(const char*, std::streamsize size) override
    {
        length_ += static_cast<std::size_t>(size);
        return size;
    }

    std::size_t length_ = 0;
};

} // namespace FiltersCommon::test

#endif // FILTER_COMMON_TESTS_NOWHERE_H
