/**
 * Rows: everything there is to know about a member of a class, in one place.
 *
 * Messages and bytes are written and read according to the field of a row. There are two pairs of
 * writers and readers with the same interface: MessageWriter and MessageReader for the generated
 * messages, ByteWriter and ByteReader for bytes as the library itself writes them. All expect the
 * fields in ascending order of number. Dumps use the label and the formatter of a row, descriptions
 * its label, and rule text its notation.
 */
#ifndef FILTER_COMMON_SRC_WIRE_ROWS_H
#define FILTER_COMMON_SRC_WIRE_ROWS_H

#include "bytes.h"
#include "filter_types.h"
#include "losses.h"
#include "text.h"

#include <net/ethernet.h>
#include <netinet/in.h>

#include <cstdint>
#include <list>
#include <ostream>
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

/** The value that a number represents, truncated to the width of T. */
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

/** Reports if the value is not the number that its field holds. */
template <class Field, class Reader, class T>
void reportCut(const Reader& reader, std::uint32_t number, T value)
{
    report(reader, [&](Losses& losses) {
        if (toNumber(value) != number)
            losses.addChange(REFUSAL_NUMBER_CUT, Field::NUMBER, widened<Field>(number),
                             toNumber(value));
    });
}

// -------------------------------------------------------------------------------- types of member

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
        const std::uint32_t number = reader.number(Field());
        const T value = fromNumber<T>(number);
        reportCut<Field>(reader, number, value);
        return value;
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
        const std::string_view bytes = reader.bytes(Field());
        if constexpr (Reader::REPORTS)
            if (bytes.size() != sizeof(T) && reader.has(Field()))
                reader.losses().addChange(REFUSAL_LENGTH_CHANGED, Field::NUMBER, bytes.size(),
                                          sizeof(T));
        return fromBytes<T>(bytes);
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
            const Element value = fromNumber<Element>(number);
            reportCut<Field>(reader, number, value);
            values.insert(values.end(), value);
        });
        return values;
    }
};
template <class T>
struct FieldValue<std::list<T>> : NumbersFieldValue<std::list<T>> {};

/** A set is the entire contents of its field: what the message held there before is dropped. */
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

/** How rule text writes a member. */
enum class Notation {
    NONE,             ///< not written: the value follows from that of another row
    NUMBER,           ///< 7
    TPID,             ///< 0x8100
    TRUTH,            ///< true
    PORT,             ///< 01020304
    PORTS,            ///< 01020304,01020305
    EXCEPTED_TYPES,   ///< except:0,except:1
    VLAN_IDS,         ///< 10,20-29
    PROTOCOL,         ///< tcp, or a number if it has no name
    COUNTER,          ///< 7, of which the type follows
    COUNTED,          ///< :packets
    ADDRESS,          ///< 192.0.2.1, 2001:db8::1 or 00:1a:2b:00:00:01
    LENGTH_OR_MASK,   ///< /24, or the mask as an address; nothing for all ones
    MASK,             ///< the mask as an address; nothing for all ones
    HEXADECIMAL_MASK, ///< /0xfc00; nothing for all ones
};

template <class>
struct MemberPointer;
template <class T, class Value_>
struct MemberPointer<Value_ T::*> {
    using Value = Value_;
};

/** How a member is shown to people: in a dump, in a description and in rule text. */
template <class Formatter>
struct Shown {
    /** As written in the dump, with its indentation and what separates it from the value. */
    const char* label;
    Formatter formatter;
    Notation notation;
    /** The word of rule text, for a member that is a word of its own; else it is in its kind's. */
    const char* word;
};

/** The field holds the member; reading replaces its value. */
template <class Field, auto member, class Formatter>
struct AtRow : Shown<Formatter> {
    static constexpr std::uint32_t NUMBER = Field::NUMBER;
    using Value = typename MemberPointer<decltype(member)>::Value;

    constexpr explicit AtRow(const Shown<Formatter>& shown) : Shown<Formatter>(shown) {}

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
    template <class T>
    static const Value& get(const T& object)
    {
        return object.*member;
    }
};

/** The field holds the list; reading appends to it. */
template <class Field, auto member, class Formatter>
struct AppendedRow : AtRow<Field, member, Formatter> {
    using AtRow<Field, member, Formatter>::AtRow;
    using typename AtRow<Field, member, Formatter>::Value;

    template <class T>
    static void commit(T& object, Value& value) noexcept
    {
        (object.*member).splice((object.*member).end(), value);
    }
};

/** What a getter returns for a member that has a row elsewhere. */
template <auto getter, class Formatter>
struct ShownRow : Shown<Formatter> {
    static constexpr std::uint32_t NUMBER = 1; // the only row of its class
    constexpr explicit ShownRow(const Shown<Formatter>& shown) : Shown<Formatter>(shown) {}

    template <class T>
    static auto get(const T& object)
    {
        return (object.*getter)();
    }
};

template <class Field, auto member, class Formatter>
constexpr AtRow<Field, member, Formatter> at(const char* label, Formatter formatter,
                                             Notation notation, const char* word = nullptr)
{
    return AtRow<Field, member, Formatter>({label, formatter, notation, word});
}

template <class Field, auto member, class Formatter>
constexpr AppendedRow<Field, member, Formatter> appended(const char* label, Formatter formatter,
                                                         Notation notation)
{
    return AppendedRow<Field, member, Formatter>({label, formatter, notation, nullptr});
}

template <auto getter, class Formatter>
constexpr ShownRow<getter, Formatter> shown(const char* label, Formatter formatter)
{
    return ShownRow<getter, Formatter>({label, formatter, Notation::NONE, nullptr});
}

/** The rows of one class, in ascending order of the field numbers, and the head of its dump. */
template <class... Row>
class Rows {
public:
    constexpr explicit Rows(Head head, Row... rows) : head_(head), rows_(rows...) {}

    constexpr Head head() const { return head_; }

    template <class Writer, class T>
    static void write([[maybe_unused]] Writer& writer, [[maybe_unused]] const T& object)
    {
        (Row::write(writer, object), ...);
    }

    /** Reads all values before changing the object. */
    template <class Reader, class T>
    static void read([[maybe_unused]] Reader& reader, [[maybe_unused]] T& object)
    {
        std::tuple<typename Row::Value...> values{Row::read(reader)...};
        std::apply([&](auto&... value) { (Row::commit(object, value), ...); }, values);
    }

    /** Dumps the values of the object. */
    template <class T>
    void dump([[maybe_unused]] std::ostream& out, [[maybe_unused]] const T& object) const
    {
        std::apply(
            [&](const Row&... row) {
                (row.formatter(out, row.label, row.get(object), object), ...);
            },
            rows_);
    }

    /** Calls @p use with the label and the value of each row that is described for the object. */
    template <class T, class Use>
    void describe([[maybe_unused]] const T& object, [[maybe_unused]] Use&& use) const
    {
        std::apply(
            [&](const Row&... row) {
                ((row.formatter.shows(object) ? use(row.label, row.get(object)) : void()), ...);
            },
            rows_);
    }

    /** Whether one of the rows is that of the field. */
    static constexpr bool have([[maybe_unused]] std::uint32_t field)
    {
        return ((Row::NUMBER == field) || ...);
    }

    /** Calls @p use with each row. */
    template <class Use>
    constexpr void each([[maybe_unused]] Use&& use) const
    {
        std::apply([&](const Row&... row) { (use(row), ...); }, rows_);
    }

private:
    static constexpr bool areInOrder()
    {
        [[maybe_unused]] std::uint32_t last = 0;
        bool ascend = true;
        ((ascend = ascend && Row::NUMBER > last, last = Row::NUMBER), ...);
        return ascend;
    }
    static_assert(areInOrder(), "rows must be in the order of their field numbers");

    Head head_;
    std::tuple<Row...> rows_;
};

template <class... Row>
constexpr Rows<Row...> rows(Row... row)
{
    return Rows<Row...>(Head::FLUSHED, row...);
}

template <class... Row>
constexpr Rows<Row...> rows(Head head, Row... row)
{
    return Rows<Row...>(head, row...);
}

/** Whether a table describes the members of T and not just those of Base, which has none. */
template <class Table, class Base, class T>
inline constexpr bool hasRowsOfItsOwn =
    !std::is_same_v<decltype(Table::of(static_cast<const T*>(nullptr))),
                    decltype(Table::of(static_cast<const Base*>(nullptr)))>;

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_WIRE_ROWS_H
