/**
 * A typical rule from C: built, put into a group, and listed. Policers, counters, bytes and text
 * dumps are available through the C++ classes only.
 */
#include "filter_actions_c.h"
#include "filter_entries_c.h"
#include "filter_groups_c.h"
#include "filter_matches_c.h"

#include <arpa/inet.h>
#include <stdio.h>
#include <stdlib.h>

static struct in_addr ipv4(const char* text)
{
    struct in_addr address;
    if (inet_pton(AF_INET, text, &address) != 1) {
        fprintf(stderr, "not an IPv4 address: %s\n", text);
        exit(EXIT_FAILURE);
    }
    return address;
}

static void answered(const char* step, filtersErr_t result)
{
    if (result == FILTERS_OK)
        printf("   %s: done\n", step);
    else
        printf("   %s: refused with %d\n", step, (int)result);
}

int main(void)
{
    puts("1. A rule: deny what goes to 192.0.2.0/24.");
    FiltersEntry* entry = newFiltersEntry(7);
    filtersEntrySetPriority(entry, 100);
    void* destination = newMatchDstIPv4Mask(ipv4("192.0.2.0"), ipv4("255.255.255.0"));
    answered("set the IPv4 destination", filtersEntrySetMatch(entry, destination));
    void* deny = newActionDeny();
    answered("set the action deny", filtersEntrySetAction(entry, deny));
    /* The rule stores copies, and refuses contradictions. */
    void* ipv6 = newMatchDstIPv6(in6addr_loopback);
    answered("set an IPv6 destination too", filtersEntrySetMatch(entry, ipv6));
    deleteMatch(ipv6);
    deleteAction(deny);
    deleteMatch(destination);

    puts("2. A group, whose type and stage decide which rules it holds.");
    FiltersGroup* group = newFiltersGroup(1);
    answered("insert into a new group, of type 0", filtersGroupInsertEntry(group, entry));
    answered("set type 3, five-tuple rules", filtersGroupSetType(group, GROUP_TYPE_3));
    answered("insert again", filtersGroupInsertEntry(group, entry));
    filtersGroupSetStage(group, GROUP_STAGE_3);
    printf("   set stage 3, which has no type 3: the stage is still %d\n",
           (int)filtersGroupGetStage(group));
    deleteFiltersEntry(entry);

    puts("3. What it holds.");
    entriesStruct held;
    filtersGroupGetEntries(group, &held);
    for (int32_t i = 0; i < held.count; ++i) {
        char address[INET_ADDRSTRLEN], mask[INET_ADDRSTRLEN];
        void* match = newMatchDstIPv4(ipv4("0.0.0.0"));
        if (filtersEntryGetMatch(held.entries[i], match) == FILTERS_OK)
            printf("   entry %u, priority %u, to %s under %s\n", (unsigned)held.ids[i],
                   (unsigned)filtersEntryGetPriority(held.entries[i]),
                   inet_ntop(AF_INET, matchIPv4GetIPv4(match), address, sizeof address),
                   inet_ntop(AF_INET, matchIPv4GetIPv4Mask(match), mask, sizeof mask));
        deleteMatch(match);
    }
    deleteFiltersEntriesStruct(&held);
    deleteFiltersGroup(group);
    return EXIT_SUCCESS;
}
