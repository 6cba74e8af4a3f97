#include "filter_groups_c.h"

#include "contract.h"
#include "filter_groups.h"

#include <memory>

/** Reports give the C++ signature of the function. */
#define REQUIRE(condition, function)                                                               \
    FILTERS_COMMON_REQUIRE(condition, "filter_groups_c.cpp", __LINE__, function)

namespace FiltersCommon {

FiltersGroup* newFiltersGroup(filtersGroupId_t id) { return new FiltersGroup(id); }

void deleteFiltersGroup(FiltersGroup* g)
{
    REQUIRE(g != nullptr, "void FiltersCommon::deleteFiltersGroup(FiltersCommon::FiltersGroup*)");
    delete g;
}

// -------------------------------------------------------------------------------------- accessors

filtersGroupId_t filtersGroupGetId(FiltersGroup* g)
{
    REQUIRE(g != nullptr, "FiltersCommon::filtersGroupId_t "
                          "FiltersCommon::filtersGroupGetId(FiltersCommon::FiltersGroup*)");
    return g->getId();
}

void filtersGroupSetPriority(FiltersGroup* g, filtersGroupPriority_t priority)
{
    REQUIRE(g != nullptr, "void FiltersCommon::filtersGroupSetPriority("
                          "FiltersCommon::FiltersGroup*, FiltersCommon::filtersGroupPriority_t)");
    g->setPriority(priority);
}

filtersGroupPriority_t filtersGroupGetPriority(FiltersGroup* g)
{
    REQUIRE(g != nullptr, "FiltersCommon::filtersGroupPriority_t "
                          "FiltersCommon::filtersGroupGetPriority(FiltersCommon::FiltersGroup*)");
    return g->getPriority();
}

void filtersGroupSetStage(FiltersGroup* g, filtersGroupStage_t stage)
{
    REQUIRE(g != nullptr, "void FiltersCommon::filtersGroupSetStage("
                          "FiltersCommon::FiltersGroup*, FiltersCommon::filtersGroupStage_t)");
    g->setStage(stage);
}

filtersGroupStage_t filtersGroupGetStage(FiltersGroup* g)
{
    REQUIRE(g != nullptr, "FiltersCommon::filtersGroupStage_t "
                          "FiltersCommon::filtersGroupGetStage(FiltersCommon::FiltersGroup*)");
    return g->getStage();
}

filtersErr_t filtersGroupSetType(FiltersGroup* g, filtersGroupType_t type)
{
    REQUIRE(g != nullptr, "FiltersCommon::filtersErr_t FiltersCommon::filtersGroupSetType("
                          "FiltersCommon::FiltersGroup*, FiltersCommon::filtersGroupType_t)");
    return g->setType(type);
}

filtersGroupType_t filtersGroupGetType(FiltersGroup* g)
{
    REQUIRE(g != nullptr, "FiltersCommon::filtersGroupType_t "
                          "FiltersCommon::filtersGroupGetType(FiltersCommon::FiltersGroup*)");
    return g->getType();
}

// ---------------------------------------------------------------------------------------- entries

filtersErr_t filtersGroupInsertEntry(FiltersGroup* g, FiltersEntry* e)
{
    REQUIRE(g != nullptr && e != nullptr,
            "FiltersCommon::filtersErr_t FiltersCommon::filtersGroupInsertEntry("
            "FiltersCommon::FiltersGroup*, FiltersCommon::FiltersEntry*)");
    return g->insertEntry(*e);
}

filtersErr_t filtersGroupRemoveEntry(FiltersGroup* g, filtersEntryId_t id)
{
    return g == nullptr ? FILTERS_ERR_BAD_PARAM : g->removeEntry(id);
}

void filtersGroupGetEntries(FiltersGroup* g, entriesStruct* entries)
{
    REQUIRE(g != nullptr && entries != nullptr,
            "void FiltersCommon::filtersGroupGetEntries("
            "FiltersCommon::FiltersGroup*, FiltersCommon::entriesStruct*)");

    // The caller's record is written last; until then the guard frees the listing.
    entriesStruct listing = {};
    std::unique_ptr<entriesStruct, decltype(&deleteFiltersEntriesStruct)> guard(
        &listing, deleteFiltersEntriesStruct);
    const FiltersGroup::EntryMap& held = g->getEntriesRef();
    listing.ids = new filtersEntryId_t[held.size()];
    listing.entries = new FiltersEntry*[held.size()];
    for (const auto& [id, entry] : held) {
        listing.entries[listing.count] = new FiltersEntry(entry);
        listing.ids[listing.count++] = id;
    }
    *entries = *guard.release();
}

void deleteFiltersEntriesStruct(entriesStruct* entries)
{
    REQUIRE(entries != nullptr,
            "void FiltersCommon::deleteFiltersEntriesStruct(FiltersCommon::entriesStruct*)");
    const int32_t count = entries->entries == nullptr ? 0 : entries->count;
    for (int32_t i = 0; i < count; ++i)
        delete entries->entries[i];
    delete[] entries->ids;
    delete[] entries->entries;
}

} // namespace FiltersCommon
