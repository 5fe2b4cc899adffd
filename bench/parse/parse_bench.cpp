// Reads settings from a text into a model and destroys the model. Before anything is timed, every parser must
// build the same model.
#include "parse/settings.h"
#include "specfile/spec_text.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <fstream>
#include <limits>
#include <malloc.h>

namespace {

using namespace parse;

const Parser* const parsers[] = {&our_parser, &inih_parser, &simple_ini_parser, &glib_parser};
constexpr char spec_file[] = "parse_bench.spec";
constexpr char ini_file[] = "parse_bench.ini";

bool is_ours(const Parser& parser) { return parser.from_text == our_parser.from_text; }
std::string text_for(const Parser& parser, int entries) {
    return is_ours(parser) ? spec_text(entries) : ini_text(entries);
}
std::string write_file_for(const Parser& parser, int entries) {
    const char* const path = is_ours(parser) ? spec_file : ini_file;
    std::ofstream(path, std::ios::binary) << text_for(parser, entries);
    return path;
}

bool builds_the_same(const Parser& parser) {
    for (const int entries : {1, 1000}) {
        const std::string expected = description(expected_model(entries));
        std::string from_text;
        std::string from_file;
        parser.from_text(text_for(parser, entries), &from_text);
        parser.from_file(write_file_for(parser, entries), &from_file);
        if (from_text != expected || from_file != expected)
            return false;
    }
    return true;
}

void time_text(benchmark::State& state, const Parser& parser, int entries) {
    const std::string text = text_for(parser, entries);
    for (auto _ : state)
        parser.from_text(text, nullptr);
}

void time_file(benchmark::State& state, const Parser& parser, int entries) {
    const std::string path = write_file_for(parser, entries);
    for (auto _ : state)
        parser.from_file(path, nullptr);
}

/// What every parser does at least: splits the spec file into lines, each an owned text.
void time_cutting(benchmark::State& state, int entries) {
    const std::string text = spec_text(entries);
    for (auto _ : state) {
        std::vector<std::string> lines;
        LineReader reader(text);
        while (!reader.at_end())
            lines.emplace_back(reader.read());
        benchmark::DoNotOptimize(lines.data());
    }
}

void compare(int entries) {
    const std::string size = std::to_string(entries);
    for (const Parser* parser : parsers) {
        benchmark::RegisterBenchmark(("parse from memory, " + size + "/" + parser->name).c_str(), time_text,
                                     *parser, entries);
        benchmark::RegisterBenchmark(("parse from a file, " + size + "/" + parser->name).c_str(), time_file,
                                     *parser, entries);
    }
    benchmark::RegisterBenchmark(("parse from memory, " + size + "/cutting into lines").c_str(), time_cutting,
                                 entries);
}

} // namespace

int main(int count, char** arguments) {
    // The process keeps its heap: growth_bench measures what new memory from the system costs.
    mallopt(M_MMAP_MAX, 0);
    mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
    for (const Parser* parser : parsers) {
        if (!builds_the_same(*parser)) {
            std::fprintf(stderr, "%s does not build the same model\n", parser->name);
            return 1;
        }
    }
    for (const int entries : {1, 100, 10000, 100000})
        compare(entries);
    benchmark::Initialize(&count, arguments);
    benchmark::RunSpecifiedBenchmarks();
    for (const char* file : {spec_file, ini_file})
        std::remove(file);
    return 0;
}
