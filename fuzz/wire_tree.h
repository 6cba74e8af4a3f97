/**
 * Bytes of Protocol Buffers messages as a tree that keeps every oddity: what is read is written as
 * the same bytes, whatever they are.
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

/** Fields, and behind them what is none. */
struct WireMessage {
    std::vector<WireField> fields;
    std::string tail;
};

struct WireField {
    std::uint64_t number = 0;
    unsigned wireType = WIRE_VARINT;
    std::uint64_t value = 0; /**< of a varint or a fixed number */
    std::string bytes;       /**< behind a length, unless it is a message */
    bool isMessage = false;  /**< behind a length */
    WireMessage message;     /**< also that in a group */

    // Oddities that readers have to get over or to refuse.
    unsigned tagPadding = 0;       /**< bytes by which the tag is longer than it need be */
    unsigned valuePadding = 0;     /**< likewise of the varint or the length */
    std::uint64_t lengthError = 0; /**< added to the length */
    bool isClosed = true;          /**< a group has its end */
};

/** With the fields that @p descriptor says are messages taken apart; it may be null. */
WireMessage readWire(std::string_view bytes, const google::protobuf::Descriptor* descriptor);

std::string writeWire(const WireMessage& message);

/** The number as a varint, longer by @p padding bytes than it need be. */
std::string varint(std::uint64_t number, unsigned padding = 0);

/** The descriptor of the messages that a field of that number holds; null if it holds none. */
const google::protobuf::Descriptor* messageIn(const google::protobuf::Descriptor* descriptor,
                                              std::uint64_t number);

} // namespace FiltersCommon::fuzz

#endif // FILTER_COMMON_FUZZ_WIRE_TREE_H
