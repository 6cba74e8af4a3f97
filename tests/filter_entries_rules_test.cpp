#include "samples.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <list>
#include <set>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <utility>

namespace FiltersCommon {
namespace {

using test::ipv4;
using test::ipv6;
using test::limId;
using test::stateOf;

using Codes = std::set<std::uint32_t>;

static_assert(std::is_same_v<decltype(FiltersEntry::validMatchTypes), const Codes>);
static_assert(std::is_same_v<decltype(FiltersEntry::validActionTypes), const Codes>);
static_assert(std::is_same_v<decltype(FiltersEntry::ipv4OnlyMatchTypes), const Codes>);
static_assert(std::is_same_v<decltype(FiltersEntry::ipv6OnlyMatchTypes), const Codes>);

// ------------------------------------------------------------------------------------- registries

template <class T>
std::uint32_t hash()
{
    return static_cast<std::uint32_t>(typeid(T).hash_code());
}

template <class Classes>
Codes hashes()
{
    Codes codes;
    Classes::forEach([&](auto row) { codes.insert(hash<typename decltype(row)::Class>()); });
    return codes;
}

TEST(EntryRegistries, HoldTheHashOfEveryMatchClass)
{
    EXPECT_EQ(FiltersEntry::validMatchTypes, hashes<test::MatchClasses>());
    EXPECT_EQ(FiltersEntry::validMatchTypes.size(), test::MatchClasses::SIZE);
}

TEST(EntryRegistries, HoldTheHashOfEveryActionClass)
{
    EXPECT_EQ(FiltersEntry::validActionTypes, hashes<test::ActionClasses>());
    EXPECT_EQ(FiltersEntry::validActionTypes.size(), test::ActionClasses::SIZE);
}

TEST(EntryRegistries, HoldTheCodesOfTheAddressKinds)
{
    EXPECT_EQ(FiltersEntry::ipv4OnlyMatchTypes, (Codes{9, 10}));
    EXPECT_EQ(FiltersEntry::ipv6OnlyMatchTypes, (Codes{14, 15}));
}

// --------------------------------------------------------------------------- unregistered classes

class OwnMatch : public Match {
public:
    OwnMatch() : Match(MATCH_PCP) {}
};

class OwnPcp : public MatchPcp {
public:
    using MatchPcp::MatchPcp;
};

class OwnDscp : public MatchDSCP {
public:
    using MatchDSCP::MatchDSCP;
};

class OwnAction : public Action {
public:
    OwnAction() : Action(ACTION_DENY) {}
};

class OwnDeny : public ActionDeny {};

/** Holds most of the kinds used below, so that only the class can be the reason to refuse. */
FiltersEntry heldEntry()
{
    FiltersEntry entry(7);
    entry.setMatch(MatchPcp(3));
    entry.setMatch(MatchToS(3));
    entry.setMatch(MatchAll());
    entry.setMatch(MatchIngressPorts(std::list<limid_t>{limId(1, 2, 3, 4)}));
    entry.setMatch(MatchVirtualPort(limId(1, 2, 3, 4)));
    entry.setMatch(MatchDstL4Port(80));
    entry.setMatch(MatchExternalVlanId(100));
    entry.setMatch(MatchDstMac(ether_addr()));
    entry.setMatch(MatchSrcIPv4(ipv4("192.0.2.1")));
    entry.setAction(ActionDeny());
    entry.setAction(ActionBlockEgressPorts({limId(1, 2, 3, 4)}));
    return entry;
}

template <class T>
void expectUnregisteredMatch(T match)
{
    FiltersEntry entry = heldEntry();
    EXPECT_EQ(entry.setMatch(match), FILTERS_ERR_INVALID);
    EXPECT_EQ(entry.getMatch(match), FILTERS_ERR_INVALID);
    EXPECT_EQ(FiltersEntry().getMatch(match), FILTERS_ERR_INVALID);
    EXPECT_EQ(stateOf(entry), stateOf(heldEntry()));
    EXPECT_EQ(FiltersEntry::validMatchTypes.count(hash<T>()), 0u);
}

template <class T>
void expectUnregisteredAction(T action)
{
    FiltersEntry entry = heldEntry();
    EXPECT_EQ(entry.setAction(action), FILTERS_ERR_INVALID);
    EXPECT_EQ(entry.getAction(action), FILTERS_ERR_INVALID);
    EXPECT_EQ(FiltersEntry().getAction(action), FILTERS_ERR_INVALID);
    EXPECT_EQ(stateOf(entry), stateOf(heldEntry()));
    EXPECT_EQ(FiltersEntry::validActionTypes.count(hash<T>()), 0u);
}

TEST(UnregisteredClasses, BareMatchIsRefusedUnderEveryCode)
{
    for (const std::uint32_t code : test::knownAndUnknownCodes(test::MATCH_KINDS))
        expectUnregisteredMatch(Match(static_cast<filtersMatch_t>(code)));
}

TEST(UnregisteredClasses, FamiliesAreRefused)
{
    expectUnregisteredMatch(MatchPorts(MATCH_INGRESS_PORTS, std::list<limid_t>()));
    expectUnregisteredMatch(MatchLimId(MATCH_VIRTUAL_PORT, limId(0, 0, 0, 0)));
    expectUnregisteredMatch(MatchL4Port(MATCH_DST_L4_PORT, 1));
    expectUnregisteredMatch(MatchVlanId(MATCH_EXTERNAL_VLAN_ID, {1}));
    expectUnregisteredMatch(MatchMac(MATCH_DST_MAC, ether_addr()));
    expectUnregisteredMatch(MatchIPv4(MATCH_SRC_IPV4, ipv4("192.0.2.2")));
    expectUnregisteredMatch(MatchIPv6(MATCH_DST_IPV6, ipv6("::1")));
}

TEST(UnregisteredClasses, CallersOwnClassesAreRefused)
{
    expectUnregisteredMatch(OwnMatch());
    expectUnregisteredMatch(OwnPcp(5));
    expectUnregisteredMatch(OwnDscp(5));
    expectUnregisteredAction(OwnAction());
    expectUnregisteredAction(OwnDeny());
}

TEST(UnregisteredClasses, BareActionIsRefusedUnderEveryCode)
{
    for (const std::uint32_t code : test::knownAndUnknownCodes(test::ACTION_KINDS))
        expectUnregisteredAction(Action(static_cast<filtersAction_t>(code)));
}

TEST(UnregisteredClasses, ActionPortsIsRefused)
{
    expectUnregisteredAction(ActionPorts(ACTION_BLOCK_EGRESS_PORTS, {}));
}

TEST(UnregisteredClasses, ArgumentOfARefusedGetStays)
{
    OwnPcp match(5);
    EXPECT_EQ(heldEntry().getMatch(match), FILTERS_ERR_INVALID);
    EXPECT_EQ(match.getPcp(), 5);
}

// ------------------------------------------------------------------------------ IPv4 against IPv6

bool meets(int a, int b)
{
    const auto isIPv4 = [](int code) { return code == 9 || code == 10; };
    const auto isIPv6 = [](int code) { return code == 14 || code == 15; };
    return (isIPv4(a) && isIPv6(b)) || (isIPv6(a) && isIPv4(b));
}

/** Adds a match of a second class to an entry with one match; compiled once for each class. */
struct JoinsAnEntry {
    filtersMatch_t firstKind;
    FiltersEntry (*entryWithFirst)();

    template <class Second>
    void operator()(Second second) const
    {
        constexpr auto SECOND_KIND = static_cast<filtersMatch_t>(Second::CODE);
        const auto match = second.sample();
        const bool refused = meets(firstKind, SECOND_KIND);

        FiltersEntry entry = entryWithFirst();
        const std::string before = stateOf(entry);
        EXPECT_EQ(entry.isL3CompatibleMatch(match), !refused) << SECOND_KIND;
        EXPECT_EQ(stateOf(entry), before);
        EXPECT_EQ(entry.setMatch(match), refused ? FILTERS_ERR_INVALID : FILTERS_OK) << SECOND_KIND;
        EXPECT_EQ(entry.getMatchesRef().count(SECOND_KIND), refused ? 0u : 1u);
        EXPECT_EQ(entry.getMatchesRef().count(firstKind), 1u);
        if (refused) {
            EXPECT_EQ(stateOf(entry), before);
            EXPECT_EQ(entry.deleteMatch(firstKind), FILTERS_OK);
            EXPECT_TRUE(entry.isL3CompatibleMatch(match));
            EXPECT_EQ(entry.setMatch(match), FILTERS_OK) << SECOND_KIND;
        }
    }
};

template <class Row>
class EveryFirstMatch : public testing::Test {
protected:
    static FiltersEntry entryWithFirst()
    {
        FiltersEntry entry;
        EXPECT_EQ(entry.setMatch(Row::sample()), FILTERS_OK);
        return entry;
    }
};

TYPED_TEST_SUITE(EveryFirstMatch, test::MatchClasses::Tests, );

TYPED_TEST(EveryFirstMatch, IsJoinedByAnyOtherKindButAnAddressOfTheOtherVersion)
{
    const auto kind = static_cast<filtersMatch_t>(TypeParam::CODE);
    test::MatchClasses::forEach(JoinsAnEntry{kind, &TestFixture::entryWithFirst});
}

TYPED_TEST(EveryFirstMatch, JoinsAnEmptyEntry)
{
    FiltersEntry entry;
    EXPECT_TRUE(entry.isL3CompatibleMatch(TypeParam::sample()));
    EXPECT_EQ(entry.setMatch(TypeParam::sample()), FILTERS_OK);
    EXPECT_TRUE(entry.isL3CompatibleMatch(TypeParam::sample()));
    EXPECT_EQ(entry.setMatch(TypeParam::sample()), FILTERS_OK);
}

TEST(L3Rule, EntryWithASourceIPv4AdmitsTheDestinationAndNoIPv6)
{
    FiltersEntry entry;
    entry.setMatch(MatchSrcIPv4(ipv4("192.0.2.1")));
    EXPECT_EQ(entry.setMatch(MatchDstIPv6(ipv6("::1"))), FILTERS_ERR_INVALID);
    EXPECT_EQ(entry.setMatch(MatchSrcIPv6(ipv6("::1"))), FILTERS_ERR_INVALID);
    EXPECT_EQ(entry.setMatch(MatchDstIPv4(ipv4("192.0.2.1"))), FILTERS_OK);
    EXPECT_EQ(entry.setMatch(MatchSrcIPv4(ipv4("192.0.2.2"))), FILTERS_OK);
    EXPECT_EQ(entry.getMatchesRef().size(), 2u);
}

TEST(L3Rule, EntryWithADestinationIPv6AdmitsIPv4AfterItsDeletion)
{
    FiltersEntry entry;
    entry.setMatch(MatchDstIPv6(ipv6("::1")));
    EXPECT_EQ(entry.setMatch(MatchSrcIPv4(ipv4("192.0.2.1"))), FILTERS_ERR_INVALID);
    EXPECT_EQ(entry.deleteMatch(MATCH_DST_IPV6), FILTERS_OK);
    EXPECT_EQ(entry.setMatch(MatchSrcIPv4(ipv4("192.0.2.1"))), FILTERS_OK);
    EXPECT_EQ(entry.setMatch(MatchDstIPv6(ipv6("::1"))), FILTERS_ERR_INVALID);
}

TEST(L3Rule, BothAddressesOfAVersionMustGoBeforeTheOtherVersionComes)
{
    FiltersEntry entry;
    entry.setMatch(MatchSrcIPv4(ipv4("192.0.2.1")));
    entry.setMatch(MatchDstIPv4(ipv4("192.0.2.1")));
    entry.deleteMatch(MATCH_SRC_IPV4);
    EXPECT_EQ(entry.setMatch(MatchSrcIPv6(ipv6("::1"))), FILTERS_ERR_INVALID);
    entry.deleteMatch(MATCH_DST_IPV4);
    EXPECT_EQ(entry.setMatch(MatchSrcIPv6(ipv6("::1"))), FILTERS_OK);
}

TEST(L3Rule, RuleIsAskedForTheKindOfTheObjectOfAnyClass)
{
    FiltersEntry entry;
    entry.setMatch(MatchSrcIPv4(ipv4("192.0.2.1")));
    for (const std::uint32_t code : test::knownAndUnknownCodes(test::MATCH_KINDS)) {
        const auto kind = static_cast<filtersMatch_t>(code);
        EXPECT_EQ(entry.isL3CompatibleMatch(Match(kind)), !meets(9, kind)) << code;
        EXPECT_EQ(entry.isL3CompatibleMatch(MatchLimId(kind, limid_t())), !meets(9, kind)) << code;
    }
    EXPECT_TRUE(entry.isL3CompatibleMatch(OwnPcp(1)));
}

TEST(L3Rule, MovedInAndMovedOutMatchesCount)
{
    FiltersEntry source;
    source.setMatch(MatchSrcIPv4(ipv4("192.0.2.1")));
    FiltersEntry target;
    target.setMatch(MatchSrcIPv6(ipv6("::1")));
    target = std::move(source);
    EXPECT_EQ(target.setMatch(MatchSrcIPv6(ipv6("::1"))), FILTERS_ERR_INVALID);
    EXPECT_EQ(source.setMatch(MatchSrcIPv6(ipv6("::1"))), FILTERS_OK);
}

TEST(L3Rule, ActionsNeverExcludeEachOther)
{
    FiltersEntry entry;
    test::ActionClasses::forEach(
        [&](auto row) { EXPECT_EQ(entry.setAction(row.sample()), FILTERS_OK) << row.CODE; });
    EXPECT_EQ(entry.getActionsRef().size(), test::ACTION_KINDS);
}

} // namespace
} // namespace FiltersCommon
