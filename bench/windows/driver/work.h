#pragma once
/// The works that are measured. Every program does each in turn, and what it has done is looked at.
#include "driver/samples.h"

namespace bench {

void measure_first_windows(Samples& samples, int runs);
void measure_private_bytes(Samples& samples, int runs);
void measure_start_up(Samples& samples, int runs);
void measure_ok(Samples& samples, int runs);
/// The servers listen at `port`.
void measure_connection_test(Samples& samples, int runs, int port);
void measure_files(Samples& samples);

} // namespace bench
