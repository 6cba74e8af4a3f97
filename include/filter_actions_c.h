/**
 * Actions for callers that cannot use the classes. C11 and C++17.
 *
 *  1. Handles. A handle is an untyped pointer to an action. The caller owns the handle that a
 *     constructor returns and frees it with deleteAction. (Two constructors do not have "Action" in
 *     their names: newReplaceDstMac and newReplaceSrcMac.) Passing a handle to an entry
 *     (filter_entries_c.h) does not change its owner: the entry stores a copy. A function that
 *     names a class (Action*) takes the same handle; C converts it implicitly, C++ needs a
 *     static_cast.
 *  2. Null handles. deleteAction and actionGetType report one as a failed assertion
 *     ("a != nullptr") and end the process, even in release builds. The getters must not be given
 *     one. No function here returns a result code.
 *  3. Kinds. No getter checks the kind of its handle. Call actionGetType first: what a getter reads
 *     from an action of another kind is meaningless.
 *  4. Values are taken as they are; nothing is checked.
 *  5. Memory. A constructor never returns null. If memory runs out it throws std::bad_alloc, which
 *     ends the process unless a C++ caller further up catches it.
 *  6. Threads. Use an action from one thread at a time; different actions may be used concurrently.
 *
 * Deliberately not provided: constructors for ActionSetInnerPcp and ActionBlackHole; getters for
 * the inner PCP, the CPU queue, the MAC addresses and the port lists.
 */
#ifndef FILTER_COMMON_FILTER_ACTIONS_C_H
#define FILTER_COMMON_FILTER_ACTIONS_C_H

#include "filter_types.h"

#include <net/ethernet.h>
#include <stdint.h>

#pragma GCC visibility push(default)

#ifdef __cplusplus
namespace FiltersCommon {
extern "C" {
#endif

/* -------------------------------------------------------------------------------- constructors */

void* newActionPermit(void);
void* newActionDeny(void);
void* newActionCopyToCpu(void);

/** Holds the @p count ports in array order; the array may be null if @p count is 0. */
void* newActionBlockEgressPorts(const limid_t* ports, uint32_t count);

/** An action of kind ACTION_COPY_TO_CPU_CANCEL that cancels copying. */
void* newActionCopyToCpuCancel(void);
/** An action of kind ACTION_COPY_TO_CPU_CANCEL that cancels switching. */
void* newActionSwitchToCpuCancel(void);

void* newActionSetPcp(unsigned char pcp);
void* newActionSetPcpAndQueue(unsigned char pcpAndQueue);
void* newActionSetDSCP(unsigned char dscp);
void* newActionMapToCosQueue(unsigned char queue);
void* newActionMapToCpuCosQueue(unsigned char queue);

/** Copies the address, which must not be null. */
void* newReplaceDstMac(const struct ether_addr* mac);
/** Redirects to one port. Copies the port, which must not be null. */
void* newActionRedirect(const limid_t* port);
void* newActionRedirectCancel(void);
/** Copies the address, which must not be null. */
void* newReplaceSrcMac(const struct ether_addr* mac);

void* newActionL3Switch(unsigned int l3DestinationId);

/* ------------------------------------------------------------------ any action; ABORTS ON NULL */

void deleteAction(void* a);
filtersAction_t actionGetType(void* a);

/* -------------------------------------------------------------- getters; must not be given null */

cp2cpuCancelParam_t actionCopyToCpuCancelGetTypeOfCancel(void* a);
unsigned char actionSetPcpGetPcp(void* a);
unsigned char actionSetPcpAndQueueGetPcpAndQueue(void* a);
unsigned char actionSetDSCPGetDSCP(void* a);
unsigned char actionMapToCosQueueGetCosQueue(void* a);
unsigned int actionL3SwitchGetL3DestinationId(void* a);

#ifdef __cplusplus
} // extern "C"
} // namespace FiltersCommon
#endif

#pragma GCC visibility pop

#endif /* FILTER_COMMON_FILTER_ACTIONS_C_H */
