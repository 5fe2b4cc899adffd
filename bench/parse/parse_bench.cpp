// Settings from file to memory: this program's spec files beside the INI files of two libraries. Each file
// holds the same settings, with the same four texts each. The line "tavrinconfig" is equal work: entries in
// memory, as for a connection test alone. "values_read" is what a start does beyond it: each entry also reads
// its value from the registry (the one in memory).
#include "spec/configuration.h"
#include "support/agent_registry.h"

#include <INIReader.h>
#include <benchmark/benchmark.h>
#include <iniparser/iniparser.h>

#include <fstream>
#include <functional>
#include <malloc.h>
#include <memory>
#include <string>

namespace {

const std::string kHelp = "What this setting is good for.";

std::string title(int setting) { return "Setting number " + std::to_string(setting); }

std::string spec_file(int settings) {
    std::string text = "\\" + kAgentKey + "\nAgent\nAgentService\n!General\n";
    for (int i = 0; i < settings; ++i)
        text += "$" + title(i) + "\nValue\n" + kHelp + "\nServerList\n";
    return text;
}

std::string ini_file(int settings) {
    std::string text;
    for (int i = 0; i < settings; ++i)
        text += "[" + title(i) + "]\nvalue = Value\nhelp = " + kHelp + "\ntype = ServerList\n";
    return text;
}

std::string write_file(const char* name, const std::string& text) {
    std::ofstream(name, std::ios::binary) << text;
    return name;
}

void parse_spec_file(benchmark::State& state, int settings, bool connection_test_only) {
    prepare_registry();
    const std::string path = write_file("parse_bench.spec", spec_file(settings));
    const std::size_t before = mallinfo2().uordblks;
    const Configuration kept("Agent", path, connection_test_only);
    const std::size_t after = mallinfo2().uordblks;
    if (kept.text_by_title(title(settings - 1)) != (connection_test_only ? "" : "4711"))
        return state.SkipWithError("the last setting is missing");
    for (auto _ : state) {
        const Configuration configuration("Agent", path, connection_test_only);
        benchmark::DoNotOptimize(&configuration);
    }
    state.counters["bytes per entry"] = static_cast<double>(after - before) / settings;
}

void parse_entries(benchmark::State& state, int settings) { parse_spec_file(state, settings, true); }
void parse_and_read(benchmark::State& state, int settings) { parse_spec_file(state, settings, false); }

void parse_with_inih(benchmark::State& state, int settings) {
    const std::string path = write_file("parse_bench.ini", ini_file(settings));
    if (INIReader(path).Get(title(settings - 1), "help", "") != kHelp)
        return state.SkipWithError("the last setting is missing");
    for (auto _ : state) {
        const INIReader reader(path);
        benchmark::DoNotOptimize(&reader);
    }
}

using Dictionary = std::unique_ptr<dictionary, void (*)(dictionary*)>;

void parse_with_iniparser(benchmark::State& state, int settings) {
    const std::string path = write_file("parse_bench.ini", ini_file(settings));
    const Dictionary kept(iniparser_load(path.c_str()), &iniparser_freedict);
    const std::string last = title(settings - 1) + ":help";
    if (iniparser_getstring(kept.get(), last.c_str(), "") != kHelp)
        return state.SkipWithError("the last setting is missing");
    for (auto _ : state)
        benchmark::DoNotOptimize(Dictionary(iniparser_load(path.c_str()), &iniparser_freedict));
}

void compare(int settings) {
    const std::string work = "parse_" + std::to_string(settings) + "_settings/";
    const auto add = [&](const char* who, void (*parse)(benchmark::State&, int)) {
        benchmark::RegisterBenchmark((work + who).c_str(), parse, settings)->Unit(benchmark::kMillisecond);
    };
    add("tavrinconfig", &parse_entries);
    add("values_read", &parse_and_read);
    add("inih", &parse_with_inih);
    add("iniparser", &parse_with_iniparser);
}

} // namespace

int main(int argc, char** argv) {
    compare(1000);
    compare(10000);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    for (const char* file : {"parse_bench.spec", "parse_bench.ini"})
        std::remove(file);
    return 0;
}
