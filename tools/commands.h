/**
 * The commands of filterctl. If a command cannot read, write or accept something, it throws a
 * std::exception with the message for the user.
 */
#ifndef FILTER_COMMON_TOOLS_COMMANDS_H
#define FILTER_COMMON_TOOLS_COMMANDS_H

#include "command_line.h"

#include <cstddef>

namespace filterctl {

/** The exit status. Two commands use it to answer a question: check and diff. */
enum Status { DONE = 0, REFUSED = 1, WRONG_USAGE = 2 };

struct Command {
    const char* name;
    const char* shortOptions;
    const option* longOptions;
    std::size_t fewestOperands;
    std::size_t mostOperands;
    const char* operands; /**< how many and which, for messages */
    int (*run)(const CommandLine& line);
    int failure; /**< the exit status if an exception ends the command */
    const char* help;
};

extern const Command IMPORT;
extern const Command SHOW;
extern const Command CHECK;
extern const Command DIFF;
extern const Command JSON;
extern const Command STATS;

} // namespace filterctl

#endif // FILTER_COMMON_TOOLS_COMMANDS_H
