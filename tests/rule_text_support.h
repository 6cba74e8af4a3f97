/**
 * For tests of rule text: short ways to read it, and to go there and back.
 */
#ifndef FILTER_COMMON_TESTS_RULE_TEXT_SUPPORT_H
#define FILTER_COMMON_TESTS_RULE_TEXT_SUPPORT_H

#include "filter_rule_text.h"
#include "refusals_support.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace FiltersCommon::test {

/** What is wrong with the text, each as "LINE:COLUMN: SENTENCE" on a line of its own. */
inline std::string errorsOf(std::string_view text)
{
    std::vector<RuleTextError> errors = {{7, 7, "what stood here before"}};
    const auto group = groupFromRuleText(text, &errors);
    EXPECT_EQ(group.has_value(), errors.empty()) << text;
    EXPECT_EQ(groupFromRuleText(text).has_value(), group.has_value()) << text;
    std::string lines;
    for (const RuleTextError& error : errors)
        lines += std::to_string(error.line) + ":" + std::to_string(error.column) + ": " +
                 error.sentence + "\n";
    return lines;
}

/** The text of the group that is read from @p text, or what is wrong with it. */
inline std::string rewritten(std::string_view text)
{
    const auto group = groupFromRuleText(text);
    return group ? toRuleText(*group) : errorsOf(text);
}

/** Expects that the text of the group is read as an equal group, which has the same text. */
inline void expectBackAgain(const FiltersGroup& group)
{
    const std::string text = toRuleText(group);
    const auto read = groupFromRuleText(text);
    ASSERT_TRUE(read) << text << errorsOf(text);
    EXPECT_TRUE(*read == group) << text;
    EXPECT_EQ(stateOf(*read), stateOf(group)) << text;
    EXPECT_EQ(toRuleText(*read), text);
}

/** Expects the line of an entry, and the entry to be read back wherever a group admits it. */
inline void expectLine(const FiltersEntry& entry, const std::string& line)
{
    EXPECT_EQ(toRuleText(entry), line);
    FiltersGroup group(7);
    if (insertSomewhere(group, entry)) {
        expectBackAgain(group);
    } else { // its words are known all the same
        std::string refusals;
        for (const FiltersRefusal& refusal : insertEntryRefusals(FiltersGroup(0), entry))
            refusals += "1:1: " + refusal.sentence() + "\n";
        EXPECT_EQ(errorsOf(line), refusals);
    }
}

} // namespace FiltersCommon::test

#endif // FILTER_COMMON_TESTS_RULE_TEXT_SUPPORT_H
