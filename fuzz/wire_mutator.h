/**
 * Mutates the bytes of entries and groups so that they mostly remain messages, with fields that are
 * repeated, missing, in odd places or written in odd ways.
 */
#ifndef FILTER_COMMON_FUZZ_WIRE_MUTATOR_H
#define FILTER_COMMON_FUZZ_WIRE_MUTATOR_H

#include <cstdint>
#include <string>

namespace FiltersCommon::fuzz {

/** The bytes with a few mutations, the same ones for the same seed on every host. */
std::string mutateWire(const std::string& bytes, std::uint64_t seed);

/** Some fields of @p a, followed by some of @p b. */
std::string crossWires(const std::string& a, const std::string& b, std::uint64_t seed);

} // namespace FiltersCommon::fuzz

#endif // FILTER_COMMON_FUZZ_WIRE_MUTATOR_H
