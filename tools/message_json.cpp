#include "message_json.h"

#include "base64.h"

#include <google/protobuf/descriptor.h>
#include <google/protobuf/io/coded_stream.h>
#include <google/protobuf/message.h>

#include <climits>
#include <cstdint>
#include <limits>
#include <optional>
#include <utility>

namespace filterctl {

using google::protobuf::Descriptor;
using google::protobuf::FieldDescriptor;
using google::protobuf::Message;
using google::protobuf::Reflection;

namespace {

// ------------------------------------------------------------------------------- types of fields

using google::protobuf::io::CodedInputStream;

std::uint32_t readVarint(CodedInputStream& bytes)
{
    std::uint32_t number = 0;
    bytes.ReadVarint32(&number); // drops what a negative number has beyond 32 bits
    return number;
}

std::string_view readBytes(CodedInputStream& bytes)
{
    const auto size = static_cast<int>(readVarint(bytes));
    const void* data = nullptr;
    int available = 0;
    bytes.GetDirectBufferPointer(&data, &available);
    bytes.Skip(size);
    return {static_cast<const char*>(data), static_cast<std::size_t>(size)};
}

template <class T>
std::optional<T> numberIn(const JsonScalar& value)
{
    const auto* number = std::get_if<std::int64_t>(&value);
    if (number == nullptr || *number < std::int64_t{std::numeric_limits<T>::min()} ||
        *number > std::int64_t{std::numeric_limits<T>::max()})
        return std::nullopt;
    return static_cast<T>(*number);
}

/** How values of a type are written and read; fields of other types the schema has none. */
struct FieldType {
    FieldDescriptor::CppType type;
    const char* takes;
    /** Writes the value that is next in the bytes. */
    void (*write)(JsonWriter& json, const FieldDescriptor* field, CodedInputStream& bytes);
    /** Sets the field or adds an element. @return false if the value is not of the type */
    bool (*read)(const Reflection& to, Message* message, const FieldDescriptor* field,
                 const JsonScalar& value);
};

const FieldType FIELD_TYPES[] = {
    {FieldDescriptor::CPPTYPE_UINT32, "a whole number from 0 to 4294967295",
     [](JsonWriter& json, const FieldDescriptor*, CodedInputStream& bytes) {
         json.number(readVarint(bytes));
     },
     [](const Reflection& to, Message* message, const FieldDescriptor* field,
        const JsonScalar& value) {
         const auto number = numberIn<std::uint32_t>(value);
         if (number)
             field->is_repeated() ? to.AddUInt32(message, field, *number)
                                  : to.SetUInt32(message, field, *number);
         return number.has_value();
     }},
    {FieldDescriptor::CPPTYPE_INT32, "a whole number from -2147483648 to 2147483647",
     [](JsonWriter& json, const FieldDescriptor*, CodedInputStream& bytes) {
         json.number(static_cast<std::int32_t>(readVarint(bytes)));
     },
     [](const Reflection& to, Message* message, const FieldDescriptor* field,
        const JsonScalar& value) {
         const auto number = numberIn<std::int32_t>(value);
         if (number)
             field->is_repeated() ? to.AddInt32(message, field, *number)
                                  : to.SetInt32(message, field, *number);
         return number.has_value();
     }},
    {FieldDescriptor::CPPTYPE_BOOL, "true or false",
     [](JsonWriter& json, const FieldDescriptor*, CodedInputStream& bytes) {
         json.truth(readVarint(bytes) != 0);
     },
     [](const Reflection& to, Message* message, const FieldDescriptor* field,
        const JsonScalar& value) {
         const auto* truth = std::get_if<bool>(&value);
         if (truth != nullptr)
             field->is_repeated() ? to.AddBool(message, field, *truth)
                                  : to.SetBool(message, field, *truth);
         return truth != nullptr;
     }},
    {FieldDescriptor::CPPTYPE_STRING, "bytes in base64",
     [](JsonWriter& json, const FieldDescriptor*, CodedInputStream& bytes) {
         json.text(toBase64(readBytes(bytes)));
     },
     [](const Reflection& to, Message* message, const FieldDescriptor* field,
        const JsonScalar& value) {
         const auto* text = std::get_if<std::string_view>(&value);
         const auto bytes = text == nullptr ? std::nullopt : fromBase64(*text);
         if (bytes)
             field->is_repeated() ? to.AddString(message, field, *bytes)
                                  : to.SetString(message, field, *bytes);
         return bytes.has_value();
     }},
    {FieldDescriptor::CPPTYPE_MESSAGE, "an object",
     [](JsonWriter& json, const FieldDescriptor* field, CodedInputStream& bytes) {
         writeMessage(json, *field->message_type(), readBytes(bytes));
     },
     [](const Reflection&, Message*, const FieldDescriptor*, const JsonScalar&) { return false; }},
};

const FieldType& typeOf(const FieldDescriptor* field)
{
    const FieldType* type = FIELD_TYPES;
    while (type->type != field->cpp_type())
        ++type;
    return *type;
}

/** The field with that name in JSON, or null; looks first behind the one that was found before. */
const FieldDescriptor* findField(const Descriptor& type, std::string_view name,
                                 const FieldDescriptor* before)
{
    const int first = before == nullptr ? 0 : before->index() + 1;
    for (int i = 0; i < type.field_count(); ++i) {
        const FieldDescriptor* field = type.field((first + i) % type.field_count());
        if (field->json_name() == name)
            return field;
    }
    return nullptr;
}

/** A name for a message to the user: in quotes, and only its beginning if it is long. */
std::string shown(std::string_view name)
{
    constexpr std::size_t MOST = 40;
    return quoted(name.size() > MOST ? std::string(name.substr(0, MOST)) + "..." : name);
}

} // namespace

// ---------------------------------------------------------------------------------------- writing

void writeMessage(JsonWriter& json, const Descriptor& type, std::string_view bytes)
{
    using google::protobuf::internal::WireFormatLite;
    CodedInputStream stream(reinterpret_cast<const std::uint8_t*>(bytes.data()),
                            static_cast<int>(bytes.size()));
    json.startObject();
    for (std::uint32_t tag = stream.ReadTag(); tag != 0;) {
        const FieldDescriptor* field =
            type.FindFieldByNumber(WireFormatLite::GetTagFieldNumber(tag));
        json.key(field->json_name());
        if (field->is_repeated())
            json.startList();
        const std::uint32_t current = tag;
        do {
            typeOf(field).write(json, field, stream);
            tag = stream.ReadTag();
        } while (tag == current);
        if (field->is_repeated())
            json.endList();
    }
    json.endObject();
}

// ---------------------------------------------------------------------------------------- reading

void MessageJsonReader::refuseType() const
{
    const Object& object = objects_.back();
    const bool isList = object.field->is_repeated() && !object.inList;
    throw JsonRefusal{(object.inList ? "an element of " : "") + quoted(object.field->json_name()) +
                      " is " + (isList ? "a list" : typeOf(object.field).takes)};
}

void MessageJsonReader::key(std::string_view name)
{
    Object& object = objects_.back();
    const Descriptor& type = *object.message->GetDescriptor();
    object.field = findField(type, name, object.field);
    if (object.field == nullptr)
        throw JsonRefusal{type.name() + " has no member " + shown(name)};
    const auto index = static_cast<std::size_t>(object.field->index());
    if (object.members[index])
        throw JsonRefusal{"the member " + shown(name) + " is given twice"};
    object.members[index] = true;
}

void MessageJsonReader::value(const JsonScalar& value)
{
    if (objects_.empty())
        throw JsonRefusal{message_.GetDescriptor()->name() + " is an object"};
    Object& object = objects_.back();
    if (object.field->is_repeated() != object.inList ||
        !typeOf(object.field)
             .read(*object.message->GetReflection(), object.message, object.field, value))
        refuseType();
}

void MessageJsonReader::startObject(std::size_t place)
{
    if (objects_.empty()) {
        objects_.push_back({&message_, place});
        return;
    }
    const Object& object = objects_.back();
    if (object.field->is_repeated() != object.inList ||
        object.field->cpp_type() != FieldDescriptor::CPPTYPE_MESSAGE)
        refuseType();
    const Reflection& reflection = *object.message->GetReflection();
    objects_.push_back({object.inList ? reflection.AddMessage(object.message, object.field)
                                      : reflection.MutableMessage(object.message, object.field),
                        place});
}

void MessageJsonReader::endObject()
{
    const Object object = objects_.back();
    const Descriptor& type = *object.message->GetDescriptor();
    for (int i = 0; i < type.field_count(); ++i)
        if (type.field(i)->is_required() && !object.members[static_cast<std::size_t>(i)])
            throw JsonRefusal{type.name() + " lacks the member " +
                                  quoted(type.field(i)->json_name()),
                              object.place};
    objects_.pop_back();
    if (objects_.size() <= 1)
        flush();
}

void MessageJsonReader::startList(std::size_t)
{
    if (objects_.empty())
        value({});
    Object& object = objects_.back();
    if (!object.field->is_repeated() || object.inList)
        refuseType();
    object.inList = true;
}

void MessageJsonReader::endList() { objects_.back().inList = false; }

/** One message's bytes behind another's mean both, so that few have to be held as messages. */
void MessageJsonReader::flush()
{
    if (!message_.AppendPartialToString(&bytes_) || bytes_.size() > INT_MAX)
        throw JsonRefusal{"there is more than a message can hold"};
    message_.Clear();
}

} // namespace filterctl
