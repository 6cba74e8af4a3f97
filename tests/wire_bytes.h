/**
 * Builds wire bytes by hand, including those that no writer makes and the parser accepts, or should
 * refuse.
 */
#ifndef FILTER_COMMON_TESTS_WIRE_BYTES_H
#define FILTER_COMMON_TESTS_WIRE_BYTES_H

#include <cstddef>
#include <cstdint>
#include <string>

namespace FiltersCommon::test::wire {

/** How the value after a tag is written. */
enum Type : std::uint32_t { VARINT, FIXED64, DELIMITED, GROUP, END_GROUP, FIXED32 };

/** Seven bits a byte, lowest first; padded to @p length bytes. */
inline std::string varint(std::uint64_t value, std::size_t length = 1)
{
    std::string bytes;
    for (; value >= 0x80 || length > 1; value >>= 7, length -= length != 0)
        bytes += static_cast<char>((value & 0x7F) | 0x80);
    return bytes + static_cast<char>(value);
}

inline std::string tag(std::uint32_t field, Type type) { return varint(field << 3 | type); }

inline std::string number(std::uint32_t field, std::uint64_t value, std::size_t length = 1)
{
    return tag(field, VARINT) + varint(value, length);
}

inline std::string fixed32(std::uint32_t field) { return tag(field, FIXED32) + "1234"; }
inline std::string fixed64(std::uint32_t field) { return tag(field, FIXED64) + "12345678"; }

/** A string, a message, or packed numbers. */
inline std::string delimited(std::uint32_t field, const std::string& content)
{
    return tag(field, DELIMITED) + varint(content.size()) + content;
}

inline std::string group(std::uint32_t field, const std::string& content)
{
    return tag(field, GROUP) + content + tag(field, END_GROUP);
}

/** A number of the highest field number, which no message has. */
constexpr std::uint32_t UNKNOWN = 536870911;

} // namespace FiltersCommon::test::wire

#endif // FILTER_COMMON_TESTS_WIRE_BYTES_H
