/**
 * Sizes beyond what a message or an envelope holds. So much memory is only pretended: a large
 * allocation is the same few pages over and over, so what is written to it reads as anything.
 */
#include "support.h"
#include "wire_bytes.h"

#include "filter_serialized.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <new>
#include <string>

#include <sys/mman.h>
#include <unistd.h>

// --------------------------------------------------------------------------------- large memory

namespace {

constexpr std::size_t LARGE = std::size_t{1} << 28;
constexpr std::size_t PIECE = std::size_t{1} << 24;

struct Region {
    void* begin = nullptr;
    std::size_t size = 0;
};

/** The large allocations that live. */
std::array<Region, 16> regions;

Region* regionAt(const void* begin)
{
    for (Region& region : regions)
        if (region.begin == begin)
            return &region;
    return nullptr;
}

void* allocateLarge(std::size_t size)
{
    static const int pages = [] {
        const int file = ::memfd_create("pages", 0);
        return ::ftruncate(file, PIECE) == 0 ? file : -1;
    }();
    size = (size + PIECE - 1) / PIECE * PIECE;
    Region* const region = regionAt(nullptr);
    void* const begin = ::mmap(nullptr, size, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (pages < 0 || region == nullptr || begin == MAP_FAILED)
        throw std::bad_alloc();
    for (std::size_t at = 0; at < size; at += PIECE)
        if (::mmap(static_cast<char*>(begin) + at, PIECE, PROT_READ | PROT_WRITE,
                   MAP_SHARED | MAP_FIXED | MAP_POPULATE, pages, 0) == MAP_FAILED)
            throw std::bad_alloc();
    *region = {begin, size};
    return begin;
}

} // namespace

void* operator new(std::size_t size)
{
    if (size >= LARGE)
        return allocateLarge(size);
    if (void* memory = std::malloc(size == 0 ? 1 : size))
        return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept
{
    Region* const region = memory == nullptr ? nullptr : regionAt(memory);
    if (region == nullptr)
        return std::free(memory);
    ::munmap(region->begin, region->size);
    *region = {};
}

void operator delete(void* memory, std::size_t) noexcept { operator delete(memory); }

// In the place of the neighbouring library's: a policer has as many bytes as its identifier says.
std::string policer::Policer::Serialize() const
{
    return std::string(GetId() == INVALID_ID ? 0 : GetId(), 'x');
}

namespace {

using namespace FiltersCommon;

constexpr std::size_t MOST_OF_MESSAGE = std::numeric_limits<std::int32_t>::max();
constexpr std::size_t MOST_OF_ENVELOPE = std::numeric_limits<std::uint32_t>::max();

#define NEEDS_64_BITS                                                                              \
    if (sizeof(std::size_t) < 8)                                                                   \
    GTEST_SKIP() << "no string is so long here"

/** An identifier, and zeros, at which reading stops. */
std::string bytesOfSize(std::size_t size)
{
    std::string bytes(size, '\0');
    bytes[0] = 1 << 3;
    bytes[1] = 7;
    return bytes;
}

TEST(SizeLimits, MoreThanAMessageReadsAsNoBytes)
{
    NEEDS_64_BITS;
    {
        const std::string most = bytesOfSize(MOST_OF_MESSAGE);
        EXPECT_EQ(FiltersEntry(most).getId(), 7);
        EXPECT_EQ(FiltersGroup(most).getId(), 7);
    }
    const std::string more = bytesOfSize(MOST_OF_MESSAGE + 1);
    EXPECT_TRUE(FiltersEntry(more) == FiltersEntry(std::string()));
    EXPECT_TRUE(FiltersGroup(more) == FiltersGroup(std::string()));
}

TEST(SizeLimits, MoreThanAMessageReadsAsNoPolicer)
{
    NEEDS_64_BITS;
    using namespace test::wire;
    std::string mode;
    for (const std::uint32_t field : {1u, 2u, 3u, 4u, 5u, 6u, 7u})
        mode += number(field, 0);
    const std::string policer = number(1, 7) + number(2, 0) + delimited(3, mode);
    EXPECT_EQ(policer::Policer(policer).GetId(), 7u);
    // An unknown string, and the identifier again.
    const std::string end = number(1, 7);
    const std::size_t others = policer.size() + tag(100, DELIMITED).size() + 5 + end.size();
    for (const std::size_t size : {MOST_OF_MESSAGE, MOST_OF_MESSAGE + 1}) {
        const std::size_t length = size - others;
        const std::string begin = policer + tag(100, DELIMITED) + varint(length);
        std::string bytes(size, 'x');
        // Not by what also writes the terminating zero, which may be the first byte as well here.
        begin.copy(&bytes[0], begin.size());
        end.copy(&bytes[size - end.size()], end.size());
        ASSERT_EQ(begin.size() + length + end.size(), size);
        EXPECT_EQ(policer::Policer(bytes).GetId(),
                  size > MOST_OF_MESSAGE ? policer::Policer::INVALID_ID : 7);
    }
}

std::size_t bytesWithPolicerOf(std::size_t size)
{
    FiltersEntry entry;
    entry.setPolicer(policer::Policer(static_cast<std::uint32_t>(size), policer::STAGE_INGRESS,
                                      policer::Mode(), {}));
    std::string bytes;
    entry.serialize(&bytes);
    return bytes.size();
}

TEST(SizeLimits, MoreThanAMessageIsWrittenAsNoBytes)
{
    NEEDS_64_BITS;
    const std::size_t others = bytesWithPolicerOf(LARGE) - LARGE;
    EXPECT_EQ(bytesWithPolicerOf(MOST_OF_MESSAGE - others), MOST_OF_MESSAGE);
    EXPECT_EQ(bytesWithPolicerOf(MOST_OF_MESSAGE - others + 1), 0u);
}

TEST(SizeLimits, AnEnvelopeHoldsFourGibibytes)
{
    NEEDS_64_BITS;
    FiltersSerialized envelope;
    EXPECT_THROW(envelope.setData(std::string(MOST_OF_ENVELOPE, 'x')), std::bad_alloc);
    EXPECT_EQ(envelope.data(), nullptr);
    envelope.setData(std::string(MOST_OF_ENVELOPE - 1, 'x'));
    EXPECT_EQ(envelope.size(), MOST_OF_ENVELOPE);
}

} // namespace
