/**
 * Messages as scratch space on the way to bytes and back.
 */
#ifndef FILTER_COMMON_SRC_MESSAGES_H
#define FILTER_COMMON_SRC_MESSAGES_H

#include <google/protobuf/arena.h>

#include <string>
#include <utility>

namespace FiltersCommon {

/** An empty message that lives as long as this, with all its parts on an arena. */
template <class Message>
class ScratchMessage {
public:
    Message* operator->() { return get(); }
#if GOOGLE_PROTOBUF_VERSION >= 3014000
    Message* get() { return message_; }

private:
    google::protobuf::Arena arena_;
    Message* message_ = google::protobuf::Arena::CreateMessage<Message>(&arena_);
#else // older runtimes take messages onto an arena only where the schema asks for it
    Message* get() { return &message_; }

private:
    Message message_;
#endif
};

/** Replaces the contents of @p out by the bytes of the message that @p fill fills. */
template <class Message, class Fill>
void serializeMessage(std::string* out, Fill fill)
{
    ScratchMessage<Message> message;
    fill(message.get());
    std::string bytes;
    message->SerializeToString(&bytes);
    out->swap(bytes);
}

/**
 * Gives @p use the message that the parser made of @p bytes. Whether they parsed to their end is
 * deliberately not asked: what was read before a fault counts.
 */
template <class Message, class Use>
void parseMessage(const std::string& bytes, Use use)
{
    ScratchMessage<Message> message;
    static_cast<void>(message->ParseFromString(bytes));
    use(message.get());
}

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_MESSAGES_H
