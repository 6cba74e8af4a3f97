#include "properties.h"
#include "target.h"

#include "group_import.h"

#include <arpa/inet.h>

#include <algorithm>
#include <cstdio>
#include <string_view>
#include <vector>

// The input is the text of an access list for filterctl to read and import.

namespace FiltersCommon::fuzz {
namespace {

using filterctl::AccessAction;
using filterctl::AccessList;
using filterctl::AccessRule;
using filterctl::ImportOptions;
using filterctl::PortRange;
using filterctl::Prefix;
using filterctl::Problem;

/** Longer lists are not imported, for speed. */
constexpr std::size_t MOST_ENTRIES = 64;

// ------------------------------------------------------------------------------------------- rules

void checkPrefix(const Prefix& prefix)
{
    require(prefix.length <= 32, "a prefix has at most 32 bits");
    const std::uint64_t hosts = ~prefix.mask() + std::uint64_t{1};
    require(hosts == std::uint64_t{1} << (32 - prefix.length), "the mask has as many ones as the "
                                                               "prefix has bits");
}

/** The pairs cover the range in order, from the low port to the high port. */
void checkCover(const PortRange& range)
{
    require(range.low <= range.high, "the low port is not above the high port");
    std::uint32_t next = range.low;
    std::uint32_t lastSize = 0;
    for (const PortPair& pair : filterctl::coverPortRange(range)) {
        const std::uint32_t size = std::uint32_t{0x10000} - pair.mask;
        require((size & (size - 1)) == 0, "a mask is leading ones");
        require(pair.value % size == 0, "a value has no bits beside its mask");
        require(pair.value == next, "each pair begins where the one before it ended");
        require(size != lastSize || pair.value % (2 * size) == 0,
                "there are no two pairs of which one would do");
        next += size;
        lastSize = size;
    }
    require(next == std::uint32_t{range.high} + 1, "the last pair ends with the high port");
}

std::string textOf(const Prefix& prefix)
{
    const in_addr address{htonl(prefix.address)};
    char text[INET_ADDRSTRLEN];
    inet_ntop(AF_INET, &address, text, sizeof text);
    return std::string(text) + "/" + std::to_string(prefix.length);
}

std::string textOf(const PortRange& range)
{
    return std::to_string(range.low) + " : " + std::to_string(range.high);
}

/** A line that is read as this rule. */
std::string textOf(const AccessRule& rule)
{
    char protocol[16];
    std::snprintf(protocol, sizeof protocol, "0x%02x/0x%02X", rule.protocol.value_or(0),
                  rule.protocol ? 0xFF : 0);
    return "@" + textOf(rule.source) + "\t" + textOf(rule.destination) + "\t" +
           textOf(rule.sourcePorts) + "\t" + textOf(rule.destinationPorts) + "\t" + protocol +
           (!rule.action                         ? "\n"
            : *rule.action == AccessAction::DENY ? "\tdeny\n"
                                                 : "\tpermit\n");
}

/** All values of a rule except its line. */
auto valuesOf(const AccessRule& rule)
{
    return std::make_tuple(rule.source.address, rule.source.length, rule.destination.address,
                           rule.destination.length, rule.sourcePorts.low, rule.sourcePorts.high,
                           rule.destinationPorts.low, rule.destinationPorts.high, rule.protocol,
                           rule.action);
}

void checkReadBack(const AccessList& rules)
{
    std::string text;
    for (const AccessRule& rule : rules)
        text += textOf(rule);
    std::vector<Problem> problems;
    const AccessList again = filterctl::readAccessList(text, problems);
    require(problems.empty(), "a list that is written out is read");
    require(std::equal(again.begin(), again.end(), rules.begin(), rules.end(),
                       [](const auto& a, const auto& b) { return valuesOf(a) == valuesOf(b); }),
            "a list that is written out is read as the same rules");
    for (std::size_t i = 0; i < again.size(); ++i)
        require(again[i].line == i + 1, "a rule knows its line");
}

void checkList(const AccessList& rules, std::size_t lines)
{
    std::size_t last = 0;
    for (const AccessRule& rule : rules) {
        require(rule.line > last && rule.line <= lines, "the lines of the rules ascend");
        last = rule.line;
        checkPrefix(rule.source);
        checkPrefix(rule.destination);
        checkCover(rule.sourcePorts);
        checkCover(rule.destinationPorts);
    }
    checkReadBack(rules);
}

// ------------------------------------------------------------------------------------------ import

/** Adds the match with the given values, if it is expected. */
template <class Class, class... Values>
void expectMatch(FiltersEntry& entry, bool isThere, Values... values)
{
    if (isThere)
        entry.setMatch(Class(values...));
}

/** The entries that the rules should become. */
std::vector<FiltersEntry> expectedEntries(const AccessList& rules, AccessAction action)
{
    std::vector<FiltersEntry> entries;
    auto priority = static_cast<filtersEntryPriority_t>(rules.size());
    for (const AccessRule& rule : rules) {
        for (const PortPair& source : filterctl::coverPortRange(rule.sourcePorts))
            for (const PortPair& destination : filterctl::coverPortRange(rule.destinationPorts)) {
                FiltersEntry entry(static_cast<filtersEntryId_t>(entries.size()));
                entry.setPriority(priority);
                expectMatch<MatchSrcIPv4>(entry, rule.source.length != 0,
                                          in_addr{htonl(rule.source.address)},
                                          in_addr{htonl(rule.source.mask())});
                expectMatch<MatchDstIPv4>(entry, rule.destination.length != 0,
                                          in_addr{htonl(rule.destination.address)},
                                          in_addr{htonl(rule.destination.mask())});
                expectMatch<MatchSrcL4Port>(entry, source.mask != 0, source.value, source.mask);
                expectMatch<MatchDstL4Port>(entry, destination.mask != 0, destination.value,
                                            destination.mask);
                expectMatch<MatchIpProtocol>(entry, rule.protocol.has_value(),
                                             rule.protocol.value_or(0));
                expectMatch<MatchAll>(entry, entry.getMatchesRef().empty());
                rule.action.value_or(action) == AccessAction::DENY
                    ? entry.setAction(ActionDeny())
                    : entry.setAction(ActionPermit());
                entries.push_back(entry);
            }
        --priority;
    }
    return entries;
}

void checkImported(const FiltersGroup& group, const std::vector<FiltersEntry>& expected,
                   const ImportOptions& options)
{
    checkGroup(group);
    require(group.getId() == options.group && group.getPriority() == options.priority &&
                group.getStage() == options.stage && group.getType() == options.type,
            "the group is as the options say");
    const FiltersGroup::EntryMap& entries = group.getEntriesRef();
    require(entries.size() == expected.size(), "there is an entry for each pair of pairs");
    require(std::equal(expected.begin(), expected.end(), entries.begin(),
                       [](const auto& a, const auto& b) { return a == b.second; }),
            "the entries are what the rules say");
}

void checkImport(const AccessList& rules, const ImportOptions& options)
{
    const std::vector<FiltersEntry> expected = expectedEntries(rules, options.action);
    const auto refused = std::find_if(expected.begin(), expected.end(), [&](const auto& entry) {
        return refusalOf(entry, options.stage, options.type) != FILTERS_OK;
    });
    const bool fits = refusalOf(options.stage, options.type) == FILTERS_OK;
    std::vector<Problem> problems;
    if (const auto imported = filterctl::importGroup(rules, options, problems)) {
        require(fits && refused == expected.end(), "what the tables do not admit is refused");
        require(problems.empty(), "nothing is wrong with what is imported");
        checkImported(*imported, expected, options);
        return;
    }
    require(!fits || refused != expected.end(), "what the tables admit is imported");
    require(!problems.empty() && (problems.front().line == 0) == !fits,
            "a refused list has a reason, and a line unless stage and type are to blame");
}

std::size_t countEntries(const AccessList& rules)
{
    std::size_t count = 0;
    for (const AccessRule& rule : rules)
        count += filterctl::coverPortRange(rule.sourcePorts).size() *
                 filterctl::coverPortRange(rule.destinationPorts).size();
    return count;
}

void checkText(std::string_view text)
{
    const auto lines = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')) + 1;
    std::vector<Problem> problems;
    const AccessList rules = filterctl::readAccessList(text, problems);
    for (const Problem& problem : problems)
        require(problem.line >= 1 && problem.line <= lines && problem.column >= 1 &&
                    !problem.sentence.empty(),
                "a problem names a place in the text, and a reason");
    checkList(rules, lines);
    if (!problems.empty() || countEntries(rules) > MOST_ENTRIES)
        return;
    checkImport(rules, {});
    checkImport(rules, {1, 2, GROUP_STAGE_2, GROUP_TYPE_3, AccessAction::DENY});
    checkImport(
        rules, {3, 4, GROUP_STAGE_1, GROUP_TYPE_4, AccessAction::PERMIT}); // admits no source ports
    checkImport(rules,
                {5, 6, GROUP_STAGE_3, GROUP_TYPE_3, AccessAction::PERMIT}); // do not fit each other
}

} // namespace
} // namespace FiltersCommon::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    FiltersCommon::fuzz::checkText({reinterpret_cast<const char*>(data), size});
    return 0;
}
