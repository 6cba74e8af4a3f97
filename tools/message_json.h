/**
 * Messages in the JSON form of Protocol Buffers, by their descriptors.
 */
#ifndef FILTER_COMMON_TOOLS_MESSAGE_JSON_H
#define FILTER_COMMON_TOOLS_MESSAGE_JSON_H

#include "json_text.h"

#include <bitset>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace google::protobuf {
class Descriptor;
class FieldDescriptor;
class Message;
} // namespace google::protobuf

namespace filterctl {

/** Writes the message with these bytes, whose fields are in the order of their numbers. */
void writeMessage(JsonWriter& json, const google::protobuf::Descriptor& type,
                  std::string_view bytes);

/**
 * Makes the bytes of a message of the JSON form. Refuses what its schema does not have, and the
 * lack of what it requires.
 */
class MessageJsonReader final : public JsonEvents {
public:
    /** @p message is scratch space that says which type is read. */
    explicit MessageJsonReader(google::protobuf::Message& message) : message_(message) {}

    void key(std::string_view name) override;
    void value(const JsonScalar& value) override;
    void startObject(std::size_t place) override;
    void endObject() override;
    void startList(std::size_t) override;
    void endList() override;

    /** What was read, after the end of the outermost object. */
    std::string takeBytes() { return std::move(bytes_); }

private:
    /** An object whose end has not been read. */
    struct Object {
        google::protobuf::Message* message;
        std::size_t place;
        const google::protobuf::FieldDescriptor* field = nullptr; /**< of the current member */
        bool inList = false;
        std::bitset<64> members = {}; /**< by the index of their field */
    };

    [[noreturn]] void refuseType() const;
    void flush();

    google::protobuf::Message& message_;
    std::vector<Object> objects_;
    std::string bytes_;
};

} // namespace filterctl

#endif // FILTER_COMMON_TOOLS_MESSAGE_JSON_H
