#include "inputs.h"
#include "properties.h"
#include "wire_mutator.h"
#include "wire_tree.h"

#include <cstdint>
#include <cstdio>
#include <exception>
#include <string>

// Reads the inputs in a folder, mutations of each, and every prefix of the shorter ones, both by
// the constructors and through the messages, and checks what is told of losses. libFuzzer does this
// at random and only with Clang; this program does it in every build and the same way every time.

namespace {

using namespace FiltersCommon;

#ifdef FILTER_COMMON_EMULATED
constexpr std::uint64_t MUTATIONS = 12;
constexpr std::size_t LONGEST_CUT = 40;
#else
constexpr std::uint64_t MUTATIONS = 60;
constexpr std::size_t LONGEST_CUT = 160;
#endif

void checkReading(const std::string& bytes)
{
    const auto entry = fuzz::checkReading<FiltersEntry>(bytes);
    fuzz::checkHonesty<FiltersEntryPB>(bytes, entry, readEntryRefusals(bytes));
    const auto group = fuzz::checkReading<FiltersGroup>(bytes);
    fuzz::checkHonesty<FiltersGroupPB>(bytes, group, readGroupRefusals(bytes));
}

void checkTree(const std::string& bytes)
{
    for (const auto* descriptor : {FiltersEntryPB::descriptor(), FiltersGroupPB::descriptor()})
        fuzz::require(fuzz::writeWire(fuzz::readWire(bytes, descriptor)) == bytes,
                      "the mutator leaves alone what it does not change");
}

void checkAround(const std::string& bytes)
{
    checkTree(bytes);
    for (std::size_t size = 0; bytes.size() <= LONGEST_CUT && size < bytes.size(); ++size)
        checkReading(bytes.substr(0, size));

    std::string mutated = bytes;
    for (std::uint64_t seed = 0; seed < MUTATIONS; ++seed) {
        // A few mutations on top of each other, then start again.
        mutated = fuzz::mutateWire(seed % 4 == 0 ? bytes : mutated, seed);
        checkTree(mutated);
        checkReading(mutated);
    }
}

} // namespace

int main(int argc, char** argv)
try {
    std::size_t count = 0;
    for (int i = 1; i < argc; ++i)
        for (const auto& [name, bytes] : fuzz::readInputs(argv[i])) {
            std::printf("%s\n", name.c_str());
            std::fflush(stdout);
            checkAround(bytes);
            ++count;
        }
    if (count == 0)
        std::fprintf(stderr, "no inputs\n");
    return count == 0 ? 1 : 0;
} catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
}
