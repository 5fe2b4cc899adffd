// Times the finished program from outside, beside programs that do only what is necessary.
// usage: windows_bench RESULT_FILE all|console|far PREFIX COUNT PORT
// bench/answering plays the servers (peers/servers.h); "far": only their connection test, over a slow line;
// "console": only the command line.
#include "driver/work.h"

#include <cstdio>
#include <cstring>
#include <exception>

namespace {

void measure_all(bench::Samples& samples, const Servers& servers) {
    bench::measure_files(samples);
    bench::measure_first_windows(samples, 30);
    bench::measure_private_bytes(samples, 9);
    bench::measure_start_up(samples, 9);
    bench::measure_ok(samples, 9);
    bench::measure_console(samples, 30);
    bench::measure_connection_test(samples, "connection test, 100 servers", 9, servers);
}

} // namespace

int main(int count, char** arguments) {
    if (count < 6) {
        std::fputs("usage: windows_bench RESULT_FILE all|console|far PREFIX COUNT PORT\n", stderr);
        return 2;
    }
    const Servers servers = servers_of(count, arguments, 3);
    try {
        bench::Samples samples;
        if (std::strcmp(arguments[2], "far") == 0)
            bench::measure_connection_test(samples, "test of 50 servers 20 ms away", 5, servers);
        else if (std::strcmp(arguments[2], "console") == 0)
            bench::measure_console(samples, 30);
        else
            measure_all(samples, servers);
        samples.write(arguments[1]);
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "windows_bench: %s\n", failure.what());
        return 1;
    }
    return 0;
}
