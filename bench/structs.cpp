/**
 * The least that any design can do: a rule is one struct with the fields of a five-tuple, copied
 * and compared as bytes, in a map by identifier like that of a group, because rules come and go
 * one by one.
 */
#include "operations.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <map>
#include <type_traits>

namespace bench {

using namespace FiltersCommon;

namespace {

/** Which fields a rule asks for, and its action. */
enum Flag : unsigned {
    SOURCE = 1,
    DESTINATION = 2,
    SOURCE_PORT = 4,
    DESTINATION_PORT = 8,
    PROTOCOL = 16,
    DENY = 32,
};

struct Plain {
    filtersEntryPriority_t priority;
    Address source;
    Address destination;
    Port sourcePort;
    Port destinationPort;
    filtersEntryId_t id;
    std::uint8_t protocol;
    std::uint8_t flags;
};
static_assert(std::has_unique_object_representations_v<Plain>, "compared as bytes");

using Plains = std::map<filtersEntryId_t, Plain>;

std::uint8_t flagsOf(const Rule& rule)
{
    unsigned flags = 0;
    const auto raise = [&](bool condition, Flag flag) {
        if (condition)
            flags |= flag;
    };
    raise(rule.source.mask.s_addr != 0, SOURCE);
    raise(rule.destination.mask.s_addr != 0, DESTINATION);
    raise(rule.sourcePort.mask != 0, SOURCE_PORT);
    raise(rule.destinationPort.mask != 0, DESTINATION_PORT);
    raise(rule.protocol.has_value(), PROTOCOL);
    raise(rule.deny, DENY);
    return static_cast<std::uint8_t>(flags);
}

Plain plainOf(filtersEntryId_t id, const Rule& rule)
{
    Plain plain{};
    plain.priority = rule.priority;
    plain.source = rule.source;
    plain.destination = rule.destination;
    plain.sourcePort = rule.sourcePort;
    plain.destinationPort = rule.destinationPort;
    plain.id = id;
    plain.protocol = rule.protocol.value_or(0);
    plain.flags = flagsOf(rule);
    return plain;
}

Plains plainsOf(const Rules& rules)
{
    Plains plains;
    filtersEntryId_t id = 0;
    for (const Rule& rule : rules) {
        plains.emplace_hint(plains.end(), id, plainOf(id, rule));
        ++id;
    }
    return plains;
}

bool same(const Plains& a, const Plains& b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const auto& x, const auto& y) {
        return std::memcmp(&x.second, &y.second, sizeof(Plain)) == 0;
    });
}

using SharedPlains = std::shared_ptr<Plains>;

SharedPlains sharedPlainsOf(const Rules& rules)
{
    return std::make_shared<Plains>(plainsOf(rules));
}

Operation build(const Rules& rules)
{
    return making(rules.size(), [rules] { return plainsOf(rules); });
}

Operation copy(const Rules& rules)
{
    return making(rules.size(), [plains = sharedPlainsOf(rules)] { return Plains(*plains); });
}

Operation equality(const Rules& rules)
{
    return asking(rules.size(), [one = sharedPlainsOf(rules), other = sharedPlainsOf(rules)] {
        return same(*one, *other);
    });
}

Operation destroy(const Rules& rules)
{
    return freeing(rules.size(), [rules] { return plainsOf(rules); });
}

} // namespace

Descriptions structOperations()
{
    return {
        {"struct", "build", build},
        {"struct", "copy", copy},
        {"struct", "equality", equality},
        {"struct", "destroy", destroy},
    };
}

} // namespace bench
