/**
 * The C interface from C: each of its functions is called, and its result checked.
 */
#include "c_check.h"
#include "filter_actions_c.h"
#include "filter_entries_c.h"
#include "filter_groups_c.h"
#include "filter_matches_c.h"
#include "filter_names.h"

#include <arpa/inet.h>
#include <stddef.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

_Static_assert(offsetof(entriesStruct, count) == 0, "the count is first");
_Static_assert(offsetof(entriesStruct, ids) == sizeof(void*), "then the identifiers");
_Static_assert(offsetof(entriesStruct, entries) == 2 * sizeof(void*), "then the entries");
_Static_assert(sizeof(entriesStruct) == 3 * sizeof(void*), "and nothing else");
_Static_assert(_Generic(((entriesStruct*)0)->count, int32_t : 1, default : 0), "signed, 32 bits");
_Static_assert(_Generic(((entriesStruct*)0)->ids, uint16_t* : 1, default : 0), "16 bits each");
_Static_assert(_Generic(((entriesStruct*)0)->entries, FiltersEntry** : 1, default : 0), "pointers");

/* ------------------------------------------------------------------------------------- helpers */

static int failures = 0;

void check(int holds, const char* file, int line, const char* condition)
{
    if (holds)
        return;
    ++failures;
    fprintf(stderr, "%s:%d: not true: %s\n", file, line, condition);
}

#define SAME_BYTES(a, b) (sizeof(a) == sizeof(b) && memcmp(&(a), &(b), sizeof(a)) == 0)

static const limid_t PORTS[2] = {{{1, 2, 3, 4}}, {{5, 6, 7, 8}}};
static const struct ether_addr MAC = {{2, 0, 0, 0, 0, 1}};
static const struct ether_addr MAC_MASK = {{255, 255, 255, 0, 0, 0}};
static const struct ether_addr ALL_OF_MAC = {{255, 255, 255, 255, 255, 255}};

static struct in_addr ipv4(const char* text)
{
    struct in_addr address;
    CHECK(inet_pton(AF_INET, text, &address) == 1);
    return address;
}

static struct in6_addr ipv6(const char* text)
{
    struct in6_addr address;
    CHECK(inet_pton(AF_INET6, text, &address) == 1);
    return address;
}

static void checkType(void* match, filtersMatch_t type)
{
    CHECK(match != NULL);
    CHECK(matchGetType(match) == type);
}

/** The match is of that type; it is freed. */
static void checkMatch(void* match, filtersMatch_t type)
{
    checkType(match, type);
    deleteMatch(match);
}

/** The action is of that type; it is freed. */
static void checkAction(void* action, filtersAction_t type)
{
    CHECK(action != NULL);
    CHECK(actionGetType(action) == type);
    deleteAction(action);
}

/* ------------------------------------------------------------------------------------- matches */

static void matchesWithoutGetters(void)
{
    checkMatch(newMatchAll(), MATCH_ALL);
    checkMatch(newMatchIngressPorts(PORTS, 2), MATCH_INGRESS_PORTS);
    checkMatch(newMatchIngressPorts(NULL, 0), MATCH_INGRESS_PORTS);
    checkMatch(newMatchEgressPorts(PORTS, 2), MATCH_EGRESS_PORTS);
    checkMatch(newMatchEgressPorts(NULL, 0), MATCH_EGRESS_PORTS);
    checkMatch(newMatchExternalVlanId(100), MATCH_EXTERNAL_VLAN_ID);
    checkMatch(newMatchInternalVlanId(100), MATCH_INTERNAL_VLAN_ID);
    checkMatch(newMatchVlanUntagged(), MATCH_VLAN_UNTAGGED);
    checkMatch(newMatchCpuPort(), MATCH_CPU_PORT);
}

static void checkMac(void* match, filtersMatch_t type, struct ether_addr mask)
{
    checkType(match, type);
    CHECK(SAME_BYTES(*matchMacGetMac(match), MAC));
    CHECK(SAME_BYTES(*matchMacGetMask(match), mask));
    deleteMatch(match);
}

static void macMatches(void)
{
    checkMac(newMatchDstMac(MAC), MATCH_DST_MAC, ALL_OF_MAC);
    checkMac(newMatchDstMacMask(MAC, MAC_MASK), MATCH_DST_MAC, MAC_MASK);
    checkMac(newMatchSrcMac(MAC), MATCH_SRC_MAC, ALL_OF_MAC);
    checkMac(newMatchSrcMacMask(MAC, MAC_MASK), MATCH_SRC_MAC, MAC_MASK);
}

static void checkIPv4(void* match, filtersMatch_t type, const char* mask)
{
    const struct in_addr address = ipv4("192.0.2.1");
    const struct in_addr expectedMask = ipv4(mask);
    checkType(match, type);
    CHECK(SAME_BYTES(*matchIPv4GetIPv4(match), address));
    CHECK(SAME_BYTES(*matchIPv4GetIPv4Mask(match), expectedMask));
    deleteMatch(match);
}

static void ipv4Matches(void)
{
    const struct in_addr address = ipv4("192.0.2.1");
    const struct in_addr mask = ipv4("255.255.240.0");
    checkIPv4(newMatchSrcIPv4(address), MATCH_SRC_IPV4, "255.255.255.255");
    checkIPv4(newMatchSrcIPv4Mask(address, mask), MATCH_SRC_IPV4, "255.255.240.0");
    checkIPv4(newMatchDstIPv4(address), MATCH_DST_IPV4, "255.255.255.255");
    checkIPv4(newMatchDstIPv4Mask(address, mask), MATCH_DST_IPV4, "255.255.240.0");
}

static void checkIPv6(void* match, filtersMatch_t type, const char* mask)
{
    const struct in6_addr address = ipv6("2001:db8::1");
    const struct in6_addr expectedMask = ipv6(mask);
    checkType(match, type);
    CHECK(SAME_BYTES(*matchIPv6GetIPv6(match), address));
    CHECK(SAME_BYTES(*matchIPv6GetIPv6Mask(match), expectedMask));
    deleteMatch(match);
}

static void ipv6Matches(void)
{
    const char* const all = "ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff";
    const struct in6_addr address = ipv6("2001:db8::1");
    checkIPv6(newMatchSrcIPv6(address), MATCH_SRC_IPV6, all);
    checkIPv6(newMatchDstIPv6(address), MATCH_DST_IPV6, all);
    checkIPv6(newMatchDstIPv6Mask(address, ipv6("ffff::")), MATCH_DST_IPV6, "ffff::");
}

static void checkL4Port(void* match, filtersMatch_t type, l4port_t mask)
{
    checkType(match, type);
    CHECK(matchGetL4Port(match) == 0x1234);
    CHECK(matchGetL4PortMask(match) == mask);
    deleteMatch(match);
}

static void l4PortMatches(void)
{
    checkL4Port(newMatchDstL4Port(0x1234), MATCH_DST_L4_PORT, 0xFFFF);
    checkL4Port(newMatchDstL4PortMask(0x1234, 0x0FF0), MATCH_DST_L4_PORT, 0x0FF0);
    checkL4Port(newMatchSrcL4Port(0x1234), MATCH_SRC_L4_PORT, 0xFFFF);
    checkL4Port(newMatchSrcL4PortMask(0x1234, 0x0FF0), MATCH_SRC_L4_PORT, 0x0FF0);
}

static void checkLimId(void* match, filtersMatch_t type)
{
    const limid_t port = matchGetLimId(match);
    CHECK(SAME_BYTES(port, PORTS[1]));
    checkMatch(match, type);
}

static void limIdMatches(void)
{
    checkLimId(newMatchVirtualPort(PORTS[1]), MATCH_VIRTUAL_PORT);
    checkLimId(newMatchSrcPort(PORTS[1]), MATCH_SRC_PORT);
}

/** Makes a match with a value, and reads the value back. */
#define CHECK_VALUE(type, create, get, value)                                                      \
    do {                                                                                           \
        void* match = create;                                                                      \
        checkType(match, type);                                                                    \
        CHECK(get(match) == (value));                                                              \
        deleteMatch(match);                                                                        \
    } while (0)

static void singleValueMatches(void)
{
    CHECK_VALUE(MATCH_TPID, newMatchTPID(0x88A8), matchGetTPID, 0x88A8);
    CHECK_VALUE(MATCH_L2_SRC_ENTRY_TYPE, newMatchL2SrcEntryType((l2SrcEntryType_t)3),
                matchGetL2SrcEntryType, (l2SrcEntryType_t)3);
    CHECK_VALUE(MATCH_PCP, newMatchPcp(9), matchPcpGet, 1);
    CHECK_VALUE(MATCH_INTERNAL_PCP, newMatchInternalPcp(14), matchInternalPcpGet, 6);
    CHECK_VALUE(MATCH_IP_PROTOCOL, newMatchIpProtocol(255), matchIpProtocolGetIpProt, 255);
    CHECK_VALUE(MATCH_PACKET_RES, newMatchPacketRes((en_Resolution)4), matchPacketResGet,
                (en_Resolution)4);
    CHECK_VALUE(MATCH_MPLS_TERM, newMatchMplsTerm(true), matchMplsTermGet, true);
    CHECK_VALUE(MATCH_MPLS_TERM, newMatchMplsTerm(false), matchMplsTermGet, false);
    CHECK_VALUE(MATCH_TOS, newMatchDSCP(10), matchDSCPGet, 10);
    CHECK_VALUE(MATCH_TTL, newMatchTTL(254), matchTTLGet, 254);
    CHECK_VALUE(MATCH_INGRESS_STP_STATE, newMatchIngressStpState((en_StpState)5),
                matchIngressStpStateGet, (en_StpState)5);
    CHECK_VALUE(MATCH_VRF_ID, newMatchVrfId(65535), matchVrfIdGet, 65535);
    CHECK_VALUE(MATCH_DROP, newMatchDrop(true), matchDropGet, true);
    CHECK_VALUE(MATCH_DROP, newMatchDrop(false), matchDropGet, false);

    const vlan_info_t info = {0x89ABCDEF};
    void* match = newMatchVlanInfo(info);
    CHECK(matchVlanInfoGet(match).svcVlanType == 0x89ABCDEF);
    checkMatch(match, MATCH_VLAN_INFO);
}

/* ------------------------------------------------------------------------------------- actions */

static void actionsWithoutGetters(void)
{
    checkAction(newActionPermit(), ACTION_PERMIT);
    checkAction(newActionDeny(), ACTION_DENY);
    checkAction(newActionCopyToCpu(), ACTION_COPY_TO_CPU);
    checkAction(newActionBlockEgressPorts(PORTS, 2), ACTION_BLOCK_EGRESS_PORTS);
    checkAction(newActionBlockEgressPorts(NULL, 0), ACTION_BLOCK_EGRESS_PORTS);
    checkAction(newActionMapToCpuCosQueue(3), ACTION_MAP_TO_CPU_COS_QUEUE);
    checkAction(newReplaceDstMac(&MAC), ACTION_REPLACE_DST_MAC);
    checkAction(newActionRedirect(&PORTS[0]), ACTION_REDIRECT);
    checkAction(newActionRedirectCancel(), ACTION_REDIRECT_CANCEL);
    checkAction(newReplaceSrcMac(&MAC), ACTION_REPLACE_SRC_MAC);
}

/** Makes an action with a parameter, and reads the parameter back. */
#define CHECK_PARAMETER(type, create, get, value)                                                  \
    do {                                                                                           \
        void* action = create;                                                                     \
        CHECK(get(action) == (value));                                                             \
        checkAction(action, type);                                                                 \
    } while (0)

static void actionsWithGetters(void)
{
    CHECK_PARAMETER(ACTION_COPY_TO_CPU_CANCEL, newActionCopyToCpuCancel(),
                    actionCopyToCpuCancelGetTypeOfCancel, COPY_TO_CPU_CANCEL);
    CHECK_PARAMETER(ACTION_COPY_TO_CPU_CANCEL, newActionSwitchToCpuCancel(),
                    actionCopyToCpuCancelGetTypeOfCancel, SWITCH_TO_CPU_CANCEL);
    CHECK_PARAMETER(ACTION_SET_PCP, newActionSetPcp(200), actionSetPcpGetPcp, 200);
    CHECK_PARAMETER(ACTION_SET_PCP_AND_QUEUE, newActionSetPcpAndQueue(201),
                    actionSetPcpAndQueueGetPcpAndQueue, 201);
    CHECK_PARAMETER(ACTION_SET_DSCP, newActionSetDSCP(202), actionSetDSCPGetDSCP, 202);
    CHECK_PARAMETER(ACTION_MAP_TO_COS_QUEUE, newActionMapToCosQueue(203),
                    actionMapToCosQueueGetCosQueue, 203);
    CHECK_PARAMETER(ACTION_L3_SWITCH, newActionL3Switch(0x89ABCDEF),
                    actionL3SwitchGetL3DestinationId, 0x89ABCDEF);
}

/* ------------------------------------------------------------------------------------- entries */

static void matchesOfAnEntry(void)
{
    FiltersEntry* entry = newFiltersEntry(7);
    void* stored = newMatchPcp(5);
    void* read = newMatchPcp(6);
    CHECK(filtersEntryGetMatch(entry, read) == FILTERS_ERR_NOT_FOUND);
    CHECK(matchPcpGet(read) == 6);
    CHECK(filtersEntrySetMatch(entry, stored) == FILTERS_OK);
    CHECK(filtersEntryGetMatch(entry, read) == FILTERS_OK);
    CHECK(matchPcpGet(read) == 5);
    CHECK(filtersEntryDeleteMatch(entry, MATCH_PCP) == FILTERS_OK);
    CHECK(filtersEntryDeleteMatch(entry, MATCH_PCP) == FILTERS_ERR_NOT_FOUND);

    CHECK(filtersEntrySetMatch(entry, NULL) == FILTERS_ERR_BAD_PARAM);
    CHECK(filtersEntrySetMatch(NULL, stored) == FILTERS_ERR_BAD_PARAM);
    CHECK(filtersEntryGetMatch(entry, NULL) == FILTERS_ERR_BAD_PARAM);
    CHECK(filtersEntryGetMatch(NULL, read) == FILTERS_ERR_BAD_PARAM);
    deleteMatch(read);
    deleteMatch(stored);
    deleteFiltersEntry(entry);
}

static void addressesOfAnEntry(void)
{
    FiltersEntry* entry = newFiltersEntry(7);
    void* v4 = newMatchDstIPv4(ipv4("192.0.2.1"));
    void* v6 = newMatchDstIPv6(ipv6("2001:db8::1"));
    CHECK(filtersEntrySetMatch(entry, v4) == FILTERS_OK);
    CHECK(filtersEntrySetMatch(entry, v6) == FILTERS_ERR_INVALID);
    CHECK(filtersEntryGetMatch(entry, v6) == FILTERS_ERR_NOT_FOUND);
    deleteMatch(v6);
    deleteMatch(v4);
    deleteFiltersEntry(entry);
}

static void actionsOfAnEntry(void)
{
    FiltersEntry* entry = newFiltersEntry(7);
    void* stored = newActionSetPcp(5);
    void* read = newActionSetPcp(6);
    CHECK(filtersEntryGetAction(entry, read) == FILTERS_ERR_NOT_FOUND);
    CHECK(actionSetPcpGetPcp(read) == 6);
    CHECK(filtersEntrySetAction(entry, stored) == FILTERS_OK);
    CHECK(filtersEntryGetAction(entry, read) == FILTERS_OK);
    CHECK(actionSetPcpGetPcp(read) == 5);
    CHECK(filtersEntryDeleteAction(entry, ACTION_SET_PCP) == FILTERS_OK);
    CHECK(filtersEntryDeleteAction(entry, ACTION_SET_PCP) == FILTERS_ERR_NOT_FOUND);

    CHECK(filtersEntrySetAction(entry, NULL) == FILTERS_ERR_BAD_PARAM);
    CHECK(filtersEntrySetAction(NULL, stored) == FILTERS_ERR_BAD_PARAM);
    CHECK(filtersEntryGetAction(entry, NULL) == FILTERS_ERR_BAD_PARAM);
    CHECK(filtersEntryGetAction(NULL, read) == FILTERS_ERR_BAD_PARAM);
    deleteAction(read);
    deleteAction(stored);
    deleteFiltersEntry(entry);
}

static void copiesOfAnEntry(void)
{
    FiltersEntry* entry = newFiltersEntry(65535);
    CHECK(filtersEntryGetPriority(entry) == 0);
    filtersEntrySetPriority(entry, 0xFFFFFFFF);
    void* dscp = newMatchDSCP(10);
    CHECK(filtersEntrySetMatch(entry, dscp) == FILTERS_OK);
    FiltersEntry* copy = copyFiltersEntry(entry);
    deleteFiltersEntry(entry);
    deleteMatch(dscp);

    void* read = newMatchDSCP(0);
    CHECK(filtersEntryGetId(copy) == 65535);
    CHECK(filtersEntryGetPriority(copy) == 0xFFFFFFFF);
    CHECK(filtersEntryGetMatch(copy, read) == FILTERS_OK);
    CHECK(matchDSCPGet(read) == 10);
    deleteMatch(read);
    deleteFiltersEntry(copy);
}

/* -------------------------------------------------------------------------------------- groups */

static void propertiesOfAGroup(void)
{
    FiltersGroup* group = newFiltersGroup(65535);
    CHECK(filtersGroupGetId(group) == 65535);
    CHECK(filtersGroupGetPriority(group) == 0);
    CHECK(filtersGroupGetStage(group) == GROUP_STAGE_0);
    CHECK(filtersGroupGetType(group) == GROUP_TYPE_0);

    filtersGroupSetPriority(group, 65535);
    CHECK(filtersGroupGetPriority(group) == 65535);
    CHECK(filtersGroupSetType(group, GROUP_TYPE_1) == FILTERS_OK);
    CHECK(filtersGroupGetType(group) == GROUP_TYPE_1);
    filtersGroupSetStage(group, GROUP_STAGE_2);
    CHECK(filtersGroupGetStage(group) == GROUP_STAGE_2);
    filtersGroupSetStage(group, GROUP_STAGE_3);
    CHECK(filtersGroupGetStage(group) == GROUP_STAGE_2);
    CHECK(filtersGroupSetType(group, GROUP_TYPE_5) == FILTERS_ERR_TYPE_NOT_ALLOWED);
    CHECK(filtersGroupGetType(group) == GROUP_TYPE_1);
    deleteFiltersGroup(group);
}

static void entriesOfAGroup(void)
{
    static const filtersEntryId_t INSERTED[3] = {9, 2, 5};
    static const filtersEntryId_t ASCENDING[3] = {2, 5, 9};
    FiltersGroup* group = newFiltersGroup(1);
    CHECK(filtersGroupRemoveEntry(NULL, 1) == FILTERS_ERR_BAD_PARAM);
    CHECK(filtersGroupRemoveEntry(group, 1) == FILTERS_ERR_NOT_FOUND);
    for (int i = 0; i < 3; ++i) {
        FiltersEntry* entry = newFiltersEntry(INSERTED[i]);
        filtersEntrySetPriority(entry, 1000u + INSERTED[i]);
        CHECK(filtersGroupInsertEntry(group, entry) == FILTERS_OK);
        deleteFiltersEntry(entry);
    }

    entriesStruct listing = {-1, NULL, NULL};
    filtersGroupGetEntries(group, &listing);
    CHECK(filtersGroupRemoveEntry(group, 5) == FILTERS_OK);
    deleteFiltersGroup(group);
    CHECK(listing.count == 3);
    for (int32_t i = 0; i < listing.count; ++i) {
        CHECK(listing.ids[i] == ASCENDING[i]);
        CHECK(filtersEntryGetId(listing.entries[i]) == ASCENDING[i]);
        CHECK(filtersEntryGetPriority(listing.entries[i]) == 1000u + ASCENDING[i]);
    }
    deleteFiltersEntriesStruct(&listing);
}

static void entriesOfAnEmptyGroup(void)
{
    FiltersGroup* group = newFiltersGroup(1);
    FiltersEntry* entry = newFiltersEntry(1);
    void* all = newMatchAll();
    CHECK(filtersEntrySetMatch(entry, all) == FILTERS_OK);
    CHECK(filtersGroupInsertEntry(group, entry) == FILTERS_ERR_MATCH_NOT_ALLOWED);
    deleteMatch(all);
    deleteFiltersEntry(entry);

    entriesStruct listing = {-1, NULL, NULL};
    filtersGroupGetEntries(group, &listing);
    CHECK(listing.count == 0);
    CHECK(listing.ids != NULL);
    CHECK(listing.entries != NULL);
    deleteFiltersEntriesStruct(&listing);
    deleteFiltersGroup(group);
}

/* --------------------------------------------------------------------------------------- names */

static void namesOfCodes(void)
{
    CHECK(strcmp(filtersErrName(FILTERS_ERR_MATCH_NOT_ALLOWED), "FILTERS_ERR_MATCH_NOT_ALLOWED") ==
          0);
    CHECK(strcmp(filtersMatchName(MATCH_SRC_IPV4), "MATCH_SRC_IPV4") == 0);
    CHECK(strcmp(filtersMatchName((filtersMatch_t)0xFFFFFFFF), "unknown") == 0);
    CHECK(strcmp(filtersActionName(ACTION_BLACK_HOLE), "ACTION_BLACK_HOLE") == 0);
    CHECK(strcmp(filtersGroupStageName(GROUP_STAGE_3), "GROUP_STAGE_3") == 0);
    CHECK(strcmp(filtersGroupTypeName(GROUP_TYPE_9), "GROUP_TYPE_9") == 0);
    CHECK(strcmp(filtersPolicerStageName(2), "STAGE_NONE") == 0);
    CHECK(strcmp(filtersRefusalReasonName(REFUSAL_UNKNOWN_TYPE), "REFUSAL_UNKNOWN_TYPE") == 0);
}

int main(void)
{
    matchesWithoutGetters();
    macMatches();
    ipv4Matches();
    ipv6Matches();
    l4PortMatches();
    limIdMatches();
    singleValueMatches();
    actionsWithoutGetters();
    actionsWithGetters();
    matchesOfAnEntry();
    addressesOfAnEntry();
    actionsOfAnEntry();
    copiesOfAnEntry();
    propertiesOfAGroup();
    entriesOfAGroup();
    entriesOfAnEmptyGroup();
    namesOfCodes();
    checkRefusals();
    return failures == 0 ? 0 : 1;
}
