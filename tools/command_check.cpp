#include "checks.h"
#include "commands.h"
#include "files.h"
#include "inputs.h"
#include "terminal.h"

#include "filter_groups.pb.h"

#include <cstdio>

#include <unistd.h>

namespace filterctl {

using namespace FiltersCommon;

namespace {

/** The first byte of every serialized group; no valid access list begins with it. */
constexpr char FIRST_OF_GROUP = '\x08';

std::vector<Refusal> checkFile(const std::string& bytes, const CommandLine& line)
{
    FiltersGroupPB message;
    if (!parseGroup(message, bytes)) {
        if (bytes.substr(0, 1) == std::string(1, FIRST_OF_GROUP))
            return {{0, NO_GROUP}};
        return checkAccessList(bytes, line.importOptions());
    }
    if (line.stage)
        message.set_stage_(static_cast<std::uint32_t>(*line.stage));
    if (line.type)
        message.set_type_(static_cast<std::uint32_t>(*line.type));
    return checkGroup(message.SerializeAsString(),
                      static_cast<filtersGroupStage_t>(message.stage_()),
                      static_cast<filtersGroupType_t>(message.type_()));
}

int check(const CommandLine& line)
{
    const std::string name = line.operand();
    const std::vector<Refusal> refusals = checkFile(readFile(name), line);
    const Painter painter(takesColor(STDERR_FILENO));
    std::string text;
    for (const Refusal& refusal : refusals)
        text += painter.bold(placeOf(name, refusal)) + " " + refusal.reason + "\n";
    std::fputs(text.c_str(), stderr);
    return refusals.empty() ? DONE : REFUSED;
}

constexpr auto OPTIONS = optionList(GROUP_OPTION, PRIORITY_OPTION, STAGE_OPTION, TYPE_OPTION,
                                    ACTION_OPTION, HELP_OPTION);

constexpr char HELP[] =
    "usage: filterctl check [FILE] [OPTION]...\n"
    "\n"
    "Says all at once why FILE, or standard input, would be refused, one reason a line in the\n"
    "form FILE:LINE: REASON on standard error. FILE is an access list, or the bytes of a group,\n"
    "of which it says what reading them leaves out.\n"
    "\n"
    "      --stage N        stage of the group (0, or what the bytes hold)\n"
    "      --type N         type of the group (3, or what the bytes hold)\n"
    "      --action ACTION  action of each entry: permit or deny (permit)\n"
    "      --group N        this one and the next are taken as import takes them, and are\n"
    "      --priority N     never refused\n"
    "      --help           print this text\n"
    "\n"
    "The exit status is 0 if nothing is refused, 1 if something is or FILE cannot be read, and\n"
    "2 if the command line is wrong.\n"
    "\n"
    "Examples:\n"
    "  filterctl check office.rules && filterctl import office.rules -o office.group\n"
    "  filterctl check --type 5 office.group\n";

} // namespace

const Command CHECK = {"check", "-", OPTIONS.data(), 0, 1, "one file", check, REFUSED, HELP};

} // namespace filterctl
