/**
 * Changes bytes of entries and groups so that they stay bytes of messages, mostly: with fields that
 * come twice, are missing, stand at odd places or are written in odd ways.
 */
#ifndef FILTER_COMMON_FUZZ_WIRE_MUTATOR_H
#define FILTER_COMMON_FUZZ_WIRE_MUTATOR_H

#include <cstdint>
#include <string>

namespace FiltersCommon::fuzz {

/** The bytes with a few changes; the same ones for the same seed, on every host. */
std::string mutateWire(const std::string& bytes, std::uint64_t seed);

/** Fields of both, in the order of the one and the other. */
std::string crossWires(const std::string& a, const std::string& b, std::uint64_t seed);

} // namespace FiltersCommon::fuzz

#endif // FILTER_COMMON_FUZZ_WIRE_MUTATOR_H
