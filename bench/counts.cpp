/**
 * Counts, once for each operation, what does not vary from run to run.
 *
 *     filter_counts [--rules=FILE] [--sizes=N,N,...] allocations | instructions
 *
 * Prints for each operation a line with its title, its number of rules, and for "allocations" how
 * many allocations it made and how many more bytes are allocated after it. "instructions" runs
 * under callgrind, with instrumentation off at the start, and dumps the instructions of each
 * operation under its title; bench/report/counts.py runs it and reads the dumps.
 */
#include "allocations.h"
#include "operations.h"
#include "options.h"

#ifdef HAVE_CALLGRIND
#include <valgrind/callgrind.h>
#endif

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <string>

namespace {

using namespace bench;

void countAllocations(const std::string& title, const Description& description,
                      const Workload& workload)
{
    const Operation operation = description.make(workload.rules);
    operation.prepare();
    startCounting();
    operation.run();
    const Allocations allocations = stopCounting();
    operation.clear();
    std::printf("%s %zu %zu %lld\n", title.c_str(), operation.rules, allocations.count,
                static_cast<long long>(allocations.live));
}

#ifdef HAVE_CALLGRIND

/** Gets everything done that the runtimes and the dynamic linker do once per process. */
void warmUp(const Description& description, const Rules& rules)
{
    constexpr std::size_t FEW = 16;
    const Rules few(rules.data(), rules.data() + std::min(FEW, rules.size()));
    const Operation operation = description.make(few);
    operation.prepare();
    operation.run();
    operation.clear();
}

void countInstructions(const std::string& title, const Description& description,
                       const Workload& workload)
{
    warmUp(description, workload.rules);
    const Operation operation = description.make(workload.rules);
    operation.prepare();
    settleHeap();
    CALLGRIND_START_INSTRUMENTATION;
    CALLGRIND_ZERO_STATS;
    operation.run();
    CALLGRIND_STOP_INSTRUMENTATION;
    CALLGRIND_DUMP_STATS_AT(title.c_str());
    operation.clear();
    std::printf("%s %zu\n", title.c_str(), operation.rules);
}

#endif

using Count = void (*)(const std::string&, const Description&, const Workload&);

Count countOf(const std::string& what)
{
    if (what == "allocations")
        return countAllocations;
#ifdef HAVE_CALLGRIND
    if (what == "instructions")
        return countInstructions;
#else
    constexpr int CANNOT_COUNT = 77; // report/counts.py knows it
    if (what == "instructions")
        std::exit(CANNOT_COUNT);
#endif
    throw std::runtime_error("cannot count " + what);
}

/** Each operation gets its own process, so that it does not see the heap that another left. */
void countInAChild(Count count, const std::string& title, const Description& description,
                   const Workload& workload)
{
    std::fflush(stdout);
    std::fprintf(stderr, "counts: %s\n", title.c_str());
    const pid_t child = fork();
    if (child == 0) {
        int result = 0;
        try {
            count(title, description, workload);
        } catch (const std::exception& error) {
            std::cerr << "filter_counts: " << title << ": " << error.what() << "\n";
            result = 1;
        }
        std::fflush(stdout);
        _exit(result);
    }
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child || status != 0)
        throw std::runtime_error(title + " was not counted");
}

void countAll(const std::vector<Workload>& workloads, Count count)
{
    for (const Workload& workload : workloads)
        for (const Description& description : allOperations())
            countInAChild(count, description.title() + "/" + std::to_string(workload.size),
                          description, workload);
}

} // namespace

int main(int argc, char** argv)
{
    try {
        keepMemory();
        const std::vector<Workload> workloads = takeWorkloads(argc, argv);
        if (argc != 2)
            throw std::runtime_error("say what to count: allocations or instructions");
        countAll(workloads, countOf(argv[1]));
        return 0;
    } catch (const std::exception& error) {
        std::cerr << "filter_counts: " << error.what() << "\n";
        return 1;
    }
}
