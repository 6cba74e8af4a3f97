#include "filter_actions.h"

#include "bytes.h"

#include "filter_actions.pb.h"

namespace FiltersCommon {

void Action::convertToActionPB(ActionPB* pb) const
{
    pb->set_type_(static_cast<std::uint32_t>(type_));
}

void Action::convertFromActionPB(const ActionPB* /*pb*/) {}

// -------------------------------------------------------------------------- kinds with one number

/** Where a number stands in the message: in which field the member of the class goes. */
#define FILTERS_COMMON_NUMBER(Class, member, field)                                                \
    void Class::convertToActionPB(ActionPB* pb) const                                              \
    {                                                                                              \
        Action::convertToActionPB(pb);                                                             \
        pb->set_##field(static_cast<std::uint32_t>(member));                                       \
    }                                                                                              \
    void Class::convertFromActionPB(const ActionPB* pb)                                            \
    {                                                                                              \
        member = static_cast<decltype(member)>(pb->field());                                       \
    }

// Two fields serve two kinds each, deliberately: the type tells the kinds apart.
FILTERS_COMMON_NUMBER(ActionCopyToCpuCancel, cancelType_, cp2cpu_cancel_type_)
FILTERS_COMMON_NUMBER(ActionSetPcp, pcp_, pcp_)
FILTERS_COMMON_NUMBER(ActionSetPcpAndQueue, pcpAndQueue_, pcp_and_queue_)
FILTERS_COMMON_NUMBER(ActionSetInnerPcp, innerPcp_, pcp_)
FILTERS_COMMON_NUMBER(ActionSetDSCP, dscp_, dscp_)
FILTERS_COMMON_NUMBER(ActionMapToCosQueue, cosQueue_, cosq_)
FILTERS_COMMON_NUMBER(ActionMapToCpuCosQueue, cpuCosQueue_, cosq_)
FILTERS_COMMON_NUMBER(ActionL3Switch, l3DestinationId_, l3_dest_id_)

#undef FILTERS_COMMON_NUMBER

// ------------------------------------------------------------------------------------------ ports

void ActionBlockEgressPorts::convertToActionPB(ActionPB* pb) const
{
    Action::convertToActionPB(pb);
    appendPacked(pb->mutable_ports_(), getPortsRef());
}

void ActionBlockEgressPorts::convertFromActionPB(const ActionPB* pb)
{
    std::list<limid_t> ports = unpackAll(pb->ports_());
    appendPorts(ports);
}

void ActionRedirect::convertToActionPB(ActionPB* pb) const
{
    Action::convertToActionPB(pb);
    appendPacked(pb->mutable_ports_(), ports_);
}

void ActionRedirect::convertFromActionPB(const ActionPB* pb)
{
    std::list<limid_t> ports = unpackAll(pb->ports_());
    ports_.swap(ports);
}

// ---------------------------------------------------------------------------------- MAC addresses

#define FILTERS_COMMON_MAC(Class)                                                                  \
    void Class::convertToActionPB(ActionPB* pb) const                                              \
    {                                                                                              \
        Action::convertToActionPB(pb);                                                             \
        pb->set_mac_(&mac_, sizeof mac_);                                                          \
    }                                                                                              \
    void Class::convertFromActionPB(const ActionPB* pb)                                            \
    {                                                                                              \
        mac_ = fromBytes<ether_addr>(pb->mac_());                                                  \
    }

FILTERS_COMMON_MAC(ActionReplaceDstMac)
FILTERS_COMMON_MAC(ActionReplaceSrcMac)

#undef FILTERS_COMMON_MAC

} // namespace FiltersCommon
