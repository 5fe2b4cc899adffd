#include <cstdio>
#include <gmock/gmock.h>

/// The suites' own entry point. It says at once what it prints: a suite that hangs under Wine shows where.
int main(int argc, char** argv) {
    std::setvbuf(stdout, nullptr, _IONBF, 0);
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
