/**
 * How rule text writes and reads addresses and their masks.
 */
#ifndef FILTER_COMMON_SRC_RULE_ADDRESSES_H
#define FILTER_COMMON_SRC_RULE_ADDRESSES_H

#include "rule_numbers.h"
#include "wire/bytes.h"

#include <arpa/inet.h>
#include <net/ethernet.h>
#include <netinet/in.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

namespace FiltersCommon {

/** Addresses of each kind: their bytes are in network byte order. */
template <class Address>
struct AddressText;

template <class Address, int FAMILY>
struct InternetAddressText {
    static void put(std::string& out, const Address& address)
    {
        std::array<char, INET6_ADDRSTRLEN> text;
        out += inet_ntop(FAMILY, &address, text.data(), text.size());
    }

    static bool read(std::string_view text, Address& address)
    {
        std::array<char, INET6_ADDRSTRLEN> terminated{};
        if (text.size() >= terminated.size())
            return false;
        std::copy(text.begin(), text.end(), terminated.begin());
        return text.find('\0') == text.npos && inet_pton(FAMILY, terminated.data(), &address) == 1;
    }
};

template <>
struct AddressText<in_addr> : InternetAddressText<in_addr, AF_INET> {
    static constexpr const char* EXPECTED = "an IPv4 address";
    static constexpr const char* EXPECTED_MASK = "a length from 0 to 32 or a mask";
};

template <>
struct AddressText<in6_addr> : InternetAddressText<in6_addr, AF_INET6> {
    static constexpr const char* EXPECTED = "an IPv6 address";
    static constexpr const char* EXPECTED_MASK = "a length from 0 to 128 or a mask";
};

template <>
struct AddressText<ether_addr> {
    static constexpr const char* EXPECTED = "a MAC address";
    static constexpr const char* EXPECTED_MASK = "a mask in the form of a MAC address";

    static void put(std::string& out, const ether_addr& address)
    {
        for (const std::uint8_t octet : address.ether_addr_octet) {
            putHexadecimal(out, octet, 2);
            out += ':';
        }
        out.pop_back();
    }

    static bool read(std::string_view text, ether_addr& address)
    {
        for (std::uint8_t& octet : address.ether_addr_octet) {
            std::uint64_t number = 0;
            const std::string_view digits = takeUntil(text, ":");
            if (digits.size() > 2 || !readDigits(digits, 16, 0xFF, number))
                return false;
            octet = static_cast<std::uint8_t>(number);
            const bool isLast = &octet == std::end(address.ether_addr_octet) - 1;
            if (!isLast && !take(text, ":"))
                return false;
        }
        return text.empty();
    }
};

template <class T>
inline constexpr bool IS_ADDRESS =
    std::is_same_v<T, in_addr> || std::is_same_v<T, in6_addr> || std::is_same_v<T, ether_addr>;

template <class Address>
using AddressBytes = std::array<std::uint8_t, sizeof(Address)>;

template <class Address>
AddressBytes<Address> bytesIn(const Address& address)
{
    AddressBytes<Address> bytes;
    std::memcpy(bytes.data(), &address, sizeof address);
    return bytes;
}

/** The mask that begins with @p length ones. */
template <class Mask>
Mask maskOf(std::uint32_t length)
{
    AddressBytes<Mask> bytes{};
    for (std::uint32_t bit = 0; bit < length; ++bit)
        bytes[bit / 8] = static_cast<std::uint8_t>(bytes[bit / 8] | 0x80U >> bit % 8);
    return fromBytes<Mask>({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}

/** The length whose mask this is, or none. */
template <class Mask>
std::optional<std::uint32_t> lengthOf(const Mask& mask)
{
    std::uint32_t ones = 0;
    for (const std::uint8_t byte : bytesIn(mask))
        for (unsigned rest = byte; rest != 0; rest &= rest - 1)
            ++ones;
    return sameBytes(mask, maskOf<Mask>(ones)) ? std::optional(ones) : std::nullopt;
}

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_RULE_ADDRESSES_H
