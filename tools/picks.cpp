#include "picks.h"

#include "rule_words.h"

#include <filter_rule_text.h>

#include <algorithm>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace filterctl {

using namespace FiltersCommon;

namespace {

const auto& objectsOf(const FiltersEntry& entry, filtersMatch_t) { return entry.getMatchesRef(); }
const auto& objectsOf(const FiltersEntry& entry, filtersAction_t) { return entry.getActionsRef(); }

std::optional<filtersMatch_t> kindOfWord(std::string_view word, filtersMatch_t)
{
    return kindOf<filtersMatch_t>(MATCH_WORDS, word);
}
std::optional<filtersAction_t> kindOfWord(std::string_view word, filtersAction_t)
{
    return kindOf<filtersAction_t>(ACTION_WORDS, word);
}

std::string lineWith(const std::string& word, filtersMatch_t) { return "0 " + word + " then"; }
std::string lineWith(const std::string& word, filtersAction_t) { return "0 then " + word; }

/** A group whose entries hold what the word says, at any stage and of any type that admits it. */
FiltersGroup groupWith(const std::string& line)
{
    std::vector<RuleTextError> errors;
    for (const auto& [stage, types] : FiltersGroup::StageTypesDescription_)
        for (const filtersGroupType_t type : types) {
            const std::string header =
                "group 0 stage=" + std::to_string(stage) + " type=" + std::to_string(type) + "\n";
            if (auto group = groupFromRuleText(header + line, &errors))
                return *std::move(group);
        }
    throw std::invalid_argument(errors.front().sentence);
}

template <class Kind>
WordPick<Kind> pickOf(const std::string& word)
{
    if (word.empty() || word.find_first_of(" \t\r\n#") != word.npos)
        throw std::invalid_argument("a word of rule text has no blanks, and is not empty");
    if (const auto kind = kindOfWord(word, Kind()))
        return {*kind, std::nullopt};
    FiltersGroup values = groupWith(lineWith(word, Kind()));
    const auto& objects = objectsOf(values.getEntriesRef().begin()->second, Kind());
    if (objects.size() != 1)
        throw std::invalid_argument("a word of rule text is wanted for a match or an action");
    const Kind kind = objects.begin()->first;
    return {kind, std::move(values)};
}

template <class Kind>
bool isIn(const FiltersEntry& entry, const WordPick<Kind>& pick)
{
    const auto& objects = objectsOf(entry, pick.kind);
    const auto found = objects.find(pick.kind);
    if (found == objects.end() || !pick.values)
        return found != objects.end();
    const auto& values = pick.values->getEntriesRef();
    return std::any_of(values.begin(), values.end(), [&](const auto& value) {
        return *objectsOf(value.second, pick.kind).begin()->second == *found->second;
    });
}

template <class Kind>
bool areIn(const FiltersEntry& entry, const std::vector<WordPick<Kind>>& picks)
{
    return std::all_of(picks.begin(), picks.end(),
                       [&](const WordPick<Kind>& pick) { return isIn(entry, pick); });
}

} // namespace

Picks::Picks(std::set<filtersEntryId_t> ids, const std::vector<std::string>& matchWords,
             const std::vector<std::string>& actionWords)
    : ids_(std::move(ids))
{
    for (const std::string& word : matchWords)
        matches_.push_back(pickOf<filtersMatch_t>(word));
    for (const std::string& word : actionWords)
        actions_.push_back(pickOf<filtersAction_t>(word));
}

bool Picks::has(const FiltersEntry& entry) const
{
    return (ids_.empty() || ids_.count(entry.getId()) != 0) && areIn(entry, matches_) &&
           areIn(entry, actions_);
}

void Picks::applyTo(FiltersGroup& group) const
{
    const auto& entries = group.getEntriesRef();
    for (auto it = entries.begin(); it != entries.end();) {
        const FiltersEntry& entry = (it++)->second;
        if (!has(entry))
            group.removeEntry(filtersEntryId_t{entry.getId()});
    }
}

} // namespace filterctl
