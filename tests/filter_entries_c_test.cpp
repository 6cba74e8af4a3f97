#include "c_support.h"
#include "samples.h"

#include <gtest/gtest.h>

#include <string>
#include <typeinfo>
#include <vector>

namespace FiltersCommon {
namespace {

using test::ActionClasses;
using test::BrokenContract;
using test::Handle;
using test::ipv4;
using test::ipv6;
using test::limId;
using test::mac;
using test::MatchClasses;

/** An entry in which every member is set. */
FiltersEntry fullEntry()
{
    FiltersEntry entry(7);
    entry.setPriority(100);
    entry.setPolicer(test::policerAt(policer::STAGE_INGRESS));
    entry.setCounter(Counter(3, COUNTER_TYPE_OCTETS));
    entry.setMatch(MatchDstIPv4(ipv4("192.0.2.0"), ipv4("255.255.255.0")));
    entry.setMatch(MatchDSCP(10));
    entry.setMatch(MatchForwardingType(static_cast<en_ForwardingType>(2)));
    entry.setAction(ActionDeny());
    entry.setAction(ActionSetPcp(5));
    return entry;
}

/** The only object of the map, if it is exactly a T under its kind's code. */
template <class T, class Map>
const T* onlyObject(const Map& map, int code)
{
    if (map.size() != 1 || map.begin()->first != code)
        return nullptr;
    const auto& object = *map.begin()->second;
    return typeid(object) == typeid(T) ? static_cast<const T*>(&object) : nullptr;
}

// ----------------------------------------------------------------------- life cycle and accessors

TEST(EntriesC, ANewEntryHasItsIdentifierAndNothingElse)
{
    for (const filtersEntryId_t id : std::vector<filtersEntryId_t>{0, 7, 65535}) {
        const Handle<FiltersEntry> entry(newFiltersEntry(id));
        EXPECT_EQ(filtersEntryGetId(entry.get()), id);
        EXPECT_EQ(filtersEntryGetPriority(entry.get()), 0u);
        EXPECT_TRUE(*entry == FiltersEntry(id));
    }
}

TEST(EntriesC, ThePriorityHas32Bits)
{
    const Handle<FiltersEntry> entry(newFiltersEntry(1));
    for (const filtersEntryPriority_t priority : {1u, 0x89ABCDEFu, 0xFFFFFFFFu, 0u}) {
        filtersEntrySetPriority(entry.get(), priority);
        EXPECT_EQ(filtersEntryGetPriority(entry.get()), priority);
        EXPECT_EQ(entry->getPriority(), priority);
    }
}

TEST(EntriesC, ACopyHoldsEverything)
{
    FiltersEntry entry(fullEntry());
    const Handle<FiltersEntry> copy(copyFiltersEntry(&entry));
    EXPECT_NE(copy.get(), &entry);
    EXPECT_TRUE(*copy == entry);
}

TEST(EntriesC, ACopyIsIndependent)
{
    Handle<FiltersEntry> entry(newFiltersEntry(7));
    MatchPcp pcp(5);
    ASSERT_EQ(filtersEntrySetMatch(entry.get(), &pcp), FILTERS_OK);
    const Handle<FiltersEntry> copy(copyFiltersEntry(entry.get()));
    filtersEntrySetPriority(entry.get(), 9);
    filtersEntryDeleteMatch(entry.get(), MATCH_PCP);
    entry.reset();
    EXPECT_EQ(filtersEntryGetPriority(copy.get()), 0u);
    MatchPcp read(0);
    EXPECT_EQ(filtersEntryGetMatch(copy.get(), &read), FILTERS_OK);
    EXPECT_EQ(read.getPcp(), 5);
}

TEST(EntriesC, ACopyHoldsATypeOfServiceMatchForADscpMatch)
{
    FiltersEntry entry(7);
    entry.setMatch(MatchDSCP(10));
    const Handle<FiltersEntry> copy(copyFiltersEntry(&entry));
    const auto* stored = onlyObject<MatchToS>(copy->getMatchesRef(), MATCH_TOS);
    ASSERT_NE(stored, nullptr);
    EXPECT_EQ(stored->getToS(), 40);
}

TEST(EntriesC, ACopyNeverHoldsIPv4AndIPv6Addresses)
{
    const Handle<FiltersEntry> entry(newFiltersEntry(7));
    MatchSrcIPv4 v4(ipv4("192.0.2.1"));
    MatchDstIPv6 v6(ipv6("2001:db8::1"));
    EXPECT_EQ(filtersEntrySetMatch(entry.get(), &v4), FILTERS_OK);
    EXPECT_EQ(filtersEntrySetMatch(entry.get(), &v6), FILTERS_ERR_INVALID);
    const Handle<FiltersEntry> copy(copyFiltersEntry(entry.get()));
    EXPECT_NE(onlyObject<MatchSrcIPv4>(copy->getMatchesRef(), MATCH_SRC_IPV4), nullptr);
}

// ---------------------------------------------------------------------------- matches and actions

/** The half of the interface that is about matches. */
struct Matches {
    static constexpr char NAME[] = "Matches";
    using Base = Match;
    using Kind = filtersMatch_t;
    static constexpr std::uint32_t KINDS = test::MATCH_KINDS;
    using Classes = MatchClasses;
    template <class T>
    using StoredAs = std::conditional_t<std::is_same_v<T, MatchDSCP>, MatchToS, T>;

    static constexpr auto set = filtersEntrySetMatch;
    static constexpr auto get = filtersEntryGetMatch;
    static constexpr auto remove = filtersEntryDeleteMatch;
    static const auto& heldBy(const FiltersEntry& entry) { return entry.getMatchesRef(); }
    template <class T>
    static void put(FiltersEntry& entry, const T& match)
    {
        ASSERT_EQ(entry.setMatch(match), FILTERS_OK);
    }
};

/** The half that is about actions. */
struct Actions {
    static constexpr char NAME[] = "Actions";
    using Base = Action;
    using Kind = filtersAction_t;
    static constexpr std::uint32_t KINDS = test::ACTION_KINDS;
    using Classes = ActionClasses;
    template <class T>
    using StoredAs = T;

    static constexpr auto set = filtersEntrySetAction;
    static constexpr auto get = filtersEntryGetAction;
    static constexpr auto remove = filtersEntryDeleteAction;
    static const auto& heldBy(const FiltersEntry& entry) { return entry.getActionsRef(); }
    template <class T>
    static void put(FiltersEntry& entry, const T& action)
    {
        ASSERT_EQ(entry.setAction(action), FILTERS_OK);
    }
};

template <class Half>
class EntriesCHalf : public testing::Test {
protected:
    using Base = typename Half::Base;

    /** Calls @p function with the row of each class that C may set and read. */
    template <class Function>
    static void forEachClass(Function function)
    {
        Half::Classes::forEach([&](auto row) {
            using Row = decltype(row);
            SCOPED_TRACE("kind " + std::to_string(Row::CODE));
            if constexpr (!std::is_same_v<typename Row::Class, MatchForwardingType>)
                function(row);
        });
    }

    /** The entry holds a copy of @p object and no other object. */
    template <class Row>
    static void expectOnly(const FiltersEntry& entry, Row, const typename Row::Class& object)
    {
        using Stored = typename Half::template StoredAs<typename Row::Class>;
        const Base* stored = onlyObject<Stored>(Half::heldBy(entry), Row::CODE);
        ASSERT_NE(stored, nullptr);
        EXPECT_NE(stored, &object);
        EXPECT_TRUE(*stored == object);
    }
};

struct NameOfHalf {
    template <class Half>
    static std::string GetName(int)
    {
        return Half::NAME;
    }
};

using Halves = testing::Types<Matches, Actions>;
TYPED_TEST_SUITE(EntriesCHalf, Halves, NameOfHalf);

TYPED_TEST(EntriesCHalf, SettingStoresACopyAsTheClassOfItsKind)
{
    this->forEachClass([](auto row) {
        for (const auto& variant : row.variants()) {
            FiltersEntry entry(1);
            auto object = variant;
            ASSERT_EQ(TypeParam::set(&entry, &object), FILTERS_OK);
            EntriesCHalf<TypeParam>::expectOnly(entry, row, object);
            EXPECT_TRUE(object == variant);
        }
    });
}

TYPED_TEST(EntriesCHalf, SettingReplacesAnObjectOfTheSameKind)
{
    this->forEachClass([](auto row) {
        FiltersEntry entry(1);
        for (auto& object : row.variants()) {
            ASSERT_EQ(TypeParam::set(&entry, &object), FILTERS_OK);
            EntriesCHalf<TypeParam>::expectOnly(entry, row, object);
        }
    });
}

TYPED_TEST(EntriesCHalf, GettingFillsTheHandle)
{
    this->forEachClass([](auto row) {
        auto variants = row.variants();
        for (std::size_t i = 0; i < variants.size(); ++i) {
            FiltersEntry entry(1);
            TypeParam::put(entry, variants[i]);
            const FiltersEntry before(entry);
            auto object = variants[i == 0 ? variants.size() - 1 : 0];
            EXPECT_EQ(TypeParam::get(&entry, &object), FILTERS_OK);
            EXPECT_TRUE(object == variants[i]);
            EXPECT_TRUE(entry == before);
        }
    });
}

TYPED_TEST(EntriesCHalf, GettingAnAbsentKindLeavesTheHandle)
{
    this->forEachClass([](auto row) {
        FiltersEntry entry(1);
        for (const auto& variant : row.variants()) {
            auto object = variant;
            EXPECT_EQ(TypeParam::get(&entry, &object), FILTERS_ERR_NOT_FOUND);
            EXPECT_TRUE(object == variant);
        }
    });
}

TYPED_TEST(EntriesCHalf, DeletingTakesOutThatKindAlone)
{
    using Kind = typename TypeParam::Kind;
    TypeParam::Classes::forEach([](auto row) {
        const auto kind = static_cast<Kind>(row.CODE);
        FiltersEntry entry(1);
        EXPECT_EQ(TypeParam::remove(&entry, kind), FILTERS_ERR_NOT_FOUND);
        TypeParam::put(entry, row.sample());
        for (const std::uint32_t code : test::knownAndUnknownCodes(TypeParam::KINDS)) {
            const auto other = static_cast<Kind>(code);
            if (other != kind) {
                EXPECT_EQ(TypeParam::remove(&entry, other), FILTERS_ERR_NOT_FOUND);
            }
        }
        EXPECT_EQ(TypeParam::heldBy(entry).size(), 1u);
        EXPECT_EQ(TypeParam::remove(&entry, kind), FILTERS_OK);
        EXPECT_TRUE(TypeParam::heldBy(entry).empty());
        EXPECT_EQ(TypeParam::remove(&entry, kind), FILTERS_ERR_NOT_FOUND);
    });
}

TYPED_TEST(EntriesCHalf, KindsBeyondTheTableAreInvalid)
{
    const FiltersEntry before(fullEntry());
    FiltersEntry entry(before);
    for (const std::uint32_t code : test::unknownCodes(TypeParam::KINDS)) {
        typename TypeParam::Base bare(static_cast<typename TypeParam::Kind>(code));
        EXPECT_EQ(TypeParam::set(&entry, &bare), FILTERS_ERR_INVALID);
        EXPECT_EQ(TypeParam::get(&entry, &bare), FILTERS_ERR_INVALID);
        EXPECT_EQ(TypeParam::remove(&entry, bare.getType()), FILTERS_ERR_NOT_FOUND);
    }
    EXPECT_TRUE(entry == before);
}

// --------------------------------------------------------------------- what is special to matches

TEST(EntriesC, ADscpMatchAndATypeOfServiceMatchShareAPlace)
{
    FiltersEntry entry(1);
    MatchDSCP dscp(10);
    ASSERT_EQ(filtersEntrySetMatch(&entry, &dscp), FILTERS_OK);
    MatchToS tos(0);
    ASSERT_EQ(filtersEntryGetMatch(&entry, &tos), FILTERS_OK);
    EXPECT_EQ(tos.getToS(), 40);
    MatchToS odd(43);
    ASSERT_EQ(filtersEntrySetMatch(&entry, &odd), FILTERS_OK);
    MatchDSCP read(0);
    ASSERT_EQ(filtersEntryGetMatch(&entry, &read), FILTERS_OK);
    EXPECT_EQ(read.getToS(), 43);
    EXPECT_EQ(entry.getMatchesRef().size(), 1u);
}

TEST(EntriesC, AForwardingTypeCannotBeSet)
{
    MatchForwardingType match(static_cast<en_ForwardingType>(5));
    const FiltersEntry before(fullEntry());
    FiltersEntry entry(before);
    EXPECT_EQ(filtersEntrySetMatch(&entry, &match), FILTERS_ERR_INVALID);
    EXPECT_TRUE(entry == before);
    FiltersEntry empty(1);
    EXPECT_EQ(filtersEntrySetMatch(&empty, &match), FILTERS_ERR_INVALID);
    EXPECT_TRUE(empty.getMatchesRef().empty());
}

TEST(EntriesC, AForwardingTypeCannotBeReadEvenIfTheEntryHoldsOne)
{
    MatchForwardingType match(static_cast<en_ForwardingType>(5));
    FiltersEntry entry(1);
    EXPECT_EQ(filtersEntryGetMatch(&entry, &match), FILTERS_ERR_INVALID);
    ASSERT_EQ(entry.setMatch(MatchForwardingType(static_cast<en_ForwardingType>(2))), FILTERS_OK);
    EXPECT_EQ(filtersEntryGetMatch(&entry, &match), FILTERS_ERR_INVALID);
    EXPECT_EQ(match.getForwardingType(), 5);
    EXPECT_EQ(filtersEntryDeleteMatch(&entry, MATCH_FORWARDING_TYPE), FILTERS_OK);
}

TEST(EntriesC, GetMatchWithAPcpOnAnEntryWithoutOneIsNotFoundAndLeavesTheValue)
{
    FiltersEntry entry(fullEntry());
    const auto match = test::made<MatchPcp>(newMatchPcp(6));
    EXPECT_EQ(filtersEntryGetMatch(&entry, match.get()), FILTERS_ERR_NOT_FOUND);
    EXPECT_EQ(matchPcpGet(match.get()), 6);
}

/** The entry refuses the second address because of the first, and does not change. */
template <class Held, class Refused>
void expectRefused(Held held, Refused refused)
{
    FiltersEntry entry(1);
    ASSERT_EQ(filtersEntrySetMatch(&entry, &held), FILTERS_OK);
    EXPECT_EQ(filtersEntrySetMatch(&entry, &refused), FILTERS_ERR_INVALID);
    EXPECT_NE(onlyObject<Held>(entry.getMatchesRef(), held.getType()), nullptr);
    ASSERT_EQ(filtersEntryDeleteMatch(&entry, held.getType()), FILTERS_OK);
    EXPECT_EQ(filtersEntrySetMatch(&entry, &refused), FILTERS_OK);
}

TEST(EntriesC, IPv4AndIPv6AddressesExcludeEachOther)
{
    const in_addr v4 = ipv4("192.0.2.1");
    const in6_addr v6 = ipv6("2001:db8::1");
    expectRefused(MatchSrcIPv4(v4), MatchSrcIPv6(v6));
    expectRefused(MatchSrcIPv4(v4), MatchDstIPv6(v6));
    expectRefused(MatchDstIPv4(v4), MatchSrcIPv6(v6));
    expectRefused(MatchDstIPv4(v4), MatchDstIPv6(v6));
    expectRefused(MatchSrcIPv6(v6), MatchSrcIPv4(v4));
    expectRefused(MatchSrcIPv6(v6), MatchDstIPv4(v4));
    expectRefused(MatchDstIPv6(v6), MatchSrcIPv4(v4));
    expectRefused(MatchDstIPv6(v6), MatchDstIPv4(v4));
}

// ----------------------------------------------------------------------------------- null handles

TEST(EntriesC, SettingAndGettingAnswerANullHandleWithBadParam)
{
    const FiltersEntry before(fullEntry());
    FiltersEntry entry(before);
    MatchPcp match(5);
    for (const auto call : {filtersEntrySetMatch, filtersEntryGetMatch}) {
        EXPECT_EQ(call(&entry, nullptr), FILTERS_ERR_BAD_PARAM);
        EXPECT_EQ(call(nullptr, &match), FILTERS_ERR_BAD_PARAM);
        EXPECT_EQ(call(nullptr, nullptr), FILTERS_ERR_BAD_PARAM);
    }
    ActionSetPcp action(3);
    for (const auto call : {filtersEntrySetAction, filtersEntryGetAction}) {
        EXPECT_EQ(call(&entry, nullptr), FILTERS_ERR_BAD_PARAM);
        EXPECT_EQ(call(nullptr, &action), FILTERS_ERR_BAD_PARAM);
        EXPECT_EQ(call(nullptr, nullptr), FILTERS_ERR_BAD_PARAM);
    }
    EXPECT_TRUE(entry == before);
    EXPECT_EQ(match.getPcp(), 5);
    EXPECT_EQ(action.getPcp(), 3);
}

TEST(EntriesC, ANullEntryIsBadParamWhateverTheKind)
{
    MatchForwardingType forwarding(FORWARDING_TYPE_0);
    EXPECT_EQ(filtersEntrySetMatch(nullptr, &forwarding), FILTERS_ERR_BAD_PARAM);
    EXPECT_EQ(filtersEntryGetMatch(nullptr, &forwarding), FILTERS_ERR_BAD_PARAM);
    Action unknown(test::UNKNOWN_ACTION);
    EXPECT_EQ(filtersEntrySetAction(nullptr, &unknown), FILTERS_ERR_BAD_PARAM);
    EXPECT_EQ(filtersEntryGetAction(nullptr, &unknown), FILTERS_ERR_BAD_PARAM);
}

class EntriesCDeathTest : public test::ContractDeathTest {};

TEST_P(EntriesCDeathTest, ANullHandleIsReported) { expectReport("filter_entries_c.cpp"); }

constexpr BrokenContract broken(const char* name, unsigned line, const char* function,
                                void (*call)())
{
    return {name, line, "e != nullptr", function, call};
}

// clang-format off
const BrokenContract BROKEN[] = {
    broken("copyFiltersEntry", 32,
           "FiltersCommon::FiltersEntry* FiltersCommon::copyFiltersEntry(FiltersCommon::FiltersEntry*)",
           [] { copyFiltersEntry(nullptr); }),
    broken("deleteFiltersEntry", 40,
           "void FiltersCommon::deleteFiltersEntry(FiltersCommon::FiltersEntry*)",
           [] { deleteFiltersEntry(nullptr); }),
    broken("filtersEntryGetId", 48,
           "FiltersCommon::filtersEntryId_t FiltersCommon::filtersEntryGetId(FiltersCommon::FiltersEntry*)",
           [] { filtersEntryGetId(nullptr); }),
    broken("filtersEntrySetPriority", 56,
           "void FiltersCommon::filtersEntrySetPriority(FiltersCommon::FiltersEntry*, FiltersCommon::filtersEntryPriority_t)",
           [] { filtersEntrySetPriority(nullptr, 1); }),
    broken("filtersEntryGetPriority", 64,
           "FiltersCommon::filtersEntryPriority_t FiltersCommon::filtersEntryGetPriority(FiltersCommon::FiltersEntry*)",
           [] { filtersEntryGetPriority(nullptr); }),
    broken("filtersEntryDeleteMatch", 300,
           "FiltersCommon::filtersErr_t FiltersCommon::filtersEntryDeleteMatch(FiltersCommon::FiltersEntry*, FiltersCommon::filtersMatch_t)",
           [] { filtersEntryDeleteMatch(nullptr, MATCH_ALL); }),
    broken("filtersEntryDeleteAction", 442,
           "FiltersCommon::filtersErr_t FiltersCommon::filtersEntryDeleteAction(FiltersCommon::FiltersEntry*, FiltersCommon::filtersAction_t)",
           [] { filtersEntryDeleteAction(nullptr, ACTION_PERMIT); }),
};
// clang-format on
INSTANTIATE_TEST_SUITE_P(Null, EntriesCDeathTest, testing::ValuesIn(BROKEN),
                         test::nameOf<BrokenContract>);

} // namespace
} // namespace FiltersCommon
