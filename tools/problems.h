/**
 * What is wrong with what the user gave, and how the user is told.
 */
#ifndef FILTER_COMMON_TOOLS_PROBLEMS_H
#define FILTER_COMMON_TOOLS_PROBLEMS_H

#include <filter_rule_text.h>

#include <exception>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace filterctl {

/** The line is 0 if no single one is to blame, and the column if the whole line is. */
using Problem = FiltersCommon::RuleTextError;

/** Ends a command: an input is refused. */
struct Refused : std::exception {
    Refused(std::string inputName, std::vector<Problem> inputProblems, std::string inputText = "")
        : name(std::move(inputName)), problems(std::move(inputProblems)), text(std::move(inputText))
    {}
    const char* what() const noexcept override { return "an input is refused"; }

    std::string name;
    std::vector<Problem> problems;
    std::string text; /**< the input, whose lines are shown; perhaps empty */
};

/**
 * Tells the user of each problem on standard error: "filterctl: NAME:LINE:COLUMN: SENTENCE". On a
 * terminal the line of @p text follows, with a mark under what is wrong.
 */
void report(const std::string& name, const std::vector<Problem>& problems, std::string_view text);

/** The same for a message that has no place. */
void report(std::string_view message);

/** Writes to standard error what is safe for a terminal as it is. */
void tellUser(const std::string& text);

/** The text without anything that a terminal would take for a command: such bytes are escaped. */
std::string printable(std::string_view text);

} // namespace filterctl

#endif // FILTER_COMMON_TOOLS_PROBLEMS_H
