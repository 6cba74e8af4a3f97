#include "commands.h"
#include "files.h"
#include "group_diff.h"
#include "inputs.h"

#include <unistd.h>

namespace filterctl {

namespace {

constexpr int DIFFERENT = 1;
constexpr int TROUBLE = 2;

int diff(const CommandLine& line)
{
    const std::string& first = line.operands.front();
    const std::string& second = line.operands.back();
    if (first == "-" && second == "-")
        throw UsageError("diff reads one of its files from standard input, not both");
    DiffOptions options;
    options.byContent = line.byContent;
    options.brief = line.brief;
    options.painter = Painter(line.output == "-" && takesColor(STDOUT_FILENO));
    const std::string text =
        diffGroups({first, readGroup(first)}, {second, readGroup(second)}, options);
    writeFile(line.output, text);
    return text.empty() ? DONE : DIFFERENT;
}

constexpr auto OPTIONS = optionList(CONTENT_OPTION, BRIEF_OPTION, HELP_OPTION);

constexpr char HELP[] =
    "usage: filterctl diff A B [-o FILE] [OPTION]...\n"
    "\n"
    "Compares two groups, entry by entry: which entries are only in A (-) or only in B (+), and\n"
    "in what entries of the same identifier differ. The last line counts them. Nothing is\n"
    "printed if the groups are the same.\n"
    "\n"
    "      --content   compare what entries match and do, whatever their identifiers and\n"
    "                  priorities: for lists that rules were added to or taken from\n"
    "  -q, --brief     print only the line that counts\n"
    "  -o FILE         write to FILE, which is replaced in one step\n"
    "      --help      print this text\n"
    "\n"
    "The exit status is 0 if the groups are the same, 1 if they differ, and 2 if a file cannot\n"
    "be read or written or the command line is wrong.\n"
    "\n"
    "Examples:\n"
    "  filterctl diff old.group new.group\n"
    "  filterctl import new.rules | filterctl diff --content old.group -\n"
    "  filterctl diff -q old.group new.group > /dev/null || echo changed\n";

} // namespace

const Command DIFF = {"diff", "-o:q", OPTIONS.data(), 2, 2, "two files", diff, TROUBLE, HELP};

} // namespace filterctl
