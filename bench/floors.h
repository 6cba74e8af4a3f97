/**
 * The least code that holds rules as the library does and does the same with them: it knows only
 * the kinds of a five-tuple, and checks nothing.
 */
#ifndef FILTER_COMMON_BENCH_FLOORS_H
#define FILTER_COMMON_BENCH_FLOORS_H

#include "rules.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>

namespace bench {

/** An address or a port with its mask, a protocol, or only a kind. */
struct Object {
    explicit Object(int code, std::uint32_t v = 0, std::uint32_t m = 0)
        : kind(code), value(v), mask(m)
    {}
    Object(const Object&) = default;
    virtual ~Object() = default;

    int kind;
    std::uint32_t value;
    std::uint32_t mask;
};

using Objects = std::map<int, std::unique_ptr<Object>>;

/** One without actions. */
struct Policer {
    std::uint32_t id = UINT32_MAX;
    std::uint32_t stage = 2;
    std::uint32_t mode[7] = {4}; /**< the type and six rates */
};

struct Entry {
    std::uint32_t id = 0;
    std::uint32_t priority = 0;
    Policer policer;
    Objects matches;
    Objects actions;
};

using Entries = std::map<std::uint16_t, Entry>;

Entries floorOf(const Rules& rules);

/** The bytes of a group of the entries. */
std::string encode(const Entries& entries);
Entries decode(const std::string& bytes);

/** The dump of a group of the entries, through a stream or appended to a string. */
std::string dumpThroughStream(const Entries& entries);
std::string dumpAppended(const Entries& entries);

} // namespace bench

#endif // FILTER_COMMON_BENCH_FLOORS_H
