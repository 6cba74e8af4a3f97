/**
 * Size and alignment of the public classes, which are compiled into callers. Each row names the
 * members of a class in order, for every target. Nothing runs: this file compiles or it does not.
 */
#include "filter_groups.h"
#include "filter_groups_c.h"
#include "filter_refusals.h"

#include <cstddef>
#include <cstdint>

namespace FiltersCommon {
namespace {

/** The layout of the members in this order. A base class counts as its members. */
template <class... Members>
struct Layout {
    static constexpr std::size_t ALIGNMENT = [] {
        std::size_t largest = 1;
        ((largest = alignof(Members) > largest ? alignof(Members) : largest), ...);
        return largest;
    }();
    static constexpr std::size_t SIZE = [] {
        std::size_t end = 0;
        const auto place = [&end](std::size_t size, std::size_t alignment) {
            end = (end + alignment - 1) / alignment * alignment + size;
        };
        (place(sizeof(Members), alignof(Members)), ...);
        place(0, ALIGNMENT);
        return end;
    }();
};

/** The layout of a class. Every class needs a row below. */
template <class T>
struct LayoutOf;

using VTable = const void*;
template <class... Values>
using MatchOf = Layout<VTable, filtersMatch_t, Values...>;
template <class... Values>
using ActionOf = Layout<VTable, filtersAction_t, Values...>;

using Ports = std::list<limid_t>;
using Byte = unsigned char;

/** Where a map keeps its only object, or its block. */
struct alignas(void*) Room {
    std::byte bytes[16];
};

#define ROW(Class, ...)                                                                            \
    template <>                                                                                    \
    struct LayoutOf<Class> : __VA_ARGS__ {};

// clang-format off
ROW(Match,                  MatchOf<>)
ROW(MatchPorts,             MatchOf<Ports, std::list<port_type_t>>)
ROW(MatchLimId,             MatchOf<limid_t>)
ROW(MatchL4Port,            MatchOf<l4port_t, l4port_t>)
ROW(MatchVlanId,            MatchOf<std::set<unsigned short>>)
ROW(MatchMac,               MatchOf<ether_addr, ether_addr>)
ROW(MatchIPv4,              MatchOf<in_addr, in_addr>)
ROW(MatchIPv6,              MatchOf<in6_addr, in6_addr>)

ROW(MatchAll,               LayoutOf<Match>)
ROW(MatchIngressPorts,      LayoutOf<MatchPorts>)
ROW(MatchExternalVlanId,    LayoutOf<MatchVlanId>)
ROW(MatchTPID,              MatchOf<tpid_t>)
ROW(MatchDstMac,            LayoutOf<MatchMac>)
ROW(MatchDstL4Port,         LayoutOf<MatchL4Port>)
ROW(MatchSrcL4Port,         LayoutOf<MatchL4Port>)
ROW(MatchSrcMac,            LayoutOf<MatchMac>)
ROW(MatchL2SrcEntryType,    MatchOf<l2SrcEntryType_t>)
ROW(MatchSrcIPv4,           LayoutOf<MatchIPv4>)
ROW(MatchDstIPv4,           LayoutOf<MatchIPv4>)
ROW(MatchInternalVlanId,    LayoutOf<MatchVlanId>)
ROW(MatchPcp,               MatchOf<Byte>)
ROW(MatchInternalPcp,       MatchOf<Byte>)
ROW(MatchSrcIPv6,           LayoutOf<MatchIPv6>)
ROW(MatchDstIPv6,           LayoutOf<MatchIPv6>)
ROW(MatchVlanUntagged,      LayoutOf<Match>)
ROW(MatchIpProtocol,        MatchOf<Byte>)
ROW(MatchPacketRes,         MatchOf<en_Resolution>)
ROW(MatchMplsTerm,          MatchOf<bool>)
ROW(MatchToS,               MatchOf<Byte>)
ROW(MatchDSCP,              LayoutOf<MatchToS>)
ROW(MatchVirtualPort,       LayoutOf<MatchLimId>)
ROW(MatchEgressPorts,       LayoutOf<MatchPorts>)
ROW(MatchIngressStpState,   MatchOf<en_StpState>)
ROW(MatchVlanInfo,          MatchOf<vlan_info_t>)
ROW(MatchSrcPort,           LayoutOf<MatchLimId>)
ROW(MatchTTL,               MatchOf<Byte>)
ROW(MatchVrfId,             MatchOf<unsigned short>)
ROW(MatchDrop,              MatchOf<bool>)
ROW(MatchCpuPort,           LayoutOf<Match>)
ROW(MatchForwardingType,    MatchOf<en_ForwardingType>)
ROW(MatchDestinationCpu,    LayoutOf<Match>)

ROW(Action,                 ActionOf<>)
ROW(ActionPorts,            ActionOf<Ports>)

ROW(ActionPermit,           LayoutOf<Action>)
ROW(ActionDeny,             LayoutOf<Action>)
ROW(ActionCopyToCpu,        LayoutOf<Action>)
ROW(ActionBlockEgressPorts, LayoutOf<ActionPorts>)
ROW(ActionCopyToCpuCancel,  ActionOf<cp2cpuCancelParam_t>)
ROW(ActionSetPcp,           ActionOf<Byte>)
ROW(ActionSetPcpAndQueue,   ActionOf<Byte>)
ROW(ActionSetInnerPcp,      ActionOf<Byte>)
ROW(ActionSetDSCP,          ActionOf<Byte>)
ROW(ActionMapToCosQueue,    ActionOf<Byte>)
ROW(ActionMapToCpuCosQueue, ActionOf<Byte>)
ROW(ActionRedirect,         ActionOf<Ports>)
ROW(ActionReplaceDstMac,    ActionOf<ether_addr>)
ROW(ActionRedirectCancel,   LayoutOf<Action>)
ROW(ActionReplaceSrcMac,    ActionOf<ether_addr>)
ROW(ActionL3Switch,         ActionOf<unsigned int>)
ROW(ActionBlackHole,        LayoutOf<Action>)

ROW(Counter,                Layout<unsigned short, counter_type_t>)
ROW(FiltersSerialized,      Layout<VTable, std::uint32_t, char*>)
ROW(KindMap<Match>,         Layout<CodeSet<filtersMatch_t>, Room>)
ROW(KindMap<Action>,        Layout<CodeSet<filtersAction_t>, Room>)
ROW(KindMap<Match>::Iterator,
                            Layout<CodeSet<filtersMatch_t>, const std::byte*, filtersMatch_t,
                                   const Match*>)
ROW(FiltersEntry,           Layout<filtersEntryId_t, filtersEntryPriority_t, policer::Policer,
                                   Counter, KindMap<Match>, KindMap<Action>>)
ROW(FiltersGroup,           Layout<filtersGroupId_t, filtersGroupPriority_t, filtersGroupStage_t,
                                   filtersGroupType_t, FiltersGroup::EntryMap>)
ROW(CodeSet<filtersMatch_t>, Layout<std::uint64_t>)
ROW(FiltersRefusal,         Layout<filtersRefusalReason_t, std::optional<filtersEntryId_t>,
                                   std::optional<filtersMatch_t>, std::optional<filtersAction_t>,
                                   std::optional<policer::Stage>,
                                   std::optional<filtersGroupStage_t>,
                                   std::optional<filtersGroupType_t>,
                                   CodeSet<filtersMatch_t>, CodeSet<filtersAction_t>,
                                   CodeSet<policer::Stage>, CodeSet<filtersGroupStage_t>,
                                   CodeSet<filtersGroupType_t>, CodeSet<filtersMatch_t>,
                                   std::optional<std::uint64_t>, std::optional<filtersPart_t>,
                                   std::optional<std::uint32_t>, std::optional<std::uint64_t>,
                                   std::optional<std::uint64_t>>)
ROW(entriesStruct,          Layout<std::int32_t, filtersEntryId_t*, FiltersEntry**>)
// clang-format on

#define CHECK(Class)                                                                               \
    static_assert(sizeof(Class) == LayoutOf<Class>::SIZE);                                         \
    static_assert(alignof(Class) == LayoutOf<Class>::ALIGNMENT);
#define CHECK_KIND(kind, Class, Values) CHECK(Class)

CHECK(Match)
FILTERS_COMMON_MATCH_FAMILIES(CHECK)
FILTERS_COMMON_EACH_MATCH_KIND(CHECK_KIND)
CHECK(MatchDSCP)
CHECK(Action)
CHECK(ActionPorts)
FILTERS_COMMON_EACH_ACTION_KIND(CHECK_KIND)
CHECK(Counter)
CHECK(FiltersSerialized)
CHECK(KindMap<Match>)
CHECK(KindMap<Action>)
CHECK(KindMap<Match>::Iterator)
CHECK(FiltersEntry)
CHECK(FiltersGroup)
CHECK(CodeSet<filtersMatch_t>)
CHECK(FiltersRefusal)
CHECK(entriesStruct)

} // namespace
} // namespace FiltersCommon
