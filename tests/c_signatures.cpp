/**
 * The exact type of every function of the C interface, and what is deliberately not offered. There
 * is nothing to run: this file compiles or it does not.
 */
#include "filter_actions_c.h"
#include "filter_entries_c.h"
#include "filter_groups_c.h"
#include "filter_matches_c.h"
#include "filter_names.h"
#include "filter_refusals_c.h"

#include <cstdint>
#include <type_traits>

/** What a name stands for where the interface declares none. */
struct NotOffered {};

#define NOT_OFFERED(name) extern const NotOffered name;

NOT_OFFERED(newMatchToS)
NOT_OFFERED(newMatchForwardingType)
NOT_OFFERED(newMatchDestinationCpu)
NOT_OFFERED(newMatchSrcIPv6Mask)
NOT_OFFERED(newActionSetInnerPcp)
NOT_OFFERED(newActionBlackHole)
NOT_OFFERED(filtersEntrySetId)
NOT_OFFERED(filtersEntrySetPolicer)
NOT_OFFERED(filtersEntryGetPolicer)
NOT_OFFERED(filtersEntrySetCounter)
NOT_OFFERED(filtersEntryGetCounter)
NOT_OFFERED(filtersEntrySerialize)
NOT_OFFERED(filtersGroupSetId)

#undef NOT_OFFERED

namespace FiltersCommon {

#define IS(function, ...) static_assert(std::is_same_v<decltype(function), __VA_ARGS__>, #function)
#define NOT_OFFERED(name) static_assert(std::is_same_v<decltype(name), const NotOffered>, #name)

// ---------------------------------------------------------------------------------------- matches

IS(newMatchAll, void*());
IS(newMatchIngressPorts, void*(const limid_t*, std::uint32_t));
IS(newMatchEgressPorts, void*(const limid_t*, std::uint32_t));
IS(newMatchExternalVlanId, void*(unsigned short));
IS(newMatchInternalVlanId, void*(unsigned short));
IS(newMatchTPID, void*(tpid_t));
IS(newMatchDstL4Port, void*(l4port_t));
IS(newMatchDstL4PortMask, void*(l4port_t, l4port_t));
IS(newMatchSrcL4Port, void*(l4port_t));
IS(newMatchSrcL4PortMask, void*(l4port_t, l4port_t));
IS(newMatchDstMac, void*(ether_addr));
IS(newMatchDstMacMask, void*(ether_addr, ether_addr));
IS(newMatchSrcMac, void*(ether_addr));
IS(newMatchSrcMacMask, void*(ether_addr, ether_addr));
IS(newMatchL2SrcEntryType, void*(l2SrcEntryType_t));
IS(newMatchSrcIPv4, void*(in_addr));
IS(newMatchSrcIPv4Mask, void*(in_addr, in_addr));
IS(newMatchDstIPv4, void*(in_addr));
IS(newMatchDstIPv4Mask, void*(in_addr, in_addr));
IS(newMatchPcp, void*(unsigned char));
IS(newMatchInternalPcp, void*(unsigned char));
IS(newMatchSrcIPv6, void*(in6_addr));
IS(newMatchDstIPv6, void*(in6_addr));
IS(newMatchDstIPv6Mask, void*(in6_addr, in6_addr));
IS(newMatchVlanUntagged, void*());
IS(newMatchIpProtocol, void*(unsigned char));
IS(newMatchPacketRes, void*(en_Resolution));
IS(newMatchMplsTerm, void*(bool));
IS(newMatchDSCP, void*(unsigned char));
IS(newMatchTTL, void*(unsigned char));
IS(newMatchVirtualPort, void*(limid_t));
IS(newMatchIngressStpState, void*(en_StpState));
IS(newMatchVlanInfo, void*(vlan_info_t));
IS(newMatchSrcPort, void*(limid_t));
IS(newMatchVrfId, void*(unsigned short));
IS(newMatchDrop, void*(bool));
IS(newMatchCpuPort, void*());

NOT_OFFERED(newMatchToS);
NOT_OFFERED(newMatchForwardingType);
NOT_OFFERED(newMatchDestinationCpu);
NOT_OFFERED(newMatchSrcIPv6Mask);

IS(matchGetType, filtersMatch_t(void*));
IS(deleteMatch, void(void*));
IS(matchMacGetMac, const ether_addr*(void*));
IS(matchMacGetMask, const ether_addr*(void*));
IS(matchGetLimId, limid_t(void*));
IS(matchGetTPID, tpid_t(MatchTPID*));
IS(matchGetL4Port, l4port_t(void*));
IS(matchGetL4PortMask, l4port_t(void*));
IS(matchGetL2SrcEntryType, l2SrcEntryType_t(MatchL2SrcEntryType*));
IS(matchIPv4GetIPv4, const in_addr*(void*));
IS(matchIPv4GetIPv4Mask, const in_addr*(void*));
IS(matchIPv6GetIPv6, const in6_addr*(void*));
IS(matchIPv6GetIPv6Mask, const in6_addr*(void*));
IS(matchPcpGet, unsigned char(void*));
IS(matchInternalPcpGet, unsigned char(void*));
IS(matchIpProtocolGetIpProt, unsigned char(void*));
IS(matchPacketResGet, en_Resolution(void*));
IS(matchMplsTermGet, bool(void*));
IS(matchDSCPGet, unsigned char(void*));
IS(matchTTLGet, unsigned char(void*));
IS(matchIngressStpStateGet, en_StpState(void*));
IS(matchVlanInfoGet, vlan_info_t(void*));
IS(matchVrfIdGet, unsigned short(void*));
IS(matchDropGet, bool(void*));

// ---------------------------------------------------------------------------------------- actions

IS(newActionPermit, void*());
IS(newActionDeny, void*());
IS(newActionCopyToCpu, void*());
IS(newActionBlockEgressPorts, void*(const limid_t*, std::uint32_t));
IS(newActionCopyToCpuCancel, void*());
IS(newActionSwitchToCpuCancel, void*());
IS(newActionSetPcp, void*(unsigned char));
IS(newActionSetPcpAndQueue, void*(unsigned char));
IS(newActionSetDSCP, void*(unsigned char));
IS(newActionMapToCosQueue, void*(unsigned char));
IS(newActionMapToCpuCosQueue, void*(unsigned char));
IS(newReplaceDstMac, void*(const ether_addr*));
IS(newActionRedirect, void*(const limid_t*));
IS(newActionRedirectCancel, void*());
IS(newReplaceSrcMac, void*(const ether_addr*));
IS(newActionL3Switch, void*(unsigned int));

NOT_OFFERED(newActionSetInnerPcp);
NOT_OFFERED(newActionBlackHole);

IS(deleteAction, void(void*));
IS(actionGetType, filtersAction_t(void*));
IS(actionCopyToCpuCancelGetTypeOfCancel, cp2cpuCancelParam_t(void*));
IS(actionSetPcpGetPcp, unsigned char(void*));
IS(actionSetPcpAndQueueGetPcpAndQueue, unsigned char(void*));
IS(actionSetDSCPGetDSCP, unsigned char(void*));
IS(actionMapToCosQueueGetCosQueue, unsigned char(void*));
IS(actionL3SwitchGetL3DestinationId, unsigned int(void*));

// ---------------------------------------------------------------------------------------- entries

IS(newFiltersEntry, FiltersEntry*(filtersEntryId_t));
IS(copyFiltersEntry, FiltersEntry*(FiltersEntry*));
IS(deleteFiltersEntry, void(FiltersEntry*));
IS(filtersEntryGetId, filtersEntryId_t(FiltersEntry*));
IS(filtersEntrySetPriority, void(FiltersEntry*, filtersEntryPriority_t));
IS(filtersEntryGetPriority, filtersEntryPriority_t(FiltersEntry*));
IS(filtersEntrySetMatch, filtersErr_t(FiltersEntry*, Match*));
IS(filtersEntryGetMatch, filtersErr_t(FiltersEntry*, Match*));
IS(filtersEntryDeleteMatch, filtersErr_t(FiltersEntry*, filtersMatch_t));
IS(filtersEntrySetAction, filtersErr_t(FiltersEntry*, Action*));
IS(filtersEntryGetAction, filtersErr_t(FiltersEntry*, Action*));
IS(filtersEntryDeleteAction, filtersErr_t(FiltersEntry*, filtersAction_t));

NOT_OFFERED(filtersEntrySetId);
NOT_OFFERED(filtersEntrySetPolicer);
NOT_OFFERED(filtersEntryGetPolicer);
NOT_OFFERED(filtersEntrySetCounter);
NOT_OFFERED(filtersEntryGetCounter);
NOT_OFFERED(filtersEntrySerialize);

// ----------------------------------------------------------------------------------------- groups

IS(newFiltersGroup, FiltersGroup*(filtersGroupId_t));
IS(deleteFiltersGroup, void(FiltersGroup*));
IS(filtersGroupGetId, filtersGroupId_t(FiltersGroup*));
IS(filtersGroupSetPriority, void(FiltersGroup*, filtersGroupPriority_t));
IS(filtersGroupGetPriority, filtersGroupPriority_t(FiltersGroup*));
// Without a result, unlike filtersGroupSetType: deliberate.
IS(filtersGroupSetStage, void(FiltersGroup*, filtersGroupStage_t));
IS(filtersGroupGetStage, filtersGroupStage_t(FiltersGroup*));
IS(filtersGroupSetType, filtersErr_t(FiltersGroup*, filtersGroupType_t));
IS(filtersGroupGetType, filtersGroupType_t(FiltersGroup*));
IS(filtersGroupInsertEntry, filtersErr_t(FiltersGroup*, FiltersEntry*));
IS(filtersGroupRemoveEntry, filtersErr_t(FiltersGroup*, filtersEntryId_t));
IS(filtersGroupGetEntries, void(FiltersGroup*, entriesStruct*));
IS(deleteFiltersEntriesStruct, void(entriesStruct*));

NOT_OFFERED(filtersGroupSetId);

// --------------------------------------------------------------------------------------- refusals

IS(filtersGroupInsertEntryRefusals, FiltersRefusals*(FiltersGroup*, FiltersEntry*));
IS(filtersGroupSetStageRefusals, FiltersRefusals*(FiltersGroup*, filtersGroupStage_t));
IS(filtersGroupSetTypeRefusals, FiltersRefusals*(FiltersGroup*, filtersGroupType_t));
IS(filtersEntrySetMatchRefusals, FiltersRefusals*(FiltersEntry*, Match*));
IS(filtersEntrySetActionRefusals, FiltersRefusals*(FiltersEntry*, Action*));
IS(filtersEntryReadRefusals, FiltersRefusals*(const void*, std::size_t));
IS(filtersGroupReadRefusals, FiltersRefusals*(const void*, std::size_t));
IS(newFiltersGroupFromBytes, FiltersGroup*(const void*, std::size_t, FiltersRefusals**));
IS(deleteFiltersRefusals, void(FiltersRefusals*));
IS(filtersRefusalsGetCount, std::uint32_t(FiltersRefusals*));
IS(filtersRefusalsGetCode, filtersErr_t(FiltersRefusals*, std::uint32_t));
IS(filtersRefusalsGetReason, filtersRefusalReason_t(FiltersRefusals*, std::uint32_t));
IS(filtersRefusalsGetSentence, const char*(FiltersRefusals*, std::uint32_t));
IS(filtersRefusalsGetEntry, bool(FiltersRefusals*, std::uint32_t, filtersEntryId_t*));
IS(filtersRefusalsGetMatch, bool(FiltersRefusals*, std::uint32_t, filtersMatch_t*));
IS(filtersRefusalsGetAction, bool(FiltersRefusals*, std::uint32_t, filtersAction_t*));
IS(filtersRefusalsGetPolicerStage, bool(FiltersRefusals*, std::uint32_t, std::uint32_t*));
IS(filtersRefusalsGetStage, bool(FiltersRefusals*, std::uint32_t, filtersGroupStage_t*));
IS(filtersRefusalsGetType, bool(FiltersRefusals*, std::uint32_t, filtersGroupType_t*));
IS(filtersRefusalsGetAdmittedMatches, std::uint64_t(FiltersRefusals*, std::uint32_t));
IS(filtersRefusalsGetAdmittedActions, std::uint64_t(FiltersRefusals*, std::uint32_t));
IS(filtersRefusalsGetAdmittedPolicerStages, std::uint64_t(FiltersRefusals*, std::uint32_t));
IS(filtersRefusalsGetAdmittedStages, std::uint64_t(FiltersRefusals*, std::uint32_t));
IS(filtersRefusalsGetAdmittedTypes, std::uint64_t(FiltersRefusals*, std::uint32_t));
IS(filtersRefusalsGetExcludingMatches, std::uint64_t(FiltersRefusals*, std::uint32_t));
IS(filtersRefusalsGetOffset, bool(FiltersRefusals*, std::uint32_t, std::uint64_t*));
IS(filtersRefusalsGetPart, bool(FiltersRefusals*, std::uint32_t, filtersPart_t*));
IS(filtersRefusalsGetField, bool(FiltersRefusals*, std::uint32_t, std::uint32_t*));
IS(filtersRefusalsGetWas, bool(FiltersRefusals*, std::uint32_t, std::uint64_t*));
IS(filtersRefusalsGetBecame, bool(FiltersRefusals*, std::uint32_t, std::uint64_t*));

// ------------------------------------------------------------------------------------------ names

IS(filtersErrName, const char*(filtersErr_t));
IS(filtersMatchName, const char*(filtersMatch_t));
IS(filtersActionName, const char*(filtersAction_t));
IS(filtersGroupStageName, const char*(filtersGroupStage_t));
IS(filtersGroupTypeName, const char*(filtersGroupType_t));
IS(filtersPolicerStageName, const char*(std::uint32_t));
IS(filtersRefusalReasonName, const char*(filtersRefusalReason_t));
IS(filtersPartName, const char*(filtersPart_t));

// ------------------------------------------------------------------------------------ the numbers

static_assert(std::is_same_v<filtersEntryId_t, std::uint16_t>);
static_assert(std::is_same_v<filtersEntryPriority_t, std::uint32_t>);
static_assert(std::is_same_v<filtersGroupId_t, std::uint16_t>);
static_assert(std::is_same_v<filtersGroupPriority_t, std::uint16_t>);
static_assert(std::is_same_v<tpid_t, std::uint16_t>);
static_assert(std::is_same_v<l4port_t, std::uint16_t>);

} // namespace FiltersCommon
