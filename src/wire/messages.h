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
 * Replaces the contents of @p out with what @p write writes, or, like the runtime, with nothing if
 * that is more than one message may have.
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

/** Passes the bytes of an entry or group to the envelope. */
template <class Object>
void serializeInto(FiltersSerialized* out, const Object& object)
{
    std::string bytes;
    object.serialize(&bytes);
    out->setData(bytes);
}

/** How bytes were read. */
struct Understanding {
    bool direct;   /**< without a message; then there is nothing unusual about them */
    bool toTheEnd; /**< the runtime's parser, if it was needed, reached their end */
};

/**
 * Calls @p read to read the bytes. If it does not understand them, because they are not in the form
 * that the library writes, it is called again with the message that the runtime's parser makes of
 * them. Whether parsing reached the end and all required fields were present is deliberately not
 * checked: whatever was read counts. The parser does not check for required fields either, as it
 * would write to the log, which can crash if memory is short. More bytes than one message may have
 * are read as none.
 */
template <class Message, class Report = Silent, class Read>
Understanding readMessage(std::string_view bytes, Read read, Report silentOrReporting = {})
{
    if (bytes.size() > MAX_MESSAGE)
        bytes.remove_suffix(bytes.size());
    ByteReader<Report> direct(bytes, silentOrReporting);
    if (read(direct)) {
        // The zero that ends an envelope is not missed.
        report(direct, [&](Losses& losses) {
            if (direct.left() > 1)
                losses.addNotParsed(bytes.size() - direct.left());
        });
        return {true, true};
    }
    report(direct, [](Losses& losses) { losses.clear(); });
    ScratchMessage<Message> message;
    const bool toTheEnd =
        message.get()->ParsePartialFromArray(bytes.data(), static_cast<int>(bytes.size()));
    MessageReader<Message, Report> reader(*message.get(), silentOrReporting);
    read(reader);
    return {false, toTheEnd};
}

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_WIRE_MESSAGES_H
