/**
 * The bytes of an input, read as decisions: numbers, addresses, lists.
 */
#ifndef FILTER_COMMON_FUZZ_BYTE_SOURCE_H
#define FILTER_COMMON_FUZZ_BYTE_SOURCE_H

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <type_traits>

namespace FiltersCommon::fuzz {

/** Reads from the front; past the end there are zeros. The same on every host. */
class ByteSource {
public:
    explicit ByteSource(std::string_view bytes) : rest_(bytes) {}

    bool isEmpty() const { return rest_.empty(); }

    std::uint8_t byte()
    {
        if (rest_.empty())
            return 0;
        const auto taken = static_cast<std::uint8_t>(rest_.front());
        rest_.remove_prefix(1);
        return taken;
    }

    bool flip() { return (byte() & 1) != 0; }

    /** A number less than @p bound, which is at most 256. */
    std::size_t below(std::size_t bound) { return byte() % bound; }

    /** A number of any width, most significant byte first. */
    template <class T>
    T number()
    {
        std::uint64_t value = 0;
        for (std::size_t i = 0; i < sizeof(T); ++i)
            value = value << 8 | byte();
        return static_cast<T>(value);
    }

    /** A number that is mostly small, but can be any of its width. */
    template <class T>
    T smallNumber()
    {
        const std::uint8_t first = byte();
        return first < 0xF0 ? static_cast<T>(first & 0x0F) : number<T>();
    }

    /** An object whose bytes are its value. */
    template <class T>
    T raw()
    {
        static_assert(std::has_unique_object_representations_v<T>);
        unsigned char bytes[sizeof(T)];
        for (unsigned char& place : bytes)
            place = byte();
        T value;
        std::memcpy(&value, bytes, sizeof value);
        return value;
    }

private:
    std::string_view rest_;
};

} // namespace FiltersCommon::fuzz

#endif // FILTER_COMMON_FUZZ_BYTE_SOURCE_H
