#include "filter_description.h"

#include "kinds.h"
#include "policer_tables.h"
#include "text.h"
#include "wire/filter_actions_rows.h"
#include "wire/filter_counter_rows.h"
#include "wire/filter_matches_rows.h"

#include <sstream>
#include <string_view>
#include <utility>

namespace FiltersCommon {

namespace {

// ----------------------------------------------------------------------------------------- values

template <class T>
FiltersValue valueOf(T value)
{
    if constexpr (std::is_same_v<T, bool>)
        return {value};
    else
        return {std::int64_t{number(value)}};
}

/** The name of an enumerator, or the number of one without a name. */
template <class T>
FiltersValue nameOrNumber(T value)
{
    if (const char* name = findValueName(value))
        return {std::string(name)};
    return {std::int64_t{number(value)}};
}
FiltersValue valueOf(port_type_t value) { return nameOrNumber(value); }
FiltersValue valueOf(cp2cpuCancelParam_t value) { return nameOrNumber(value); }
FiltersValue valueOf(counter_type_t value) { return nameOrNumber(value); }

template <class Address>
FiltersValue textOf(const Address& address)
{
    std::ostringstream text;
    writeAddress(text, address);
    return {text.str()};
}
FiltersValue valueOf(const ether_addr& value) { return textOf(value); }
FiltersValue valueOf(const in_addr& value) { return textOf(value); }
FiltersValue valueOf(const in6_addr& value) { return textOf(value); }

FiltersValue valueOf(limid_t value)
{
    std::ostringstream name;
    writeIntfName(name, value);
    return {name.str()};
}

template <class Container>
FiltersValue listOf(const Container& values)
{
    std::vector<FiltersValue> list;
    for (const auto& value : values)
        list.push_back(valueOf(value));
    return {std::move(list)};
}
FiltersValue valueOf(const std::list<limid_t>& values) { return listOf(values); }
FiltersValue valueOf(const std::list<port_type_t>& values) { return listOf(values); }
FiltersValue valueOf(const std::set<unsigned short>& values) { return listOf(values); }

/** "      VLAN IDs: [ " is the label "VLAN IDs". */
std::string labelOf(std::string_view label)
{
    label.remove_prefix(label.find_first_not_of(' '));
    return std::string(label.substr(0, label.find(':')));
}

// ---------------------------------------------------------------------------------------- objects

template <class Rows, class T>
FiltersDescription describeBy(const Rows& rows, const T& object)
{
    FiltersDescription fields;
    rows.describe(object, [&](const char* label, const auto& value) {
        fields.push_back({labelOf(label), valueOf(value)});
    });
    return fields;
}

template <class Kinds, class Table, class Base>
FiltersDescription describeByKind(const Base& object)
{
    return Kinds::dispatch(object.getType(), FiltersDescription(), [&](auto kind) {
        using Class = ClassOf<decltype(kind)>;
        if constexpr (!hasNoValues<Class>)
            if (const auto* values = as<ValuesOf<Class>, Class>(object))
                return describeBy(Table::of(values), *values);
        return FiltersDescription();
    });
}

template <class Code, std::size_t N>
FiltersValue wordOrNumber(const char* const (&words)[N], Code code)
{
    if (const char* word = findWord(words, code))
        return {std::string(word)};
    return {std::int64_t{code}};
}

FiltersValue describe(const policer::Action& action)
{
    FiltersDescription fields = {{"Color", wordOrNumber(POLICER_COLORS, action.GetColor())},
                                 {"Action", wordOrNumber(POLICER_ACTIONS, action.GetType())}};
    if (action.GetType() == policer::Action::SET_PCP)
        fields.push_back({"PCP", {std::int64_t{action.GetPcp()}}});
    else if (action.GetType() == policer::Action::SET_DSCP)
        fields.push_back({"DSCP", {std::int64_t{action.GetDscp()}}});
    return {std::move(fields)};
}

} // namespace

FiltersDescription describe(const Match& match)
{
    return describeByKind<MatchKinds, MatchRows>(match);
}

FiltersDescription describe(const Action& action)
{
    return describeByKind<ActionKinds, ActionRows>(action);
}

FiltersDescription describe(const Counter& counter)
{
    return describeBy(CounterRows::of(&counter), counter);
}

FiltersDescription describe(const policer::Policer& policer)
{
    FiltersDescription fields;
    if (policer.GetId() == policer::Policer::INVALID_ID)
        fields.push_back({"Policer Id", {std::string("Invalid")}});
    else
        fields.push_back({"Policer Id", {std::int64_t{policer.GetId()}}});
    fields.push_back({"Stage", wordOrNumber(POLICER_STAGES, policer.GetStage())});

    const policer::Mode& mode = policer.GetMode();
    const PolicerMode* row = findPolicerMode(mode.GetType());
    fields.push_back({"Mode", row == nullptr ? FiltersValue{std::int64_t{mode.GetType()}}
                                             : FiltersValue{std::string(row->name)}});
    for (const PolicerRate& rate : POLICER_RATES)
        if (rate.get(mode) != 0 || (row != nullptr && row->uses(rate)))
            fields.push_back({rate.name, {std::int64_t{rate.get(mode)}}});

    std::vector<FiltersValue> actions;
    for (const policer::Action& action : policer.GetActions())
        actions.push_back(describe(action));
    fields.push_back({"Actions", {std::move(actions)}});
    return fields;
}

} // namespace FiltersCommon
