#include "filters.h"

#include "operations.h"

#include <filter_groups_c.h>

#include <ostream>
#include <sstream>
#include <streambuf>
#include <vector>

namespace bench {

using namespace FiltersCommon;

FiltersEntry entryOf(std::size_t id, const Rule& rule)
{
    FiltersEntry entry(static_cast<filtersEntryId_t>(id));
    entry.setPriority(rule.priority);
    if (rule.source.mask.s_addr != 0)
        entry.setMatch(MatchSrcIPv4(rule.source.value, rule.source.mask));
    if (rule.destination.mask.s_addr != 0)
        entry.setMatch(MatchDstIPv4(rule.destination.value, rule.destination.mask));
    if (rule.sourcePort.mask != 0)
        entry.setMatch(MatchSrcL4Port(rule.sourcePort.value, rule.sourcePort.mask));
    if (rule.destinationPort.mask != 0)
        entry.setMatch(MatchDstL4Port(rule.destinationPort.value, rule.destinationPort.mask));
    if (rule.protocol)
        entry.setMatch(MatchIpProtocol(*rule.protocol));
    if (entry.getMatchesRef().empty())
        entry.setMatch(MatchAll());
    if (rule.deny)
        entry.setAction(ActionDeny());
    else
        entry.setAction(ActionPermit());
    return entry;
}

FiltersGroup groupOf(const Rules& rules)
{
    FiltersGroup group(1);
    group.setType(GROUP_TYPE_3);
    for (std::size_t id = 0; id < rules.size(); ++id)
        group.takeEntry(entryOf(id, rules[id]));
    return group;
}

std::string bytesOf(const FiltersGroup& group)
{
    std::string bytes;
    group.serialize(&bytes);
    return bytes;
}

namespace {

using SharedGroup = std::shared_ptr<FiltersGroup>;

SharedGroup sharedGroupOf(const Rules& rules)
{
    return std::make_shared<FiltersGroup>(groupOf(rules));
}

// ---------------------------------------------------------------------------------- whole groups

Operation groupTake(const Rules& rules)
{
    return making(rules.size(), [rules] { return groupOf(rules); });
}

Operation toBytes(const Rules& rules)
{
    return making(rules.size(), [group = sharedGroupOf(rules)] { return bytesOf(*group); });
}

Operation fromBytes(const Rules& rules)
{
    return making(rules.size(), [bytes = bytesOf(groupOf(rules))] { return FiltersGroup(bytes); });
}

Operation copy(const Rules& rules)
{
    return making(rules.size(), [group = sharedGroupOf(rules)] { return FiltersGroup(*group); });
}

Operation equality(const Rules& rules)
{
    return asking(rules.size(), [one = sharedGroupOf(rules), other = sharedGroupOf(rules)] {
        return *one == *other;
    });
}

Operation text(const Rules& rules)
{
    return making(rules.size(), [group = sharedGroupOf(rules)] {
        std::ostringstream out;
        out << *group;
        return out;
    });
}

/** Takes any text and keeps nothing. */
class Nowhere : public std::streambuf {
    int_type overflow(int_type c) override { return traits_type::not_eof(c); }
    std::streamsize xsputn(const char*, std::streamsize size) override { return size; }
};

Operation textWalk(const Rules& rules)
{
    return asking(rules.size(), [group = sharedGroupOf(rules)] {
        Nowhere nowhere;
        std::ostream out(&nowhere);
        out << *group;
        return out.good();
    });
}

Operation destroy(const Rules& rules)
{
    return freeing(rules.size(), [rules] { return groupOf(rules); });
}

Operation stageChange(const Rules& rules)
{
    return asking(rules.size(), [group = sharedGroupOf(rules)] {
        return group->setStage(group->getStage() == GROUP_STAGE_0 ? GROUP_STAGE_2
                                                                  : GROUP_STAGE_0) == FILTERS_OK;
    });
}

/** No other type admits all five matches, so the type is set to itself. */
Operation typeChange(const Rules& rules)
{
    return asking(rules.size(), [group = sharedGroupOf(rules)] {
        return group->setType(GROUP_TYPE_3) == FILTERS_OK;
    });
}

// --------------------------------------------------------------------- some entries of many

/** A group, and one in sixteen of its entries. */
struct Sixteenth {
    explicit Sixteenth(const Rules& rules) : group(groupOf(rules))
    {
        for (std::size_t id = 0; id < rules.size(); id += 16)
            entries.push_back(entryOf(id, rules[id]));
    }

    bool insert()
    {
        bool done = true;
        for (const FiltersEntry& entry : entries)
            done = group.insertEntry(entry) == FILTERS_OK && done;
        return done;
    }

    bool remove()
    {
        bool done = true;
        for (const FiltersEntry& entry : entries)
            done = group.removeEntry(entry.getId()) == FILTERS_OK && done;
        return done;
    }

    FiltersGroup group;
    std::vector<FiltersEntry> entries;
};

Operation insertion(const Rules& rules)
{
    auto some = std::make_shared<Sixteenth>(rules);
    Operation operation = asking(some->entries.size(), [some] { return some->insert(); });
    operation.prepare = [some] { some->remove(); };
    return operation;
}

Operation replacement(const Rules& rules)
{
    auto some = std::make_shared<Sixteenth>(rules);
    return asking(some->entries.size(), [some] { return some->insert(); });
}

Operation removal(const Rules& rules)
{
    auto some = std::make_shared<Sixteenth>(rules);
    Operation operation = asking(some->entries.size(), [some] { return some->remove(); });
    operation.prepare = [some] { some->insert(); };
    return operation;
}

// ------------------------------------------------------------------------------------ C interface

Operation listing(const Rules& rules)
{
    auto listed = std::make_shared<entriesStruct>();
    Operation operation;
    operation.rules = rules.size();
    operation.run = [listed, group = sharedGroupOf(rules)] {
        filtersGroupGetEntries(group.get(), listed.get());
    };
    operation.clear = [listed] { deleteFiltersEntriesStruct(listed.get()); };
    return operation;
}

} // namespace

Descriptions filtersOperations()
{
    return {
        {"filters", "group_take", groupTake},     {"filters", "to_bytes", toBytes},
        {"filters", "from_bytes", fromBytes},     {"filters", "copy", copy},
        {"filters", "equality", equality},        {"filters", "text", text},
        {"filters", "text_walk", textWalk},       {"filters", "destroy", destroy},
        {"filters", "stage_change", stageChange}, {"filters", "type_change", typeChange},
        {"filters", "insertion", insertion},      {"filters", "replacement", replacement},
        {"filters", "removal", removal},          {"filters", "listing", listing},
    };
}

} // namespace bench
