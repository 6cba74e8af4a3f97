#include "properties.h"
#include "target.h"

#include "filter_rule_text.h"

#include <algorithm>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

// The first byte decides what the rest is: the bytes of a group, which is written as text and read
// back, or text, which is read.

namespace FiltersCommon::fuzz {
namespace {

/** Texts that may make more are not read, for speed. */
constexpr std::size_t MOST_ELEMENTS = 20'000;

/** Returns the text. */
std::string checkBackAgain(const FiltersGroup& group)
{
    const std::string text = toRuleText(group);
    std::vector<RuleTextError> errors;
    const auto read = groupFromRuleText(text, &errors);
    require(read && errors.empty(), "what was written is read");
    requireSame(*read, group, "what was written is read as an equal group");
    require(toRuleText(*read) == text, "what is read from what was written is written the same");

    std::string lines = text.substr(0, text.find('\n') + 1);
    for (const auto& element : group.getEntriesRef())
        lines += toRuleText(element.second) + '\n';
    require(lines == text, "the text of a group consists of the texts of its entries");
    return text;
}

// --------------------------------------------------------------------------------------- any text

std::vector<std::string_view> linesOf(std::string_view text)
{
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        lines.push_back(text.substr(0, text.find('\n')));
        text.remove_prefix(std::min(lines.back().size() + 1, text.size()));
    }
    return lines;
}

/** No fewer than the entries and VLANs of the text: a few words may mean very many. */
std::size_t countElements(std::string_view text)
{
    std::size_t count = 0;
    for (std::string_view line : linesOf(text)) {
        std::size_t entries = 1;
        std::size_t ids = 1;
        for (; !line.empty(); line.remove_prefix(1)) {
            if (line.substr(0, 8) == "l4_port=")
                entries *= 30;
            if (line.front() == '-')
                ids += std::min(std::strtoul(line.data() + 1, nullptr, 0), 0xFFFFUL);
        }
        count += std::min(entries, MOST_ELEMENTS) * ids;
    }
    return count;
}

void checkErrors(const std::vector<RuleTextError>& errors, std::string_view text)
{
    const std::vector<std::string_view> lines = linesOf(text);
    std::size_t last = 1;
    for (const RuleTextError& error : errors) {
        require(error.line >= last && error.line <= lines.size(), "errors name lines in order");
        require(error.column >= 1 && error.column <= lines[error.line - 1].size() + 1,
                "an error names a column of its line");
        require(!error.sentence.empty() && std::all_of(error.sentence.begin(), error.sentence.end(),
                                                       [](char c) { return c >= ' ' && c <= '~'; }),
                "a sentence can be printed");
        last = error.line;
    }
}

void checkText(const std::string& text)
{
    if (countElements(text) > MOST_ELEMENTS)
        return;
    std::vector<RuleTextError> errors;
    const auto group = groupFromRuleText(text, &errors);
    require(group.has_value() == errors.empty(), "there is a group, or something is wrong");
    require(groupFromRuleText(text).has_value() == group.has_value(),
            "what is read does not depend on whether anybody asks for errors");
    checkErrors(errors, text);
    if (group) {
        checkInvariants(*group);
        checkBackAgain(*group);
    }
}

} // namespace
} // namespace FiltersCommon::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace FiltersCommon;
    return fuzz::takeBytesOrText(
        data, size, [](const std::string& bytes) { fuzz::checkBackAgain(FiltersGroup(bytes)); },
        fuzz::checkText);
}
