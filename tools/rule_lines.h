/**
 * Changing rule text line by line, so that everything else stays as somebody wrote it.
 */
#ifndef FILTER_COMMON_TOOLS_RULE_LINES_H
#define FILTER_COMMON_TOOLS_RULE_LINES_H

#include <filter_groups.h>

#include <set>
#include <string>
#include <string_view>

namespace filterctl {

/**
 * The text, which must be right, without some of its entries. A line that made others too becomes a
 * line for each of them. What an entry is called stays: if its line leaves the identifier to be
 * counted, and would now count another, it is written down.
 */
std::string withoutEntries(std::string_view text,
                           const std::set<FiltersCommon::filtersEntryId_t>& ids);

/**
 * The text, which must be right, with the identifier written into each line from @p begin on that
 * leaves it to be counted; as then it stays the same, whatever becomes of the lines in front of it.
 */
std::string withIdentifiersFrom(std::string_view text, std::size_t begin);

/** The end of line that the text uses. */
std::string_view endOfLineOf(std::string_view text);

} // namespace filterctl

#endif // FILTER_COMMON_TOOLS_RULE_LINES_H
