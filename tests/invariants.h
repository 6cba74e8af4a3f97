/**
 * What always holds for entries and groups, whatever was done to them and whatever failed.
 */
#ifndef FILTER_COMMON_TESTS_INVARIANTS_H
#define FILTER_COMMON_TESTS_INVARIANTS_H

#include "samples.h"

#include "filter_groups.h"

#include <gtest/gtest.h>

#include <typeinfo>

namespace FiltersCommon::test {

/** Objects without invariants of their own. */
template <class T>
void expectInvariants(const T&)
{}

/** There are no null pointers, and each object is of its kind's class and under its kind. */
template <class Classes, class Map>
void expectByKind(const Map& map)
{
    for (const auto& [key, object] : map) {
        ASSERT_NE(object, nullptr) << key;
        const auto& reference = *object;
        EXPECT_EQ(reference.getType(), key);
        bool known = false;
        Classes::forEach([&, kind = static_cast<int>(key)](auto row) {
            known = known || (row.CODE == kind &&
                              typeid(reference) == typeid(typename decltype(row)::Class));
        });
        EXPECT_TRUE(known) << typeid(reference).name() << " under " << key;
    }
}

inline void expectInvariants(const FiltersEntry& entry)
{
    const auto& matches = entry.getMatchesRef();
    expectByKind<MatchClasses>(matches);
    expectByKind<ActionClasses>(entry.getActionsRef());
    const bool isIPv4 = matches.count(MATCH_SRC_IPV4) + matches.count(MATCH_DST_IPV4) != 0;
    const bool isIPv6 = matches.count(MATCH_SRC_IPV6) + matches.count(MATCH_DST_IPV6) != 0;
    EXPECT_FALSE(isIPv4 && isIPv6);
}

inline void expectInvariants(const FiltersGroup& group)
{
    const filtersGroupStage_t stage = group.getStage();
    for (const auto& [id, entry] : group.getEntriesRef()) {
        SCOPED_TRACE(id);
        EXPECT_EQ(entry.getId(), id);
        expectInvariants(entry);
        EXPECT_EQ(group.groupMatchValidation(entry, group.getType()), FILTERS_OK);
        EXPECT_EQ(group.groupActionValidation(entry, stage), FILTERS_OK);
        EXPECT_EQ(group.groupPolicerValidation(entry.getPolicer(), stage), FILTERS_OK);
    }
}

} // namespace FiltersCommon::test

#endif // FILTER_COMMON_TESTS_INVARIANTS_H
