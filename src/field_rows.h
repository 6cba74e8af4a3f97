/**
 * The rows of the tables that say which member of a class stands in which field.
 *
 * A table is interpreted by a writer and a reader. There are two of each, with the same interface:
 * MessageWriter and MessageReader for the generated messages, ByteWriter and ByteReader for bytes
 * as the library itself writes them. All of them take the fields in ascending order of number.
 */
#ifndef FILTER_COMMON_SRC_FIELD_ROWS_H
#define FILTER_COMMON_SRC_FIELD_ROWS_H

#include "bytes.h"
#include "filter_types.h"

#include <net/ethernet.h>
#include <netinet/in.h>

#include <cstdint>
#include <list>
#include <set>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

namespace FiltersCommon {

// ---------------------------------------------------------------------------- values and numbers

template <class T>
constexpr std::uint32_t toNumber(T value)
{
    return static_cast<std::uint32_t>(value);
}
constexpr std::uint32_t toNumber(limid_t value) { return packLimId(value); }
constexpr std::uint32_t toNumber(vlan_info_t value) { return toNumber(value.svcVlanType); }

/** The value that a number stands for, cut to the width of T. */
template <class T>
constexpr T fromNumber(std::uint32_t number)
{
    if constexpr (std::is_same_v<T, limid_t>)
        return unpackLimId(number);
    else if constexpr (std::is_same_v<T, vlan_info_t>)
        return {fromNumber<decltype(vlan_info_t::svcVlanType)>(number)};
    else
        return static_cast<T>(number);
}

// -------------------------------------------------------------------------- members of every type

/** A member that is one number. */
template <class T>
struct FieldValue {
    template <class Field, class Writer>
    static void write(Writer& writer, T value)
    {
        writer.number(Field(), toNumber(value));
    }
    template <class Field, class Reader>
    static T read(Reader& reader)
    {
        return fromNumber<T>(reader.number(Field()));
    }
};

/** A member that is sent byte by byte. */
template <class T>
struct ByteFieldValue {
    template <class Field, class Writer>
    static void write(Writer& writer, const T& value)
    {
        writer.bytes(Field(), {reinterpret_cast<const char*>(&value), sizeof value});
    }
    template <class Field, class Reader>
    static T read(Reader& reader)
    {
        return fromBytes<T>(reader.bytes(Field()));
    }
};
template <>
struct FieldValue<ether_addr> : ByteFieldValue<ether_addr> {};
template <>
struct FieldValue<in_addr> : ByteFieldValue<in_addr> {};
template <>
struct FieldValue<in6_addr> : ByteFieldValue<in6_addr> {};

/** A member that is a sequence of numbers. */
template <class Container>
struct NumbersFieldValue {
    using Element = typename Container::value_type;

    template <class Field, class Writer>
    static void write(Writer& writer, const Container& values)
    {
        for (const Element value : values)
            writer.addNumber(Field(), toNumber(value));
    }
    template <class Field, class Reader>
    static Container read(Reader& reader)
    {
        Container values;
        reader.numbers(Field(), [&](std::uint32_t number) {
            values.insert(values.end(), fromNumber<Element>(number));
        });
        return values;
    }
};
template <class T>
struct FieldValue<std::list<T>> : NumbersFieldValue<std::list<T>> {};

/** A set is the whole of its field: what a message held there before is dropped. */
template <class T>
struct FieldValue<std::set<T>> : NumbersFieldValue<std::set<T>> {
    template <class Field, class Writer>
    static void write(Writer& writer, const std::set<T>& values)
    {
        writer.clear(Field());
        NumbersFieldValue<std::set<T>>::template write<Field>(writer, values);
    }
};

// ------------------------------------------------------------------------------------------- rows

template <class>
struct MemberPointer;
template <class T, class Value_>
struct MemberPointer<Value_ T::*> {
    using Value = Value_;
};

/** The member stands in the field; reading replaces its value. */
template <class Field, auto member>
struct At {
    using Value = typename MemberPointer<decltype(member)>::Value;

    template <class Writer, class T>
    static void write(Writer& writer, const T& object)
    {
        FieldValue<Value>::template write<Field>(writer, object.*member);
    }
    template <class Reader>
    static Value read(Reader& reader)
    {
        return FieldValue<Value>::template read<Field>(reader);
    }
    template <class T>
    static void commit(T& object, Value& value) noexcept
    {
        object.*member = std::move(value);
    }
};

/** The list stands in the field; reading appends to it. */
template <class Field, auto member>
struct Appended : At<Field, member> {
    using typename At<Field, member>::Value;

    template <class T>
    static void commit(T& object, Value& value) noexcept
    {
        (object.*member).splice((object.*member).end(), value);
    }
};

/** The rows of one class, in ascending order of the field numbers. */
template <class... Rows>
struct Fields {
    template <class Writer, class T>
    static void write([[maybe_unused]] Writer& writer, [[maybe_unused]] const T& object)
    {
        (Rows::write(writer, object), ...);
    }

    /** All values are read before the object is changed. */
    template <class Reader, class T>
    static void read([[maybe_unused]] Reader& reader, T& object)
    {
        std::tuple<typename Rows::Value...> values{Rows::read(reader)...};
        std::apply([&](auto&... value) { (Rows::commit(object, value), ...); }, values);
    }
};

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_FIELD_ROWS_H
