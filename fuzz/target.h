/**
 * What every target defines. libFuzzer calls it with generated inputs, the replay with those in the
 * corpus.
 */
#ifndef FILTER_COMMON_FUZZ_TARGET_H
#define FILTER_COMMON_FUZZ_TARGET_H

#include <cstddef>
#include <cstdint>

/** Takes any bytes; aborts if a property does not hold. @return 0 */
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

#endif // FILTER_COMMON_FUZZ_TARGET_H
