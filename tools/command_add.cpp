#include "commands.h"
#include "files.h"
#include "rule_lines.h"

#include <filter_rule_text.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace filterctl {

using namespace FiltersCommon;

namespace {

/** Lines of rule text, and the name under which the user knows where they come from. */
struct Addition {
    std::string name;
    std::string text;
};

std::size_t countLines(std::string_view text)
{
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

/** Ends the text with an end of line, unless it is empty. */
void endLine(std::string& text, std::string_view endOfLine)
{
    if (!text.empty() && text.back() != '\n')
        text += endOfLine;
}

/** The rule of the operands behind the file: a quoted one is a rule of its own. */
std::string rulesOf(const std::vector<std::string>& operands, std::string_view endOfLine)
{
    std::string rules;
    std::string words;
    const auto endRule = [&] {
        if (!words.empty())
            (rules += words) += endOfLine;
        words.clear();
    };
    for (auto operand = operands.begin() + 1; operand != operands.end(); ++operand) {
        const bool isQuoted = operand->find_first_of(" \t\n") != std::string::npos;
        if (isQuoted)
            endRule();
        if (*operand != "-")
            words += (words.empty() ? "" : " ") + *operand;
        if (isQuoted)
            endRule();
    }
    endRule();
    return rules;
}

std::vector<Addition> additionsOf(const std::vector<std::string>& operands,
                                  std::string_view endOfLine)
{
    std::vector<Addition> additions;
    if (std::string rules = rulesOf(operands, endOfLine); !rules.empty())
        additions.push_back({"RULE", std::move(rules)});
    if (operands.size() == 1 || std::count(operands.begin() + 1, operands.end(), "-") != 0) {
        additions.push_back({"-", readFile("-")});
        endLine(additions.back().text, endOfLine);
    }
    return additions;
}

/** Refuses the additions, each with its own problems; those of the file have been told before. */
[[noreturn]] void refuse(const std::vector<Addition>& additions, std::size_t linesInFront,
                         const std::vector<Problem>& problems)
{
    const Addition* last = nullptr;
    std::vector<Problem> own;
    auto problem = problems.begin();
    for (const Addition& each : additions) {
        if (last != nullptr)
            report(last->name, own, last->text);
        own.clear();
        last = &each;
        const std::size_t behind = linesInFront + countLines(each.text);
        for (; problem != problems.end() && problem->line <= behind; ++problem)
            own.push_back({problem->line - linesInFront, problem->column, problem->sentence});
        linesInFront = behind;
    }
    throw Refused(last->name, own, last->text);
}

int add(const CommandLine& line)
{
    const std::string& name = line.operands.front();
    const Input input = readChangeable(name, line.input);
    const bool isText = input.form == Form::RULES;
    const std::string_view endOfLine = endOfLineOf(isText ? input.text : "");
    std::string text = isText ? input.text : toRuleText(*input.group);
    endLine(text, endOfLine);

    const std::size_t begin = text.size();
    const std::size_t linesInFront = countLines(text);
    const std::vector<Addition> additions = additionsOf(line.operands, endOfLine);
    for (const Addition& each : additions)
        text += each.text;
    std::vector<Problem> problems;
    const auto group = groupFromRuleText(text, &problems);
    if (!group)
        refuse(additions, linesInFront, problems);
    if (group->getEntriesRef().size() == input.group->getEntriesRef().size())
        throw Refused(additions.back().name, {{0, 0, "holds no rule"}});
    writeChanged(input, *group, isText ? withIdentifiersFrom(text, begin) : "");
    return DONE;
}

constexpr char DESCRIPTION[] =
    "Adds rules to FILE, which holds the bytes of a group or rule text and is replaced in one\n"
    "step, in its own form. A RULE is rule text: its words, or all of it as one quoted word.\n"
    "More of them are read from standard input if none is given, or if one of them is -. In rule\n"
    "text they are put at the end, and the rest stays as it is. A rule without an identifier gets\n"
    "the one behind that of the last rule. All rules are added, or none.\n";

constexpr char EXAMPLES[] =
    "  filterctl add office.txt priority=9 src_ipv4=10.9.0.0/16 then deny\n"
    "  filterctl add office.group '7 src_ipv4=10.9.0.0/16 then deny' '8 all then permit'\n"
    "  filterctl list new.rules | sed 1d | filterctl add office.txt\n";

} // namespace

const Command ADD = {"add",
                     "FILE [RULE...]",
                     "add rules to a file",
                     {&FROM_OPTION, &EMPTY_OPTION, &HELP_OPTION},
                     1,
                     ANY_NUMBER,
                     "a file and rules",
                     add,
                     DESCRIPTION,
                     EXAMPLES};

} // namespace filterctl
