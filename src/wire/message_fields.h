/**
 * The fields of the messages as types. Each type knows the field's number and its accessors in the
 * generated class, so that code that reads or writes a field, through a message or directly as
 * bytes, only has to name it.
 */
#ifndef FILTER_COMMON_SRC_WIRE_MESSAGE_FIELDS_H
#define FILTER_COMMON_SRC_WIRE_MESSAGE_FIELDS_H

#include "filter_groups.pb.h"

#include <cstdint>
#include <type_traits>
#include <utility>

namespace FiltersCommon {

// Functions for accessors that a field does not have are never instantiated.
#define FILTERS_COMMON_DEFINE_FIELD(Message, name, number)                                         \
    struct name {                                                                                  \
        static constexpr std::uint32_t NUMBER = Message::number;                                   \
        using Type = std::decay_t<decltype(std::declval<const Message&>().name())>;                \
        static decltype(auto) get(const Message& message) { return message.name(); }               \
        template <class M, class... Value>                                                         \
        static void set(M* message, Value... value)                                                \
        {                                                                                          \
            message->set_##name(value...);                                                         \
        }                                                                                          \
        template <class M>                                                                         \
        static auto* change(M* message)                                                            \
        {                                                                                          \
            return message->mutable_##name();                                                      \
        }                                                                                          \
    };

namespace match_fields {
FILTERS_COMMON_DEFINE_FIELD(MatchPB, type_, kTypeFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(MatchPB, ports_, kPortsFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(MatchPB, vlan_id_, kVlanIdFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(MatchPB, tpid_, kTpidFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(MatchPB, mac_, kMacFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(MatchPB, l4port_, kL4PortFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(MatchPB, mac_mask_, kMacMaskFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(MatchPB, ipv4_, kIpv4FieldNumber)
FILTERS_COMMON_DEFINE_FIELD(MatchPB, pcp_, kPcpFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(MatchPB, ipv4_mask_, kIpv4MaskFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(MatchPB, ipv6_, kIpv6FieldNumber)
FILTERS_COMMON_DEFINE_FIELD(MatchPB, ipv6_mask_, kIpv6MaskFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(MatchPB, l2_src_, kL2SrcFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(MatchPB, ipprotocol_, kIpprotocolFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(MatchPB, packet_resolution_, kPacketResolutionFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(MatchPB, tos_, kTosFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(MatchPB, limid_, kLimidFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(MatchPB, l4port_mask_, kL4PortMaskFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(MatchPB, ingress_stp_state_, kIngressStpStateFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(MatchPB, excluded_port_types_, kExcludedPortTypesFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(MatchPB, vlan_info_svc_vlan_type_, kVlanInfoSvcVlanTypeFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(MatchPB, ttl_, kTtlFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(MatchPB, vrf_id_, kVrfIdFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(MatchPB, drop_flag_, kDropFlagFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(MatchPB, fwd_type_, kFwdTypeFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(MatchPB, mpls_terminated_, kMplsTerminatedFieldNumber)
} // namespace match_fields

namespace action_fields {
FILTERS_COMMON_DEFINE_FIELD(ActionPB, type_, kTypeFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(ActionPB, ports_, kPortsFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(ActionPB, pcp_, kPcpFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(ActionPB, pcp_and_queue_, kPcpAndQueueFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(ActionPB, dscp_, kDscpFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(ActionPB, cosq_, kCosqFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(ActionPB, cp2cpu_cancel_type_, kCp2CpuCancelTypeFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(ActionPB, mac_, kMacFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(ActionPB, l3_dest_id_, kL3DestIdFieldNumber)
} // namespace action_fields

namespace counter_fields {
FILTERS_COMMON_DEFINE_FIELD(CounterPB, id, kIdFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(CounterPB, type, kTypeFieldNumber)
} // namespace counter_fields

namespace entry_fields {
FILTERS_COMMON_DEFINE_FIELD(FiltersEntryPB, id_, kIdFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(FiltersEntryPB, priority_, kPriorityFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(FiltersEntryPB, policer_, kPolicerFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(FiltersEntryPB, matches_, kMatchesFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(FiltersEntryPB, actions_, kActionsFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(FiltersEntryPB, counter_, kCounterFieldNumber)
} // namespace entry_fields

namespace group_fields {
FILTERS_COMMON_DEFINE_FIELD(FiltersGroupPB, id_, kIdFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(FiltersGroupPB, priority_, kPriorityFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(FiltersGroupPB, stage_, kStageFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(FiltersGroupPB, type_, kTypeFieldNumber)
FILTERS_COMMON_DEFINE_FIELD(FiltersGroupPB, entries_, kEntriesFieldNumber)
} // namespace group_fields

#undef FILTERS_COMMON_DEFINE_FIELD

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_WIRE_MESSAGE_FIELDS_H
