#pragma once
/// The tasks that are measured. Every program does each of them in turn, and its results are checked.
#include "driver/samples.h"
#include "peers/servers.h"

namespace bench {

void measure_first_windows(Samples& samples, int runs);
void measure_private_bytes(Samples& samples, int runs);
void measure_start_up(Samples& samples, int runs);
void measure_ok(Samples& samples, int runs);
void measure_connection_test(Samples& samples, const char* work, int runs, const Servers& servers);
void measure_files(Samples& samples);
/// The command line, from its start to its end.
void measure_console(Samples& samples, int runs);

} // namespace bench
