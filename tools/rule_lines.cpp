#include "rule_lines.h"

#include "rule_line.h"

#include <filter_rule_text.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace filterctl {

using namespace FiltersCommon;

namespace {

/** A line with its end of line. */
struct Line {
    std::string_view text;

    Words words() const { return Words(text.substr(0, text.find_first_of("\r\n"))); }
    std::string_view end() const
    {
        return text.substr(std::min(text.find_first_of("\r\n"), text.size()));
    }
};

/** Whether the line says the identifier of its entry: it is the word that begins with a digit. */
bool saysIdentifier(const Line& line)
{
    Words words = line.words();
    for (Word word = words.next(); !word.text.empty() && word.name() != "then"; word = words.next())
        if (word.text[0] >= '0' && word.text[0] <= '9')
            return true;
    return false;
}

/** Reads a text that is right, line by line. */
class LinesOfText {
public:
    explicit LinesOfText(std::string_view text) : text_(text)
    {
        if (text_.substr(0, MARK.size()) == MARK)
            place_ = MARK.size();
    }

    /** Where the next line begins. */
    std::size_t place() const { return place_; }

    std::optional<Line> next()
    {
        if (place_ == text_.size())
            return std::nullopt;
        const std::size_t end = std::min(text_.find('\n', place_), text_.size() - 1) + 1;
        const Line line{text_.substr(place_, end - place_)};
        place_ = end;
        return line;
    }

private:
    static constexpr std::string_view MARK = "\xEF\xBB\xBF";

    std::string_view text_;
    std::size_t place_ = 0;
};

/** Says which entries a line makes. */
class Counter {
public:
    /** The entries of the line under their identifiers; none of a line that makes none. */
    FiltersGroup entriesOf(const Line& line)
    {
        const Word first = line.words().next();
        if (first.name() == "group")
            header_ = std::string(line.text.substr(0, line.text.find_first_of("\r\n"))) + "\n";
        if (first.text.empty() || first.name() == "group")
            return FiltersGroup(0);
        std::string text = header_;
        if (!saysIdentifier(line))
            text += std::to_string(next_) + " ";
        auto group = groupFromRuleText(text += line.text);
        next_ = group->getEntriesRef().rbegin()->first + std::uint32_t{1};
        return *std::move(group);
    }

private:
    std::string header_;
    std::uint32_t next_ = 0;
};

/** The line, in which the identifier is written down. */
std::string withIdentifier(const Line& line, filtersEntryId_t id)
{
    const std::size_t begin = line.words().next().column - 1;
    std::string text(line.text);
    return text.insert(begin, std::to_string(id) + " ");
}

/** A line for each of the entries. */
std::string linesOf(const FiltersGroup& group, std::string_view endOfLine)
{
    std::string text;
    for (const auto& [id, entry] : group.getEntriesRef())
        (text += toRuleText(entry)) += endOfLine;
    return text;
}

/** Takes out of the group what it has of these entries. */
void removeFrom(FiltersGroup& group, const std::set<filtersEntryId_t>& ids)
{
    const auto& entries = group.getEntriesRef();
    for (auto it = entries.begin(); it != entries.end();) {
        const filtersEntryId_t id = (it++)->first;
        if (ids.count(id) != 0)
            group.removeEntry(id);
    }
}

} // namespace

std::string withoutEntries(std::string_view text, const std::set<filtersEntryId_t>& ids)
{
    LinesOfText lines(text);
    std::string kept(text.substr(0, lines.place()));
    Counter counter;
    std::uint32_t next = 0; // what a line that leaves it to be counted would now count
    while (const auto line = lines.next()) {
        FiltersGroup group = counter.entriesOf(*line);
        const auto& entries = group.getEntriesRef();
        const std::size_t before = entries.size();
        const filtersEntryId_t first = before == 0 ? filtersEntryId_t{0} : entries.begin()->first;
        removeFrom(group, ids);
        if (entries.empty() && before != 0)
            continue;
        if (entries.size() != before)
            kept += linesOf(group, line->end().empty() ? endOfLineOf(text) : line->end());
        else if (before != 0 && first != next && !saysIdentifier(*line))
            kept += withIdentifier(*line, first);
        else
            kept += line->text;
        if (before != 0)
            next = entries.rbegin()->first + std::uint32_t{1};
    }
    return kept;
}

std::string withIdentifiersFrom(std::string_view text, std::size_t begin)
{
    std::string changed;
    LinesOfText lines(text);
    Counter counter;
    for (std::size_t place = 0; const auto line = lines.next(); place = lines.place()) {
        const FiltersGroup group = counter.entriesOf(*line);
        const bool says = group.getEntriesRef().empty() || saysIdentifier(*line);
        if (place >= begin)
            changed += says ? std::string(line->text)
                            : withIdentifier(*line, group.getEntriesRef().begin()->first);
    }
    return std::string(text.substr(0, begin)) + changed;
}

std::string_view endOfLineOf(std::string_view text)
{
    const std::size_t end = text.find('\n');
    return end != text.npos && end != 0 && text[end - 1] == '\r' ? "\r\n" : "\n";
}

} // namespace filterctl
