#include "commands.h"
#include "files.h"
#include "picks.h"
#include "rule_table.h"

#include <filter_rule_text.h>

#include <stdexcept>

#include <unistd.h>

namespace filterctl {

namespace {

Picks picksOf(const CommandLine& line)
{
    try {
        return {line.ids, line.matchWords, line.actionWords};
    } catch (const std::invalid_argument& error) {
        throw UsageError(error.what());
    }
}

int listGroup(const CommandLine& line)
{
    const Picks picks = picksOf(line);
    Input input = readReadable(line.operand(), line.input);
    picks.applyTo(*input.group);
    const bool isForPeople = line.output == "-" && ::isatty(STDOUT_FILENO) == 1;
    const Painter painter(isForPeople && takesColor(STDOUT_FILENO));
    writeFile(line.output, isForPeople ? ruleTableOf(*input.group, widthOf(STDOUT_FILENO), painter)
                                       : toRuleText(*input.group));
    return tellLosses(input);
}

constexpr char DESCRIPTION[] =
    "Prints rule text, one rule a line, which every command reads back; on a terminal in colour\n"
    "and in columns. Of the entries it prints those that all of --id, --action and --match pick.\n"
    "A WORD is a word of rule text: a kind alone, or a kind with exactly this value.\n";

constexpr char EXAMPLES[] =
    "  filterctl list office.group > office.txt\n"
    "  filterctl list office.group --action deny\n"
    "  filterctl list office.group --match ip_protocol=udp dst_l4_port=53\n";

} // namespace

const Command LIST = {"list",
                      "[FILE]",
                      "print a group as rule text",
                      {&OUTPUT_OPTION, &ID_OPTION, &WITH_ACTION_OPTION, &MATCH_OPTION, &FROM_OPTION,
                       &EMPTY_OPTION, &HELP_OPTION},
                      0,
                      1,
                      "one file",
                      listGroup,
                      DESCRIPTION,
                      EXAMPLES};

} // namespace filterctl
