/**
 * What follows the name of a command: options and operands.
 */
#ifndef FILTER_COMMON_TOOLS_COMMAND_LINE_H
#define FILTER_COMMON_TOOLS_COMMAND_LINE_H

#include "group_merge.h"
#include "inputs.h"

#include <cstdint>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace filterctl {

/** The command line is wrong. */
struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct CommandLine {
    bool help = false;
    std::string output = "-";
    std::vector<std::string> operands;

    InputOptions input;
    /** Of groups in any form; those of access lists are in the input options too. */
    std::optional<FiltersCommon::filtersGroupStage_t> stage;
    std::optional<FiltersCommon::filtersGroupType_t> type;

    bool byContent = false;
    bool brief = false;
    bool compact = false;
    MergeOptions merge;

    std::set<FiltersCommon::filtersEntryId_t> ids;
    std::vector<std::string> actionWords;
    std::vector<std::string> matchWords;

    /** The only operand, or standard input. */
    std::string operand() const { return operands.empty() ? "-" : operands.front(); }

    /** Throws UsageError if standard input stands for more than one of the operands. */
    void expectOneStandardInput() const;
};

/** A row of the help, and what is done with the option. */
struct Option {
    char letter;          /**< 0 if it has none */
    const char* name;     /**< null if it has none */
    const char* argument; /**< its name in the help; null if the option takes none */
    const char* text;     /**< for the help; a newline continues it on the next line */
    void (*take)(CommandLine& line, const char* argument);
    /** Takes an operand that follows the argument; null if operands are none of its business. */
    void (*takeMore)(CommandLine& line, const char* operand) = nullptr;
};

extern const Option OUTPUT_OPTION, FROM_OPTION, EMPTY_OPTION, HELP_OPTION;
extern const Option GROUP_OPTION, PRIORITY_OPTION, STAGE_OPTION, TYPE_OPTION, ACTION_OPTION;
extern const Option CONTENT_OPTION, BRIEF_OPTION, COMPACT_OPTION;
extern const Option ID_OPTION, WITH_ACTION_OPTION, MATCH_OPTION;
extern const Option RENUMBER_OPTION, ABOVE_OPTION, BELOW_OPTION;

using OptionList = std::vector<const Option*>;

/**
 * Reads what follows the command, with which argv begins. Options and operands may stand in any
 * order, whatever the environment. Throws UsageError.
 */
CommandLine readCommandLine(int argc, char** argv, const OptionList& options);

/** The rows of the help. */
std::string helpOf(const OptionList& options);

/** The number, if the text is one that fits the type and nothing else. */
template <class T>
std::optional<T> numberOf(const std::string& text);

} // namespace filterctl

#endif // FILTER_COMMON_TOOLS_COMMAND_LINE_H
