#include "allocations.h"

#include <cerrno>
#include <cstdlib>
#include <utility>

#include <malloc.h>

namespace {

bool counting = false;
bench::Allocations totals;

void* counted(void* block)
{
    if (counting && block != nullptr) {
        ++totals.count;
        totals.live += static_cast<std::int64_t>(malloc_usable_size(block));
    }
    return block;
}

void uncount(void* block)
{
    if (counting && block != nullptr)
        totals.live -= static_cast<std::int64_t>(malloc_usable_size(block));
}

} // namespace

namespace bench {

void keepMemory()
{
    constexpr int MOST = 1 << 30;
    mallopt(M_MMAP_MAX, 0);
    mallopt(M_TRIM_THRESHOLD, MOST);
}

void settleHeap()
{
    // Freeing a large block makes the C library join its free blocks.
    constexpr std::size_t LARGE = 1 << 20;
    void* volatile block = std::malloc(LARGE);
    std::free(block);
}

void startCounting()
{
    totals = {};
    counting = true;
}

Allocations stopCounting()
{
    counting = false;
    return totals;
}

} // namespace bench

extern "C" {

// The C library's own functions, under names that are not overridden.
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* block);

void* malloc(std::size_t size) { return counted(__libc_malloc(size)); }

void* calloc(std::size_t count, std::size_t size) { return counted(__libc_calloc(count, size)); }

void* realloc(void* block, std::size_t size)
{
    uncount(block);
    return counted(__libc_realloc(block, size));
}

void* memalign(std::size_t alignment, std::size_t size)
{
    return counted(__libc_memalign(alignment, size));
}

void* aligned_alloc(std::size_t alignment, std::size_t size) { return memalign(alignment, size); }

int posix_memalign(void** block, std::size_t alignment, std::size_t size)
{
    *block = memalign(alignment, size);
    return *block == nullptr ? ENOMEM : 0;
}

void free(void* block)
{
    uncount(block);
    __libc_free(block);
}
}
