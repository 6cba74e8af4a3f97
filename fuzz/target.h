/**
 * What every target defines. libFuzzer calls it with generated inputs, the replay with those in the
 * corpus.
 */
#ifndef FILTER_COMMON_FUZZ_TARGET_H
#define FILTER_COMMON_FUZZ_TARGET_H

#include <cstddef>
#include <cstdint>
#include <string>

/** Takes any bytes; aborts if a property does not hold. @return 0 */
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace FiltersCommon::fuzz {

/** For targets of a notation: passes on what is behind the first byte, which says what it is. */
template <class CheckBytes, class CheckText>
int takeBytesOrText(const std::uint8_t* data, std::size_t size, CheckBytes checkBytes,
                    CheckText checkText)
{
    if (size == 0)
        return 0;
    const std::string rest(reinterpret_cast<const char*>(data) + 1, size - 1);
    if (data[0] % 2 == 0)
        checkBytes(rest);
    else
        checkText(rest);
    return 0;
}

} // namespace FiltersCommon::fuzz

#endif // FILTER_COMMON_FUZZ_TARGET_H
