/**
 * What follows the name of a command: options and operands.
 */
#ifndef FILTER_COMMON_TOOLS_COMMAND_LINE_H
#define FILTER_COMMON_TOOLS_COMMAND_LINE_H

#include "group_import.h"

#include <getopt.h>

#include <array>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace filterctl {

/** The command line is wrong; the message is empty if it has already been printed. */
struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct CommandLine {
    bool help = false;
    std::string output = "-";
    std::vector<std::string> operands;
    bool byContent = false;
    bool brief = false;
    bool compact = false;

    /** Without stage and type, which are separate because a file may provide them instead. */
    ImportOptions import;
    std::optional<FiltersCommon::filtersGroupStage_t> stage;
    std::optional<FiltersCommon::filtersGroupType_t> type;

    /** The only operand, or standard input. */
    std::string operand() const { return operands.empty() ? "-" : operands.front(); }

    ImportOptions importOptions() const;
};

// The rows from which each command builds its list of long options.
enum OptionCode {
    OPERAND = 1,
    OPTION_OUTPUT = 'o',
    OPTION_BRIEF = 'q',
    OPTION_HELP = 256,
    OPTION_CONTENT,
    OPTION_COMPACT,
    OPTION_GROUP,
    OPTION_PRIORITY,
    OPTION_STAGE,
    OPTION_TYPE,
    OPTION_ACTION
};

constexpr option HELP_OPTION = {"help", no_argument, nullptr, OPTION_HELP};
constexpr option BRIEF_OPTION = {"brief", no_argument, nullptr, OPTION_BRIEF};
constexpr option CONTENT_OPTION = {"content", no_argument, nullptr, OPTION_CONTENT};
constexpr option COMPACT_OPTION = {"compact", no_argument, nullptr, OPTION_COMPACT};
constexpr option GROUP_OPTION = {"group", required_argument, nullptr, OPTION_GROUP};
constexpr option PRIORITY_OPTION = {"priority", required_argument, nullptr, OPTION_PRIORITY};
constexpr option STAGE_OPTION = {"stage", required_argument, nullptr, OPTION_STAGE};
constexpr option TYPE_OPTION = {"type", required_argument, nullptr, OPTION_TYPE};
constexpr option ACTION_OPTION = {"action", required_argument, nullptr, OPTION_ACTION};

/** A list as getopt_long expects it, terminated by an empty row. */
template <class... Options>
constexpr std::array<option, sizeof...(Options) + 1> optionList(Options... options)
{
    return {{options..., option{}}};
}

/**
 * Reads what follows the command, with which argv begins. The short options are in the form of
 * getopt_long and begin with '-', so that operands are returned in order too, and options may
 * follow them whatever the environment. Throws UsageError.
 */
CommandLine readCommandLine(int argc, char** argv, const char* shortOptions,
                            const option* longOptions);

} // namespace filterctl

#endif // FILTER_COMMON_TOOLS_COMMAND_LINE_H
