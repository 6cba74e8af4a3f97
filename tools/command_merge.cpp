#include "commands.h"

namespace filterctl {

namespace {

int merge(const CommandLine& line)
{
    line.expectOneStandardInput();
    std::vector<NamedGroup> groups;
    for (const std::string& name : line.operands)
        groups.push_back({name, *readWhole(name, line.input).group});
    writeBytes(line.output, mergeGroups(std::move(groups), line.merge));
    return DONE;
}

constexpr char DESCRIPTION[] =
    "Makes a group of the entries of all files and writes its bytes. Identifier, priority, stage\n"
    "and type of the group are those of A. An identifier that is in two of the files is refused\n"
    "unless --renumber is given. Without --above or --below, priorities stay as they are; a\n"
    "priority that would have to become greater than 4294967295 is refused.\n";

constexpr char EXAMPLES[] =
    "  filterctl merge --renumber --above urgent.rules office.group -o merged.group\n"
    "  filterctl merge office.group branch.group | filterctl list\n";

} // namespace

const Command MERGE = {"merge",
                       "A B...",
                       "make one group of several",
                       {&OUTPUT_OPTION, &RENUMBER_OPTION, &ABOVE_OPTION, &BELOW_OPTION,
                        &FROM_OPTION, &EMPTY_OPTION, &HELP_OPTION},
                       2,
                       ANY_NUMBER,
                       "two files or more",
                       merge,
                       DESCRIPTION,
                       EXAMPLES};

} // namespace filterctl
