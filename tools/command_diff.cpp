#include "commands.h"
#include "files.h"
#include "group_diff.h"

#include <unistd.h>

namespace filterctl {

namespace {

constexpr int DIFFERENT = 1;
constexpr int TROUBLE = 2;

NamedGroup readNamed(const std::string& name, const InputOptions& options)
{
    return {printable(name), *readWhole(name, options).group};
}

int diff(const CommandLine& line)
{
    line.expectOneStandardInput();
    DiffOptions options;
    options.byContent = line.byContent;
    options.brief = line.brief;
    options.painter = Painter(line.output == "-" && takesColor(STDOUT_FILENO));
    const std::string text = diffGroups(readNamed(line.operands[0], line.input),
                                        readNamed(line.operands[1], line.input), options);
    writeFile(line.output, text);
    return text.empty() ? DONE : DIFFERENT;
}

constexpr char DESCRIPTION[] =
    "Compares two groups, entry by entry: which entries are only in A (-) or only in B (+), and\n"
    "in what entries of the same identifier differ. The last line counts them. Nothing is\n"
    "printed if the groups are the same.\n"
    "\n"
    "The exit status is 0 if the groups are the same, 1 if they differ, and 2 if a file is\n"
    "refused or cannot be read or written or the command line is wrong.\n";

constexpr char EXAMPLES[] = "  filterctl diff old.group new.group\n"
                            "  filterctl import new.rules | filterctl diff --content old.group -\n"
                            "  filterctl diff -q old.group new.group > /dev/null || echo changed\n";

} // namespace

const Command DIFF = {
    "diff",
    "A B",
    "say in what two groups differ",
    {&OUTPUT_OPTION, &CONTENT_OPTION, &BRIEF_OPTION, &FROM_OPTION, &EMPTY_OPTION, &HELP_OPTION},
    2,
    2,
    "two files",
    diff,
    DESCRIPTION,
    EXAMPLES,
    TROUBLE};

} // namespace filterctl
