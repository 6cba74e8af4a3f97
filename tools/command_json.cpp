#include "commands.h"
#include "files.h"
#include "group_json.h"

namespace filterctl {

using namespace FiltersCommon;

namespace {

int printJson(const CommandLine& line)
{
    const Input input = readReadable(line.operand(), line.input);
    writeFile(line.output, [&](const Sink& sink) { writeJson(*input.group, line.compact, sink); });
    return tellLosses(input);
}

constexpr char DESCRIPTION[] =
    "Prints a group as JSON: an object with the member \"group\", the group's message in the JSON\n"
    "form of Protocol Buffers, and the member \"readable\", which has the names of stage, type\n"
    "and kinds, the addresses and the other values of its entries as text dumps show them. Its\n"
    "\"entries\" are in the order of those of \"group\".\n";

constexpr char EXAMPLES[] =
    "  filterctl json office.group | jq .group\n"
    "  filterctl json office.group | jq '.readable.entries[] | select(.id == 7)'\n";

} // namespace

const Command JSON = {"json",
                      "[FILE]",
                      "print a group as JSON",
                      {&OUTPUT_OPTION, &COMPACT_OPTION, &FROM_OPTION, &EMPTY_OPTION, &HELP_OPTION},
                      0,
                      1,
                      "one file",
                      printJson,
                      DESCRIPTION,
                      EXAMPLES};

} // namespace filterctl
