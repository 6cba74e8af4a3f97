#include "group_import.h"

#include "checks.h"
#include "progress.h"

#include <filter_refusals.h>

#include <arpa/inet.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <utility>

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
FiltersEntry makeEntry(const AccessRule& rule, AccessAction action)
{
    FiltersEntry entry;
    addPrefix<MatchSrcIPv4>(entry, rule.source);
    addPrefix<MatchDstIPv4>(entry, rule.destination);
    if (rule.protocol)
        entry.setMatch(MatchIpProtocol(*rule.protocol));
    if (action == AccessAction::DENY)
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

/** A group that is filled rule by rule. */
class Import {
public:
    Import(const ImportOptions& options, std::vector<Problem>& problems)
        : group_(options.group), action_(options.action), problems_(problems)
    {
        group_.setPriority(options.priority);
        // A new group has type 0, which every stage admits.
        isPlaced_ = group_.setStage(options.stage) == FILTERS_OK &&
                    group_.setType(options.type) == FILTERS_OK;
        if (!isPlaced_)
            problems_ = checkPlace(options.stage, options.type);
    }

    /** Whether there is a place for entries. */
    bool isPlaced() const { return isPlaced_; }

    void add(const AccessRule& rule, filtersEntryPriority_t priority)
    {
        FiltersEntry common = makeEntry(rule, rule.action.value_or(action_));
        common.setPriority(priority);
        const std::vector<PortPair> destinations = coverPortRange(rule.destinationPorts);
        for (const PortPair& source : coverPortRange(rule.sourcePorts))
            for (const PortPair& destination : destinations) {
                FiltersEntry entry = makeEntry(common, source, destination);
                if (!insert(entry, rule.line))
                    return;
            }
    }

    FiltersGroup takeGroup() { return std::move(group_); }

private:
    /** Returns whether the other entries of the rule, which differ in ports only, may be admitted. */
    bool insert(FiltersEntry& entry, std::size_t line)
    {
        constexpr std::uint32_t MOST = std::numeric_limits<filtersEntryId_t>::max();
        if (nextId_ > MOST) {
            if (!std::exchange(isTooLarge_, true))
                problems_.push_back({line, 0, "a group holds at most 65536 entries"});
            return check(entry, line);
        }
        entry.setId(static_cast<filtersEntryId_t>(nextId_++));
        return group_.takeEntry(std::move(entry)) == FILTERS_OK || check(entry, line);
    }

    /** Adds why the entry is not admitted, if it is not; no more of its rule has to be asked. */
    bool check(const FiltersEntry& entry, std::size_t line)
    {
        for (FiltersRefusal& refusal : insertEntryRefusals(group_, entry)) {
            refusal.entry.reset(); // the line tells
            problems_.push_back({line, 0, refusal.sentence()});
        }
        return false;
    }

    FiltersGroup group_;
    const AccessAction action_;
    std::vector<Problem>& problems_;
    bool isPlaced_;
    bool isTooLarge_ = false;
    std::uint32_t nextId_ = 0;
};

} // namespace

std::optional<FiltersGroup> importGroup(const AccessList& rules, const ImportOptions& options,
                                        std::vector<Problem>& problems)
{
    std::vector<Problem> found;
    Import import(options, found);
    // The group is full long before a list is too long for this type.
    auto priority = static_cast<filtersEntryPriority_t>(rules.size());
    Stage stage("importing", rules.size());
    if (import.isPlaced())
        for (const AccessRule& rule : rules) {
            stage.reach(rules.size() - priority);
            import.add(rule, priority--);
        }
    if (found.empty())
        return import.takeGroup();
    problems.insert(problems.end(), found.begin(), found.end());
    return std::nullopt;
}

std::optional<FiltersGroup> groupFromAccessList(std::string_view text, const ImportOptions& options,
                                                std::vector<Problem>& problems)
{
    std::vector<Problem> found;
    auto group = importGroup(readAccessList(text, found), options, found);
    if (found.empty())
        return group;
    std::stable_sort(found.begin(), found.end(),
                     [](const Problem& a, const Problem& b) { return a.line < b.line; });
    problems.insert(problems.end(), found.begin(), found.end());
    return std::nullopt;
}

} // namespace filterctl
