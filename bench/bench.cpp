/**
 * Times every operation with Google Benchmark.
 *
 *     filter_bench [--rules=FILE] [--sizes=N,N,...] [--repetitions=N] [options of Google Benchmark]
 *
 * Measures processor time, so that other processes disturb little. Progress goes to standard error,
 * because with repetitions in random order all results come at the end.
 */
#include "allocations.h"
#include "operations.h"
#include "options.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <ctime>
#include <exception>
#include <iostream>
#include <string>

namespace {

using namespace bench;

double processorSeconds()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

/** Reports every few seconds how far the measurements have got. */
class Progress {
public:
    /** Each benchmark is tried out about twice before it is repeated. */
    Progress(std::size_t benchmarks, int repetitions)
        : expected_(benchmarks * (static_cast<std::size_t>(repetitions) + 2))
    {}

    void begin(const std::string& title)
    {
        ++measurements_;
        const std::time_t now = std::time(nullptr);
        if (now < last_ + 5)
            return;
        last_ = now;
        std::fprintf(stderr, "bench: measurement %zu of about %zu after %lld s: %s\n",
                     measurements_, expected_, static_cast<long long>(now - first_), title.c_str());
    }

private:
    const std::size_t expected_;
    const std::time_t first_ = std::time(nullptr);
    std::time_t last_ = 0;
    std::size_t measurements_ = 0;
};

void measure(benchmark::State& state, const Operation& operation)
{
    for (auto _ : state) {
        operation.prepare();
        settleHeap();
        const double begin = processorSeconds();
        operation.run();
        state.SetIterationTime(processorSeconds() - begin);
        operation.clear();
    }
    state.counters["rules"] = static_cast<double>(operation.rules);
}

void registerAll(const std::vector<Workload>& workloads, int repetitions, Progress& progress)
{
    for (const Workload& workload : workloads)
        for (const Description& description : allOperations()) {
            const std::string title = description.title() + "/" + std::to_string(workload.size);
            benchmark::RegisterBenchmark(title.c_str(),
                                         [=, &workload, &progress](auto& state) {
                                             progress.begin(title);
                                             measure(state, description.make(workload.rules));
                                         })
                ->UseManualTime()
                ->Repetitions(repetitions);
        }
}

} // namespace

int main(int argc, char** argv)
{
    try {
        keepMemory();
        const std::vector<Workload> workloads = takeWorkloads(argc, argv);
        const int repetitions = std::stoi(takeOption(argc, argv, "repetitions").value_or("1"));
        benchmark::Initialize(&argc, argv);
        if (workloads.empty() || benchmark::ReportUnrecognizedArguments(argc, argv))
            return 2;
        for (const Workload& workload : workloads)
            checkThatSubjectsAgree(workload.rules);
        Progress progress(workloads.size() * allOperations().size(), repetitions);
        registerAll(workloads, repetitions, progress);
        benchmark::RunSpecifiedBenchmarks();
        benchmark::Shutdown();
        return 0;
    } catch (const std::exception& error) {
        std::cerr << "filter_bench: " << error.what() << "\n";
        return 1;
    }
}
