/**
 * Writes docs/words.md: the words of rule text and what may stand behind them. What is read is asked
 * of the reader, and how it is written of the writer, so that the page repeats neither.
 * scripts/regenerate-docs renews the page; a test compares it with what this program writes.
 */
#include "named_samples.h"

#include "filter_rule_text.h"

#include <iostream>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace FiltersCommon;

std::string textOf(const test::Sample<Match>& sample)
{
    FiltersEntry entry;
    FiltersEntry::MatchMap matches;
    matches[sample.object->getType()] = sample.copy();
    entry.setMatches(matches);
    const std::string text = toRuleText(entry);
    const std::string begin = "0 ";
    return text.substr(begin.size(), text.rfind(" then") - begin.size());
}

std::string textOf(const test::Sample<Action>& sample)
{
    FiltersEntry entry;
    FiltersEntry::ActionMap actions;
    actions[sample.object->getType()] = sample.copy();
    entry.setActions(actions);
    const std::string text = toRuleText(entry);
    return text.substr(std::string("0 then ").size());
}

/** What the reader says that a word takes. */
std::string takenBy(const std::string& word, bool isMatch)
{
    std::vector<RuleTextError> errors;
    groupFromRuleText((isMatch ? "" : "then ") + word + "=?" + (isMatch ? " then" : ""), &errors);
    const std::string takes = " takes ";
    const std::string sentence = errors.at(0).sentence;
    const std::size_t begin = sentence.find(takes);
    if (begin == std::string::npos)
        throw std::logic_error("the reader does not say what " + word + " takes: " + sentence);
    const std::string taken = sentence.substr(begin + takes.size());
    return taken.substr(0, taken.rfind(", not '"));
}

template <class Base>
void writeTable(const std::vector<test::Sample<Base>>& samples, bool isMatch)
{
    struct Row {
        std::string word, examples;
    };
    std::map<int, Row> rows;
    for (const auto& sample : samples) {
        const std::string text = textOf(sample);
        Row& row = rows[sample.expected.code];
        row.word = text.substr(0, text.find('='));
        const std::string example = "`" + text + "`";
        if (row.examples.find(example) == std::string::npos)
            row.examples += (row.examples.empty() ? "" : "<br>") + example;
    }
    std::cout << "| word | takes | written, for example |\n|---|---|---|\n";
    for (const auto& [code, row] : rows)
        std::cout << "| `" << row.word << "` | " << takenBy(row.word, isMatch) << " | "
                  << row.examples << " |\n";
}

} // namespace

int main()
{
    std::cout << "<!-- Written by scripts/regenerate-docs; not edited by hand. -->\n\n"
                 "# Words of rule text\n\n"
                 "What each word takes, in the reader's own words, and how it is written. "
                 "[rules.md](rules.md) has the\nnotation; numbers may also be written in "
                 "hexadecimal with 0x.\n\n"
                 "## Matches\n\n";
    writeTable<Match>(test::matchSamples(), true);
    std::cout << "\n`dscp` takes " << takenBy("dscp", true)
              << "; it is stored, and written, as the `tos` with the same meaning.\n\n"
                 "## Actions\n\n";
    writeTable<Action>(test::actionSamples(), false);
    std::cout << "\n## Behind the actions\n\n"
                 "| word | takes |\n|---|---|\n";
    for (const char* word : {"counter", "policer"})
        std::cout << "| `" << word << "` | " << takenBy(word, false) << " |\n";
}
