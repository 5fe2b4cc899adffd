// The time for an entry, by the number of entries. It has a program of its own, because the heap that other
// parsers leave has holes, over which the entries would be scattered.
#include "parse/settings.h"

#include <benchmark/benchmark.h>

#include <ctime>
#include <limits>
#include <malloc.h>

namespace {

using namespace parse;

double processor_seconds() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

/// The time of one entry. The system has allocated the pages before the clock starts: how long that takes
/// depends on what else the machine has done.
void time_growth(benchmark::State& state, int entries) {
    const std::string text = spec_text(entries);
    our_parser.from_text(text, nullptr); // its memory stays with the process
    for (auto _ : state) {
        const double begin = processor_seconds();
        our_parser.from_text(text, nullptr);
        state.SetIterationTime((processor_seconds() - begin) / entries);
    }
}

} // namespace

int main(int count, char** arguments) {
    mallopt(M_MMAP_MAX, 0);
    mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
    for (const int entries : {1'000, 10'000, 100'000, 1'000'000}) {
        const std::string name = "growth, an entry of/" + std::to_string(entries);
        benchmark::RegisterBenchmark(name.c_str(), time_growth, entries)
            ->UseManualTime()
            ->Iterations(3'000'000 / entries);
    }
    benchmark::Initialize(&count, arguments);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
