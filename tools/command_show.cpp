#include "commands.h"
#include "files.h"
#include "inputs.h"

#include <sstream>

namespace filterctl {

namespace {

int showGroup(const CommandLine& line)
{
    std::ostringstream text;
    text << readGroup(line.operand());
    writeFile(line.output, text.str());
    return DONE;
}

constexpr auto OPTIONS = optionList(HELP_OPTION);

constexpr char HELP[] = "usage: filterctl show [FILE] [-o FILE]\n"
                        "\n"
                        "Prints the group whose bytes FILE, or standard input, holds.\n"
                        "\n"
                        "  -o FILE     write to FILE, which is replaced in one step\n"
                        "      --help  print this text\n"
                        "\n"
                        "Examples:\n"
                        "  filterctl show office.group | less\n"
                        "  filterctl import office.rules | filterctl show\n";

} // namespace

const Command SHOW = {"show", "-o:", OPTIONS.data(), 0, 1, "one file", showGroup, REFUSED, HELP};

} // namespace filterctl
