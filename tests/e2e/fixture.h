#pragma once
/// What every test of the finished program starts from: the sample in the registry and no agent installed.
#include "e2e/agent.h"
#include "e2e/input.h"
#include "e2e/process.h"
#include "e2e/tool.h"
#include "e2e/wait.h"
#include "e2e/window.h"

#include <gmock/gmock.h>

namespace e2e {

constexpr char agent_key[] = "SOFTWARE\\Tavrin\\Agent";
constexpr char list_key[] = "SOFTWARE\\Tavrin\\TRConfig";

const TreePath agent_name = {"Tavrin Agent", "Identity", "Agent name"};

class Sample : public testing::Test {
protected:
    void SetUp() override {
        remove_agent();
        seed_registry();
    }
    void TearDown() override { remove_agent(); }
};

} // namespace e2e
