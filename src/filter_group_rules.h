/**
 * What groups admit: the rows that the checks and their explanations are based on.
 */
#ifndef FILTER_COMMON_SRC_FILTER_GROUP_RULES_H
#define FILTER_COMMON_SRC_FILTER_GROUP_RULES_H

#include "filter_code_set.h"
#include "filter_types.h"

#include <policer_common.h>

#include <cstddef>
#include <cstdint>
#include <iterator>

namespace FiltersCommon {

/** A row of a table that has one row per key, in key order from 0. */
template <class Key, class Code>
struct RuleRow {
    Key key;
    CodeSet<Code> admitted;
};

inline constexpr RuleRow<filtersGroupType_t, filtersMatch_t> TYPE_MATCHES[] = {
    {GROUP_TYPE_0, {}}, // deliberate: only entries without any match
    {GROUP_TYPE_1,
     {MATCH_ALL, MATCH_INGRESS_PORTS, MATCH_EXTERNAL_VLAN_ID, MATCH_TPID, MATCH_DST_MAC,
      MATCH_SRC_MAC, MATCH_L2_SRC_ENTRY_TYPE, MATCH_PACKET_RES, MATCH_MPLS_TERM,
      MATCH_INGRESS_STP_STATE, MATCH_DROP, MATCH_CPU_PORT}},
    {GROUP_TYPE_2,
     {MATCH_ALL, MATCH_INGRESS_PORTS, MATCH_EXTERNAL_VLAN_ID, MATCH_TPID, MATCH_SRC_MAC,
      MATCH_SRC_IPV4, MATCH_INTERNAL_VLAN_ID, MATCH_VIRTUAL_PORT}},
    {GROUP_TYPE_3,
     {MATCH_ALL, MATCH_INGRESS_PORTS, MATCH_EXTERNAL_VLAN_ID, MATCH_TPID, MATCH_DST_L4_PORT,
      MATCH_SRC_L4_PORT, MATCH_SRC_IPV4, MATCH_DST_IPV4, MATCH_IP_PROTOCOL, MATCH_TTL,
      MATCH_DESTINATION_CPU}},
    {GROUP_TYPE_4,
     {MATCH_ALL, MATCH_INGRESS_PORTS, MATCH_EXTERNAL_VLAN_ID, MATCH_TPID, MATCH_DST_L4_PORT,
      MATCH_SRC_IPV4, MATCH_DST_IPV4, MATCH_INTERNAL_VLAN_ID, MATCH_PCP, MATCH_INTERNAL_PCP,
      MATCH_IP_PROTOCOL, MATCH_TOS}},
    {GROUP_TYPE_5,
     {MATCH_ALL, MATCH_INGRESS_PORTS, MATCH_EXTERNAL_VLAN_ID, MATCH_TPID, MATCH_DST_MAC,
      MATCH_INTERNAL_VLAN_ID, MATCH_PCP, MATCH_INTERNAL_PCP, MATCH_EGRESS_PORTS}},
    {GROUP_TYPE_6,
     {MATCH_ALL, MATCH_INGRESS_PORTS, MATCH_EXTERNAL_VLAN_ID, MATCH_TPID, MATCH_DST_MAC,
      MATCH_SRC_MAC, MATCH_INTERNAL_VLAN_ID, MATCH_PCP, MATCH_INTERNAL_PCP}},
    {GROUP_TYPE_7,
     {MATCH_ALL, MATCH_TPID, MATCH_DST_MAC, MATCH_DST_L4_PORT, MATCH_IP_PROTOCOL, MATCH_VLAN_INFO,
      MATCH_SRC_PORT, MATCH_FORWARDING_TYPE}},
    // Deliberate: the destination IPv6 address without the source; no other type admits either.
    {GROUP_TYPE_8, {MATCH_ALL, MATCH_DST_IPV6, MATCH_VRF_ID}},
    {GROUP_TYPE_9,
     {MATCH_ALL, MATCH_INGRESS_PORTS, MATCH_EXTERNAL_VLAN_ID, MATCH_INTERNAL_VLAN_ID, MATCH_PCP,
      MATCH_INTERNAL_PCP, MATCH_TOS}},
};

inline constexpr RuleRow<filtersGroupStage_t, filtersGroupType_t> STAGE_TYPES[] = {
    {GROUP_STAGE_0,
     {GROUP_TYPE_0, GROUP_TYPE_1, GROUP_TYPE_2, GROUP_TYPE_3, GROUP_TYPE_4, GROUP_TYPE_5,
      GROUP_TYPE_6, GROUP_TYPE_7, GROUP_TYPE_8, GROUP_TYPE_9}},
    {GROUP_STAGE_1, {GROUP_TYPE_0, GROUP_TYPE_4, GROUP_TYPE_6}},
    {GROUP_STAGE_2,
     {GROUP_TYPE_0, GROUP_TYPE_1, GROUP_TYPE_2, GROUP_TYPE_3, GROUP_TYPE_7, GROUP_TYPE_8,
      GROUP_TYPE_9}},
    {GROUP_STAGE_3, {GROUP_TYPE_0, GROUP_TYPE_5}},
};

inline constexpr RuleRow<filtersGroupStage_t, filtersAction_t> STAGE_ACTIONS[] = {
    // Deliberate: ACTION_MAP_TO_CPU_COS_QUEUE is admitted at stage 2 only.
    {GROUP_STAGE_0,
     {ACTION_PERMIT, ACTION_DENY, ACTION_COPY_TO_CPU, ACTION_BLOCK_EGRESS_PORTS,
      ACTION_COPY_TO_CPU_CANCEL, ACTION_SET_PCP, ACTION_SET_PCP_AND_QUEUE, ACTION_SET_INNER_PCP,
      ACTION_SET_DSCP, ACTION_MAP_TO_COS_QUEUE, ACTION_REDIRECT, ACTION_REPLACE_DST_MAC,
      ACTION_REDIRECT_CANCEL, ACTION_REPLACE_SRC_MAC, ACTION_L3_SWITCH, ACTION_BLACK_HOLE}},
    {GROUP_STAGE_1, {ACTION_PERMIT, ACTION_DENY, ACTION_SET_PCP_AND_QUEUE, ACTION_SET_INNER_PCP}},
    {GROUP_STAGE_2,
     {ACTION_PERMIT, ACTION_DENY, ACTION_COPY_TO_CPU, ACTION_BLOCK_EGRESS_PORTS,
      ACTION_COPY_TO_CPU_CANCEL, ACTION_SET_PCP, ACTION_SET_DSCP, ACTION_MAP_TO_COS_QUEUE,
      ACTION_MAP_TO_CPU_COS_QUEUE, ACTION_REDIRECT, ACTION_REPLACE_DST_MAC, ACTION_REDIRECT_CANCEL,
      ACTION_REPLACE_SRC_MAC, ACTION_L3_SWITCH, ACTION_BLACK_HOLE}},
    {GROUP_STAGE_3, {ACTION_PERMIT, ACTION_DENY}},
};

/** In addition, a policer of policer::STAGE_NONE is admitted at every stage. */
struct PolicerRow {
    filtersGroupStage_t key;
    policer::Stage policerStage;
};

inline constexpr PolicerRow STAGE_POLICERS[] = {
    {GROUP_STAGE_0, policer::STAGE_NONE},
    {GROUP_STAGE_1, policer::STAGE_NONE},
    {GROUP_STAGE_2, policer::STAGE_INGRESS},
    {GROUP_STAGE_3, policer::STAGE_EGRESS},
};

template <class Row, std::size_t N>
constexpr bool areAtTheirKeys(const Row (&table)[N])
{
    for (std::size_t i = 0; i < N; ++i)
        if (static_cast<std::size_t>(table[i].key) != i)
            return false;
    return true;
}

static_assert(std::size(STAGE_ACTIONS) == std::size(STAGE_TYPES) &&
                  std::size(STAGE_POLICERS) == std::size(STAGE_TYPES),
              "each table must have one row per stage");
static_assert(areAtTheirKeys(TYPE_MATCHES));
static_assert(areAtTheirKeys(STAGE_TYPES));
static_assert(areAtTheirKeys(STAGE_ACTIONS));
static_assert(areAtTheirKeys(STAGE_POLICERS));

/** The row of @p key, or null. Keys are treated as unsigned. */
template <class Row, std::size_t N, class Key>
constexpr const Row* findRow(const Row (&table)[N], Key key)
{
    const auto index = static_cast<std::uint32_t>(key);
    return index < N ? &table[index] : nullptr;
}

/** The keys that have a row. */
template <class Row, std::size_t N>
constexpr auto keysOf(const Row (&table)[N])
{
    CodeSet<decltype(Row::key)> keys;
    for (const Row& row : table)
        keys.insert(row.key);
    return keys;
}

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_FILTER_GROUP_RULES_H
