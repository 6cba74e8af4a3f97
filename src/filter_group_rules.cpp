#include "filter_groups.h"

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <iterator>

namespace FiltersCommon {

// ----------------------------------------------------------------------------------------- tables

namespace {

/** A set of codes below LIMIT. */
template <class Code>
class CodeSet {
public:
    static constexpr std::uint32_t LIMIT = 32;

    constexpr CodeSet(std::initializer_list<Code> codes)
    {
        for (const Code code : codes)
            bits_ |= std::uint32_t{1} << code;
    }

    constexpr bool contains(Code code) const
    {
        const auto number = static_cast<std::uint32_t>(code);
        return number < LIMIT && (bits_ >> number & 1) != 0;
    }

private:
    std::uint32_t bits_ = 0;
};

/** A row for each key, in the order of the keys from 0. */
template <class Key, class Code>
struct Row {
    Key key;
    CodeSet<Code> admitted;
};

constexpr Row<filtersGroupType_t, filtersMatch_t> TYPE_MATCHES[] = {
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
    // Deliberate: the destination IPv6 address without the source, and no other type has either.
    {GROUP_TYPE_8, {MATCH_ALL, MATCH_DST_IPV6, MATCH_VRF_ID}},
    {GROUP_TYPE_9,
     {MATCH_ALL, MATCH_INGRESS_PORTS, MATCH_EXTERNAL_VLAN_ID, MATCH_INTERNAL_VLAN_ID, MATCH_PCP,
      MATCH_INTERNAL_PCP, MATCH_TOS}},
};

constexpr Row<filtersGroupStage_t, filtersGroupType_t> STAGE_TYPES[] = {
    {GROUP_STAGE_0,
     {GROUP_TYPE_0, GROUP_TYPE_1, GROUP_TYPE_2, GROUP_TYPE_3, GROUP_TYPE_4, GROUP_TYPE_5,
      GROUP_TYPE_6, GROUP_TYPE_7, GROUP_TYPE_8, GROUP_TYPE_9}},
    {GROUP_STAGE_1, {GROUP_TYPE_0, GROUP_TYPE_4, GROUP_TYPE_6}},
    {GROUP_STAGE_2,
     {GROUP_TYPE_0, GROUP_TYPE_1, GROUP_TYPE_2, GROUP_TYPE_3, GROUP_TYPE_7, GROUP_TYPE_8,
      GROUP_TYPE_9}},
    {GROUP_STAGE_3, {GROUP_TYPE_0, GROUP_TYPE_5}},
};

constexpr Row<filtersGroupStage_t, filtersAction_t> STAGE_ACTIONS[] = {
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

struct PolicerRow {
    filtersGroupStage_t key;
    policer::Stage policerStage;
};

constexpr PolicerRow STAGE_POLICERS[] = {
    {GROUP_STAGE_0, policer::STAGE_NONE},
    {GROUP_STAGE_1, policer::STAGE_NONE},
    {GROUP_STAGE_2, policer::STAGE_INGRESS},
    {GROUP_STAGE_3, policer::STAGE_EGRESS},
};

template <class Row, std::size_t N>
constexpr bool standAtTheirKeys(const Row (&table)[N])
{
    for (std::size_t i = 0; i < N; ++i)
        if (static_cast<std::size_t>(table[i].key) != i)
            return false;
    return true;
}

static_assert(std::size(TYPE_MATCHES) == 10 && standAtTheirKeys(TYPE_MATCHES));
static_assert(std::size(STAGE_TYPES) == 4 && standAtTheirKeys(STAGE_TYPES));
static_assert(std::size(STAGE_ACTIONS) == 4 && standAtTheirKeys(STAGE_ACTIONS));
static_assert(std::size(STAGE_POLICERS) == 4 && standAtTheirKeys(STAGE_POLICERS));

/** The row of @p key, or null. Keys count as unsigned numbers. */
template <class Row, std::size_t N, class Key>
const Row* find(const Row (&table)[N], Key key)
{
    const auto index = static_cast<std::uint32_t>(key);
    return index < N ? &table[index] : nullptr;
}

/** A table as callers see it; the checks read the rows. */
template <class Key, class Code, std::size_t N>
std::map<Key, std::set<Code>> described(const Row<Key, Code> (&table)[N])
{
    std::map<Key, std::set<Code>> description;
    for (const Row<Key, Code>& row : table) {
        std::set<Code>& codes = description[row.key];
        for (std::uint32_t number = 0; number < CodeSet<Code>::LIMIT; ++number)
            if (const auto code = static_cast<Code>(number); row.admitted.contains(code))
                codes.insert(codes.end(), code);
    }
    return description;
}

} // namespace

const std::map<filtersGroupType_t, std::set<filtersMatch_t>> FiltersGroup::TypeDescription_ =
    described(TYPE_MATCHES);
const std::map<filtersGroupStage_t, std::set<filtersGroupType_t>>
    FiltersGroup::StageTypesDescription_ = described(STAGE_TYPES);
const std::map<filtersGroupStage_t, std::set<filtersAction_t>>
    FiltersGroup::StageActionsDescription_ = described(STAGE_ACTIONS);

// ----------------------------------------------------------------------------------------- checks

namespace {

/** Whether a row admits the kind of every object of @p objects. */
template <class Key, class Code, class Map>
bool admitsAll(const Row<Key, Code>& row, const Map& objects)
{
    return std::all_of(objects.begin(), objects.end(), [&](const auto& element) {
        return row.admitted.contains(element.second->getType());
    });
}

} // namespace

filtersErr_t FiltersGroup::groupMatchValidation(const FiltersEntry& entry,
                                                filtersGroupType_t type) const
{
    const auto* row = find(TYPE_MATCHES, type);
    if (row == nullptr)
        return FILTERS_ERR_INVALID;
    return admitsAll(*row, entry.getMatchesRef()) ? FILTERS_OK : FILTERS_ERR_MATCH_NOT_ALLOWED;
}

filtersErr_t FiltersGroup::groupActionValidation(const FiltersEntry& entry,
                                                 filtersGroupStage_t stage) const
{
    const auto* row = find(STAGE_ACTIONS, stage);
    if (row == nullptr)
        return FILTERS_ERR_UNKNOWN_STAGE;
    return admitsAll(*row, entry.getActionsRef()) ? FILTERS_OK : FILTERS_ERR_ACTION_NOT_ALLOWED;
}

filtersErr_t FiltersGroup::groupStageValidation(filtersGroupStage_t stage,
                                                filtersGroupType_t type) const
{
    const auto* row = find(STAGE_TYPES, stage);
    if (row == nullptr)
        return FILTERS_ERR_UNKNOWN_STAGE;
    return row->admitted.contains(type) ? FILTERS_OK : FILTERS_ERR_TYPE_NOT_ALLOWED;
}

filtersErr_t FiltersGroup::groupPolicerValidation(const policer::Policer& policer,
                                                  filtersGroupStage_t stage) const
{
    if (policer.GetStage() == policer::STAGE_NONE)
        return FILTERS_OK;
    const auto* row = find(STAGE_POLICERS, stage);
    if (row == nullptr)
        return FILTERS_ERR_UNKNOWN_STAGE;
    return policer.GetStage() == row->policerStage ? FILTERS_OK : FILTERS_ERR_POLICER_STAGE;
}

} // namespace FiltersCommon
