#include "rules.h"

#include "access_list.h"
#include "files.h"
#include "group_import.h"

#include <arpa/inet.h>

#include <random>
#include <stdexcept>

namespace bench {

using namespace FiltersCommon;

namespace {

/** The standard fixes what the engine produces, but not what distributions make of it. */
class Numbers {
public:
    /** A number from 0 to @p end - 1. */
    std::uint32_t below(std::uint32_t end) { return static_cast<std::uint32_t>(engine_() % end); }

    template <class T, std::size_t N>
    T oneOf(const T (&values)[N])
    {
        return values[below(N)];
    }

private:
    std::mt19937 engine_{20240229};
};

Address addressOf(Numbers& numbers)
{
    // Hosts are the most frequent, then common network sizes.
    constexpr unsigned LENGTHS[] = {32, 32, 32, 24, 24, 16, 28, 30, 8, 21};
    const std::uint32_t mask = UINT32_MAX << (32 - numbers.oneOf(LENGTHS));
    const std::uint32_t value = numbers.below(UINT32_MAX) & mask;
    return {{htonl(value)}, {htonl(mask)}};
}

Port portOf(Numbers& numbers)
{
    constexpr std::uint16_t MASKS[] = {0xFFFF, 0xFFFF, 0xFFFF, 0xFC00, 0xFFF0, 0x8000};
    const std::uint16_t mask = numbers.oneOf(MASKS);
    return {static_cast<std::uint16_t>(numbers.below(0x10000) & mask), mask};
}

Address addressOf(const in_addr* value, const in_addr* mask) { return {*value, *mask}; }

} // namespace

Rules generateRules(std::size_t count)
{
    constexpr std::uint8_t PROTOCOLS[] = {IPPROTO_TCP, IPPROTO_TCP, IPPROTO_UDP, IPPROTO_ICMP};
    Numbers numbers;
    Rules rules;
    for (std::size_t i = 0; i < count; ++i) {
        Rule rule{};
        rule.priority = static_cast<filtersEntryPriority_t>(count - i);
        rule.source = addressOf(numbers);
        rule.destination = addressOf(numbers);
        rule.sourcePort = portOf(numbers);
        rule.destinationPort = portOf(numbers);
        rule.protocol = numbers.oneOf(PROTOCOLS);
        rule.deny = numbers.below(2) == 0;
        rules.push_back(rule);
    }
    return rules;
}

namespace {

/** Reads back what the import made of a line. */
Rule ruleOf(const FiltersEntry& entry)
{
    Rule rule{};
    rule.priority = entry.getPriority();
    MatchSrcIPv4 source({}, {});
    entry.getMatch(source);
    rule.source = addressOf(source.getIPv4(), source.getIPv4Mask());
    MatchDstIPv4 destination({}, {});
    entry.getMatch(destination);
    rule.destination = addressOf(destination.getIPv4(), destination.getIPv4Mask());
    MatchSrcL4Port sourcePort(0, 0);
    entry.getMatch(sourcePort);
    rule.sourcePort = {sourcePort.getPort(), sourcePort.getMask()};
    MatchDstL4Port destinationPort(0, 0);
    entry.getMatch(destinationPort);
    rule.destinationPort = {destinationPort.getPort(), destinationPort.getMask()};
    MatchIpProtocol protocol(0);
    if (entry.getMatch(protocol) == FILTERS_OK)
        rule.protocol = protocol.getIpProtocol();
    rule.deny = entry.getActionsRef().count(ACTION_DENY) != 0;
    return rule;
}

} // namespace

Rules readRules(const std::string& path)
{
    const std::string text = filterctl::readFile(path);
    std::vector<filterctl::Problem> problems;
    const auto group = filterctl::groupFromAccessList(text, {}, problems);
    if (!group)
        throw std::runtime_error(path + ":" + std::to_string(problems.front().line) + ": " +
                                 problems.front().sentence);
    Rules rules;
    for (const auto& element : group->getEntriesRef())
        rules.push_back(ruleOf(element.second));
    if (rules.empty())
        throw std::runtime_error(path + ": holds no rules");
    return rules;
}

} // namespace bench
