#include "wire_tree.h"

#include <cstddef>
#include <optional>
#include <utility>

namespace FiltersCommon::fuzz {

using google::protobuf::Descriptor;
using google::protobuf::FieldDescriptor;

const Descriptor* messageIn(const Descriptor* descriptor, std::uint64_t number)
{
    if (descriptor == nullptr || number > FieldDescriptor::kMaxNumber)
        return nullptr;
    const FieldDescriptor* field = descriptor->FindFieldByNumber(static_cast<int>(number));
    return field == nullptr ? nullptr : field->message_type();
}

// ----------------------------------------------------------------------------------------- reading

namespace {

/** How deep groups are parsed: deeper than the messages runtime follows them. */
constexpr int MOST_GROUPS = 200;

class WireReader {
public:
    explicit WireReader(std::string_view bytes) : rest_(bytes) {}

    /** Reads fields until the bytes are none. In a group, the end of the group ends the message. */
    WireMessage readMessage(const Descriptor* descriptor, std::optional<std::uint64_t> group)
    {
        WireMessage message;
        hasEnded_ = false;
        while (!rest_.empty()) {
            const std::string_view before = rest_;
            WireField field;
            if (!readField(field, descriptor)) {
                message.tail = before;
                rest_ = {};
                break;
            }
            const bool isPlain = field.tagPadding == 0;
            if (group == field.number && field.wireType == WIRE_GROUP_END && isPlain) {
                hasEnded_ = true;
                break;
            }
            message.fields.push_back(std::move(field));
        }
        return message;
    }

private:
    bool readVarint(std::uint64_t& number, unsigned& padding)
    {
        number = 0;
        for (unsigned length = 1; length <= 10 && length <= rest_.size(); ++length) {
            const auto byte = static_cast<std::uint8_t>(rest_[length - 1]);
            const unsigned shift = 7 * (length - 1);
            if (shift == 63 && (byte & 0x7E) != 0)
                return false; // bits would be lost
            number |= static_cast<std::uint64_t>(byte & 0x7F) << shift;
            if ((byte & 0x80) != 0)
                continue;
            padding = length - static_cast<unsigned>(varint(number).size());
            rest_.remove_prefix(length);
            return true;
        }
        return false;
    }

    bool readFixed(std::uint64_t& number, std::size_t size)
    {
        if (rest_.size() < size)
            return false;
        number = 0;
        for (std::size_t i = size; i-- != 0;)
            number = number << 8 | static_cast<std::uint8_t>(rest_[i]);
        rest_.remove_prefix(size);
        return true;
    }

    bool readLength(WireField& field, const Descriptor* contents)
    {
        std::uint64_t length = 0;
        if (!readVarint(length, field.valuePadding) || length > rest_.size())
            return false;
        const std::string_view bytes = rest_.substr(0, static_cast<std::size_t>(length));
        rest_.remove_prefix(bytes.size());
        field.isMessage = contents != nullptr;
        if (field.isMessage)
            field.message = readWire(bytes, contents);
        else
            field.bytes = bytes;
        return true;
    }

    bool readField(WireField& field, const Descriptor* descriptor)
    {
        std::uint64_t tag = 0;
        if (!readVarint(tag, field.tagPadding))
            return false;
        field.number = tag >> 3;
        field.wireType = tag & 7;
        switch (field.wireType) {
        case WIRE_VARINT:
            return readVarint(field.value, field.valuePadding);
        case WIRE_FIXED64:
            return readFixed(field.value, 8);
        case WIRE_FIXED32:
            return readFixed(field.value, 4);
        case WIRE_LENGTH:
            return readLength(field, messageIn(descriptor, field.number));
        case WIRE_GROUP:
            if (depth_ == MOST_GROUPS)
                return false;
            ++depth_;
            field.message = readMessage(nullptr, field.number);
            field.isClosed = std::exchange(hasEnded_, false);
            --depth_;
            return true;
        case WIRE_GROUP_END:
            return true;
        default:
            return false;
        }
    }

    std::string_view rest_;
    bool hasEnded_ = false;
    int depth_ = 0;
};

} // namespace

WireMessage readWire(std::string_view bytes, const Descriptor* descriptor)
{
    return WireReader(bytes).readMessage(descriptor, std::nullopt);
}

// ----------------------------------------------------------------------------------------- writing

std::string varint(std::uint64_t number, unsigned padding)
{
    std::string bytes;
    for (; number >= 0x80; number >>= 7)
        bytes += static_cast<char>(number | 0x80);
    bytes += static_cast<char>(number);
    for (; padding != 0; --padding) {
        bytes.back() = static_cast<char>(bytes.back() | 0x80);
        bytes += '\0';
    }
    return bytes;
}

namespace {

std::string fixed(std::uint64_t number, std::size_t size)
{
    std::string bytes;
    for (; size != 0; --size, number >>= 8)
        bytes += static_cast<char>(number & 0xFF);
    return bytes;
}

std::string contentsOf(const WireField& field)
{
    switch (field.wireType) {
    case WIRE_VARINT:
        return varint(field.value, field.valuePadding);
    case WIRE_FIXED64:
        return fixed(field.value, 8);
    case WIRE_FIXED32:
        return fixed(field.value, 4);
    case WIRE_LENGTH: {
        const std::string bytes = field.isMessage ? writeWire(field.message) : field.bytes;
        return varint(bytes.size() + field.lengthError, field.valuePadding) + bytes;
    }
    case WIRE_GROUP:
        return writeWire(field.message) +
               (field.isClosed ? varint(field.number << 3 | WIRE_GROUP_END) : "");
    default:
        return "";
    }
}

} // namespace

std::string writeWire(const WireMessage& message)
{
    std::string bytes;
    for (const WireField& field : message.fields)
        bytes += varint(field.number << 3 | field.wireType, field.tagPadding) + contentsOf(field);
    return bytes + message.tail;
}

} // namespace FiltersCommon::fuzz
