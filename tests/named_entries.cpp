#include "named_entries.h"

#include <set>

namespace FiltersCommon::test {

// ---------------------------------------------------------------------------------------- entries

namespace {

policer::Mode modeOf(policer::Mode::Type type)
{
    policer::Mode::Rates rates;
    rates.cir = 1000;
    rates.cbs = 2000;
    rates.ebs = 3000;
    rates.eir = 4000;
    rates.pbs = 5000;
    rates.pir = 6000;
    return {type, rates};
}

/** One action for each color, each of another type. */
std::set<policer::Action> threeActions()
{
    using policer::Action;
    return {{Action::GREEN, Action::SET_DSCP, 46},
            {Action::YELLOW, Action::SET_PCP, 3},
            {Action::RED, Action::DROP}};
}

template <class Fill>
Named<FiltersEntry> namedEntry(const char* name, filtersEntryId_t id, Fill fill)
{
    const auto entry = std::make_shared<FiltersEntry>(id);
    fill(*entry);
    return {name, entry};
}

Named<FiltersEntry> entryWithPolicer(const char* name, const policer::Policer& policer)
{
    return namedEntry(name, 1, [&](FiltersEntry& entry) { entry.setPolicer(policer); });
}

/** From the TPID on, the numbers of a dump are hexadecimal. */
void fillAroundTpid(FiltersEntry& entry)
{
    entry.setPriority(1000);
    entry.setPolicer(policerOf(policer::STAGE_INGRESS, policer::Mode::FLOW));
    entry.setCounter(Counter(12, COUNTER_TYPE_OCTETS));
    entry.setMatch(MatchExternalVlanId({10, 20}));
    entry.setMatch(MatchTPID(0x8100));
    entry.setMatch(MatchDstL4Port(80));
    entry.setMatch(MatchIpProtocol(17));
    entry.setAction(ActionMapToCpuCosQueue(31));
    entry.setAction(ActionL3Switch(3054));
}

/** The first form of every match class that @p admits, MatchDSCP aside. */
template <class Admits>
void setEveryMatch(FiltersEntry& entry, Admits admits)
{
    FiltersEntry::MatchMap matches;
    for (const Sample<Match>& sample : matchSamples())
        if (sample.name == sample.className() && sample.name != "MatchDSCP" &&
            admits(sample.object->getType()))
            matches[sample.object->getType()] = sample.copy();
    entry.copyMatches(matches);
}

void setEveryAction(FiltersEntry& entry)
{
    FiltersEntry::ActionMap actions;
    for (const Sample<Action>& sample : actionSamples())
        if (sample.name == sample.className())
            actions[sample.object->getType()] = sample.copy();
    entry.copyActions(actions);
}

bool isIPv4(filtersMatch_t kind) { return kind == MATCH_SRC_IPV4 || kind == MATCH_DST_IPV4; }
bool isIPv6(filtersMatch_t kind) { return kind == MATCH_SRC_IPV6 || kind == MATCH_DST_IPV6; }

} // namespace

policer::Policer policerOf(policer::Stage stage, policer::Mode::Type type)
{
    return {17, stage, modeOf(type), threeActions()};
}

void fillTypical(FiltersEntry& entry)
{
    entry.setPriority(100);
    entry.setMatch(MatchDstIPv4(ipv4("192.0.2.0"), ipv4("255.255.255.0")));
    entry.setAction(ActionDeny());
}

void fillIPv6(FiltersEntry& entry)
{
    entry.setMatch(MatchDstIPv6(ipv6("2001:db8::"), ipv6("ffff:ffff::")));
    entry.setMatch(MatchVrfId(9));
    entry.setAction(redirectTo({limId(0, 1, 0, 1), limId(0, 1, 0, 2), limId(1, 0, 0, 7)}));
}

std::vector<Named<FiltersEntry>> entrySamples()
{
    using policer::Mode;
    using policer::Policer;
    using policer::STAGE_EGRESS;
    using policer::STAGE_INGRESS;
    using policer::STAGE_NONE;
    const auto unnamed = static_cast<std::uint32_t>(5);
    const policer::Action unnamedAction(static_cast<policer::Action::Color>(unnamed),
                                        static_cast<policer::Action::Type>(unnamed), 1);

    return {
        namedEntry("empty", 0, [](FiltersEntry&) {}),
        namedEntry("typical", 7, fillTypical),
        namedEntry("limits", 65535,
                   [](FiltersEntry& entry) {
                       entry.setPriority(4294967295);
                       entry.setCounter(Counter(65535, static_cast<counter_type_t>(-1)));
                   }),
        namedEntry("tpid_in_the_middle", 42, fillAroundTpid),
        namedEntry("ipv6", 3, fillIPv6),
        namedEntry("dscp", 4, [](FiltersEntry& entry) { entry.setMatch(MatchDSCP(10)); }),
        namedEntry("counter_packets", 5,
                   [](FiltersEntry& entry) { entry.setCounter(Counter(6, COUNTER_TYPE_PACKETS)); }),
        namedEntry("every_match_but_ipv6", 1000,
                   [](FiltersEntry& entry) {
                       setEveryMatch(entry, [](filtersMatch_t kind) { return !isIPv6(kind); });
                   }),
        namedEntry("every_match_but_ipv4_and_tpid", 1001,
                   [](FiltersEntry& entry) {
                       setEveryMatch(entry, [](filtersMatch_t kind) {
                           return !isIPv4(kind) && kind != MATCH_TPID;
                       });
                   }),
        namedEntry("every_action", 1002, setEveryAction),
        entryWithPolicer("policer_sr_tcm", policerOf(STAGE_INGRESS, Mode::SR_TCM)),
        entryWithPolicer("policer_tr_tcm", policerOf(STAGE_EGRESS, Mode::TR_TCM)),
        entryWithPolicer("policer_tr_tcm_ds", policerOf(STAGE_INGRESS, Mode::TR_TCM_DS)),
        entryWithPolicer("policer_flow", policerOf(STAGE_EGRESS, Mode::FLOW)),
        entryWithPolicer("policer_invalid",
                         Policer(Policer::INVALID_ID, STAGE_INGRESS, Mode(), {})),
        entryWithPolicer("policer_not_shown", policerOf(STAGE_NONE, Mode::FLOW)),
        entryWithPolicer("policer_unnamed",
                         Policer(4294967294, static_cast<policer::Stage>(unnamed),
                                 modeOf(static_cast<Mode::Type>(unnamed)), {unnamedAction})),
    };
}

std::vector<Named<FiltersEntry>> entriesOfEachKind()
{
    std::vector<Named<FiltersEntry>> entries;
    for (const Sample<Match>& sample : matchSamples())
        entries.push_back(namedEntry(sample.name.c_str(), 1, [&](FiltersEntry& entry) {
            FiltersEntry::MatchMap one;
            one[sample.object->getType()] = sample.copy();
            entry.copyMatches(one);
        }));
    for (const Sample<Action>& sample : actionSamples())
        entries.push_back(namedEntry(sample.name.c_str(), 1, [&](FiltersEntry& entry) {
            FiltersEntry::ActionMap one;
            one[sample.object->getType()] = sample.copy();
            entry.copyActions(one);
        }));
    return entries;
}

// ----------------------------------------------------------------------------------------- groups

namespace {

template <class Fill>
Named<FiltersGroup> namedGroup(const char* name, filtersGroupId_t id, filtersGroupStage_t stage,
                               filtersGroupType_t type, Fill fill)
{
    const auto group = std::make_shared<FiltersGroup>(id);
    group->setStage(stage);
    group->setType(type);
    fill(*group);
    return {name, group};
}

} // namespace

void fillAccessList(FiltersGroup& group)
{
    group.setPriority(500);
    insert(group, 11, fillTypical);
    insert(group, 300, [](FiltersEntry&) {});
    insert(group, 2, [](FiltersEntry& entry) {
        entry.setPriority(4294967295);
        entry.setMatch(MatchSrcIPv4(ipv4("10.1.0.0"), ipv4("255.255.0.0")));
        entry.setMatch(MatchIpProtocol(6));
        entry.setMatch(MatchSrcL4Port(0x0400, 0xFC00));
        entry.setAction(ActionPermit());
        entry.setAction(ActionSetDSCP(10));
    });
}

std::vector<Named<FiltersGroup>> groupSamples()
{
    using policer::Mode;
    const auto withPolicers = [](policer::Stage stage) {
        return [stage](FiltersGroup& group) {
            for (const auto type :
                 {Mode::SR_TCM, Mode::TR_TCM, Mode::TR_TCM_DS, Mode::FLOW, Mode::NONE})
                insert(group, static_cast<filtersEntryId_t>(type),
                       [&](FiltersEntry& entry) { entry.setPolicer(policerOf(stage, type)); });
        };
    };

    return {
        namedGroup("empty", 7, GROUP_STAGE_0, GROUP_TYPE_0, [](FiltersGroup&) {}),
        namedGroup("limits", 65535, GROUP_STAGE_3, GROUP_TYPE_5,
                   [](FiltersGroup& group) { group.setPriority(65535); }),
        namedGroup("access_list", 1, GROUP_STAGE_0, GROUP_TYPE_3, fillAccessList),
        namedGroup("tpid_in_the_middle", 20, GROUP_STAGE_2, GROUP_TYPE_3,
                   [](FiltersGroup& group) {
                       insert(group, 10, [](FiltersEntry& entry) { entry.setMatch(MatchAll()); });
                       insert(group, 42, fillAroundTpid);
                       insert(group, 43, fillAroundTpid);
                   }),
        namedGroup("ipv6", 8, GROUP_STAGE_0, GROUP_TYPE_8,
                   [](FiltersGroup& group) { insert(group, 3, fillIPv6); }),
        namedGroup("ingress_policers", 2, GROUP_STAGE_2, GROUP_TYPE_7,
                   withPolicers(policer::STAGE_INGRESS)),
        namedGroup("egress_policers", 3, GROUP_STAGE_3, GROUP_TYPE_5,
                   withPolicers(policer::STAGE_EGRESS)),
    };
}

} // namespace FiltersCommon::test
