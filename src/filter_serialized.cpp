#include "filter_serialized.h"

#include "contract.h"
#include "filter_serialized_internal.h"

#include <cstring>
#include <limits>
#include <new>
#include <stdexcept>
#include <utility>

namespace FiltersCommon {

FiltersSerialized::FiltersSerialized(const std::string& s) { copyData(s); }

FiltersSerialized::FiltersSerialized(const FiltersSerialized& other)
    : size_(other.size_), data_(other.data_ ? new char[other.size_] : nullptr)
{
    if (data_)
        std::memcpy(data_.get(), other.data_.get(), size_);
}

FiltersSerialized::FiltersSerialized(FiltersSerialized&& other) noexcept
    : size_(std::exchange(other.size_, 0)), data_(std::move(other.data_))
{}

FiltersSerialized& FiltersSerialized::operator=(const FiltersSerialized& other)
{
    return *this = FiltersSerialized(other);
}

FiltersSerialized& FiltersSerialized::operator=(FiltersSerialized&& other) noexcept
{
    data_ = std::move(other.data_);
    size_ = std::exchange(other.size_, 0);
    return *this;
}

void FiltersSerialized::setData(const std::string& s)
{
    FILTERS_COMMON_REQUIRE(data_ == nullptr, "filter_serialized.cpp", 40,
                           "virtual void FiltersCommon::FiltersSerialized::setData(const string&)");
    copyData(s);
}

void FiltersSerialized::copyData(const std::string& s)
{
    if (s.size() >= std::numeric_limits<std::uint32_t>::max())
        throw std::bad_alloc();
    std::unique_ptr<char[]> bytes(new char[s.size() + 1]);
    std::memcpy(bytes.get(), s.c_str(), s.size() + 1);
    data_ = std::move(bytes);
    size_ = static_cast<std::uint32_t>(s.size() + 1);
}

std::string_view bytesOf(const FiltersSerialized& s)
{
    const std::uint32_t size = s.size();
    // The same exception and text with every standard library.
    if (s.data() == nullptr && size != 0)
        throw std::logic_error("basic_string::_M_construct null not valid");
    return size == 0 ? std::string_view("") : std::string_view(s.data(), size);
}

} // namespace FiltersCommon
