// What an entry costs in memory.
#include "parse/settings.h"

#include <benchmark/benchmark.h>

#include <limits>
#include <malloc.h>

namespace {

using namespace parse;

const Parser* const parsers[] = {&our_parser, &inih_parser, &simple_ini_parser, &glib_parser};

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
    for (const Parser* parser : parsers) {
        const std::string name = std::string("memory of an entry/") + parser->name;
        benchmark::RegisterBenchmark(name.c_str(), count_memory, *parser)->Iterations(1);
    }
    benchmark::Initialize(&count, arguments);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
