#include "entry_maps.h"
#include "refusals_support.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

// Why entries refuse matches and actions.

namespace FiltersCommon {
namespace {

using namespace test;

const CodeSet<filtersMatch_t> IPV4 = {MATCH_SRC_IPV4, MATCH_DST_IPV4};
const CodeSet<filtersMatch_t> IPV6 = {MATCH_SRC_IPV6, MATCH_DST_IPV6};

FiltersRefusal ofMatch(filtersRefusalReason_t reason, filtersEntryId_t id, filtersMatch_t kind)
{
    return refusal(reason, [&](FiltersRefusal& r) {
        r.entry = id;
        r.match = kind;
    });
}

FiltersRefusal ofAction(filtersRefusalReason_t reason, filtersEntryId_t id, filtersAction_t kind)
{
    return refusal(reason, [&](FiltersRefusal& r) {
        r.entry = id;
        r.action = kind;
    });
}

/** The refusal of a match whose address version excludes one of @p met, or nothing. */
Refusals expectedExclusion(filtersEntryId_t id, filtersMatch_t kind, CodeSet<filtersMatch_t> met)
{
    for (const auto& [mine, others] : {std::pair(IPV4, IPV6), std::pair(IPV6, IPV4)})
        if (mine.contains(kind) && !(met & others).empty()) {
            FiltersRefusal refusal = ofMatch(REFUSAL_IPV4_WITH_IPV6, id, kind);
            refusal.excludingMatches = met & others;
            refusal.admittedMatches = everyMatchBut(mine);
            return {refusal};
        }
    return {};
}

CodeSet<filtersMatch_t> heldBy(const FiltersEntry& entry)
{
    CodeSet<filtersMatch_t> kinds;
    for (const auto& element : entry.getMatchesRef())
        kinds.insert(element.first);
    return kinds;
}

// --------------------------------------------------------------------------------- single matches

/** Entries with no match, one match of each class, and both addresses of each version. */
std::vector<FiltersEntry> holders()
{
    std::vector<FiltersEntry> holders = entriesByMatch();
    holders.emplace_back().setMatch(MatchSrcIPv4(ipv4("192.0.2.1")));
    holders.back().setMatch(MatchDstIPv4(ipv4("192.0.2.2")));
    holders.emplace_back().setMatch(MatchSrcIPv6(ipv6("2001:db8::1")));
    holders.back().setMatch(MatchDstIPv6(ipv6("2001:db8::2")));
    for (std::size_t i = 0; i < holders.size(); ++i)
        holders[i].setId(static_cast<filtersEntryId_t>(1000 + i));
    return holders;
}

TEST(SetMatchRefusals, OfEveryClassBesideEveryOther)
{
    std::size_t refused = 0;
    for (const FiltersEntry& entry : holders())
        MatchClasses::forEach([&](auto row) {
            const auto kind = static_cast<filtersMatch_t>(row.CODE);
            const Refusals refusals = setMatchRefusals(entry, row.sample());
            EXPECT_EQ(refusals, expectedExclusion(entry.getId(), kind, heldBy(entry)));
            EXPECT_EQ(refusals, l3Refusals(entry, kind));
            EXPECT_EQ(refusals.empty(), entry.isL3CompatibleMatch(row.sample()));
            EXPECT_EQ(FiltersEntry(entry).setMatch(row.sample()), codeOf(refusals));
            refused += refusals.size();
        });
    // Each of two addresses meets two of the other version, alone and together; both ways.
    EXPECT_EQ(refused, 2u * (2 + 1) * 2);
}

TEST(SetActionRefusals, OfTheKnownClassesThereAreNone)
{
    for (const FiltersEntry& entry : withEachAction(FiltersEntry(1)))
        ActionClasses::forEach([&](auto row) {
            EXPECT_EQ(setActionRefusals(entry, row.sample()), Refusals());
            EXPECT_EQ(FiltersEntry(entry).setAction(row.sample()), FILTERS_OK);
        });
}

TEST(L3Refusals, OfKindsThatThereAreNotThereAreNone)
{
    for (const FiltersEntry& entry : holders())
        for (const std::uint32_t code : unknownCodes(MATCH_KINDS))
            EXPECT_EQ(l3Refusals(entry, matchKind(code)), Refusals());
}

// -------------------------------------------------------------------------------- unknown classes

class OwnMatch : public Match {
public:
    OwnMatch() : Match(MATCH_DST_IPV6) {}
};
class OwnPcp : public MatchPcp {
public:
    OwnPcp() : MatchPcp(3) {}
};
class OwnDeny : public ActionDeny {};
struct NoMatch {};

template <class T>
void expectUnknownMatch(const T& match, filtersMatch_t kind)
{
    for (const FiltersEntry& entry : holders()) {
        Refusals expected = {ofMatch(REFUSAL_UNKNOWN_MATCH_CLASS, entry.getId(), kind)};
        for (const auto& refusal : expectedExclusion(entry.getId(), kind, heldBy(entry)))
            expected.push_back(refusal);
        EXPECT_EQ(setMatchRefusals(entry, match), expected);
        EXPECT_EQ(FiltersEntry(entry).setMatch(match), codeOf(expected));
    }
}

template <class T>
void expectUnknownAction(const T& action, filtersAction_t kind)
{
    FiltersEntry entry(7);
    const Refusals expected = {ofAction(REFUSAL_UNKNOWN_ACTION_CLASS, 7, kind)};
    EXPECT_EQ(setActionRefusals(entry, action), expected);
    EXPECT_EQ(entry.setAction(action), codeOf(expected));
}

TEST(UnknownClasses, AreTheFirstReason)
{
    for (const std::uint32_t code : knownAndUnknownCodes(MATCH_KINDS)) {
        expectUnknownMatch(Match(matchKind(code)), matchKind(code));
        expectUnknownMatch(MatchIPv4(matchKind(code), ipv4("192.0.2.1")), matchKind(code));
    }
    for (const std::uint32_t code : knownAndUnknownCodes(ACTION_KINDS)) {
        expectUnknownAction(Action(actionKind(code)), actionKind(code));
        expectUnknownAction(ActionPorts(actionKind(code), {}), actionKind(code));
    }
    expectUnknownMatch(OwnMatch(), MATCH_DST_IPV6);
    expectUnknownMatch(OwnPcp(), MATCH_PCP);
    expectUnknownAction(OwnDeny(), ACTION_DENY);
}

TEST(UnknownClasses, NeedNotBeMatchesOrActions)
{
    FiltersEntry entry(7);
    entry.setMatch(MatchSrcIPv4(ipv4("192.0.2.1")));
    const auto expect = [](const Refusals& refusals, filtersRefusalReason_t reason,
                           filtersErr_t code) {
        ASSERT_EQ(refusals.size(), 1u);
        EXPECT_EQ(refusals[0],
                  refusal(reason, [](FiltersRefusal& r) { r.entry = filtersEntryId_t{7}; }));
        EXPECT_EQ(refusals[0].code(), code);
    };
    expect(setMatchRefusals(entry, NoMatch()), REFUSAL_UNKNOWN_MATCH_CLASS,
           entry.setMatch(NoMatch()));
    expect(setMatchRefusals(entry, 14), REFUSAL_UNKNOWN_MATCH_CLASS, entry.setMatch(14));
    expect(setActionRefusals(entry, NoMatch()), REFUSAL_UNKNOWN_ACTION_CLASS,
           entry.setAction(NoMatch()));
    expect(setActionRefusals(entry, 1), REFUSAL_UNKNOWN_ACTION_CLASS, entry.setAction(1));
}

// ------------------------------------------------------------------------------------------- maps

/** An object of any class under any kind, and whether entries copy it. */
template <class Base>
struct Candidate {
    std::shared_ptr<Base> object;
    bool isOfItsKind;
    bool isKnown;
};

template <class Base, class Classes>
std::vector<Candidate<Base>> candidates()
{
    using Code = decltype(std::declval<Base>().getType());
    std::vector<Candidate<Base>> all;
    Classes::forEach([&](auto row) {
        all.push_back({std::make_shared<decltype(row.sample())>(row.sample()), true, true});
        all.push_back({std::make_shared<Base>(static_cast<Code>(row.CODE)), !row.HAS_VALUES, true});
    });
    constexpr bool IS_MATCH = std::is_same_v<Base, Match>;
    for (const std::uint32_t code : unknownCodes(IS_MATCH ? MATCH_KINDS : ACTION_KINDS))
        all.push_back({std::make_shared<Base>(static_cast<Code>(code)), false, false});
    // A caller's class is of its kind if it derives from the kind's class.
    if constexpr (IS_MATCH) {
        all.push_back({std::make_shared<OwnPcp>(), true, true});
        all.push_back({std::make_shared<OwnMatch>(), false, true});
        all.push_back({std::make_shared<MatchIPv4>(MATCH_SRC_IPV6, in_addr()), false, true});
    } else {
        all.push_back({std::make_shared<OwnDeny>(), true, true});
        all.push_back(
            {std::make_shared<ActionPorts>(ACTION_REDIRECT, std::list<limid_t>()), false, true});
    }
    return all;
}

/** Lends its objects to the map for as long as it lives. */
template <class Map, class Base>
class Lent {
public:
    Lent() = default;
    Lent(const Lent&) = delete;
    Lent& operator=(const Lent&) = delete;
    ~Lent()
    {
        for (auto& element : map)
            element.second.release();
    }

    /** Under the next key, whatever the kind. */
    void add(const Candidate<Base>& candidate)
    {
        map[static_cast<typename Map::key_type>(map.size())].reset(candidate.object.get());
    }

    Map map;
};

/** The refusals of one match beside those of @p met, which it joins if there are none. */
Refusals expectedOf(const Candidate<Match>& candidate, filtersEntryId_t id,
                    CodeSet<filtersMatch_t>& met)
{
    const filtersMatch_t kind = candidate.object->getType();
    if (!candidate.isKnown)
        return {};
    Refusals refusals = expectedExclusion(id, kind, met);
    if (!candidate.isOfItsKind)
        refusals.push_back(ofMatch(REFUSAL_MATCH_NOT_OF_ITS_KIND, id, kind));
    if (refusals.empty())
        met.insert(kind);
    return refusals;
}

Refusals expectedOfBoth(const Candidate<Match>& first, const Candidate<Match>& second,
                        filtersEntryId_t id, CodeSet<filtersMatch_t> met)
{
    Refusals refusals = expectedOf(first, id, met);
    for (const FiltersRefusal& refusal : expectedOf(second, id, met))
        refusals.push_back(refusal);
    return refusals;
}

TEST(CopyMatchesRefusals, OfEveryPairOfObjects)
{
    FiltersEntry nothing(7);
    FiltersEntry withIPv4(8);
    withIPv4.setMatch(MatchDstIPv4(ipv4("192.0.2.1")));
    FiltersEntry withIPv6(9);
    withIPv6.setMatch(MatchSrcIPv6(ipv6("2001:db8::1")));
    const auto all = candidates<Match, MatchClasses>();
    for (const FiltersEntry* entry : {&nothing, &withIPv4, &withIPv6})
        for (const Candidate<Match>& first : all)
            for (const Candidate<Match>& second : all) {
                Lent<Matches, Match> from;
                from.add(first);
                from.add(second);
                const Refusals copying = copyMatchesRefusals(*entry, from.map);
                ASSERT_EQ(copying, expectedOfBoth(first, second, entry->getId(), heldBy(*entry)));
                ASSERT_EQ(FiltersEntry(*entry).copyMatches(from.map), codeOf(copying));
                const Refusals setting = setMatchesRefusals(*entry, from.map);
                ASSERT_EQ(setting, expectedOfBoth(first, second, entry->getId(), {}));
                ASSERT_EQ(FiltersEntry(*entry).setMatches(from.map), codeOf(setting));
            }
}

TEST(CopyActionsRefusals, OfEveryPairOfObjects)
{
    const FiltersEntry entry(7);
    const auto all = candidates<Action, ActionClasses>();
    for (const Candidate<Action>& first : all)
        for (const Candidate<Action>& second : all) {
            Lent<Actions, Action> from;
            from.add(first);
            from.add(second);
            Refusals expected;
            for (const Candidate<Action>* candidate : {&first, &second})
                if (candidate->isKnown && !candidate->isOfItsKind)
                    expected.push_back(
                        ofAction(REFUSAL_ACTION_NOT_OF_ITS_KIND, 7, candidate->object->getType()));
            ASSERT_EQ(copyActionsRefusals(entry, from.map), expected);
            ASSERT_EQ(setActionsRefusals(entry, from.map), expected);
            ASSERT_EQ(FiltersEntry(entry).copyActions(from.map), codeOf(expected));
            ASSERT_EQ(FiltersEntry(entry).setActions(from.map), codeOf(expected));
        }
}

TEST(CopyRefusals, NullPointersAreSkipped)
{
    FiltersEntry entry(7);
    Matches matches;
    matches[MATCH_SRC_IPV6] = nullptr;
    put(matches, MATCH_TTL, Match(MATCH_PCP));
    EXPECT_EQ(copyMatchesRefusals(entry, matches),
              Refusals{ofMatch(REFUSAL_MATCH_NOT_OF_ITS_KIND, 7, MATCH_PCP)});
    Actions actions;
    actions[ACTION_PERMIT] = nullptr;
    EXPECT_EQ(copyActionsRefusals(entry, actions), Refusals());
}

TEST(CopyRefusals, AskingChangesNothing)
{
    FiltersEntry entry(7);
    entry.setMatch(MatchSrcIPv4(ipv4("192.0.2.1")));
    const std::string before = stateOf(entry);
    const Matches from = matchesOf(MatchAll(), MatchSrcIPv6(ipv6("::1")));
    copyMatchesRefusals(entry, from);
    setMatchesRefusals(entry, from);
    copyActionsRefusals(entry, actionsOf(ActionDeny()));
    setMatchRefusals(entry, MatchSrcIPv6(ipv6("::1")));
    EXPECT_EQ(stateOf(entry), before);
    EXPECT_EQ(from.size(), 2u);
}

} // namespace
} // namespace FiltersCommon
