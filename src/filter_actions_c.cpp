#include "filter_actions_c.h"

#include "contract.h"
#include "filter_actions.h"

#include <list>

/** Reports give the C++ signature of the function. */
#define REQUIRE_ACTION(function)                                                                   \
    FILTERS_COMMON_REQUIRE(a != nullptr, "filter_actions_c.cpp", __LINE__, function)

namespace FiltersCommon {

namespace {

/** A new T as a handle: the address of its Action. */
template <class T, class... Values>
void* make(const Values&... values)
{
    return static_cast<Action*>(new T(values...));
}

/** The action behind a handle, assumed without a check to be a T. */
template <class T>
T& action(void* a)
{
    return static_cast<T&>(*static_cast<Action*>(a));
}

} // namespace

// ----------------------------------------------------------------------------------- constructors

void* newActionPermit() { return make<ActionPermit>(); }
void* newActionDeny() { return make<ActionDeny>(); }
void* newActionCopyToCpu() { return make<ActionCopyToCpu>(); }

void* newActionBlockEgressPorts(const limid_t* ports, uint32_t count)
{
    return make<ActionBlockEgressPorts>(std::list<limid_t>(ports, ports + count));
}

void* newActionCopyToCpuCancel() { return make<ActionCopyToCpuCancel>(COPY_TO_CPU_CANCEL); }
void* newActionSwitchToCpuCancel() { return make<ActionCopyToCpuCancel>(SWITCH_TO_CPU_CANCEL); }

void* newActionSetPcp(unsigned char pcp) { return make<ActionSetPcp>(pcp); }
void* newActionSetPcpAndQueue(unsigned char pcpAndQueue)
{
    return make<ActionSetPcpAndQueue>(pcpAndQueue);
}
void* newActionSetDSCP(unsigned char dscp) { return make<ActionSetDSCP>(dscp); }
void* newActionMapToCosQueue(unsigned char queue) { return make<ActionMapToCosQueue>(queue); }
void* newActionMapToCpuCosQueue(unsigned char queue) { return make<ActionMapToCpuCosQueue>(queue); }

void* newReplaceDstMac(const ether_addr* mac) { return make<ActionReplaceDstMac>(*mac); }
void* newActionRedirect(const limid_t* port) { return make<ActionRedirect>(*port); }
void* newActionRedirectCancel() { return make<ActionRedirectCancel>(); }
void* newReplaceSrcMac(const ether_addr* mac) { return make<ActionReplaceSrcMac>(*mac); }

void* newActionL3Switch(unsigned int l3DestinationId)
{
    return make<ActionL3Switch>(l3DestinationId);
}

// ------------------------------------------------------------------------------------- any action

void deleteAction(void* a)
{
    REQUIRE_ACTION("void FiltersCommon::deleteAction(void*)");
    delete static_cast<Action*>(a);
}

filtersAction_t actionGetType(void* a)
{
    REQUIRE_ACTION("FiltersCommon::filtersAction_t FiltersCommon::actionGetType(void*)");
    return action<Action>(a).getType();
}

// ---------------------------------------------------------------------------------------- getters

cp2cpuCancelParam_t actionCopyToCpuCancelGetTypeOfCancel(void* a)
{
    return action<ActionCopyToCpuCancel>(a).getCancelType();
}

unsigned char actionSetPcpGetPcp(void* a) { return action<ActionSetPcp>(a).getPcp(); }

unsigned char actionSetPcpAndQueueGetPcpAndQueue(void* a)
{
    return action<ActionSetPcpAndQueue>(a).getPcpAndQueue();
}

unsigned char actionSetDSCPGetDSCP(void* a) { return action<ActionSetDSCP>(a).getDSCP(); }

unsigned char actionMapToCosQueueGetCosQueue(void* a)
{
    return action<ActionMapToCosQueue>(a).getCosQueue();
}

unsigned int actionL3SwitchGetL3DestinationId(void* a)
{
    return action<ActionL3Switch>(a).getL3DestinationId();
}

} // namespace FiltersCommon
