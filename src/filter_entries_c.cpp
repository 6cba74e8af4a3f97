#include "filter_entries_c.h"

#include "contract.h"
#include "filter_entries.h"
#include "filter_refusals.h"
#include "handle_classes.h"

/** Callers rely on the line numbers and signatures, so neither is taken from this file. */
#define REQUIRE_ENTRY(line, function)                                                              \
    FILTERS_COMMON_REQUIRE(e != nullptr, "filter_entries_c.cpp", line, function)

namespace FiltersCommon {

// ------------------------------------------------------------------------------------- life cycle

FiltersEntry* newFiltersEntry(filtersEntryId_t id) { return new FiltersEntry(id); }

FiltersEntry* copyFiltersEntry(FiltersEntry* e)
{
    REQUIRE_ENTRY(32, "FiltersCommon::FiltersEntry* "
                      "FiltersCommon::copyFiltersEntry(FiltersCommon::FiltersEntry*)");
    return new FiltersEntry(*e);
}

void deleteFiltersEntry(FiltersEntry* e)
{
    REQUIRE_ENTRY(40, "void FiltersCommon::deleteFiltersEntry(FiltersCommon::FiltersEntry*)");
    delete e;
}

// -------------------------------------------------------------------------------------- accessors

filtersEntryId_t filtersEntryGetId(FiltersEntry* e)
{
    REQUIRE_ENTRY(48, "FiltersCommon::filtersEntryId_t "
                      "FiltersCommon::filtersEntryGetId(FiltersCommon::FiltersEntry*)");
    return e->getId();
}

void filtersEntrySetPriority(FiltersEntry* e, filtersEntryPriority_t priority)
{
    REQUIRE_ENTRY(56, "void FiltersCommon::filtersEntrySetPriority(FiltersCommon::FiltersEntry*, "
                      "FiltersCommon::filtersEntryPriority_t)");
    e->setPriority(priority);
}

filtersEntryPriority_t filtersEntryGetPriority(FiltersEntry* e)
{
    REQUIRE_ENTRY(64, "FiltersCommon::filtersEntryPriority_t "
                      "FiltersCommon::filtersEntryGetPriority(FiltersCommon::FiltersEntry*)");
    return e->getPriority();
}

// ---------------------------------------------------------------------------- matches and actions

namespace {

constexpr auto CODE_OF = [](filtersRefusalReason_t reason) {
    return FiltersRefusal(reason).code();
};

} // namespace

filtersErr_t filtersEntrySetMatch(FiltersEntry* e, Match* m)
{
    if (e == nullptr || m == nullptr)
        return FILTERS_ERR_BAD_PARAM;
    return withClass<MatchKinds>(*m, CODE_OF,
                                 [e](const auto& match) { return e->setMatch(match); });
}

filtersErr_t filtersEntryGetMatch(FiltersEntry* e, Match* m)
{
    if (e == nullptr || m == nullptr)
        return FILTERS_ERR_BAD_PARAM;
    return withClass<MatchKinds>(*m, CODE_OF, [e](auto& match) { return e->getMatch(match); });
}

filtersErr_t filtersEntryDeleteMatch(FiltersEntry* e, filtersMatch_t kind)
{
    REQUIRE_ENTRY(300, "FiltersCommon::filtersErr_t FiltersCommon::filtersEntryDeleteMatch("
                       "FiltersCommon::FiltersEntry*, FiltersCommon::filtersMatch_t)");
    return e->deleteMatch(kind);
}

filtersErr_t filtersEntrySetAction(FiltersEntry* e, Action* a)
{
    if (e == nullptr || a == nullptr)
        return FILTERS_ERR_BAD_PARAM;
    return withClass<ActionKinds>(*a, CODE_OF,
                                  [e](const auto& action) { return e->setAction(action); });
}

filtersErr_t filtersEntryGetAction(FiltersEntry* e, Action* a)
{
    if (e == nullptr || a == nullptr)
        return FILTERS_ERR_BAD_PARAM;
    return withClass<ActionKinds>(*a, CODE_OF, [e](auto& action) { return e->getAction(action); });
}

filtersErr_t filtersEntryDeleteAction(FiltersEntry* e, filtersAction_t kind)
{
    REQUIRE_ENTRY(442, "FiltersCommon::filtersErr_t FiltersCommon::filtersEntryDeleteAction("
                       "FiltersCommon::FiltersEntry*, FiltersCommon::filtersAction_t)");
    return e->deleteAction(kind);
}

} // namespace FiltersCommon
