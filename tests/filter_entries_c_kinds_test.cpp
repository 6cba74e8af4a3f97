/**
 * C callers pass objects to an entry that are not of their kind's class.
 */
#include "c_support.h"
#include "samples.h"

#include <gtest/gtest.h>

#include <list>
#include <string>
#include <typeinfo>

namespace FiltersCommon {
namespace {

using test::ActionClasses;
using test::limId;
using test::MatchClasses;

const std::list<limid_t> PORTS = {limId(1, 2, 3, 4)};

/** One entry holds the sample of a kind, the other holds nothing. */
class LyingObjects : public testing::Test {
protected:
    /** Both entries are unchanged. */
    void expectUnchanged(const FiltersEntry& before) const
    {
        EXPECT_TRUE(holder_ == before);
        EXPECT_TRUE(empty_ == FiltersEntry(1));
    }

    void expectRefused(Match& match)
    {
        const FiltersEntry before(holder_);
        for (FiltersEntry* entry : {&holder_, &empty_}) {
            EXPECT_EQ(filtersEntrySetMatch(entry, &match), FILTERS_ERR_INVALID);
            EXPECT_EQ(filtersEntryGetMatch(entry, &match), FILTERS_ERR_INVALID);
        }
        expectUnchanged(before);
    }

    void expectRefused(Action& action)
    {
        const FiltersEntry before(holder_);
        for (FiltersEntry* entry : {&holder_, &empty_}) {
            EXPECT_EQ(filtersEntrySetAction(entry, &action), FILTERS_ERR_INVALID);
            EXPECT_EQ(filtersEntryGetAction(entry, &action), FILTERS_ERR_INVALID);
        }
        expectUnchanged(before);
    }

    /** The object is read, set and stored as a T. */
    template <class T>
    void expectTakenAs(Match& match)
    {
        EXPECT_EQ(filtersEntryGetMatch(&holder_, &match), FILTERS_OK);
        EXPECT_EQ(filtersEntryGetMatch(&empty_, &match), FILTERS_ERR_NOT_FOUND);
        EXPECT_EQ(filtersEntrySetMatch(&empty_, &match), FILTERS_OK);
        expectOnly<T>(empty_.getMatchesRef(), match.getType());
    }

    template <class T>
    void expectTakenAs(Action& action)
    {
        EXPECT_EQ(filtersEntryGetAction(&holder_, &action), FILTERS_OK);
        EXPECT_EQ(filtersEntryGetAction(&empty_, &action), FILTERS_ERR_NOT_FOUND);
        EXPECT_EQ(filtersEntrySetAction(&empty_, &action), FILTERS_OK);
        expectOnly<T>(empty_.getActionsRef(), action.getType());
    }

    FiltersEntry holder_{1};
    FiltersEntry empty_{1};

private:
    template <class T, class Map>
    static void expectOnly(const Map& map, typename Map::key_type kind)
    {
        ASSERT_EQ(map.size(), 1u);
        EXPECT_EQ(map.begin()->first, kind);
        const auto& stored = *map.begin()->second;
        EXPECT_STREQ(typeid(stored).name(), typeid(T).name());
    }
};

// ----------------------------------------------------------------------------------- bare objects

/** A test for each kind. */
template <class Row>
class BareMatch : public LyingObjects {};
TYPED_TEST_SUITE(BareMatch, MatchClasses::Tests, );

TYPED_TEST(BareMatch, IsRefusedUnlessItsKindHasNoValues)
{
    this->holder_.setMatch(TypeParam::sample());
    Match bare(static_cast<filtersMatch_t>(TypeParam::CODE));
    if constexpr (TypeParam::HAS_VALUES)
        this->expectRefused(bare);
    else
        this->template expectTakenAs<typename TypeParam::Class>(bare);
}

template <class Row>
class BareAction : public LyingObjects {};
TYPED_TEST_SUITE(BareAction, ActionClasses::Tests, );

TYPED_TEST(BareAction, IsRefusedUnlessItsKindHasNoParameters)
{
    this->holder_.setAction(TypeParam::sample());
    Action bare(static_cast<filtersAction_t>(TypeParam::CODE));
    if constexpr (TypeParam::HAS_VALUES)
        this->expectRefused(bare);
    else
        this->template expectTakenAs<typename TypeParam::Class>(bare);
}

// --------------------------------------------------------------------------------- value families

TEST_F(LyingObjects, AValueFamilyIsNotTheClassOfAKind)
{
    MatchPorts ports(MATCH_EGRESS_PORTS, PORTS);
    expectRefused(ports);
    MatchLimId port(MATCH_SRC_PORT, PORTS.front());
    expectRefused(port);
    MatchL4Port l4Port(MATCH_DST_L4_PORT, 80);
    expectRefused(l4Port);
    MatchVlanId vlanId(MATCH_EXTERNAL_VLAN_ID, {100});
    expectRefused(vlanId);
    MatchMac mac(MATCH_DST_MAC, test::mac("2:0:0:0:0:1"));
    expectRefused(mac);
    MatchIPv4 v4(MATCH_SRC_IPV4, test::ipv4("192.0.2.1"));
    expectRefused(v4);
    MatchIPv6 v6(MATCH_DST_IPV6, test::ipv6("2001:db8::1"));
    expectRefused(v6);
    ActionPorts blocked(ACTION_BLOCK_EGRESS_PORTS, PORTS);
    expectRefused(blocked);
}

TEST_F(LyingObjects, AValueFamilyUnderTheCodeOfAnotherClassIsRefused)
{
    MatchPorts pcp(MATCH_PCP, PORTS);
    expectRefused(pcp);
    MatchMac v6(MATCH_SRC_IPV6, test::mac("2:0:0:0:0:1"));
    expectRefused(v6);
    MatchLimId forwarding(MATCH_FORWARDING_TYPE, PORTS.front());
    expectRefused(forwarding);
    ActionPorts l3Switch(ACTION_L3_SWITCH, PORTS);
    expectRefused(l3Switch);
    ActionPorts redirect(ACTION_REDIRECT, PORTS);
    expectRefused(redirect);
}

TEST_F(LyingObjects, AValueFamilyUnderACodeWithoutValuesCountsAsItsClass)
{
    holder_.setMatch(MatchCpuPort());
    MatchPorts cpuPort(MATCH_CPU_PORT, PORTS);
    expectTakenAs<MatchCpuPort>(cpuPort);
    EXPECT_EQ(cpuPort.getPorts().size(), 1u);
    holder_.setAction(ActionPermit());
    ActionPorts permit(ACTION_PERMIT, PORTS);
    expectTakenAs<ActionPermit>(permit);
    EXPECT_EQ(permit.getPorts().size(), 1u);
}

// ------------------------------------------------------------------------ classes of the caller's

/** A caller's class with a member of its own. */
template <class Base>
class Own : public Base {
public:
    using Base::Base;

    int own() const { return own_; }

private:
    int own_ = 42;
};

TEST_F(LyingObjects, AClassOfTheCallersBesideTheClassOfTheKindIsRefused)
{
    Own<Match> pcp(MATCH_PCP);
    expectRefused(pcp);
    Own<Match> forwarding(MATCH_FORWARDING_TYPE);
    expectRefused(forwarding);
    Own<Match> unknown(test::UNKNOWN_MATCH);
    expectRefused(unknown);
    Own<Action> setPcp(ACTION_SET_PCP);
    expectRefused(setPcp);
    Own<Action> unknownAction(test::UNKNOWN_ACTION);
    expectRefused(unknownAction);
}

TEST_F(LyingObjects, AClassOfTheCallersUnderACodeWithoutValuesCountsAsItsClass)
{
    holder_.setMatch(MatchAll());
    Own<Match> all(MATCH_ALL);
    expectTakenAs<MatchAll>(all);
    EXPECT_EQ(all.own(), 42);
    holder_.setAction(ActionDeny());
    Own<Action> deny(ACTION_DENY);
    expectTakenAs<ActionDeny>(deny);
    EXPECT_EQ(deny.own(), 42);
}

TEST_F(LyingObjects, AClassDerivedFromTheClassOfTheKindCountsAsIt)
{
    holder_.setMatch(MatchPcp(3));
    Own<MatchPcp> pcp(5);
    expectTakenAs<MatchPcp>(pcp);
    EXPECT_EQ(pcp.getPcp(), 3);
    EXPECT_EQ(pcp.own(), 42);

    holder_.setAction(ActionL3Switch(300000));
    Own<ActionL3Switch> l3Switch(5);
    expectTakenAs<ActionL3Switch>(l3Switch);
    EXPECT_EQ(l3Switch.getL3DestinationId(), 300000u);
    EXPECT_EQ(l3Switch.own(), 42);
}

TEST_F(LyingObjects, AClassDerivedFromForwardingTypeIsRefusedLikeIt)
{
    holder_.setMatch(MatchForwardingType(static_cast<en_ForwardingType>(3)));
    Own<MatchForwardingType> forwarding(static_cast<en_ForwardingType>(5));
    expectRefused(forwarding);
    EXPECT_EQ(forwarding.getForwardingType(), 5);
}

} // namespace
} // namespace FiltersCommon
