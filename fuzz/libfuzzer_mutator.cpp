#include "wire_mutator.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

// Connects the mutator to libFuzzer. One mutation in three is libFuzzer's own, on the plain bytes.

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

namespace {

std::string stringOf(const std::uint8_t* data, std::size_t size)
{
    return {reinterpret_cast<const char*>(data), size};
}

} // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t maxSize, unsigned seed)
{
    if (seed % 3 != 0) {
        const std::string bytes = stringOf(data, size);
        const std::string mutated = FiltersCommon::fuzz::mutateWire(bytes, seed);
        if (mutated != bytes && mutated.size() <= maxSize) {
            std::copy(mutated.begin(), mutated.end(), data);
            return mutated.size();
        }
    }
    return LLVMFuzzerMutate(data, size, maxSize);
}

extern "C" std::size_t LLVMFuzzerCustomCrossOver(const std::uint8_t* data1, std::size_t size1,
                                                 const std::uint8_t* data2, std::size_t size2,
                                                 std::uint8_t* out, std::size_t maxOutSize,
                                                 unsigned seed)
{
    const std::string crossed =
        FiltersCommon::fuzz::crossWires(stringOf(data1, size1), stringOf(data2, size2), seed);
    const std::size_t size = std::min(crossed.size(), maxOutSize);
    std::copy_n(crossed.begin(), size, out);
    return size;
}
