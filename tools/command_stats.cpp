#include "commands.h"
#include "description_text.h"
#include "files.h"

#include <filter_names.h>

#include <cstddef>
#include <map>

namespace filterctl {

using namespace FiltersCommon;

namespace {

/** What the entries of a group hold. */
struct Statistics {
    std::size_t policers = 0;
    std::size_t counters = 0;
    std::size_t matches = 0;
    std::size_t actions = 0;
    std::map<filtersMatch_t, std::size_t> matchKinds;
    std::map<filtersAction_t, std::size_t> actionKinds;

    explicit Statistics(const FiltersGroup& group)
    {
        for (const auto& element : group.getEntriesRef())
            count(element.second);
    }

private:
    void count(const FiltersEntry& entry)
    {
        policers += entry.getPolicer().GetStage() != policer::STAGE_NONE;
        counters += entry.getCounter().GetType() != COUNTER_TYPE_INVALID;
        for (const auto& match : entry.getMatchesRef())
            ++matchKinds[match.first];
        for (const auto& action : entry.getActionsRef())
            ++actionKinds[action.first];
        matches += entry.getMatchesRef().size();
        actions += entry.getActionsRef().size();
    }
};

/** A table of names and values. */
class Table {
public:
    void add(const std::string& name, const std::string& value)
    {
        constexpr std::size_t WIDTH = 28;
        text_ += name + std::string(WIDTH - name.size(), ' ') + value + "\n";
    }
    void add(const std::string& name, std::size_t number) { add(name, std::to_string(number)); }

    const std::string& text() const { return text_; }

private:
    std::string text_;
};

std::string statisticsOf(const FiltersGroup& group)
{
    const Statistics statistics(group);
    std::string bytes;
    group.serialize(&bytes);
    Table table;
    table.add("id", group.getId());
    table.add("priority", group.getPriority());
    table.add("stage", nameOf(group.getStage()));
    table.add("type", nameOf(group.getType()));
    table.add("bytes", bytes.size());
    table.add("entries", group.getEntriesRef().size());
    table.add("policers", statistics.policers);
    table.add("counters", statistics.counters);
    table.add("matches", statistics.matches);
    for (const auto& [kind, count] : statistics.matchKinds)
        table.add(filtersMatchName(kind), count);
    table.add("actions", statistics.actions);
    for (const auto& [kind, count] : statistics.actionKinds)
        table.add(filtersActionName(kind), count);
    return table.text();
}

int printStatistics(const CommandLine& line)
{
    const Input input = readReadable(line.operand(), line.input);
    writeFile(line.output, statisticsOf(*input.group));
    return tellLosses(input);
}

constexpr char DESCRIPTION[] =
    "Prints how much there is in a group, a name and a value on each line: what the group is,\n"
    "the number of its bytes and of its entries, how many entries have a policer and a counter,\n"
    "and how many have each kind of match and of action that is used.\n";

constexpr char EXAMPLES[] =
    "  filterctl stats office.group\n"
    "  filterctl stats office.group | awk '$1 == \"entries\" { print $2 }'\n";

} // namespace

const Command STATS = {"stats",
                       "[FILE]",
                       "say how much there is in a group",
                       {&OUTPUT_OPTION, &FROM_OPTION, &EMPTY_OPTION, &HELP_OPTION},
                       0,
                       1,
                       "one file",
                       printStatistics,
                       DESCRIPTION,
                       EXAMPLES};

} // namespace filterctl
