// `tavrinctl check` of a large spec file, compared with parsing the same text as the window does and with
// only reading its statements.
#include "ctl/check/spec_check.h"
#include "parse/settings.h"
#include "specfile/spec_text.h"

#include <benchmark/benchmark.h>

#include <limits>
#include <malloc.h>

namespace {

constexpr int entries = 100'000;

void time_check(benchmark::State& state) {
    const std::string text = parse::spec_text(entries);
    for (auto _ : state)
        benchmark::DoNotOptimize(ctl::check_spec(text, 1252).size());
}

void time_parsing(benchmark::State& state) {
    const std::string text = parse::spec_text(entries);
    for (auto _ : state)
        parse::our_parser.from_text(text, nullptr);
}

void time_statements(benchmark::State& state) {
    const std::string text = parse::spec_text(entries);
    for (auto _ : state) {
        SpecReader reader(text);
        std::size_t statements = 0;
        while (reader.next() != nullptr)
            ++statements;
        benchmark::DoNotOptimize(statements);
    }
}

} // namespace

int main(int count, char** arguments) {
    mallopt(M_MMAP_MAX, 0);
    mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
    benchmark::RegisterBenchmark("check of a spec file, 100000/tavrinconfig", time_check);
    benchmark::RegisterBenchmark("check of a spec file, 100000/parsing it", time_parsing);
    benchmark::RegisterBenchmark("check of a spec file, 100000/reading its statements", time_statements);
    benchmark::Initialize(&count, arguments);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
