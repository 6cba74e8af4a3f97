/**
 * Writing and reading when memory runs out: what was to be filled, and what was written from,
 * stays as it was. What the messages runtime itself leaves allocated is held against it alone.
 */
#include "named_entries.h"
#include "out_of_memory.h"
#include "wire_bytes.h"
#include "wire_support.h"

#include "filter_groups.pb.h"

#include "wire/scratch_message.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iomanip>
#include <iostream>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

using namespace FiltersCommon;
using namespace FiltersCommon::test;

const std::string LONG_TEXT = "what was there before, longer than a string holds in itself";

/** Calls @p function with each entry and each group that has a name. */
template <class Function>
void withEachSample(Function function)
{
    const auto call = [&](const auto& samples) {
        for (const auto& sample : samples) {
            SCOPED_TRACE(sample.name);
            function(*sample.object);
        }
    };
    call(entrySamples());
    call(groupSamples());
}

// An object whose parts fit into it needs no memory of its own, and neither does a short string.

bool needsMemory(const FiltersEntry& entry)
{
    const std::size_t before = allocationTotals().count;
    const FiltersEntry copy(entry);
    return allocationTotals().count != before;
}

bool needsMemory(const FiltersGroup& group) { return !group.getEntriesRef().empty(); }
bool needsMemory(const std::string& bytes) { return bytes.size() > std::string().capacity(); }

/** The bytes that an envelope holds. */
std::string contents(const FiltersSerialized& envelope)
{
    return std::string(envelope.data(), envelope.size());
}

// ---------------------------------------------------------------------------------------- writing

TEST(OutOfMemory, WritingLeavesTheStringAndTheObject)
{
    withEachSample([](const auto& object) {
        const auto before(object);
        for (const std::string& held : {std::string(), LONG_TEXT})
            expectUnchanged(
                held, [&](std::string& out) { object.serialize(&out); },
                needsMemory(serialized(object)));
        expectSame(object, before);
    });
}

TEST(OutOfMemory, WritingLeavesTheEnvelopeEmpty)
{
    withEachSample([](const auto& object) {
        const std::string expected = serialized(object) + '\0'; // and what is built once is there
        for (const Failing failing : FAILINGS) {
            FiltersSerialized envelope;
            EXPECT_GE(failEachAllocation(
                          failing, [&] { object.serialize(&envelope); },
                          [&] {
                              EXPECT_EQ(envelope.size(), 0u);
                              EXPECT_EQ(envelope.data(), nullptr);
                          }),
                      1u);
            EXPECT_EQ(contents(envelope), expected);
        }
    });
}

TEST(OutOfMemory, WritingAMessageLeavesTheObject)
{
    withEachSample([](const auto& object) {
        const auto before(object);
        // A message without bytes and elements needs no memory.
        const bool isSmall = written(object).SpaceUsedLong() == sizeof written(object);
        expectBadAlloc([&] { written(object); }, isSmall ? 0 : 1);
        expectSame(object, before);
    });
}

// -------------------------------------------------------------------------------------- envelopes

TEST(OutOfMemory, AnEnvelopeIsFilledOrStaysAsItWas)
{
    for (const std::string& held : {std::string(), LONG_TEXT})
        for (const Failing failing : FAILINGS) {
            const std::string other = held + LONG_TEXT;
            FiltersSerialized filled(held);
            EXPECT_EQ(failEachAllocation(
                          failing, [&] { filled.copyData(other); },
                          [&] { EXPECT_EQ(contents(filled), held + '\0'); }),
                      1u);
            EXPECT_EQ(contents(filled), other + '\0');
            FiltersSerialized empty;
            EXPECT_EQ(failEachAllocation(
                          failing, [&] { empty.setData(held); },
                          [&] { EXPECT_EQ(empty.data(), nullptr); }),
                      1u);
            EXPECT_EQ(contents(empty), held + '\0');
        }
}

TEST(OutOfMemory, AnEnvelopeIsCopiedOrStaysAsItWas)
{
    const FiltersSerialized source(LONG_TEXT);
    expectBadAlloc([] { FiltersSerialized built(LONG_TEXT); });
    expectBadAlloc([&] { FiltersSerialized copy(source); });
    for (const Failing failing : FAILINGS) {
        FiltersSerialized target("short");
        EXPECT_EQ(failEachAllocation(
                      failing, [&] { target = source; },
                      [&] { EXPECT_EQ(contents(target), std::string("short") + '\0'); }),
                  1u);
        EXPECT_EQ(contents(target), contents(source));
    }
    EXPECT_EQ(contents(source), LONG_TEXT + '\0');
}

TEST(OutOfMemory, MovingAnEnvelopeNeedsNone)
{
    FiltersSerialized first(LONG_TEXT);
    FiltersSerialized second("short");
    expectNoAllocation([&] {
        FiltersSerialized third(std::move(first));
        first = std::move(second);
        second = std::move(third);
    });
    EXPECT_EQ(contents(second), LONG_TEXT + '\0');
    const FiltersSerialized empty;
    expectNoAllocation([&] {
        FiltersSerialized copy(empty);
        copy = empty;
    });
}

// ---------------------------------------------------------------------------------------- reading

/** Builds a T from the bytes, in both ways, with each allocation failing in turn. */
template <class T>
void expectBadAllocOfReading(const std::string& bytes)
{
    const T expected(bytes);
    expectInvariants(expected);
    expectBadAlloc([&] { T read(bytes); }, needsMemory(expected));
    FiltersSerialized envelope(bytes);
    expectBadAlloc([&] { T read(envelope); }, needsMemory(expected));
    EXPECT_EQ(contents(envelope), bytes + '\0');
    expectSame(T(bytes), expected);
}

TEST(OutOfMemory, ReadingWhatWasWrittenLeavesNothing)
{
    withEachSample([](const auto& object) {
        expectBadAllocOfReading<std::decay_t<decltype(object)>>(serialized(object));
    });
}

TEST(OutOfMemory, ReadingNoBytesLeavesNothing)
{
    expectBadAllocOfReading<FiltersEntry>("");
    expectBadAllocOfReading<FiltersGroup>("");
    FiltersSerialized empty;
    expectBadAlloc([&] { FiltersEntry read(empty); }, 0);
    expectBadAlloc([&] { FiltersGroup read(empty); }, 0);
}

TEST(OutOfMemory, ReadingBytesThatEndAnywhereLeavesNothing)
{
    const std::string entry = serialized(*entrySamples()[3].object);
    const std::string group = serialized(*groupSamples()[2].object);
    for (std::size_t length = 0; length < entry.size(); ++length)
        expectBadAllocOfReading<FiltersEntry>(entry.substr(0, length));
    for (std::size_t length = 0; length < group.size(); ++length)
        expectBadAllocOfReading<FiltersGroup>(group.substr(0, length));
}

/** An entry as no writer puts it, which the parser takes. */
std::string oddEntry(filtersEntryId_t id)
{
    using namespace wire;
    const auto port = [](std::uint32_t value) { return number(2, value); };
    const std::string packed = delimited(2, varint(5) + varint(6, 3) + varint(7));
    const std::string ids = delimited(3, varint(300) + varint(4)) + number(3, 5);
    return delimited(6, number(2, 1)) + // the counter in two parts, and before all else
           delimited(5, port(9) + number(1, 3) + packed) +                // ports to be blocked
           delimited(4, packed + port(8) + number(1, 1)) +                // ingress ports
           delimited(4, ids + number(1, 2, 10)) +                         // VLANs, in a long form
           delimited(4, number(1, 29, 4)) + delimited(4, number(1, 99)) + // a kind that is none
           delimited(4, number(1, 4) + delimited(5, "123456789") + delimited(7, "1")) +
           number(1, 1) + number(1, id, 9) + number(2, 0xFFFFFFFFFF) +
           delimited(3, policerAt(policer::STAGE_NONE).Serialize()) + delimited(6, number(1, 2));
}

std::string oddGroup()
{
    using namespace wire;
    return delimited(5, oddEntry(9)) + delimited(5, oddEntry(2)) + number(4, 1) +
           delimited(5, oddEntry(9)) + delimited(5, "") + number(3, 0, 5) + number(2, 70000) +
           number(1, 1);
}

TEST(OutOfMemory, ReadingWhatNoWriterWritesLeavesNothing)
{
    const FiltersGroup group(oddGroup());
    EXPECT_EQ(group.getEntriesRef().size(), 3u);
    EXPECT_EQ(group.getEntriesRef().at(9).getMatchesRef().size(), 4u);
    EXPECT_EQ(group.getEntriesRef().at(9).getActionsRef().size(), 1u);
    expectBadAllocOfReading<FiltersEntry>(oddEntry(7));
    expectBadAllocOfReading<FiltersGroup>(oddGroup());
}

/** What the parser stops at; @p element is a field of messages. */
std::vector<std::string> unparsableEndings(std::uint32_t element)
{
    using namespace wire;
    return {
        std::string(1, '\0'),    // a tag of 0
        std::string(10, '\xFF'), // a tag that never ends
        tag(1, END_GROUP),       // of a group that never began
        tag(1, VARINT),          // without the number
        tag(element, DELIMITED),
        tag(element, DELIMITED) + varint(1), // promises more than there is
        tag(element, DELIMITED) + varint(0x7FFFFFFF) + "abc",
        tag(element, DELIMITED) + varint(0xFFFFFFFFFFFFFFFF) + "abc",
        std::string(1, '\x0E'), // a type of value that does not exist
        delimited(element, number(1, 1) + std::string(1, '\x0F')),
        delimited(element, tag(1, VARINT)),
    };
}

TEST(OutOfMemory, ReadingWhatDoesNotParseLeavesNothing)
{
    for (const std::string& ending : unparsableEndings(4)) {
        SCOPED_TRACE(testing::PrintToString(ending));
        EXPECT_FALSE(FiltersEntryPB().ParsePartialFromString(ending));
        expectBadAllocOfReading<FiltersEntry>(ending);
        expectBadAllocOfReading<FiltersEntry>(oddEntry(7) + ending);
    }
    for (const std::string& ending : unparsableEndings(5)) {
        SCOPED_TRACE(testing::PrintToString(ending));
        expectBadAllocOfReading<FiltersGroup>(ending);
        expectBadAllocOfReading<FiltersGroup>(oddGroup() + ending);
    }
}

TEST(OutOfMemory, ReadingAMessageLeavesTheOldObject)
{
    FiltersEntryPB entry;
    ASSERT_TRUE(entry.ParseFromString(oddEntry(7)));
    for (const auto& sample : entrySamples())
        expectUnchanged(*sample.object,
                        [&](auto& object) { object.convertFromFiltersEntryPB(&entry); });

    const FiltersGroupPB group = parsed<FiltersGroupPB>(oddGroup());
    for (const auto& sample : groupSamples()) {
        // Entries that the group holds stay, whatever the new type says of them.
        FiltersGroupPB own = group;
        own.set_stage_(static_cast<std::uint32_t>(sample.object->getStage()));
        own.set_type_(static_cast<std::uint32_t>(sample.object->getType()));
        expectUnchanged(*sample.object,
                        [&](auto& object) { object.convertFromFiltersGroupPB(&own); });
    }
}

// -------------------------------------------------------------------------------------- first use

/**
 * Fails each allocation of what nobody has done before in this process. What is built once may stay
 * behind, but then nothing more; ends the process.
 */
template <class Operation, class Check>
[[noreturn]] void failFirstUse(Operation operation, Check unchanged)
{
    for (const Failing failing : {Failing::ONE_AND_ALL_LATER, Failing::ONE})
        EXPECT_GE(failInTurn(failing, operation, unchanged).count, 1u);
    expectBadAlloc(operation);
    std::exit(testing::Test::HasFailure() ? 1 : 0);
}

[[noreturn]] void failFirstWriting()
{
    FiltersEntry entry(7);
    entry.setMatch(MatchExternalVlanId({1, 2}));
    const auto write = [&] {
        std::string bytes;
        entry.serialize(&bytes);
        EXPECT_TRUE(FiltersEntry(bytes) == entry);
    };
    failFirstUse(write, [&] { EXPECT_EQ(entry.getMatchesRef().size(), 1u); });
}

/** Builds an entry from bytes whose reading is the first. */
[[noreturn]] void failFirstReading(const std::string& bytes)
{
    failFirstUse([&] { EXPECT_EQ(FiltersEntry(bytes).getMatchesRef().size(), 1u); }, [] {});
}

[[noreturn]] void failFirstMessage()
{
    FiltersEntry entry(7);
    entry.setMatch(MatchExternalVlanId({1, 2}));
    failFirstUse([&] { EXPECT_EQ(written(entry).id_(), 7u); },
                 [&] { EXPECT_EQ(entry.getMatchesRef().size(), 1u); });
}

/** Each in a process of its own, where nothing has been built yet: death tests run first. */
TEST(OutOfMemoryDeathTest, OfTheFirstUseIsOverByTheNext)
{
    GTEST_FLAG_SET(death_test_style, DEATH_TEST_STYLE);
    using namespace wire;
    const std::string match = delimited(4, number(1, 2) + number(3, 5));
    const std::string asWritten = number(1, 7) + number(2, 8) + delimited(3, "") + match +
                                  delimited(6, number(1, 0) + number(2, 0));
    const auto succeeded = testing::ExitedWithCode(0);
    EXPECT_EXIT(failFirstWriting(), succeeded, "");
    EXPECT_EXIT(failFirstReading(asWritten), succeeded, "");
    EXPECT_EXIT(failFirstReading(match + number(1, 7)), succeeded, "");
    EXPECT_EXIT(failFirstMessage(), succeeded, "");
}

// ------------------------------------------------------- what the messages runtime leaves behind

/** As failInTurn, for an operation that loses memory, which is freed in its stead. */
template <class Operation>
FailedAllocations failAll(Operation operation)
{
    operation();
    FailedAllocations worst = {0, 0};
    for (const Failing failing : FAILINGS) {
        const auto noted = [&] {
            noteBlocks();
            operation();
        };
        const FailedAllocations result = failInTurn(failing, noted, freeNotedBlocks);
        freeNotedBlocks();
        worst = {result.count, std::max(worst.leftAllocated, result.leftAllocated)};
    }
    return worst;
}

/** Parses the bytes onto an arena, as the library does. */
template <class Message>
void parse(const std::string& bytes)
{
    ScratchMessage<Message> message;
    static_cast<void>(message.get()->ParsePartialFromString(bytes));
}

/** Fields that no message has, of every type of value, twice. */
std::string unknownFields()
{
    using namespace wire;
    const std::string once =
        number(UNKNOWN, 1) + fixed32(UNKNOWN) + fixed64(UNKNOWN) + delimited(UNKNOWN, LONG_TEXT) +
        group(UNKNOWN, number(1, 1) + delimited(2, LONG_TEXT)) + fixed32(1) + fixed64(4);
    return once + once;
}

/**
 * The runtime keeps a field that it does not know, and loses a string of it when the list of such
 * fields cannot grow. Reading loses no more than that.
 */
TEST(OutOfMemory, ReadingUnknownFieldsLeavesNoMoreThanTheParser)
{
    using wire::delimited, wire::number;
    const std::string unknown = unknownFields();
    const std::string entry = oddEntry(7) + delimited(4, number(1, 1) + unknown) + unknown;
    const std::string group = oddGroup() + delimited(5, entry) + unknown;
    EXPECT_LE(failAll([&] { FiltersEntry read(entry); }).leftAllocated,
              failAll([&] { parse<FiltersEntryPB>(entry); }).leftAllocated);
    EXPECT_LE(failAll([&] { FiltersGroup read(group); }).leftAllocated,
              failAll([&] { parse<FiltersGroupPB>(group); }).leftAllocated);
    expectSame(FiltersEntry(entry), FiltersEntry(oddEntry(7) + delimited(4, number(1, 1))));
    expectInvariants(FiltersGroup(group));
}

/** Prints what the runtime does by itself, with messages of its own on the heap and on an arena. */
TEST(MessagesRuntime, LosesMemoryOfItsOwn)
{
    const auto print = [](const char* what, auto operation) {
        const FailedAllocations result = failAll(operation);
        std::cout << std::left << std::setw(46) << what << std::right << std::setw(3)
                  << result.count << " allocations, at most " << std::setw(2)
                  << result.leftAllocated << " blocks lost by a failure\n";
    };
    const std::string canonical = serialized(*groupSamples()[2].object);
    const std::string unknown = canonical + unknownFields();
    const auto group = parsed<FiltersGroupPB>(canonical);
    std::string bytes;
    print("write a message", [&] { group.SerializePartialToString(&bytes); });
    print("parse onto an arena", [&] { parse<FiltersGroupPB>(canonical); });
    print("parse onto an arena, unknown fields", [&] { parse<FiltersGroupPB>(unknown); });
    print("parse onto the heap", [&] { parsed<FiltersGroupPB>(canonical); });
    print("parse onto the heap, unknown fields", [&] { parsed<FiltersGroupPB>(unknown); });
    print("copy a message on the heap", [&] { FiltersGroupPB copy(group); });
    EXPECT_EQ(bytes, canonical);
}

} // namespace
