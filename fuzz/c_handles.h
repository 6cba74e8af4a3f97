/**
 * Matches and actions from the constructors of the C interface, with values that the input decides.
 */
#ifndef FILTER_COMMON_FUZZ_C_HANDLES_H
#define FILTER_COMMON_FUZZ_C_HANDLES_H

#include "any_objects.h"
#include "require.h"

#include "c_support.h"
#include "kinds.h"

#include <cstddef>
#include <iterator>
#include <list>
#include <tuple>
#include <vector>

namespace FiltersCommon::fuzz {

/** Calls a constructor with arguments taken from the input one by one. */
template <class... Arguments>
void* call(void* (*create)(Arguments...), ByteSource& in)
{
    const std::tuple<Arguments...> arguments{anyValue<Arguments>(in)...};
    return std::apply(create, arguments);
}

/** A constructor that takes a pointer to its only argument. */
template <class T>
void* call(void* (*create)(const T*), ByteSource& in)
{
    const T value = anyValue<T>(in);
    return create(&value);
}

/** A constructor that takes a list of ports. */
inline void* call(void* (*create)(const limid_t*, std::uint32_t), ByteSource& in)
{
    const auto ports = anyValue<std::list<limid_t>>(in);
    const std::vector<limid_t> array(ports.begin(), ports.end());
    return create(array.empty() ? nullptr : array.data(), static_cast<std::uint32_t>(array.size()));
}

template <auto create>
void* made(ByteSource& in)
{
    return call(create, in);
}

using Make = void* (*)(ByteSource&);

constexpr Make MATCHES_IN_C[] = {
    made<newMatchAll>,
    made<newMatchIngressPorts>,
    made<newMatchEgressPorts>,
    made<newMatchExternalVlanId>,
    made<newMatchInternalVlanId>,
    made<newMatchTPID>,
    made<newMatchDstL4Port>,
    made<newMatchDstL4PortMask>,
    made<newMatchSrcL4Port>,
    made<newMatchSrcL4PortMask>,
    made<newMatchDstMac>,
    made<newMatchDstMacMask>,
    made<newMatchSrcMac>,
    made<newMatchSrcMacMask>,
    made<newMatchL2SrcEntryType>,
    made<newMatchSrcIPv4>,
    made<newMatchSrcIPv4Mask>,
    made<newMatchDstIPv4>,
    made<newMatchDstIPv4Mask>,
    made<newMatchPcp>,
    made<newMatchInternalPcp>,
    made<newMatchSrcIPv6>,
    made<newMatchDstIPv6>,
    made<newMatchDstIPv6Mask>,
    made<newMatchVlanUntagged>,
    made<newMatchIpProtocol>,
    made<newMatchPacketRes>,
    made<newMatchMplsTerm>,
    made<newMatchDSCP>,
    made<newMatchTTL>,
    made<newMatchVirtualPort>,
    made<newMatchIngressStpState>,
    made<newMatchVlanInfo>,
    made<newMatchSrcPort>,
    made<newMatchVrfId>,
    made<newMatchDrop>,
    made<newMatchCpuPort>,
};

constexpr Make ACTIONS_IN_C[] = {
    made<newActionPermit>,           made<newActionDeny>,
    made<newActionCopyToCpu>,        made<newActionBlockEgressPorts>,
    made<newActionCopyToCpuCancel>,  made<newActionSwitchToCpuCancel>,
    made<newActionSetPcp>,           made<newActionSetPcpAndQueue>,
    made<newActionSetDSCP>,          made<newActionMapToCosQueue>,
    made<newActionMapToCpuCosQueue>, made<newReplaceDstMac>,
    made<newActionRedirect>,         made<newActionRedirectCancel>,
    made<newReplaceSrcMac>,          made<newActionL3Switch>,
};

// ----------------------------------------------------------------------------------------- getters

/** If the object is a T, checks that the C getters agree with those of the class. */
template <class T, class Base, class Agree>
void requireInC(Base& object, Agree agree)
{
    if (const T* exact = as<T>(object))
        require(agree(*exact), "C reads the values that the class reads");
}

inline void checkGettersInC(Match& object)
{
    Match* const m = &object;
    require(matchGetType(m) == object.getType(), "C reads the kind of a match");
    requireInC<MatchMac>(object, [m](const MatchMac& match) {
        return matchMacGetMac(m) == match.getMac() && matchMacGetMask(m) == match.getMask();
    });
    requireInC<MatchLimId>(object, [m](const MatchLimId& match) {
        return test::same(matchGetLimId(m), match.getLimId());
    });
    requireInC<MatchL4Port>(object, [m](const MatchL4Port& match) {
        return matchGetL4Port(m) == match.getPort() && matchGetL4PortMask(m) == match.getMask();
    });
    requireInC<MatchIPv4>(object, [m](const MatchIPv4& match) {
        return matchIPv4GetIPv4(m) == match.getIPv4() &&
               matchIPv4GetIPv4Mask(m) == match.getIPv4Mask();
    });
    requireInC<MatchIPv6>(object, [m](const MatchIPv6& match) {
        return matchIPv6GetIPv6(m) == match.getIPv6() &&
               matchIPv6GetIPv6Mask(m) == match.getIPv6Mask();
    });
    requireInC<MatchTPID>(object, [](const MatchTPID& match) {
        return matchGetTPID(const_cast<MatchTPID*>(&match)) == match.getTPID();
    });
    requireInC<MatchL2SrcEntryType>(object, [](const MatchL2SrcEntryType& match) {
        return matchGetL2SrcEntryType(const_cast<MatchL2SrcEntryType*>(&match)) ==
               match.getL2SrcEntryType();
    });
    requireInC<MatchVlanInfo>(object, [m](const MatchVlanInfo& match) {
        return test::same(matchVlanInfoGet(m), match.getVlanInfo());
    });

#define SAME(Class, getInC, get)                                                                   \
    requireInC<Class>(object, [m](const Class& match) { return getInC(m) == match.get(); });
    SAME(MatchPcp, matchPcpGet, getPcp)
    SAME(MatchInternalPcp, matchInternalPcpGet, getPcp)
    SAME(MatchIpProtocol, matchIpProtocolGetIpProt, getIpProtocol)
    SAME(MatchPacketRes, matchPacketResGet, getPktRes)
    SAME(MatchMplsTerm, matchMplsTermGet, getMplsTerm)
    SAME(MatchDSCP, matchDSCPGet, getDSCP)
    SAME(MatchTTL, matchTTLGet, getTTL)
    SAME(MatchIngressStpState, matchIngressStpStateGet, getIngressStpState)
    SAME(MatchVrfId, matchVrfIdGet, getVrfId)
    SAME(MatchDrop, matchDropGet, getDropFlag)
#undef SAME
}

inline void checkGettersInC(Action& object)
{
    Action* const a = &object;
    require(actionGetType(a) == object.getType(), "C reads the kind of an action");

#define SAME(Class, getInC, get)                                                                   \
    requireInC<Class>(object, [a](const Class& action) { return getInC(a) == action.get(); });
    SAME(ActionCopyToCpuCancel, actionCopyToCpuCancelGetTypeOfCancel, getCancelType)
    SAME(ActionSetPcp, actionSetPcpGetPcp, getPcp)
    SAME(ActionSetPcpAndQueue, actionSetPcpAndQueueGetPcpAndQueue, getPcpAndQueue)
    SAME(ActionSetDSCP, actionSetDSCPGetDSCP, getDSCP)
    SAME(ActionMapToCosQueue, actionMapToCosQueueGetCosQueue, getCosQueue)
    SAME(ActionL3Switch, actionL3SwitchGetL3DestinationId, getL3DestinationId)
#undef SAME
}

// ----------------------------------------------------------------------------------------- handles

inline test::Handle<Match> anyMatchInC(ByteSource& in)
{
    return test::Handle<Match>(
        static_cast<Match*>(MATCHES_IN_C[in.below(std::size(MATCHES_IN_C))](in)));
}

inline test::Handle<Action> anyActionInC(ByteSource& in)
{
    return test::Handle<Action>(
        static_cast<Action*>(ACTIONS_IN_C[in.below(std::size(ACTIONS_IN_C))](in)));
}

} // namespace FiltersCommon::fuzz

#endif // FILTER_COMMON_FUZZ_C_HANDLES_H
