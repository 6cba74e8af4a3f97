#include "samples.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <vector>

namespace FiltersCommon {
namespace {

// --------------------------------------------------------------------------------- what it offers

static_assert(std::is_default_constructible_v<FiltersEntry>);
static_assert(std::is_constructible_v<FiltersEntry, const filtersEntryId_t&>);
static_assert(std::is_constructible_v<FiltersEntry, const std::string&>);
static_assert(std::is_constructible_v<FiltersEntry, const FiltersSerialized&>);
static_assert(std::is_copy_constructible_v<FiltersEntry>);
static_assert(!std::is_copy_assignable_v<FiltersEntry>);
static_assert(!std::is_assignable_v<FiltersEntry&, FiltersEntry&>);
static_assert(std::is_move_assignable_v<FiltersEntry>);

using Entry = FiltersEntry;
using Matches = std::map<filtersMatch_t, std::unique_ptr<Match>>;
using Actions = std::map<filtersAction_t, std::unique_ptr<Action>>;

#define EXPECT_MEMBER(name, ...) static_assert(std::is_same_v<decltype(&Entry::name), __VA_ARGS__>)
EXPECT_MEMBER(getId, filtersEntryId_t (Entry::*)() const);
EXPECT_MEMBER(setPriority, void (Entry::*)(const filtersEntryPriority_t&));
EXPECT_MEMBER(getPriority, filtersEntryPriority_t (Entry::*)() const);
EXPECT_MEMBER(setPolicer, filtersErr_t (Entry::*)(const policer::Policer&));
EXPECT_MEMBER(getPolicer, const policer::Policer& (Entry::*)() const);
EXPECT_MEMBER(setCounter, filtersErr_t (Entry::*)(const Counter&));
EXPECT_MEMBER(getCounter, const Counter& (Entry::*)() const);
EXPECT_MEMBER(deleteCounter, filtersErr_t (Entry::*)());
EXPECT_MEMBER(setMatch<MatchTTL>, filtersErr_t (Entry::*)(const MatchTTL&));
EXPECT_MEMBER(getMatch<MatchTTL>, filtersErr_t (Entry::*)(MatchTTL&) const);
EXPECT_MEMBER(deleteMatch, filtersErr_t (Entry::*)(filtersMatch_t));
EXPECT_MEMBER(isL3CompatibleMatch<MatchTTL>, bool (Entry::*)(MatchTTL) const);
EXPECT_MEMBER(setAction<ActionDeny>, filtersErr_t (Entry::*)(const ActionDeny&));
EXPECT_MEMBER(getAction<ActionDeny>, filtersErr_t (Entry::*)(ActionDeny&) const);
EXPECT_MEMBER(deleteAction, filtersErr_t (Entry::*)(filtersAction_t));
EXPECT_MEMBER(copyMatches, filtersErr_t (Entry::*)(const Matches&));
EXPECT_MEMBER(setMatches, filtersErr_t (Entry::*)(const Matches&));
EXPECT_MEMBER(copyActions, filtersErr_t (Entry::*)(const Actions&));
EXPECT_MEMBER(setActions, filtersErr_t (Entry::*)(const Actions&));
EXPECT_MEMBER(copyMatchesFrom, filtersErr_t (Entry::*)(const Entry&));
EXPECT_MEMBER(setMatchesFrom, filtersErr_t (Entry::*)(const Entry&));
EXPECT_MEMBER(copyActionsFrom, filtersErr_t (Entry::*)(const Entry&));
EXPECT_MEMBER(setActionsFrom, filtersErr_t (Entry::*)(const Entry&));
EXPECT_MEMBER(getMatchesRef, const KindMap<Match>& (Entry::*)() const);
EXPECT_MEMBER(getActionsRef, const KindMap<Action>& (Entry::*)() const);
#undef EXPECT_MEMBER

// ---------------------------------------------------------------------------- matches and actions

/** What the tests of match classes and of action classes have in common. */
template <class Row, bool IS_MATCH>
struct Access {
    using Class = typename Row::Class;

    static filtersErr_t set(FiltersEntry& entry, const Class& object)
    {
        if constexpr (IS_MATCH)
            return entry.setMatch(object);
        else
            return entry.setAction(object);
    }

    static filtersErr_t get(const FiltersEntry& entry, Class& object)
    {
        if constexpr (IS_MATCH)
            return entry.getMatch(object);
        else
            return entry.getAction(object);
    }

    static const Class* find(const FiltersEntry& entry)
    {
        if constexpr (IS_MATCH)
            return entry.findMatch<Class>();
        else
            return entry.findAction<Class>();
    }

    static filtersErr_t erase(FiltersEntry& entry)
    {
        if constexpr (IS_MATCH)
            return entry.deleteMatch(static_cast<filtersMatch_t>(Row::CODE));
        else
            return entry.deleteAction(static_cast<filtersAction_t>(Row::CODE));
    }

    static const auto& stored(const FiltersEntry& entry)
    {
        if constexpr (IS_MATCH)
            return entry.getMatchesRef();
        else
            return entry.getActionsRef();
    }

    static std::vector<Class> variants() { return Row::variants(); }
    static Class sample() { return Row::sample(); }
    static constexpr int CODE = Row::CODE;
};

template <class Access>
class EveryClass : public testing::Test {
protected:
    /** The only object of the entry, which must be of exactly this class. */
    static const typename Access::Class& only(const FiltersEntry& entry)
    {
        const auto& stored = Access::stored(entry);
        EXPECT_EQ(stored.size(), 1u);
        EXPECT_EQ(static_cast<int>(stored.begin()->first), Access::CODE);
        const auto& object = *stored.begin()->second;
        EXPECT_TRUE(typeid(object) == typeid(typename Access::Class));
        return dynamic_cast<const typename Access::Class&>(object);
    }
};

template <bool IS_MATCH, class List>
struct AccessTo;
template <bool IS_MATCH, class... Rows>
struct AccessTo<IS_MATCH, test::ClassList<Rows...>> {
    using Tests = testing::Types<Access<Rows, IS_MATCH>...>;
};

TYPED_TEST_SUITE_P(EveryClass);

TYPED_TEST_P(EveryClass, IsStoredAsACopyUnderItsCode)
{
    for (const auto& object : TypeParam::variants()) {
        FiltersEntry entry;
        EXPECT_EQ(TypeParam::set(entry, object), FILTERS_OK);
        EXPECT_TRUE(this->only(entry) == object);
        EXPECT_NE(&this->only(entry), &object);
    }
}

TYPED_TEST_P(EveryClass, ReplacesOneOfItsKind)
{
    for (const auto& object : TypeParam::variants()) {
        FiltersEntry entry;
        EXPECT_EQ(TypeParam::set(entry, TypeParam::sample()), FILTERS_OK);
        EXPECT_EQ(TypeParam::set(entry, object), FILTERS_OK);
        EXPECT_TRUE(this->only(entry) == object);
    }
}

TYPED_TEST_P(EveryClass, IsReplacedByTheStoredObjectItself)
{
    FiltersEntry entry;
    TypeParam::set(entry, TypeParam::sample());
    EXPECT_EQ(TypeParam::set(entry, this->only(entry)), FILTERS_OK);
    EXPECT_TRUE(this->only(entry) == TypeParam::sample());

    test::fill(entry);
    TypeParam::set(entry, TypeParam::sample());
    const FiltersEntry before(entry);
    EXPECT_EQ(TypeParam::set(entry, *TypeParam::find(entry)), FILTERS_OK);
    EXPECT_TRUE(*TypeParam::find(entry) == TypeParam::sample());
    EXPECT_TRUE(entry == before);
}

TYPED_TEST_P(EveryClass, IsHandedOutAsACopy)
{
    for (const auto& object : TypeParam::variants()) {
        FiltersEntry entry;
        TypeParam::set(entry, object);
        auto out = TypeParam::variants().back();
        EXPECT_EQ(TypeParam::get(entry, out), FILTERS_OK);
        EXPECT_TRUE(out == object);
        EXPECT_TRUE(this->only(entry) == object);
    }
}

TYPED_TEST_P(EveryClass, IsNotFoundWhereAbsentAndTheArgumentStays)
{
    FiltersEntry entry;
    entry.setMatch(MatchTTL(200));
    entry.setAction(ActionSetPcp(200));
    TypeParam::erase(entry);
    auto out = TypeParam::variants().back();
    EXPECT_EQ(TypeParam::get(entry, out), FILTERS_ERR_NOT_FOUND);
    EXPECT_TRUE(out == TypeParam::variants().back());
}

TYPED_TEST_P(EveryClass, IsDeletedOnce)
{
    FiltersEntry entry;
    EXPECT_EQ(TypeParam::erase(entry), FILTERS_ERR_NOT_FOUND);
    entry.setMatch(MatchTTL(200));
    entry.setAction(ActionSetPcp(200));
    TypeParam::set(entry, TypeParam::sample());
    const auto count = TypeParam::stored(entry).size();
    EXPECT_EQ(TypeParam::erase(entry), FILTERS_OK);
    EXPECT_EQ(TypeParam::stored(entry).size(), count - 1);
    EXPECT_EQ(TypeParam::erase(entry), FILTERS_ERR_NOT_FOUND);
    EXPECT_EQ(TypeParam::stored(entry).size(), count - 1);
}

TYPED_TEST_P(EveryClass, IsCopiedWithTheEntry)
{
    for (const auto& object : TypeParam::variants()) {
        FiltersEntry entry;
        TypeParam::set(entry, object);
        const FiltersEntry copy(entry);
        EXPECT_TRUE(copy == entry);
        auto out = TypeParam::variants().back();
        EXPECT_EQ(TypeParam::get(copy, out), FILTERS_OK);
        EXPECT_TRUE(out == object);
        EXPECT_NE(TypeParam::stored(copy).begin()->second, &this->only(entry));
        TypeParam::erase(entry);
        EXPECT_EQ(TypeParam::get(copy, out), FILTERS_OK);
    }
}

TYPED_TEST_P(EveryClass, MakesADifferenceBetweenEntries)
{
    FiltersEntry entry;
    TypeParam::set(entry, TypeParam::sample());
    for (const auto& object : TypeParam::variants()) {
        FiltersEntry other;
        TypeParam::set(other, object);
        EXPECT_EQ(entry == other, object == TypeParam::sample());
        EXPECT_FALSE(other == FiltersEntry());
        EXPECT_FALSE(FiltersEntry() == other);
    }
}

REGISTER_TYPED_TEST_SUITE_P(EveryClass, IsStoredAsACopyUnderItsCode, ReplacesOneOfItsKind,
                            IsReplacedByTheStoredObjectItself, IsHandedOutAsACopy,
                            IsNotFoundWhereAbsentAndTheArgumentStays, IsDeletedOnce,
                            IsCopiedWithTheEntry, MakesADifferenceBetweenEntries);

using MatchAccess = AccessTo<true, test::MatchClasses>::Tests;
using ActionAccess = AccessTo<false, test::ActionClasses>::Tests;
INSTANTIATE_TYPED_TEST_SUITE_P(Match, EveryClass, MatchAccess, );
INSTANTIATE_TYPED_TEST_SUITE_P(Action, EveryClass, ActionAccess, );

TEST(FilterEntries, WalksMatchesAndActionsInAscendingOrderOfTheirCodes)
{
    FiltersEntry entry;
    entry.setMatch(MatchDestinationCpu());
    entry.setMatch(MatchPcp(1));
    entry.setMatch(MatchAll());
    entry.setAction(ActionBlackHole());
    entry.setAction(ActionPermit());
    std::vector<int> codes;
    for (const auto& element : entry.getMatchesRef())
        codes.push_back(element.first);
    for (const auto& element : entry.getActionsRef())
        codes.push_back(element.first);
    EXPECT_EQ(codes, (std::vector<int>{0, 12, 31, 0, 16}));
}

TEST(FilterEntries, DeletesNothingForUnknownKinds)
{
    FiltersEntry entry;
    entry.setMatch(MatchAll());
    entry.setAction(ActionPermit());
    for (const std::uint32_t code : test::unknownCodes(test::MATCH_KINDS))
        EXPECT_EQ(entry.deleteMatch(static_cast<filtersMatch_t>(code)), FILTERS_ERR_NOT_FOUND);
    for (const std::uint32_t code : test::unknownCodes(test::ACTION_KINDS))
        EXPECT_EQ(entry.deleteAction(static_cast<filtersAction_t>(code)), FILTERS_ERR_NOT_FOUND);
}

TEST(FilterEntries, StoresTheStaticClassOfADerivedObject)
{
    class Own : public MatchPcp {
    public:
        using MatchPcp::MatchPcp;
    };
    const Own own(5);
    FiltersEntry entry;
    EXPECT_EQ(entry.setMatch<MatchPcp>(own), FILTERS_OK);
    const Match& stored = *entry.getMatchesRef().find(MATCH_PCP)->second;
    EXPECT_TRUE(typeid(stored) == typeid(MatchPcp));
    EXPECT_TRUE(stored == MatchPcp(5));
}

// ----------------------------------------------------------------------------------- DSCP and ToS

TEST(FilterEntries, DscpAndToSShareASlot)
{
    FiltersEntry entry;
    EXPECT_EQ(entry.setMatch(MatchDSCP(10)), FILTERS_OK);
    MatchToS tos(0);
    EXPECT_EQ(entry.getMatch(tos), FILTERS_OK);
    EXPECT_EQ(tos.getToS(), 40);

    EXPECT_EQ(entry.setMatch(MatchToS(43)), FILTERS_OK);
    EXPECT_EQ(entry.getMatchesRef().size(), 1u);
    MatchDSCP dscp(0);
    EXPECT_EQ(entry.getMatch(dscp), FILTERS_OK);
    EXPECT_EQ(dscp.getToS(), 43);
    EXPECT_EQ(dscp.getDSCP(), 10);
}

TEST(FilterEntries, DscpThatIsSetAgainAsAToSBecomesOne)
{
    FiltersEntry entry;
    entry.setMatch(MatchDSCP(10));
    EXPECT_EQ(entry.setMatch(*entry.findMatch<MatchToS>()), FILTERS_OK);
    const Match& stored = *entry.getMatchesRef().find(MATCH_TOS)->second;
    EXPECT_TRUE(typeid(stored) == typeid(MatchToS));
    EXPECT_TRUE(stored == MatchToS(40));
}

TEST(FilterEntries, CopyHoldsAToSWhereTheSourceHoldsADscp)
{
    FiltersEntry entry;
    entry.setMatch(MatchDSCP(10));
    const FiltersEntry copy(entry);
    const Match& stored = *copy.getMatchesRef().find(MATCH_TOS)->second;
    EXPECT_TRUE(typeid(stored) == typeid(MatchToS));
    EXPECT_EQ(dynamic_cast<const MatchToS&>(stored).getToS(), 40);
    EXPECT_TRUE(copy == entry);
}

TEST(FilterEntries, DscpComesBackFromTheBytesAsAToS)
{
    FiltersEntry entry;
    entry.setMatch(MatchDSCP(10));
    std::string bytes;
    entry.serialize(&bytes);
    const FiltersEntry read(bytes);
    const Match& stored = *read.getMatchesRef().find(MATCH_TOS)->second;
    EXPECT_TRUE(typeid(stored) == typeid(MatchToS));
    EXPECT_EQ(dynamic_cast<const MatchToS&>(stored).getToS(), 40);
}

} // namespace
} // namespace FiltersCommon
