#include "inputs.h"
#include "target.h"

#include <cstdio>
#include <exception>

// Calls the target once with each input, without libFuzzer. This makes the corpora ordinary tests,
// and lets a reproducer run with any compiler.

namespace {

int replay(const char* path)
{
    const auto inputs = FiltersCommon::fuzz::readInputs(path);
    for (const auto& [name, bytes] : inputs) {
        // Printed first, to show which input aborts.
        std::printf("%s\n", name.c_str());
        std::fflush(stdout);
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    }
    return inputs.empty() ? EXIT_FAILURE : EXIT_SUCCESS;
}

} // namespace

int main(int argc, char** argv)
try {
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s FILE-OR-FOLDER ...\n", argv[0]);
        return 2;
    }
    for (int i = 1; i < argc; ++i)
        if (replay(argv[i]) != EXIT_SUCCESS) {
            std::fprintf(stderr, "%s: no inputs\n", argv[i]);
            return EXIT_FAILURE;
        }
    return EXIT_SUCCESS;
} catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return EXIT_FAILURE;
}
