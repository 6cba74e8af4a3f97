#include "rule_table.h"

#include "rule_line.h"
#include "rule_words.h"

#include <filter_rule_text.h>

#include <algorithm>
#include <map>
#include <string_view>

namespace filterctl {

using namespace FiltersCommon;

namespace {

/** The places of words in a line, which ascend. */
enum Place : std::size_t {
    ID = 0,
    PRIORITY_PLACE,
    FIRST_MATCH,
    THEN_PLACE = FIRST_MATCH + std::size(MATCH_WORDS),
    FIRST_ACTION,
    REST = FIRST_ACTION + std::size(ACTION_WORDS)
};

/** Calls @p use with each word of the entry's line and its place. */
template <class Use>
void eachWord(const FiltersEntry& entry, Use use)
{
    const std::string line = toRuleText(entry);
    Words words(line);
    std::size_t place = ID;
    for (Word word = words.next(); !word.text.empty(); word = words.next()) {
        if (place >= THEN_PLACE) {
            const auto kind = kindOf<filtersAction_t>(ACTION_WORDS, word.name());
            place = kind ? FIRST_ACTION + static_cast<std::size_t>(*kind)
                         : std::max<std::size_t>(place + 1, REST);
        } else if (const auto kind = kindOf<filtersMatch_t>(MATCH_WORDS, word.name())) {
            place = FIRST_MATCH + static_cast<std::size_t>(*kind);
        } else if (word.text == "then") {
            place = THEN_PLACE;
        } else {
            place = word.hasValue() ? PRIORITY_PLACE : ID;
        }
        use(word, place);
    }
}

std::string painted(const Word& word, const Painter& painter)
{
    const std::string_view name = word.name();
    if (name == "permit")
        return painter.green(name);
    if (name == "deny")
        return painter.red(name);
    if (!word.hasValue())
        return painter.bold(name);
    return painter.cyan(name) + std::string(word.text.substr(name.size()));
}

/** How wide the column of each place is that is used. */
std::map<std::size_t, std::size_t> columnsOf(const FiltersGroup& group)
{
    std::map<std::size_t, std::size_t> columns;
    for (const auto& [id, entry] : group.getEntriesRef())
        eachWord(entry, [&](const Word& word, std::size_t place) {
            std::size_t& width = columns[place];
            width = std::max(width, word.text.size());
        });
    return columns;
}

} // namespace

std::string ruleTableOf(const FiltersGroup& group, std::size_t width, const Painter& painter)
{
    const std::string plain = toRuleText(group);
    std::string text = painter.bold(plain.substr(0, plain.find('\n'))) + "\n";
    std::size_t total = 0;
    std::map<std::size_t, std::size_t> begins;
    for (const auto& [place, wide] : columnsOf(group)) {
        begins[place] = total;
        total += wide + 1;
    }
    const bool fits = total <= width + 1;
    for (const auto& [id, entry] : group.getEntriesRef()) {
        std::size_t end = 0; // of what is written, without the colours
        eachWord(entry, [&](const Word& word, std::size_t place) {
            const std::size_t begin = fits ? begins[place] : end + (end != 0);
            text += std::string(begin - end, ' ') + painted(word, painter);
            end = begin + word.text.size();
        });
        text += '\n';
    }
    return text;
}

} // namespace filterctl
