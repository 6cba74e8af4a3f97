/**
 * The bytes of Protocol Buffers messages as a tree that keeps every oddity: any bytes can be read,
 * and are written unchanged.
 */
#ifndef FILTER_COMMON_FUZZ_WIRE_TREE_H
#define FILTER_COMMON_FUZZ_WIRE_TREE_H

#include <google/protobuf/descriptor.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace FiltersCommon::fuzz {

enum WireType : unsigned {
    WIRE_VARINT = 0,
    WIRE_FIXED64 = 1,
    WIRE_LENGTH = 2,
    WIRE_GROUP = 3,
    WIRE_GROUP_END = 4,
    WIRE_FIXED32 = 5, // 6 and 7 do not exist
};

struct WireField;

/** Fields, followed by bytes that are not a field. */
struct WireMessage {
    std::vector<WireField> fields;
    std::string tail;
};

struct WireField {
    std::uint64_t number = 0;
    unsigned wireType = WIRE_VARINT;
    std::uint64_t value = 0; /**< of a varint or a fixed number */
    std::string bytes;       /**< after a length, unless it is a message */
    bool isMessage = false;  /**< after a length */
    WireMessage message;     /**< also the contents of a group */

    // Oddities that readers have to accept or refuse.
    unsigned tagPadding = 0;       /**< unnecessary bytes in the tag */
    unsigned valuePadding = 0;     /**< unnecessary bytes in the varint or the length */
    std::uint64_t lengthError = 0; /**< added to the length */
    bool isClosed = true;          /**< a group has its end tag */
};

/** Parses nested messages in the fields that @p descriptor says hold them; it may be null. */
WireMessage readWire(std::string_view bytes, const google::protobuf::Descriptor* descriptor);

std::string writeWire(const WireMessage& message);

/** The number as a varint with @p padding unnecessary bytes. */
std::string varint(std::uint64_t number, unsigned padding = 0);

/** The descriptor of the messages in the field with this number; null if it holds none. */
const google::protobuf::Descriptor* messageIn(const google::protobuf::Descriptor* descriptor,
                                              std::uint64_t number);

} // namespace FiltersCommon::fuzz

#endif // FILTER_COMMON_FUZZ_WIRE_TREE_H
