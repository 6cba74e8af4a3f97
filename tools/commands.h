/**
 * The commands of filterctl. If a command cannot read, write or accept something, it throws Refused
 * or another std::exception with the message for the user.
 */
#ifndef FILTER_COMMON_TOOLS_COMMANDS_H
#define FILTER_COMMON_TOOLS_COMMANDS_H

#include "command_line.h"
#include "status.h"

#include <cstddef>

namespace filterctl {

constexpr std::size_t ANY_NUMBER = static_cast<std::size_t>(-1);

struct Command {
    const char* name;
    const char* arguments; /**< as the usage shows them */
    const char* summary;   /**< for the help of filterctl itself */
    OptionList options;
    std::size_t fewestOperands;
    std::size_t mostOperands;
    const char* operands; /**< how many and which, for messages */
    int (*run)(const CommandLine& line);
    const char* description;       /**< for the help, with a newline at its end */
    const char* examples;          /**< for the help, likewise */
    int failure = Status::REFUSED; /**< the exit status if an exception ends the command */
};

extern const Command IMPORT, LIST, SHOW, JSON, STATS, CHECK, DIFF, ADD, DELETE, MERGE;

} // namespace filterctl

#endif // FILTER_COMMON_TOOLS_COMMANDS_H
