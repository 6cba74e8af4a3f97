/**
 * Reading takes time and memory in proportion to the bytes, whatever they are and whatever lengths
 * they claim.
 */
#include "invariants.h"
#include "kind_codes.h"
#include "named_entries.h"
#include "wire_bytes.h"
#include "wire_support.h"
#include "work.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <type_traits>
#include <vector>

namespace {

using namespace FiltersCommon;
using namespace FiltersCommon::test;

constexpr std::size_t SIZE = 32 << 10;

/**
 * The most memory that a byte of a message takes: an element of two bytes, tag and length, becomes
 * a message object of its own in the runtime.
 */
constexpr std::size_t MOST_PER_BYTE = 160;

/** Bytes of about a given size. */
struct Shape {
    const char* name;
    std::function<std::string(std::size_t)> make;
};

/** The parts that @p part makes of the numbers from 0, until the size is reached. */
template <class Part>
std::string repeated(std::size_t size, Part part)
{
    std::string bytes;
    for (std::size_t number = 0; bytes.size() < size; ++number)
        bytes += part(number);
    return bytes;
}

/** The same bytes, repeated. */
Shape again(const char* name, const std::string& part)
{
    return {name,
            [part](std::size_t size) { return repeated(size, [&](std::size_t) { return part; }); }};
}

/** One field with a string of the size. */
template <class Around>
Shape around(const char* name, Around wrap, char content = '\0')
{
    return {name, [=](std::size_t size) { return wrap(std::string(size, content)); }};
}

std::string deepGroup(std::size_t depth)
{
    return depth == 0 ? std::string() : wire::group(wire::UNKNOWN, deepGroup(depth - 1));
}

std::vector<Shape> shapesOfAnyMessage()
{
    using namespace wire;
    return {
        again("unknown numbers", number(UNKNOWN, 0)),
        again("unknown numbers in ten bytes", number(UNKNOWN, 0, 10)),
        again("unknown words", fixed32(UNKNOWN)),
        again("unknown double words", fixed64(UNKNOWN)),
        again("unknown empty strings", delimited(100, "")),
        again("unknown short strings", delimited(100, "x")),
        again("unknown empty groups", group(100, "")),
        again("unknown groups, as deep as is allowed", deepGroup(98)),
        again("unknown groups that never end", tag(UNKNOWN, GROUP)),
        again("known fields of another type", fixed32(1)),
        again("ends of groups", tag(1, END_GROUP)),
        again("the same number", number(1, 5)),
        again("the same number in ten bytes", number(1, 5, 10)),
        again("bytes of ones", "\xFF"),
        again("bytes of zeros", std::string(1, '\0')),
        around("one long unknown string", [](auto content) { return delimited(100, content); }),
        around("many deep groups around a string",
               [](auto content) { return group(100, group(101, delimited(102, content))); }),
        around("a string nearly as long as it says",
               [](auto content) {
                   return tag(100, DELIMITED) + varint(content.size() + 1) + content;
               }),
    };
}

std::string manyPolicerActions(std::size_t size)
{
    using namespace wire;
    return repeated(size, [](std::size_t n) {
        return delimited(4, number(1, n) + number(2, 0) + number(3, 0));
    });
}

/** The fields of an entry as the library writes them, with any matches and actions. */
std::string entryOf(std::size_t id, const std::string& matchesAndActions)
{
    using namespace wire;
    return number(1, id) + number(2, 8) + delimited(3, "") + matchesAndActions +
           delimited(6, number(1, 0) + number(2, 0));
}

/** The same of a group of a type that admits most entries here. */
std::string groupOf(const std::string& entries)
{
    using namespace wire;
    return number(1, 1) + number(2, 8) + number(3, 0) + number(4, 3) + entries;
}

std::vector<Shape> shapesOfEntries()
{
    using namespace wire;
    const auto whole = [](const char* name, const std::string& part) {
        return Shape{name, [make = again(name, part).make](std::size_t size) {
                         return entryOf(7, make(size));
                     }};
    };
    const std::string policer = policerOf(policer::STAGE_NONE, policer::Mode::FLOW).Serialize();
    const auto inMatch = [](std::uint32_t kind, auto fields) {
        return [=](const std::string& content) {
            return delimited(4, number(1, kind) + fields(content));
        };
    };
    const auto packed = [](std::uint32_t field) {
        return [field](const std::string& content) { return delimited(field, content); };
    };
    std::vector<Shape> shapes = {
        again("empty matches", delimited(4, "")),
        again("matches of unknown kinds", delimited(4, number(1, 99))),
        again("matches with one port", delimited(4, number(1, 1) + number(2, 5))),
        again("empty actions", delimited(5, "")),
        again("redirections to one port", delimited(5, number(1, 11) + number(2, 5))),
        again("empty counters", delimited(6, "")),
        again("empty policers", delimited(3, "")),
        again("policers", delimited(3, policer)),
        whole("one match after the other", delimited(4, number(1, 0))),
        whole("one list after the other", delimited(4, number(1, 1) + number(2, 5))),
        whole("one action after the other", delimited(5, number(1, 0))),
        {"matches of every kind in turn",
         [](std::size_t size) {
             return repeated(
                 size, [](std::size_t n) { return delimited(4, number(1, n % MATCH_KINDS)); });
         }},
        {"ports one by one",
         [](std::size_t size) {
             const std::string ports = repeated(size, [](std::size_t) { return number(2, 1); });
             return delimited(4, number(1, 1) + ports) + delimited(5, number(1, 3) + ports);
         }},
        {"a policer with many actions",
         [](std::size_t size) { return delimited(3, manyPolicerActions(size)); }},
        around("a match with packed ports", inMatch(1, packed(2)), '\1'),
        around("a match with packed port types", inMatch(1, packed(20)), '\1'),
        around("a match with packed VLANs", inMatch(2, packed(3)), '\1'),
        around("a match with a long address", inMatch(4, packed(5))),
        around("a policer of many bytes", [](auto content) { return delimited(3, content); }),
        around("packed ports that never end", inMatch(1, packed(2)), '\xFF'),
    };
    for (Shape& shape : shapesOfAnyMessage()) {
        shapes.push_back({shape.name, [make = shape.make](std::size_t size) {
                              return delimited(4, number(1, 1) + make(size));
                          }});
        shapes.push_back(shape);
    }
    return shapes;
}

std::vector<Shape> shapesOfGroups()
{
    using namespace wire;
    const auto entry = [](std::size_t id) {
        return delimited(5, entryOf(id & 0xFFFF, delimited(4, number(1, 0))));
    };
    std::vector<Shape> shapes = {
        again("empty entries", delimited(5, "")),
        again("entries of one byte too few", delimited(5, number(1, 5)) + tag(5, DELIMITED)),
        again("an entry that is not admitted", delimited(5, delimited(4, number(1, 16)))),
        {"one entry again and again",
         [=](std::size_t size) {
             return groupOf(repeated(size, [&](std::size_t) { return entry(7); }));
         }},
        {"entries, ascending", [=](std::size_t size) { return groupOf(repeated(size, entry)); }},
        {"entries, descending",
         [=](std::size_t size) {
             return groupOf(repeated(size, [&](std::size_t n) { return entry(65535 - n); }));
         }},
        {"entries, ascending, and a broken end",
         [=](std::size_t size) { return groupOf(repeated(size, entry)) + "\xFF"; }},
    };
    for (Shape& shape : shapesOfEntries())
        shapes.push_back({shape.name, [make = shape.make](std::size_t size) {
                              return delimited(5, make(size));
                          }});
    for (Shape& shape : shapesOfAnyMessage())
        shapes.push_back(shape);
    return shapes;
}

/** Reads bytes of the shape in all sizes, and compares the work with the number of bytes. */
template <class T>
void expectInProportion(const Shape& shape)
{
    SCOPED_TRACE(shape.name);
    const Work work = expectProportional(SIZE, [&](std::size_t size) {
        return [bytes = shape.make(size)] { expectInvariants(T(bytes)); };
    });
    const std::size_t size = shape.make(4 * SIZE).size();
    EXPECT_LE(work.peak, FIXED_WORK.peak + MOST_PER_BYTE * size);
    printWork(shape.name, work, size);
}

TEST(HostileBytes, OfAnEntryTakeMemoryInProportion)
{
    const QuietParser quiet;
    for (const Shape& shape : shapesOfEntries())
        expectInProportion<FiltersEntry>(shape);
}

TEST(HostileBytes, OfAGroupTakeMemoryInProportion)
{
    const QuietParser quiet;
    for (const Shape& shape : shapesOfGroups())
        expectInProportion<FiltersGroup>(shape);
}

TEST(HostileBytes, ThatPromiseMoreThanThereIsTakeNone)
{
    using namespace wire;
    const QuietParser quiet;
    for (const std::uint64_t promise :
         {std::uint64_t{1000}, std::uint64_t{0x7FFFFFEF}, std::uint64_t{0x7FFFFFFF},
          std::uint64_t{0x80000000}, std::uint64_t{0xFFFFFFFF}, std::uint64_t{1} << 40,
          ~std::uint64_t{0}})
        for (std::uint32_t field = 1; field <= 30; ++field) {
            const std::string promising = tag(field, DELIMITED) + varint(promise) + "abc";
            for (const std::string& bytes :
                 {promising, delimited(4, promising), delimited(4, number(1, 1) + promising),
                  delimited(5, promising), delimited(6, promising), delimited(3, promising),
                  delimited(5, delimited(4, number(1, 1) + promising)),
                  delimited(5, delimited(5, number(1, 3) + promising))}) {
                EXPECT_LE(workOf([&] { FiltersEntry read(bytes); }).peak, FIXED_WORK.peak);
                EXPECT_LE(workOf([&] { FiltersGroup read(bytes); }).peak, FIXED_WORK.peak);
            }
        }
}

/** Replaces each byte that the library wrote, whether it is a length or not. */
template <class T>
void expectNoneForPromisesIn(const T& object)
{
    const std::string whole = serialized(object);
    const std::size_t peak = workOf([&] { T read(whole); }).peak;
    for (const std::uint64_t promise : {0x7FFFFFEFu, 0x7FFFFFFFu, 0xFFFFFFFFu})
        for (std::size_t place = 0; place < whole.size(); ++place) {
            const std::string bytes =
                whole.substr(0, place) + wire::varint(promise) + whole.substr(place + 1);
            ASSERT_LE(workOf([&] { T read(bytes); }).peak, 2 * peak + FIXED_WORK.peak) << place;
        }
}

TEST(HostileBytes, ThatPromiseMoreAnywhereTakeNone)
{
    const QuietParser quiet;
    for (const auto& sample : entrySamples())
        expectNoneForPromisesIn(*sample.object);
    for (const auto& sample : groupSamples())
        expectNoneForPromisesIn(*sample.object);
}

template <class T>
void expectNoMoreForTheBeginning(const T& object)
{
    const std::string whole = serialized(object);
    const Work ofTheWhole = workOf([&] { T read(whole); });
    for (std::size_t length = 0; length < whole.size(); ++length) {
        const std::string beginning = whole.substr(0, length);
        const Work work = workOf([&] { expectInvariants(T(beginning)); });
        // Truncated bytes may be read twice: by the library, then by the runtime's parser.
        ASSERT_LE(work.allocations, 2 * ofTheWhole.allocations + FIXED_WORK.allocations) << length;
        ASSERT_LE(work.peak, 2 * ofTheWhole.peak + FIXED_WORK.peak) << length;
    }
}

TEST(HostileBytes, ThatEndAnywhereTakeNoMoreThanTheWhole)
{
    const QuietParser quiet;
    for (const auto& sample : entrySamples())
        expectNoMoreForTheBeginning(*sample.object);
    for (const auto& sample : groupSamples())
        expectNoMoreForTheBeginning(*sample.object);
}

} // namespace
