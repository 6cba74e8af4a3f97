#include "floors.h"

#include <filter_groups.h>

#include <arpa/inet.h>

#include <cstring>

namespace bench {

using namespace FiltersCommon;

namespace {

// The tags of the fields, as written before the values.
constexpr std::uint32_t NUMBER_1 = 0x08, NUMBER_2 = 0x10, NUMBER_3 = 0x18, NUMBER_4 = 0x20;
constexpr std::uint32_t BYTES_3 = 0x1A, BYTES_4 = 0x22, BYTES_5 = 0x2A, BYTES_6 = 0x32;
constexpr std::uint32_t PORT = 6 << 3, PORT_MASK = 18 << 3, PROTOCOL = 14 << 3;
constexpr std::uint32_t IPV4 = 8 << 3 | 2, IPV4_MASK = 10 << 3 | 2;

/** More than any part of an entry takes. */
constexpr std::size_t ROOM = 512;

/** Writes a message of at most ROOM bytes. */
class Writer {
public:
    void put(std::uint32_t number)
    {
        for (; number > 0x7F; number >>= 7)
            bytes_[size_++] = static_cast<char>(number | 0x80);
        bytes_[size_++] = static_cast<char>(number);
    }

    void number(std::uint32_t tag, std::uint32_t value)
    {
        put(tag);
        put(value);
    }

    void bytes(std::uint32_t tag, const void* from, std::size_t size)
    {
        number(tag, static_cast<std::uint32_t>(size));
        std::memcpy(bytes_ + size_, from, size);
        size_ += size;
    }

    void message(std::uint32_t tag, const Writer& part) { bytes(tag, part.bytes_, part.size_); }

    void appendTo(std::string& out) const { out.append(bytes_, size_); }

private:
    char bytes_[ROOM];
    std::size_t size_ = 0;
};

void putMatch(Writer& entry, const Object& object)
{
    Writer match;
    match.number(NUMBER_1, static_cast<std::uint32_t>(object.kind));
    switch (object.kind) {
    case MATCH_SRC_IPV4:
    case MATCH_DST_IPV4:
        match.bytes(IPV4, &object.value, 4);
        match.bytes(IPV4_MASK, &object.mask, 4);
        break;
    case MATCH_SRC_L4_PORT:
    case MATCH_DST_L4_PORT:
        match.number(PORT, object.value);
        match.number(PORT_MASK, object.mask);
        break;
    case MATCH_IP_PROTOCOL:
        match.number(PROTOCOL, object.value);
        break;
    }
    entry.message(BYTES_4, match);
}

void putPolicer(Writer& entry, const Policer& policer)
{
    Writer mode;
    for (std::uint32_t i = 0; i < 7; ++i)
        mode.number((i + 1) << 3, policer.mode[i]);
    Writer message;
    message.number(NUMBER_1, policer.id);
    message.number(NUMBER_2, policer.stage);
    message.message(BYTES_3, mode);
    entry.message(BYTES_3, message);
}

Writer encodeEntry(const Entry& entry)
{
    Writer message;
    message.number(NUMBER_1, entry.id);
    message.number(NUMBER_2, entry.priority);
    putPolicer(message, entry.policer);
    for (const auto& element : entry.matches)
        putMatch(message, *element.second);
    for (const auto& element : entry.actions) {
        Writer action;
        action.number(NUMBER_1, static_cast<std::uint32_t>(element.second->kind));
        message.message(BYTES_5, action);
    }
    Writer counter;
    counter.number(NUMBER_1, 0);
    counter.number(NUMBER_2, 0);
    message.message(BYTES_6, counter);
    return message;
}

} // namespace

std::string encode(const Entries& entries)
{
    std::string bytes;
    bytes.reserve(entries.size() * 128);
    Writer group;
    group.number(NUMBER_1, 1);
    group.number(NUMBER_2, 0);
    group.number(NUMBER_3, GROUP_STAGE_0);
    group.number(NUMBER_4, GROUP_TYPE_3);
    group.appendTo(bytes);
    for (const auto& element : entries) {
        Writer entry;
        entry.message(BYTES_5, encodeEntry(element.second));
        entry.appendTo(bytes);
    }
    return bytes;
}

namespace {

/** Reads what encode wrote. */
class Reader {
public:
    Reader(const char* begin, std::size_t size) : at_(begin), end_(begin + size) {}

    bool atEnd() const { return at_ == end_; }

    std::uint32_t take()
    {
        std::uint32_t number = 0;
        for (unsigned shift = 0;; shift += 7) {
            const auto byte = static_cast<unsigned char>(*at_++);
            number |= std::uint32_t{byte & 0x7Fu} << shift;
            if (byte < 0x80)
                return number;
        }
    }

    Reader takeMessage()
    {
        const std::size_t size = take();
        const char* begin = at_;
        at_ += size;
        return {begin, size};
    }

    std::uint32_t takeAddress()
    {
        std::uint32_t address;
        std::memcpy(&address, takeMessage().at_, sizeof address);
        return address;
    }

private:
    const char* at_;
    const char* end_;
};

/** A match, or an action (actions have no values here). */
std::unique_ptr<Object> takeObject(Reader message)
{
    std::uint32_t kind = 0, value = 0, mask = 0;
    while (!message.atEnd()) {
        switch (message.take()) {
        case NUMBER_1:
            kind = message.take();
            break;
        case IPV4:
            value = message.takeAddress();
            break;
        case IPV4_MASK:
            mask = message.takeAddress();
            break;
        case PORT:
        case PROTOCOL:
            value = message.take();
            break;
        case PORT_MASK:
            mask = message.take();
            break;
        }
    }
    return std::make_unique<Object>(static_cast<int>(kind), value, mask);
}

Policer takePolicer(Reader message)
{
    Policer policer;
    while (!message.atEnd()) {
        switch (message.take()) {
        case NUMBER_1:
            policer.id = message.take();
            break;
        case NUMBER_2:
            policer.stage = message.take();
            break;
        case BYTES_3:
            for (Reader mode = message.takeMessage(); !mode.atEnd();) {
                const std::uint32_t field = mode.take() >> 3;
                policer.mode[field - 1] = mode.take();
            }
            break;
        }
    }
    return policer;
}

void addTo(Objects& objects, std::unique_ptr<Object> object)
{
    const int kind = object->kind;
    objects.emplace_hint(objects.end(), kind, std::move(object));
}

void takeEntry(Entry& entry, Reader message)
{
    while (!message.atEnd()) {
        switch (message.take()) {
        case NUMBER_1:
            entry.id = message.take();
            break;
        case NUMBER_2:
            entry.priority = message.take();
            break;
        case BYTES_3:
            entry.policer = takePolicer(message.takeMessage());
            break;
        case BYTES_4:
            addTo(entry.matches, takeObject(message.takeMessage()));
            break;
        case BYTES_5:
            addTo(entry.actions, takeObject(message.takeMessage()));
            break;
        case BYTES_6:
            message.takeMessage();
            break;
        }
    }
}

} // namespace

Entries decode(const std::string& bytes)
{
    Entries entries;
    Reader group(bytes.data(), bytes.size());
    while (!group.atEnd()) {
        if (group.take() != BYTES_5) {
            group.take();
            continue;
        }
        const Reader message = group.takeMessage();
        Reader ahead = message;
        ahead.take();
        const auto id = static_cast<std::uint16_t>(ahead.take());
        takeEntry(entries.try_emplace(entries.end(), id)->second, message);
    }
    return entries;
}

} // namespace bench
