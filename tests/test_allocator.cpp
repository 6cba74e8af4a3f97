#include "test_allocator.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <new>
#include <utility>

namespace FiltersCommon::test {

namespace {

AllocationTotals totals{};
std::size_t peak = 0;

/** How many allocations from now the one to fail is; 0 when it is past or there is none. */
std::size_t countdown = 0;
Failing mode = Failing::NONE;
bool failed = false;

/** How often a test has had an allocation fail. */
std::size_t failures = 0;

/** Says so when the program ends. */
class Report : public testing::Environment {
    void TearDown() override
    {
        if (failures != 0)
            std::printf("Failed an allocation %zu times\n", failures);
    }
};

testing::Environment* const report = testing::AddGlobalTestEnvironment(new Report);

/** The noted blocks; not a container, which would allocate. */
void* noted[500];
std::size_t notedCount = 0;
bool noting = false;

void note(void* block)
{
    if (notedCount == std::size(noted))
        std::abort();
    noted[notedCount++] = block;
}

void forget(void* block)
{
    void** const end = noted + notedCount;
    void** const place = std::find(noted, end, block);
    if (place != end)
        *place = noted[--notedCount];
}

bool mustFail()
{
    if (mode == Failing::ONE_AND_ALL_LATER && failed)
        return true;
    if (countdown == 0 || --countdown != 0)
        return false;
    failed = true;
    return true;
}

/** Precedes each block; what the C library would round the size to depends on the heap. */
struct alignas(std::max_align_t) Header {
    std::size_t size;
};

void* allocate(std::size_t size) noexcept
{
    if (mustFail() || size > SIZE_MAX - sizeof(Header))
        return nullptr;
    auto* const header = static_cast<Header*>(std::malloc(sizeof(Header) + size));
    if (header == nullptr)
        return nullptr;
    header->size = size;
    ++totals.count;
    ++totals.live;
    totals.bytes += size;
    totals.liveBytes += size;
    peak = std::max(peak, totals.liveBytes);
    void* const block = header + 1;
    if (noting)
        note(block);
    return block;
}

void* allocateOrThrow(std::size_t size)
{
    void* block = allocate(size);
    if (block == nullptr)
        throw std::bad_alloc();
    return block;
}

void release(void* block) noexcept
{
    if (block == nullptr)
        return;
    if (noting)
        forget(block);
    Header* const header = static_cast<Header*>(block) - 1;
    --totals.live;
    totals.liveBytes -= header->size;
    std::free(header);
}

} // namespace

AllocationTotals allocationTotals() { return totals; }

std::size_t peakLiveBytes() { return peak; }
void forgetPeak() { peak = totals.liveBytes; }

void failAllocation(std::size_t n, Failing failing)
{
    countdown = n;
    mode = failing;
    failed = false;
}

bool stopFailing()
{
    countdown = 0;
    mode = Failing::NONE;
    failures += failed;
    return std::exchange(failed, false);
}

void noteBlocks() { noting = true; }

void freeNotedBlocks()
{
    noting = false;
    while (notedCount != 0)
        release(noted[--notedCount]);
}

} // namespace FiltersCommon::test

using FiltersCommon::test::allocate;
using FiltersCommon::test::allocateOrThrow;
using FiltersCommon::test::release;

void* operator new(std::size_t size) { return allocateOrThrow(size); }
void* operator new[](std::size_t size) { return allocateOrThrow(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }
void operator delete(void* block) noexcept { release(block); }
void operator delete[](void* block) noexcept { release(block); }
void operator delete(void* block, std::size_t) noexcept { release(block); }
void operator delete[](void* block, std::size_t) noexcept { release(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { release(block); }
void operator delete[](void* block, const std::nothrow_t&) noexcept { release(block); }
