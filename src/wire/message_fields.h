/**
 * The fields of the messages as types. Each type knows the field's number and its accessors in the
 * generated class, so that code that reads or writes a field, through a message or directly as
 * bytes, only has to name it.
 */
#ifndef FILTER_COMMON_SRC_WIRE_MESSAGE_FIELDS_H
#define FILTER_COMMON_SRC_WIRE_MESSAGE_FIELDS_H

#include "filter_groups.pb.h"

#include <cstdint>
#include <type_traits>
#include <utility>

namespace FiltersCommon {

// Functions for accessors that a field does not have are never instantiated.
#define FILTERS_COMMON_DEFINE_FIELD(Message, name, number)                                         \
    struct name {                                                                                  \
        static constexpr std::uint32_t NUMBER = Message::number;                                   \
        using Type = std::decay_t<decltype(std::declval<const Message&>().name())>;                \
        static decltype(auto) get(const Message& message) { return message.name(); }               \
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

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_WIRE_MESSAGE_FIELDS_H
