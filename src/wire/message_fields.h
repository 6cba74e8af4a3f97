/**
 * The fields of the messages as types. Each type knows the field's number and its accessors in the
 * generated class, so that code that reads or writes a field, through a message or directly as
 * bytes, only has to name it. Code that looks at bytes as they are has tables of the same fields.
 */
#ifndef FILTER_COMMON_SRC_WIRE_MESSAGE_FIELDS_H
#define FILTER_COMMON_SRC_WIRE_MESSAGE_FIELDS_H

#include "filter_groups.pb.h"
#include "filter_types.h"

#include <cstdint>
#include <type_traits>
#include <utility>

namespace FiltersCommon {

/** How often a field may be present. */
enum Label { REQUIRED, OPTIONAL, REPEATED };

struct MessageSchema;

/** What the wire says about a field. */
struct FieldSchema {
    /** How the value is written. */
    enum Form {
        NUMBER,        ///< 32 bits
        SIGNED_NUMBER, ///< 32 bits, a negative number as 64 bits
        TRUTH,
        BYTES,
        MESSAGE,
    };

    std::uint32_t number;
    const char* name;
    Label label;
    Form form;
    const MessageSchema* message; /**< of a field that holds one */
};

/** All fields of a message, in any order. */
struct MessageSchema {
    filtersPart_t part;
    const FieldSchema* first;
    const FieldSchema* last; /**< behind the last one */

    constexpr const FieldSchema* begin() const { return first; }
    constexpr const FieldSchema* end() const { return last; }

    /** The field, or null. */
    constexpr const FieldSchema* find(std::uint32_t number) const
    {
        for (const FieldSchema& field : *this)
            if (field.number == number)
                return &field;
        return nullptr;
    }
};

/** The schema of a generated message; specialised where its fields are listed. */
template <class Message>
inline constexpr MessageSchema SCHEMA_OF = {};

/** The message in a field of this type. */
template <class Type>
struct MessageIn {
    using Message = Type;
};
template <class Element>
struct MessageIn<google::protobuf::RepeatedPtrField<Element>> {
    using Message = Element;
};

template <class Field>
constexpr FieldSchema schemaOf()
{
    using Type = typename Field::Type;
    using Message = typename MessageIn<Type>::Message;
    FieldSchema schema = {Field::NUMBER, Field::NAME, Field::LABEL, FieldSchema::NUMBER, nullptr};
    if constexpr (std::is_base_of_v<google::protobuf::MessageLite, Message>) {
        schema.form = FieldSchema::MESSAGE;
        schema.message = &SCHEMA_OF<Message>;
    } else if constexpr (std::is_same_v<Type, std::int32_t>) {
        schema.form = FieldSchema::SIGNED_NUMBER;
    } else if constexpr (std::is_same_v<Type, bool>) {
        schema.form = FieldSchema::TRUTH;
    } else if constexpr (std::is_same_v<Type, std::string>) {
        schema.form = FieldSchema::BYTES;
    }
    return schema;
}

// Functions for accessors that a field does not have are never instantiated.
#define FILTERS_COMMON_DEFINE_FIELD(Message, name, number, label)                                  \
    struct name {                                                                                  \
        static constexpr std::uint32_t NUMBER = Message::number;                                   \
        static constexpr const char* NAME = #name;                                                 \
        static constexpr Label LABEL = label;                                                      \
        using Type = std::decay_t<decltype(std::declval<const Message&>().name())>;                \
        static decltype(auto) get(const Message& message) { return message.name(); }               \
        template <class M>                                                                         \
        static bool has(const M& message)                                                          \
        {                                                                                          \
            return message.has_##name();                                                           \
        }                                                                                          \
        template <class M, class... Value>                                                         \
        static void set(M* message, Value... value)                                                \
        {                                                                                          \
            message->set_##name(value...);                                                         \
        }                                                                                          \
        template <class M>                                                                         \
        static auto* change(M* message)                                                            \
        {                                                                                          \
            return message->mutable_##name();                                                      \
        }                                                                                          \
    };

#define FILTERS_COMMON_SCHEMA_OF_FIELD(Message, name, number, label) schemaOf<name>(),

/** Defines the fields in a list, and a table of them. */
#define FILTERS_COMMON_DEFINE_FIELDS(LIST)                                                         \
    LIST(FILTERS_COMMON_DEFINE_FIELD)                                                              \
    inline constexpr FieldSchema FIELDS[] = {LIST(FILTERS_COMMON_SCHEMA_OF_FIELD)};

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_WIRE_MESSAGE_FIELDS_H
