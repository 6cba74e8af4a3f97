/**
 * For tests that cover every class: lists of the classes, sample objects, and a look at the layout
 * of objects.
 */
#ifndef FILTER_COMMON_TESTS_SAMPLES_H
#define FILTER_COMMON_TESTS_SAMPLES_H

#include "kind_codes.h"
#include "support.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstring>
#include <list>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <vector>

namespace FiltersCommon::test {

// ----------------------------------------------------------------------------------------- values

/** A value for the first argument of a constructor, or for the mask that follows it. */
template <class V>
V sampleValue(std::size_t position)
{
    const bool isMask = position == 1;
    if constexpr (std::is_same_v<V, bool>)
        return true;
    else if constexpr (std::is_same_v<V, ether_addr>)
        return mac(isMask ? "ff:ff:ff:00:00:f0" : "02:10:20:30:40:50");
    else if constexpr (std::is_same_v<V, in_addr>)
        return ipv4(isMask ? "255.255.240.0" : "192.0.2.1");
    else if constexpr (std::is_same_v<V, in6_addr>)
        return ipv6(isMask ? "ffff:ffff:ffff::" : "2001:db8::1");
    else if constexpr (std::is_same_v<V, limid_t>)
        return limId(0, 1, 0, 2);
    else if constexpr (std::is_same_v<V, vlan_info_t>)
        return {0x01020304};
    else if constexpr (std::is_same_v<V, std::list<limid_t>>)
        return {limId(0, 1, 0, 2), limId(1, 0, 0, 7)};
    else if constexpr (std::is_same_v<V, std::set<unsigned short>>)
        return {100, 4094};
    else
        return static_cast<V>(isMask ? 0xF0F0 : 0x01020328);
}

/** Values that differ from @p value in one byte, one for each byte. */
template <class V>
std::vector<V> othersThan(const V& value)
{
    static_assert(std::is_trivially_copyable_v<V>);
    std::vector<V> others;
    for (std::size_t i = 0; i < sizeof(V); ++i) {
        std::array<unsigned char, sizeof(V)> bytes;
        std::memcpy(bytes.data(), &value, sizeof(V));
        bytes[i] ^= 1;
        V other = value;
        std::memcpy(&other, bytes.data(), sizeof(V));
        others.push_back(other);
    }
    return others;
}

/** Lists in another order, of another length, or with another port. */
inline std::vector<std::list<limid_t>> othersThan(const std::list<limid_t>& ports)
{
    const std::list<limid_t> reversed(ports.rbegin(), ports.rend());
    const std::list<limid_t> shorter(ports.begin(), std::prev(ports.end()));
    std::list<limid_t> longer(ports);
    longer.push_back(ports.back());
    std::vector<std::list<limid_t>> others = {reversed, shorter, longer, {}};
    for (const limid_t port : othersThan(ports.back())) {
        others.push_back(shorter);
        others.back().push_back(port);
    }
    return others;
}

inline std::vector<std::set<unsigned short>> othersThan(const std::set<unsigned short>&)
{
    return {{}, {100}, {4094}, {100, 4095}, {101, 4094}, {100, 101, 4094}};
}

// ---------------------------------------------------------------------------------------- classes

/** A code, its kind, a class of that kind, and the arguments of the class's longest constructor. */
template <int CODE_, auto KIND, class T, class... Arguments>
struct Row {
    static_assert(static_cast<int>(KIND) == CODE_ && T::KIND == KIND);

    using Class = T;
    static constexpr int CODE = CODE_;
    static constexpr bool HAS_VALUES = sizeof...(Arguments) != 0;

    static T sample() { return std::make_from_tuple<T>(arguments()); }

    /** The sample, and objects that differ from it in one argument. */
    static std::vector<T> variants()
    {
        std::vector<T> all = {sample()};
        addVariants(all, std::index_sequence_for<Arguments...>());
        return all;
    }

private:
    static std::tuple<Arguments...> arguments()
    {
        return arguments(std::index_sequence_for<Arguments...>());
    }

    template <std::size_t... I>
    static std::tuple<Arguments...> arguments(std::index_sequence<I...>)
    {
        return {sampleValue<Arguments>(I)...};
    }

    template <std::size_t... I>
    static void addVariants(std::vector<T>& all, std::index_sequence<I...>)
    {
        (addVariantsOf<I>(all), ...);
    }

    template <std::size_t I>
    static void addVariantsOf(std::vector<T>& all)
    {
        std::tuple<Arguments...> changed = arguments();
        for (const auto& other : othersThan(std::get<I>(arguments()))) {
            std::get<I>(changed) = other;
            all.push_back(std::make_from_tuple<T>(changed));
        }
    }
};

template <class... Rows>
struct ClassList {
    /** For TYPED_TEST_SUITE. */
    using Tests = testing::Types<Rows...>;

    static constexpr std::size_t SIZE = sizeof...(Rows);

    template <class T>
    static constexpr bool HAS = (std::is_same_v<typename Rows::Class, T> || ...);

    /** Calls @p function with an object of each row. */
    template <class Function>
    static void forEach(Function&& function)
    {
        (function(Rows{}), ...);
    }
};

// clang-format off
using MatchClasses = ClassList<
    Row<0, MATCH_ALL, MatchAll>,
    Row<1, MATCH_INGRESS_PORTS, MatchIngressPorts, std::list<limid_t>>,
    Row<2, MATCH_EXTERNAL_VLAN_ID, MatchExternalVlanId, std::set<unsigned short>>,
    Row<3, MATCH_TPID, MatchTPID, unsigned short>,
    Row<4, MATCH_DST_MAC, MatchDstMac, ether_addr, ether_addr>,
    Row<5, MATCH_DST_L4_PORT, MatchDstL4Port, unsigned short, unsigned short>,
    Row<6, MATCH_SRC_L4_PORT, MatchSrcL4Port, unsigned short, unsigned short>,
    Row<7, MATCH_SRC_MAC, MatchSrcMac, ether_addr, ether_addr>,
    Row<8, MATCH_L2_SRC_ENTRY_TYPE, MatchL2SrcEntryType, l2SrcEntryType_t>,
    Row<9, MATCH_SRC_IPV4, MatchSrcIPv4, in_addr, in_addr>,
    Row<10, MATCH_DST_IPV4, MatchDstIPv4, in_addr, in_addr>,
    Row<11, MATCH_INTERNAL_VLAN_ID, MatchInternalVlanId, std::set<unsigned short>>,
    Row<12, MATCH_PCP, MatchPcp, unsigned char>,
    Row<13, MATCH_INTERNAL_PCP, MatchInternalPcp, unsigned char>,
    Row<14, MATCH_SRC_IPV6, MatchSrcIPv6, in6_addr>,
    Row<15, MATCH_DST_IPV6, MatchDstIPv6, in6_addr, in6_addr>,
    Row<16, MATCH_VLAN_UNTAGGED, MatchVlanUntagged>,
    Row<17, MATCH_IP_PROTOCOL, MatchIpProtocol, unsigned char>,
    Row<18, MATCH_PACKET_RES, MatchPacketRes, en_Resolution>,
    Row<19, MATCH_MPLS_TERM, MatchMplsTerm, bool>,
    Row<20, MATCH_TOS, MatchToS, unsigned char>,
    Row<20, MATCH_TOS, MatchDSCP, unsigned char>,
    Row<21, MATCH_VIRTUAL_PORT, MatchVirtualPort, limid_t>,
    Row<22, MATCH_EGRESS_PORTS, MatchEgressPorts, std::list<limid_t>>,
    Row<23, MATCH_INGRESS_STP_STATE, MatchIngressStpState, en_StpState>,
    Row<24, MATCH_VLAN_INFO, MatchVlanInfo, vlan_info_t>,
    Row<25, MATCH_SRC_PORT, MatchSrcPort, limid_t>,
    Row<26, MATCH_TTL, MatchTTL, unsigned char>,
    Row<27, MATCH_VRF_ID, MatchVrfId, unsigned short>,
    Row<28, MATCH_DROP, MatchDrop, bool>,
    Row<29, MATCH_CPU_PORT, MatchCpuPort>,
    Row<30, MATCH_FORWARDING_TYPE, MatchForwardingType, en_ForwardingType>,
    Row<31, MATCH_DESTINATION_CPU, MatchDestinationCpu>>;

using ActionClasses = ClassList<
    Row<0, ACTION_PERMIT, ActionPermit>,
    Row<1, ACTION_DENY, ActionDeny>,
    Row<2, ACTION_COPY_TO_CPU, ActionCopyToCpu>,
    Row<3, ACTION_BLOCK_EGRESS_PORTS, ActionBlockEgressPorts, std::list<limid_t>>,
    Row<4, ACTION_COPY_TO_CPU_CANCEL, ActionCopyToCpuCancel, cp2cpuCancelParam_t>,
    Row<5, ACTION_SET_PCP, ActionSetPcp, unsigned char>,
    Row<6, ACTION_SET_PCP_AND_QUEUE, ActionSetPcpAndQueue, unsigned char>,
    Row<7, ACTION_SET_INNER_PCP, ActionSetInnerPcp, unsigned char>,
    Row<8, ACTION_SET_DSCP, ActionSetDSCP, unsigned char>,
    Row<9, ACTION_MAP_TO_COS_QUEUE, ActionMapToCosQueue, unsigned char>,
    Row<10, ACTION_MAP_TO_CPU_COS_QUEUE, ActionMapToCpuCosQueue, unsigned char>,
    Row<11, ACTION_REDIRECT, ActionRedirect, limid_t>,
    Row<12, ACTION_REPLACE_DST_MAC, ActionReplaceDstMac, ether_addr>,
    Row<13, ACTION_REDIRECT_CANCEL, ActionRedirectCancel>,
    Row<14, ACTION_REPLACE_SRC_MAC, ActionReplaceSrcMac, ether_addr>,
    Row<15, ACTION_L3_SWITCH, ActionL3Switch, unsigned int>,
    Row<16, ACTION_BLACK_HOLE, ActionBlackHole>>;
// clang-format on

#define FILTERS_COMMON_HAS_ROW(kind, Class, Values)                                                \
    static_assert(MatchClasses::HAS<Class> || ActionClasses::HAS<Class>, "a row for " #Class);
FILTERS_COMMON_EACH_MATCH_KIND(FILTERS_COMMON_HAS_ROW)
FILTERS_COMMON_EACH_ACTION_KIND(FILTERS_COMMON_HAS_ROW)
#undef FILTERS_COMMON_HAS_ROW

/** Sets the sample of every class. An entry without IPv6 addresses takes all but these. */
inline void fill(FiltersEntry& entry)
{
    MatchClasses::forEach([&](auto row) { entry.setMatch(row.sample()); });
    ActionClasses::forEach([&](auto row) { entry.setAction(row.sample()); });
}

template <class Classes>
std::set<std::uint32_t> codesWithoutValues()
{
    std::set<std::uint32_t> codes;
    Classes::forEach([&](auto row) {
        if (!row.HAS_VALUES)
            codes.insert(row.CODE);
    });
    return codes;
}

// ----------------------------------------------------------------------------------------- layout

template <class T>
std::string rawBytes(const T& value)
{
    static_assert(std::is_trivially_copyable_v<T>);
    return {reinterpret_cast<const char*>(&value), sizeof value};
}

inline std::string rawBytes(const std::list<limid_t>& ports)
{
    std::string bytes;
    for (const limid_t& port : ports)
        bytes += rawBytes(port);
    return bytes;
}

constexpr std::size_t NOWHERE = std::string_view::npos;

/** The offset of the first occurrence of the bytes of @p value in the object. */
template <class T, class V>
std::size_t positionIn(const T& object, const V& value)
{
    static_assert(std::is_trivially_copyable_v<V>);
    return std::string_view(reinterpret_cast<const char*>(&object), sizeof object)
        .find(std::string_view(reinterpret_cast<const char*>(&value), sizeof value));
}

/** The index of a virtual function in the table of its class; -1 if it is not virtual. */
template <class Function>
int slotOf(Function function)
{
    struct Probe {
        virtual ~Probe() = default;
        virtual void third() {}
    };
    using Words = std::array<std::ptrdiff_t, 2>; // the offset in the table, and a flag in either
    static_assert(sizeof(Function) == sizeof(Words));
    const auto wordsOf = [](auto member) {
        Words words;
        std::memcpy(words.data(), &member, sizeof words);
        return words;
    };
    constexpr auto WIDTH = static_cast<std::ptrdiff_t>(sizeof(void*));
    const std::size_t flagged = wordsOf(&Probe::third)[0] % WIDTH == 1 ? 0 : 1;
    const Words words = wordsOf(function);
    if (words[flagged] % 2 == 0)
        return -1;
    return static_cast<int>(words[0] / WIDTH);
}

} // namespace FiltersCommon::test

#endif // FILTER_COMMON_TESTS_SAMPLES_H
