#include "access_list.h"
#include "files.h"
#include "group_import.h"

#include "filter_groups.pb.h"

#include <getopt.h>

#include <charconv>
#include <climits>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <new>
#include <sstream>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>
#include <variant>
#include <vector>

namespace {

using namespace filterctl;

constexpr char HELP[] =
    "usage: filterctl import RULES [-o FILE] [OPTION]...\n"
    "       filterctl show [FILE]\n"
    "       filterctl --help\n"
    "\n"
    "import makes a group of packet-filter rules from an access list in the five-tuple\n"
    "text format and writes its bytes to standard output. show prints the group whose\n"
    "bytes FILE, or standard input, holds. The name - stands for standard input or output.\n"
    "\n"
    "  -o FILE              write to FILE\n"
    "      --group N        identifier of the group (0)\n"
    "      --priority N     priority of the group (0)\n"
    "      --stage N        stage of the group (0)\n"
    "      --type N         type of the group (3)\n"
    "      --action ACTION  action of each entry: permit or deny (permit)\n"
    "      --help           print this text\n"
    "\n"
    "The exit status is 0, or 1 if an input is refused or cannot be read or an output\n"
    "cannot be written, or 2 if the command line is wrong.\n";

constexpr int WRONG_INPUT = 1;
constexpr int WRONG_USAGE = 2;

/** The command line is wrong; the message is empty if it has been printed already. */
struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

[[noreturn]] void refuse(const std::string& name, const Refusal& refusal)
{
    const std::string line = refusal.line == 0 ? "" : ":" + std::to_string(refusal.line);
    throw std::runtime_error(name + line + ": " + refusal.reason);
}

/** What a step made, or the refusal raised as an error. */
template <class T>
T accepted(std::variant<T, Refusal>&& result, const std::string& name)
{
    if (const Refusal* refusal = std::get_if<Refusal>(&result))
        refuse(name, *refusal);
    return std::get<T>(std::move(result));
}

// ----------------------------------------------------------------------------------- command line

enum OptionCode {
    OPERAND = 1,
    OPTION_OUTPUT = 'o',
    OPTION_HELP = 256,
    OPTION_GROUP,
    OPTION_PRIORITY,
    OPTION_STAGE,
    OPTION_TYPE,
    OPTION_ACTION
};

constexpr option IMPORT_OPTIONS[] = {
    {"group", required_argument, nullptr, OPTION_GROUP},
    {"priority", required_argument, nullptr, OPTION_PRIORITY},
    {"stage", required_argument, nullptr, OPTION_STAGE},
    {"type", required_argument, nullptr, OPTION_TYPE},
    {"action", required_argument, nullptr, OPTION_ACTION},
    {"help", no_argument, nullptr, OPTION_HELP},
    {nullptr, 0, nullptr, 0},
};

constexpr option SHOW_OPTIONS[] = {
    {"help", no_argument, nullptr, OPTION_HELP},
    {nullptr, 0, nullptr, 0},
};

struct CommandLine {
    bool help = false;
    ImportOptions import;
    std::string output = "-";
    std::vector<std::string> operands;
};

template <class T>
T readNumber(const char* option)
{
    T number{};
    const char* const end = optarg + std::strlen(optarg);
    const auto [stop, error] = std::from_chars(optarg, end, number);
    if (error != std::errc() || stop != end)
        throw UsageError(std::string("--") + option + " takes a number from " +
                         std::to_string(std::numeric_limits<T>::min()) + " to " +
                         std::to_string(std::numeric_limits<T>::max()));
    return number;
}

bool readIsDeny()
{
    const bool deny = std::strcmp(optarg, "deny") == 0;
    if (!deny && std::strcmp(optarg, "permit") != 0)
        throw UsageError("--action takes permit or deny");
    return deny;
}

/** Takes one option with its argument, or one operand, in optarg. */
void takeOption(int code, CommandLine& line)
{
    using namespace FiltersCommon;
    switch (code) {
    case OPERAND:
        line.operands.emplace_back(optarg);
        break;
    case OPTION_HELP:
        line.help = true;
        break;
    case OPTION_OUTPUT:
        line.output = optarg;
        break;
    case OPTION_GROUP:
        line.import.group = readNumber<filtersGroupId_t>("group");
        break;
    case OPTION_PRIORITY:
        line.import.priority = readNumber<filtersGroupPriority_t>("priority");
        break;
    case OPTION_STAGE:
        line.import.stage = static_cast<filtersGroupStage_t>(readNumber<std::int32_t>("stage"));
        break;
    case OPTION_TYPE:
        line.import.type = static_cast<filtersGroupType_t>(readNumber<std::int32_t>("type"));
        break;
    case OPTION_ACTION:
        line.import.deny = readIsDeny();
        break;
    default:
        throw UsageError("");
    }
}

/**
 * Reads what stands behind the command, which argv begins with. The short options begin with '-':
 * getopt_long then hands out operands too, and options may follow them in every environment.
 */
CommandLine readCommandLine(int argc, char** argv, const char* shortOptions,
                            const option* longOptions)
{
    // Messages of getopt_long begin with what stands here.
    char name[] = "filterctl";
    argv[0] = name;
    CommandLine line;
    for (int code; (code = getopt_long(argc, argv, shortOptions, longOptions, nullptr)) != -1;)
        takeOption(code, line);
    line.operands.insert(line.operands.end(), argv + optind, argv + argc);
    return line;
}

// --------------------------------------------------------------------------------------- commands

void importRules(int argc, char** argv)
{
    const CommandLine line = readCommandLine(argc, argv, "-o:", IMPORT_OPTIONS);
    if (line.help)
        return writeFile("-", HELP);
    if (line.operands.size() != 1)
        throw UsageError("import takes one access list");
    const std::string& name = line.operands.front();
    const AccessList rules = accepted(readAccessList(readFile(name)), name);
    std::string bytes;
    accepted(importGroup(rules, line.import), name).serialize(&bytes);
    writeFile(line.output, bytes);
}

/** Whether the message holds all that a group needs once it has been filled from the bytes. */
bool parse(FiltersCommon::FiltersGroupPB& message, const std::string& bytes)
{
    return bytes.size() <= INT_MAX && message.ParsePartialFromString(bytes) &&
           message.IsInitialized();
}

void showGroup(int argc, char** argv)
{
    const CommandLine line = readCommandLine(argc, argv, "-", SHOW_OPTIONS);
    if (line.help)
        return writeFile("-", HELP);
    if (line.operands.size() > 1)
        throw UsageError("show takes one file");
    const std::string name = line.operands.empty() ? "-" : line.operands.front();
    FiltersCommon::FiltersGroupPB message;
    if (!parse(message, readFile(name)))
        refuse(name, {0, "holds no group"});
    FiltersCommon::FiltersGroup group(0);
    group.convertFromFiltersGroupPB(&message);
    std::ostringstream text;
    text << group;
    writeFile("-", text.str());
}

void run(int argc, char** argv)
{
    const std::string command = argc > 1 ? argv[1] : "";
    if (command == "import")
        return importRules(argc - 1, argv + 1);
    if (command == "show")
        return showGroup(argc - 1, argv + 1);
    if (command == "--help")
        return writeFile("-", HELP);
    throw UsageError(argc > 1 ? "there is no command '" + command + "'" : "no command is given");
}

} // namespace

int main(int argc, char** argv)
{
    // A write beyond the limit of a file's size is then an error like any other.
    std::signal(SIGXFSZ, SIG_IGN);
    try {
        run(argc, argv);
        return 0;
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
    return WRONG_INPUT;
}
