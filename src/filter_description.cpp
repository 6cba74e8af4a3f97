#include "filter_description.h"

#include "kinds.h"
#include "policer_tables.h"
#include "text.h"
#include "wire/filter_actions_rows.h"
#include "wire/filter_counter_rows.h"
#include "wire/filter_matches_rows.h"

#include <string_view>
#include <type_traits>
#include <utility>

namespace FiltersCommon {

namespace {

// ----------------------------------------------------------------------------------------- values

/** The enumerator's name, or its number if it has none. */
FiltersValue nameOrNumber(const char* name, std::int64_t number)
{
    if (name == nullptr)
        return {number};
    return {std::string(name)};
}

FiltersValue valueOf(bool value) { return {value}; }
FiltersValue valueOf(unsigned short value) { return {std::int64_t{value}}; }

FiltersValue valueOf(port_type_t value) { return nameOrNumber(findValueName(value), value); }
FiltersValue valueOf(cp2cpuCancelParam_t value)
{
    return nameOrNumber(findValueName(value), value);
}
FiltersValue valueOf(counter_type_t value) { return nameOrNumber(findValueName(value), value); }

template <class T>
FiltersValue textValueOf(const T& value)
{
    TextRoom room;
    const char* text = textOf(value, room);
    return {std::string(text == nullptr ? "" : text)};
}
FiltersValue valueOf(const ether_addr& value) { return textValueOf(value); }
FiltersValue valueOf(const in_addr& value) { return textValueOf(value); }
FiltersValue valueOf(const in6_addr& value) { return textValueOf(value); }
FiltersValue valueOf(limid_t value) { return textValueOf(value); }

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

/** Reduces "      VLAN IDs: [ " to the label "VLAN IDs". */
std::string_view nameIn(std::string_view label)
{
    label.remove_prefix(label.find_first_not_of(' '));
    return label.substr(0, label.find(':'));
}

template <class T, class = void>
inline constexpr bool hasNames = false;
template <class T>
inline constexpr bool hasNames<T, std::void_t<decltype(findValueName(std::declval<T>()))>> = true;

/** Whether members of type T are numbers without names or parts. */
template <class T>
inline constexpr bool isNumber =
    (std::is_integral_v<T> && !std::is_same_v<T, bool>) || std::is_same_v<T, vlan_info_t> ||
    (std::is_enum_v<T> && !hasNames<T>);

/** Takes fields by labels of dumps. */
class Fields {
public:
    template <class T>
    void operator()(const char* label, const T& value)
    {
        if constexpr (isNumber<T>)
            addNumber(label, number(value));
        else
            addOther(label, value);
    }

    // Not inline: that would repeat all of it for the rows of each kind.

    [[gnu::noinline]] void addNumber(const char* label, std::int64_t number)
    {
        add(label, {number});
    }

    template <class T>
    [[gnu::noinline]] void addOther(const char* label, const T& value)
    {
        add(label, valueOf(value));
    }

    [[gnu::noinline]] void add(std::string_view label, FiltersValue&& value)
    {
        FiltersField& field = fields_.emplace_back();
        field.label = nameIn(label);
        field.value = std::move(value);
    }

    FiltersDescription take() { return std::move(fields_); }

private:
    FiltersDescription fields_;
};

// ---------------------------------------------------------------------------------------- objects

template <class Kinds, class Table, class Base>
FiltersDescription describeByKind(const Base& object)
{
    Fields fields;
    Kinds::dispatch(object.getType(), nullptr, [&](auto kind) {
        using Class = ClassOf<decltype(kind)>;
        if constexpr (!hasNoValues<Class>)
            if (const auto* values = as<ValuesOf<Class>, Class>(object))
                Table::of(values).describe(*values, fields);
        return nullptr;
    });
    return fields.take();
}

FiltersValue describe(const policer::Action& action)
{
    Fields fields;
    fields.add("Color", nameOrNumber(nameIn(POLICER_COLORS, action.GetColor()), action.GetColor()));
    fields.add("Action", nameOrNumber(nameIn(POLICER_ACTIONS, action.GetType()), action.GetType()));
    if (action.GetType() == policer::Action::SET_PCP)
        fields("PCP", action.GetPcp());
    else if (action.GetType() == policer::Action::SET_DSCP)
        fields("DSCP", action.GetDscp());
    return {fields.take()};
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
    Fields fields;
    CounterRows::of(&counter).describe(counter, fields);
    return fields.take();
}

FiltersDescription describe(const policer::Policer& policer)
{
    Fields fields;
    const std::uint32_t id = policer.GetId();
    fields.add("Policer Id",
               nameOrNumber(id == policer::Policer::INVALID_ID ? "Invalid" : nullptr, id));
    fields.add("Stage",
               nameOrNumber(nameIn(POLICER_STAGES, policer.GetStage()), policer.GetStage()));

    const policer::Mode& mode = policer.GetMode();
    const PolicerMode* row = findRow(POLICER_MODES, mode.GetType());
    fields.add("Mode", nameOrNumber(row == nullptr ? nullptr : row->name, mode.GetType()));
    for (const PolicerRate& rate : POLICER_RATES)
        if (rate.of(mode) != 0 || (row != nullptr && row->uses(rate)))
            fields(rate.name, rate.of(mode));

    std::vector<FiltersValue> actions;
    for (const policer::Action& action : policer.GetActions())
        actions.push_back(describe(action));
    fields.add("Actions", {std::move(actions)});
    return fields.take();
}

} // namespace FiltersCommon
