/**
 * Shared by many tests: short ways to write values of the small types.
 */
#ifndef FILTER_COMMON_TESTS_SUPPORT_H
#define FILTER_COMMON_TESTS_SUPPORT_H

#include "filter_groups.h"

#include <arpa/inet.h>
#include <netinet/ether.h>

#include <cstdint>
#include <memory>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>

namespace FiltersCommon::test {

/** The interface identifier with these four octets. */
constexpr limid_t limId(int a, int b, int c, int d)
{
    return {{static_cast<std::uint8_t>(a), static_cast<std::uint8_t>(b),
             static_cast<std::uint8_t>(c), static_cast<std::uint8_t>(d)}};
}

inline ether_addr mac(const char* text)
{
    ether_addr value;
    if (ether_aton_r(text, &value) == nullptr)
        throw std::invalid_argument(text);
    return value;
}

inline in_addr ipv4(const char* text)
{
    in_addr value;
    if (inet_pton(AF_INET, text, &value) != 1)
        throw std::invalid_argument(text);
    return value;
}

inline in6_addr ipv6(const char* text)
{
    in6_addr value;
    if (inet_pton(AF_INET6, text, &value) != 1)
        throw std::invalid_argument(text);
    return value;
}

/** A policer with one action, at the given stage. */
inline policer::Policer policerAt(policer::Stage stage, std::uint32_t id = 1)
{
    policer::Mode::Rates rates;
    rates.cir = 1000;
    rates.cbs = 2000;
    return {id,
            stage,
            policer::Mode(policer::Mode::FLOW, rates),
            {policer::Action(policer::Action::RED, policer::Action::DROP)}};
}

/** What the object's own output operator writes to a fresh stream. */
template <class T>
std::string dump(const T& object)
{
    using ::operator<<;
    std::ostringstream out;
    out << object;
    return out.str();
}

/** All that can be seen of an entry or a group: its bytes and its dump. */
template <class T>
std::string stateOf(const T& object)
{
    std::string bytes;
    object.serialize(&bytes);
    return bytes + "\n" + dump(object);
}

#ifdef FILTER_COMMON_EMULATED
/** A program cannot start itself once more in an emulator. */
constexpr char DEATH_TEST_STYLE[] = "fast";
#else
/** Each runs in a fresh process, away from sanitizers, threads and earlier tests. */
constexpr char DEATH_TEST_STYLE[] = "threadsafe";
#endif

} // namespace FiltersCommon::test

#endif // FILTER_COMMON_TESTS_SUPPORT_H
