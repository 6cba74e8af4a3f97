#include "commands.h"
#include "files.h"

#include <sstream>

namespace filterctl {

namespace {

int showGroup(const CommandLine& line)
{
    const Input input = readReadable(line.operand(), line.input);
    std::ostringstream text;
    text << *input.group;
    writeFile(line.output, text.str());
    return tellLosses(input);
}

constexpr char DESCRIPTION[] =
    "Prints the text dump of a group. What is lost when its bytes are read goes to standard\n"
    "error.\n";

constexpr char EXAMPLES[] = "  filterctl show office.group | less\n"
                            "  filterctl import office.rules | filterctl show\n";

} // namespace

const Command SHOW = {"show",
                      "[FILE]",
                      "print the text dump of a group",
                      {&OUTPUT_OPTION, &FROM_OPTION, &EMPTY_OPTION, &HELP_OPTION},
                      0,
                      1,
                      "one file",
                      showGroup,
                      DESCRIPTION,
                      EXAMPLES};

} // namespace filterctl
