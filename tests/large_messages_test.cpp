/**
 * Messages at the limit of what one message may have, 2 GiB - 1. Each test is skipped where the
 * machine has not the memory for it at the moment.
 */
#include "support.h"
#include "wire_bytes.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <limits>
#include <string>

// In the place of the neighbouring library's: a policer has as many bytes as its identifier says.
std::string policer::Policer::Serialize() const
{
    return std::string(GetId() == INVALID_ID ? 0 : GetId(), 'x');
}

namespace {

using namespace FiltersCommon;
using namespace FiltersCommon::test;

constexpr std::size_t LIMIT = std::numeric_limits<std::int32_t>::max();
constexpr std::size_t GIB = std::size_t{1} << 30;

/** What the system could give to this process; 0 where it does not say. */
std::size_t availableMemory()
{
    std::ifstream info("/proc/meminfo");
    for (std::string name, rest; info >> name && std::getline(info, rest);)
        if (name == "MemAvailable:")
            return std::stoull(rest) << 10;
    return 0;
}

#define NEEDS_MEMORY(size)                                                                         \
    if (sizeof(std::size_t) < 8 || availableMemory() < (size) + GIB)                               \
    GTEST_SKIP() << "needs " << (size) / GIB << " GiB of memory and 1 GiB to spare"

// ---------------------------------------------------------------------------------------- reading

/** An identifier, the end of what the parser reads, and anything. */
std::string paddedTo(std::size_t size)
{
    std::string bytes = wire::number(1, 7) + wire::number(2, 8) + '\0';
    bytes.resize(size, 'x');
    return bytes;
}

TEST(LargeMessages, AreReadUpToTheLimit)
{
    NEEDS_MEMORY(3 * GIB);
    const std::string bytes = paddedTo(LIMIT);
    EXPECT_EQ(FiltersEntry(bytes).getId(), 7);
    EXPECT_EQ(FiltersGroup(bytes).getId(), 7);
}

TEST(LargeMessages, BeyondTheLimitReadAsNoBytes)
{
    NEEDS_MEMORY(5 * GIB);
    for (const std::size_t size : {LIMIT + 1, LIMIT + 2, 3 * GIB, 4 * GIB, 4 * GIB + 100}) {
        const std::string bytes = paddedTo(size);
        EXPECT_TRUE(FiltersEntry(bytes) == FiltersEntry("")) << size;
        EXPECT_TRUE(FiltersGroup(bytes) == FiltersGroup("")) << size;
    }
}

/** The runtime would count the end of each part wrong, and read on to the end of the bytes. */
TEST(LargeMessages, BeyondTheLimitAreNotReadInPart)
{
    NEEDS_MEMORY(4 * GIB);
    using namespace wire;
    const std::string ports = number(1, 1) + delimited(2, "\5\6");
    std::string bytes = delimited(5, number(1, 3) + delimited(4, ports)) + number(1, 7);
    bytes.resize(3 * GIB, '\0');
    EXPECT_TRUE(FiltersGroup(bytes) == FiltersGroup(""));
}

TEST(LargeMessages, InAnEnvelopeCountItsTerminatingZero)
{
    NEEDS_MEMORY(5 * GIB);
    for (const std::size_t size : {LIMIT - 1, LIMIT}) {
        FiltersSerialized envelope(paddedTo(size));
        const int id = size < LIMIT ? 7 : 0;
        EXPECT_EQ(envelope.size(), size + 1);
        EXPECT_EQ(FiltersEntry(envelope).getId(), id);
        EXPECT_EQ(FiltersGroup(envelope).getId(), id);
    }
}

// ---------------------------------------------------------------------------------------- writing

/** The bytes of a policer, so long that their length takes four bytes. */
constexpr std::size_t LONG = std::size_t{1} << 26;

policer::Policer policerOf(std::size_t length)
{
    return {static_cast<std::uint32_t>(length), policer::STAGE_NONE, policer::Mode(), {}};
}

/** Entries whose policers have LONG bytes, and that of the last of them @p more. */
FiltersGroup groupOfLong(int entries, std::size_t more)
{
    FiltersGroup group(1);
    for (int id = 0; id < entries; ++id) {
        FiltersEntry entry(static_cast<filtersEntryId_t>(id));
        const std::size_t length = id + 1 == entries ? LONG + more : LONG;
        entry.setPolicer(policerOf(length));
        EXPECT_EQ(group.insertEntry(entry), FILTERS_OK);
    }
    return group;
}

std::string written(const FiltersGroup& group)
{
    std::string bytes = "what was there before";
    group.serialize(&bytes);
    return bytes;
}

TEST(LargeMessages, AreWrittenUpToTheLimitAndNotBeyond)
{
    NEEDS_MEMORY(5 * GIB);
    const std::size_t ofOne = written(groupOfLong(1, 0)).size();
    const std::size_t ofTwo = written(groupOfLong(2, 0)).size();
    const std::size_t each = ofTwo - ofOne;
    const auto entries = static_cast<int>((LIMIT - ofOne) / each) + 1;
    const std::size_t whole = ofOne + static_cast<std::size_t>(entries - 1) * each;
    const std::size_t more = LIMIT - whole;

    EXPECT_EQ(written(groupOfLong(entries, more)).size(), LIMIT);
    const FiltersGroup tooLong = groupOfLong(entries, more + 1);
    EXPECT_EQ(written(tooLong), "");
    FiltersSerialized envelope;
    tooLong.serialize(&envelope);
    EXPECT_EQ(envelope.size(), 1u) << "the terminating zero";
}

TEST(LargeMessages, OfAnEntryAreNotWrittenBeyondTheLimit)
{
    NEEDS_MEMORY(7 * GIB);
    FiltersEntry entry(1);
    entry.setPolicer(policerOf(LIMIT + 1));
    std::string bytes = "what was there before";
    entry.serialize(&bytes);
    EXPECT_EQ(bytes, "");
}

} // namespace
