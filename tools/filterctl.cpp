#include "commands.h"
#include "files.h"

#include <csignal>
#include <cstdio>
#include <new>
#include <stdexcept>
#include <string>

namespace {

using namespace filterctl;

const Command* const COMMANDS[] = {&IMPORT, &SHOW, &CHECK, &DIFF, &JSON, &STATS};

constexpr char HELP[] =
    "usage: filterctl COMMAND [OPTION]... [FILE]...\n"
    "\n"
    "Makes groups of packet-filter rules from access lists and looks at them.\n"
    "\n"
    "  filterctl import RULES    make a group from an access list\n"
    "  filterctl show [FILE]     print a group as text\n"
    "  filterctl check [FILE]    say all at once why a list or a group is refused\n"
    "  filterctl diff A B        say in what two groups differ\n"
    "  filterctl json [FILE]     print a group as JSON\n"
    "  filterctl stats [FILE]    say how much there is in a group\n"
    "  filterctl COMMAND --help  explain a command and its options\n"
    "\n"
    "The name - stands for standard input, which is read too where no FILE is given. What a\n"
    "command makes goes to standard output, or to another file with -o FILE.\n"
    "\n"
    "Examples:\n"
    "  filterctl import office.rules -o office.group\n"
    "  filterctl show office.group | less\n"
    "  filterctl check office.rules || exit\n"
    "  filterctl import office.rules | filterctl diff --content office.group -\n"
    "\n"
    "The exit status is 0, or 1 if an input is refused or cannot be read or an output\n"
    "cannot be written, or 2 if the command line is wrong. That of diff is 0 if the groups\n"
    "are the same, 1 if they differ, and 2 for everything else.\n";

const Command& findCommand(const std::string& name)
{
    for (const Command* command : COMMANDS)
        if (name == command->name)
            return *command;
    throw UsageError("there is no command '" + name + "'");
}

int printHelp(const char* text)
{
    writeFile("-", text);
    return DONE;
}

int runCommand(const Command& command, int argc, char** argv)
{
    const CommandLine line = readCommandLine(argc, argv, command.shortOptions, command.longOptions);
    if (line.help)
        return printHelp(command.help);
    const std::size_t operands = line.operands.size();
    if (operands < command.fewestOperands || operands > command.mostOperands)
        throw UsageError(std::string(command.name) + " takes " + command.operands);
    return command.run(line);
}

/** Sets @p failure to the exit status for an exception thrown from here. */
int run(int argc, char** argv, int& failure)
{
    const std::string name = argc > 1 ? argv[1] : "";
    if (name == "--help")
        return printHelp(HELP);
    if (argc <= 1)
        throw UsageError("no command is given");
    const Command& command = findCommand(name);
    failure = command.failure;
    return runCommand(command, argc - 1, argv + 1);
}

} // namespace

int main(int argc, char** argv)
{
    // Makes a write beyond the file size limit an error like any other.
    std::signal(SIGXFSZ, SIG_IGN);
    int failure = REFUSED;
    try {
        return run(argc, argv, failure);
    } catch (const UsageError& error) {
        if (*error.what() != '\0')
            std::fprintf(stderr, "filterctl: %s\n", error.what());
        std::fprintf(stderr, "Try 'filterctl --help'.\n");
        return WRONG_USAGE;
    } catch (const std::bad_alloc&) {
        std::fprintf(stderr, "filterctl: out of memory\n");
    } catch (const std::exception& error) {
        std::fprintf(stderr, "filterctl: %s\n", error.what());
    }
    return failure;
}
