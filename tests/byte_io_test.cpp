// What the writer of bytes does where its buffer ends. What it writes otherwise, and what the
// reader makes of it, is held against the message in direct_bytes_test.

#include "wire/byte_io.h"
#include "wire_bytes.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace {

using namespace FiltersCommon;
using namespace FiltersCommon::test;

template <std::uint32_t number, class T>
struct TestField {
    static constexpr std::uint32_t NUMBER = number;
    using Type = T;
};
using Signed = TestField<1, std::int32_t>;
using Unsigned = TestField<2, std::uint32_t>;
using Text = TestField<3, std::string>;
using Part = TestField<4, std::string>;
/** The first whose tag takes two bytes. */
using Far = TestField<16, std::string>;

constexpr std::uint32_t MINUS_ONE = 0xFFFFFFFF;
constexpr std::size_t BUFFER = 4096;

/** Something to write, and how it reads. */
struct Piece {
    const char* name;
    void (*write)(ByteWriter& writer);
    std::string expected;
};

/** Takes all the room that a number may need. */
void writeLongest(ByteWriter& writer) { writer.number(Signed(), MINUS_ONE); }
const std::string LONGEST = wire::number(1, ~std::uint64_t{0});

template <std::size_t length>
void writePart(ByteWriter& writer)
{
    writer.message(Part(), [](ByteWriter& part) {
        part.bytes(Text(), std::string(length, 'x'));
        writeLongest(part);
    });
}

std::string part(std::size_t length)
{
    return wire::delimited(4, wire::delimited(3, std::string(length, 'x')) + LONGEST);
}

const std::vector<Piece> PIECES = {
    {"number", [](ByteWriter& writer) { writer.number(Unsigned(), MINUS_ONE); },
     wire::number(2, MINUS_ONE)},
    {"negative number", writeLongest, LONGEST},
    {"no bytes", [](ByteWriter& writer) { writer.bytes(Text(), ""); }, wire::delimited(3, "")},
    {"bytes", [](ByteWriter& writer) { writer.bytes(Far(), "seventeen bytes"); },
     wire::delimited(16, "seventeen bytes")},
    {"bytes beyond the buffer",
     [](ByteWriter& writer) { writer.bytes(Text(), std::string(3 * BUFFER, 'x')); },
     wire::delimited(3, std::string(3 * BUFFER, 'x'))},
    {"empty part", [](ByteWriter& writer) { writer.message(Part(), [](ByteWriter&) {}); },
     wire::delimited(4, "")},
    {"short part",
     [](ByteWriter& writer) {
         writer.message(Far(), [](ByteWriter& part) { writeLongest(part); });
     },
     wire::delimited(16, LONGEST)},
    {"part with a length of two bytes", writePart<200>, part(200)},
    {"part with a length of three bytes", writePart<20000>, part(20000)},
};

TEST(ByteWriter, WritesTheSameWhereverItsBufferEnds)
{
    for (const Piece& piece : PIECES)
        for (std::size_t before = 1; before <= BUFFER + 1;
             before += before < BUFFER - 400 ? 97 : 1) {
            SCOPED_TRACE(piece.name + (" after " + std::to_string(before)));
            const std::string filler(before, 'f');
            std::string out = "kept";
            ByteWriter writer(&out);
            writer.bytes(Text(), filler);
            writeLongest(writer);
            piece.write(writer);
            writeLongest(writer);
            ASSERT_TRUE(writer.finish());
            ASSERT_EQ(out,
                      "kept" + wire::delimited(3, filler) + LONGEST + piece.expected + LONGEST);
        }
}

TEST(ByteWriter, WritesTheSameInsideAPart)
{
    for (const Piece& piece : PIECES)
        for (std::size_t before = BUFFER - 400; before <= BUFFER + 1; ++before) {
            SCOPED_TRACE(piece.name + (" after " + std::to_string(before)));
            const std::string filler(before, 'f');
            std::string out;
            ByteWriter writer(&out);
            writer.message(Part(), [&](ByteWriter& part) {
                part.bytes(Text(), filler);
                writeLongest(part);
                piece.write(part);
                writeLongest(part);
            });
            ASSERT_TRUE(writer.finish());
            const std::string first = wire::delimited(3, filler) + LONGEST;
            ASSERT_EQ(out, wire::delimited(4, first + piece.expected + LONGEST));
        }
}

TEST(ByteWriter, HandsOverCompletePartsAsItGoes)
{
    std::string out;
    ByteWriter writer(&out);
    std::string expected;
    for (int i = 0; i < 1000; ++i) {
        const std::size_t handedOver = out.size();
        writer.message(Part(), [&](ByteWriter& part) {
            part.message(Part(), [](ByteWriter& inner) { writeLongest(inner); });
            part.bytes(Text(), "text");
            EXPECT_EQ(out.size(), handedOver);
        });
        expected += wire::delimited(4, wire::delimited(4, LONGEST) + wire::delimited(3, "text"));
        ASSERT_LE(expected.size() - out.size(), BUFFER);
        ASSERT_EQ(out, expected.substr(0, out.size()));
    }
    ASSERT_TRUE(writer.finish());
    EXPECT_EQ(out, expected);
}

} // namespace
