#include "commands.h"
#include "files.h"
#include "inputs.h"

namespace filterctl {

namespace {

int importRules(const CommandLine& line)
{
    const std::string name = line.operand();
    const AccessList rules = accepted(readAccessList(readFile(name)), name);
    std::string bytes;
    accepted(importGroup(rules, line.importOptions()), name).serialize(&bytes);
    writeFile(line.output, bytes);
    return DONE;
}

constexpr auto OPTIONS = optionList(GROUP_OPTION, PRIORITY_OPTION, STAGE_OPTION, TYPE_OPTION,
                                    ACTION_OPTION, HELP_OPTION);

constexpr char HELP[] =
    "usage: filterctl import RULES [-o FILE] [OPTION]...\n"
    "\n"
    "Makes a group of packet-filter rules from an access list in the five-tuple text format\n"
    "and writes its bytes. A list that is refused in any line gives no group.\n"
    "\n"
    "  -o FILE              write to FILE, which is replaced in one step\n"
    "      --group N        identifier of the group (0)\n"
    "      --priority N     priority of the group (0)\n"
    "      --stage N        stage of the group (0)\n"
    "      --type N         type of the group (3)\n"
    "      --action ACTION  action of each entry: permit or deny (permit)\n"
    "      --help           print this text\n"
    "\n"
    "Examples:\n"
    "  filterctl import office.rules -o office.group\n"
    "  filterctl import --stage 2 --action deny - < office.rules | filterctl show\n";

} // namespace

const Command IMPORT = {"import",          "-o:",       OPTIONS.data(), 1,   1,
                        "one access list", importRules, REFUSED,        HELP};

} // namespace filterctl
