/**
 * The operations on a group, in the same way as those on an entry.
 */
#ifndef FILTER_COMMON_FUZZ_OPERATIONS_ON_GROUPS_H
#define FILTER_COMMON_FUZZ_OPERATIONS_ON_GROUPS_H

#include "operations_on_entries.h"

#include <utility>

namespace FiltersCommon::fuzz {

/** Has @p insert bring the entry, which it may empty, into the group. */
template <class Insert>
filtersErr_t checkInsert(FiltersGroup& group, const FiltersEntry& entry, Insert insert)
{
    const FiltersEntry before(entry);
    FiltersGroup::EntryMap others = group.getEntries();
    others.erase(entry.getId());
    const filtersErr_t expected = refusalOf(entry, group.getStage(), group.getType());
    require(codeOf(insertEntryRefusals(group, entry)) == expected, "a refusal is explained");
    const filtersErr_t result = attempt(group, insert);
    require(result == expected, "an insertion answers as the tables say");
    if (result != FILTERS_OK)
        return result;
    FiltersGroup::EntryMap now = group.getEntries();
    require(now.count(before.getId()) == 1, "an inserted entry is held");
    requireSame(now.at(before.getId()), before, "an inserted entry is held as it was");
    now.erase(before.getId());
    require(now == others, "an inserted entry replaces its identifier alone");
    return result;
}

inline void insertEntry(FiltersGroup& group, FiltersEntry& entry, ByteSource& in)
{
    const bool inC = in.flip();
    const FiltersEntry before(entry);
    checkInsert(group, entry, [&](FiltersGroup& g) {
        return inC ? filtersGroupInsertEntry(&g, &entry) : g.insertEntry(entry);
    });
    requireSame(entry, before, "an entry that is copied stays as it is");
}

inline void takeEntry(FiltersGroup& group, FiltersEntry& entry)
{
    const FiltersEntry before(entry);
    const filtersErr_t result =
        checkInsert(group, entry, [&](FiltersGroup& g) { return g.takeEntry(std::move(entry)); });
    requireSame(entry, result == FILTERS_OK ? emptied(before) : before,
                "a group takes the matches and actions of what it admits, and nothing else");
    checkInvariants(entry);
}

inline void removeEntry(FiltersGroup& group, ByteSource& in)
{
    const bool inC = in.flip();
    const auto id = in.smallNumber<filtersEntryId_t>();
    FiltersGroup::EntryMap others = group.getEntries();
    const bool isHeld = others.erase(id) != 0;
    const filtersErr_t result = attempt(group, [&](FiltersGroup& g) {
        return inC ? filtersGroupRemoveEntry(&g, id) : g.removeEntry(id);
    });
    require(result == (isHeld ? FILTERS_OK : FILTERS_ERR_NOT_FOUND),
            "what is held can be removed, and nothing else");
    require(group.getEntriesRef() == others, "what is removed is one entry alone");
    require(filtersGroupRemoveEntry(nullptr, id) == FILTERS_ERR_BAD_PARAM,
            "C refuses a missing group");
}

/** The refusal @p pair if it is one, otherwise the first one of the entries, in their order. */
template <class Refusal>
filtersErr_t firstRefusal(const FiltersGroup& group, filtersErr_t pair, Refusal refusalOfEntry)
{
    filtersErr_t result = pair;
    for (const auto& element : group.getEntriesRef())
        if (result == FILTERS_OK)
            result = refusalOfEntry(element.second);
    return result;
}

inline void setStage(FiltersGroup& group, ByteSource& in)
{
    const bool inC = in.flip();
    const auto stage = in.smallNumber<filtersGroupStage_t>();
    const filtersErr_t expected =
        firstRefusal(group, refusalOf(stage, group.getType()), [&](const FiltersEntry& entry) {
            return refusalOf(entry, stage, group.getType());
        });
    require(codeOf(setStageRefusals(group, stage)) == expected, "a refusal is explained");
    const filtersGroupStage_t before = group.getStage();
    const filtersErr_t result = attempt(group, [&](FiltersGroup& g) {
        if (!inC)
            return g.setStage(stage);
        filtersGroupSetStage(&g, stage);
        return expected; // the C function has no result
    });
    require(result == expected, "a stage is set as the tables say");
    require(filtersGroupGetStage(&group) == (result == FILTERS_OK ? stage : before),
            "the stage is what was set");
}

inline void setType(FiltersGroup& group, ByteSource& in)
{
    const bool inC = in.flip();
    const auto type = in.smallNumber<filtersGroupType_t>();
    const filtersErr_t expected =
        firstRefusal(group, refusalOf(group.getStage(), type), [&](const FiltersEntry& entry) {
            return refusalOf(entry, group.getStage(), type);
        });
    require(codeOf(setTypeRefusals(group, type)) == expected, "a refusal is explained");
    const filtersErr_t result = attempt(group, [&](FiltersGroup& g) {
        return inC ? filtersGroupSetType(&g, type) : g.setType(type);
    });
    require(result == expected, "a type is set as the tables say");
    require(result != FILTERS_OK || filtersGroupGetType(&group) == type, "the type is what was "
                                                                         "set");
}

inline void setGroupPriority(FiltersGroup& group, ByteSource& in)
{
    const auto priority = in.number<filtersGroupPriority_t>();
    if (in.flip())
        group.setPriority(priority);
    else
        filtersGroupSetPriority(&group, priority);
    require(group.getPriority() == priority && filtersGroupGetPriority(&group) == priority,
            "a priority is kept");
    checkInvariants(group);
}

/** Assigns another group, or the group itself, by copy or by move. */
inline void assignGroup(FiltersGroup& group, FiltersGroup& other, ByteSource& in)
{
    const FiltersGroup expected(other);
    switch (in.below(3)) {
    case 0:
        group = other;
        requireSame(other, expected, "a copied group stays as it is");
        break;
    case 1:
        group = FiltersGroup(other);
        break;
    default:
        if (&group == &other)
            return;
        group = std::move(other);
        other = expected;
    }
    requireSame(group, expected, "an assigned group is equal to its source");
    checkInvariants(group);
}

/** Reads a message into a group that is not empty. The entries it holds are not checked again. */
inline void readMessage(const FiltersGroup& group, const FiltersGroup& other)
{
    FiltersGroup read(group);
    const FiltersGroupPB pb = other.convertToFiltersGroupPB();
    read.convertFromFiltersGroupPB(&pb);
    FiltersGroup::EntryMap expected = other.getEntries();
    for (const auto& [id, entry] : group.getEntriesRef())
        expected.emplace(id, entry);
    require(read.getEntriesRef() == expected && read.getId() == other.getId() &&
                read.getPriority() == other.getPriority() && read.getStage() == other.getStage() &&
                read.getType() == other.getType(),
            "a message is read on top of what a group holds");
}

} // namespace FiltersCommon::fuzz

#endif // FILTER_COMMON_FUZZ_OPERATIONS_ON_GROUPS_H
