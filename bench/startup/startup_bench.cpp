#include "spec/configuration.h"
#include "spec/spec_parser.h"
#include "support/agent_registry.h"

#include <benchmark/benchmark.h>

#include <memory>
#include <string>

/// What a start costs per entry, and what a key press costs with few entries and with many.
namespace {

std::string spec_of(std::int64_t entries) {
    std::string text = "\\" + kAgentKey + "\nAgent\nAgentService\n!General\n";
    for (std::int64_t i = 0; i < entries; ++i)
        text += "$Setting number " + std::to_string(i) + "\nValue\nWhat this setting is good for.\nInteger\n";
    return text;
}

std::unique_ptr<Configuration> parsed(const std::string& text) {
    auto configuration = std::make_unique<Configuration>(false);
    parse_spec(*configuration, "Agent", text);
    return configuration;
}

/// Lines, entries and a registry read for each of them.
void parse_and_read(benchmark::State& state) {
    prepare_registry();
    const std::string text = spec_of(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(parsed(text));
    state.counters["per entry"] =
        benchmark::Counter(static_cast<double>(state.range(0)),
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
    state.SetBytesProcessed(static_cast<std::int64_t>(text.size()) * state.iterations());
}
BENCHMARK(parse_and_read)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

/// What the main window asks on every key press.
void key_press(benchmark::State& state) {
    prepare_registry();
    const auto configuration = parsed(spec_of(state.range(0)));
    const HWND window =
        CreateWindowExA(0, "Static", "", WS_POPUP, 0, 0, 436, 229, nullptr, nullptr, nullptr, nullptr);
    configuration->shown_entry = configuration->groups.at(0).entries.back().get();
    configuration->shown_entry->select(window);
    for (auto _ : state)
        benchmark::DoNotOptimize(configuration->has_changes());
    configuration->shown_entry->deselect(window);
}
BENCHMARK(key_press)->Arg(10)->Arg(100000);

} // namespace

BENCHMARK_MAIN();
