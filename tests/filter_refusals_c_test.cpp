#include "c_support.h"
#include "filter_refusals_c.h"
#include "refusals_support.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <list>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace FiltersCommon {
namespace {

using namespace test;

struct Freed {
    void operator()(FiltersRefusals* r) const { deleteFiltersRefusals(r); }
};
using List = std::unique_ptr<FiltersRefusals, Freed>;

// --------------------------------------------------------------------------- lists as C reads them

/** What a getter stores, or nothing; in that case it must not have changed anything. */
template <class Value, class Getter>
std::optional<Value> taken(Getter getter, FiltersRefusals* list, std::uint32_t index)
{
    constexpr auto UNTOUCHED = static_cast<Value>(0x5A5A);
    Value place = UNTOUCHED;
    if (getter(list, index, &place))
        return place;
    EXPECT_EQ(place, UNTOUCHED);
    return {};
}

template <class Code>
CodeSet<Code> setOf(std::uint64_t bits)
{
    CodeSet<Code> set;
    for (std::uint32_t code = 0; code < CodeSet<Code>::LIMIT; ++code)
        if ((bits >> code & 1) != 0)
            set.insert(static_cast<Code>(code));
    return set;
}

FiltersRefusal readRefusal(FiltersRefusals* list, std::uint32_t index)
{
    FiltersRefusal read(filtersRefusalsGetReason(list, index));
    read.entry = taken<filtersEntryId_t>(filtersRefusalsGetEntry, list, index);
    read.match = taken<filtersMatch_t>(filtersRefusalsGetMatch, list, index);
    read.action = taken<filtersAction_t>(filtersRefusalsGetAction, list, index);
    if (const auto stage = taken<std::uint32_t>(filtersRefusalsGetPolicerStage, list, index))
        read.policerStage = static_cast<policer::Stage>(*stage);
    read.stage = taken<filtersGroupStage_t>(filtersRefusalsGetStage, list, index);
    read.type = taken<filtersGroupType_t>(filtersRefusalsGetType, list, index);
    read.admittedMatches = setOf<filtersMatch_t>(filtersRefusalsGetAdmittedMatches(list, index));
    read.admittedActions = setOf<filtersAction_t>(filtersRefusalsGetAdmittedActions(list, index));
    read.admittedPolicerStages =
        setOf<policer::Stage>(filtersRefusalsGetAdmittedPolicerStages(list, index));
    read.admittedStages = setOf<filtersGroupStage_t>(filtersRefusalsGetAdmittedStages(list, index));
    read.admittedTypes = setOf<filtersGroupType_t>(filtersRefusalsGetAdmittedTypes(list, index));
    read.excludingMatches = setOf<filtersMatch_t>(filtersRefusalsGetExcludingMatches(list, index));
    read.offset = taken<std::uint64_t>(filtersRefusalsGetOffset, list, index);
    read.part = taken<filtersPart_t>(filtersRefusalsGetPart, list, index);
    read.field = taken<std::uint32_t>(filtersRefusalsGetField, list, index);
    read.was = taken<std::uint64_t>(filtersRefusalsGetWas, list, index);
    read.became = taken<std::uint64_t>(filtersRefusalsGetBecame, list, index);
    return read;
}

/** Everything that the getters tell about a list. */
Refusals readAll(const List& list)
{
    Refusals refusals;
    for (std::uint32_t i = 0; i < filtersRefusalsGetCount(list.get()); ++i) {
        refusals.push_back(readRefusal(list.get(), i));
        EXPECT_EQ(filtersRefusalsGetCode(list.get(), i), refusals.back().code());
        EXPECT_EQ(filtersRefusalsGetSentence(list.get(), i), refusals.back().sentence());
    }
    return refusals;
}

// ----------------------------------------------------------------------------------------- groups

TEST(RefusalsC, OfGroupsAreThoseOfTheClasses)
{
    std::size_t reasons = 0;
    for (const filtersGroupStage_t stage : stages())
        for (const filtersGroupType_t type : types()) {
            FiltersGroup group(1);
            place(group, stage, type);
            for (FiltersEntry& byMatch : withEachAction(entriesByMatch()[5])) {
                byMatch.setPolicer(policerAt(policer::STAGE_INGRESS));
                const List list(filtersGroupInsertEntryRefusals(&group, &byMatch));
                EXPECT_EQ(readAll(list), insertEntryRefusals(group, byMatch));
                reasons += filtersRefusalsGetCount(list.get());
            }
            for (const filtersGroupStage_t other : stages())
                EXPECT_EQ(readAll(List(filtersGroupSetStageRefusals(&group, other))),
                          setStageRefusals(group, other));
            for (const filtersGroupType_t other : types())
                EXPECT_EQ(readAll(List(filtersGroupSetTypeRefusals(&group, other))),
                          setTypeRefusals(group, other));
        }
    EXPECT_GT(reasons, 1000u);
}

TEST(RefusalsC, NameTheEntriesInTheWay)
{
    FiltersGroup group(1);
    group.setType(GROUP_TYPE_8);
    for (const filtersEntryId_t id : {filtersEntryId_t{9}, filtersEntryId_t{2}}) {
        FiltersEntry entry(id);
        entry.setMatch(MatchAll());
        entry.setAction(ActionRedirectCancel());
        ASSERT_EQ(group.insertEntry(entry), FILTERS_OK);
    }
    const List byType(filtersGroupSetTypeRefusals(&group, GROUP_TYPE_0));
    EXPECT_EQ(filtersRefusalsGetCount(byType.get()), 2u);
    EXPECT_EQ(readAll(byType), setTypeRefusals(group, GROUP_TYPE_0));
    const List byStage(filtersGroupSetStageRefusals(&group, GROUP_STAGE_3));
    EXPECT_EQ(filtersRefusalsGetCount(byStage.get()), 3u);
    EXPECT_EQ(readAll(byStage), setStageRefusals(group, GROUP_STAGE_3));
}

// ---------------------------------------------------------------------------------------- entries

class OwnPcp : public MatchPcp {
public:
    OwnPcp() : MatchPcp(3) {}
};

/** Objects of every class, and bare ones of every kind and of unknown kinds. */
template <class Base, class Classes>
std::vector<std::shared_ptr<Base>> objects()
{
    using Code = decltype(std::declval<Base>().getType());
    std::vector<std::shared_ptr<Base>> objects;
    Classes::forEach([&](auto row) {
        objects.push_back(std::make_shared<decltype(row.sample())>(row.sample()));
    });
    constexpr bool IS_MATCH = std::is_same_v<Base, Match>;
    for (const std::uint32_t code : knownAndUnknownCodes(IS_MATCH ? MATCH_KINDS : ACTION_KINDS))
        objects.push_back(std::make_shared<Base>(static_cast<Code>(code)));
    return objects;
}

filtersRefusalReason_t reasonOf(const List& list)
{
    return filtersRefusalsGetReason(list.get(), 0);
}

TEST(RefusalsC, OfMatchesHaveTheCodeOfTheOperation)
{
    FiltersEntry nothing(7);
    FiltersEntry withIPv4(8);
    withIPv4.setMatch(MatchDstIPv4(ipv4("192.0.2.1")));
    FiltersEntry withIPv6(9);
    withIPv6.setMatch(MatchSrcIPv6(ipv6("2001:db8::1")));
    auto matches = objects<Match, MatchClasses>();
    matches.push_back(std::make_shared<OwnPcp>());
    for (const FiltersEntry* entry : {&nothing, &withIPv4, &withIPv6})
        for (const auto& match : matches) {
            FiltersEntry target(*entry);
            const List list(filtersEntrySetMatchRefusals(&target, match.get()));
            EXPECT_EQ(stateOf(target), stateOf(*entry));
            const Refusals refusals = readAll(list);
            EXPECT_EQ(filtersEntrySetMatch(&target, match.get()), codeOf(refusals));
            for (const FiltersRefusal& refusal : refusals) {
                EXPECT_EQ(refusal.entry, entry->getId());
                EXPECT_EQ(refusal.match, match->getType());
                EXPECT_FALSE(refusal.admittedMatches.contains(MATCH_FORWARDING_TYPE));
            }
        }
}

TEST(RefusalsC, OfMatchesNameTheirReasons)
{
    FiltersEntry entry(7);
    entry.setMatch(MatchDstIPv4(ipv4("192.0.2.1")));
    const auto refusalsOf = [&](Match match) {
        return readAll(List(filtersEntrySetMatchRefusals(&entry, &match)));
    };
    const auto offered = everyMatchBut({MATCH_FORWARDING_TYPE});
    const auto expected = [](filtersRefusalReason_t reason, filtersMatch_t kind,
                             CodeSet<filtersMatch_t> admitted) {
        FiltersRefusal refusal(reason);
        refusal.entry = filtersEntryId_t{7};
        refusal.match = kind;
        refusal.admittedMatches = admitted;
        return refusal;
    };
    EXPECT_EQ(refusalsOf(Match(UNKNOWN_MATCH)),
              Refusals{expected(REFUSAL_UNKNOWN_MATCH_KIND, UNKNOWN_MATCH, offered)});
    EXPECT_EQ(refusalsOf(Match(MATCH_FORWARDING_TYPE)),
              Refusals{expected(REFUSAL_MATCH_NOT_IN_C, MATCH_FORWARDING_TYPE, offered)});
    EXPECT_EQ(refusalsOf(Match(MATCH_TTL)),
              Refusals{expected(REFUSAL_MATCH_NOT_OF_ITS_KIND, MATCH_TTL, {})});
    EXPECT_EQ(refusalsOf(Match(MATCH_CPU_PORT)), Refusals());

    // Two reasons: the object is not of its kind's class, and its kind meets an address kind.
    FiltersRefusal exclusion =
        expected(REFUSAL_IPV4_WITH_IPV6, MATCH_SRC_IPV6,
                 everyMatchBut({MATCH_FORWARDING_TYPE, MATCH_SRC_IPV6, MATCH_DST_IPV6}));
    exclusion.excludingMatches = {MATCH_DST_IPV4};
    EXPECT_EQ(refusalsOf(Match(MATCH_SRC_IPV6)),
              (Refusals{expected(REFUSAL_MATCH_NOT_OF_ITS_KIND, MATCH_SRC_IPV6, {}), exclusion}));

    MatchForwardingType forwarding(FORWARDING_TYPE_0);
    const List list(filtersEntrySetMatchRefusals(&entry, &forwarding));
    EXPECT_EQ(reasonOf(list), REFUSAL_MATCH_NOT_IN_C);
    EXPECT_EQ(std::string(filtersRefusalsGetSentence(list.get(), 0)).substr(0, 80),
              "entry 7: match kind MATCH_FORWARDING_TYPE is not offered in the C interface; off");
}

TEST(RefusalsC, OfActionsHaveTheCodeOfTheOperation)
{
    FiltersEntry entry(7);
    const CodeSet<filtersAction_t> known = everyAction();
    std::size_t refused = 0;
    for (const auto& action : objects<Action, ActionClasses>()) {
        FiltersEntry target(entry);
        const Refusals refusals =
            readAll(List(filtersEntrySetActionRefusals(&target, action.get())));
        EXPECT_EQ(stateOf(target), stateOf(entry));
        EXPECT_EQ(filtersEntrySetAction(&target, action.get()), codeOf(refusals));
        if (refusals.empty())
            continue;
        ++refused;
        const bool isKnown = known.contains(action->getType());
        FiltersRefusal expected(isKnown ? REFUSAL_ACTION_NOT_OF_ITS_KIND
                                        : REFUSAL_UNKNOWN_ACTION_KIND);
        expected.entry = filtersEntryId_t{7};
        expected.action = action->getType();
        if (!isKnown)
            expected.admittedActions = known;
        EXPECT_EQ(refusals, Refusals{expected});
    }
    // The bare objects of kinds with values and of unknown kinds.
    EXPECT_EQ(refused, ACTION_KINDS - codesWithoutValues<ActionClasses>().size() +
                           unknownCodes(ACTION_KINDS).size());
}

// ------------------------------------------------------------------------------------------ lists

TEST(RefusalsC, OutliveWhatTheyAreAbout)
{
    auto group = std::make_unique<FiltersGroup>(1);
    auto entry = std::make_unique<FiltersEntry>(filtersEntryId_t{7});
    entry->setMatch(MatchAll());
    const List list(filtersGroupInsertEntryRefusals(group.get(), entry.get()));
    const Refusals before = insertEntryRefusals(*group, *entry);
    group.reset();
    entry.reset();
    EXPECT_EQ(readAll(list), before);
}

TEST(RefusalsC, ASentenceStaysWhereItIs)
{
    FiltersGroup group(1);
    FiltersEntry entry(7);
    entry.setMatch(MatchAll());
    entry.setMatch(MatchTTL(1));
    const List list(filtersGroupInsertEntryRefusals(&group, &entry));
    const char* const first = filtersRefusalsGetSentence(list.get(), 0);
    const char* const second = filtersRefusalsGetSentence(list.get(), 1);
    EXPECT_STRNE(first, second);
    EXPECT_EQ(filtersRefusalsGetSentence(list.get(), 0), first);
    EXPECT_EQ(filtersRefusalsGetSentence(list.get(), 1), second);
}

// ---------------------------------------------------------------------------------------- reading

/** A group whose reading loses something of most sorts. */
std::string lossyBytes()
{
    FiltersGroup group(1);
    group.setType(GROUP_TYPE_3);
    FiltersGroupPB pb = group.convertToFiltersGroupPB();
    pb.set_id_(65537);
    FiltersEntryPB* entry = pb.add_entries_();
    FiltersEntry(7).convertToFiltersEntryPB(entry);
    entry->mutable_counter_()->set_id(-1);
    MatchPB* match = entry->add_matches_();
    match->set_type_(MATCH_DST_MAC);
    match->set_mac_("short");
    match->set_pcp_(1);
    entry->add_actions_()->set_type_(ACTION_KINDS);
    pb.clear_priority_();
    return pb.SerializePartialAsString() + "\x07";
}

TEST(RefusalsC, OfBytesAreThoseOfTheClasses)
{
    const std::string bytes = lossyBytes();
    EXPECT_GT(readGroupRefusals(bytes).size(), 5u);
    EXPECT_EQ(readAll(List(filtersGroupReadRefusals(bytes.data(), bytes.size()))),
              readGroupRefusals(bytes));
    EXPECT_GT(readEntryRefusals(bytes).size(), 2u);
    EXPECT_EQ(readAll(List(filtersEntryReadRefusals(bytes.data(), bytes.size()))),
              readEntryRefusals(bytes));
    EXPECT_EQ(readAll(List(filtersEntryReadRefusals(nullptr, 0))), readEntryRefusals(""));
    EXPECT_EQ(readAll(List(filtersGroupReadRefusals(nullptr, 0))), readGroupRefusals(""));
}

TEST(RefusalsC, ComeWithTheGroupThatIsRead)
{
    const std::string bytes = lossyBytes();
    FiltersRefusals* losses = nullptr;
    FiltersGroup* group = newFiltersGroupFromBytes(bytes.data(), bytes.size(), &losses);
    EXPECT_EQ(stateOf(*group), stateOf(FiltersGroup(bytes)));
    EXPECT_EQ(readAll(List(losses)), readGroupRefusals(bytes));
    deleteFiltersGroup(group);
    group = newFiltersGroupFromBytes(bytes.data(), bytes.size(), nullptr);
    EXPECT_EQ(stateOf(*group), stateOf(FiltersGroup(bytes)));
    deleteFiltersGroup(group);
}

// ------------------------------------------------------------------------------- broken contracts

class RefusalsCDeathTest : public ContractDeathTest {};

TEST_P(RefusalsCDeathTest, AreReported) { expectReport("filter_refusals_c.cpp"); }

constexpr char INDEX[] = "r != nullptr && index < count";

/** A list with one reason. */
FiltersRefusals* oneRefusal()
{
    FiltersGroup group(1);
    return filtersGroupSetStageRefusals(&group, stage(4));
}

std::vector<BrokenContract> brokenContracts()
{
    std::vector<BrokenContract> broken = {
        {"filtersRefusalsGetCount", ANY_LINE, "r != nullptr",
         "uint32_t FiltersCommon::filtersRefusalsGetCount(FiltersCommon::FiltersRefusals*)",
         [] { filtersRefusalsGetCount(nullptr); }},
        {"deleteFiltersRefusals", ANY_LINE, "r != nullptr",
         "void FiltersCommon::deleteFiltersRefusals(FiltersCommon::FiltersRefusals*)",
         [] { deleteFiltersRefusals(nullptr); }},
    };

    // clang-format off
#define ROW(name, what, expression, result, arguments, call)                                       \
    broken.push_back({#name what, ANY_LINE, expression,                                            \
                      result " FiltersCommon::" #name "(FiltersCommon::" arguments ")",            \
                      [] { call; }})
#define LIST "FiltersCommon::FiltersRefusals*"
    ROW(filtersGroupInsertEntryRefusals, "_noGroup", "g != nullptr && e != nullptr", LIST,
        "FiltersGroup*, FiltersCommon::FiltersEntry*",
        FiltersEntry e(1); filtersGroupInsertEntryRefusals(nullptr, &e));
    ROW(filtersGroupInsertEntryRefusals, "_noEntry", "g != nullptr && e != nullptr", LIST,
        "FiltersGroup*, FiltersCommon::FiltersEntry*",
        FiltersGroup g(1); filtersGroupInsertEntryRefusals(&g, nullptr));
    ROW(filtersGroupSetStageRefusals, "", "g != nullptr", LIST,
        "FiltersGroup*, FiltersCommon::filtersGroupStage_t",
        filtersGroupSetStageRefusals(nullptr, GROUP_STAGE_0));
    ROW(filtersGroupSetTypeRefusals, "", "g != nullptr", LIST,
        "FiltersGroup*, FiltersCommon::filtersGroupType_t",
        filtersGroupSetTypeRefusals(nullptr, GROUP_TYPE_0));
    ROW(filtersEntrySetMatchRefusals, "_noEntry", "e != nullptr && m != nullptr", LIST,
        "FiltersEntry*, FiltersCommon::Match*",
        MatchAll m; filtersEntrySetMatchRefusals(nullptr, &m));
    ROW(filtersEntrySetMatchRefusals, "_noMatch", "e != nullptr && m != nullptr", LIST,
        "FiltersEntry*, FiltersCommon::Match*",
        FiltersEntry e(1); filtersEntrySetMatchRefusals(&e, nullptr));
    ROW(filtersEntrySetActionRefusals, "_noEntry", "e != nullptr && a != nullptr", LIST,
        "FiltersEntry*, FiltersCommon::Action*",
        ActionDeny a; filtersEntrySetActionRefusals(nullptr, &a));
    ROW(filtersEntrySetActionRefusals, "_noAction", "e != nullptr && a != nullptr", LIST,
        "FiltersEntry*, FiltersCommon::Action*",
        FiltersEntry e(1); filtersEntrySetActionRefusals(&e, nullptr));

    broken.push_back({"filtersEntryReadRefusals", ANY_LINE, "bytes != nullptr || size == 0",
                      LIST " FiltersCommon::filtersEntryReadRefusals(const void*, size_t)",
                      [] { filtersEntryReadRefusals(nullptr, 1); }});
    broken.push_back({"filtersGroupReadRefusals", ANY_LINE, "bytes != nullptr || size == 0",
                      LIST " FiltersCommon::filtersGroupReadRefusals(const void*, size_t)",
                      [] { filtersGroupReadRefusals(nullptr, 1); }});
    broken.push_back({"newFiltersGroupFromBytes", ANY_LINE, "bytes != nullptr || size == 0",
                      "FiltersCommon::FiltersGroup* FiltersCommon::newFiltersGroupFromBytes("
                      "const void*, size_t, FiltersCommon::FiltersRefusals**)",
                      [] { newFiltersGroupFromBytes(nullptr, 1, nullptr); }});

#define GETTER(name, result)                                                                       \
    ROW(name, "_noList", INDEX, result, "FiltersRefusals*, uint32_t", name(nullptr, 0));           \
    ROW(name, "_beyond", INDEX, result, "FiltersRefusals*, uint32_t", name(oneRefusal(), 1))
    GETTER(filtersRefusalsGetCode, "FiltersCommon::filtersErr_t");
    GETTER(filtersRefusalsGetReason, "FiltersCommon::filtersRefusalReason_t");
    GETTER(filtersRefusalsGetSentence, "const char*");
    GETTER(filtersRefusalsGetAdmittedMatches, "uint64_t");
    GETTER(filtersRefusalsGetAdmittedActions, "uint64_t");
    GETTER(filtersRefusalsGetAdmittedPolicerStages, "uint64_t");
    GETTER(filtersRefusalsGetAdmittedStages, "uint64_t");
    GETTER(filtersRefusalsGetAdmittedTypes, "uint64_t");
    GETTER(filtersRefusalsGetExcludingMatches, "uint64_t");

#define PLACED(name, type, text)                                                                   \
    ROW(name, "_noList", INDEX, "bool", "FiltersRefusals*, uint32_t, " text "*",                   \
        type place; name(nullptr, 0, &place));                                                     \
    ROW(name, "_beyond", INDEX, "bool", "FiltersRefusals*, uint32_t, " text "*",                   \
        type place; name(oneRefusal(), 1, &place));                                                \
    ROW(name, "_noPlace", "place != nullptr", "bool", "FiltersRefusals*, uint32_t, " text "*",     \
        name(oneRefusal(), 0, nullptr))
    PLACED(filtersRefusalsGetEntry, filtersEntryId_t, "FiltersCommon::filtersEntryId_t");
    PLACED(filtersRefusalsGetMatch, filtersMatch_t, "FiltersCommon::filtersMatch_t");
    PLACED(filtersRefusalsGetAction, filtersAction_t, "FiltersCommon::filtersAction_t");
    PLACED(filtersRefusalsGetPolicerStage, std::uint32_t, "uint32_t");
    PLACED(filtersRefusalsGetStage, filtersGroupStage_t, "FiltersCommon::filtersGroupStage_t");
    PLACED(filtersRefusalsGetType, filtersGroupType_t, "FiltersCommon::filtersGroupType_t");
    PLACED(filtersRefusalsGetOffset, std::uint64_t, "uint64_t");
    PLACED(filtersRefusalsGetPart, filtersPart_t, "FiltersCommon::filtersPart_t");
    PLACED(filtersRefusalsGetField, std::uint32_t, "uint32_t");
    PLACED(filtersRefusalsGetWas, std::uint64_t, "uint64_t");
    PLACED(filtersRefusalsGetBecame, std::uint64_t, "uint64_t");
#undef PLACED
#undef GETTER
#undef LIST
#undef ROW
    // clang-format on
    return broken;
}

INSTANTIATE_TEST_SUITE_P(Broken, RefusalsCDeathTest, testing::ValuesIn(brokenContracts()),
                         test::nameOf<BrokenContract>);

} // namespace
} // namespace FiltersCommon
