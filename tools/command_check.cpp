#include "checks.h"
#include "commands.h"

namespace filterctl {

namespace {

/** What the stage and the type that were asked for, or those of the group, do not admit. */
std::vector<Problem> checkGroup(const FiltersCommon::FiltersGroup& group, const CommandLine& line)
{
    const auto stage = line.stage.value_or(group.getStage());
    const auto type = line.type.value_or(group.getType());
    // The group admits its entries where it is.
    if (stage == group.getStage() && type == group.getType())
        return checkPlace(stage, type);
    return checkGroupAt(group, stage, type);
}

int check(const CommandLine& line)
{
    InputOptions options = line.input;
    options.onlyForLists = nullptr;
    Input input = readInput(line.operand(), options);
    // An access list has been read at the stage and the type already.
    if (input.group && input.form != Form::LIST)
        for (Problem& problem : checkGroup(*input.group, line))
            input.problems.push_back(std::move(problem));
    report(input.name, input.problems, input.text);
    return input.problems.empty() ? DONE : REFUSED;
}

constexpr char DESCRIPTION[] =
    "Says all at once why FILE, or standard input, would be refused, and what is lost when it is\n"
    "read, one reason a line in the form filterctl: FILE:LINE:COLUMN: REASON on standard error.\n"
    "With --stage or --type it says too what a group at that stage, or of that type, would not\n"
    "admit; the other options for access lists have no effect on other forms.\n"
    "\n"
    "The exit status is 0 if nothing is refused, 1 if something is or FILE cannot be read, and\n"
    "2 if the command line is wrong.\n";

constexpr char EXAMPLES[] =
    "  filterctl check office.rules && filterctl import office.rules -o office.group\n"
    "  filterctl check --type 5 office.group\n";

} // namespace

const Command CHECK = {"check",
                       "[FILE]",
                       "say all at once why a group is refused",
                       {&GROUP_OPTION, &PRIORITY_OPTION, &STAGE_OPTION, &TYPE_OPTION,
                        &ACTION_OPTION, &FROM_OPTION, &EMPTY_OPTION, &HELP_OPTION},
                       0,
                       1,
                       "one file",
                       check,
                       DESCRIPTION,
                       EXAMPLES};

} // namespace filterctl
