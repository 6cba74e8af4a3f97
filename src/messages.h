/**
 * Messages as scratch space on the way to bytes and back.
 */
#ifndef FILTER_COMMON_SRC_MESSAGES_H
#define FILTER_COMMON_SRC_MESSAGES_H

#include "filter_serialized.h"

#include <scratch_message.h>

#include <cstddef>
#include <string>

namespace FiltersCommon {

/** Makes room in a repeated field for so many elements more. */
template <class RepeatedField>
void reserveMore(RepeatedField* field, std::size_t count)
{
    field->Reserve(field->size() + static_cast<int>(count));
}

/** Replaces the contents of @p out by the bytes of the message that @p fill fills. */
template <class Message, class Fill>
void serializeMessage(std::string* out, Fill fill)
{
    messages::ScratchMessage<Message> message;
    fill(message.get());
    std::string bytes;
    message.get()->SerializeToString(&bytes);
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
 * Gives @p use the message that the parser made of @p bytes. Whether they parsed to their end, and
 * whether all required fields were there, is deliberately not asked: what was read counts. The
 * parser is not let ask either, for it would write to the log, which can crash it when memory is
 * short.
 */
template <class Message, class Use>
void parseMessage(const std::string& bytes, Use use)
{
    messages::ScratchMessage<Message> message;
    static_cast<void>(message.get()->ParsePartialFromString(bytes));
    use(message.get());
}

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_MESSAGES_H
