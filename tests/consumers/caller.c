/**
 * A C caller outside the tree.
 */
#include <filter_actions_c.h>
#include <filter_entries_c.h>
#include <filter_groups_c.h>
#include <filter_matches_c.h>

#include <limidmgr_decode.h>

#include <stdio.h>
#include <string.h>

int main(void)
{
    limid_t port = {{0, 1, 0, 2}};
    char name[16];
    FiltersEntry* entry = newFiltersEntry(7);
    FiltersGroup* group = newFiltersGroup(1);
    void* match = newMatchSrcPort(port);
    filtersErr_t set = filtersEntrySetMatch(entry, match);
    filtersErr_t inserted = filtersGroupInsertEntry(group, entry);
    deleteMatch(match);
    deleteFiltersGroup(group);
    deleteFiltersEntry(entry);

    if (set != FILTERS_OK || inserted != FILTERS_ERR_MATCH_NOT_ALLOWED) {
        fprintf(stderr, "caller.c: answers %d and %d\n", (int)set, (int)inserted);
        return 1;
    }
    if (limid_to_intfname(port, name, sizeof name) != 0 || strcmp(name, "eth1/2") != 0) {
        fprintf(stderr, "caller.c: the port is called %s\n", name);
        return 1;
    }
    puts(name);
    return 0;
}
