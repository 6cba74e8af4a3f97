/**
 * Entries with something of everything, and groups of them.
 */
#ifndef FILTER_COMMON_TESTS_FULL_ENTRIES_H
#define FILTER_COMMON_TESTS_FULL_ENTRIES_H

#include "support.h"

#include <gtest/gtest.h>

#include <initializer_list>

namespace FiltersCommon::test {

inline FiltersEntry fullEntry(filtersEntryId_t id)
{
    constexpr limid_t PORT = limId(0, 3, 0, 7), OTHER_PORT = limId(1, 0, 0, 2);
    FiltersEntry entry(id);
    entry.setPolicer(policerAt(policer::STAGE_NONE));
    entry.setMatch(MatchIngressPorts({PORT, OTHER_PORT}));
    entry.setMatch(MatchExternalVlanId(100));
    entry.setAction(ActionBlockEgressPorts({OTHER_PORT}));
    entry.setAction(ActionDeny());
    return entry;
}

inline FiltersGroup groupOf(std::initializer_list<filtersEntryId_t> ids)
{
    FiltersGroup group(1);
    group.setType(GROUP_TYPE_9);
    for (const filtersEntryId_t id : ids)
        EXPECT_EQ(group.insertEntry(fullEntry(id)), FILTERS_OK);
    return group;
}

} // namespace FiltersCommon::test

#endif // FILTER_COMMON_TESTS_FULL_ENTRIES_H
