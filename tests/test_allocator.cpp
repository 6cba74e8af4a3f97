#include "test_allocator.h"

#include <malloc.h>

#include <algorithm>
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

void* allocate(std::size_t size) noexcept
{
    if (mustFail())
        return nullptr;
    void* block = std::malloc(size == 0 ? 1 : size);
    if (block != nullptr) {
        ++totals.count;
        ++totals.live;
        totals.bytes += size;
        totals.liveBytes += malloc_usable_size(block);
        peak = std::max(peak, totals.liveBytes);
        if (noting)
            note(block);
    }
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
    if (block != nullptr) {
        --totals.live;
        totals.liveBytes -= malloc_usable_size(block);
    }
    if (noting)
        forget(block);
    std::free(block);
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
