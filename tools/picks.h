/**
 * Which entries of a group a user asks for.
 */
#ifndef FILTER_COMMON_TOOLS_PICKS_H
#define FILTER_COMMON_TOOLS_PICKS_H

#include <filter_groups.h>

#include <optional>
#include <set>
#include <string>
#include <vector>

namespace filterctl {

/** An object of a kind; of some value if the word has one. A range of ports has several. */
template <class Kind>
struct WordPick {
    Kind kind;
    std::optional<FiltersCommon::FiltersGroup> values;
};

class Picks {
public:
    /**
     * The words are those of rule text, with or without a value: the kind alone, or exactly this.
     * Throws std::invalid_argument with a sentence for a word that is none.
     */
    Picks(std::set<FiltersCommon::filtersEntryId_t> ids, const std::vector<std::string>& matchWords,
          const std::vector<std::string>& actionWords);

    /** Leaves in the group only the entries that are asked for. */
    void applyTo(FiltersCommon::FiltersGroup& group) const;

private:
    bool has(const FiltersCommon::FiltersEntry& entry) const;

    std::set<FiltersCommon::filtersEntryId_t> ids_;
    std::vector<WordPick<FiltersCommon::filtersMatch_t>> matches_;
    std::vector<WordPick<FiltersCommon::filtersAction_t>> actions_;
};

} // namespace filterctl

#endif // FILTER_COMMON_TOOLS_PICKS_H
