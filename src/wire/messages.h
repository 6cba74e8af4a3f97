/**
 * Whole messages as bytes, written and read in the shortest way that gives the runtime's result.
 */
#ifndef FILTER_COMMON_SRC_WIRE_MESSAGES_H
#define FILTER_COMMON_SRC_WIRE_MESSAGES_H

#include "byte_io.h"
#include "filter_serialized.h"
#include "message_io.h"

#include "scratch_message.h"

#include <string>
#include <string_view>

namespace FiltersCommon {

/**
 * Replaces the contents of @p out by what @p write writes; by nothing if that is more than one
 * message may have, as the runtime does.
 */
template <class Write>
void serializeMessage(std::string* out, Write write)
{
    std::string bytes;
    ByteWriter writer(&bytes);
    write(writer);
    if (!writer.finish())
        bytes.clear();
    out->swap(bytes);
}

/** Hands the bytes of an entry or group to the envelope. */
template <class Object>
void serializeInto(FiltersSerialized* out, const Object& object)
{
    std::string bytes;
    object.serialize(&bytes);
    out->setData(bytes);
}

/**
 * Has @p read read the bytes. Where it does not understand them, because they are not as the
 * library writes them, it reads the message that the runtime's parser makes of them. Whether they
 * parsed to their end, and whether all required fields were there, is deliberately not asked: what
 * was read counts. The parser is not let ask either, for it would write to the log, which can crash
 * it when memory is short. More bytes than one message may have read as no bytes.
 */
template <class Message, class Read>
void readMessage(std::string_view bytes, Read read)
{
    if (bytes.size() > MAX_MESSAGE)
        bytes.remove_suffix(bytes.size());
    ByteReader direct(bytes);
    if (read(direct))
        return;
    ScratchMessage<Message> message;
    static_cast<void>(
        message.get()->ParsePartialFromArray(bytes.data(), static_cast<int>(bytes.size())));
    MessageReader<Message> reader(*message.get());
    read(reader);
}

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_WIRE_MESSAGES_H
