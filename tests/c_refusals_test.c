/**
 * Refusals from C, a part of the program that calls each function of the C interface.
 */
#include "c_check.h"
#include "filter_refusals_c.h"

#include <stdbool.h>
#include <string.h>

/** The only reason is the one given, with its code and a sentence; the list is freed. */
static void checkList(FiltersRefusals* list, filtersRefusalReason_t reason, filtersErr_t code)
{
    CHECK(filtersRefusalsGetCount(list) == 1);
    CHECK(filtersRefusalsGetReason(list, 0) == reason);
    CHECK(filtersRefusalsGetCode(list, 0) == code);
    CHECK(strlen(filtersRefusalsGetSentence(list, 0)) > 20);
    deleteFiltersRefusals(list);
}

static void refusalsOfAGroup(void)
{
    FiltersGroup* group = newFiltersGroup(1);
    FiltersEntry* entry = newFiltersEntry(12);
    void* all = newMatchAll();
    CHECK(filtersEntrySetMatch(entry, all) == FILTERS_OK);
    FiltersRefusals* list = filtersGroupInsertEntryRefusals(group, entry);
    CHECK(filtersRefusalsGetCount(list) == 1);
    CHECK(strcmp(filtersRefusalsGetSentence(list, 0),
                 "entry 12: match kind MATCH_ALL is not admitted in a group of type GROUP_TYPE_0; "
                 "none is admitted") == 0);

    filtersEntryId_t id = 0;
    filtersMatch_t match = MATCH_TTL;
    filtersAction_t action = ACTION_DENY;
    uint32_t policerStage = 77;
    filtersGroupStage_t stage = GROUP_STAGE_3;
    filtersGroupType_t type = GROUP_TYPE_3;
    CHECK(filtersRefusalsGetEntry(list, 0, &id) && id == 12);
    CHECK(filtersRefusalsGetMatch(list, 0, &match) && match == MATCH_ALL);
    CHECK(!filtersRefusalsGetAction(list, 0, &action) && action == ACTION_DENY);
    CHECK(!filtersRefusalsGetPolicerStage(list, 0, &policerStage) && policerStage == 77);
    CHECK(filtersRefusalsGetStage(list, 0, &stage) && stage == GROUP_STAGE_0);
    CHECK(filtersRefusalsGetType(list, 0, &type) && type == GROUP_TYPE_0);
    CHECK(filtersRefusalsGetAdmittedMatches(list, 0) == 0);
    CHECK(filtersRefusalsGetAdmittedActions(list, 0) == 0);
    CHECK(filtersRefusalsGetAdmittedPolicerStages(list, 0) == 0);
    CHECK(filtersRefusalsGetAdmittedTypes(list, 0) == 0);
    CHECK(filtersRefusalsGetExcludingMatches(list, 0) == 0);
    deleteFiltersRefusals(list);
    deleteMatch(all);
    deleteFiltersEntry(entry);

    list = filtersGroupSetStageRefusals(group, (filtersGroupStage_t)4);
    CHECK(filtersRefusalsGetAdmittedStages(list, 0) == 0xF);
    checkList(list, REFUSAL_UNKNOWN_STAGE, FILTERS_ERR_UNKNOWN_STAGE);
    filtersGroupSetStage(group, GROUP_STAGE_3);
    checkList(filtersGroupSetTypeRefusals(group, GROUP_TYPE_1), REFUSAL_TYPE_NOT_AT_STAGE,
              FILTERS_ERR_TYPE_NOT_ALLOWED);
    deleteFiltersGroup(group);
}

static void refusalsOfAnEntry(void)
{
    const struct in_addr someIPv4 = {0};
    const struct in6_addr someIPv6 = {0};
    FiltersEntry* entry = newFiltersEntry(7);
    void* v4 = newMatchDstIPv4(someIPv4);
    void* v6 = newMatchDstIPv6(someIPv6);
    void* deny = newActionDeny();
    CHECK(filtersEntrySetMatch(entry, v4) == FILTERS_OK);
    checkList(filtersEntrySetMatchRefusals(entry, v6), REFUSAL_IPV4_WITH_IPV6, FILTERS_ERR_INVALID);
    FiltersRefusals* none = filtersEntrySetActionRefusals(entry, deny);
    CHECK(filtersRefusalsGetCount(none) == 0);
    deleteFiltersRefusals(none);
    deleteAction(deny);
    deleteMatch(v6);
    deleteMatch(v4);
    deleteFiltersEntry(entry);
}

static void refusalsOfBytes(void)
{
    const unsigned char bytes[] = {0x08, 0x81, 0x80, 0x04, 0x10, 0, 0x18, 0, 0xFF};
    FiltersRefusals* list = NULL;
    FiltersGroup* group = newFiltersGroupFromBytes(bytes, sizeof bytes, &list);
    CHECK(filtersGroupGetId(group) == 1);
    deleteFiltersGroup(group);
    CHECK(filtersRefusalsGetCount(list) == 2);
    CHECK(filtersRefusalsGetReason(list, 0) == REFUSAL_NOT_PARSED);
    CHECK(filtersRefusalsGetCode(list, 0) == FILTERS_ERR_INVALID);

    uint64_t offset = 0;
    uint64_t was = 1;
    uint64_t became = 2;
    uint32_t field = 3;
    filtersPart_t part = PART_COUNTER;
    CHECK(filtersRefusalsGetOffset(list, 0, &offset) && offset == 8);
    CHECK(!filtersRefusalsGetPart(list, 0, &part) && part == PART_COUNTER);
    CHECK(!filtersRefusalsGetField(list, 0, &field) && field == 3);
    CHECK(!filtersRefusalsGetWas(list, 0, &was) && was == 1);
    CHECK(!filtersRefusalsGetBecame(list, 0, &became) && became == 2);
    CHECK(filtersRefusalsGetPart(list, 1, &part) && part == PART_GROUP);
    CHECK(filtersRefusalsGetField(list, 1, &field) && field == 1);
    CHECK(filtersRefusalsGetWas(list, 1, &was) && was == 65537);
    CHECK(filtersRefusalsGetBecame(list, 1, &became) && became == 1);
    CHECK(strcmp(filtersPartName(part), "PART_GROUP") == 0);
    deleteFiltersRefusals(list);

    list = filtersGroupReadRefusals(bytes, sizeof bytes);
    CHECK(filtersRefusalsGetCount(list) == 2);
    deleteFiltersRefusals(list);
    list = filtersEntryReadRefusals(NULL, 0);
    CHECK(filtersRefusalsGetCount(list) == 4);
    deleteFiltersRefusals(list);
}

void checkRefusals(void)
{
    refusalsOfBytes();
    refusalsOfAGroup();
    refusalsOfAnEntry();
}
