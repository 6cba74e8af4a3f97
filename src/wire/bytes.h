/**
 * Values as bytes: addresses and interface identifiers are compared and sent byte by byte, so
 * nothing here depends on the byte order of the host.
 */
#ifndef FILTER_COMMON_SRC_WIRE_BYTES_H
#define FILTER_COMMON_SRC_WIRE_BYTES_H

#include <limidmgr_decode.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <list>
#include <string_view>
#include <type_traits>

namespace FiltersCommon {

template <class T>
bool sameBytes(const T& a, const T& b)
{
    static_assert(std::has_unique_object_representations_v<T>);
    return std::memcmp(&a, &b, sizeof(T)) == 0;
}

/** Whether both lists hold the same interfaces in the same order. */
inline bool sameBytes(const std::list<limid_t>& a, const std::list<limid_t>& b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const limid_t& x, const limid_t& y) { return sameBytes(x, y); });
}

template <class T>
T allOnes()
{
    T value;
    std::memset(&value, 0xFF, sizeof value);
    return value;
}

/** The value of a byte field: a short field is padded with zeros, a long one is truncated. */
template <class T>
T fromBytes(std::string_view bytes)
{
    static_assert(std::is_trivially_copyable_v<T>);
    T value{};
    if (!bytes.empty()) // an empty view may have null data
        std::memcpy(&value, bytes.data(), std::min(bytes.size(), sizeof value));
    return value;
}

/** The four octets as one number; the first octet is the most significant. */
constexpr std::uint32_t packLimId(const limid_t& limId)
{
    return std::uint32_t{limId.octet[0]} << 24 | std::uint32_t{limId.octet[1]} << 16 |
           std::uint32_t{limId.octet[2]} << 8 | std::uint32_t{limId.octet[3]};
}

constexpr limid_t unpackLimId(std::uint32_t number)
{
    return {{static_cast<std::uint8_t>(number >> 24), static_cast<std::uint8_t>(number >> 16),
             static_cast<std::uint8_t>(number >> 8), static_cast<std::uint8_t>(number)}};
}

/** The 64 bits that are written for the number: a negative number keeps its sign. */
template <class Field>
constexpr std::uint64_t widened(std::uint32_t number)
{
    if constexpr (std::is_same_v<typename Field::Type, std::int32_t>)
        return static_cast<std::uint64_t>(std::int64_t{static_cast<std::int32_t>(number)});
    else
        return number;
}

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_WIRE_BYTES_H
