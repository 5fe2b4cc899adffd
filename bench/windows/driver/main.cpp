// Times the finished program from outside, beside programs that do no more than they must.
// usage: windows_bench RESULT_FILE PORT      (bench/answering listens at the port)
#include "driver/work.h"

#include <cstdio>
#include <cstdlib>
#include <exception>

int main(int count, char** arguments) {
    if (count != 3) {
        std::fputs("usage: windows_bench RESULT_FILE PORT\n", stderr);
        return 2;
    }
    try {
        bench::Samples samples;
        bench::measure_files(samples);
        bench::measure_first_windows(samples, 30);
        bench::measure_private_bytes(samples, 9);
        bench::measure_start_up(samples, 9);
        bench::measure_ok(samples, 9);
        bench::measure_connection_test(samples, 9, std::atoi(arguments[2]));
        samples.write(arguments[1]);
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "windows_bench: %s\n", failure.what());
        return 1;
    }
    return 0;
}
