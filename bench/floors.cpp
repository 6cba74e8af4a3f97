#include "floors.h"

#include "operations.h"

#include <filter_types.h>

#include <algorithm>
#include <iterator>
#include <new>
#include <utility>

namespace bench {

using namespace FiltersCommon;

namespace {

void add(Objects& objects, int kind, std::uint32_t value = 0, std::uint32_t mask = 0)
{
    objects.emplace(kind, std::make_unique<Object>(kind, value, mask));
}

Entry entryOf(std::size_t id, const Rule& rule)
{
    Entry entry;
    entry.id = static_cast<std::uint32_t>(id);
    entry.priority = rule.priority;
    if (rule.source.mask.s_addr != 0)
        add(entry.matches, MATCH_SRC_IPV4, rule.source.value.s_addr, rule.source.mask.s_addr);
    if (rule.destination.mask.s_addr != 0)
        add(entry.matches, MATCH_DST_IPV4, rule.destination.value.s_addr,
            rule.destination.mask.s_addr);
    if (rule.sourcePort.mask != 0)
        add(entry.matches, MATCH_SRC_L4_PORT, rule.sourcePort.value, rule.sourcePort.mask);
    if (rule.destinationPort.mask != 0)
        add(entry.matches, MATCH_DST_L4_PORT, rule.destinationPort.value,
            rule.destinationPort.mask);
    if (rule.protocol)
        add(entry.matches, MATCH_IP_PROTOCOL, *rule.protocol);
    if (entry.matches.empty())
        add(entry.matches, MATCH_ALL);
    add(entry.actions, rule.deny ? ACTION_DENY : ACTION_PERMIT);
    return entry;
}

} // namespace

Entries floorOf(const Rules& rules)
{
    Entries entries;
    for (std::size_t id = 0; id < rules.size(); ++id)
        entries.emplace_hint(entries.end(), static_cast<std::uint16_t>(id), entryOf(id, rules[id]));
    return entries;
}

namespace {

void copyObjects(Objects& to, const Objects& from)
{
    for (const auto& [kind, object] : from)
        to.emplace_hint(to.end(), kind, std::make_unique<Object>(*object));
}

Entries copyOf(const Entries& entries)
{
    Entries copies;
    for (const auto& [id, entry] : entries) {
        Entry& to = copies.try_emplace(copies.end(), id)->second;
        to.id = entry.id;
        to.priority = entry.priority;
        to.policer = entry.policer;
        copyObjects(to.matches, entry.matches);
        copyObjects(to.actions, entry.actions);
    }
    return copies;
}

bool same(const Objects& a, const Objects& b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const auto& x, const auto& y) {
        return x.first == y.first && x.second->kind == y.second->kind &&
               x.second->value == y.second->value && x.second->mask == y.second->mask;
    });
}

bool same(const Policer& a, const Policer& b)
{
    return a.id == b.id && a.stage == b.stage &&
           std::equal(std::begin(a.mode), std::end(a.mode), std::begin(b.mode));
}

bool same(const Entries& a, const Entries& b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const auto& x, const auto& y) {
        const Entry& one = x.second;
        const Entry& other = y.second;
        return x.first == y.first && one.id == other.id && one.priority == other.priority &&
               same(one.policer, other.policer) && same(one.matches, other.matches) &&
               same(one.actions, other.actions);
    });
}

/** As many blocks as a five-tuple rule has objects and nodes, half of each size. */
constexpr std::size_t BLOCKS = 12;
constexpr std::size_t OBJECT = 24, NODE = 48;

class Blocks {
public:
    explicit Blocks(std::size_t rules) : blocks_(new void*[rules * BLOCKS]), count_(rules * BLOCKS)
    {
        for (std::size_t i = 0; i < count_; ++i)
            blocks_[i] = ::operator new(i % 2 == 0 ? OBJECT : NODE);
    }
    Blocks(Blocks&& other) noexcept
        : blocks_(std::move(other.blocks_)), count_(std::exchange(other.count_, 0))
    {}
    ~Blocks()
    {
        for (std::size_t i = 0; i < count_; ++i)
            ::operator delete(blocks_[i]);
    }

private:
    std::unique_ptr<void*[]> blocks_;
    std::size_t count_;
};

using SharedEntries = std::shared_ptr<Entries>;

SharedEntries sharedFloorOf(const Rules& rules)
{
    return std::make_shared<Entries>(floorOf(rules));
}

Operation allocations(const Rules& rules)
{
    return making(rules.size(), [count = rules.size()] { return Blocks(count); });
}

Operation frees(const Rules& rules)
{
    return freeing(rules.size(), [count = rules.size()] { return Blocks(count); });
}

Operation encoded(const Rules& rules)
{
    return making(rules.size(), [entries = sharedFloorOf(rules)] { return encode(*entries); });
}

Operation decoded(const Rules& rules)
{
    return making(rules.size(), [bytes = encode(floorOf(rules))] { return decode(bytes); });
}

Operation copied(const Rules& rules)
{
    return making(rules.size(), [entries = sharedFloorOf(rules)] { return copyOf(*entries); });
}

Operation walked(const Rules& rules)
{
    return asking(rules.size(), [one = sharedFloorOf(rules), other = sharedFloorOf(rules)] {
        return same(*one, *other);
    });
}

Operation streamed(const Rules& rules)
{
    return making(rules.size(),
                  [entries = sharedFloorOf(rules)] { return dumpThroughStream(*entries); });
}

Operation appended(const Rules& rules)
{
    return making(rules.size(),
                  [entries = sharedFloorOf(rules)] { return dumpAppended(*entries); });
}

} // namespace

Descriptions floorsOperations()
{
    return {
        {"floor", "build", allocations},      {"floor", "to_bytes", encoded},
        {"floor", "from_bytes", decoded},     {"floor", "copy", copied},
        {"floor", "equality", walked},        {"floor", "text", streamed},
        {"floor", "text_appended", appended}, {"floor", "destroy", frees},
    };
}

} // namespace bench
