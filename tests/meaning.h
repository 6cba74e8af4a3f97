/**
 * What a message says, whatever its form: the reference for what reading loses.
 */
#ifndef FILTER_COMMON_TESTS_MEANING_H
#define FILTER_COMMON_TESTS_MEANING_H

#include "filter_groups.pb.h"

#include <policer_common.h>

#include <google/protobuf/descriptor.h>

#include <set>
#include <string>

namespace FiltersCommon::test {

namespace meaning {

using google::protobuf::FieldDescriptor;
using google::protobuf::Message;

std::string of(const Message& message);

/** One value of a field; @p index counts those of a repeated one. */
inline std::string ofValue(const Message& message, const FieldDescriptor& field, int index)
{
    const google::protobuf::Reflection& reflection = *message.GetReflection();
    const bool repeated = field.is_repeated();
    switch (field.cpp_type()) {
    case FieldDescriptor::CPPTYPE_MESSAGE:
        return of(repeated ? reflection.GetRepeatedMessage(message, &field, index)
                           : reflection.GetMessage(message, &field));
    case FieldDescriptor::CPPTYPE_STRING: {
        const std::string bytes = reflection.GetString(message, &field);
        if (field.name() == "policer_")
            return bytes.empty() ? policer::Policer().Serialize() : bytes;
        // An address without bytes is as long as one should be.
        return bytes.find_first_not_of('\0') == std::string::npos ? "" : bytes;
    }
    case FieldDescriptor::CPPTYPE_BOOL:
        return reflection.GetBool(message, &field) ? "1" : "0";
    case FieldDescriptor::CPPTYPE_INT32:
        return std::to_string(reflection.GetInt32(message, &field));
    default:
        return std::to_string(repeated ? reflection.GetRepeatedUInt32(message, &field, index)
                                       : reflection.GetUInt32(message, &field));
    }
}

/** What counts as not being there: a value that an absent field reads as. */
inline bool isNothing(const FieldDescriptor& field, const std::string& value)
{
    return field.cpp_type() != FieldDescriptor::CPPTYPE_MESSAGE && !field.is_repeated() &&
           (value.empty() || value == "0");
}

/**
 * The message as text in which absent fields are like zeros, the order of parts and of members of
 * sets does not matter, and equal ones count once. What the schema does not have is part of it.
 */
inline std::string of(const Message& message)
{
    const google::protobuf::Reflection& reflection = *message.GetReflection();
    std::string text = "{";
    for (int i = 0; i < message.GetDescriptor()->field_count(); ++i) {
        const FieldDescriptor& field = *message.GetDescriptor()->field(i);
        const bool isSet =
            field.name() == "vlan_id_" ||
            (field.is_repeated() && field.cpp_type() == FieldDescriptor::CPPTYPE_MESSAGE);
        const int count = field.is_repeated()
                              ? reflection.FieldSize(message, &field)
                              : (field.is_required() || reflection.HasField(message, &field));
        std::set<std::string> values;
        std::string list;
        for (int index = 0; index < count; ++index) {
            const std::string value = ofValue(message, field, index);
            if (isSet)
                values.insert(value);
            else if (!isNothing(field, value))
                list += value + ",";
        }
        for (const std::string& value : values)
            list += value + ",";
        if (!list.empty())
            text += field.name() + ":" + list;
    }
    if (!reflection.GetUnknownFields(message).empty())
        text += "unknown:" + std::to_string(reflection.GetUnknownFields(message).field_count());
    return text + "}";
}

} // namespace meaning

/** What bytes that cannot be read say. */
inline const std::string UNREADABLE = "unreadable";

/** What the bytes say, or that they cannot be read; the zero that ends an envelope says nothing. */
template <class PB>
std::string meaningOf(const std::string& bytes)
{
    PB pb;
    const bool isEnvelope = !bytes.empty() && bytes.back() == '\0' &&
                            pb.ParsePartialFromString(bytes.substr(0, bytes.size() - 1));
    if (!isEnvelope && !pb.ParsePartialFromString(bytes))
        return UNREADABLE;
    return meaning::of(pb);
}

} // namespace FiltersCommon::test

#endif // FILTER_COMMON_TESTS_MEANING_H
