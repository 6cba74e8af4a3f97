/**
 * The groups that the tests of JSON write and read.
 */
#ifndef FILTER_COMMON_TESTS_GROUP_JSON_SUPPORT_H
#define FILTER_COMMON_TESTS_GROUP_JSON_SUPPORT_H

#include "named_entries.h"

#include <gtest/gtest.h>

#include <vector>

namespace FiltersCommon::test {

/** A group of each sample, and one with an entry for all that it admits. */
inline std::vector<FiltersGroup> sampleGroups()
{
    std::vector<FiltersGroup> groups;
    for (const Named<FiltersGroup>& sample : groupSamples())
        groups.push_back(*sample.object);
    for (const auto& [type, kinds] : FiltersGroup::TypeDescription_) {
        FiltersGroup& group = groups.emplace_back(filtersGroupId_t{0});
        group.setType(type);
        filtersEntryId_t id = 0;
        for (const auto& samples : {entriesOfEachKind(), entrySamples()})
            for (const Named<FiltersEntry>& sample : samples) {
                FiltersEntry entry(*sample.object);
                entry.setId(id++);
                group.insertEntry(entry);
            }
        EXPECT_FALSE(group.getEntriesRef().empty());
    }
    return groups;
}

} // namespace FiltersCommon::test

#endif // FILTER_COMMON_TESTS_GROUP_JSON_SUPPORT_H
