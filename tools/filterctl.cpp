#include "commands.h"
#include "files.h"
#include "progress.h"

#include "rule_text_errors.h"

#include <algorithm>
#include <csignal>
#include <new>
#include <stdexcept>
#include <string>

namespace {

using namespace filterctl;

const Command* const COMMANDS[] = {&IMPORT, &LIST, &SHOW, &JSON,   &STATS,
                                   &CHECK,  &DIFF, &ADD,  &DELETE, &MERGE};

constexpr char USAGE[] = "usage: filterctl COMMAND [OPTION]... [FILE]...\n";

constexpr char BEHIND_COMMANDS[] =
    "\n"
    "FILE is the bytes of a group, rule text, a five-tuple access list, or what 'filterctl json'\n"
    "prints: the content tells. The name - stands for standard input, which is read too where no\n"
    "FILE is given. What a command makes goes to standard output, or to another file with -o.\n"
    "'filterctl help COMMAND' explains a command too, and --version says which version this is.\n"
    "\n"
    "Examples:\n"
    "  filterctl import office.rules -o office.group\n"
    "  filterctl list office.group --match ip_protocol=udp\n"
    "  filterctl check office.rules || exit\n"
    "  filterctl diff --content office.rules office.group\n"
    "\n"
    "The exit status is 0, or 1 if an input is refused or cannot be read or an output\n"
    "cannot be written, or 2 if the command line is wrong. That of diff is 0 if the groups\n"
    "are the same, 1 if they differ, and 2 for everything else.\n";

std::string generalHelp()
{
    const auto headOf = [](const std::string& name, const std::string& arguments) {
        return "  filterctl " + name + " " + arguments;
    };
    const std::string last = headOf("COMMAND", "--help");
    std::size_t width = last.size();
    for (const Command* each : COMMANDS)
        width = std::max(width, headOf(each->name, each->arguments).size());
    std::string text = std::string(USAGE) +
                       "\n"
                       "Makes groups of packet-filter rules, looks at them and changes them.\n"
                       "\n";
    const auto add = [&](std::string head, const std::string& summary) {
        head.resize(width + 2, ' ');
        text += head + summary + "\n";
    };
    for (const Command* each : COMMANDS)
        add(headOf(each->name, each->arguments), each->summary);
    add(last, "explain a command and its options");
    return text + BEHIND_COMMANDS;
}

std::string usageOf(const Command& command)
{
    std::string usage = std::string("usage: filterctl ") + command.name + " " + command.arguments;
    const auto& options = command.options;
    if (std::find(options.begin(), options.end(), &OUTPUT_OPTION) != options.end())
        usage += " [-o FILE]";
    return usage + " [OPTION]...\n";
}

std::string helpOf(const Command& command)
{
    return usageOf(command) + "\n" + command.description + "\n" + helpOf(command.options) +
           "\nExamples:\n" + command.examples;
}

const Command& findCommand(const std::string& name)
{
    FiltersCommon::Nearest nearest(name);
    for (const Command* command : COMMANDS) {
        if (name == command->name)
            return *command;
        nearest.ask(command->name);
    }
    throw UsageError("there is no command " + FiltersCommon::quoted(name) + nearest.question());
}

int print(const std::string& text)
{
    writeFile("-", text);
    return DONE;
}

/** What is read is not replaced by what is made of it: rules would give way to their bytes. */
void expectOutputBesideInputs(const CommandLine& line)
{
    for (const std::string& operand : line.operands)
        if (line.output != "-" && operand != "-" && areSameFile(operand, line.output))
            throw std::runtime_error(line.output +
                                     ": is an input of this command, too; write to another file");
}

int runCommand(const Command& command, int argc, char** argv)
{
    const CommandLine line = readCommandLine(argc, argv, command.options);
    if (line.help)
        return print(helpOf(command));
    const std::size_t operands = line.operands.size();
    if (operands < command.fewestOperands || operands > command.mostOperands)
        throw UsageError(std::string(command.name) + " takes " + command.operands);
    expectOutputBesideInputs(line);
    startProgress();
    const Stage stage(command.name);
    const int status = command.run(line);
    stopProgress();
    return status;
}

/** Sets @p command as soon as it is known which one it is. */
int run(int argc, char** argv, const Command*& command)
{
    if (argc <= 1)
        throw UsageError("no command is given");
    const std::string name = argv[1];
    if (name == "--version")
        return print("filterctl " FILTERCTL_VERSION "\n");
    if (name == "-h" || name == "--help" || (name == "help" && argc == 2))
        return print(generalHelp());
    if (name == "help")
        return print(helpOf(findCommand(argv[2])));
    command = &findCommand(name);
    return runCommand(*command, argc - 1, argv + 1);
}

} // namespace

int main(int argc, char** argv)
{
    // Makes a write beyond the file size limit an error like any other.
    std::signal(SIGXFSZ, SIG_IGN);
    const Command* command = nullptr;
    try {
        return run(argc, argv, command);
    } catch (const UsageError& error) {
        report(error.what());
        const std::string usage = command == nullptr ? USAGE : usageOf(*command);
        const std::string whose = command == nullptr ? "" : std::string(" ") + command->name;
        tellUser(usage + "Try 'filterctl" + whose + " --help'.\n");
        return WRONG_USAGE;
    } catch (const Refused& refused) {
        report(refused.name, refused.problems, refused.text);
    } catch (const std::bad_alloc&) {
        tellUser("filterctl: out of memory\n");
    } catch (const std::exception& error) {
        report(error.what());
    }
    return command == nullptr ? REFUSED : command->failure;
}
