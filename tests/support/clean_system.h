#pragma once
#include <gtest/gtest.h>

/// Leaves nothing of an earlier test: over the substitute everything is as at process start, on Windows the
/// tests' registry keys are gone.
void clean_system();

/// A test that begins and ends on a clean system.
class CleanSystem : public testing::Test {
protected:
    CleanSystem() { clean_system(); }
    ~CleanSystem() override { clean_system(); }
};
