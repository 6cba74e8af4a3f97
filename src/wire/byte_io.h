/**
 * Writing the bytes of a message without building the message, and reading them back.
 *
 * The writer produces exactly the bytes that the runtime would write: each field that is set, in
 * ascending order of field number, with lengths and numbers in their shortest form. The reader
 * understands such bytes and nothing else; anything different is left to the runtime's own parser.
 */
#ifndef FILTER_COMMON_SRC_WIRE_BYTE_IO_H
#define FILTER_COMMON_SRC_WIRE_BYTE_IO_H

#include "bytes.h"
#include "losses.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace FiltersCommon {

/** How the value of a field is written. */
enum WireType : std::uint32_t { VARINT = 0, LENGTH_DELIMITED = 2 };

/** The start of a field: its number and its wire type. */
template <class Field, WireType type>
struct Tag {
    static constexpr std::uint32_t VALUE = Field::NUMBER << 3 | type;
    static_assert(VALUE < 1 << 14, "a tag must fit into two bytes");

    static constexpr std::size_t SIZE = VALUE < 0x80 ? 1 : 2;
    static constexpr std::array<char, 2> BYTES = {
        static_cast<char>(SIZE == 1 ? VALUE : (VALUE & 0x7F) | 0x80),
        static_cast<char>(VALUE >> 7)};
};

template <class Field>
using NumberTag = Tag<Field, VARINT>;
template <class Field>
using LengthTag = Tag<Field, LENGTH_DELIMITED>;

/** The most bytes that a number takes. */
constexpr std::size_t MAX_VARINT = 10;

/** The most bytes that the runtime reads or writes as one message. */
constexpr std::size_t MAX_MESSAGE = std::numeric_limits<int>::max();

// ---------------------------------------------------------------------------------------- writing

class ByteWriter {
public:
    /** Appends to @p out, whose contents are meaningful only after finish(). */
    explicit ByteWriter(std::string* out) : out_(out) {}
    ByteWriter(const ByteWriter&) = delete;
    ByteWriter& operator=(const ByteWriter&) = delete;

    template <class Field>
    void number(Field, std::uint32_t number)
    {
        reserve(NumberTag<Field>::SIZE + MAX_VARINT);
        end_ = putVarint(putTag<NumberTag<Field>>(end_), widened<Field>(number));
    }

    template <class Field>
    void bytes(Field, std::string_view bytes)
    {
        reserve(LengthTag<Field>::SIZE + MAX_VARINT + bytes.size());
        char* const start = putVarint(putTag<LengthTag<Field>>(end_), bytes.size());
        std::memcpy(start, bytes.data(), bytes.size());
        end_ = start + bytes.size();
    }

    template <class Field>
    void addNumber(Field field, std::uint32_t value)
    {
        number(field, value);
    }

    /** Does nothing: there are no previous contents. */
    template <class Field>
    void clear(Field)
    {}

    template <class Field, class Fill>
    void message(Field, Fill fill)
    {
        reserve(LengthTag<Field>::SIZE + MAX_VARINT);
        end_ = putTag<LengthTag<Field>>(end_) + 1; // the length: one byte, unless the part is long
        const std::size_t start = size();
        ++depth_;
        fill(*this);
        --depth_;
        putLength(start);
        if (depth_ == 0 && size() > first_.size() / 2)
            flush();
    }

    template <class Field, class Container, class Fill>
    void elements(Field field, const Container& objects, Fill fill)
    {
        for (const auto& object : objects)
            message(field, [&](ByteWriter& element) { fill(element, object); });
    }

    /** @return false if there are more bytes than one message may have */
    bool finish()
    {
        flush();
        return out_->size() <= MAX_MESSAGE;
    }

private:
    std::size_t size() const { return static_cast<std::size_t>(end_ - begin_); }

    void reserve(std::size_t more)
    {
        if (static_cast<std::size_t>(limit_ - end_) < more)
            grow(more);
    }

    void grow(std::size_t more)
    {
        const std::size_t used = size();
        const std::size_t capacity = 2 * used + more;
        std::unique_ptr<char[]> larger(new char[capacity]);
        std::memcpy(larger.get(), begin_, used);
        begin_ = larger.get();
        end_ = begin_ + used;
        limit_ = begin_ + capacity;
        heap_ = std::move(larger);
    }

    // These write from a place on and return where they ended: the compiler would have to assume
    // that each byte written through end_ changes end_ itself.

    template <class Tag>
    static char* putTag(char* place)
    {
        std::memcpy(place, Tag::BYTES.data(), Tag::SIZE);
        return place + Tag::SIZE;
    }

    static char* putVarint(char* place, std::uint64_t number)
    {
        for (; number >= 0x80; number >>= 7)
            *place++ = static_cast<char>((number & 0x7F) | 0x80);
        *place++ = static_cast<char>(number);
        return place;
    }

    /** Writes the length of the part that starts at @p start into the byte before it. */
    void putLength(std::size_t start)
    {
        const std::size_t length = size() - start;
        if (length >= 0x80) {
            reserve(MAX_VARINT);
            std::size_t extra = 0;
            for (std::size_t rest = length >> 7; rest != 0; rest >>= 7)
                ++extra;
            std::memmove(begin_ + start + extra, begin_ + start, length);
        }
        end_ = putVarint(begin_ + start - 1, length) + length;
    }

    /** Passes on everything written so far, all of which is complete, as no part is open. */
    void flush()
    {
        out_->append(begin_, size());
        end_ = begin_;
    }

    std::string* out_;
    int depth_ = 0;
    std::array<char, 4096> first_;
    std::unique_ptr<char[]> heap_;
    char* begin_ = first_.data();
    char* end_ = begin_;
    char* limit_ = begin_ + first_.size();
};

// ---------------------------------------------------------------------------------------- reading

/**
 * Reads the fields in the order in which they are requested. If anything else comes next, the
 * reader has not understood the bytes, and what it returns is meaningless.
 */
template <class Report = Silent>
class ByteReader : public Report {
public:
    explicit ByteReader(std::string_view bytes, Report report = {})
        : Report(report), next_(bytes.data()), end_(bytes.data() + bytes.size())
    {}

    template <class Field>
    std::uint32_t number(Field)
    {
        take<NumberTag<Field>>();
        const std::uint64_t wide = varint();
        const auto number = static_cast<std::uint32_t>(wide);
        if (wide != widened<Field>(number))
            giveUp();
        return number;
    }

    /** The result is valid as long as the bytes are. */
    template <class Field>
    std::string_view bytes(Field)
    {
        take<LengthTag<Field>>();
        return part();
    }

    /** Fields that are not there are not understood. */
    template <class Field>
    static constexpr bool has(Field)
    {
        return true;
    }

    template <class Field, class Use>
    void numbers(Field field, Use use)
    {
        while (isNext<NumberTag<Field>>())
            use(number(field));
    }

    template <class Field, class Use>
    void message(Field, Use use)
    {
        take<LengthTag<Field>>();
        usePart(use);
    }

    template <class Field, class Use>
    void elements(Field, Use use)
    {
        while (understood_ && isNext<LengthTag<Field>>()) {
            next_ += LengthTag<Field>::SIZE;
            usePart(use);
        }
    }

    static constexpr bool MAY_GIVE_UP = true;
    /**
     * Whether the bytes were understood up to their end, or up to a zero such as the one that ends
     * the bytes of an envelope, where the runtime's parser stops too.
     */
    bool understood() const { return understood_ && (next_ == end_ || *next_ == 0); }
    /** How many bytes stand behind what was read. */
    std::size_t left() const { return static_cast<std::size_t>(end_ - next_); }

private:
    template <class Tag>
    bool isNext() const
    {
        return left() >= Tag::SIZE && std::memcmp(next_, Tag::BYTES.data(), Tag::SIZE) == 0;
    }

    template <class Tag>
    void take()
    {
        if (isNext<Tag>())
            next_ += Tag::SIZE;
        else
            giveUp();
    }

    /** Most numbers take one byte, and are read in line. */
    [[gnu::always_inline]] std::uint64_t varint()
    {
        if (next_ != end_ && static_cast<unsigned char>(*next_) < 0x80)
            return static_cast<unsigned char>(*next_++);
        return longVarint();
    }

    [[gnu::noinline]] std::uint64_t longVarint()
    {
        std::uint64_t number = 0;
        for (unsigned shift = 0; shift < 7 * MAX_VARINT && next_ != end_; shift += 7) {
            const auto byte = static_cast<unsigned char>(*next_++);
            number |= std::uint64_t{byte & 0x7FU} << shift;
            if (byte == 0 && shift != 0)
                break; // not the shortest form
            if (byte < 0x80)
                return number;
        }
        giveUp();
        return 0;
    }

    /** The bytes of a length-delimited value. */
    std::string_view part()
    {
        const std::uint64_t length = varint();
        if (length > left()) {
            giveUp();
            return {};
        }
        const std::string_view bytes(next_, static_cast<std::size_t>(length));
        next_ += length;
        return bytes;
    }

    /** Calls @p use to read a part, all of which it must understand. */
    template <class Use>
    void usePart(Use& use)
    {
        ByteReader reader(part(), *this);
        if (!understood_)
            return;
        use(reader);
        understood_ = reader.understood_ && reader.next_ == reader.end_;
    }

    void giveUp()
    {
        understood_ = false;
        next_ = end_;
    }

    const char* next_;
    const char* end_;
    bool understood_ = true;
};

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_WIRE_BYTE_IO_H
