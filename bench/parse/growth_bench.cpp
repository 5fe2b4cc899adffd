// What an entry costs in time and memory, by the number of entries.
#include "parse/settings.h"

#include <benchmark/benchmark.h>

#include <ctime>
#include <limits>
#include <malloc.h>

namespace {

using namespace parse;

const Parser* const parsers[] = {&our_parser, &inih_parser, &simple_ini_parser, &glib_parser};

double processor_seconds() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

/// The time of one entry. The pages have been handed out by the system before the clock runs: how long that
/// takes depends on what else the machine has done, and not on us.
void time_growth(benchmark::State& state, int entries) {
    const std::string text = spec_text(entries);
    our_parser.from_text(text, nullptr); // its memory stays with the process
    for (auto _ : state) {
        const double begin = processor_seconds();
        our_parser.from_text(text, nullptr);
        state.SetIterationTime((processor_seconds() - begin) / entries);
    }
}

void count_memory(benchmark::State& state, const Parser& parser) {
    constexpr int entries = 100'000;
    const std::string text =
        parser.from_text == our_parser.from_text ? spec_text(entries) : ini_text(entries);
    for (auto _ : state)
        state.counters["bytes"] = static_cast<double>(parser.memory(text)) / entries;
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
    for (const Parser* parser : parsers) {
        const std::string name = std::string("memory of an entry/") + parser->name;
        benchmark::RegisterBenchmark(name.c_str(), count_memory, *parser)->Iterations(1);
    }
    benchmark::Initialize(&count, arguments);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
