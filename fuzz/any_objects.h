/**
 * Objects of every class, with values that the input decides.
 */
#ifndef FILTER_COMMON_FUZZ_ANY_OBJECTS_H
#define FILTER_COMMON_FUZZ_ANY_OBJECTS_H

#include "byte_source.h"

#include "samples.h"

#include "filter_actions.pb.h"

#include <cstddef>
#include <list>
#include <memory>
#include <set>
#include <tuple>
#include <type_traits>

namespace FiltersCommon::fuzz {

// ----------------------------------------------------------------------------------------- values

template <class V>
struct AnyValue {
    static V of(ByteSource& in)
    {
        if constexpr (std::is_same_v<V, bool>)
            return in.flip();
        else if constexpr (std::is_arithmetic_v<V> || std::is_enum_v<V>)
            return in.number<V>();
        else
            return in.raw<V>();
    }
};

template <class V>
struct AnyValue<std::list<V>> {
    static std::list<V> of(ByteSource& in)
    {
        std::list<V> values;
        for (std::size_t count = in.below(4); count != 0; --count)
            values.push_back(AnyValue<V>::of(in));
        return values;
    }
};

template <class V>
struct AnyValue<std::set<V>> {
    static std::set<V> of(ByteSource& in)
    {
        const auto values = AnyValue<std::list<V>>::of(in);
        return {values.begin(), values.end()};
    }
};

template <class V>
V anyValue(ByteSource& in)
{
    return AnyValue<V>::of(in);
}

// ---------------------------------------------------------------------------- matches and actions

/** Built by the longest constructor of the row's class. */
template <int CODE, auto KIND, class T, class... Arguments>
T anyOf(test::Row<CODE, KIND, T, Arguments...>, ByteSource& in)
{
    return std::make_from_tuple<T>(std::tuple<Arguments...>{anyValue<Arguments>(in)...});
}

/** A match that no constructor in the rows can build. */
inline MatchIngressPorts anyExcludedPorts(ByteSource& in)
{
    return MatchIngressPorts(anyValue<std::list<port_type_t>>(in));
}

inline ActionRedirect anyRedirection(ByteSource& in)
{
    ActionPB pb;
    ActionBlockEgressPorts(anyValue<std::list<limid_t>>(in)).convertToActionPB(&pb);
    ActionRedirect action(limid_t{});
    action.convertFromActionPB(&pb);
    return action;
}

/** Calls @p function with an object of the class at @p index of the list. */
template <class Classes, class Function>
void withObjectOf(std::size_t index, ByteSource& in, Function&& function)
{
    Classes::forEach([&](auto row) {
        if (index-- == 0)
            function(anyOf(row, in));
    });
}

/** Calls @p function with a match of any class, as an object of that class. */
template <class Function>
void withAnyMatch(ByteSource& in, Function&& function)
{
    const std::size_t index = in.below(test::MatchClasses::SIZE + 1);
    if (index == test::MatchClasses::SIZE)
        function(anyExcludedPorts(in));
    else
        withObjectOf<test::MatchClasses>(index, in, function);
}

template <class Function>
void withAnyAction(ByteSource& in, Function&& function)
{
    const std::size_t index = in.below(test::ActionClasses::SIZE + 1);
    if (index == test::ActionClasses::SIZE)
        function(anyRedirection(in));
    else
        withObjectOf<test::ActionClasses>(index, in, function);
}

/** A kind code, known or not. */
template <class Code>
Code anyCode(ByteSource& in)
{
    const std::uint8_t number = in.byte();
    return number < 0xF0 ? static_cast<Code>(number % (test::MATCH_KINDS + 4)) : in.number<Code>();
}

/** A map as callers may pass it: with objects under any keys, null pointers and base objects. */
template <class Map, class WithAny>
Map anyMap(ByteSource& in, WithAny withAny)
{
    using Code = typename Map::key_type;
    using Base = typename Map::mapped_type::element_type;
    Map map;
    for (std::size_t count = in.below(6); count != 0; --count) {
        const auto key = anyCode<Code>(in);
        const std::size_t form = in.below(16);
        if (form == 0)
            map[key] = nullptr;
        else if (form == 1)
            map[key] = std::make_unique<Base>(anyCode<Code>(in));
        else
            withAny(in, [&](const auto& object) {
                map[form < 4 ? key : object.getType()] =
                    std::make_unique<std::decay_t<decltype(object)>>(object);
            });
    }
    return map;
}

inline FiltersEntry::MatchMap anyMatches(ByteSource& in)
{
    return anyMap<FiltersEntry::MatchMap>(
        in, [](ByteSource& source, auto function) { withAnyMatch(source, function); });
}

inline FiltersEntry::ActionMap anyActions(ByteSource& in)
{
    return anyMap<FiltersEntry::ActionMap>(
        in, [](ByteSource& source, auto function) { withAnyAction(source, function); });
}

// ---------------------------------------------------------------------------- policer and counter

inline policer::Policer anyPolicer(ByteSource& in)
{
    const auto stage = in.smallNumber<policer::Stage>();
    using Rates = policer::Mode::Rates;
    Rates rates;
    for (const auto rate :
         {&Rates::cir, &Rates::cbs, &Rates::ebs, &Rates::eir, &Rates::pbs, &Rates::pir})
        rates.*rate = in.smallNumber<std::uint32_t>();
    std::set<policer::Action> actions;
    for (std::size_t count = in.below(4); count != 0; --count) {
        const auto color = in.smallNumber<policer::Action::Color>();
        const auto type = in.smallNumber<policer::Action::Type>();
        actions.emplace(color, type, in.byte());
    }
    const policer::Mode mode(in.smallNumber<policer::Mode::Type>(), rates);
    return {in.smallNumber<std::uint32_t>(), stage, mode, actions};
}

inline Counter anyCounter(ByteSource& in)
{
    const auto id = in.number<unsigned short>();
    return {id, in.smallNumber<counter_type_t>()};
}

} // namespace FiltersCommon::fuzz

#endif // FILTER_COMMON_FUZZ_ANY_OBJECTS_H
