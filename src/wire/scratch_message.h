/**
 * A message used as scratch space. On an arena it is created and freed faster, and nothing leaks if
 * memory runs out while it grows.
 */
#ifndef FILTER_COMMON_SRC_WIRE_SCRATCH_MESSAGE_H
#define FILTER_COMMON_SRC_WIRE_SCRATCH_MESSAGE_H

#include <google/protobuf/arena.h>

namespace FiltersCommon {

#if GOOGLE_PROTOBUF_VERSION >= 3014000

/** An empty message with all its parts on an arena that lives as long as this object. */
template <class Message>
class ScratchMessage {
public:
    Message* get() { return message_; }

private:
    google::protobuf::Arena arena_;
    Message* message_ = google::protobuf::Arena::CreateMessage<Message>(&arena_);
};

#else // older runtimes only put a message on an arena if its schema asks for it

template <class Message>
class ScratchMessage {
public:
    Message* get() { return &message_; }

private:
    Message message_;
};

#endif

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_WIRE_SCRATCH_MESSAGE_H
