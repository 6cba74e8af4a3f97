#include "commands.h"
#include "files.h"
#include "group_json.h"
#include "inputs.h"

namespace filterctl {

namespace {

int printJson(const CommandLine& line)
{
    writeFile(line.output, jsonOf(readGroup(line.operand()), line.compact));
    return DONE;
}

constexpr auto OPTIONS = optionList(COMPACT_OPTION, HELP_OPTION);

constexpr char HELP[] =
    "usage: filterctl json [FILE] [-o FILE] [OPTION]...\n"
    "\n"
    "Prints the group whose bytes FILE, or standard input, holds as JSON: an object with the\n"
    "member \"group\", the group's message in the JSON form of Protocol Buffers, and the member\n"
    "\"readable\", which has the names of stage, type and kinds, the addresses and the other\n"
    "values of its entries as text dumps show them. Its \"entries\" are in the order of those\n"
    "of \"group\".\n"
    "\n"
    "      --compact  print all on one line\n"
    "  -o FILE        write to FILE, which is replaced in one step\n"
    "      --help     print this text\n"
    "\n"
    "Examples:\n"
    "  filterctl json office.group | jq .group\n"
    "  filterctl json office.group | jq '.readable.entries[] | select(.id == 7)'\n";

} // namespace

const Command JSON = {"json", "-o:", OPTIONS.data(), 0, 1, "one file", printJson, REFUSED, HELP};

} // namespace filterctl
