/**
 * The fields of an ActionPB, and the rows of the action classes: each parameter once.
 */
#ifndef FILTER_COMMON_SRC_WIRE_FILTER_ACTIONS_ROWS_H
#define FILTER_COMMON_SRC_WIRE_FILTER_ACTIONS_ROWS_H

#include "filter_actions.h"
#include "message_fields.h"
#include "rows.h"

#include <iterator>

namespace FiltersCommon {

// clang-format off
#define FILTERS_COMMON_ACTION_FIELDS(FIELD)                                                        \
    FIELD(ActionPB, type_, kTypeFieldNumber, REQUIRED)                                             \
    FIELD(ActionPB, ports_, kPortsFieldNumber, REPEATED)                                           \
    FIELD(ActionPB, pcp_, kPcpFieldNumber, OPTIONAL)                                               \
    FIELD(ActionPB, pcp_and_queue_, kPcpAndQueueFieldNumber, OPTIONAL)                             \
    FIELD(ActionPB, dscp_, kDscpFieldNumber, OPTIONAL)                                             \
    FIELD(ActionPB, cosq_, kCosqFieldNumber, OPTIONAL)                                             \
    FIELD(ActionPB, cp2cpu_cancel_type_, kCp2CpuCancelTypeFieldNumber, OPTIONAL)                   \
    FIELD(ActionPB, mac_, kMacFieldNumber, OPTIONAL)                                               \
    FIELD(ActionPB, l3_dest_id_, kL3DestIdFieldNumber, OPTIONAL)
// clang-format on

namespace action_fields {
FILTERS_COMMON_DEFINE_FIELDS(FILTERS_COMMON_ACTION_FIELDS)
} // namespace action_fields
#undef FILTERS_COMMON_ACTION_FIELDS

template <>
inline constexpr MessageSchema SCHEMA_OF<ActionPB> = {
    PART_ACTION, std::begin(action_fields::FIELDS), std::end(action_fields::FIELDS)};

/**
 * The parameters of each class, their fields in an ActionPB, and how they are shown to people. Two
 * fields are deliberately used by two kinds each: the type tells the kinds apart.
 */
struct ActionRows {
    // clang-format off
    static constexpr auto of(const Action*) { return rows(Head::NO_PARAMETERS); }

    template <class Formatter>
    static constexpr auto ports(Formatter formatter) { return rows(
        appended<action_fields::ports_, &ActionPorts::ports_>(
            "      LIMIDs: ", formatter, Notation::PORTS)); }
    static constexpr auto of(const ActionPorts*) { return ports(NUMBERED_PORTS); }
    static constexpr auto of(const ActionBlockEgressPorts*)
        { return ports(NUMBERED_PORTS_AND_EMPTY_LINE); }
    static constexpr auto of(const ActionCopyToCpuCancel*) { return rows(
        at<action_fields::cp2cpu_cancel_type_, &ActionCopyToCpuCancel::cancelType_>(
            "      Cp2CPU Cancel type: ", NAMED_LINE, Notation::NUMBER)); }
    static constexpr auto of(const ActionSetPcp*) { return rows(
        at<action_fields::pcp_, &ActionSetPcp::pcp_>(
            "      PCP: ", LINE, Notation::NUMBER)); }
    static constexpr auto of(const ActionSetPcpAndQueue*) { return rows(
        at<action_fields::pcp_and_queue_, &ActionSetPcpAndQueue::pcpAndQueue_>(
            "      PCP_AND_QUEUE: ", LINE, Notation::NUMBER)); }
    static constexpr auto of(const ActionSetInnerPcp*) { return rows(
        at<action_fields::pcp_, &ActionSetInnerPcp::innerPcp_>(
            "      Inner PCP: ", LINE, Notation::NUMBER)); }
    static constexpr auto of(const ActionSetDSCP*) { return rows(
        at<action_fields::dscp_, &ActionSetDSCP::dscp_>(
            "      DSCP: ", LINE, Notation::NUMBER)); }
    static constexpr auto of(const ActionMapToCosQueue*) { return rows(
        at<action_fields::cosq_, &ActionMapToCosQueue::cosQueue_>(
            "      CoS Queue: ", LINE, Notation::NUMBER)); }
    static constexpr auto of(const ActionMapToCpuCosQueue*) { return rows(
        at<action_fields::cosq_, &ActionMapToCpuCosQueue::cpuCosQueue_>(
            "      CPU CoS Queue: ", LINE, Notation::NUMBER)); }
    static constexpr auto of(const ActionRedirect*) { return rows( // deliberately replaced
        at<action_fields::ports_, &ActionRedirect::ports_>(
            "      LIMIDs: ", PORTS_WITHOUT_LABEL, Notation::PORTS)); }
    static constexpr auto of(const ActionReplaceDstMac*) { return rows(
        at<action_fields::mac_, &ActionReplaceDstMac::mac_>(
            "      Replace MAC: ", TEXT_LINE, Notation::ADDRESS)); }
    static constexpr auto of(const ActionReplaceSrcMac*) { return rows(
        at<action_fields::mac_, &ActionReplaceSrcMac::mac_>(
            "      Replace MAC: ", TEXT_LINE, Notation::ADDRESS)); }
    static constexpr auto of(const ActionL3Switch*) { return rows(
        at<action_fields::l3_dest_id_, &ActionL3Switch::l3DestinationId_>(
            "      L3 Destination ID: ", LINE, Notation::NUMBER)); }
    // clang-format on
};

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_WIRE_FILTER_ACTIONS_ROWS_H
