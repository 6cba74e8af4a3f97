/**
 * For tests of refusals: short ways to write refusals, and groups of any stage and type.
 */
#ifndef FILTER_COMMON_TESTS_REFUSALS_SUPPORT_H
#define FILTER_COMMON_TESTS_REFUSALS_SUPPORT_H

#include "filter_refusals.h"
#include "samples.h"

#include "filter_groups.pb.h"

#include <cstdint>
#include <ostream>
#include <utility>
#include <vector>

namespace FiltersCommon {

/** For messages of the test framework. */
inline void PrintTo(const FiltersRefusal& refusal, std::ostream* out)
{
    *out << filtersRefusalReasonName(refusal.reason) << ", \"" << refusal.sentence() << '"';
}

namespace test {

using Refusals = std::vector<FiltersRefusal>;

/** The result of an operation that refuses for these reasons. */
inline filtersErr_t codeOf(const Refusals& refusals)
{
    return refusals.empty() ? FILTERS_OK : refusals.front().code();
}

/** A refusal, with members that @p fill fills. */
template <class Fill>
FiltersRefusal refusal(filtersRefusalReason_t reason, Fill fill)
{
    FiltersRefusal filled(reason);
    fill(filled);
    return filled;
}

inline filtersGroupStage_t stage(std::uint32_t code)
{
    return static_cast<filtersGroupStage_t>(code);
}

inline filtersGroupType_t type(std::uint32_t code) { return static_cast<filtersGroupType_t>(code); }

/** Sets stage and type as reading from the wire does: unchecked, and the entries stay. */
inline void place(FiltersGroup& group, filtersGroupStage_t stage, filtersGroupType_t type)
{
    FiltersGroupPB pb;
    pb.set_id_(group.getId());
    pb.set_priority_(group.getPriority());
    pb.set_stage_(static_cast<std::uint32_t>(stage));
    pb.set_type_(static_cast<std::uint32_t>(type));
    group.convertFromFiltersGroupPB(&pb);
}

inline CodeSet<filtersMatch_t> everyMatchBut(CodeSet<filtersMatch_t> left)
{
    CodeSet<filtersMatch_t> kinds;
    for (std::uint32_t code = 0; code < MATCH_KINDS; ++code)
        kinds.insert(static_cast<filtersMatch_t>(code));
    return kinds - left;
}

inline CodeSet<filtersAction_t> everyAction()
{
    CodeSet<filtersAction_t> kinds;
    for (std::uint32_t code = 0; code < ACTION_KINDS; ++code)
        kinds.insert(static_cast<filtersAction_t>(code));
    return kinds;
}

/** Inserts the entry at a stage and type that admit it, if any do. */
inline bool insertSomewhere(FiltersGroup& group, const FiltersEntry& entry)
{
    for (std::uint32_t stageCode = 0; stageCode < 4; ++stageCode)
        for (std::uint32_t typeCode = 0; typeCode < 10; ++typeCode) {
            place(group, stage(stageCode), type(typeCode));
            if (group.insertEntry(entry) == FILTERS_OK)
                return true;
        }
    return false;
}

/** All stages and types, and some unknown ones. */
inline const std::vector<filtersGroupStage_t>& stages()
{
    static const std::vector<filtersGroupStage_t> stages = {
        stage(0), stage(1), stage(2), stage(3), stage(4), stage(0x7FFFFFFF), stage(0xFFFFFFFF)};
    return stages;
}

inline const std::vector<filtersGroupType_t>& types()
{
    static const std::vector<filtersGroupType_t> types = {
        type(0), type(1), type(2), type(3), type(4),  type(5),
        type(6), type(7), type(8), type(9), type(10), type(0xFFFFFFFF)};
    return types;
}

/** Policers of all stages and of unknown ones. */
inline std::vector<policer::Policer> policers()
{
    std::vector<policer::Policer> policers;
    for (const std::uint32_t code : {0u, 1u, 2u, 3u, 0xFFFFFFFFu})
        policers.push_back(policerAt(static_cast<policer::Stage>(code)));
    return policers;
}

/** An entry without matches, and one for each class of match. */
inline std::vector<FiltersEntry> entriesByMatch()
{
    std::vector<FiltersEntry> entries(1);
    MatchClasses::forEach([&](auto row) { entries.emplace_back().setMatch(row.sample()); });
    return entries;
}

/** A copy of @p entry, and copies with an action of each class. */
inline std::vector<FiltersEntry> withEachAction(const FiltersEntry& entry)
{
    std::vector<FiltersEntry> entries = {entry};
    ActionClasses::forEach([&](auto row) { entries.emplace_back(entry).setAction(row.sample()); });
    return entries;
}

/** Calls @p function with each entry of at most one match, one action and one policer. */
template <class Function>
void forEachSmallEntry(Function function)
{
    for (const FiltersEntry& byMatch : entriesByMatch())
        for (FiltersEntry& entry : withEachAction(byMatch))
            for (const policer::Policer& policer : policers()) {
                entry.setId(static_cast<filtersEntryId_t>(entry.getId() + 1));
                entry.setPolicer(policer);
                function(entry);
            }
}

} // namespace test
} // namespace FiltersCommon

#endif // FILTER_COMMON_TESTS_REFUSALS_SUPPORT_H
