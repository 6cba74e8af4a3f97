#include "commands.h"

namespace filterctl {

namespace {

int importRules(const CommandLine& line)
{
    writeBytes(line.output, *readWhole(line.operand(), line.input).group);
    return DONE;
}

constexpr char DESCRIPTION[] =
    "Makes a group of packet-filter rules and writes its bytes. An input that is refused in any\n"
    "line, or that loses something when it is read, gives no group.\n";

constexpr char EXAMPLES[] =
    "  filterctl import office.rules -o office.group\n"
    "  filterctl import --stage 2 --action deny - < office.rules | filterctl show\n";

} // namespace

const Command IMPORT = {"import",
                        "[FILE]",
                        "make a group's bytes",
                        {&OUTPUT_OPTION, &GROUP_OPTION, &PRIORITY_OPTION, &STAGE_OPTION,
                         &TYPE_OPTION, &ACTION_OPTION, &FROM_OPTION, &EMPTY_OPTION, &HELP_OPTION},
                        0,
                        1,
                        "one file",
                        importRules,
                        DESCRIPTION,
                        EXAMPLES};

} // namespace filterctl
