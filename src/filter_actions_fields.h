#ifndef FILTER_COMMON_SRC_FILTER_ACTIONS_FIELDS_H
#define FILTER_COMMON_SRC_FILTER_ACTIONS_FIELDS_H

#include "field_rows.h"
#include "filter_actions.h"
#include "message_fields.h"

namespace FiltersCommon {

/**
 * Where the parameters of each class stand in an ActionPB. A class without a row has none. Two
 * fields serve two kinds each, deliberately: the type tells the kinds apart.
 */
struct ActionFields {
    // clang-format off
    static Fields<> of(const Action*);

    static Fields<Appended<action_fields::ports_, &ActionPorts::ports_>>
        of(const ActionBlockEgressPorts*);
    static Fields<At<action_fields::cp2cpu_cancel_type_, &ActionCopyToCpuCancel::cancelType_>>
        of(const ActionCopyToCpuCancel*);
    static Fields<At<action_fields::pcp_, &ActionSetPcp::pcp_>>
        of(const ActionSetPcp*);
    static Fields<At<action_fields::pcp_and_queue_, &ActionSetPcpAndQueue::pcpAndQueue_>>
        of(const ActionSetPcpAndQueue*);
    static Fields<At<action_fields::pcp_, &ActionSetInnerPcp::innerPcp_>>
        of(const ActionSetInnerPcp*);
    static Fields<At<action_fields::dscp_, &ActionSetDSCP::dscp_>>
        of(const ActionSetDSCP*);
    static Fields<At<action_fields::cosq_, &ActionMapToCosQueue::cosQueue_>>
        of(const ActionMapToCosQueue*);
    static Fields<At<action_fields::cosq_, &ActionMapToCpuCosQueue::cpuCosQueue_>>
        of(const ActionMapToCpuCosQueue*);
    static Fields<At<action_fields::ports_, &ActionRedirect::ports_>> // replaced, deliberately
        of(const ActionRedirect*);
    static Fields<At<action_fields::mac_, &ActionReplaceDstMac::mac_>>
        of(const ActionReplaceDstMac*);
    static Fields<At<action_fields::mac_, &ActionReplaceSrcMac::mac_>>
        of(const ActionReplaceSrcMac*);
    static Fields<At<action_fields::l3_dest_id_, &ActionL3Switch::l3DestinationId_>>
        of(const ActionL3Switch*);
    // clang-format on
};

template <class T>
using ActionFieldsOf = decltype(ActionFields::of(static_cast<const T*>(nullptr)));

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_FILTER_ACTIONS_FIELDS_H
