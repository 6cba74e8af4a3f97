#include "group_import.h"

#include <filter_names.h>

#include <arpa/inet.h>

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace filterctl {

namespace {

using namespace FiltersCommon;

template <class MatchPrefix>
void addPrefix(FiltersEntry& entry, const Prefix& prefix)
{
    if (prefix.length > 0)
        entry.setMatch(MatchPrefix(in_addr{htonl(prefix.address)}, in_addr{htonl(prefix.mask())}));
}

template <class MatchPort>
void addPorts(FiltersEntry& entry, const PortPair& ports)
{
    if (ports.mask != 0)
        entry.setMatch(MatchPort(ports.value, ports.mask));
}

/** An entry for the rule, without the ports. */
FiltersEntry makeEntry(const AccessRule& rule, bool deny)
{
    FiltersEntry entry;
    addPrefix<MatchSrcIPv4>(entry, rule.source);
    addPrefix<MatchDstIPv4>(entry, rule.destination);
    if (rule.protocol)
        entry.setMatch(MatchIpProtocol(*rule.protocol));
    if (deny)
        entry.setAction(ActionDeny());
    else
        entry.setAction(ActionPermit());
    return entry;
}

/** The entry of a rule for one pair from each of its port ranges. */
FiltersEntry makeEntry(const FiltersEntry& common, const PortPair& source,
                       const PortPair& destination)
{
    FiltersEntry entry(common);
    addPorts<MatchSrcL4Port>(entry, source);
    addPorts<MatchDstL4Port>(entry, destination);
    if (entry.getMatchesRef().empty())
        entry.setMatch(MatchAll());
    return entry;
}

/** A group that is filled rule by rule. Each step returns the reason for a refusal, or nothing. */
class Import {
public:
    explicit Import(const ImportOptions& options) : group_(options.group), deny_(options.deny)
    {
        group_.setPriority(options.priority);
    }

    std::optional<std::string> setStageAndType(filtersGroupStage_t stage, filtersGroupType_t type)
    {
        const std::string stageText = "stage " + std::to_string(static_cast<int>(stage));
        // A new group has type 0, which every stage admits.
        if (const filtersErr_t error = group_.setStage(stage); error != FILTERS_OK)
            return stageText + " is refused: " + filtersErrName(error);
        if (const filtersErr_t error = group_.setType(type); error != FILTERS_OK)
            return "type " + std::to_string(static_cast<int>(type)) + " at " + stageText +
                   " is refused: " + filtersErrName(error);
        return std::nullopt;
    }

    std::optional<std::string> add(const AccessRule& rule, filtersEntryPriority_t priority)
    {
        FiltersEntry common = makeEntry(rule, deny_);
        common.setPriority(priority);
        const std::vector<PortPair> destinations = coverPortRange(rule.destinationPorts);
        for (const PortPair& source : coverPortRange(rule.sourcePorts))
            for (const PortPair& destination : destinations) {
                FiltersEntry entry = makeEntry(common, source, destination);
                if (auto reason = insert(entry))
                    return reason;
            }
        return std::nullopt;
    }

    FiltersGroup takeGroup() { return std::move(group_); }

private:
    std::optional<std::string> insert(FiltersEntry& entry)
    {
        if (nextId_ == MOST_ENTRIES)
            return tooManyEntries();
        entry.setId(static_cast<filtersEntryId_t>(nextId_));
        if (const filtersErr_t error = group_.takeEntry(std::move(entry)); error != FILTERS_OK)
            return "entry " + std::to_string(nextId_) + " is refused: " + filtersErrName(error);
        ++nextId_;
        return std::nullopt;
    }

    FiltersGroup group_;
    const bool deny_;
    std::uint32_t nextId_ = 0;
};

} // namespace

std::variant<FiltersGroup, Refusal> importGroup(const AccessList& rules,
                                                const ImportOptions& options)
{
    Import import(options);
    if (auto reason = import.setStageAndType(options.stage, options.type))
        return Refusal{0, *reason};
    // The group is full long before a list is too long for this type.
    auto priority = static_cast<filtersEntryPriority_t>(rules.size());
    for (const AccessRule& rule : rules)
        if (auto reason = import.add(rule, priority--))
            return Refusal{rule.line, *reason};
    return import.takeGroup();
}

FiltersEntry firstEntry(const AccessRule& rule, const ImportOptions& options)
{
    return makeEntry(makeEntry(rule, options.deny), coverPortRange(rule.sourcePorts).front(),
                     coverPortRange(rule.destinationPorts).front());
}

std::size_t countEntries(const AccessRule& rule)
{
    return coverPortRange(rule.sourcePorts).size() * coverPortRange(rule.destinationPorts).size();
}

std::string tooManyEntries()
{
    return "a group holds at most " + std::to_string(MOST_ENTRIES) + " entries";
}

} // namespace filterctl
