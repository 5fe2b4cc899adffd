#include <cstdio>
#include <gmock/gmock.h>

/// The suites' own entry point. It does not buffer the output, so the output of a suite that hangs under Wine
/// shows where.
int main(int argc, char** argv) {
    std::setvbuf(stdout, nullptr, _IONBF, 0);
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
