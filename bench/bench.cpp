/**
 * Times every operation with Google Benchmark.
 *
 *     filter_bench [--rules=FILE] [--sizes=N,N,...] [--only=TITLE] [--repetitions=N]
 *                  [options of Google Benchmark]
 *
 * Measures processor time, so that other processes disturb little. bench/report/timing.py runs it
 * once for each title. Without a title it first checks that the subjects agree.
 */
#include "allocations.h"
#include "operations.h"
#include "options.h"

#include <benchmark/benchmark.h>

#include <ctime>
#include <exception>
#include <iostream>
#include <optional>
#include <string>
#include <vector>

namespace {

using namespace bench;

double processorSeconds()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

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

struct Benchmark {
    const Description* description;
    const Workload* workload;

    std::string title() const
    {
        return description->title() + "/" + std::to_string(workload->size);
    }
};

std::vector<Benchmark> allBenchmarks(const Descriptions& descriptions,
                                     const std::vector<Workload>& workloads)
{
    std::vector<Benchmark> all;
    for (const Workload& workload : workloads)
        for (const Description& description : descriptions)
            all.push_back({&description, &workload});
    return all;
}

void registerIt(const Benchmark& benchmark, int repetitions)
{
    benchmark::RegisterBenchmark(
        benchmark.title().c_str(),
        [benchmark](auto& state) {
            measure(state, benchmark.description->make(benchmark.workload->rules));
        })
        ->UseManualTime()
        ->Repetitions(repetitions);
}

} // namespace

int main(int argc, char** argv)
{
    try {
        keepMemory();
        const std::vector<Workload> workloads = takeWorkloads(argc, argv);
        const int repetitions = std::stoi(takeOption(argc, argv, "repetitions").value_or("1"));
        const std::optional<std::string> only = takeOption(argc, argv, "only");
        benchmark::Initialize(&argc, argv);
        if (workloads.empty() || benchmark::ReportUnrecognizedArguments(argc, argv))
            return 2;
        if (!only)
            for (const Workload& workload : workloads)
                checkThatSubjectsAgree(workload.rules);
        const Descriptions descriptions = allOperations();
        for (const Benchmark& benchmark : allBenchmarks(descriptions, workloads))
            if (!only || *only == benchmark.title())
                registerIt(benchmark, repetitions);
        benchmark::RunSpecifiedBenchmarks();
        benchmark::Shutdown();
        return 0;
    } catch (const std::exception& error) {
        std::cerr << "filter_bench: " << error.what() << "\n";
        return 1;
    }
}
