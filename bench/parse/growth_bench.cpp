// The time for an entry, by the number of entries. It has a program of its own, because the heap that other
// parsers leave has holes, over which the entries would be scattered.
#include "pages/building.h"
#include "pages/configuration.h"
#include "parse/settings.h"

#include <benchmark/benchmark.h>

#include <ctime>
#include <limits>
#include <malloc.h>
#include <utility>

namespace {

double processor_seconds() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

double seconds_to_build(std::string text) {
    const double begin = processor_seconds();
    {
        Configuration configuration(false);
        build_settings(configuration, "Agent", std::move(text), show_spec_error);
    }
    return processor_seconds() - begin;
}

/// The time of one entry, from the text to the end of its configuration. The text is handed over, as the
/// program does with a file's. The system has allocated the pages before the clock starts: how long that
/// takes depends on what else the machine has done.
void time_growth(benchmark::State& state, int entries) {
    const std::string text = parse::spec_text(entries);
    seconds_to_build(text); // its memory stays with the process
    for (auto _ : state)
        state.SetIterationTime(seconds_to_build(text) / entries);
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
